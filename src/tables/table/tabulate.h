#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "project/data.h"
#include "project/project.h"
#include "shell/result.h"
#include "shell/stop_check.h"
#include "tables/table/contingency_table.h"

namespace tarven {

/// Filling a table from the cases of the project.

/// The table variable that project variable `number` (1..N) makes.
TableVariable Table_variable(const ProjectDefinition& project, int number);
/// The same where number ScoreCode is the score, which must be there then.
TableVariable Table_variable(const CasesAtHand& cases, int number);

/// Adds cases to the cells of a table. A case counts only if every variable of the table has a
/// category 1..DIM; category 0 (missing) or one above DIM leaves the whole case out.
class CellCounter {
  public:
    /// The table's variables must have numbers of the project, or that of the score. Cases are rows
    /// of N codes. The table must outlive the counter and keep its cells.
    CellCounter(ContingencyTable& table, int N, const ScoreVariable* score = nullptr);

    /// A case of codes[v-1] of project variable v, or `count` > 0 cases alike. False when NTOTAL
    /// would leave 32 bits; nothing is counted then.
    bool Add(const std::uint8_t* codes, std::int32_t count) {
        std::int64_t offset = 0;
        if (counts_score_) offset = score_offset_[static_cast<std::size_t>(score_.Group(codes))];
        for (const Column& column : columns_) offset += column.offset[codes[column.place]];
        if (offset < 0) {
            missing_ += count;
            return true;
        }
        if (table_.NTOTAL + count > INT32_MAX) return false;
        table_.NTOTAL += count;
        table_.cells[static_cast<std::size_t>(offset)] += count;
        return true;
    }

    std::int64_t missing() const { return missing_; }  ///< cases left out

  private:
    /// Where category c of a variable moves the cell; far below 0 for what is no category.
    struct Column {
        std::size_t place = 0;  ///< of the variable in a case, from 0
        std::int64_t offset[256] = {};
    };
    ContingencyTable& table_;
    std::vector<Column> columns_;
    ScoreReader score_;
    bool counts_score_ = false;
    std::array<std::int64_t, 256> score_offset_{};  ///< as Column::offset, by score group
    std::int64_t missing_ = 0;
};

/// Which source a table is filled from: TABdata in memory before DATA in memory; without either the
/// raw data when there is neither SYS nor TAB file, the TAB file when (N+1) * Ntabcells does not
/// exceed N * Nused, else the SYS file. A big table is filled from TABdata in memory alone.
DataSource Table_source(const DataAtHand& at_hand, int Nvar);

/// A table, and how many cases have no place in it.
struct Tabulation {
    ContingencyTable table;
    std::int64_t missing = 0;  ///< cases left out
};

/// The variables of a table that is wanted, in the order of the table, and its blocks.
struct TableRequest {
    std::vector<TableVariable> variables;  ///< with numbers of the project
    std::vector<int> LevelEnd;             ///< last variable of each block; empty: one block
};

/// Fills a table with margins from one source of the cases. Fewer than 2 cases are a failure of the
/// data, not a small table. `stop` is asked now and then.
Result<Tabulation> Tabulate(const CasesAtHand& cases, DataSource source, TableRequest request,
                            const StopCheck& stop = {});
/// The same from the source that Table_source names.
Result<Tabulation> Tabulate(const CasesAtHand& cases, TableRequest request,
                            const StopCheck& stop = {});

/// The fewest cases of a table.
inline constexpr std::int64_t FewestCases = 2;
/// What is said of a table of NTOTAL cases, fewer than these, and `missing` left out, by the reader
/// of `source` that met it.
std::string Empty_table(DataSource source, const CasesAtHand& cases, int Nvar, std::int64_t NTOTAL,
                        std::int64_t missing);

/// Two project variables, from 1; the rows of their table are those of `first`.
struct VariablePair {
    int first = 0;
    int second = 0;
};

/// The tables with margins of pairs of project variables, each over the cases that have both, in
/// one pass over the cases. A pair without such cases has a table of zeros. Parallel to `pairs`.
/// Cost: cases (or cells) times pairs.
Result<std::vector<TwoWayTable>> Tables_of_pairs(const CasesAtHand& cases,
                                                 std::span<const VariablePair> pairs,
                                                 const StopCheck& stop = {});

/// Margins of a table of nine and more variables from its non-empty cells: each is added to every
/// margin that a subset of the variables gives. Cost: non-empty cells times 2^Nvar, so for few of
/// them it is less than that of Add_margins, which has the same result.
void BTmargins(ContingencyTable& table);

}  // namespace tarven
