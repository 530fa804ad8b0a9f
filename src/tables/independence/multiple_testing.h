#pragma once

#include <span>
#include <string>
#include <vector>

#include "shell/settings.h"
#include "tables/independence/hypotheses.h"

namespace tarven {

/// Many p-values side by side: control of the false discovery rate, and the Bonferroni correction.

/// On entry `level` is the wanted false discovery rate q, on return the limit: (k/n) q of the
/// largest rank k whose p-value is at most that, and q/n when there is none, never 0. A p-value is
/// rejected when it is at most the limit, so equal ones share their fate. Without p-values `level`
/// stays. nan counts as 1. Cost: n log n.
/// Benjamini & Hochberg (1995), JRSS B 57, 289-300.
void Benjamini_Hochberg(std::span<const double> p, double& level);

/// The limit itself.
double Benjamini_Hochberg_limit(std::span<const double> p, double q);

/// Whether a p-value is at most the limit. Both are compared in the single precision of the rows,
/// so that 50 of 1000 is at most 0.05; the procedure itself compares in the same way.
bool At_most_limit(double p, double limit);

/// n times p, at most 1.
double Bonferroni(std::size_t n, double p);

/// The p-values of test results.
struct CollectedPValues {
    std::vector<double> p;
    int smallest_row = 0, largest_row = 0;  ///< rows (from 1) of the extremes; 0 without a p
};

/// `settings` are those of the run that made the results. Of each row with df > 0 the p of the
/// statistic and, when its hypothesis has a gamma, that of gamma, one- or two-sided by the
/// settings. Monte Carlo values where the settings want them and the row has them. A two-sided p is
/// at most 1. `list` and `results` are parallel.
CollectedPValues Collect_p_values(std::span<const Hypothesis> list,
                                  std::span<const TestResult> results,
                                  const TestSettings& settings);

/// Limits of the Benjamini-Hochberg procedure at the rates 0.05 and 0.01.
struct RejectionLimits {
    double fdr05 = 0;
    double fdr01 = 0;
};
RejectionLimits Rejection_limits(std::span<const double> p);

/// Two groups and the p-value of their comparison.
struct ComparedPair {
    int i = 0, j = 0;  ///< i < j, from 1
    double p = 1;
    bool operator==(const ComparedPair&) const = default;
};

/// Which of k groups may be taken as one.
struct PairwiseComparison {
    int groups = 0;
    double limit = 0;                                  ///< pairs with a p at most this are rejected
    std::vector<ComparedPair> pairs;                   ///< all, i ascending, then j
    std::vector<ComparedPair> rejected;                ///< by the limit
    std::vector<ComparedPair> rejected_for_coherence;  ///< accepted pairs that fall between classes
    std::vector<std::vector<int>> classes;  ///< groups of equivalence, by their smallest member

    bool all_different() const { return static_cast<int>(classes.size()) == groups; }
};

/// `p` holds the pairs 1-2, 1-3, .., 2-3, .. of `groups` groups. Pairs are rejected by the
/// Benjamini-Hochberg limit at rate q. Coherent classes come from the accepted pairs by complete
/// linkage: from single groups on, the two classes whose least p over all their cross pairs is
/// largest are joined as long as no cross pair is rejected; a tie goes to the first pair of
/// classes. So no class holds a rejected pair, and accepted pairs that end in different classes are
/// listed as rejected for the sake of coherence. Cost: groups^4.
PairwiseComparison Compare_groups(int groups, std::span<const double> p, double q = 0.05);

}  // namespace tarven
