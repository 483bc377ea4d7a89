// Squares, sums and weighted means over groups, as the formulas of every family need them.
#pragma once

#include <cstddef>
#include <span>

namespace statpower {

/// The k values of an argument that the caller passed by pointer; none for k below 1.
template <class Number>
std::span<Number> groups(int k, Number* values) {
    return k < 1 ? std::span<Number>() : std::span(values, static_cast<std::size_t>(k));
}

inline double square(double x) {
    return x * x;
}

double sum(std::span<const double> values);

/// The sum of weights[i] * values[i] divided by the sum of the weights; NaN for no values.
double weighted_mean(std::span<const double> values, std::span<const double> weights);

}  // namespace statpower
