#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shell/commands.h"
#include "shell/settings.h"
#include "tables/independence/hypotheses.h"

namespace tarven {

/// The one list of the workspace.
struct HypothesisWorkspace {
    std::vector<Hypothesis> list;     ///< at most MaxHypotheses
    std::vector<TestResult> results;  ///< parallel to list
    bool hypotheses_ready = false;    ///< the list is not empty and belongs to what stands now
    bool tested = false;              ///< the results are those of a test
    TestSettings settings;            ///< of the run that made them
    HypothesisScope scope = HypothesisScope::table;
    bool PartialTestsOff = false;  ///< no tests against two-factor association on this table
    std::string labels;            ///< of the variables that the roles are numbered by
};

inline HypothesisWorkspace The_hypotheses;

/// The list is about the dimensions of the current table. Who reads its roles as dimensions of that
/// table asks this: a list of the graph numbers the variables of the project.
inline bool Table_hypotheses() {
    return !The_hypotheses.list.empty() && The_hypotheses.scope == HypothesisScope::table;
}
inline const Need NeedsTableHypotheses{
    [] { return The_hypotheses.list.empty() || Table_hypotheses(); },
    "The hypotheses are those of the graph: HYP makes some about the table, CHO n the table of "
    "one"};

/// Fills a workspace with `list`, cut to MaxHypotheses, with start values as results.
void Fill_hypotheses(HypothesisWorkspace& workspace, std::vector<Hypothesis> list,
                     HypothesisScope scope, std::string labels);

/// Makes `list` the list of the workspace.
void Set_hypotheses(std::vector<Hypothesis> list, HypothesisScope scope, std::string labels);

/// Empties the list without a word.
void Clear_hypotheses();

/// The list is lost, with a message when there was one, as soon as other variables or another table
/// stand under it; both it and the results start empty.
void Register_hypotheses_lifecycle();

}  // namespace tarven
