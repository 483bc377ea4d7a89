// Two independent proportions with a distribution library whose binomial probabilities can fail. This program
// defines PdfBin itself and so takes the place of the common library for the power library that it loads.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>

#include "orvcommon/dist_fun.h"
#include "proportions/two/fisher.h"
#include "proportions/two/unconditional.h"

namespace {

/// The one probability that fails: that of `x` successes in `n` trials.
struct Failure {
    double x;
    double n;
};
std::optional<Failure> failing;

}  // namespace

double OrvMath_940::OrvDistFun::PdfBin(double x, double n, double p, long& status) noexcept {
    if (failing && failing->x == x && failing->n == n) {
        status = 7;
        return 0.3;
    }
    if (x < 0 || x > n) return 0;
    return std::exp(std::lgamma(n + 1) - std::lgamma(x + 1) - std::lgamma(n - x + 1) + x * std::log(p) +
                    (n - x) * std::log1p(-p));
}

using namespace POWER_NAMESPACE;

namespace {

constexpr double n1 = 6;
constexpr double n2 = 9;
constexpr double p1 = 0.3;
constexpr double p2 = 0.7;

/// Runs check(failure) with each probability of the two groups failing in turn.
template <class Check>
void for_every_failure(Check check) {
    for (double n : {n1, n2})
        for (double x = 0; x <= n; ++x) {
            failing = Failure{x, n};
            SCOPED_TRACE(testing::Message() << x << " of " << n);
            check(*failing);
        }
    failing.reset();
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
    failing.reset();
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
    failing = Failure{2, n1};
    EXPECT_EQ(_ProbTotalSucc(n1, n2, p1, p2, 5, 0, 5, nullptr), product(0) + product(1));
    failing = Failure{5, n2};  // x1 = 0
    EXPECT_EQ(_ProbTotalSucc(n1, n2, p1, p2, 5, 0, 5, nullptr), 0);
    failing.reset();
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
