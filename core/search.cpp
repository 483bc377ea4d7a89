// Where the powers of t and F tests reach a target, about: by their normal approximations.
#include "core/search.h"

#include <cmath>

#include "core/rejection.h"
#include "core/sums.h"

using OrvMath_940::OrvDistFun;

namespace statpower {

SteadyStart t_test_start(double target, double tail, double rate, double df_rate) {
    const double critical = z_critical(tail), distance = critical + OrvDistFun::IdfStdNorm(target);
    const double slope = std::abs(rate);
    // The t quantile exceeds the normal one by a factor of 1 + z^2 / (4 df).
    return {square(distance / slope) + square(critical) / (2 * df_rate), distance > 0 ? slope : 0};
}

SteadyStart f_test_start(double target, double alpha, double df1, double rate) {
    if (df1 == 1) return t_test_start(target, alpha / 2, std::sqrt(rate));
    // The chi-square critical value (Wilson and Hilferty), then the noncentral distribution taken as normal with
    // mean df1 + lambda and variance s^2 = 2 (df1 + 2 lambda).
    const double z = OrvDistFun::IdfStdNorm(target), c = 2 / (9 * df1),
                 w = 1 - c + z_critical(alpha) * std::sqrt(c);
    const double critical = df1 * w * w * w;
    const double s = 2 * z + 2 * std::sqrt(square(z) - df1 / 2 + critical);
    const double noncentrality = (square(s) - 2 * df1) / 4, N = noncentrality / rate;
    const double slope = (1 / s - 2 * z / square(s)) * 2 * noncentrality / std::sqrt(N);
    return {N, slope};
}

}  // namespace statpower
