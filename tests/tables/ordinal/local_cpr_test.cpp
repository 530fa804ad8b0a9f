#include "tables/ordinal/local_cpr.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "support/reference_figures.h"
#include "tables/table/gamma.h"

namespace tarven {
namespace {

TEST(LocalTables, HaveOneValueUnderUniformAssociation) {
    // n_ij = 2^(ij): every adjacent cross-product ratio is 2, so gamma of one step is 1/3.
    TwoWayTable table(4, 5);
    for (int i = 1; i <= 4; ++i)
        for (int j = 1; j <= 5; ++j) table(i, j) = 1 << (i * j);
    const LocalAnalysis analysis = Analysis_of_local_tables(table);
    EXPECT_EQ(analysis.tables.size(), 6U * 10U);
    for (const LocalTable& one : analysis.tables) {
        const int t = (one.k - one.i) * (one.l - one.j);
        EXPECT_NEAR(one.gamma, (std::pow(2, t) - 1) / (std::pow(2, t) + 1), 1e-12);
        EXPECT_NEAR(one.cpr, 1.0 / 3, 1e-12);
    }
    EXPECT_NEAR(analysis.all.cpr, 1.0 / 3, 1e-12);
    EXPECT_NEAR(analysis.adjacent.gamma, 1.0 / 3, 1e-12);
    for (const LocalAnalysis::Parallel& pair : analysis.rows)
        EXPECT_NEAR(pair.summary.cpr, 1.0 / 3, 1e-12);
}

TEST(LocalTables, AddUpToTheWholeTable) {
    std::mt19937 random(5);
    std::uniform_int_distribution<int> count(0, 6);
    for (int k = 0; k < 60; ++k) {
        TwoWayTable table(2 + k % 4, 2 + k % 3);
        for (int i = 1; i <= table.rows; ++i)
            for (int j = 1; j <= table.columns; ++j) table(i, j) = count(random);
        Fill_margins(table);
        const LocalAnalysis analysis = Analysis_of_local_tables(table);
        const Concordance pairs = Concordance_of(table);
        EXPECT_EQ(2 * analysis.all.C, pairs.concordant());
        EXPECT_EQ(2 * analysis.all.D, pairs.discordant());
        std::int64_t of_rows = 0, of_columns = 0;
        for (const auto& pair : analysis.rows) of_rows += pair.summary.C - pair.summary.D;
        for (const auto& pair : analysis.columns) of_columns += pair.summary.C - pair.summary.D;
        EXPECT_EQ(of_rows, analysis.all.C - analysis.all.D);
        EXPECT_EQ(of_columns, of_rows);
    }
}

TEST(LocalTables, AtTheEdges) {
    EXPECT_EQ(Local_cpr(1, 4), 1);  // a root of 0 is 0
    EXPECT_EQ(Local_cpr(-1, 4), -1);
    EXPECT_EQ(Local_cpr(0, 4), 0);
    // Columns 2 and 3 have no untied pair.
    const TwoWayTable table = Table_of_rows({{1, 0, 0}, {0, 2, 3}});
    const LocalAnalysis analysis = Analysis_of_local_tables(table);
    EXPECT_FALSE(analysis.tables[2].defined);
    EXPECT_EQ(analysis.all.gamma, 1);
    EXPECT_EQ(analysis.all.cpr, 1);
    EXPECT_FALSE(Analysis_of_local_tables(TwoWayTable(2, 2)).all.defined);
    // Neighbouring columns weigh 4^2 and 6^2, with values 1 and -1; columns 1 and 3 are not
    // defined.
    const TwoWayTable mixed = Table_of_rows({{2, 0, 4}, {0, 2, 0}});
    const LocalSummary mean = Analysis_of_local_tables(mixed).all;
    EXPECT_NEAR(mean.cpr, (16.0 - 36.0) / (16.0 + 36.0), 1e-12);
    EXPECT_NEAR(mean.gamma, (4.0 - 8.0) / (4.0 + 8.0), 1e-12);
}

}  // namespace
}  // namespace tarven
