#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "support/reference_figures.h"
#include "support/session.h"
#include "tables/independence/multiple_testing_report.h"
#include "tables/independence/summary_report.h"

namespace tarven {
namespace {

std::vector<double> Random_p(std::mt19937& random, std::size_t n) {
    std::uniform_real_distribution<double> uniform;
    std::vector<double> p(n);
    for (double& one : p) one = std::pow(uniform(random), 3);
    return p;
}

/// How many the adjusted p-values of the step-up procedure reject: the least n p_(k)/k over all
/// ranks from that of a p on is at most q.
std::ptrdiff_t Rejected_by_adjustment(std::vector<double> p, double q) {
    std::sort(p.begin(), p.end());
    double least = 1;
    std::ptrdiff_t rejected = 0;
    for (std::size_t k = p.size(); k >= 1; --k) {
        least = std::min(least, static_cast<double>(p.size()) / static_cast<double>(k) * p[k - 1]);
        rejected += least <= q;
    }
    return rejected;
}

std::ptrdiff_t Rejected(const std::vector<double>& p, double limit) {
    return std::count_if(p.begin(), p.end(), [&](double one) { return one <= limit; });
}

TEST(BenjaminiHochberg, RejectsWhatAdjustedPValuesReject) {
    std::mt19937 random(4);
    for (std::size_t n = 1; n <= 60; ++n)
        for (const double q : {0.05, 0.01}) {
            const std::vector<double> p = Random_p(random, n);
            const double limit = Benjamini_Hochberg_limit(p, q);
            EXPECT_EQ(Rejected(p, limit), Rejected_by_adjustment(p, q));
        }
}

TEST(BenjaminiHochberg, DecidesAsRDoes) {
    const double rates[] = {0.05, 0.01, 0.001};
    const nlohmann::json lists = Reference_figures("false_discovery.json", "lists");
    ASSERT_EQ(lists.size(), 24);
    for (const nlohmann::json& list : lists) {
        const auto p = list.at("p").get<std::vector<double>>();
        for (std::size_t q = 0; q < 3; ++q)
            EXPECT_EQ(Rejected(p, Benjamini_Hochberg_limit(p, rates[q])),
                      list.at("rejected").at(q).get<std::ptrdiff_t>())
                << list.dump() << " at " << rates[q];
    }
    for (const nlohmann::json& list : Reference_figures("false_discovery.json", "projects")) {
        const auto p = list.at("p").get<std::vector<double>>();
        for (std::size_t q = 0; q < 3; ++q) {
            const double limit = Benjamini_Hochberg_limit(p, rates[q]);
            EXPECT_NEAR(limit, list.at("limits").at(q).get<double>(), 1e-12);
            EXPECT_EQ(Rejected(p, limit), list.at("rejected").at(q).get<std::ptrdiff_t>());
        }
    }
}

TEST(BenjaminiHochberg, LimitsAtTheEdges) {
    const auto limit = [](std::vector<double> p) { return Benjamini_Hochberg_limit(p, 0.05); };
    EXPECT_EQ(limit({0.9}), 0.05);
    EXPECT_EQ(limit({0, 0, 0, 0}), 0.05);
    EXPECT_EQ(limit({0.9, 0.8, 0.7, 0.6}), 0.05 / 4);   // nothing rejected: q/n, not 0
    EXPECT_EQ(limit({0.025, 0.9, 0.025, 0.9}), 0.025);  // both at the critical rank
    EXPECT_EQ(limit({}), 0.05);
}

TEST(CompareGroups, ClassesHoldNoRejectedPairAndAllPairsAreAccountedFor) {
    std::mt19937 random(7);
    for (int k = 0; k < 200; ++k) {
        const int groups = 2 + k % 6;
        const std::vector<double> p =
            Random_p(random, static_cast<std::size_t>(groups * (groups - 1) / 2));
        const PairwiseComparison c = Compare_groups(groups, p);
        std::size_t members = 0, within = 0;
        for (const std::vector<int>& one : c.classes) {
            members += one.size();
            within += one.size() * (one.size() - 1) / 2;
            for (const ComparedPair& pair : c.rejected)
                EXPECT_FALSE(std::count(one.begin(), one.end(), pair.i) &&
                             std::count(one.begin(), one.end(), pair.j));
        }
        EXPECT_EQ(members, static_cast<std::size_t>(groups));
        EXPECT_EQ(within + c.rejected.size() + c.rejected_for_coherence.size(), p.size());
    }
}

TEST(CompareGroups, AnAcceptedPairYieldsToTheCloserOne) {
    // 1-2 and 2-3 are accepted, 1-3 is not; 2 goes with 3, which is closer.
    const PairwiseComparison c = Compare_groups(3, std::vector<double>{0.2, 0.001, 0.6});
    EXPECT_EQ(c.classes, (std::vector<std::vector<int>>{{1}, {2, 3}}));
    EXPECT_EQ(c.rejected, (std::vector<ComparedPair>{{1, 3, 0.001}}));
    EXPECT_EQ(c.rejected_for_coherence, (std::vector<ComparedPair>{{1, 2, 0.2}}));
}

TEST(CompareGroups, ReportsClassesAndThePairsThatCoherenceRejects) {
    const auto reported = [](const PairwiseComparison& c, const std::string& text) {
        return Has_line_with(Pairwise_comparison_lines(c, {7, 8, 9}), text);
    };
    PairwiseComparison c = Compare_groups(3, std::vector<double>{0.2, 0.001, 0.6});
    EXPECT_TRUE(reported(c, "  7 and 9 p = 0.0010"));
    EXPECT_TRUE(reported(c, "  8 9"));
    EXPECT_TRUE(reported(c, "  7 & 8  p = 0.2000"));
    EXPECT_FALSE(reported(c, "Collapsed group was not identified"));
    c.classes.pop_back();
    EXPECT_TRUE(reported(c, "Collapsed group was not identified for grp no. 9"));
    EXPECT_TRUE(reported(Compare_groups(3, std::vector<double>(3, 0.001)),
                         "No collaps after adjustment for coherence"));
}

// Four p-values: 0.001 <= 0.05/4 alone at 5 %, at 1 % too, at 0.1 % not, where the limit is q/n.
TEST(MultipleTesting, ReportsLimitsInPlainWords) {
    const std::vector<double> p{0.6, 0.001, 0.3, 0.04};
    EXPECT_EQ(
        Plain_rejection_line(p, 0.05),
        "Benjamini-Hochberg rejects all p-values less than 0.012500 to control the FDR at 0.05");
    EXPECT_EQ(Plain_rejection_line({p.data(), 1}, 0.05),
              "Benjamini-Hochberg accepts all p-values when FDR is controlled at 0.05");
    EXPECT_EQ(Critical_level_lines(p)[3], " FDR = 0.001        reject if p<= 0.000250");
    EXPECT_EQ(Bonferroni_line(4, 0.04),
              " Bonferoni adjusted p-value of the least significant hypothesis is equal to 0.1600");
    EXPECT_EQ(Bonferroni(4, 0.3), 1);
}

TEST(CollectPValues, TakesTestedRowsAndTheGammaOfThoseThatHaveOne) {
    Hypothesis with, without;
    with.Kind = kind::with_gamma;
    without.Kind = kind::without_gamma;
    const std::vector<Hypothesis> list{without, with, with};
    std::vector<TestResult> rows(3, Untested_result());
    rows[0].Df = rows[1].Df = 2;
    rows[0].PAsymp = 0.5F;
    rows[1].PAsymp = 0.25F;
    rows[1].PGammaAsymp = 0.125F;
    TestSettings settings;
    EXPECT_EQ(Collect_p_values(list, rows, settings).p, (std::vector<double>{0.5, 0.25, 0.125}));
    settings.TwoSided = true;
    const CollectedPValues two_sided = Collect_p_values(list, rows, settings);
    EXPECT_EQ(two_sided.p, (std::vector<double>{0.5, 0.25, 0.25}));
    EXPECT_EQ(two_sided.smallest_row, 2);
    EXPECT_EQ(two_sided.largest_row, 1);
}

// 0.05F is above 0.05 in double precision: list and marks compare in that of the rows.
TEST(BenjaminiHochberg, APOfARowThatEqualsTheLimitIsAtMostTheLimit) {
    const std::vector<double> rows{0.05F, 0.04F};
    EXPECT_GT(rows[0], 0.05);
    EXPECT_EQ(Benjamini_Hochberg_limit(rows, 0.05), 0.05);
    EXPECT_TRUE(At_most_limit(rows[0], 0.05));
    EXPECT_FALSE(At_most_limit(0.0500001F, 0.05));
    EXPECT_EQ(Compare_groups(2, std::vector<double>{0.05F}).rejected.size(), 1U);
    TestResult row{.Statistic = 3.8F, .Df = 1, .PAsymp = 0.05F};
    const auto lines = exa_summary1({{.label = "A&B", .result = row}},
                                    Rejection_limits(std::vector<double>{0.05F}), {});
    EXPECT_NE(lines[2].find(" x "), std::string::npos) << lines[2];
}

TEST(BenjaminiHochberg, WithoutAPThereIsNoLimitToPrint) {
    const auto lines =
        exa_summary1({{.label = "A&B", .result = Untested_result()}}, Rejection_limits({}), {});
    for (const std::string& line : lines)
        EXPECT_EQ(line.find("rejects if"), std::string::npos) << line;
    EXPECT_EQ(False_discovery_lines({}, {}),
              std::vector<std::string>{"Benjamini-Hochberg adjustment of 0 p-values"});
}

TEST(BenjaminiHochberg, AValueThatIsNoneCountsAsOne) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(Benjamini_Hochberg_limit(std::vector<double>{0.01, nan}, 0.05), 0.025);
    EXPECT_EQ(Benjamini_Hochberg_limit(std::vector<double>{nan, 0.01}, 0.05), 0.025);
}

TEST(CompareGroups, OfEqualLinkagesTheFirstPairOfClassesIsJoined) {
    // 1-2 and 2-3 are equally alike, 1-3 are not.
    const PairwiseComparison c = Compare_groups(3, std::vector<double>{0.5, 0.001, 0.5});
    EXPECT_EQ(c.classes, (std::vector<std::vector<int>>{{1, 2}, {3}}));
}

}  // namespace
}  // namespace tarven
