#include "tables/table/contingency_table.h"

#include <fmt/format.h>

#include <cassert>

#include "shell/fields.h"

namespace tarven {

namespace {

/// a times b, or 2^62 when that is less.
std::int64_t Product_of_sizes(std::int64_t a, int b) {
    constexpr std::int64_t most = std::int64_t{1} << 62;
    return a > most / b ? most : a * b;
}

bool Within_limits(const TableDimensions& sizes) {
    return sizes.ncells_incl <= MaxTableCells && sizes.ncells_excl <= MaxTableCells;
}

std::string List_of_dimensions(int Nvar, std::span<const int> DIM) {
    std::string list;
    for (int k = 1; k <= Nvar; ++k) list += fmt::format(" {}", DIM[static_cast<std::size_t>(k)]);
    return list.empty() ? list : list.substr(1);
}

double Share(std::int32_t part, std::int32_t whole) {
    return whole == 0 ? 0 : 100.0 * part / whole;
}

}  // namespace

int ContingencyTable::block(int k) const {
    int at = 1;
    while (at < Nlevels && k > LevelEnd[static_cast<std::size_t>(at)]) ++at;
    return at;
}

std::string ContingencyTable::labels() const {
    std::string text;
    for (const TableVariable& variable : variables) text += variable.label;
    return text;
}

TableDimensions Table_dimensions(int Nvar, std::span<const int> DIM, bool require8) {
    TableDimensions sizes;
    for (std::size_t k = 1; k <= MaxBigTableVariables; ++k) {
        sizes.DIM[k] = 1;
        sizes.TDIM[k] = 2;
    }
    if (Nvar < 1 || Nvar > MaxBigTableVariables) return sizes;
    bool proper = !require8 || Nvar <= MaxTableVariables;
    sizes.ncells_incl = sizes.ncells_excl = 1;
    for (std::size_t k = 1; k <= static_cast<std::size_t>(Nvar); ++k) {
        if (DIM[k] < 1 || DIM[k] > MaxTableCells) {
            proper = false;
            continue;
        }
        sizes.DIM[k] = DIM[k];
        sizes.TDIM[k] = DIM[k] + 1;
        sizes.Cfactor[k] = sizes.ncells_incl;
        if (k > 1) sizes.factorsum += sizes.Cfactor[k];
        sizes.ncells_incl = Product_of_sizes(sizes.ncells_incl, DIM[k] + 1);
        sizes.ncells_excl = Product_of_sizes(sizes.ncells_excl, DIM[k]);
        if (!Within_limits(sizes)) proper = false;
        if (!proper) sizes.Cfactor[k] = sizes.factorsum = 0;
    }
    sizes.ok = proper;
    return sizes;
}

bool Check_table_dimensions(int Nvar, std::span<const int> DIM) {
    return Table_dimensions(Nvar, DIM, true).ok;
}

std::vector<std::string> Too_large_lines(int Nvar, std::span<const int> DIM) {
    const TableDimensions sizes = Table_dimensions(Nvar, DIM, false);
    return {fmt::format("Too large table: {}", List_of_dimensions(Nvar, DIM)),
            fmt::format("{} CELLS EXCL. MARGINS. (max = {}) ", sizes.ncells_excl, MaxTableCells),
            fmt::format("{} CELLS INCL. MARGINS. (max = {})", sizes.ncells_incl, MaxTableCells)};
}

std::vector<std::string> Big_table_too_large_lines(int Nvar, std::span<const int> DIM) {
    const TableDimensions sizes = Table_dimensions(Nvar, DIM, false);
    return {fmt::format("BT check: Too large table: {}", List_of_dimensions(Nvar, DIM)),
            fmt::format("{} CELLS INCL. MARGINS. (max = {})", Field(sizes.ncells_incl, 7),
                        MaxTableCells),
            fmt::format("{} CELLS EXCL. MARGINS. (max = {})", Field(sizes.ncells_excl, 7),
                        MaxTableCells)};
}

ContingencyTable Make_table(std::vector<TableVariable> variables, bool require8,
                            const std::vector<int>& LevelEnd) {
    ContingencyTable table;
    const std::size_t Nvar = variables.size();
    if (Nvar > MaxBigTableVariables) return table;
    One_based<int, MaxBigTableVariables> DIM;
    for (std::size_t k = 1; k <= Nvar; ++k) DIM[k] = variables[k - 1].DIM;
    const TableDimensions sizes = Table_dimensions(static_cast<int>(Nvar), DIM.entries, require8);
    if (!sizes.ok) return table;
    table.Cfactor = sizes.Cfactor;
    table.factorsum = sizes.factorsum;
    table.variables = std::move(variables);
    for (const int end : LevelEnd) table.LevelEnd[static_cast<std::size_t>(++table.Nlevels)] = end;
    if (LevelEnd.empty()) table.LevelEnd[static_cast<std::size_t>(++table.Nlevels)] = table.Nvar();
    table.cells.assign(static_cast<std::size_t>(sizes.ncells_incl), 0);
    return table;
}

std::int64_t Cell_number(const ContingencyTable& table, std::span<const int> c) {
    assert(c.size() >= static_cast<std::size_t>(table.Nvar()) && "a category for each variable");
    std::int64_t n = -table.factorsum;
    for (std::size_t k = 1; k <= static_cast<std::size_t>(table.Nvar()); ++k)
        n += c[k - 1] * table.Cfactor[k];
    return n;
}

CellPlace Split_cell_number(std::int64_t n) {
    return {.block = (n - 1) / CountArraySize + 1, .offset = (n - 1) % CountArraySize + 1};
}

std::int32_t Read_cell(const ContingencyTable& table, std::span<const int> c) {
    const std::int64_t n = Cell_number(table, c);
    if (n < 1 || n > static_cast<std::int64_t>(table.cells.size())) return 0;
    return table.cells[static_cast<std::size_t>(n - 1)];
}

TwoWayTable Extract_two_way(const ContingencyTable& table, std::span<const int> stratum) {
    assert(table.Nvar() >= 2 && stratum.size() >= static_cast<std::size_t>(table.Nvar() - 2));
    std::int64_t first = 0;
    for (std::size_t k = 3; k <= static_cast<std::size_t>(table.Nvar()); ++k)
        first += (stratum[k - 3] - 1) * table.Cfactor[k];
    TwoWayTable counts(table.DIM(1), table.DIM(2));
    for (int j = 1; j <= table.TDIM(2); ++j)
        for (int i = 1; i <= table.TDIM(1); ++i)
            counts(i, j) =
                table.cells[static_cast<std::size_t>(first + (i - 1) + (j - 1) * table.Cfactor[2])];
    return counts;
}

// The cells between a category of variable k and the next lie Cfactor[k] apart, so the margins over
// k are sums of whole runs of that length. The runs of a later variable include the margins of the
// earlier ones, which thereby are summed as well.
void Add_margins(ContingencyTable& table) {
    const auto all = static_cast<std::int64_t>(table.cells.size());
    for (std::size_t k = 1; k <= static_cast<std::size_t>(table.Nvar()); ++k) {
        const std::int64_t run = table.Cfactor[k];
        const std::int64_t step = run * table.TDIM(k);
        for (std::int64_t first = 0; first < all; first += step) {
            std::int32_t* margin = table.cells.data() + first + run * table.DIM(k);
            for (std::int64_t i = 0; i < run; ++i) margin[i] = 0;
            for (int c = 0; c < table.DIM(k); ++c) {
                const std::int32_t* cell = table.cells.data() + first + run * c;
                for (std::int64_t i = 0; i < run; ++i) margin[i] += cell[i];
            }
        }
    }
}

double Row_percentage(const TwoWayTable& counts, int i, int j) {
    return Share(counts(i, j), counts(i, counts.columns + 1));
}

double Column_percentage(const TwoWayTable& counts, int i, int j) {
    return Share(counts(i, j), counts(counts.rows + 1, j));
}

double Total_percentage(const TwoWayTable& counts, int i, int j) {
    return Share(counts(i, j), counts.Total());
}

}  // namespace tarven
