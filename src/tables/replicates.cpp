#include "tables/replicates.h"

#include "tables/gamma.h"

namespace tarven {

StratumSampler::StratumSampler(const ExpectedTable& expected, const StatisticRule& rule,
                               bool with_gamma, DrawMemory&)
    : expected_(&expected),
      rule_(rule),
      with_gamma_(with_gamma),
      margins_(Margins_of_expected(expected)),
      table_(expected.rows, expected.columns) {}

StratumReplicate StratumSampler::Draw(RandomStream& stream) {
    return Draw(stream, table_);
}

StratumReplicate StratumSampler::Draw(RandomStream& stream, TwoWayTable& table) {
    Random_table(margins_, stream, table);
    StratumReplicate result;
    result.statistic = Sum_of_statistic(table, *expected_, rule_);
    if (with_gamma_) {
        const Concordance pairs = Concordance_of(table);
        result.P = pairs.P;
        result.Q = pairs.Q;
    }
    return result;
}

}  // namespace tarven
