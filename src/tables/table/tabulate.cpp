#include "tables/table/tabulate.h"

#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cassert>
#include <utility>

#include "shell/files.h"
#include "shell/variable_lists.h"

namespace tarven {

TableVariable Table_variable(const ProjectDefinition& project, int number) {
    const Variable& v = project.variables[static_cast<std::size_t>(number)];
    TableVariable variable{
        .label = v.label, .number = number, .DIM = v.dim, .VTYPE = v.vtype, .name = v.name};
    for (std::size_t c = 1; c <= v.dim; ++c) variable.categories.push_back(v.categoryname[c]);
    return variable;
}

TableVariable Table_variable(const CasesAtHand& cases, int number) {
    if (number != ScoreCode) return Table_variable(cases.definition, number);
    assert(cases.score && "a table of a score that is not there");
    return {.label = ScoreLabelOfTables,
            .number = ScoreCode,
            .DIM = cases.score->groups(),
            .VTYPE = Ordinal,
            .name = ScoreNameOfTables,
            .categories = cases.score->group_names};
}

CellCounter::CellCounter(ContingencyTable& table, int N, const ScoreVariable* score)
    : table_(table), score_(score ? *score : ScoreVariable(), N) {
    // 85 offsets of a missing category stay within 64 bits, and no true one brings the sum back.
    constexpr std::int64_t missing = INT64_MIN / 128;
    for (std::size_t k = 1; k <= static_cast<std::size_t>(table.Nvar()); ++k) {
        Column column;
        for (int c = 0; c < 256; ++c)
            column.offset[c] = c >= 1 && c <= table.DIM(k) ? (c - 1) * table.Cfactor[k] : missing;
        const int number = table.variables[k - 1].number;
        if (number == ScoreCode) {
            assert(score && "a table of a score that is not there");
            counts_score_ = true;
            std::copy(std::begin(column.offset), std::end(column.offset), score_offset_.begin());
            continue;
        }
        column.place = static_cast<std::size_t>(number - 1);
        columns_.push_back(column);
    }
}

DataSource Table_source(const DataAtHand& at_hand, int Nvar) {
    if (at_hand.tabdata_ready) return DataSource::tabdata;
    if (Nvar > MaxTableVariables) return DataSource::none;
    if (at_hand.data_ready) return DataSource::dataset;
    if (!at_hand.SYS && !at_hand.TAB) return at_hand.DAT ? DataSource::datfile : DataSource::none;
    const bool cells_cheaper = (at_hand.N + 1) * at_hand.Ntabcells <= at_hand.N * at_hand.Nused;
    return at_hand.TAB && (cells_cheaper || !at_hand.SYS) ? DataSource::tabfile
                                                          : DataSource::sysfile;
}

namespace {

std::string List_of(const std::vector<TableVariable>& variables) {
    std::string list;
    for (const TableVariable& v : variables) list += fmt::format(" {}", v.DIM);
    return list;
}

/// Margins of a table that has just been counted, by the cheaper road.
void Fill_margins_of(ContingencyTable& table) {
    std::int64_t nonempty = 0;
    for (const std::int32_t count : table.cells) nonempty += count != 0;
    const auto plain = static_cast<std::int64_t>(table.cells.size()) * table.Nvar();
    const bool few =
        table.Nvar() > MaxTableVariables && table.Nvar() < 30 && nonempty < plain >> table.Nvar();
    few ? BTmargins(table) : Add_margins(table);
}

/// How often the user is asked whether to stop, in cases or cells.
constexpr std::int64_t CasesBetweenQuestions = 1 << 14;

/// Gives the cases to `count` until it refuses one. The failure, with no message when there is
/// none.
template <class Count>
Failed Count_cases(const CasesAtHand& cases, DataSource source, const StopCheck& stop,
                   Count count) {
    if (source == DataSource::none) return {.messages = {"Data is not available"}};
    if (source == DataSource::datfile && !Find_file(cases.files.DAT.path))
        return {.messages = {"FAILURE OPENING DATAFILE"}};
    bool too_many = false, stopped = false;
    std::int64_t taken = 0;
    const auto take = [&](const std::uint8_t* codes, std::int32_t n) {
        stopped = ++taken % CasesBetweenQuestions == 0 && stop && stop();
        too_many = !stopped && !count(codes, n);
        return !stopped && !too_many;
    };
    std::string failure;
    if (source == DataSource::dataset || source == DataSource::tabdata)
        Take_cases_in_memory(cases, source, take);
    else
        failure = Read_cases(cases, source, take);
    if (stopped) return {.messages = {"Stopped: the cases have not been counted"}, .stopped = true};
    if (too_many) failure = "The table has more cases than can be counted";
    return failure.empty() ? Failed{} : Failed{.messages = {failure}};
}

}  // namespace

std::string Empty_table(DataSource source, const CasesAtHand& cases, int Nvar, std::int64_t NTOTAL,
                        std::int64_t missing) {
    if (source == DataSource::tabdata && NTOTAL == 0)
        return Nvar > MaxTableVariables
                   ? "The table is empty?"
                   : fmt::format("The table is empty. {} missing. {} ntabcells.", missing,
                                 cases.data.TABdata.Ncells());
    return "THE TABLE SEEMS TO BE EMPTY? FAILURE ASSUMED";
}

Result<Tabulation> Tabulate(const CasesAtHand& cases, DataSource source, TableRequest request,
                            const StopCheck& stop) {
    const bool big = request.variables.size() > MaxTableVariables;
    const std::string dimensions = List_of(request.variables);
    Tabulation result{.table = Make_table(std::move(request.variables), !big, request.LevelEnd)};
    ContingencyTable& table = result.table;
    if (cases.definition.N < 1) return Failed{.messages = {"No project"}};
    if (table.Nvar() == 0)
        return Failed{.messages = {source == DataSource::tabdata
                                       ? "Unacceptable table dimensions"
                                       : "Table dimensions: Too large table:" + dimensions}};
    CellCounter counter(table, cases.definition.N, cases.score);
    Failed failure = Count_cases(
        cases, source, stop,
        [&](const std::uint8_t* codes, std::int32_t count) { return counter.Add(codes, count); });
    result.missing = counter.missing();
    if (failure.messages.empty() && table.NTOTAL < FewestCases)
        failure.messages = {Empty_table(source, cases, table.Nvar(), table.NTOTAL, result.missing)};
    if (!failure.messages.empty()) return failure;
    Fill_margins_of(table);
    return result;
}

Result<Tabulation> Tabulate(const CasesAtHand& cases, TableRequest request, const StopCheck& stop) {
    const auto Nvar = static_cast<int>(request.variables.size());
    return Tabulate(cases, Table_source(Data_at_hand(cases), Nvar), std::move(request), stop);
}

Result<std::vector<TwoWayTable>> Tables_of_pairs(const CasesAtHand& cases,
                                                 std::span<const VariablePair> pairs,
                                                 const StopCheck& stop) {
    std::vector<TwoWayTable> tables;
    const auto dim = [&](int v) {
        return int{cases.definition.variables[static_cast<std::size_t>(v)].dim};
    };
    for (const VariablePair& pair : pairs) tables.emplace_back(dim(pair.first), dim(pair.second));
    const auto count = [&](const std::uint8_t* codes, std::int32_t n) {
        for (std::size_t k = 0; k < pairs.size(); ++k) {
            const int i = codes[pairs[k].first - 1], j = codes[pairs[k].second - 1];
            TwoWayTable& table = tables[k];
            if (i < 1 || i > table.rows || j < 1 || j > table.columns) continue;
            if (table.Total() > INT32_MAX - n) return false;
            table(i, j) += n;
            table(table.rows + 1, table.columns + 1) += n;
        }
        return true;
    };
    const Failed failure = Count_cases(cases, Table_source(Data_at_hand(cases), 2), stop, count);
    if (!failure.messages.empty()) return failure;
    for (TwoWayTable& table : tables) Fill_margins(table);
    return tables;
}

void BTmargins(ContingencyTable& table) {
    const auto n = static_cast<std::size_t>(table.Nvar());
    struct Filled {
        std::int64_t offset;
        std::int32_t count;
    };
    std::vector<Filled> filled;
    std::vector<int> digit(n, 1);  // the categories of the cell at hand
    for (std::int64_t offset = 0; offset < static_cast<std::int64_t>(table.cells.size());
         ++offset) {
        std::int32_t& cell = table.cells[static_cast<std::size_t>(offset)];
        bool margin = false;
        for (std::size_t k = 0; k < n; ++k) margin = margin || digit[k] > table.DIM(k + 1);
        if (margin)
            cell = 0;
        else if (cell != 0)
            filled.push_back({offset, cell});
        for (std::size_t k = 0; k < n && ++digit[k] > table.TDIM(k + 1); ++k) digit[k] = 1;
    }
    for (const Filled& cell : filled) {
        // Subsets in the order of a Gray code: from one to the next a single variable goes to its
        // margin or comes back.
        std::vector<std::int64_t> way(n);
        std::int64_t rest = cell.offset;
        for (std::size_t k = n; k >= 1; --k) {
            way[k - 1] =
                table.DIM(k) * table.Cfactor[k] - rest / table.Cfactor[k] * table.Cfactor[k];
            rest %= table.Cfactor[k];
        }
        std::int64_t at = cell.offset;
        std::uint64_t at_margin = 0;
        for (std::uint64_t subset = 1; subset >> n == 0; ++subset) {
            const auto k = static_cast<std::size_t>(std::countr_zero(subset));
            at_margin ^= std::uint64_t{1} << k;
            at += at_margin >> k & 1 ? way[k] : -way[k];
            table.cells[static_cast<std::size_t>(at)] += cell.count;
        }
    }
}

}  // namespace tarven
