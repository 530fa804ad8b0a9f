#pragma once

#include <span>
#include <string>
#include <vector>

#include "tables/independence/local_engine.h"
#include "tables/independence/multiple_testing.h"
#include "tables/ordinal/weighted_estimate.h"

namespace tarven {

/// Whether the association of X and Y is the same in all strata: the gammas of the strata are
/// compared, with the variance that gamma has under independence.

/// The sums that a gamma comes from, of one table or of several.
struct GammaSums {
    double P = 0, Q = 0, V = 0;         ///< as in GammaRecord
    double fitted_P = 0, fitted_Q = 0;  ///< of the fitted tables
    double gamma() const { return P > 0 ? Q / P : 0; }
    double fitted() const { return fitted_P > 0 ? fitted_Q / fitted_P : 0; }
    double variance() const { return P > 0 ? V / P / P : 0; }
    GammaSums& operator+=(const GammaSums& other);
};

/// An observed gamma beside that of the fitted table.
struct FittedGamma {
    double observed = 0, expected = 0;
    double se = 0;  ///< of the observed one under independence; 0: not available
    double z = 0;   ///< (observed - expected) / se
    double p = 1;   ///< two-sided
};
FittedGamma Fitted_gamma(const GammaSums& sums);

/// Concordant plus and minus discordant pairs of fitted counts, each pair counted twice: P and Q.
struct FittedConcordance {
    double P = 0, Q = 0;
};
FittedConcordance Concordance_of(const ExpectedTable& fitted);

/// One line of strata, the first to the last.
struct LocalGamma {
    GammaSums sums;
    double down = 0;  ///< gamma of this stratum and all before it, by weights 1/variance
    double up = 0;    ///< of this stratum and all after it
};

/// The strata of one conditioning set with the test that they have the same gamma.
struct HomogeneityRecord {
    std::vector<LocalGamma> strata;
    WeightedEstimate estimate;
    /// The strata 1..split are compared with the rest where the two differ most: u is the
    /// difference of their cumulated gammas over its standard error. 0 without a test. As the
    /// split is chosen by the data, u is larger than a standard normal even under homogeneity.
    int split = 0;
    double u = 0;

    /// The test says that the gammas differ, at the 5 % level.
    bool interaction() const { return estimate.tested() && estimate.p <= 0.05; }
};

/// Weighted least squares over the strata with weights 1/variance, and the test of equality with
/// strata - 1 degrees of freedom. There is no test unless every stratum has a positive variance.
/// Grizzle, Starmer & Koch (1969), Biometrics 25, 489-504.
HomogeneityRecord Analysis_of_homogeneity(std::span<const GammaSums> strata);

/// One conditioning set of a hypothesis: some of its conditioning variables, the others summed
/// over within each of its strata.
struct ConditioningSet {
    std::vector<std::size_t> members;      ///< places in hypothesis.Z
    std::vector<std::vector<int>> levels;  ///< [stratum]: categories of the members
    HomogeneityRecord record;
    /// Which levels may be taken as one; only for a single variable with three or more levels
    /// whose test found interaction.
    PairwiseComparison comparison;
};

struct HomogeneityAnalysis {
    bool has_gamma = false;  ///< false: X or Y is nominal, and there is nothing else
    bool fitted = false;     ///< the fit of two-factor association converged
    std::vector<ConditioningSet> sets;
    FittedGamma partial;  ///< of the hypothesis, under two-factor association
};

/// Each conditioning variable alone, then, when there are several, all of them jointly. The fitted
/// gammas are those of the model of two-factor association, in which strata have the same odds
/// ratios. `result` is that of the hypothesis.
HomogeneityAnalysis Analyse_homogeneity(const LocalHypothesis& hypothesis,
                                        const LocalResult& result);

}  // namespace tarven
