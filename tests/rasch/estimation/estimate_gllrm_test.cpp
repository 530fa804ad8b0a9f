// Estimates against figures from outside, against what was simulated, and at the edges.

#include "rasch/estimation/estimate_gllrm.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <thread>
#include <utility>

#include "rasch/estimation/estimation_report.h"
#include "support/item_models.h"
#include "support/item_samples.h"
#include "support/reference_figures.h"

namespace tarven {
namespace {

std::size_t At(int i) {
    return static_cast<std::size_t>(i);
}

EstimatedGLLRM Estimate(const GLLRM& model, const ResponseTable& table,
                        const EstimationSettings& settings = {}) {
    EstimationMemory memory;
    auto estimate = Estimate_GLLRM(model, table, settings, memory);
    EXPECT_TRUE(estimate) << estimate.failure().messages.front();
    return *estimate;
}

std::string Failure_of(const GLLRM& model, const ResponseTable& table,
                       const EstimationSettings& settings = {}) {
    EstimationMemory memory;
    const auto estimate = Estimate_GLLRM(model, table, settings, memory);
    return estimate ? "" : estimate.failure().messages.front();
}

/// The largest gap between observed and expected margins at the parameters of an estimate.
double Largest_gap(const EstimatedGLLRM& e) {
    const SufficientMargins& used = e.joined_margins ? *e.joined_margins : e.margins;
    double gap = 0;
    const auto note = [&](std::int64_t observed, Extended expected) {
        gap = std::max(gap,
                       std::abs(static_cast<double>(static_cast<Extended>(observed) - expected)));
    };
    for (int i = 1; i <= e.model.NITEMS; ++i)
        for (int x = 0; x < ItemScores; ++x)
            note(used.Catmarg[At(i)][At(x)], e.expected.items[At(i)][At(x)]);
    for (const auto* list : {&e.IJ, &e.IX})
        for (const FittedInteraction& table : *list)
            for (std::size_t cell = 0; cell < table.observed.cells.size(); ++cell)
                note(table.observed.cells[cell], table.expected.cells[cell]);
    return gap;
}

void Expect_logs(const ScoreTable<Extended>& parameters, const nlohmann::json& rows,
                 double tolerance, const std::string& name) {
    for (std::size_t r = 0; r < rows.size(); ++r)
        for (std::size_t c = 0; c < rows[r].size(); ++c)
            EXPECT_NEAR(
                static_cast<double>(std::log(parameters(static_cast<int>(r), static_cast<int>(c)))),
                rows[r][c].get<double>(), tolerance)
                << name << " " << r << " " << c;
}

/// The figures of rasch_models.json for every model of a project: at the critical Delta of the
/// dialogue to 1e-4 in ln eps and 1e-3 in the likelihood; at a small one to what the figures have.
void Expect_published_figures(const std::string& project, double critical_Delta,
                              double log_tolerance, double likelihood_tolerance) {
    const auto figures = Reference_figures("rasch_models.json", project);
    const ItemSample sample = Example_items(project);
    EstimationSettings settings;
    settings.stops.critical_Delta = critical_Delta;
    for (const auto& wanted : figures.at("models")) {
        const std::string terms = wanted.at("model");
        const EstimatedGLLRM e =
            Estimate(With_terms_of(sample.model, terms), sample.table, settings);
        const std::string name = project + " " + terms;
        EXPECT_NEAR(static_cast<double>(e.neg_loglik), wanted.at("neg_loglik").get<double>(),
                    likelihood_tolerance)
            << name;
        EXPECT_EQ(e.npar, wanted.at("npar").get<int>()) << name;
        EXPECT_EQ(e.persons_between, figures.at("n_nonextreme").get<int>()) << name;
        if (wanted.contains("BIC")) {
            EXPECT_NEAR(static_cast<double>(e.AIC), wanted.at("AIC").get<double>(), 2e-3) << name;
            EXPECT_NEAR(static_cast<double>(e.BIC), wanted.at("BIC").get<double>(), 2e-3) << name;
        }
        for (int i = 1; i <= e.model.NITEMS; ++i) {
            const auto& row = wanted.at("ln_eps").at(std::string(1, e.model.ItemNo(i).label));
            for (std::size_t x = 0; x < row.size(); ++x)
                EXPECT_NEAR(static_cast<double>(std::log(e.parameters.eps[At(i)][x])),
                            row[x].get<double>(), log_tolerance)
                    << name << " item " << e.model.ItemNo(i).label << " score " << x;
        }
        for (const IJinfo& pair : e.IJ) {
            const std::string labels{e.model.ItemNo(pair.item).label,
                                     e.model.ItemNo(pair.other).label};
            Expect_logs(pair.parameters, wanted.at("ln_lambda").at(labels), 5 * log_tolerance,
                        name + " " + labels);
        }
        for (const IXinfo& term : e.IX) {
            const std::string labels{e.model.ItemNo(term.item).label,
                                     e.model.ExoNo(term.other).label};
            Expect_logs(term.parameters, wanted.at("ln_delta").at(labels), 5 * log_tolerance,
                        name + " " + labels);
        }
        EXPECT_LT(Largest_gap(e), critical_Delta) << name;
        EXPECT_TRUE(e.converged) << name;
    }
}

TEST(Estimates, AgreeWithPublishedFiguresAtTheUsualDelta) {
    Expect_published_figures("verbal", 1e-4, 1e-4, 1e-3);
    Expect_published_figures("rasch30", 1e-4, 1e-4, 1e-3);
}

TEST(Estimates, AgreeToMoreDigitsAtASmallDelta) {
    Expect_published_figures("verbal", 1e-10, 1e-6, 1e-7);
    Expect_published_figures("rasch30", 1e-10, 1e-6, 1e-7);
}

// Thresholds and log-likelihood as R's psychotools prints them; its own stop rule leaves 2e-4.
TEST(Estimates, AgreeWithPsychotools) {
    for (const std::string project : {"verbal", "rasch30"}) {
        const auto figures = Reference_figures("rasch_models.json", project);
        const ItemSample sample = Example_items(project);
        const EstimatedGLLRM e = Estimate(sample.model, sample.table);
        EXPECT_NEAR(static_cast<double>(e.neg_loglik),
                    -figures.at("psychotools_loglik").get<double>(), 1e-5);
        const auto& thresholds = figures.at("psychotools_thresholds");
        for (int i = 1; i <= e.model.NITEMS; ++i)
            for (int x = 1; x <= e.parameters.high[At(i)]; ++x) {
                const auto& eps = e.parameters.eps[At(i)];
                const auto& row = thresholds[At(i - 1)];
                EXPECT_NEAR(static_cast<double>(std::log(eps[At(x - 1)] / eps[At(x)])),
                            (row.is_array() ? row[At(x - 1)] : row).get<double>(), 2e-4)
                    << project << " item " << i << " threshold " << x;
            }
    }
}

TEST(Estimates, OfPersonsWithinBoundsAgreeWithPublishedFigures) {
    for (const std::string project : {"verbal", "rasch30"}) {
        const auto figures = Reference_figures("rasch_models.json", project);
        const ItemSample sample = Example_items(project);
        const auto expect = [&](const EstimationSettings& settings, const nlohmann::json& wanted,
                                std::size_t k) {
            const EstimatedGLLRM e = Estimate(sample.model, sample.table, settings);
            EXPECT_NEAR(static_cast<double>(e.neg_loglik), wanted["neg_loglik"][k].get<double>(),
                        1e-3);
            EXPECT_EQ(e.npar, wanted["npar"][k].get<int>());
            EXPECT_EQ(e.margins.persons, wanted["n"][k].get<int>());
        };
        for (const auto& wanted : figures.at("score_groups")) {
            const std::vector<int> numbers = wanted.at("cut");
            // One number is the highest score of the lower group; more are a minimum and limits.
            const std::vector<int> limits =
                numbers.size() == 1 ? std::vector<int>{numbers[0], MaxTotalScore}
                                    : std::vector<int>(numbers.begin() + 1, numbers.end());
            int low = numbers.size() == 1 ? 0 : numbers[0];
            for (std::size_t k = 0; k < limits.size(); ++k) {
                EstimationSettings settings;
                settings.filter.lowest_score = low;
                settings.filter.highest_score = limits[k];
                expect(settings, wanted, k);
                low = limits[k] + 1;
            }
        }
        for (const auto& [label, wanted] : figures.at("exogenous_groups").items())
            for (std::size_t k = 0; k < wanted["n"].size(); ++k) {
                const int variable = label == "Z" ? 1 : 2, c = static_cast<int>(k) + 1;
                EstimationSettings settings;
                settings.filter.categories = {{variable, c, c}};
                expect(settings, wanted, k);
                settings.filter = {};
                settings.filter.values = PersonFilter::Values{variable, Number(c)};
                expect(settings, wanted, k);
            }
    }
}

TEST(Estimates, OfModelsWithOneTermAgreeWithPublishedFigures) {
    const auto figures = Reference_figures("rasch_models.json", "verbal");
    const ItemSample sample = Example_items("verbal");
    for (const auto& wanted : figures.at("single_terms")) {
        const std::string term = wanted.at("term");
        const EstimatedGLLRM e = Estimate(With_terms_of(sample.model, term), sample.table);
        EXPECT_NEAR(static_cast<double>(e.neg_loglik), wanted.at("neg_loglik").get<double>(), 1e-4)
            << term;
        EXPECT_EQ(e.npar, wanted.at("npar").get<int>()) << term;
    }
}

// Compensated or accelerated steps would take another number of them.
TEST(Steps, AreTheLiteralOnes) {
    const ItemSample sample = Example_items("verbal");
    const EstimatedGLLRM e = Estimate(With_terms_of(sample.model, "AB CD BY DY"), sample.table);
    EXPECT_EQ(e.iteration.steps, 21);
    EXPECT_EQ(e.iteration.sweeps, 0);
    EXPECT_TRUE(e.iteration.passed.empty());
}

TEST(Steps, ThatStickInADenseComponentGiveWayToSweeps) {
    const ItemSample sample = Example_items("verbal");
    EstimationSettings settings;
    settings.stops.critical_Delta = 1e-8;
    const GLLRM model = With_terms_of(sample.model, "AC AG AI CI GI");
    const EstimatedGLLRM e = Estimate(model, sample.table);
    EXPECT_EQ(e.iteration.sweeps, 18);
    EXPECT_NEAR(static_cast<double>(e.neg_loglik), 5076.150, 5e-4);
    EXPECT_GT(e.iteration.history[At(e.iteration.steps - e.iteration.sweeps - 1)], 100);
    EXPECT_LT(Largest_gap(e), 1e-4) << "the last normalisation must change no probability";
    for (const IJinfo& pair : e.IJ)
        for (int x = 0; x < 3; ++x) {
            EXPECT_EQ(pair.parameters(0, x), 1);
            EXPECT_EQ(pair.parameters(x, 0), 1);
        }
    EXPECT_LT(Largest_gap(Estimate(model, sample.table, settings)), 1e-8);
    Extended tops = 1;
    for (int i = 1; i <= 24; ++i) tops *= e.parameters.eps[At(i)][2];
    EXPECT_NEAR(static_cast<double>(tops), 1, 1e-12);
}

TEST(Steps, ThatAreTooFewGoOnAsSweeps) {
    const ItemSample sample = Example_items("verbal");
    EstimationSettings settings;
    const GLLRM model = With_terms_of(sample.model, "AB CD BY DY");
    const EstimatedGLLRM whole = Estimate(model, sample.table, settings);
    settings.stops.maximum_steps = 8;
    const EstimatedGLLRM e = Estimate(model, sample.table, settings);
    EXPECT_EQ(e.iteration.steps - e.iteration.sweeps, 8);
    EXPECT_TRUE(e.iteration.sweeps_go_on);
    EXPECT_TRUE(e.iteration.reached_critical);
    EXPECT_LT(e.iteration.history[8], e.iteration.history[7]) << "they begin where the steps were";
    EXPECT_NEAR(static_cast<double>(e.neg_loglik - whole.neg_loglik), 0, 1e-5);
    settings.stops.maximum_steps = 17;
    const EstimatedGLLRM close = Estimate(model, sample.table, settings);
    EXPECT_LT(close.Delta, 0.1);
    EXPECT_EQ(close.iteration.sweeps, 0) << "the likelihood has nothing to gain";
}

TEST(Estimates, DoNotDependOnTheOrderOfPersonsOrItems) {
    std::mt19937 random(4);
    const GLLRM model = With_terms_of(Model_of_dims({3, 3, 2, 3, 2}, {2, 3}), "AB DF EG");
    const ResponseTable table =
        Simulated_persons(random, model, Random_parameters(random, model), 400, 1);
    EstimationSettings settings;
    settings.stops.critical_Delta = 1e-12;
    const EstimatedGLLRM e = Estimate(model, table, settings);
    const GLLRM turned = With_terms_of(Model_of_dims({2, 3, 2, 3, 3}, {2, 3}), "DE BF AG");
    std::vector<std::vector<int>> persons;
    for (std::size_t p = table.size(); p-- > 0;) {
        const std::uint8_t* row = table.Scores(p);
        persons.push_back({row[4], row[3], row[2], row[1], row[0], row[5], row[6]});
    }
    const EstimatedGLLRM other = Estimate(turned, Table_of_persons(turned, persons), settings);
    EXPECT_NEAR(static_cast<double>(e.neg_loglik), static_cast<double>(other.neg_loglik), 1e-10);
    for (int i = 1; i <= 5; ++i)
        for (int x = 0; x < 3; ++x)
            EXPECT_NEAR(static_cast<double>(e.parameters.eps[At(i)][At(x)]),
                        static_cast<double>(other.parameters.eps[At(6 - i)][At(x)]), 1e-9);
}

TEST(Estimates, GiveBackTheTermsThatDataWereSimulatedWith) {
    std::mt19937 random(5);
    const GLLRM model = With_terms_of(Model_of_dims({3, 3, 2, 3, 2, 3}, {2}), "AB CG DG");
    const GLLRMParameters truth = Random_parameters(random, model);
    const int persons = 6000;
    const ResponseTable table = Simulated_persons(random, model, truth, persons, 1.2);
    const EstimatedGLLRM e = Estimate(model, table);
    // Four standard errors of a log odds ratio from the four smallest cells that it is made of.
    const auto expect = [&](const FittedInteraction& fitted, const ScoreTable<Extended>& wanted,
                            int rows, int columns) {
        for (int r = 1; r < rows; ++r)
            for (int c = 1; c < columns; ++c) {
                double variance = 0;
                for (const int a : {0, r})
                    for (const int b : {0, c})
                        variance += 1.0 / static_cast<double>(fitted.observed(a, b));
                EXPECT_NEAR(static_cast<double>(std::log(fitted.parameters(r, c))),
                            static_cast<double>(std::log(wanted(r, c))), 4 * std::sqrt(variance));
                EXPECT_LT(4 * std::sqrt(variance), 0.6) << "a test that could hardly fail";
            }
    };
    expect(e.IJ[0], truth.lambda[0], 3, 3);
    expect(e.IX[0], truth.delta[0], 2, 2);
    expect(e.IX[1], truth.delta[1], 3, 2);
    const EstimatedGLLRM without = Estimate(Model_of_dims({3, 3, 2, 3, 2, 3}, {2}), table);
    EXPECT_EQ(e.npar - without.npar, 4 + 1 + 2);
    EXPECT_GT(without.neg_loglik - e.neg_loglik, 50);
}

TEST(Estimates, OfInteractionsWithTheScoreFitTheirTables) {
    std::mt19937 random(6);
    GLLRM model = Model_of_dims({3, 3, 2, 3, 2});
    const ResponseTable table =
        Simulated_persons(random, model, Random_parameters(random, model), 500, 1);
    const EstimatedGLLRM rasch = Estimate(model, table);
    model = With_terms_of(model, "A#");
    const EstimatedGLLRM e = Estimate(model, table);
    ASSERT_EQ(e.IX.size(), 1u);
    EXPECT_EQ(e.IX[0].other, model.NEXOGENE + 1);
    EXPECT_EQ(e.IX[0].observed.columns, model.groups.ScoreDim);
    EXPECT_LT(Largest_gap(e), 1e-4);
    EXPECT_EQ(e.npar, rasch.npar + 2);
    EXPECT_LT(e.neg_loglik, rasch.neg_loglik);
    // A person outside every group takes no part.
    model.groups.MinScore = 2;
    const EstimatedGLLRM inner = Estimate(model, table);
    EXPECT_EQ(inner.margins.persons, e.margins.persons - e.margins.scores[0] - e.margins.scores[1]);
}

TEST(Estimates, HaveTheLikelihoodOfTheirRecords) {
    const ItemSample sample = Example_items("verbal");
    GLLRM model = sample.model;
    model.groups.ScoreDim = 3;
    model.groups.ScoreCuts[1] = 9;
    model.groups.ScoreCuts[2] = 20;
    model.groups.ScoreCuts[3] = 48;
    model = With_terms_of(model, "AB BC AZ CY D#");
    const EstimatedGLLRM e = Estimate(model, sample.table);
    const std::vector<CellPolynomial> cells = Gamma_of_cells(e);
    Extended sum = 0;
    for (std::size_t p = 0; p < sample.table.size(); ++p) {
        const std::uint8_t* row = sample.table.Scores(p);
        const std::vector<int> scores(row, row + 24);
        int total = 0;
        for (const int x : scores) total += x;
        const std::vector<std::uint8_t> categories = {
            row[24], row[25], static_cast<std::uint8_t>(model.groups.ScoreGruppe(total))};
        for (const CellPolynomial& cell : cells)
            if (cell.categories == categories)
                sum -= std::log(
                    Weight_of(e.structure, e.parameters, scores, categories, All_items(24)) /
                    cell.gamma(total));
    }
    EXPECT_NEAR(static_cast<double>(e.neg_loglik), static_cast<double>(sum), 1e-9);
    EXPECT_EQ(e.npar, 47 + 8 + 6 + 4);
}

TEST(Estimates, CountTheTablesOfTheirTermsByScoreGroup) {
    const ItemSample sample = Example_items("verbal");
    EstimationSettings settings;
    settings.with_score_groups = true;
    const EstimatedGLLRM e = Estimate(With_terms_of(sample.model, "AB CY"), sample.table, settings);
    for (const FittedInteraction* table : {&e.IJ[0], &e.IX[0]}) {
        EXPECT_EQ(table->count, 316);
        ASSERT_EQ(table->observed_by_group.size(), 2u);
        for (std::size_t cell = 0; cell < table->observed.cells.size(); ++cell)
            EXPECT_EQ(table->observed.cells[cell], table->observed_by_group[0].cells[cell] +
                                                       table->observed_by_group[1].cells[cell]);
    }
    // Nobody of the lower group, scores 0 to 24, has reached more than 24.
    std::int64_t lower = 0;
    for (int s = 0; s <= 24; ++s) lower += e.margins.scores[At(s)];
    std::int64_t counted = 0;
    for (const std::int64_t n : e.IJ[0].observed_by_group[0].cells) counted += n;
    EXPECT_EQ(counted, lower);
}

TEST(Estimates, StartFromOthersWhenGiven) {
    const ItemSample sample = Example_items("verbal");
    const GLLRM model = With_terms_of(sample.model, "AB CY");
    const EstimatedGLLRM e = Estimate(model, sample.table);
    EstimationMemory memory;
    const auto again = Estimate_GLLRM(model, sample.table, {}, memory, {}, {}, &e.parameters);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->iteration.steps, 1);
    EXPECT_NEAR(static_cast<double>(again->neg_loglik), static_cast<double>(e.neg_loglik), 1e-8);
    // What nobody answers now is 0, whatever it was.
    ResponseTable fewer = sample.table;
    for (std::size_t p = 0; p < fewer.size(); ++p)
        if (fewer.Scores(p)[0] == 2) fewer.codes[p * fewer.width()] = 1;
    const auto of_fewer = Estimate_GLLRM(model, fewer, {}, memory, {}, {}, &e.parameters);
    EXPECT_EQ(of_fewer->parameters.eps[1][2], 0);
    EXPECT_NEAR(static_cast<double>(of_fewer->neg_loglik),
                static_cast<double>(Estimate(model, fewer).neg_loglik), 1e-4);
}

TEST(Estimates, AreTheSameFromSeveralThreads) {
    const ItemSample sample = Example_items("verbal");
    const std::vector<std::string> models = {"AB CD BY DY", "", "MO NP KZ XY", "AB BC AZ AY"};
    std::vector<Extended> alone, together(models.size());
    for (const auto& terms : models)
        alone.push_back(Estimate(With_terms_of(sample.model, terms), sample.table).neg_loglik);
    std::vector<std::thread> threads;
    for (std::size_t k = 0; k < models.size(); ++k)
        threads.emplace_back([&, k] {
            EstimationMemory memory;
            for (int times = 0; times < 5; ++times)
                together[k] =
                    Estimate_GLLRM(With_terms_of(sample.model, models[k]), sample.table, {}, memory)
                        ->neg_loglik;
        });
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(alone, together);
}

// ---- Incomplete responses.

struct Incomplete : ::testing::Test {
    GLLRM model = With_terms_of(Model_of_dims({3, 3, 2, 3, 2}, {2, 2}), "AB CF");
    ResponseTable Persons(std::mt19937& random) {
        const ResponseTable whole =
            Simulated_persons(random, model, Random_parameters(random, model), 400, 1);
        std::vector<std::vector<int>> persons;
        for (std::size_t p = 0; p < whole.size(); ++p) {
            std::vector<int> person(whole.Scores(p), whole.Scores(p) + 7);
            if (p % 3 == 0) person[random() % 7] = -1;
            persons.push_back(person);
        }
        return Table_of_persons(model, persons);
    }
};

TEST_F(Incomplete, RecordsCountByTheComponentsThatAreLeft) {
    const std::vector<std::vector<int>> persons = {
        {1, 1, 1, 1, 1, 1, 1},      // complete
        {1, 1, 1, 1, 1, 1, -1},     // complete: G is no source
        {-1, 2, 1, 1, 0, 1, 1},     // useful: B goes with A
        {1, 1, 1, 1, 0, -1, 1},     // useful: C needs F
        {2, -1, -1, 1, -1, 1, 1},   // useless: only D is left
        {-1, -1, 1, 2, 1, 1, 1},    // useless: the highest score of C, D and E
        {-1, 2, 0, 0, 0, 1, 1},     // useless: score 0
        {-1, -1, -1, -1, -1, 1, 1}  // nothing at all
    };
    GLLRM seen = model;
    for (int i = 1; i <= 5; ++i)
        seen.items[At(i)].highest_Item_score = seen.ItemNo(i).Item_maxscore();
    EstimationSettings settings;
    settings.incomplete_responses = true;
    const EstimatedGLLRM e = Estimate(seen, Table_of_persons(seen, persons), settings);
    EXPECT_EQ(e.margins.counts.Nvalid, 2);
    EXPECT_EQ(e.margins.counts.Nincomplete, 6);
    EXPECT_EQ(e.margins.counts.Nresponses, 5);
    EXPECT_EQ(e.margins.counts.Nuseful, 2);
    EXPECT_EQ(e.margins.counts.Nuseless, 4);
    EXPECT_EQ(e.margins.counts.no_item_left, 1);
    EXPECT_EQ(e.margins.counts.one_item_left, 1);
    EXPECT_EQ(e.margins.counts.score_zero, 1);
    EXPECT_EQ(e.margins.counts.score_highest, 1);
    EXPECT_EQ(e.joined_margins->Catmarg[1][1], 3) << "complete ones and the one without F";
    EXPECT_EQ(e.joined_margins->Catmarg[2][2], 0) << "B without A is not read";
    EXPECT_EQ(e.joined_margins->Catmarg[3][1], 3) << "C without F is not read";
    EXPECT_EQ(e.margins.Catmarg[4][1], 2) << "the complete margins stay as they were";
}

TEST_F(Incomplete, RecordsAreNotThoseOfPersonsOutsideTheScores) {
    model = With_terms_of(model, "A# CF");
    model.groups.MinScore = 2;
    const std::vector<std::vector<int>> persons = {
        {1, 1, 1, 1, 1, 1, 1},   // complete
        {0, 1, 0, 0, 0, 1, 1},   // complete, below the groups
        {0, 1, 0, 0, 0, -1, 1},  // the same, and F missing
        {1, 2, 1, 1, 0, -1, 1},  // F missing, within the groups
        {-1, 1, 0, 0, 0, 1, 1},  // nobody knows its score
        {2, 2, 1, 2, 1, 1, 1},   // above the bounds
        {2, 2, 1, 2, 1, -1, 1}};
    EstimationSettings settings;
    settings.incomplete_responses = true;
    settings.filter.highest_score = 7;
    const EstimatedGLLRM e = Estimate(model, Table_of_persons(model, persons), settings);
    EXPECT_EQ(e.margins.counts.Nvalid, 1);
    EXPECT_EQ(e.margins.counts.Nincomplete, 2);
    settings.incomplete_responses = false;
    EXPECT_EQ(
        Estimate(model, Table_of_persons(model, persons), settings).margins.counts.Nincomplete, 2);
}

TEST_F(Incomplete, RecordsJoinTheFit) {
    std::mt19937 random(7);
    const ResponseTable table = Persons(random);
    EstimationSettings settings;
    settings.stops.critical_Delta = 1e-9;
    const EstimatedGLLRM complete = Estimate(model, table, settings);
    settings.incomplete_responses = true;
    const EstimatedGLLRM e = Estimate(model, table, settings);
    ASSERT_TRUE(e.with_incomplete);
    EXPECT_GT(e.margins.counts.Nuseful, 80);
    EXPECT_LT(Largest_gap(e), 1e-9);
    EXPECT_EQ(e.initial_parameters->eps[1], complete.parameters.eps[1]);
    EXPECT_EQ(e.iteration.neg_loglik, complete.neg_loglik);
    EXPECT_EQ(e.margins.Catmarg[1], complete.margins.Catmarg[1]);
    // The likelihood of one record after the other, each among the response vectors of its items.
    Extended sum = 0;
    for (const Stratum& stratum : e.joined_margins->strata)
        for (const CellScores& cell : stratum.cells)
            for (const ScoreCount& count : cell.scores) sum += static_cast<Extended>(count.persons);
    EXPECT_EQ(sum, static_cast<Extended>(e.margins.counts.Nvalid + e.margins.counts.Nuseful));
    EXPECT_GT(e.neg_loglik, complete.neg_loglik) << "more records";
}

TEST_F(Incomplete, RecordsWithTheItemsOfAllOthersChangeNothing) {
    // Every complete person once more, with an item missing that nobody depends on: the fit of the
    // other items is that of the doubled records without this item.
    std::mt19937 random(8);
    const GLLRM three = Model_of_dims({3, 3, 2});
    const ResponseTable some =
        Simulated_persons(random, three, Random_parameters(random, three), 200, 1);
    const GLLRM four = Model_of_dims({3, 3, 2, 2});
    std::vector<std::vector<int>> persons, without;
    for (std::size_t p = 0; p < some.size(); ++p) {
        const std::uint8_t* row = some.Scores(p);
        persons.push_back({row[0], row[1], row[2], -1});
        without.push_back({row[0], row[1], row[2]});
    }
    persons.push_back({0, 0, 0, 0});  // complete, and say nothing
    persons.push_back({2, 2, 1, 1});
    persons.push_back({0, 0, 0, 0});
    persons.push_back({2, 2, 1, 1});
    EstimationSettings settings;
    settings.stops.critical_Delta = 1e-10;
    const EstimatedGLLRM alone = Estimate(three, Table_of_persons(three, without), settings);
    settings.incomplete_responses = true;
    const EstimatedGLLRM e = Estimate(four, Table_of_persons(four, persons), settings);
    const auto threshold = [](const EstimatedGLLRM& fit, int i, int x) {
        const auto& eps = fit.parameters.eps[At(i)];
        return static_cast<double>(std::log(eps[At(x - 1)] / eps[At(x)]));
    };
    EXPECT_NEAR(threshold(e, 1, 2) - threshold(e, 2, 1),
                threshold(alone, 1, 2) - threshold(alone, 2, 1), 1e-7);
    EXPECT_NEAR(threshold(e, 1, 1) - threshold(e, 3, 1),
                threshold(alone, 1, 1) - threshold(alone, 3, 1), 1e-7);
}

// ---- Edges.

TEST(Edges, AnItemOfOneCategoryIsDegenerate) {
    const GLLRM model = Model_of_dims({3, 3, 2});
    const ResponseTable table = Table_of_persons(
        model, {{0, 1, 1}, {1, 1, 0}, {2, 1, 0}, {0, 1, 0}, {1, 1, 1}, {2, 1, 1}, {1, 1, 1}});
    const EstimatedGLLRM e = Estimate(With_terms_of(model, "BC"), table);
    EXPECT_EQ(e.margins.degenerate, Number(2));
    EXPECT_EQ(e.parameters.eps[2], (std::array<Extended, ItemScores>{0, 1}));
    EXPECT_EQ(e.npar, 2);
    EXPECT_TRUE(e.converged);
    EXPECT_EQ(e.IJ[0].parameters(1, 0), 1);
    EXPECT_EQ(e.IJ[0].parameters(1, 1), 1);
    EXPECT_EQ(e.IJ[0].parameters(0, 0), 0);
    const EstimatedGLLRM without = Estimate(model, table);
    EXPECT_NEAR(static_cast<double>(e.neg_loglik), static_cast<double>(without.neg_loglik), 1e-6)
        << "a dependence on it says nothing";
}

TEST(Edges, WithoutAnyOtherItemNothingIsEstimated) {
    const GLLRM model = Model_of_dims({3, 2});
    const EstimatedGLLRM e = Estimate(model, Table_of_persons(model, {{2, 1}, {2, 1}}));
    EXPECT_TRUE(e.nothing_to_estimate);
    EXPECT_EQ(e.npar, 0);
    EXPECT_EQ(e.iteration.steps, 0);
    EXPECT_EQ(e.neg_loglik, 0);
    EXPECT_EQ(Failure_of(model, Table_of_persons(model, {{2, -1}})), "No valid cases");
    EXPECT_EQ(Failure_of(model, Table_of_persons(model, {})), "No valid cases");
    EXPECT_TRUE(Estimate(model, Table_of_persons(model, {{1, 0}})).nothing_to_estimate);
}

TEST(Edges, EmptyCellsStayAtZero) {
    std::mt19937 random(9);
    const GLLRM model = With_terms_of(Model_of_dims({4, 3, 3, 3}, {3}), "AB CE");
    ResponseTable table =
        Simulated_persons(random, model, Random_parameters(random, model), 500, 1);
    for (std::size_t p = 0; p < table.size(); ++p) {
        std::uint8_t* row = table.codes.data() + p * table.width();
        if (row[0] == 1) row[0] = 2;                 // a hole in the range of A
        if (row[2] == 2 && row[4] == 3) row[2] = 0;  // an empty cell of C by E
        if (row[0] == 3 && row[1] == 2) row[1] = 1;  // and one of A by B
        if (row[4] == 2) row[4] = 1;                 // a category of the source that nobody has
    }
    const EstimatedGLLRM e = Estimate(model, table);
    EXPECT_TRUE(e.converged);
    EXPECT_LT(Largest_gap(e), 1e-4);
    EXPECT_EQ(e.parameters.eps[1][1], 0);
    EXPECT_EQ(e.IX[0].parameters(2, 2), 0);
    EXPECT_EQ(e.IX[0].parameters(1, 1), 0);
    EXPECT_EQ(e.IJ[0].parameters(3, 2), 0);
    EXPECT_EQ(e.npar, -1 + (2 + 2 + 2 + 2) + 3 + 1);
}

// The row and the column with the most cells cross in an empty cell: steps put such a table back
// to 1 each time, sweeps do not.
TEST(Edges, ATableWhoseReferencesCrossInAnEmptyCellIsFitted) {
    std::mt19937 random(10);
    const GLLRM model = With_terms_of(Model_of_dims({4, 4, 3, 3}), "AB");
    ResponseTable table =
        Simulated_persons(random, model, Random_parameters(random, model), 900, 1.5);
    for (std::size_t p = 0; p < table.size(); ++p) {
        std::uint8_t* row = table.codes.data() + p * table.width();
        // Row 0 lacks column 0 and has all others; so has column 0 all other rows.
        if (row[0] == 0 && row[1] == 0) row[0] = row[1] = 1;
        if (row[0] == 1 && row[1] == 3) row[1] = 2;
        if (row[0] == 3 && row[1] == 1) row[0] = 2;
        if (row[0] == 2 && row[1] == 2) row[1] = 3;
    }
    const EstimatedGLLRM e = Estimate(model, table);
    const ReferenceCell reference = Reference_of(e.IJ[0].observed);
    ASSERT_EQ(e.IJ[0].observed(reference.row, reference.column), 0) << "the case of this test";
    EXPECT_GT(e.iteration.sweeps, 0);
    EXPECT_TRUE(e.converged);
    EXPECT_LT(Largest_gap(e), 1e-3);
}

TEST(Edges, ASourceWhoseReferencesCrossInAnEmptyCellIsFitted) {
    std::mt19937 random(10);
    const GLLRM model = With_terms_of(Model_of_dims({4, 3, 3, 3}, {4}), "AE");
    ResponseTable table =
        Simulated_persons(random, model, Random_parameters(random, model), 900, 1.5);
    for (std::size_t p = 0; p < table.size(); ++p) {
        std::uint8_t* row = table.codes.data() + p * table.width();
        std::uint8_t &a = row[0], &e = row[4];
        if (a == 0 && e == 1) a = 1, e = 2;
        if (a == 1 && e == 4) e = 3;
        if (a == 3 && e == 2) a = 2;
        if (a == 2 && e == 3) e = 4;
    }
    const EstimatedGLLRM e = Estimate(model, table);
    const ReferenceCell reference = Reference_of(e.IX[0].observed);
    ASSERT_EQ(e.IX[0].observed(reference.row, reference.column), 0) << "the case of this test";
    EXPECT_GT(e.iteration.sweeps, 0);
    EXPECT_LT(Largest_gap(e), 1e-3) << "the normalisation leaves the probabilities";
}

TEST(Interactions, AreDividedByTheirReferencesOrTheFirstCellsThere) {
    ScoreTable<std::int64_t> observed(3);
    ScoreTable<Extended> parameters(3);
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 3; ++c) {
            if ((r == 2 && c == 0) || (r == 3 && c == 1) || (r == 1 && c == 2)) continue;
            observed(r, c) = 5;
            parameters(r, c) = 2 + r + 3 * c;
        }
    const ScoreTable<Extended> p = parameters;
    Normalise_interaction(observed, parameters);  // by row 0 and column 0
    EXPECT_EQ(parameters(0, 2), 1);
    EXPECT_EQ(parameters(3, 0), 1);
    EXPECT_EQ(parameters(2, 0), 0);
    EXPECT_NEAR(double(parameters(3, 2)), double(p(0, 0) * p(3, 2) / (p(3, 0) * p(0, 2))), 1e-15);
    EXPECT_NEAR(double(parameters(2, 1)), double(p(0, 0) / p(0, 1)), 1e-15)
        << "row 2 has no column 0: its first cell stands for it";

    // Row 0 has the most cells and lacks column 1, which has the most as well.
    ScoreTable<std::int64_t> holed(4);
    ScoreTable<Extended> others(4);
    for (const auto& [r, c] :
         std::vector<std::pair<int, int>>{{0, 0}, {0, 2}, {0, 3}, {1, 1}, {2, 1}, {3, 1}}) {
        holed(r, c) = 5;
        others(r, c) = 3;
    }
    Normalise_interaction(holed, others);
    for (std::size_t cell = 0; cell < holed.cells.size(); ++cell)
        EXPECT_EQ(others.cells[cell], holed.cells[cell] > 0 ? 1 : 0) << cell;
}

TEST(Steps, MayLeaveTheLowestCategories) {
    const ItemSample sample = Example_items("verbal");
    EstimationSettings settings;
    const EstimatedGLLRM all = Estimate(sample.model, sample.table, settings);
    settings.step.lowest_categories_stay = true;
    const EstimatedGLLRM upper = Estimate(sample.model, sample.table, settings);
    EXPECT_TRUE(upper.converged);
    EXPECT_NE(upper.iteration.history, all.iteration.history) << "other steps";
    EXPECT_NEAR(double(upper.neg_loglik), double(all.neg_loglik), 1e-6) << "to the same estimates";
}

TEST(Edges, AllItemsInOneComponentAreFitted) {
    std::mt19937 random(11);
    const GLLRM model = With_terms_of(Model_of_dims({3, 2, 2, 3}), "AB BC CD AD");
    const ResponseTable table =
        Simulated_persons(random, model, Random_parameters(random, model), 400, 1);
    EXPECT_EQ(Structure_of(model).components.size(), 1u);
    const EstimatedGLLRM e = Estimate(model, table);
    EXPECT_TRUE(e.converged);
    EXPECT_LT(Largest_gap(e), 1e-3);
}

TEST(Limits, AreToldBeforeAnythingIsAllocated) {
    std::string chain;
    for (char c = 'A'; c < 'U'; ++c) chain += std::string{c, static_cast<char>(c + 1)} + " ";
    const GLLRM twenty_one = Model_of_dims(std::vector<int>(21, 2));
    EXPECT_EQ(
        Failure_of(With_terms_of(twenty_one, chain), {}),
        "Too many response vectors in the component ABCDEFGHIJKLMNOPQRSTU: 2097152 > 1048576");
    // Twenty of them are exactly the limit.
    EXPECT_EQ(Find_oversized_component(
                  twenty_one, Structure_of(With_terms_of(twenty_one, chain.substr(0, 57)))),
              std::nullopt);

    // Scores 0 to 8 by 2 * 57 ^ 3 cells.
    const GLLRM wide = Model_of_dims(std::vector<int>(8, 2), {57, 57, 57, 2});
    const ResponseTable table = Table_of_persons(wide, {{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}});
    EXPECT_EQ(Failure_of(With_terms_of(wide, "AI AJ AK AL"), table),
              "Too many Gamma parameters. 3333474 > 1962000");
    EXPECT_EQ(Failure_of(With_terms_of(wide, "AI AJ AK"), table), "") << "half as many are allowed";

    GLLRM grouped = With_terms_of(Model_of_dims({3, 3}), "A#");
    grouped.groups.ScoreDim = 60;
    EXPECT_EQ(Failure_of(grouped, Table_of_persons(grouped, {{1, 1}})),
              "Too many score groups for item-score interactions: 60 > 59");
}

TEST(Limits, GammaParametersReachTheirNumberExactly) {
    // Scores 0 to 8 by 218000 cells are 1962000; a person less has no score 8.
    const GLLRM model =
        With_terms_of(Model_of_dims(std::vector<int>(8, 2), {50, 40, 109}), "AI AJ AK");
    ASSERT_EQ(BiasDim(model) * 9, MaxGammaEntries);
    EXPECT_EQ(Failure_of(model, Table_of_persons(model, {{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}})), "");
    const GLLRM above =
        With_terms_of(Model_of_dims(std::vector<int>(8, 2), {50, 40, 110}), "AI AJ AK");
    EXPECT_EQ(Failure_of(above, Table_of_persons(above, {{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1}})),
              "Too many Gamma parameters. 1980000 > 1962000");
}

TEST(Limits, NobodyToEstimateFromIsToldByWhatIsMissing) {
    const GLLRM model = With_terms_of(Model_of_dims({2, 2, 2}, {2}), "AD");
    const auto messages = [&](const std::vector<std::vector<int>>& persons, bool incomplete) {
        EstimationMemory memory;
        EstimationSettings settings;
        settings.incomplete_responses = incomplete;
        return Estimate_GLLRM(model, Table_of_persons(model, persons), settings, memory)
            .failure()
            .messages;
    };
    using Messages = std::vector<std::string>;
    EXPECT_EQ(messages({{1, -1, 0, 1}, {0, -1, 1, 2}}, false),
              (Messages{"No valid cases", "Missing in every record: B"}));
    EXPECT_EQ(messages({{1, 1, 0, 0}, {0, 1, 1, 0}}, false),
              (Messages{"No valid cases", "Missing in every record: D"}));
    EXPECT_EQ(messages({{1, 1, -1, 1}, {0, -1, 1, 1}}, true),
              (Messages{"No valid cases",
                        "Incomplete responses join complete ones, and there are none"}));
}

// ---- Stop rules.

/// A model that the literal steps never finish: the smallest critical Delta.
EstimationSettings Endless() {
    EstimationSettings settings;
    settings.stops.critical_Delta = 0;
    return settings;
}

TEST(StopRules, WithoutAUserItGoesOnAsLongAsDeltaImproves) {
    const ItemSample sample = Example_items("rasch30");
    const EstimatedGLLRM e = Estimate(sample.model, sample.table, Endless());
    EXPECT_LT(e.iteration.steps, 200) << "rounding ends the improvement";
    EXPECT_FALSE(e.iteration.passed.empty());
    EXPECT_FALSE(e.iteration.reached_critical);
    EXPECT_TRUE(e.converged) << "a Delta below 0.1 counts";
    EXPECT_LT(e.Delta, 1e-12);
}

TEST(StopRules, AContinuedStretchBeginsAnew) {
    const ItemSample sample = Example_items("verbal");
    EstimationMemory memory;
    EstimationSettings settings;
    settings.stops.maximum_steps = 3;
    std::vector<int> asked_at;
    const auto e = Estimate_GLLRM(sample.model, sample.table, settings, memory, {},
                                  [&](const UnfinishedIteration& shown) {
                                      EXPECT_EQ(shown.stop.reason, IterationStop::maximum_steps);
                                      asked_at.push_back(shown.stop.step);
                                      return ContinueAnswer::yes;
                                  });
    EXPECT_EQ(asked_at, (std::vector<int>{3, 6, 9, 12, 15, 18}));
    EXPECT_EQ(e->iteration.steps, 19);
    EXPECT_TRUE(e->iteration.reached_critical);
}

TEST(StopRules, StepsAreCountedToTheMaximum) {
    const ItemSample sample = Example_items("verbal");
    EstimationSettings settings;
    settings.stops.maximum_steps = 3;
    const EstimatedGLLRM e = Estimate(sample.model, sample.table, settings);
    EXPECT_EQ(e.iteration.end.reason, IterationStop::maximum_steps);
    EXPECT_EQ(e.iteration.steps, 3);
    EXPECT_FALSE(e.converged);
}

/// Nobody solves B without A, so that the estimate lies at infinity and Delta falls as 1/steps.
ItemSample Slow_sample() {
    ItemSample sample;
    sample.model = Model_of_dims({2, 2});
    sample.table = Table_of_persons(sample.model, {{1, 0}, {1, 1}, {0, 0}});
    sample.table.counts = {20, 10, 10};
    return sample;
}

TEST(StopRules, WithoutAUserFiveThousandStepsAreTheEnd) {
    const ItemSample sample = Slow_sample();
    EstimationSettings settings;
    settings.stops.critical_Delta = 1e-12;
    settings.stops.maximum_steps = 100000;
    const EstimatedGLLRM e = Estimate(sample.model, sample.table, settings);
    EXPECT_EQ(e.iteration.steps, 5000);
    EXPECT_EQ(e.iteration.passed.size(), 4u);
    EXPECT_EQ(e.iteration.end.reason, IterationStop::thousand_steps);
    EXPECT_TRUE(e.converged);
}

TEST(StopRules, AThousandStepsAskAndGoOn) {
    const ItemSample sample = Slow_sample();
    EstimationMemory memory;
    std::vector<StopEvent> asked;
    const auto twice = [&](const UnfinishedIteration& shown) {
        asked.push_back(shown.stop);
        EXPECT_GE(shown.initial_Delta, shown.smallest_Delta);
        return asked.size() < 3 ? ContinueAnswer::yes : ContinueAnswer::no;
    };
    EstimationSettings settings;
    settings.stops.critical_Delta = 1e-12;
    const auto e = Estimate_GLLRM(sample.model, sample.table, settings, memory, {}, twice);
    ASSERT_TRUE(e);
    ASSERT_EQ(asked.size(), 3u);
    EXPECT_EQ(asked[0].reason, IterationStop::thousand_steps);
    EXPECT_EQ(asked[0].step, 1000);
    EXPECT_EQ(asked[1].step, 2000);
    EXPECT_EQ(e->iteration.passed.size(), 2u);
    EXPECT_EQ(e->iteration.steps, 3000);
    EXPECT_FALSE(e->iteration.reached_critical);
}

TEST(StopRules, TheUserMayCancel) {
    const ItemSample sample = Example_items("verbal");
    EstimationMemory memory;
    int steps = 0;
    const auto e = Estimate_GLLRM(
        sample.model, sample.table, Endless(), memory, [&] { return std::exchange(steps, 0) == 4; },
        {}, nullptr, [&](int step, Extended) { steps = step; });
    ASSERT_TRUE(e);
    EXPECT_TRUE(e->stopped);
    EXPECT_EQ(e->iteration.steps, 4);
    EXPECT_FALSE(e->iteration.reached_critical);
}

// Fourteen items in one component have four times the response vectors between two questions.
TEST(StopRules, AStopWithinAStepLeavesTheStepsBefore) {
    std::mt19937 random(12);
    std::string chain;
    for (char c = 'A'; c < 'N'; ++c) chain += std::string{c, static_cast<char>(c + 1)} + " ";
    const GLLRM model = With_terms_of(Model_of_dims(std::vector<int>(14, 2), {2}), chain + "AO");
    const ResponseTable table =
        Simulated_persons(random, model, Random_parameters(random, model), 200, 1);
    const auto stopped_at = [&](int step, int question, bool literal) {
        EstimationMemory memory;
        int steps = 0, asked = 0;
        EstimationSettings settings = Endless();
        settings.stops.maximum_steps = literal ? 1000 : 1;  // then sweeps follow
        return *Estimate_GLLRM(
            model, table, settings, memory, [&] { return steps == step && ++asked == question; },
            {}, nullptr, [&](int taken, Extended) { steps = taken; });
    };
    for (const bool literal : {true, false}) {
        const EstimatedGLLRM between = stopped_at(3, 1, literal);
        // Some tables of the sweep have had their turn by then.
        const EstimatedGLLRM within = stopped_at(3, literal ? 5 : 60, literal);
        EXPECT_TRUE(between.stopped && within.stopped);
        EXPECT_EQ(within.iteration.steps, 3);
        EXPECT_EQ(within.iteration.sweeps, literal ? 0 : 2);
        EXPECT_EQ(within.parameters.eps, between.parameters.eps);
        EXPECT_EQ(within.neg_loglik, between.neg_loglik);
    }
    const EstimatedGLLRM none = stopped_at(0, 3, true);
    EXPECT_TRUE(none.stopped);
    EXPECT_EQ(none.iteration.steps, 0);
    EXPECT_FALSE(none.converged) << "without a step nothing is known";
}

TEST(StopRules, ALikelihoodThatIsStoppedIsNone) {
    const ItemSample sample = Example_items("verbal");
    EstimationMemory memory;
    int questions = 0;
    const auto e =
        *Estimate_GLLRM(sample.model, sample.table, {}, memory, [&] { return ++questions > 3; });
    EXPECT_FALSE(e.likelihood_ready);
    for (const EstimationBlock block : {EstimationBlock::result, EstimationBlock::counts})
        for (const std::string& line : Estimation_lines(block, e)) {
            EXPECT_EQ(line.find("AIC"), std::string::npos) << line;
            EXPECT_EQ(line.find("Fitted margins"), std::string::npos) << line;
        }
}

TEST(StopRules, AQuestionThatIsLeftCancels) {
    const ItemSample sample = Example_items("verbal");
    EstimationMemory memory;
    EstimationSettings settings;
    settings.stops.maximum_steps = 3;
    settings.incomplete_responses = true;
    const auto e =
        Estimate_GLLRM(sample.model, sample.table, settings, memory, {},
                       [](const UnfinishedIteration&) { return ContinueAnswer::cancelled; });
    ASSERT_TRUE(e);
    EXPECT_TRUE(e->stopped);
    EXPECT_EQ(e->iteration.steps, 3);
    EXPECT_EQ(e->iteration.end.reason, IterationStop::cancelled);
    EXPECT_FALSE(e->joined_margins) << "incomplete responses are not begun with";
}

TEST(OrderedThresholds, AreOrderedAndNothingElseChanges) {
    const ItemSample sample = Example_items("verbal");
    EstimationSettings settings;
    const EstimatedGLLRM plain = Estimate(sample.model, sample.table, settings);
    settings.ordered_thresholds = true;
    const EstimatedGLLRM e = Estimate(sample.model, sample.table, settings);
    EXPECT_TRUE(e.thresholds_raised);
    int were_disordered = 0;
    Extended tops = 1;
    for (int i = 1; i <= 24; ++i) {
        const auto& eps = e.parameters.eps[At(i)];
        const auto& before = plain.parameters.eps[At(i)];
        EXPECT_GE(static_cast<double>(eps[1] * eps[1] / (eps[0] * eps[2])), 1 - 1e-12);
        were_disordered += before[1] * before[1] < before[0] * before[2] ? 1 : 0;
        tops *= eps[2];
    }
    EXPECT_GT(were_disordered, 0);
    EXPECT_NEAR(static_cast<double>(tops), 1, 1e-10);
    EXPECT_GT(e.neg_loglik, plain.neg_loglik);
}

TEST(OrderedThresholds, LeaveCategoriesThatNobodyHas) {
    std::mt19937 random(12);
    const GLLRM model = Model_of_dims({4, 4, 3});
    ResponseTable table =
        Simulated_persons(random, model, Random_parameters(random, model), 200, 1);
    for (std::size_t p = 0; p < table.size(); ++p)
        if (table.Scores(p)[0] == 1) table.codes[p * table.width()] = 0;
    EstimationSettings settings;
    settings.ordered_thresholds = true;
    EXPECT_EQ(Estimate(model, table, settings).parameters.eps[1][1], 0);
}

}  // namespace
}  // namespace tarven
