#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "shell/limits.h"
#include "shell/one_based.h"
#include "tables/table/two_way.h"

namespace tarven {

/// The contingency table: counts over two to eight variables (a big table: nine and more), stored
/// with every margin. Category TDIM[k] = DIM[k]+1 of variable k is its margin: a cell with that
/// category holds the sum over variable k. What tests, fits and prints read stands in the cells; a
/// margin is never summed again.

/// One variable of a table, as tests and reports know it.
struct TableVariable {
    char label = '?';
    int number = 0;  ///< of the project variable; 0 for a variable of a table file
    int DIM = 2;     ///< categories
    int VTYPE = 3;   ///< below 3 nominal
    std::string name{};
    std::vector<std::string> categories{};  ///< names of categories 1..DIM at 0..; may be empty

    bool operator==(const TableVariable&) const = default;
};

struct ContingencyTable {
    std::vector<TableVariable> variables;                   ///< variable k at k-1
    One_based<std::int64_t, MaxBigTableVariables> Cfactor;  ///< 1, then Cfactor[k] * TDIM(k)
    std::int64_t factorsum = 0;                             ///< of Cfactor[2..Nvar]
    int Nlevels = 0;                                ///< recursive blocks of the table's variables
    One_based<int, MaxBigTableVariables> LevelEnd;  ///< [1..Nlevels]: last variable of each block
    std::vector<std::int32_t> cells;                ///< cell number n at n-1, margins included
    std::int64_t NTOTAL = 0;

    int Nvar() const { return static_cast<int>(variables.size()); }
    /// Variable k in 1..Nvar.
    const TableVariable& variable(std::int64_t k) const {
        return variables[static_cast<std::size_t>(k - 1)];
    }
    int DIM(std::int64_t k) const { return variable(k).DIM; }  ///< categories of variable k
    int TDIM(std::int64_t k) const {
        return variable(k).DIM + 1;
    }  ///< the category that is its margin
    bool big() const { return variables.size() > MaxTableVariables; }
    int block(int k) const;      ///< recursive block of variable k, from 1
    std::string labels() const;  ///< Nvar characters

    bool operator==(const ContingencyTable&) const = default;
};

/// Sizes and multipliers of a table of DIM[1..Nvar].
struct TableDimensions {
    bool ok = false;  ///< within the limits
    One_based<int, MaxBigTableVariables> DIM, TDIM;
    One_based<std::int64_t, MaxBigTableVariables> Cfactor;
    std::int64_t factorsum = 0;
    std::int64_t ncells_incl = 0;  ///< product of TDIM; at most 2^62, where it stops growing
    std::int64_t ncells_excl = 0;  ///< product of DIM, the same
};

/// True when Nvar is at most 8 and neither product is above MaxTableCells. DIM[0] is not read.
bool Check_table_dimensions(int Nvar, std::span<const int> DIM);

/// The same with all sizes; the limit of eight variables only with `require8`. Nvar of 0 or above
/// 85, or a dimension below 1, is not ok. No multipliers stand when not ok.
TableDimensions Table_dimensions(int Nvar, std::span<const int> DIM, bool require8);

/// The three lines on a table that is too large.
std::vector<std::string> Too_large_lines(int Nvar, std::span<const int> DIM);
/// The same for a big table.
std::vector<std::string> Big_table_too_large_lines(int Nvar, std::span<const int> DIM);

/// An empty table (all cells 0) of these variables, of one block when LevelEnd is empty; LevelEnd
/// holds the last variable of each block. Nvar of 0 when Table_dimensions is not ok.
ContingencyTable Make_table(std::vector<TableVariable> variables, bool require8 = true,
                            const std::vector<int>& LevelEnd = {});

/// Number of the cell of categories c[0..Nvar-1] of variables 1..Nvar, from 1.
std::int64_t Cell_number(const ContingencyTable& table, std::span<const int> c);

/// Where cell n lies among blocks of 162230 cells, both counted from 1.
struct CellPlace {
    std::int64_t block = 0;
    std::int64_t offset = 0;
    bool operator==(const CellPlace&) const = default;
};
CellPlace Split_cell_number(std::int64_t n);

/// The count of a cell, margins by category DIM+1; 0 past the cells of the table, which is how a
/// structural zero of a big table reads.
std::int32_t Read_cell(const ContingencyTable& table, std::span<const int> c);

/// Variables 1 by 2 with margins, at `stratum` = categories of variables 3..Nvar (DIM+1: margin).
TwoWayTable Extract_two_way(const ContingencyTable& table, std::span<const int> stratum);

/// Fills every margin from the cells without margins, one variable at a time. Cost: Nvar times the
/// cells. The sum of the counts must fit 32 bits.
void Add_margins(ContingencyTable& table);

/// Percentages of cell (i, j) of a table with margins; 0 where the divisor is 0. Margins of i and j
/// give the shares of the totals.
double Row_percentage(const TwoWayTable& counts, int i, int j);
double Column_percentage(const TwoWayTable& counts, int i, int j);
double Total_percentage(const TwoWayTable& counts, int i, int j);

}  // namespace tarven
