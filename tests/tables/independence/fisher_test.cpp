#include "tables/independence/fisher.h"

#include <gtest/gtest.h>

#include "support/reference_figures.h"
#include "tables/table/two_way.h"

namespace tarven {
namespace {

// Full enumerations outside this program. Where tables tie with the observed one, a bare comparison
// may count a part of them: the p then lies between the one without ties and the one with all.
// Above 1000 cases log factorials differ from the textbook's by 0.0008, and so, relatively, may the
// p.
TEST(Fisher, AgreesWithReferenceEnumerations) {
    for (const auto& row : Reference_figures("independence_tests.json", "exact_two_way")) {
        const TwoWayTable table =
            Table_of_rows(row.at("counts").get<std::vector<std::vector<int>>>());
        const bool gamma = row.contains("p_gamma_1sided");
        const std::string name =
            row.at("project").get<std::string>() + row.at("table").get<std::string>();
        const double error = table.Total() > 1000 ? 1e-3 : 1e-10;
        const double at_least = table.Total() > 1000 ? 1 - error : 1 + 1e-9;
        for (const char* symbol : {"X2", "G2", "D2"}) {
            StatisticRule rule;
            rule.statistic = symbol[0] == 'X'   ? Statistic::pearson
                             : symbol[0] == 'G' ? Statistic::deviance
                                                : Statistic::power_divergence;
            const FisherRecord f = Enumerate_tables(table, rule, gamma);
            const std::string p = std::string("p_") + symbol;
            EXPECT_EQ(f.tables, row.at("tables").get<std::int64_t>()) << name;
            EXPECT_NEAR(f.total_probability, 1, error) << name;
            EXPECT_NEAR(static_cast<double>(f.statistic.statistic), row.at(symbol).get<double>(),
                        1e-9)
                << name;
            EXPECT_LE(f.p_exact, row.at(p).get<double>() * (1 + error)) << name << symbol;
            EXPECT_GT(f.p_exact, row.at(p + "_strict").get<double>() * at_least) << name << symbol;
            if (!gamma) continue;
            EXPECT_NEAR(f.gamma.gamma, row.at("gamma").get<double>(), 1e-11) << name;
            EXPECT_NEAR(f.p_gamma_exact, row.at("p_gamma_1sided").get<double>(), error) << name;
        }
    }
}

TEST(Fisher, ListsEveryTableOnceColumnByColumn) {
    const TwoWayTable table = Table_of_rows({{1, 1}, {1, 0}, {0, 2}});
    std::vector<std::vector<int>> first_columns;
    double total = 0;
    const FisherRecord f = Enumerate_tables(table, {}, true, {}, [&](const FisherTable& t) {
        EXPECT_EQ(t.number, static_cast<std::int64_t>(first_columns.size()) + 1);
        first_columns.push_back({t.table(1, 1), t.table(2, 1), t.table(3, 1)});
        for (int i = 1; i <= 3; ++i) EXPECT_EQ(t.table(i, 1) + t.table(i, 2), table(i, 3));
        EXPECT_EQ(t.statistic, Sum_of_statistic(t.table, Expected_under_independence(table), {}));
        EXPECT_EQ(t.gamma, Gamma_of_table(t.table).gamma);
        total += t.probability;
    });
    const std::vector<std::vector<int>> expected = {
        {0, 0, 2}, {0, 1, 1}, {1, 0, 1}, {1, 1, 0}, {2, 0, 0}};
    EXPECT_EQ(first_columns, expected);
    EXPECT_EQ(f.tables, 5);
    EXPECT_NEAR(total, 1, 1e-14);
}

TEST(Fisher, EdgesAndStop) {
    const FisherRecord empty = Enumerate_tables(TwoWayTable(2, 2), {}, true);
    EXPECT_EQ(empty.tables, 1);
    EXPECT_NEAR(empty.p_exact, 1, 1e-15);
    const FisherRecord one_row = Enumerate_tables(Table_of_rows({{3, 0, 4}}), {}, true);
    EXPECT_EQ(one_row.tables, 1);
    EXPECT_NEAR(one_row.p_gamma_exact, 1, 1e-15);  // gamma 0: every table counts
    const TwoWayTable large = Table_of_rows({{9, 9, 9}, {9, 9, 9}, {9, 9, 9}});
    int asked = 0;
    const FisherRecord stopped = Enumerate_tables(large, {}, false, [&] { return ++asked == 3; });
    EXPECT_TRUE(stopped.stopped);
    EXPECT_EQ(stopped.tables, 3 * 1024);
}

}  // namespace
}  // namespace tarven
