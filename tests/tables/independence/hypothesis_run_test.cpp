#include "tables/independence/hypothesis_run.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/block_of_cases.h"

namespace tarven {
namespace {

/// The slice of some categories of Z, counted case by case; a category above DIM takes all.
TwoWayTable Counted(const BlockOfCases& block, const Hypothesis& h, std::span<const int> category) {
    const TestedPair pair = Tested_pair(h);
    const std::vector<int> z = Conditioning_variables(h);
    TwoWayTable counts(block.DIM[static_cast<std::size_t>(pair.X)],
                       block.DIM[static_cast<std::size_t>(pair.Y)]);
    for (const std::vector<int>& one : block.cases) {
        const auto value = [&](int k) { return one[static_cast<std::size_t>(k - 1)]; };
        bool in = true;
        for (std::size_t k = 0; k < z.size(); ++k)
            in = in && (category[k] > block.DIM[static_cast<std::size_t>(z[k])] ||
                        value(z[k]) == category[k]);
        if (in) ++counts(value(pair.X), value(pair.Y));
    }
    Fill_margins(counts);
    return counts;
}

TEST(TestRun, SlicesHoldTheCasesOfTheirCategories) {
    const BlockOfCases block = Random_block({2, 4, 3, 2, 3}, 120, 5);
    const ContingencyTable table = block.table();
    for (const Hypothesis& h : All_hypotheses(5)) {
        const LocalHypothesis local = Form_xyz_table(table, h, true);
        std::int64_t expected = 1;
        for (const TableVariable& z : local.Z) expected *= z.DIM + 1;
        ASSERT_EQ(static_cast<std::int64_t>(local.slices.size()), expected);
        for (std::size_t s = 0; s < local.slices.size(); ++s) {
            const LocalSlice& slice = local.slices[s];
            EXPECT_EQ(slice.counts, Counted(block, h, slice.category));
            // The first conditioning variable changes fastest.
            if (s == 0) continue;
            const LocalSlice& before = local.slices[s - 1];
            EXPECT_TRUE(
                std::lexicographical_compare(before.category.rbegin(), before.category.rend(),
                                             slice.category.rbegin(), slice.category.rend()));
        }
    }
}

TEST(TestRun, TheSilentLoopEqualsTheLoopOverStoredSlices) {
    const BlockOfCases block = Random_block({2, 4, 3, 2, 3}, 150, 6);
    const ContingencyTable table = block.table();
    for (const Hypothesis& h : All_hypotheses(5)) {
        DrawMemory memory;
        RandomStream stream;
        const GlobalOutcome silent = Test_globally(table, h, {}, stream, memory);
        const LocalHypothesis local = Form_xyz_table(table, h, false);
        StrataSums sums;
        bool missing = false;
        for (const LocalSlice& slice : local.slices) {
            Add_stratum(sums, slice.counts, Expected_of_slice(slice.counts), true, {});
            missing = missing || Degrees_of_freedom(slice.counts) == 0;
        }
        EXPECT_EQ(silent.row, Row_of(Asymptotic_test(sums, true)));
        EXPECT_EQ(silent.missing_slices, missing);
    }
}

TEST(TestRun, AHypothesisKeepsItsPInEveryOrderOfTheList) {
    const BlockOfCases block = Random_block({2, 3, 2, 3}, 200, 7);
    const ContingencyTable table = block.table();
    std::vector<Hypothesis> list = All_hypotheses(4);
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 100;
    RandomStream stream;
    const std::vector<GlobalOutcome> forward = Test_globally(table, list, settings, stream);
    std::reverse(list.begin(), list.end());
    const std::vector<GlobalOutcome> backward = Test_globally(table, list, settings, stream);
    std::int64_t tested = 0;
    for (std::size_t k = 0; k < list.size(); ++k) {
        EXPECT_EQ(forward[k].row, backward[list.size() - 1 - k].row);
        tested += forward[k].row.Nsim > 0;
    }
    EXPECT_GT(tested, 10);
}

TEST(TestRun, AStopKeepsTheReplicatesDoneAndFinishesAsymptotically) {
    const BlockOfCases block = Random_block({2, 3, 2}, 200, 8);
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 2147483647;
    RandomStream stream;
    int asked = 0;
    RunControl control;
    control.stop = [&] { return ++asked == 30; };
    const std::vector<GlobalOutcome> outcomes =
        Test_globally(block.table(), All_hypotheses(3), settings, stream, control);
    EXPECT_EQ(outcomes[0].row.Nsim, 30);
    for (std::size_t k = 1; k < outcomes.size(); ++k) {
        EXPECT_EQ(outcomes[k].row.Nsim, 0);
        EXPECT_LT(outcomes[k].row.PAsymp, 1);
    }
}

TEST(TestRun, RemarksTellWhatIsMissing) {
    GlobalOutcome outcome;
    outcome.row = Untested_result();
    outcome.missing_slices = true;
    EXPECT_EQ(Remarks(outcome, "A&B"),
              (std::vector<std::string>{"Warning - missing slices in XYZ-table",
                                        "A&B   No degrees of freedom"}));
    outcome.too_many_slices = true;
    EXPECT_EQ(Remarks(outcome, "A&B")[0], "XYZ1: Failure creating 3-way table - too many slices ");
}

}  // namespace
}  // namespace tarven
