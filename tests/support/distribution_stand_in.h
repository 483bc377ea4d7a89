// Stand-ins for the distribution operations, for a test program that wants to see what the power library asks
// of them, to answer itself, or to let binomial operations fail. A program that links
// distribution_stand_in.cpp defines the operations and so takes the place of the common library, to which it
// hands on what it does not answer.
#pragma once

#include <functional>
#include <vector>

#include "orvcommon/mv.h"

namespace testing_support {

/// One call of an operation: its arguments in order.
using Arguments = std::vector<double>;

/// The calls of this thread so far, and what the operations answer: where no answer is set, the common
/// library's.
struct DistributionCalls {
    std::vector<Arguments> idf_std_norm, idf_f, idf_t, noncentral_f, noncentral_t;
    std::function<double(const Arguments&)> f_quantile, t_quantile, f_cdf, t_cdf;
};
extern thread_local DistributionCalls distribution_calls;

enum class Operation { kCdf, kIdf, kPdf };

struct BinomialCall {
    Operation operation;
    double argument;  ///< x, of a quantile the probability
    double n;
    double p;
};

/// While it lives, the binomial calls for which `fails` is true leave a non-zero status and give `value`.
class FailingCalls {
  public:
    explicit FailingCalls(std::function<bool(const BinomialCall&)> fails,
                          double value = OrvCommon_940::OrvMV::Missing());
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;
};

/// While it lives, binomial quantiles are off by so many counts.
class ShiftedQuantiles {
  public:
    explicit ShiftedQuantiles(double counts);
    ~ShiftedQuantiles();
    ShiftedQuantiles(const ShiftedQuantiles&) = delete;
    ShiftedQuantiles& operator=(const ShiftedQuantiles&) = delete;
};

}  // namespace testing_support
