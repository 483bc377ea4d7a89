// A stand-in for the binomial operations of the distribution library, some of whose calls fail on demand. A
// test program that is linked with failing_binomial.cpp uses it instead of the library's own.
#pragma once

#include <functional>

namespace testing_support {

enum class Operation { kCdf, kIdf, kPdf };

struct BinomialCall {
    Operation operation;
    double argument;  ///< x, of a quantile the probability
    double n;
    double p;
};

/// While it lives, the calls for which `fails` is true leave a non-zero status and the missing value.
class FailingCalls {
  public:
    explicit FailingCalls(std::function<bool(const BinomialCall&)> fails);
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;
};

}  // namespace testing_support
