// Constants and small helpers of the exported interface.
#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "core/groups.h"
#include "core/sums.h"
#include "statpower/core.h"

const double tol1 = 1e-12;
const double POWER_NAMESPACE::tol = 1e-10;

double statpower::sum(std::span<const double> values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}

double statpower::weighted_mean(std::span<const double> values, std::span<const double> weights) {
    return std::inner_product(weights.begin(), weights.end(), values.begin(), 0.0) / sum(weights);
}

double POWER_NAMESPACE::_MeanAverage(int k, double* values, double* weights) {
    return statpower::weighted_mean(statpower::groups(k, values), statpower::groups(k, weights));
}

double SampleSizeTotal(int k, const double* sizes) {
    return statpower::sum(statpower::groups(k, sizes));
}

double Combination(double n, double k) {
    if (k == 0 || k == n) return 1;
    if (std::isnan(n) || std::isnan(k)) return std::numeric_limits<double>::quiet_NaN();
    const double m = std::min(n - k, k);
    // From here on even the smallest coefficient, 2m over m, is beyond a double: no sum need be that long.
    constexpr double kAlwaysOverflows = 520;
    if (m >= kAlwaysOverflows || n == std::numeric_limits<double>::infinity())
        return std::numeric_limits<double>::infinity();
    double log_factorial = 0;
    for (double i = 1; i <= m; ++i) log_factorial += std::log(i);
    double log_product = 0;
    const double start = std::trunc(n - m + 1);
    // Counted from the start, as beyond 2^53 adding one no longer moves a double.
    for (double i = 0; i < m && start + i <= n; ++i) log_product += std::log(start + i);
    return std::exp(std::abs(log_factorial - log_product));
}

double InvTanh(double r) {
    constexpr double kLinear = 1e-12;
    if (std::abs(r) > 1) return -1;
    if (std::abs(r) < kLinear) return r;
    return 0.5 * (std::log(1 + r) - std::log(1 - r));
}
