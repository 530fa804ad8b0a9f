#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tables/independence/local_engine.h"
#include "tables/independence/multiple_testing.h"
#include "tables/ordinal/order_search.h"

namespace tarven {

/// Pseudo gamma: the largest absolute partial gamma of X and Y over all orders of the categories of
/// the nominal ones among them. What order of the categories would make the association as ordinal
/// as it can be, and is that more than chance can do?

/// What may be done with the categories of a variable.
enum class Permutability {
    fixed,       ///< ordinal
    restricted,  ///< nominal with two categories, whose orders are mirror images
    permutable   ///< nominal with more
};

/// Pairs of categories of a permuted variable, in the order of the analysis.
struct CategoryComparison {
    bool columns = false;         ///< whose: of the columns, else of the rows
    std::vector<int> categories;  ///< in the best order; groups of `pairwise` are places in it
    std::vector<double> gamma;    ///< of places i < j, from 0, at i * size + j
    PairwiseComparison pairwise;  ///< two-sided p-values of these gammas
};

/// The table after the categories that pairs do not tell apart were put together.
struct CollapsedOrder {
    std::vector<std::vector<int>> rows, columns;  ///< classes of categories, in the best order
    double gamma = 0;                             ///< pseudo gamma of the collapsed table
    std::vector<double> column_gamma;             ///< of two column classes, as in the comparison
    std::vector<double> row_gamma;
    bool collapsed = false;  ///< some class has two members
};

struct PseudoGammaSimulation {
    Sim_counts counts;        ///< `statistic` counts pseudo gammas at least the observed
    double median = 0;        ///< of the first million pseudo gammas
    std::int32_t wanted = 0;  ///< random tables, unless the stop rule ends the run
};

enum class PseudoGammaOutcome { searched, no_permutations, too_many, no_pairs };

struct PseudoGammaAnalysis {
    PseudoGammaOutcome outcome = PseudoGammaOutcome::searched;
    Permutability rows = Permutability::fixed, columns = Permutability::fixed;
    OrderProblem problem;
    BestOrder best;                             ///< the given order without permutations
    int rows_against = 0, columns_against = 0;  ///< pairs whose own gamma contradicts the order
    PartialGamma asymptotic;                    ///< of the order as if it had been given
    PseudoGammaSimulation simulation;
    std::optional<PartialTest> two_factor;  ///< with conditioning variables
    std::vector<CategoryComparison> comparisons;
    CollapsedOrder collapsed;  ///< as the comparisons say; only with comparisons
    bool stopped = false;      ///< the user ended a simulation; what came after it is asymptotic
};

/// Strata of random tables with the margins of `expected`, drawn as in the Monte Carlo tests, each
/// searched as the observed ones. The stop rule watches the count.
PseudoGammaSimulation Simulate_pseudo_gamma(std::span<const ExpectedTable> expected,
                                            double observed, OrderSearch& search,
                                            const MonteCarloRule& rule, RandomStream& stream,
                                            DrawMemory& memory, const StopCheck& stop = {});

/// The strata of the hypothesis that stand at no margin and are not empty. Every simulation starts
/// from settings.Seed in a stream of its own, so it neither depends on nor changes what else is
/// drawn. Once `stop` has ended one, the rest of the analysis is asymptotic.
PseudoGammaAnalysis Analyse_pseudo_gamma(const LocalHypothesis& hypothesis,
                                         const TestSettings& settings, const StopCheck& stop = {});

}  // namespace tarven
