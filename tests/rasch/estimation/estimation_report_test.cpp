// What a report says of an estimate beyond what the recorded session of GRM shows.

#include "rasch/estimation/estimation_report.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/item_models.h"
#include "support/item_samples.h"
#include "support/session.h"

namespace tarven {
namespace {

using Lines = std::vector<std::string>;

EstimatedGLLRM Estimate(const GLLRM& model, const ResponseTable& table,
                        const EstimationSettings& settings = {}) {
    EstimationMemory memory;
    return *Estimate_GLLRM(model, table, settings, memory);
}

bool Has_line(const Lines& lines, const std::string& text) {
    return std::find(lines.begin(), lines.end(), text) != lines.end();
}

/// Six persons on two items and a variable of three categories.
struct SmallEstimate : ::testing::Test {
    GLLRM model = Model_of_dims({3, 2}, {3});
    ResponseTable table = Table_of_persons(
        model,
        {{0, 1, 1}, {1, 0, 2}, {2, 0, 3}, {1, 1, 1}, {0, 0, 2}, {2, 1, 3}, {1, 0, 1}, {0, 1, 3}});
    Lines Result_of(const EstimatedGLLRM& e) {
        return Estimation_lines(EstimationBlock::result, e);
    }
};

TEST_F(SmallEstimate, TellsWhichPersonsTookPart) {
    EstimationSettings settings;
    settings.filter.lowest_score = 1;
    settings.filter.highest_score = 2;
    settings.filter.categories = {{1, 1, 2}};
    settings.filter.values = PersonFilter::Values{1, Number(1) | Number(3)};
    const Lines lines =
        Estimation_lines(EstimationBlock::assumptions, Estimate(model, table, settings));
    EXPECT_TRUE(Has_line(lines, "1 <= raw score <= 2")) << Joined(lines);
    EXPECT_TRUE(Has_line(lines, "EXO filter used: C = 1 - 2 C = 1,3")) << Joined(lines);
}

TEST_F(SmallEstimate, TellsTheBoundsOfGroupsThatAreASource) {
    model.groups = {.ScoreDim = 2, .ScoreCuts = {}, .MinScore = 1, .MaxScore = 2};
    model.groups.ScoreCuts[1] = 1;
    model.groups.ScoreCuts[2] = 2;
    for (const auto& [terms, bounds] : std::vector<std::pair<std::string, std::string>>{
             {"A#", "1 <= raw score <= 2"}, {"AC", "0 <= raw score <= 3"}}) {
        const Lines lines = Estimation_lines(EstimationBlock::assumptions,
                                             Estimate(With_terms_of(model, terms), table));
        EXPECT_TRUE(Has_line(lines, bounds)) << terms << Joined(lines);
    }
}

TEST_F(SmallEstimate, NamesTheColumnsOfItsTables) {
    model = With_terms_of(model, "AB AC A#");
    const EstimatedGLLRM e = Estimate(model, table);
    const NamesOfCategories names = {{"of a very long name", "", "short"}};
    for (const EstimationBlock block : {EstimationBlock::result, EstimationBlock::margins}) {
        const Lines lines = Estimation_lines(block, e, names);
        EXPECT_TRUE(Has_line(lines, "                     B = 0     B = 1")) << Joined(lines);
        EXPECT_TRUE(Has_line(lines, "                 of a very         2     short"));
        EXPECT_TRUE(Has_line(lines, "                       0-1       2-3"));
    }
    EXPECT_TRUE(Has_line(Result_of(e), "                         1         2         3"));
}

TEST_F(SmallEstimate, NamesDegenerateItems) {
    const ResponseTable same = Table_of_persons(model, {{1, 0, 1}, {1, 1, 1}, {1, 1, 2}});
    EXPECT_TRUE(Has_line_with(Estimation_lines(EstimationBlock::counts, Estimate(model, same)),
                              "Warning: Some items are degenerate"));
    EXPECT_TRUE(Has_line_with(Estimation_lines(EstimationBlock::counts, Estimate(model, same)),
                              "A:  - all scores are 1"));
    const ResponseTable one = Table_of_persons(model, {{1, 0, 1}});
    EXPECT_TRUE(Has_line(Result_of(Estimate(model, one)),
                         "All items are degenerate: nothing is estimated"));
}

// Nothing to estimate from complete persons, but from those with two items of three.
TEST_F(SmallEstimate, MayRestOnIncompleteResponsesAlone) {
    GLLRM three = Model_of_dims({2, 2, 2});
    for (std::size_t i = 1; i <= 3; ++i) three.items[i].highest_Item_score = 1;
    const ResponseTable persons = Table_of_persons(
        three, {{0, 1, 0}, {1, 0, -1}, {0, 1, -1}, {1, 0, -1}, {-1, 1, 0}, {-1, 0, 1}});
    EstimationSettings settings;
    settings.incomplete_responses = true;
    const EstimatedGLLRM e = Estimate(three, persons, settings);
    const Lines lines = Result_of(e);
    EXPECT_TRUE(Has_line(lines, "All items are degenerate among complete responses"));
    EXPECT_FALSE(Has_line_with(lines, "did not converge")) << Joined(lines);
    EXPECT_EQ(e.npar, 2);
}

TEST_F(SmallEstimate, SaysWhenAllItemsHaveTheSameDIF) {
    const Lines lines = Assumed_model_lines(With_terms_of(model, "AC BC"));
    EXPECT_TRUE(Has_line(lines, "All items are biased relative to C")) << Joined(lines);
    EXPECT_FALSE(Has_line_with(lines, "DIF relative to")) << Joined(lines);
    EXPECT_FALSE(Has_line(lines, "No DIF"));
}

TEST_F(SmallEstimate, EndsOfIterationsHaveTheirWords) {
    EstimatedGLLRM e = Estimate(model, table);
    Iteration& course = e.iteration;
    course.reached_critical = false;
    course.history.assign(30, 3);
    course.history.back() = 4;
    course.history.front() = 9;
    course.Delta = 4;
    course.smallest_Delta = 2.5;
    course.smallest_step = 7;
    course.recurrences = {{30, 4, 4, 3.5}};
    course.end = {IterationStop::cycling, 30, 4};
    Lines lines = Result_of(e);
    EXPECT_TRUE(Has_line(lines, "Iteration was cancelled at step 30 due to cycling"));
    EXPECT_TRUE(Has_line(lines, "Recurring deltavalues: "));
    EXPECT_TRUE(Has_line(lines, "step   30  current = 4.000000  prev = 4.000000 and 3.500000"));
    EXPECT_TRUE(Has_line_with(lines, "Estimation did not converge."));
    EXPECT_TRUE(Has_line(lines, "Last 20 delta values:"));
    EXPECT_FALSE(Has_line(lines, "    10        3.000000")) << "the eleventh is the first shown";
    EXPECT_TRUE(Has_line(lines, "    11        3.000000")) << Joined(lines);
    EXPECT_TRUE(Has_line(lines, "Smallest Delta = 2.500000 at step no. 7"));
    EXPECT_TRUE(Has_line(lines, "Fitted margins after last step:"));

    course.end.reason = IterationStop::worsening;
    lines = Result_of(e);
    EXPECT_TRUE(Has_line(lines, " local maximum at step 30"));
    EXPECT_TRUE(
        Has_line(lines, " Initial, previous and current Delta = 9.000000 3.000000 4.000000"));
    EXPECT_FALSE(Has_line(lines, "Recurring deltavalues: "));

    course.reached_critical = true;
    EXPECT_FALSE(Has_line_with(Result_of(e), "did not converge"));
}

TEST_F(SmallEstimate, AnEmptyCategoryHasADotForItsLogarithm) {
    const ResponseTable holes =
        Table_of_persons(model, {{0, 1, 1}, {2, 0, 2}, {2, 1, 3}, {0, 0, 1}, {0, 1, 1}});
    const Lines lines = Result_of(Estimate(model, holes));
    EXPECT_TRUE(Has_line(lines, "A:                   0.000      .        0.000") ||
                Has_line_with(lines, "  .   "))
        << Joined(lines);
}

TEST(EstimationReport, AnswersToAnUnknownCode) {
    EXPECT_EQ(Estimation_lines_of_code(9, {}), Lines{"Improper output code in Estimate_GLLRM: 9"});
    EXPECT_EQ(Estimation_lines_of_code(0, {}), Lines{"Improper output code in Estimate_GLLRM: 0"});
}

TEST(EstimationReport, ShowsAnUnfinishedIteration) {
    EXPECT_EQ(Unfinished_lines({{IterationStop::same_delta, 12, 0.5L}, 9, 0.25L, 8, true}),
              (Lines{"Estimation did not converge", "Step no. 12", "Initial delta  = 9.000000",
                     "Smallest delta = 0.250000 at step no. 8", "Current delta  = 0.500000",
                     "current delta is equal to the previous delta"}));
}

// ---- Nested models

TEST(NestedModels, AreModelsOfTheSamePersonsWithMoreTermsOrLess) {
    const ItemSample sample = Example_items("verbal");
    const auto fit = [&](const std::string& terms) {
        return Estimate(With_terms_of(sample.model, terms), sample.table);
    };
    const EstimatedGLLRM small = fit("AB"), large = fit("AB BY"), other = fit("AB CD");
    const auto up = Compare_nested(large, small), down = Compare_nested(small, large);
    ASSERT_TRUE(up && down);
    EXPECT_GT(up->CLR, 0);
    EXPECT_EQ(up->CLR, down->CLR) << "the larger model fits better whichever came first";
    EXPECT_EQ(up->df, 2);
    EXPECT_EQ(down->df, 2);
    EXPECT_FALSE(Compare_nested(large, other));
    EXPECT_FALSE(Compare_nested(small, small));
    EstimatedGLLRM ordered = small;
    ordered.settings.ordered_thresholds = true;
    EXPECT_FALSE(Compare_nested(large, ordered));
    EstimatedGLLRM flipped = small;
    flipped.model.items[3].FlippedItem = true;
    EXPECT_FALSE(Compare_nested(large, flipped));
}

TEST(NestedModels, OfOtherPersonsAreNotCompared) {
    const GLLRM model = Model_of_dims({3, 2}, {2});
    const ResponseTable table = Table_of_persons(
        model, {{0, 1, 1}, {1, 0, 2}, {2, 0, 1}, {1, 1, 1}, {0, 0, 2}, {2, 1, -1}, {1, 0, 1}});
    const EstimatedGLLRM rasch = Estimate(model, table);
    const EstimatedGLLRM dif = Estimate(With_terms_of(model, "AC"), table);
    const auto nested = Compare_nested(dif, rasch);
    ASSERT_TRUE(nested);
    EXPECT_FALSE(nested->same_persons);
    const Lines lines = Nested_model_lines(dif, rasch, *nested);
    EXPECT_TRUE(
        Has_line(lines, "The models are estimated from 6 and 7 persons: they cannot be compared"))
        << Joined(lines);
    EXPECT_FALSE(Has_line_with(lines, "CLR"));
}

TEST(NestedModels, WithoutDegreesOfFreedomHaveNoP) {
    const GLLRM model = Model_of_dims({3, 2}, {2});
    const ResponseTable table =
        Table_of_persons(model, {{0, 1, 1}, {1, 0, 1}, {2, 0, 1}, {1, 1, 1}, {0, 0, 1}});
    const EstimatedGLLRM rasch = Estimate(model, table);
    const EstimatedGLLRM dif = Estimate(With_terms_of(model, "AC"), table);
    const auto nested = Compare_nested(dif, rasch);
    ASSERT_TRUE(nested);
    EXPECT_EQ(nested->df, 0);
    EXPECT_EQ(Nested_model_lines(dif, rasch, *nested).back(), "CLR =     0.00   df = 0");
}

TEST(NestedModels, WithoutConvergenceSaySo) {
    const ItemSample sample = Example_items("verbal");
    EstimatedGLLRM small = Estimate(sample.model, sample.table);
    const EstimatedGLLRM large = Estimate(With_terms_of(sample.model, "AB"), sample.table);
    small.converged = false;
    small.Delta = 3.5L;
    const Lines lines = Nested_model_lines(large, small, *Compare_nested(large, small));
    EXPECT_EQ(lines.back(),
              "CLR =    23.80   df = 4   p = 0.000 *** No convergence. Delta = 3.500000");
}

}  // namespace
}  // namespace tarven
