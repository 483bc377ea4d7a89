#include "plan/largest.h"

#include <algorithm>
#include <boost/math/tools/minima.hpp>
#include <cmath>
#include <numbers>
#include <vector>

namespace statplan {

double largest_over_probabilities(double n, Cancel* cancel,
                                  const std::function<double(double)>& probability) {
    constexpr double kRise = 2.5e-4;
    const double right = std::numbers::pi / 2;
    const auto at_angle = [&](double angle) {
        const double root = std::sin(angle);
        return angle == right ? probability(1) : probability(root * root);
    };
    const auto steps = static_cast<std::size_t>(std::ceil(right * 32 * std::sqrt(n)));
    const double step = right / static_cast<double>(steps);
    std::vector<double> values;
    for (std::size_t i = 0; i <= steps; ++i) {
        if (cancel && cancel->IsCancelRequested()) return kNotGiven;
        values.push_back(at_angle(i == steps ? right : static_cast<double>(i) * step));
    }
    const double at_points = *std::ranges::max_element(values);
    double largest = at_points;
    for (std::size_t i = 1; i < steps; ++i) {
        if (values[i] < at_points - kRise || values[i] < values[i - 1] || values[i] < values[i + 1]) continue;
        if (cancel && cancel->IsCancelRequested()) return kNotGiven;
        const double angle = static_cast<double>(i) * step;
        const auto [place, negative] = boost::math::tools::brent_find_minima(
            [&](double x) { return -at_angle(x); }, angle - step, angle + step, 26);
        largest = std::max(largest, -negative);
    }
    return largest;
}

}  // namespace statplan
