// Powers as functions of the sample size: the searches for a sample size rely on their smoothness.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "orvcommon/dist_fun.h"

using OrvMath_940::OrvDistFun;

namespace {

/// Two-sided power of the two-sample t test with n cases per group.
double t_power(double n, double effect, double alpha) {
    const double df = 2 * n - 2, delta = effect * std::sqrt(n / 2);
    const double t = OrvDistFun::IdfT(1 - alpha / 2, df, 1e-40, 1e-30);
    return 1 - OrvDistFun::NonCentralCdfT(t, df, delta, 1e-12) +
           OrvDistFun::NonCentralCdfT(-t, df, delta, 1e-12);
}

/// Power of the analysis of variance with n cases in all.
double f_power(double n, double groups, double effect, double alpha) {
    const double f = OrvDistFun::IdfF(1 - alpha, groups - 1, n - groups);
    return 1 - OrvDistFun::NonCentralCdfF(f, groups - 1, n - groups, n * effect * effect, 1e-12);
}

/// Largest second difference over 200 steps of 1e-9 relative from n: the exact power's are below 1e-17.
template <typename Power>
double roughness(double n, Power power) {
    const double step = 1e-9 * n;
    double largest = 0, a = power(n), b = power(n + step);
    for (int i = 2; i < 200; ++i) {
        const double c = power(n + i * step);
        largest = std::max(largest, std::fabs(a - 2 * b + c));
        a = b;
        b = c;
    }
    return largest;
}

/// Largest fall of the power from one n to the next, n growing by 1 per cent from `from` to 1e6.
template <typename Power>
double largest_fall(double from, Power power) {
    double fall = 0, last = 0;
    for (double n = from; n < 1e6; n *= 1.01) {
        const double now = power(n);
        fall = std::max(fall, last - now);
        last = now;
    }
    return fall;
}

TEST(Smoothness, OfATPowerInTheSampleSize) {
    double roughest = 0;
    for (double effect : {0.01, 0.1, 0.2, 0.35, 0.5, 0.8, 1.2, 2.0})
        for (double alpha : {0.001, 0.01, 0.05, 0.2})
            for (double n = 3; n < 1e6; n *= 1.9)
                roughest =
                    std::max(roughest, roughness(n, [&](double m) { return t_power(m, effect, alpha); }));
    EXPECT_LT(roughest, 3e-14);
    RecordProperty("roughest", std::to_string(roughest * 1e15) + "e-15");
}

TEST(Smoothness, OfAnFPowerInTheSampleSize) {
    double roughest = 0;
    for (double groups : {2, 3, 5, 10})
        for (double effect : {0.01, 0.05, 0.1, 0.25, 0.4, 1.0})
            for (double alpha : {0.001, 0.01, 0.05, 0.2})
                for (double n = groups + 2; n < 1e6; n *= 1.9)
                    roughest = std::max(
                        roughest, roughness(n, [&](double m) { return f_power(m, groups, effect, alpha); }));
    EXPECT_LT(roughest, 3e-14);
    RecordProperty("roughest", std::to_string(roughest * 1e15) + "e-15");
}

TEST(Smoothness, PowersGrowWithTheSampleSizeToTheLastDigits) {
    double fall = 0;
    for (double effect : {0.001, 0.01, 0.1, 0.5, 2.0})
        for (double alpha : {0.001, 0.05, 0.2}) {
            fall = std::max(fall, largest_fall(2, [&](double n) { return t_power(n, effect, alpha); }));
            for (double groups : {2, 4, 10})
                fall = std::max(fall, largest_fall(groups + 1, [&](double n) {
                                    return f_power(n, groups, effect, alpha);
                                }));
        }
    EXPECT_LT(fall, 1e-13);
    RecordProperty("largest_fall", std::to_string(fall * 1e15) + "e-15");
}

/// Steps across the points where one method takes over from another: at most what both get wrong, and the
/// true change.
TEST(Smoothness, NoStepWhereTheMethodOfTheNoncentralDistributionsChanges) {
    for (double noncentrality : {20.0, 300.0})
        for (double df1 : {1.0, 3.0, 20.0})
            for (double df2 : {5.0, 50.0, 500.0, 5e4})
                for (double ratio : {0.5, 0.8, 1.0, 1.2, 2.0}) {
                    const double f = ratio * (1 + noncentrality / df1);
                    const double below = OrvDistFun::NonCentralCdfF(f, df1, df2, noncentrality, 1e-12);
                    const double above =
                        OrvDistFun::NonCentralCdfF(f, df1, df2, std::nextafter(noncentrality, 1e3), 1e-12);
                    EXPECT_NEAR(below, above, 2e-14) << f << ' ' << df1 << ' ' << df2 << ' ' << noncentrality;
                    const double delta = std::sqrt(noncentrality), t = ratio * delta;
                    EXPECT_NEAR(OrvDistFun::NonCentralCdfT(t, df2, delta * (1 - 1e-15), 1e-12),
                                OrvDistFun::NonCentralCdfT(t, df2, delta * (1 + 1e-15), 1e-12), 2e-14)
                        << t << ' ' << df2 << ' ' << delta;
                }
}

}  // namespace
