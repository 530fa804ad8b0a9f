#include "tables/tabulate.h"

#include <fmt/format.h>

#include <bit>
#include <utility>

#include "shell/files.h"
#include "shell/report.h"
#include "shell/user.h"

namespace tarven {

TableVariable Table_variable(const ProjectDefinition& project, int number) {
    const Variable& v = project.variables[static_cast<std::size_t>(number)];
    TableVariable variable{
        .label = v.label, .number = number, .DIM = v.dim, .VTYPE = v.vtype, .name = v.name};
    for (std::size_t c = 1; c <= v.dim; ++c) variable.categories.push_back(v.categoryname[c]);
    return variable;
}

CellCounter::CellCounter(ContingencyTable& table) : table_(table) {
    // 85 offsets of a missing category stay within 64 bits, and no true one brings the sum back.
    constexpr std::int64_t missing = INT64_MIN / 128;
    for (std::size_t k = 1; k <= static_cast<std::size_t>(table.Nvar); ++k) {
        Column column;
        column.place = static_cast<std::size_t>(table.variables[k - 1].number - 1);
        for (int c = 0; c < 256; ++c)
            column.offset[c] = c >= 1 && c <= table.DIM[k] ? (c - 1) * table.Cfactor[k] : missing;
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

/// What is said of a table without cases, by the reader that met it.
std::string Empty_table(DataSource source, int Nvar, std::int64_t NTOTAL, std::int64_t missing) {
    if (source == DataSource::tabdata && NTOTAL == 0)
        return Nvar > MaxTableVariables
                   ? "The table is empty?"
                   : fmt::format("The table is empty. {} missing. {} ntabcells.", missing,
                                 The_data.TABdata.Ncells());
    return "THE TABLE SEEMS TO BE EMPTY? FAILURE ASSUMED";
}

/// Margins of a table that has just been counted, by the cheaper road.
void Fill_margins_of(ContingencyTable& table) {
    std::int64_t nonempty = 0;
    for (const std::int32_t count : table.cells) nonempty += count != 0;
    const auto plain = static_cast<std::int64_t>(table.cells.size()) * table.Nvar;
    const bool few =
        table.Nvar > MaxTableVariables && table.Nvar < 30 && nonempty < plain >> table.Nvar;
    few ? BTmargins(table) : Add_margins(table);
}

}  // namespace

Tabulation Tabulate(std::vector<TableVariable> variables, const std::vector<int>& LevelEnd,
                    DataSource source) {
    Tabulation result;
    const bool big = variables.size() > MaxTableVariables;
    const std::string dimensions = List_of(variables);
    result.table = Make_table(std::move(variables), !big, LevelEnd);
    ContingencyTable& table = result.table;
    if (table.Nvar == 0) {
        result.messages = {source == DataSource::tabdata
                               ? "Unacceptable table dimensions"
                               : "Table dimensions: Too large table:" + dimensions};
        return result;
    }
    CellCounter counter(table);
    bool too_many = false;
    std::string failure;
    if (source == DataSource::datfile && !Find_file(The_project.files.DAT.path))
        failure = "FAILURE OPENING DATAFILE";
    else
        failure = Read_cases(source, [&](const std::uint8_t* codes, std::int32_t count) {
            too_many = !counter.Add(codes, count);
            return !too_many;
        });
    result.missing = counter.missing();
    if (too_many) failure = "The table has more cases than can be counted";
    if (failure.empty() && table.NTOTAL < 2)
        failure = Empty_table(source, table.Nvar, table.NTOTAL, result.missing);
    if (!failure.empty()) {
        result.messages = {failure};
        return result;
    }
    Fill_margins_of(table);
    result.ok = true;
    return result;
}

TwoWayTable Table_of_pair(int i, int j) {
    const std::vector<TableVariable> variables = {Table_variable(The_project, i),
                                                  Table_variable(The_project, j)};
    const Tabulation tabulation = Tabulate(variables, {}, Table_source(Data_at_hand(), 2));
    TwoWayTable counts(variables[0].DIM, variables[1].DIM);
    if (!tabulation.ok) return counts;
    for (int r = 1; r <= counts.rows; ++r)
        for (int c = 1; c <= counts.columns; ++c) {
            const int cell[] = {r, c};
            counts(r, c) = Read_cell(tabulation.table, cell);
        }
    Fill_margins(counts);
    return counts;
}

bool Tabulate_current_table(const TableRequest& request) {
    Dispose_current_table();
    const DataSource source =
        Table_source(Data_at_hand(), static_cast<int>(request.variables.size()));
    Tabulation result;
    if (source == DataSource::none)
        result.messages = {"Data is not available"};
    else
        result = Tabulate(request.variables, request.LevelEnd, source);
    if (!result.ok) {
        for (const std::string& message : result.messages) ShowMessage(message);
        ShowMessage("TABULATE failure");
        return false;
    }
    Set_current_table(std::move(result.table));
    return true;
}

void BTmargins(ContingencyTable& table) {
    const auto n = static_cast<std::size_t>(table.Nvar);
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
        for (std::size_t k = 0; k < n; ++k) margin = margin || digit[k] > table.DIM[k + 1];
        if (margin)
            cell = 0;
        else if (cell != 0)
            filled.push_back({offset, cell});
        for (std::size_t k = 0; k < n && ++digit[k] > table.TDIM[k + 1]; ++k) digit[k] = 1;
    }
    for (const Filled& cell : filled) {
        // Subsets in the order of a Gray code: from one to the next a single variable goes to its
        // margin or comes back.
        std::vector<std::int64_t> way(n);
        std::int64_t rest = cell.offset;
        for (std::size_t k = n; k >= 1; --k) {
            way[k - 1] =
                table.DIM[k] * table.Cfactor[k] - rest / table.Cfactor[k] * table.Cfactor[k];
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
