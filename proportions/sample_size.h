// The sample-size searches of one proportion and of paired proportions: where they look.
#pragma once

#include <vector>

#include "statpower/core.h"

namespace statpower {

inline constexpr double kSmallestSample = 1;
inline constexpr double kFirstUpperEnd = 400;

/// For powers by normal approximation and half-widths, which change steadily with N.
inline double search_sample_size(const std::vector<double>& design, POWER_NAMESPACE::Objective objective,
                                 OrvCommon_940::OrvQueryCancel* cancel) {
    return PowerReverse(design, objective, cancel, kSmallestSample, kFirstUpperEnd, 1e-9);
}

/// For exact powers, which are a saw-tooth in N: a whole number or the missing value.
inline double search_exact_sample_size(const std::vector<double>& design,
                                       POWER_NAMESPACE::Objective objective,
                                       OrvCommon_940::OrvQueryCancel* cancel) {
    double N = PowerReverse_Binom(design, objective, cancel, kSmallestSample, kFirstUpperEnd);
    OptimizeRtbBionm(&N, design, objective, cancel);
    return N;
}

}  // namespace statpower
