#pragma once

#include <span>
#include <string>
#include <vector>

#include "tables/numbers/matrix.h"

namespace tarven {

/// One value for several groups by generalized least squares, and the test that the groups have
/// the same value.

/// A group's part of the estimate.
struct WeightedGroup {
    double value = 0;
    double variance = 0;     ///< 0: not available, the group is left out of the estimate
    double weight = 0;       ///< 1 / variance; 0 when left out
    double residual = 0;     ///< (value - estimate) over its own standard error
    bool available = false;  ///< the variance is positive
};

enum class WeightedOutcome {
    done,
    incomplete,  ///< a group has no variance: an estimate from the others, but no test
    too_many,    ///< more groups than a matrix holds
    singular,    ///< the covariance matrix has no inverse
    too_few      ///< no group has a variance, or there is only one group
};

struct WeightedEstimate {
    WeightedOutcome outcome = WeightedOutcome::too_few;
    std::vector<WeightedGroup> groups;
    bool has_estimate = false;  ///< estimate, se and the residuals stand
    double estimate = 0;
    double se = 0;
    double X2 = 0;  ///< of equality; with df and p only when outcome is done
    int df = 0;     ///< groups - 1
    double p = 1;

    bool tested() const { return outcome == WeightedOutcome::done; }
};

/// Of values[0..k-1] with the k by k covariance matrix, whose variances may be 0 for groups without
/// one. With W the inverse of the covariances of the groups that have a variance, the estimate is
/// 1'Wy / 1'W1 with variance 1 / 1'W1, and X2 = (y - estimate)'W(y - estimate); the variance of a
/// residual is its own less that of the estimate. Uncorrelated groups get the weights 1/variance.
/// At most 40 groups. Cost: k^3. Grizzle, Starmer & Koch (1969), Biometrics 25, 489-504.
WeightedEstimate Weighted_estimate(std::span<const double> values, const Matrix& covariance);

/// The same for uncorrelated groups.
WeightedEstimate Weighted_estimate(std::span<const double> values,
                                   std::span<const double> variances);

}  // namespace tarven
