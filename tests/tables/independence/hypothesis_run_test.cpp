#include "tables/independence/hypothesis_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <new>
#include <thread>

#include "support/block_of_cases.h"
#include "tables/independence/summary_report.h"

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

TEST(HypothesisRun, SlicesHoldTheCasesOfTheirCategories) {
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

TEST(HypothesisRun, TheSilentLoopEqualsTheLoopOverStoredSlices) {
    const BlockOfCases block = Random_block({2, 4, 3, 2, 3}, 150, 6);
    const ContingencyTable table = block.table();
    for (const Hypothesis& h : All_hypotheses(5)) {
        DrawMemory memory;
        RandomStream stream;
        const TestedHypothesis silent = Test_globally(table, h, {}, stream, memory);
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

TEST(HypothesisRun, AHypothesisKeepsItsPInEveryOrderOfTheList) {
    const BlockOfCases block = Random_block({2, 3, 2, 3}, 200, 7);
    const ContingencyTable table = block.table();
    std::vector<Hypothesis> list = All_hypotheses(4);
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 100;
    RandomStream stream;
    const std::vector<TestedHypothesis> forward = Test_globally(table, list, settings, stream);
    std::reverse(list.begin(), list.end());
    const std::vector<TestedHypothesis> backward = Test_globally(table, list, settings, stream);
    std::int64_t tested = 0;
    for (std::size_t k = 0; k < list.size(); ++k) {
        EXPECT_EQ(forward[k].row, backward[list.size() - 1 - k].row);
        tested += forward[k].row.Nsim > 0;
    }
    EXPECT_GT(tested, 10);
}

TEST(HypothesisRun, ThreadsDecideNoDigit) {
    const BlockOfCases block = Random_block({2, 3, 2, 3}, 200, 7);
    const ContingencyTable table = block.table();
    const std::vector<Hypothesis> list = All_hypotheses(4);
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 100;
    RandomStream alone;
    const std::vector<TestedHypothesis> one = Test_globally(table, list, settings, alone);
    RandomStream of_last{settings.Seed};
    DrawMemory memory;
    Test_globally(table, list.back(), settings, of_last, memory);
    EXPECT_EQ(alone, of_last) << "the stream ends where the last hypothesis left it";
    for (const int jobs : {2, 3, 50}) {
        RandomStream stream;
        const std::vector<TestedHypothesis> many =
            Test_globally(table, list, settings, stream, {.jobs = jobs});
        EXPECT_EQ(stream, alone) << "what is drawn next";
        for (std::size_t k = 0; k < list.size(); ++k) EXPECT_EQ(many[k].row, one[k].row);
    }
}

TEST(HypothesisRun, AStopEndsTheWholeListAndTheReportSaysWhatIsMissing) {
    const BlockOfCases block = Random_block({2, 3, 2}, 200, 8);
    const std::vector<Hypothesis> list = All_hypotheses(3);
    std::vector<std::string> labels;
    for (const Hypothesis& h : list) labels.push_back(Hypothesis_label(h, "ABC"));
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 100;
    struct Run {
        std::string name;
        std::function<std::vector<TestedHypothesis>(const RunControl&)> test;
    };
    RandomStream stream;
    const Run runs[] = {{"global",
                         [&](const RunControl& control) {
                             return Test_globally(block.table(), list, settings, stream, control);
                         }},
                        {"local", [&](const RunControl& control) {
                             return Test_locally(block.table(), list, {}, settings, stream,
                                                 control);
                         }}};
    for (const Run& run : runs) {
        int asked = 0;
        // One question before each hypothesis and one after each replicate.
        const std::vector<TestedHypothesis> outcomes =
            run.test({.stop = [&] { return ++asked == 2 * 101 + 31; }});
        ASSERT_EQ(outcomes.size(), 6U);
        EXPECT_EQ(outcomes[1].reached, Reached::end);
        EXPECT_EQ(outcomes[2].reached, Reached::cut_short);
        EXPECT_EQ(outcomes[2].row.Nsim, 30) << run.name;
        EXPECT_EQ(outcomes[3].reached, Reached::not_reached);
        EXPECT_EQ(outcomes[3].row, Untested_result());
        EXPECT_EQ(Stopped_lines(outcomes, labels, settings),
                  (std::vector<std::string>{
                      "", "The tests were stopped: 2 of 6 hypotheses were tested to the end",
                      "  A&C rests on 30 of 100 random tables", "  Not tested: hypotheses 4-6"}))
            << run.name;
    }
    // Asymptotic lists are asked before each hypothesis, whatever the number of threads.
    for (const int jobs : {1, 2}) {
        std::atomic<int> asked = 0;
        const std::vector<TestedHypothesis> outcomes = Test_globally(
            block.table(), list, {}, stream, {.stop = [&] { return ++asked == 3; }, .jobs = jobs});
        EXPECT_EQ(std::count_if(outcomes.begin(), outcomes.end(),
                                [](const auto& one) { return one.reached == Reached::end; }),
                  2);
    }
    EXPECT_TRUE(Stopped_lines(Test_globally(block.table(), list, {}, stream), labels, {}).empty());
}

TEST(HypothesisRun, AFailureOfAThreadReachesTheCaller) {
    RandomStream stream;
    std::atomic<int> calls = 0;
    const auto fails = [&](std::size_t k, RandomStream&, RunMemory&,
                           const StopCheck&) -> TestedHypothesis {
        ++calls;
        if (k == 3) throw std::bad_alloc();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        return {};
    };
    EXPECT_THROW(Run_list(2000, {}, stream, {.jobs = 3}, fails), std::bad_alloc);
    EXPECT_LT(calls, 1000) << "the other threads end as well";
}

TEST(HypothesisRun, TellsItsLengthOnceAndItsEnd) {
    const BlockOfCases block = Random_block({2, 3, 2}, 100, 9);
    const std::vector<Hypothesis> list = All_hypotheses(3);
    TestSettings settings;
    settings.ExactTests = true;
    settings.Nsim = 10;
    RandomStream stream;
    for (const bool local : {false, true}) {
        std::vector<std::int64_t> steps;
        int asked = 0, ended = 0;
        const RunControl control{.begin = [&](std::int64_t n) { steps.push_back(n); },
                                 .stop = [&] { return ++asked < 0; },
                                 .end = [&] { ++ended; }};
        if (local)
            Test_locally(block.table(), list, {}, settings, stream, control);
        else
            Test_globally(block.table(), list, settings, stream, control);
        EXPECT_EQ(steps, std::vector<std::int64_t>{6 * 11});
        EXPECT_EQ(asked, 6 * 11);
        EXPECT_EQ(ended, 1);
    }
}

TEST(HypothesisRun, AHypothesisBeyondTheTableIsNotTested) {
    const BlockOfCases block = Random_block({2, 3}, 100, 9);
    RandomStream stream;
    DrawMemory memory;
    EXPECT_EQ(Test_globally(block.table(), Make_hypothesis(3, 1, 3, {}), {}, stream, memory).row,
              Untested_result());
    EXPECT_EQ(Test_globally(block.table(), Hypothesis{}, {}, stream, memory).row,
              Untested_result());
}

TEST(HypothesisRun, NoTestAgainstTwoFactorsOnABigTableOrWithoutCases) {
    RandomStream stream;
    TestSettings settings;
    settings.PartialTests = true;
    const auto partial = [&](const ContingencyTable& table, const Hypothesis& h) {
        bool made = false;
        const std::vector<TestedHypothesis> rows = Test_locally(
            table, {&h, 1}, {}, settings, stream, {},
            [&](std::size_t, const LocallyTested& one) { made = one.result.partial.has_value(); });
        EXPECT_EQ(rows[0].cases, table.NTOTAL);
        return made;
    };
    const int z[] = {3};
    const BlockOfCases block = Random_block({2, 2, 2}, 100, 9);
    EXPECT_TRUE(partial(block.table(), Make_hypothesis(3, 1, 2, z)));
    ContingencyTable empty = block.table();
    std::fill(empty.cells.begin(), empty.cells.end(), 0);
    empty.NTOTAL = 0;
    EXPECT_FALSE(partial(empty, Make_hypothesis(3, 1, 2, z)));
    ContingencyTable big = Make_table(std::vector<TableVariable>(9), false);
    for (std::int32_t& cell : big.cells) cell = 1;
    Add_margins(big);
    EXPECT_FALSE(partial(big, Make_hypothesis(9, 1, 2, z)));
}

TEST(HypothesisRun, RemarksTellWhatIsMissing) {
    TestedHypothesis outcome;
    outcome.missing_slices = true;
    EXPECT_EQ(Remarks(outcome, "A&B"),
              (std::vector<std::string>{"Warning - missing slices in XYZ-table of A&B",
                                        "A&B   No degrees of freedom"}));
    outcome.too_many_slices = true;
    EXPECT_EQ(Remarks(outcome, "A&B")[0], "XYZ1: Failure creating 3-way table - too many slices ");
    outcome.reached = Reached::not_reached;
    EXPECT_TRUE(Remarks(outcome, "A&B").empty());
}

}  // namespace
}  // namespace tarven
