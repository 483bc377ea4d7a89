// The sample-size searches of one proportion and of paired proportions: where they look.
#pragma once

#include "core/search.h"

namespace statpower {

inline constexpr double kSmallestSample = 1;

/// For powers by normal approximation and half-widths, which change steadily with N.
template <class Design>
double search_size(const Design& design, POWER_NAMESPACE::Objective objective,
                   OrvCommon_940::OrvQueryCancel* cancel) {
    return search_size(design, objective, cancel, kSmallestSample, kFirstReach);
}

/// For exact powers, which are a saw-tooth in N: a whole number or the missing value.
template <class Design>
double search_exact_size(const Design& design, POWER_NAMESPACE::Objective objective,
                         OrvCommon_940::OrvQueryCancel* cancel) {
    const auto vector = pack(design);
    double N = PowerReverse_Binom(vector, objective, cancel, kSmallestSample, kFirstReach);
    OptimizeRtbBionm(&N, vector, objective, cancel);
    return N;
}

}  // namespace statpower
