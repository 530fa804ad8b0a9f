#include "tables/ordinal/gamma_homogeneity.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "tables/numbers/distributions.h"

namespace tarven {

namespace {

double Two_sided_p(double z) {
    return std::min(1.0, 2 * Normal_p(std::fabs(z)));
}

/// Means of one stratum after another with weights 1/variance, and the sums of the weights.
struct CumulatedMeans {
    std::vector<double> mean, weight;
};

/// Strata without a variance add nothing.
template <class Strata>
CumulatedMeans Cumulate(const Strata& strata) {
    CumulatedMeans result;
    double weighted = 0, weight = 0;
    for (const GammaSums& sums : strata) {
        if (sums.variance() > 0) {
            weighted += sums.gamma() / sums.variance();
            weight += 1 / sums.variance();
        }
        result.mean.push_back(weight > 0 ? weighted / weight : 0);
        result.weight.push_back(weight);
    }
    return result;
}

/// The sums of the gammas of each real stratum, those of the fitted tables included; parallel to
/// the slices, zero for margins and strata without cases.
std::vector<GammaSums> Sums_of_slices(const LocalHypothesis& hypothesis, const LocalResult& result,
                                      bool& fitted) {
    std::vector<GammaSums> sums(hypothesis.slices.size());
    std::vector<TwoWayTable> counts;
    std::vector<std::size_t> place;
    for (std::size_t s = 0; s < sums.size(); ++s) {
        const StratumResult& stratum = result.strata[s];
        if (stratum.margin || stratum.empty) continue;
        sums[s] = {.P = stratum.gamma.P, .Q = stratum.gamma.Q, .V = stratum.gamma.V};
        counts.push_back(hypothesis.slices[s].counts);
        place.push_back(s);
    }
    if (counts.empty()) return sums;
    const XyzFit fit = fit_xyz(counts);
    fitted = fit.converged;
    if (!fitted) return sums;
    for (std::size_t k = 0; k < place.size(); ++k) {
        const FittedConcordance pairs = Concordance_of(fit.fitted[k]);
        sums[place[k]].fitted_P = pairs.P;
        sums[place[k]].fitted_Q = pairs.Q;
    }
    return sums;
}

/// All combinations of the members' categories, the first member fastest.
std::vector<std::vector<int>> Levels(const LocalHypothesis& hypothesis,
                                     const std::vector<std::size_t>& members) {
    std::vector<std::vector<int>> levels{{}};
    for (const std::size_t m : members) {
        std::vector<std::vector<int>> longer;
        for (int c = 1; c <= hypothesis.Z[m].DIM; ++c)
            for (std::vector<int> level : levels) {
                level.push_back(c);
                longer.push_back(std::move(level));
            }
        levels = std::move(longer);
    }
    return levels;
}

/// p-values of the differences of all pairs of strata.
PairwiseComparison Compare_strata(const HomogeneityRecord& record) {
    std::vector<double> p;
    const std::vector<LocalGamma>& strata = record.strata;
    for (std::size_t i = 0; i < strata.size(); ++i)
        for (std::size_t j = i + 1; j < strata.size(); ++j) {
            const GammaSums &a = strata[i].sums, &b = strata[j].sums;
            p.push_back(
                Two_sided_p((a.gamma() - b.gamma()) / std::sqrt(a.variance() + b.variance())));
        }
    return Compare_groups(static_cast<int>(strata.size()), p);
}

ConditioningSet Analyse_set(const LocalHypothesis& hypothesis,
                            const std::vector<GammaSums>& of_slices,
                            std::vector<std::size_t> members) {
    ConditioningSet set;
    set.levels = Levels(hypothesis, members);
    std::map<std::vector<int>, GammaSums> sums;
    for (std::size_t s = 0; s < of_slices.size(); ++s) {
        std::vector<int> level;
        level.reserve(members.size());
        for (const std::size_t m : members) level.push_back(hypothesis.slices[s].category[m]);
        sums[level] += of_slices[s];
    }
    std::vector<GammaSums> strata;
    for (const std::vector<int>& level : set.levels) strata.push_back(sums[level]);
    set.record = Analysis_of_homogeneity(strata);
    set.members = std::move(members);
    if (set.members.size() == 1 && strata.size() > 2 && set.record.interaction())
        set.comparison = Compare_strata(set.record);
    return set;
}

}  // namespace

GammaSums& GammaSums::operator+=(const GammaSums& other) {
    P += other.P;
    Q += other.Q;
    V += other.V;
    fitted_P += other.fitted_P;
    fitted_Q += other.fitted_Q;
    return *this;
}

FittedGamma Fitted_gamma(const GammaSums& sums) {
    FittedGamma result{.observed = sums.gamma(), .expected = sums.fitted()};
    if (!(sums.variance() > 0)) return result;
    result.se = std::sqrt(sums.variance());
    result.z = (result.observed - result.expected) / result.se;
    result.p = Two_sided_p(result.z);
    return result;
}

FittedConcordance Concordance_of(const ExpectedTable& fitted) {
    std::vector<double> column(static_cast<std::size_t>(fitted.columns));
    double concordant = 0, discordant = 0, above = 0;
    for (int i = 1; i <= fitted.rows; ++i) {
        double left = 0;
        for (int j = 1; j <= fitted.columns; ++j) {
            const double n = fitted(i, j);
            concordant += n * left;
            left += column[static_cast<std::size_t>(j - 1)];
            discordant += n * (above - left);
        }
        for (int j = 1; j <= fitted.columns; ++j) {
            column[static_cast<std::size_t>(j - 1)] += fitted(i, j);
            above += fitted(i, j);
        }
    }
    return {2 * (concordant + discordant), 2 * (concordant - discordant)};
}

HomogeneityRecord Analysis_of_homogeneity(std::span<const GammaSums> strata) {
    HomogeneityRecord record;
    std::vector<double> gammas, variances;
    for (const GammaSums& sums : strata) {
        gammas.push_back(sums.gamma());
        variances.push_back(sums.variance());
    }
    record.estimate = Weighted_estimate(gammas, variances);
    const std::size_t k = strata.size();
    const CumulatedMeans down = Cumulate(strata);
    const CumulatedMeans up = Cumulate(std::vector<GammaSums>(strata.rbegin(), strata.rend()));
    for (std::size_t s = 0; s < k; ++s)
        record.strata.push_back({strata[s], down.mean[s], up.mean[k - 1 - s]});
    if (!record.estimate.tested()) return record;
    for (std::size_t m = 1; m < k; ++m) {
        const double u = (down.mean[m - 1] - up.mean[k - 1 - m]) /
                         std::sqrt(1 / down.weight[m - 1] + 1 / up.weight[k - 1 - m]);
        if (record.split > 0 && std::fabs(u) <= std::fabs(record.u)) continue;
        record.split = static_cast<int>(m);
        record.u = u;
    }
    return record;
}

HomogeneityAnalysis Analyse_homogeneity(const LocalHypothesis& hypothesis,
                                        const LocalResult& result) {
    HomogeneityAnalysis analysis;
    analysis.has_gamma = result.has_gamma;
    if (!analysis.has_gamma) return analysis;
    const std::vector<GammaSums> sums = Sums_of_slices(hypothesis, result, analysis.fitted);
    std::vector<std::size_t> all;
    for (std::size_t m = 0; m < hypothesis.Z.size(); ++m) {
        analysis.sets.push_back(Analyse_set(hypothesis, sums, {m}));
        all.push_back(m);
    }
    if (all.size() > 1) analysis.sets.push_back(Analyse_set(hypothesis, sums, all));
    GammaSums total;
    for (const GammaSums& one : sums) total += one;
    analysis.partial = Fitted_gamma(total);
    return analysis;
}

}  // namespace tarven
