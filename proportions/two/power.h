// Two independent proportions: what the sample-size searches evaluate.
#pragma once

#include <tuple>
#include <vector>

#include "statpower/core.h"

namespace statpower {

// ---- Design vectors of the sample-size searches ----------------------------------------------------------

/// r: the allocation ratio n2 / n1.
struct TwoProportionsSearch {
    double target, p1, p2, r;
    int method, test, sides;
    double alpha;
    bool continuity_correction, pooled;
    auto fields() {
        return std::tie(target, p1, p2, r, method, test, sides, alpha, continuity_correction, pooled);
    }
};

struct TwoProportionsHalfWidthSearch {
    double target, p1, p2, r;
    int method;
    double alpha;
    bool continuity_correction;
    auto fields() { return std::tie(target, p1, p2, r, method, alpha, continuity_correction); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

/// Power at n1 = N and n2 = r N, but at least 1, minus the target. Design:
/// TwoProportionsSearch. Method 1 with test 4 is evaluated as method 1 with test 0.
STATPOWER_API double IndSampBinomFunc(double N, std::vector<double> design,
                                      OrvCommon_940::OrvQueryCancel* cancel);

/// Refines the sizes that a continuous search found for an exact test, whose power is a saw-tooth in n1: the
/// search is repeated on [1, last answer] until it finds nothing new; from the smallest answer n1 is raised
/// until the exact power reaches the target. The repeated searches for test 3 evaluate the chi-square test.
/// @param[in,out] result  n1 and n2 (n2 = r n1 rounded half up, at least 1); at least two elements, or the
///                        standard out-of-range error is thrown. Left as it is when cancelled, and when the
///                        walk reaches sizes without a power.
/// @param design  as in IndSampBinomFunc
STATPOWER_API void PowerReverseU4Binom(std::vector<double>& result, std::vector<double> design,
                                       OrvCommon_940::OrvQueryCancel* cancel);

/// Target half-width minus the half-width at n1 and n2 = r n1. Design:
/// TwoProportionsHalfWidthSearch. 0 for a method other than 1 to 5: method 0 is solved in closed form.
STATPOWER_API double _SampleSizebyHalfCIIndSampBinom(double n1, std::vector<double> design,
                                                     OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
