// Stand-ins for the noncentral distributions and their quantiles, for a test program that wants to see what
// the power library asks of them. A program that links distribution_stand_in.cpp defines the operations itself
// and so takes the place of the common library.
#pragma once

#include <functional>
#include <vector>

namespace testing_support {

/// One call of an operation: its arguments in order.
using Arguments = std::vector<double>;

/// The calls of the program so far, and what the operations answer.
struct DistributionCalls {
    std::vector<Arguments> idf_f, idf_t, noncentral_f, noncentral_t;
    std::function<double(const Arguments&)> f_quantile, t_quantile, f_cdf, t_cdf;
};
extern DistributionCalls distribution_calls;

}  // namespace testing_support
