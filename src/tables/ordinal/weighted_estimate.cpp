#include "tables/ordinal/weighted_estimate.h"

#include <algorithm>
#include <cmath>

#include "shell/numbers.h"
#include "tables/numbers/distributions.h"

namespace tarven {

namespace {

/// Rows and columns of the groups that have a variance, from 1.
Matrix Available_part(const Matrix& covariance, const std::vector<int>& available) {
    Matrix part;
    const int n = static_cast<int>(available.size());
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j)
            part(i, j) = covariance(available[static_cast<std::size_t>(i - 1)],
                                    available[static_cast<std::size_t>(j - 1)]);
    return part;
}

/// The estimate from y and W, and X2 = (y - estimate)'W(y - estimate).
void Fit(WeightedEstimate& result, const std::vector<double>& y, const Matrix& W) {
    const int n = static_cast<int>(y.size());
    Extended information = 0, weighted = 0;
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j) {
            information += W(i, j);
            weighted += static_cast<Extended>(W(i, j)) * y[static_cast<std::size_t>(j - 1)];
        }
    if (!(information > 0)) return;
    result.has_estimate = true;
    result.estimate = static_cast<double>(weighted / information);
    result.se = static_cast<double>(1 / std::sqrt(information));
    Extended sum = 0;
    for (int i = 1; i <= n; ++i)
        for (int j = 1; j <= n; ++j)
            sum += static_cast<Extended>(W(i, j)) *
                   (y[static_cast<std::size_t>(i - 1)] - result.estimate) *
                   (y[static_cast<std::size_t>(j - 1)] - result.estimate);
    result.X2 = std::max(0.0, static_cast<double>(sum));
}

void Set_residuals(WeightedEstimate& result) {
    for (WeightedGroup& group : result.groups) {
        const double left = group.variance - result.se * result.se;
        if (group.available && left > 1e-12 * group.variance)
            group.residual = (group.value - result.estimate) / std::sqrt(left);
    }
}

}  // namespace

WeightedEstimate Weighted_estimate(std::span<const double> values, const Matrix& covariance) {
    WeightedEstimate result;
    std::vector<int> available;
    std::vector<double> y;
    const int k = static_cast<int>(values.size());
    for (int i = 1; i <= k; ++i) {
        WeightedGroup& group = result.groups.emplace_back();
        group.value = values[static_cast<std::size_t>(i - 1)];
        group.variance = i <= Matrix::Capacity ? covariance(i, i) : 0;
        group.available = group.variance > 0;
        if (!group.available) continue;
        group.weight = 1 / group.variance;
        available.push_back(i);
        y.push_back(group.value);
    }
    if (k > Matrix::Capacity) {
        result.outcome = WeightedOutcome::too_many;
        return result;
    }
    if (available.empty()) return result;
    const int n = static_cast<int>(available.size());
    const InverseRecord inverse = Inverse_of_matrix(Available_part(covariance, available), n);
    if (inverse.outcome != Inversion::done) {
        result.outcome = WeightedOutcome::singular;
        return result;
    }
    Fit(result, y, inverse.inverse);
    if (!result.has_estimate) {
        result.outcome = WeightedOutcome::singular;
        return result;
    }
    Set_residuals(result);
    if (n < k) {
        result.outcome = WeightedOutcome::incomplete;
    } else if (k > 1) {
        result.outcome = WeightedOutcome::done;
        result.df = k - 1;
        result.p = Chi2_tail(result.df, result.X2);
    }
    return result;
}

WeightedEstimate Weighted_estimate(std::span<const double> values,
                                   std::span<const double> variances) {
    Matrix covariance;
    const int k = std::min(static_cast<int>(values.size()), Matrix::Capacity);
    for (int i = 1; i <= k; ++i) covariance(i, i) = variances[static_cast<std::size_t>(i - 1)];
    WeightedEstimate result = Weighted_estimate(values, covariance);
    for (std::size_t i = 0; i < values.size(); ++i) result.groups[i].variance = variances[i];
    return result;
}

}  // namespace tarven
