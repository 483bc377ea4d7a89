// Two independent proportions when binomial probabilities fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "orvcommon/dist_fun.h"
#include "proportions/two/fisher.h"
#include "proportions/two/unconditional.h"
#include "support/distribution_stand_in.h"

using namespace POWER_NAMESPACE;
using testing_support::BinomialCall;
using testing_support::FailingCalls;
using testing_support::Operation;

namespace {

constexpr double n1 = 6;
constexpr double n2 = 9;
constexpr double p1 = 0.3;
constexpr double p2 = 0.7;

/// The one probability that fails: that of `x` successes in `n` trials.
struct Failure {
    double x;
    double n;
};

/// Fails with a value that could be a probability: only the status says that it is none.
FailingCalls failing(Failure failure) {
    return FailingCalls(
        [=](const BinomialCall& call) {
            return call.operation == Operation::kPdf && call.argument == failure.x && call.n == failure.n;
        },
        0.3);
}

/// Runs check(failure) with each probability of the two groups failing in turn.
template <class Check>
void for_every_failure(Check check) {
    for (double n : {n1, n2})
        for (double x = 0; x <= n; ++x) {
            const Failure failure{x, n};
            const FailingCalls fails = failing(failure);
            SCOPED_TRACE(testing::Message() << x << " of " << n);
            check(failure);
        }
}

template <class Rejects>
bool touches_rejection(Failure failure, Rejects rejects) {
    for (int x1 = 0; x1 <= n1; ++x1)
        for (int x2 = 0; x2 <= n2; ++x2)
            if ((failure.n == n1 ? x1 : x2) == failure.x && rejects(x1, x2)) return true;
    return false;
}

/// -2 where the probability of a table that rejects fails, else the power without any failure.
template <class Power, class Rejects>
void expect_failure_of_rejecting_tables_only(Power power, Rejects rejects) {
    const double intact = power();
    ASSERT_GT(intact, 0);
    int untouched = 0;
    for_every_failure([&](Failure failure) {
        const bool touched = touches_rejection(failure, rejects);
        EXPECT_EQ(power(), touched ? -2 : intact);
        untouched += touched ? 0 : 1;
    });
    EXPECT_GT(untouched, 0);
}

const double kZ = OrvMath_940::OrvDistFun::IdfStdNorm(0.95);

TEST(FailingBinomialProbability, OfARejectingTableMakesTheChiSquarePowerMinusTwo) {
    expect_failure_of_rejecting_tables_only(
        [] { return _PowerIndSamBinBinEnumChisq(n1, n2, p1, p2, 1, 0.05, false, nullptr); },
        [](int x1, int x2) { return _BinEnumChisqTestStatsZ(n1, n2, p1, p2, x1, x2, 1, false).first > kZ; });
}

TEST(FailingBinomialProbability, OfARejectingTableMakesTheTPowerMinusTwo) {
    const double critical = OrvMath_940::OrvDistFun::IdfT(0.95, n1 + n2 - 2, 1e-20, 1e-12);
    expect_failure_of_rejecting_tables_only(
        [] { return _PowerIndSamBinBinEnumT(n1, n2, p1, p2, 1, 0.05, true, nullptr); },
        [=](int x1, int x2) { return _BinEnumTTestStatsT(n1, n2, p1, p2, x1, x2, 1, true) > critical; });
}

TEST(FailingBinomialProbability, OfARejectingTableMakesTheLikelihoodRatioPowerMinusTwo) {
    const double critical = OrvMath_940::OrvDistFun::IdfStdNorm(1 - 1e-5);
    expect_failure_of_rejecting_tables_only(
        [] { return _PowerIndSamBinBinEnumLRT(n1, n2, p1, p2, 1, 1e-5, nullptr); },
        [=](int x1, int x2) { return std::sqrt(_BinEnumLRTTestStatsL(n1, n2, x1, x2)) > critical; });
}

TEST(FailingBinomialProbability, EndsTheSumOfATotal) {
    const auto product = [](double x) {
        long status = 0;
        return OrvMath_940::OrvDistFun::PdfBin(x, n1, p1, status) *
               OrvMath_940::OrvDistFun::PdfBin(5 - x, n2, p2, status);
    };
    {
        const FailingCalls fails = failing({2, n1});
        EXPECT_EQ(_ProbTotalSucc(n1, n2, p1, p2, 5, 0, 5, nullptr), product(0) + product(1));
    }
    const FailingCalls fails = failing({5, n2});  // x1 = 0
    EXPECT_EQ(_ProbTotalSucc(n1, n2, p1, p2, 5, 0, 5, nullptr), 0);
}

TEST(FailingBinomialProbability, LeavesFishersPowerItsPartialSums) {
    const double psi = p1 / (1 - p1) / (p2 / (1 - p2));
    for_every_failure([&](Failure) {
        double expected = 0;
        for (int t = 0; t <= n1 + n2; ++t) {
            const double lo = std::max(0.0, t - n2);
            const double hi = std::min(1.0 * t, n1);
            const double last = _quantileAscending(n1, n2, t, lo, hi, 1, 0.05, nullptr);
            double rejected = 0;
            for (double x = lo; last <= hi && x <= last; ++x)
                rejected += _CondDisProb(n1, n2, x, t, psi, lo, hi, nullptr);
            expected += _ProbTotalSucc(n1, n2, p1, p2, t, lo, hi, nullptr) * rejected;
        }
        EXPECT_NEAR(_PowerIndSamBinBinEnumFisher(n1, n2, p1, p2, 1, 0.05, nullptr), expected, 1e-15);
    });
}

}  // namespace
