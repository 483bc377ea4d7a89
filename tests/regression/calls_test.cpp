// What the powers ask of the noncentral F distribution. This file takes its place in the test program, records
// the arguments and hands on to the common library.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <vector>

#include "orvcommon/dist_fun.h"
#include "statpower/regression.h"

namespace {

using Arguments = std::vector<double>;

std::vector<Arguments>& noncentral_calls() {
    static thread_local std::vector<Arguments> calls;
    return calls;
}

}  // namespace

double OrvMath_940::OrvDistFun::NonCentralCdfF(double x, double df1, double df2, double noncentrality,
                                               double tolerance) noexcept {
    using Operation = double (*)(double, double, double, double, double);
    static const auto real =
        reinterpret_cast<Operation>(dlsym(RTLD_NEXT, "_ZN11OrvMath_94010OrvDistFun14NonCentralCdfFEddddd"));
    noncentral_calls().push_back({x, df1, df2, noncentrality, tolerance});
    return real(x, df1, df2, noncentrality, tolerance);
}

namespace {

TEST(RegressionCalls, FixedPredictorsHandTheNoncentralityAndTheLibrarysToleranceOn) {
    const double dfe = 40 - 1 - 5, critical = OrvMath_940::OrvDistFun::IdfF(1 - 0.1, 2, dfe);
    noncentral_calls().clear();
    Powerbymlr(0, true, 40, 5, 2, 0.5, 0.25, 0.1);
    const double e = (0.5 - 0.25) / (1 - 0.25);
    PowerbymlrwES(0, true, 40, 5, 2, 0.25, 0.1);
    EXPECT_EQ(noncentral_calls(),
              std::vector<Arguments>({{critical, 2, dfe, 40 * e / (1 - e), POWER_NAMESPACE::tol},
                                      {critical, 2, dfe, 40 * 0.25, POWER_NAMESPACE::tol}}));
}

TEST(RegressionCalls, RandomPredictorsOfOrdinaryDesignsNeedNoNoncentralDistribution) {
    noncentral_calls().clear();
    for (double N : {10.0, 100.0, 5000.0})
        for (double R : {0.0, 0.2, 0.97}) Powerbymlr(1, true, N, 5, 5, R, 0, 0.05);
    EXPECT_TRUE(noncentral_calls().empty());
}

TEST(RegressionCalls, AnUnreachableSearchWithRandomPredictorsAsksWithinBounds) {
    noncentral_calls().clear();
    PowerReversebymlrwES(1, true, 1.5, 5, 5, 0.3, 0.05);
    EXPECT_GT(noncentral_calls().size(), 0u);
    EXPECT_LT(noncentral_calls().size(), 200u * 1024);
}

}  // namespace
