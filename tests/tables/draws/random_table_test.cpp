#include "tables/draws/random_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <random>

#include "support/reference_figures.h"
#include "tables/draws/cell_draws.h"
#include "tables/numbers/log_factorial.h"

namespace tarven {
namespace {

Margins Margins_of(const std::vector<std::int64_t>& rows,
                   const std::vector<std::int64_t>& columns) {
    return {rows, columns, std::accumulate(rows.begin(), rows.end(), std::int64_t{0})};
}

/// `cases` cases over `parts` categories, some of them favoured, some perhaps empty.
std::vector<std::int64_t> Random_margin(std::mt19937& random, int parts, std::int64_t cases) {
    std::vector<double> weight(static_cast<std::size_t>(parts));
    for (double& w : weight) w = std::pow(std::uniform_real_distribution<>(0, 1)(random), 3);
    std::discrete_distribution<std::size_t> part(weight.begin(), weight.end());
    std::vector<std::int64_t> margin(weight.size());
    const std::int64_t step = std::max<std::int64_t>(1, cases / 1000);
    for (std::int64_t given = 0; given < cases; given += step)
        margin[part(random)] += std::min(step, cases - given);
    return margin;
}

TEST(RandomTable, GivesTheReferenceTablesFromSeed9) {
    for (const auto& entry : Reference_figures("numbers.json", "random_table")) {
        const Margins margins = Margins_of(entry.at("rows").get<std::vector<std::int64_t>>(),
                                           entry.at("cols").get<std::vector<std::int64_t>>());
        RandomStream plain{entry.at("seed").get<std::uint32_t>()}, fast = plain;
        DrawMemory memory;
        for (const auto& rows : entry.at("tables")) {
            const TwoWayTable expected = Table_of_rows(rows.get<std::vector<std::vector<int>>>());
            TwoWayTable table(expected.rows, expected.columns), fast_table = table;
            Random_table(margins, plain, table);
            Draw_table(margins, fast, memory, fast_table);
            EXPECT_EQ(table.cells, expected.cells);
            EXPECT_EQ(fast_table.cells, expected.cells);
        }
        EXPECT_EQ(plain.word, entry.at("word_after").get<std::uint32_t>());
        EXPECT_EQ(fast.word, plain.word);
    }
}

// The fast road must give the plain one's tables cell by cell: small and large totals, lopsided and
// empty margins, counts on both sides of 1000, where log factorials change their formula.
TEST(RandomTable, FastDrawsEqualPlainDraws) {
    struct Case {
        int rows, columns;
        std::int64_t cases;
        int margins, tables;
    };
    std::mt19937 random(1);
    std::int64_t cells = 0;
    for (const Case& c :
         {Case{2, 2, 12, 300, 60}, Case{3, 3, 9, 300, 60}, Case{5, 6, 500, 30, 300},
          Case{3, 4, 42, 60, 300}, Case{2, 2, 512, 60, 40}, Case{2, 2, 1003, 40, 40},
          Case{2, 3, 2500, 20, 40}, Case{4, 4, 9000, 4, 40}, Case{57, 57, 4000, 1, 3},
          Case{2, 2, 140000, 2, 20}, Case{1, 5, 30, 2, 3}, Case{5, 1, 30, 2, 3},
          Case{3, 3, 0, 1, 2}}) {
        DrawMemory memory;
        for (int m = 0; m < c.margins; ++m) {
            const Margins margins = Margins_of(Random_margin(random, c.rows, c.cases),
                                               Random_margin(random, c.columns, c.cases));
            RandomStream plain{static_cast<std::uint32_t>(random())}, fast = plain;
            for (int k = 0; k < c.tables; ++k) {
                TwoWayTable a(c.rows, c.columns), b(c.rows, c.columns);
                Random_table(margins, plain, a);
                Draw_table(margins, fast, memory, b);
                ASSERT_EQ(a.cells, b.cells) << c.rows << 'x' << c.columns << ' ' << c.cases;
                ASSERT_EQ(plain.word, fast.word);
                cells += (c.rows - 1) * (c.columns - 1);
            }
        }
    }
    EXPECT_GT(cells, 300000);
}

/// U at the words next to a cumulative probability, where rounding decides.
TEST(RandomTable, FastDrawsEqualPlainDrawsAtTheEdgesOfTheSteps) {
    std::mt19937 random(2);
    DrawMemory memory;
    for (int k = 0; k < 60; ++k) {
        const std::int64_t N = k % 4 == 0   ? 1200 + k
                               : k % 4 == 1 ? 505 + k / 4  // up to 512 a walk is made of products
                                            : 2 + static_cast<std::int64_t>(random() % 60);
        memory.Cover(N);
        const std::int64_t r = 1 + static_cast<std::int64_t>(random()) % (N - 1);
        const std::int64_t c = 1 + static_cast<std::int64_t>(random()) % (N - 1);
        const CellDraw cell = Cell_draw(r, c, N);
        CellRow row;
        ASSERT_TRUE(memory.Row(cell, 100000, row));
        for (std::size_t v = 0; v < std::min<std::size_t>(row.length, 12); ++v) {
            const std::uint32_t edge = static_cast<std::uint32_t>(row.Threshold(v)) ^ 0x80000000u;
            for (const std::uint32_t word : {edge - 1, edge, edge + 1}) {
                const std::int64_t plain = Cell_for_uniform(cell, word * 0x1p-32);
                ASSERT_EQ(row.groups[Place_in_row(row.groups.data(), word)], plain)
                    << r << ' ' << c << ' ' << N << ' ' << word;
                DrawMemory fresh;  // walks: nothing has been met before
                fresh.Cover(N);
                ASSERT_EQ(fresh.Cell(r, c, N, word), plain);
            }
        }
    }
}

// One case of a row among a power of two: the cumulative probabilities are words exactly, but for
// the rounding of the log factorials. Only the prescribed sum can tell on which side it falls.
TEST(RandomTable, DrawsOnAStepAreSettledByThePrescribedSum) {
    std::int64_t settled = 0;
    for (const std::int64_t N : {2, 4, 8, 16, 64})
        for (std::int64_t c = 1; c < N; ++c) {
            const CellDraw cell = Cell_draw(1, c, N);
            const auto first = static_cast<std::uint64_t>(cell.x0 == 0 ? N - c : c);
            const auto word =
                static_cast<std::uint32_t>((first << 32) / static_cast<std::uint64_t>(N));
            const std::int64_t plain = Cell_for_uniform(cell, word * 0x1p-32);
            DrawMemory memory;
            EXPECT_EQ(memory.Cell(1, c, N, word), plain) << c << " of " << N;
            settled += memory.settled_plainly;
            CellRow row;
            ASSERT_TRUE(memory.Row(cell, 8, row));
            EXPECT_EQ(row.groups[Place_in_row(row.groups.data(), word)], plain) << c << " of " << N;
        }
    EXPECT_GT(settled, 50);
}

TEST(RandomTable, WalkStaysWithinItsBoundOfThePrescribedProbabilities) {
    // Margins beyond the tables of factors, where the ratio comes from a formula.
    DrawMemory memory;
    const std::int64_t N = 400000;
    memory.Cover(N);
    std::mt19937 random(3);
    int walks = 0;
    for (int k = 0; k < 60; ++k) {
        const std::int64_t r = 900 + static_cast<std::int64_t>(random() % 1000);
        const std::int64_t c = 1 + static_cast<std::int64_t>(random()) % (N - 1);
        const auto word = static_cast<std::uint32_t>(random());
        ASSERT_EQ(memory.Cell(r, c, N, word), Cell_for_uniform(Cell_draw(r, c, N), word * 0x1p-32));
        ++walks;
    }
    EXPECT_LT(memory.settled_plainly, walks / 2);
}

TEST(RandomTable, KeepsItsMargins) {
    std::mt19937 random(4);
    RandomStream stream{44};
    DrawMemory memory;
    for (int k = 0; k < 200; ++k) {
        const int R = 1 + static_cast<int>(random() % 6), C = 1 + static_cast<int>(random() % 6);
        const Margins margins =
            Margins_of(Random_margin(random, R, 80), Random_margin(random, C, 80));
        TwoWayTable table(R, C);
        Draw_table(margins, stream, memory, table);
        for (int i = 1; i <= R; ++i)
            EXPECT_EQ(table(i, C + 1), margins.row[static_cast<std::size_t>(i - 1)]);
        for (int j = 1; j <= C; ++j)
            EXPECT_EQ(table(R + 1, j), margins.column[static_cast<std::size_t>(j - 1)]);
        EXPECT_GE(*std::min_element(table.cells.begin(), table.cells.end()), 0);
    }
}

TEST(RandomTable, TakesNoNumberForAnEmptyRowOrAFullColumn) {
    DrawMemory memory;
    TwoWayTable table(3, 3);
    RandomStream stream{9};
    Draw_table(Margins_of({0, 2, 3}, {0, 2, 3}), stream, memory, table);
    RandomStream one_draw{9};
    Random_word(one_draw);
    EXPECT_EQ(stream.word, one_draw.word);  // only the cell of row 2, column 2
}

TEST(RandomTable, FrequenciesAreHypergeometric) {
    const Margins margins = Margins_of({3, 4, 2}, {2, 4, 3});
    RandomStream stream{9};
    DrawMemory memory;
    std::map<std::vector<std::int32_t>, int> seen;
    constexpr int draws = 400000;
    TwoWayTable table(3, 3);
    for (int k = 0; k < draws; ++k) {
        Draw_table(margins, stream, memory, table);
        ++seen[table.cells];
    }
    Extended constant = -Log_factorial(9);
    for (const std::int64_t n : {3, 4, 2, 2, 4, 3}) constant += Log_factorial(n);
    double chi_square = 0, probability = 0;
    for (const auto& [cells, count] : seen) {
        Extended log_p = constant;
        for (int i = 0; i < 3; ++i)
            for (int j = 0; j < 3; ++j)
                log_p -= Log_factorial(cells[static_cast<std::size_t>(4 * i + j)]);
        const double e = draws * static_cast<double>(std::exp(log_p));
        probability += e / draws;
        chi_square += (count - e) * (count - e) / e;
    }
    EXPECT_NEAR(probability, 1, 1e-12);  // every possible table was met
    const auto df = static_cast<double>(seen.size()) - 1;
    EXPECT_NEAR(chi_square, df, 4 * std::sqrt(2 * df));
}

TEST(RandomTable, MarginsOfFittedTablesAreRoundedToEven) {
    ExpectedTable expected(2, 2);
    expected(1, 3) = 2.5, expected(2, 3) = 3.5, expected(3, 1) = 0.5, expected(3, 2) = 5.49;
    expected(3, 3) = 6;
    const Margins margins = Margins_of_expected(expected);
    EXPECT_EQ(margins.row, (std::vector<std::int64_t>{2, 4}));
    EXPECT_EQ(margins.column, (std::vector<std::int64_t>{0, 5}));
    EXPECT_EQ(margins.total, 6);
    EXPECT_FALSE(Margins_agree(margins));
    expected(1, 3) = -4, expected(2, 3) = std::nan(""), expected(3, 3) = 1e300;
    RandomStream stream{9};
    Random_table(expected, stream);  // hostile margins end, and stay in their range
    EXPECT_EQ(Margins_of_expected(expected).total, 2147483647);
}

TEST(RandomStream, FirstNumbersFromTheReferenceSeeds) {
    const auto figures = Reference_figures("numbers.json", "generator");
    RandomStream stream;
    Set_seed(stream, 9);
    RandomStream real = stream, ten = stream, million = stream;
    for (const auto& row : figures.at("seed9")) {
        EXPECT_EQ(Random_word(stream), row.at("word").get<std::uint32_t>());
        EXPECT_EQ(Random_real(real), Real_of(row.at("real")));
        EXPECT_EQ(Random_int(ten, 10), row.at("int10").get<std::uint32_t>());
        EXPECT_EQ(Random_int(million, 1000000), row.at("int1000000").get<std::uint32_t>());
    }
    for (const std::uint32_t seed : {0u, 44u, 255u}) {
        Set_seed(stream, seed);
        for (const auto& word : figures.at("seed" + std::to_string(seed)))
            EXPECT_EQ(Random_word(stream), word.get<std::uint32_t>());
    }
    Set_seed(stream, 9);
    for (int k = 0; k < 1000000; ++k) Random_word(stream);
    EXPECT_EQ(stream.word, figures.at("word_after_1000000_draws_from_9").get<std::uint32_t>());
}

TEST(RandomStream, ClockSeedIsTheMillisecondOfTheDay) {
    using namespace std::chrono;
    const auto moment = sys_days{2024y / 2 / 29} + 23h + 59min + 58s + 7ms;
    EXPECT_EQ(Seed_of_time(moment), ((23u * 60 + 59) * 60 + 58) * 1000 + 7);
}

}  // namespace
}  // namespace tarven
