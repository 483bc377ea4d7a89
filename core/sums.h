// Squares, sums and weighted means, as the formulas of every family need them.
#pragma once

#include <span>

namespace statpower {

inline double square(double x) {
    return x * x;
}

double sum(std::span<const double> values);

/// The sum of weights[i] * values[i] divided by the sum of the weights; NaN for no values.
double weighted_mean(std::span<const double> values, std::span<const double> weights);

}  // namespace statpower
