// Calls of the common library whose value is not used. This file takes the place of the normal quantile in
// the test program, counts, and hands on to the common library.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <vector>

#include "correlation/correlation.h"
#include "correlation/kinds.h"
#include "orvcommon/dist_fun.h"

using namespace testing_support;

namespace {

std::vector<double>& quantiles_asked() {
    static thread_local std::vector<double> probabilities;
    return probabilities;
}

}  // namespace

double OrvMath_940::OrvDistFun::IdfStdNorm(double p) noexcept {
    using Quantile = double (*)(double);
    static const auto real =
        reinterpret_cast<Quantile>(dlsym(RTLD_NEXT, "_ZN11OrvMath_94010OrvDistFun10IdfStdNormEd"));
    quantiles_asked().push_back(p);
    return real(p);
}

namespace {

TEST(CorrelationCalls, TheHalfWidthSearchesAskForTheQuantileAndDiscardIt) {
    for (Kind kind : kAllKinds) {
        // The search itself evaluates the half-width twice, at both ends, and is then done.
        quantiles_asked().clear();
        EXPECT_EQ(size_for_half_width(kind, nullptr, 1.5, 0, 0.3, 0.1), 4);
        EXPECT_EQ(quantiles_asked(), std::vector<double>(3, 1 - 0.1 / 2));
    }
}

TEST(CorrelationCalls, ThePartialDefaultRangeEvaluatesThePowerAndDiscardsIt) {
    quantiles_asked().clear();
    int nMin = -1, nMax = -1;
    POWER_NAMESPACE::_SetPlotRangeN(20, 2, 0.3, 0.0, 1, 0.1, nMin, nMax);
    EXPECT_EQ(quantiles_asked(), std::vector<double>(1, 1 - 0.1));
    EXPECT_EQ(nMin, 6);
    EXPECT_EQ(nMax, 5002);
}

}  // namespace
