#include "tables/independence/case_tests.h"

namespace tarven {

TestedHypothesis Test_from_cases(const PackedCases& packed, const Hypothesis& hypothesis,
                                 const TestSettings& settings, RandomStream& stream,
                                 DrawMemory& memory, StrataMemory& strata, const StopCheck& stop) {
    TestedHypothesis outcome;
    const TestedPair pair = Tested_pair(hypothesis);
    if (!pair.proper() || pair.Y > packed.nvar) return outcome;
    outcome.has_gamma = Gamma_is_defined(packed, pair.X, pair.Y);
    const bool simulates = settings.ExactTests && settings.Nsim > 0;
    const StatisticRule rule = Statistic_rule(settings);
    StrataSums sums;
    std::vector<TwoWayTable> counts;
    std::vector<ExpectedTable> expected;
    const StrataFound found =
        For_each_stratum(packed, hypothesis, strata, [&](const TwoWayTable& stratum) {
            if (!simulates)
                return Add_stratum(sums, stratum, Expected_of_slice(stratum), outcome.has_gamma,
                                   rule);
            counts.push_back(stratum);
            expected.push_back(Expected_of_slice(stratum));
        });
    outcome.cases = found.cases;
    outcome.missing_slices = found.missing_slices;
    outcome.row = Row_of(
        simulates ? Test_strata(counts, expected, outcome.has_gamma, settings, stream, memory, stop)
                  : Asymptotic_test(sums, outcome.has_gamma));
    return outcome;
}

}  // namespace tarven
