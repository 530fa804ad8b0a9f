#include "tables/table/contingency_table.h"

#include <gtest/gtest.h>

#include <random>

namespace tarven {

namespace {

std::vector<TableVariable> Variables_of(const std::vector<int>& dims) {
    std::vector<TableVariable> variables;
    for (const int dim : dims)
        variables.push_back(
            {.label = static_cast<char>('A' + static_cast<int>(variables.size())), .DIM = dim});
    return variables;
}

/// Moves `category` to the next combination of 1..last[k], the first fastest; false at the end.
bool Next(std::vector<int>& category, const std::vector<int>& last) {
    for (std::size_t k = 0; k < category.size(); ++k) {
        if (++category[k] <= last[k]) return true;
        category[k] = 1;
    }
    return false;
}

/// Every cell added to each of its 2^n - 1 margins.
void Add_margins_plainly(ContingencyTable& table, const std::vector<int>& dims) {
    std::vector<int> cell(dims.size(), 1);
    do {
        const std::int32_t count = Read_cell(table, cell);
        for (unsigned subset = 1; subset < 1U << dims.size(); ++subset) {
            std::vector<int> margin = cell;
            for (std::size_t k = 0; k < dims.size(); ++k)
                if (subset >> k & 1) margin[k] = dims[k] + 1;
            table.cells[static_cast<std::size_t>(Cell_number(table, margin) - 1)] += count;
        }
    } while (Next(cell, dims));
}

}  // namespace

TEST(ContingencyTable, MarginsEqualThoseAddedCellByCell) {
    std::mt19937 random(5);
    for (int round = 0; round < 60; ++round) {
        std::vector<int> dims;
        const std::size_t n = 1 + random() % (round % 10 == 0 ? 10 : 5);
        for (std::size_t k = 0; k < n; ++k)
            dims.push_back(static_cast<int>(n > 5 ? 1 + random() % 2 : 1 + random() % 5));
        ContingencyTable table = Make_table(Variables_of(dims), false);
        ASSERT_EQ(table.Nvar(), static_cast<int>(n));
        std::vector<int> cell(n, 1);
        do {
            table.cells[static_cast<std::size_t>(Cell_number(table, cell) - 1)] =
                static_cast<std::int32_t>(random() % 7);
        } while (Next(cell, dims));
        ContingencyTable plain = table;
        Add_margins_plainly(plain, dims);
        Add_margins(table);
        EXPECT_EQ(table.cells, plain.cells);
        Add_margins(table);  // margins are made anew, not added to
        EXPECT_EQ(table.cells, plain.cells);
    }
}

TEST(ContingencyTable, CellNumbersRunThroughAllCellsTheFirstVariableFastest) {
    const ContingencyTable table = Make_table(Variables_of({2, 3, 2}));
    std::vector<int> cell(3, 1);
    std::int64_t expected = 1;
    do {
        EXPECT_EQ(Cell_number(table, cell), expected++);
    } while (Next(cell, {3, 4, 3}));
    EXPECT_EQ(expected - 1, static_cast<std::int64_t>(table.cells.size()));
    EXPECT_EQ(Read_cell(table, std::vector<int>{3, 4, 4}), 0) << "past the cells";
}

TEST(ContingencyTable, BlocksEndAt162230Cells) {
    EXPECT_EQ(Split_cell_number(1), (CellPlace{1, 1}));
    EXPECT_EQ(Split_cell_number(162230), (CellPlace{1, 162230}));
    EXPECT_EQ(Split_cell_number(162231), (CellPlace{2, 1}));
    EXPECT_EQ(Split_cell_number(4866900), (CellPlace{30, 162230}));
}

TEST(ContingencyTable, LimitsHoldExactly) {
    // 300 * 16223 = 4866900 cells with margins.
    EXPECT_TRUE(Check_table_dimensions(2, std::vector<int>{0, 299, 16222}));
    EXPECT_FALSE(Check_table_dimensions(2, std::vector<int>{0, 299, 16223}));
    EXPECT_FALSE(Check_table_dimensions(1, std::vector<int>{0, 4866900}));
    EXPECT_TRUE(Check_table_dimensions(1, std::vector<int>{0, 4866899}));

    const std::vector<int> nine(10, 2);
    EXPECT_FALSE(Check_table_dimensions(9, nine));
    EXPECT_TRUE(Table_dimensions(9, nine, false).ok);
    EXPECT_FALSE(Table_dimensions(85, std::vector<int>(86, 57), false).ok) << "58^85 cells";
    EXPECT_FALSE(Check_table_dimensions(2, std::vector<int>{0, 2, 0}));

    const auto lines = Too_large_lines(4, std::vector<int>{0, 57, 57, 57, 57});
    EXPECT_EQ(lines[0], "Too large table: 57 57 57 57");
    EXPECT_EQ(lines[1], "10556001 CELLS EXCL. MARGINS. (max = 4866900) ");
    EXPECT_EQ(lines[2], "11316496 CELLS INCL. MARGINS. (max = 4866900)");
    EXPECT_EQ(Big_table_too_large_lines(2, std::vector<int>{0, 9, 9})[1],
              "    100 CELLS INCL. MARGINS. (max = 4866900)");
}

TEST(ContingencyTable, StrataAreReadWithTheirMargins) {
    ContingencyTable table = Make_table(Variables_of({2, 2, 2}));
    std::int32_t count = 1;
    for (int k = 1; k <= 2; ++k)
        for (int j = 1; j <= 2; ++j)
            for (int i = 1; i <= 2; ++i)
                table.cells[static_cast<std::size_t>(Cell_number(table, std::vector<int>{i, j, k}) -
                                                     1)] = count++;
    Add_margins(table);
    TwoWayTable second(2, 2);
    second(1, 1) = 5;
    second(2, 1) = 6;
    second(1, 2) = 7;
    second(2, 2) = 8;
    Fill_margins(second);
    EXPECT_EQ(Extract_two_way(table, std::vector<int>{2}), second);
    EXPECT_EQ(Extract_two_way(table, std::vector<int>{3}).Total(), 36);
    EXPECT_DOUBLE_EQ(Row_percentage(second, 1, 1), 100.0 * 5 / 12);
    EXPECT_DOUBLE_EQ(Column_percentage(second, 1, 2), 100.0 * 7 / 15);
    EXPECT_DOUBLE_EQ(Total_percentage(second, 2, 3), 100.0 * 14 / 26);
    EXPECT_EQ(Row_percentage(TwoWayTable(2, 2), 1, 1), 0);
}

}  // namespace tarven
