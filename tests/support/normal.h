// The standard normal distribution, not by way of the library.
#pragma once

#include <cmath>

namespace testing_support {

inline constexpr double kZ95 = 1.6448536269514722;  // quantiles
inline constexpr double kZ975 = 1.9599639845400545;

inline double phi(double x) {
    return std::erfc(-x / std::sqrt(2.0)) / 2;
}

}  // namespace testing_support
