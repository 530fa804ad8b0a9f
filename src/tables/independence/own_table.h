#pragma once

#include <span>
#include <string>
#include <vector>

#include "project/data.h"
#include "tables/independence/hypothesis_run.h"
#include "tables/table/tabulate.h"

namespace tarven {

/// Hypotheses that do not rest on the current table: each is tested in a table of its own, of the
/// variables that have a role in it; one whose table would be too large, or would have more cells
/// than there are cases, from the cases.

/// The table that a hypothesis needs, and the hypothesis over the dimensions of that table.
struct OwnTable {
    TableRequest request;
    Hypothesis row;
};

/// Of a row over the project's variables. A block begins at each variable of a higher recursive
/// block than all before it.
OwnTable Own_table(const Hypothesis& row, const ProjectDefinition& definition);

/// Of a row over the dimensions of a table.
OwnTable Own_table(const Hypothesis& row, const ContingencyTable& table);

/// A hypothesis after its test, or why it has no table.
struct TestedInOwnTable {
    TestedHypothesis outcome;           ///< untested without a table
    std::vector<std::string> messages;  ///< of the table that could not be made
};

/// Tests rows over the project's variables by the global engine; the outcomes are parallel to them.
/// Every hypothesis starts from settings.Seed, so the number of threads and the order of the list
/// decide nothing. A row of more variables or cells than a table may have, or of more cells than
/// there are cases, takes its strata from the cases, packed once for all such rows; they are those
/// of a table, and so is what is said of too few cases. Passes over the cases ask control.within; a
/// stop there ends the run as one of control.stop does. Cost: one pass over the cases a hypothesis.
std::vector<TestedInOwnTable> Test_in_own_tables(const CasesAtHand& cases,
                                                 std::span<const Hypothesis> list,
                                                 const TestSettings& settings, RandomStream& stream,
                                                 const RunControl& control = {});

}  // namespace tarven
