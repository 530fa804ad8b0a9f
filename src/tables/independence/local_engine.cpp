#include "tables/independence/local_engine.h"

#include <algorithm>
#include <map>

#include "tables/numbers/distributions.h"

namespace tarven {

namespace {

/// The strata that count, and which categories of the conditioning variables each belongs to.
struct RealStrata {
    std::vector<TwoWayTable> counts;
    std::vector<ExpectedTable> expected;
    std::vector<std::vector<int>>
        groups;  ///< indices from 0, category by category, variable by variable
};

std::vector<int> Groups_of(const LocalHypothesis& hypothesis, const LocalSlice& slice) {
    std::vector<int> groups;
    int first = 0;
    for (std::size_t k = 0; k < slice.category.size(); ++k) {
        groups.push_back(first + slice.category[k] - 1);
        first += hypothesis.Z[k].DIM;
    }
    return groups;
}

CategoryResult Result_of_category(const StrataSums& sums, bool has_gamma) {
    const HypothesisTest test = Asymptotic_test(sums, has_gamma);
    CategoryResult result;
    result.cases = sums.cases;
    result.Statistic = static_cast<float>(sums.statistic);
    result.Df = static_cast<float>(sums.df);
    result.PAsymp = static_cast<float>(test.PAsymp);
    result.Gamma = static_cast<float>(test.gamma.gamma);
    result.PGammaAsymp = static_cast<float>(test.gamma.p);
    result.P = static_cast<float>(sums.P);
    result.Q = static_cast<float>(sums.Q);
    result.V = static_cast<float>(sums.V);
    return result;
}

/// Compares the likelihood ratio of random tables with the observed one. All tables of a run have
/// the margins of the observed strata, so that of X by Y decides, and one that was met before is
/// not fitted again.
class TwoFactorComparison {
  public:
    explicit TwoFactorComparison(Extended observed) : observed_(observed) {}

    bool At_least(std::span<const TwoWayTable> tables) {
        std::vector<std::int32_t> xy(tables.front().cells.size());
        for (const TwoWayTable& table : tables)
            for (std::size_t c = 0; c < xy.size(); ++c) xy[c] += table.cells[c];
        const auto known = known_.find(xy);
        if (known != known_.end()) return known->second;
        const bool at_least = Two_factor_lr_of_margins(tables, fit_xyz(tables)) >= observed_;
        if (known_.size() < MostKnown) known_.emplace(std::move(xy), at_least);
        return at_least;
    }

  private:
    static constexpr std::size_t MostKnown = 10000;
    Extended observed_;
    std::map<std::vector<std::int32_t>, bool> known_;
};

void Simulate(LocalResult& result, const RealStrata& real, int group_count,
              const TestSettings& settings, RandomStream& stream, DrawMemory& memory,
              const StopCheck& stop) {
    const MonteCarloRule rule = Monte_carlo_rule(settings);
    const LocalTest observed = Observed_local_test(real.counts, real.expected, real.groups,
                                                   group_count, rule.statistic, result.has_gamma);
    TwoFactorComparison comparison(result.partial ? result.partial->lr_of_margins : 0);
    PartialCheck partial;
    if (result.partial)
        partial = [&](std::span<const TwoWayTable> tables) { return comparison.At_least(tables); };
    const LocalCounts counts =
        Local_monte_carlo_test(real.expected, observed, rule, stream, memory, stop, partial);
    result.test.counts = counts.hypothesis;
    result.partial_count = counts.partial;
    auto group = counts.groups.begin();
    for (std::vector<CategoryResult>& variable : result.categories)
        for (CategoryResult& category : variable) category.counts = *group++;
}

}  // namespace

void Count_stratum(SixWayCount& count, const GammaRecord& gamma) {
    if (gamma.gamma == 0) return;
    const double p = 2 * gamma.p;
    const int column = p > 0.05 ? 0 : p > 0.01 ? 1 : 2;
    ++(gamma.gamma < 0 ? count.negative : count.positive)[column];
}

bool Is_margin(const LocalHypothesis& hypothesis, const LocalSlice& slice) {
    for (std::size_t k = 0; k < slice.category.size(); ++k)
        if (slice.category[k] > hypothesis.Z[k].DIM) return true;
    return false;
}

LocalResult EXANALYSE(const LocalHypothesis& hypothesis, const TestSettings& settings,
                      bool partial_off, RandomStream& stream, DrawMemory& memory,
                      const StopCheck& stop) {
    const StatisticRule rule = Statistic_rule(settings);
    LocalResult result;
    result.has_gamma = Gamma_is_defined(hypothesis.X.DIM, hypothesis.X.VTYPE, hypothesis.Y.DIM,
                                        hypothesis.Y.VTYPE);
    int group_count = 0;
    for (const TableVariable& z : hypothesis.Z) group_count += z.DIM;
    StrataSums sums;
    std::vector<StrataSums> group_sums(static_cast<std::size_t>(group_count));
    RealStrata real;
    for (const LocalSlice& slice : hypothesis.slices) {
        StratumResult& stratum = result.strata.emplace_back();
        stratum.margin = Is_margin(hypothesis, slice);
        stratum.empty = slice.counts.Total() < 1;
        stratum.expected = Expected_under_independence(slice.counts);
        if (stratum.empty) continue;
        stratum.statistic = Two_way_statistic(slice.counts, stratum.expected, rule);
        if (result.has_gamma) stratum.gamma = Gamma_of_table(slice.counts);
        if (stratum.margin) continue;
        Count_stratum(result.six_way, stratum.gamma);
        const std::vector<int> groups = Groups_of(hypothesis, slice);
        Add_stratum(sums, slice.counts, stratum.expected, result.has_gamma, rule);
        for (const int group : groups)
            Add_stratum(group_sums[static_cast<std::size_t>(group)], slice.counts, stratum.expected,
                        result.has_gamma, rule);
        real.counts.push_back(slice.counts);
        real.expected.push_back(stratum.expected);
        real.groups.push_back(groups);
    }
    result.test = Asymptotic_test(sums, result.has_gamma);
    auto group = group_sums.begin();
    for (const TableVariable& z : hypothesis.Z) {
        std::vector<CategoryResult>& variable = result.categories.emplace_back();
        for (int c = 1; c <= z.DIM; ++c)
            variable.push_back(Result_of_category(*group++, result.has_gamma));
    }
    const TestResult row = Row_of(result.test);
    result.smallest_p = row.PAsymp;
    if (result.has_gamma) result.smallest_p = std::min(row.PAsymp, row.PGammaAsymp);
    if (settings.PartialTests && !partial_off && !hypothesis.Z.empty() && !real.counts.empty())
        result.partial = Two_factor_test(real.counts, real.expected);
    if (settings.ExactTests && settings.Nsim > 0 && result.test.tested())
        Simulate(result, real, group_count, settings, stream, memory, stop);
    return result;
}

}  // namespace tarven
