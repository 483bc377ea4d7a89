// The distribution operations beside Boost.Math with a double policy, over everyday arguments: X and X/boost
// do the same work on the same arguments. The extremes are run with our operations only.
#include <benchmark/benchmark.h>

#include <array>
#include <boost/math/distributions/beta.hpp>
#include <boost/math/distributions/binomial.hpp>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/negative_binomial.hpp>
#include <boost/math/distributions/non_central_f.hpp>
#include <boost/math/distributions/non_central_t.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "orvcommon/dist_fun.h"

namespace {

using OrvMath_940::OrvDistFun;
namespace bm = boost::math;
namespace bp = boost::math::policies;
using Policy = bp::policy<bp::promote_double<false>, bp::discrete_quantile<bp::integer_round_down>,
                          bp::domain_error<bp::ignore_error>, bp::overflow_error<bp::ignore_error>,
                          bp::evaluation_error<bp::ignore_error>>;

using Case = std::array<double, 4>;

/// 256 random cases: enough that branches are not learnt, few enough to stay in the cache.
template <typename Draw>
std::vector<Case> cases(Draw draw) {
    std::mt19937 engine(940);
    std::vector<Case> all;
    for (int i = 0; i < 256; ++i)
        all.push_back(draw([&engine](double low, double high) {
            return std::uniform_real_distribution<double>(low, high)(engine);
        }));
    return all;
}

/// One operation per iteration, over the cases in turn.
template <typename Operation>
void run(benchmark::State& state, const std::vector<Case>& all, Operation operation) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(operation(all[i]));
        i = (i + 1) % all.size();
    }
}

// ---- power of a t test and of an F test
// -----------------------------------------------------------------------------

const std::vector<Case> kTTests = cases([](auto between) -> Case {
    const double n = std::floor(between(5, 200));
    return {n, between(0.1, 1.0), between(0, 1) < 0.5 ? 0.05 : 0.01, 0};
});

double t_power_ours(double n, double effect, double alpha) {
    const double df = 2 * n - 2, delta = effect * std::sqrt(n / 2);
    const double t = OrvDistFun::IdfT(1 - alpha / 2, df, 1e-40, 1e-30);
    return 1 - OrvDistFun::NonCentralCdfT(t, df, delta, 1e-12) +
           OrvDistFun::NonCentralCdfT(-t, df, delta, 1e-12);
}

double t_power_boost(double n, double effect, double alpha) {
    const double df = 2 * n - 2, delta = effect * std::sqrt(n / 2);
    const double t = bm::quantile(bm::students_t_distribution<double, Policy>(df), 1 - alpha / 2);
    const bm::non_central_t_distribution<double, Policy> noncentral(df, delta);
    return 1 - bm::cdf(noncentral, t) + bm::cdf(noncentral, -t);
}

void t_power(benchmark::State& state, double (*power)(double, double, double)) {
    run(state, kTTests, [power](const Case& c) { return power(c[0], c[1], c[2]); });
}
BENCHMARK_CAPTURE(t_power, ours, t_power_ours)->Name("t_power");
BENCHMARK_CAPTURE(t_power, boost, t_power_boost)->Name("t_power/boost");

/// Sample size for power 0.8: doubling, then bisection to 1e-8 relative: some 35 evaluations of the power.
void t_sample_size(benchmark::State& state, double (*power)(double, double, double)) {
    std::int64_t evaluations = 0;
    run(state, kTTests, [power, &evaluations](const Case& c) {
        const auto reached = [&](double n) {
            ++evaluations;
            return power(n, c[1], c[2]) >= 0.8;
        };
        double high = 4;
        while (!reached(high)) high *= 2;
        double low = high / 2;
        while (high - low > 1e-8 * high) {
            const double middle = low + (high - low) / 2;
            (reached(middle) ? high : low) = middle;
        }
        return high;
    });
    state.counters["evaluations"] =
        benchmark::Counter(static_cast<double>(evaluations), benchmark::Counter::kAvgIterations);
}
BENCHMARK_CAPTURE(t_sample_size, ours, t_power_ours)->Name("t_sample_size");
BENCHMARK_CAPTURE(t_sample_size, boost, t_power_boost)->Name("t_sample_size/boost");

const std::vector<Case> kFTests = cases([](auto between) -> Case {
    const double groups = std::floor(between(2, 9));
    return {groups, groups * std::floor(between(4, 60)), between(0.1, 0.5),
            between(0, 1) < 0.5 ? 0.05 : 0.01};
});

double f_power_ours(const Case& c) {
    const double df1 = c[0] - 1, df2 = c[1] - c[0];
    const double f = OrvDistFun::IdfF(1 - c[3], df1, df2);
    return 1 - OrvDistFun::NonCentralCdfF(f, df1, df2, c[1] * c[2] * c[2], 1e-12);
}

double f_power_boost(const Case& c) {
    const double df1 = c[0] - 1, df2 = c[1] - c[0];
    const double f = bm::quantile(bm::fisher_f_distribution<double, Policy>(df1, df2), 1 - c[3]);
    return 1 - bm::cdf(bm::non_central_f_distribution<double, Policy>(df1, df2, c[1] * c[2] * c[2]), f);
}

void f_power(benchmark::State& state, double (*power)(const Case&)) {
    run(state, kFTests, power);
}
BENCHMARK_CAPTURE(f_power, ours, f_power_ours)->Name("f_power");
BENCHMARK_CAPTURE(f_power, boost, f_power_boost)->Name("f_power/boost");

// ---- the series of the regression with random predictors
// -----------------------------------------------------------

/// The terms k = 0, 1, ... of the distribution of a squared multiple correlation of 0.3 with 5 predictors
/// and 100 cases at
/// 0.21, up to where their weights vanish; the time is of one term.
void random_predictor_series(benchmark::State& state, double (*cdf)(double, double, double)) {
    long status = 0;
    double last = 0;
    while (last < 10 || OrvDistFun::PdfNegBin(last, 49.5, 0.7, status) > 1e-308) ++last;
    double k = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(cdf(0.21, 2.5 + k, 47));
        k = k < last ? k + 1 : 0;
    }
    state.counters["terms"] = last + 1;
}
double cdf_beta_ours(double x, double a, double b) {
    return OrvDistFun::CdfBeta(x, a, b);
}
double cdf_beta_boost(double x, double a, double b) {
    return bm::cdf(bm::beta_distribution<double, Policy>(a, b), x);
}
BENCHMARK_CAPTURE(random_predictor_series, ours, cdf_beta_ours)->Name("random_predictor_series");
BENCHMARK_CAPTURE(random_predictor_series, boost, cdf_beta_boost)->Name("random_predictor_series/boost");

// ---- the operations one by one
// --------------------------------------------------------------------------------------

const std::vector<Case> kNoncentralT = cases([](auto between) -> Case {
    const double delta = between(0, 6);
    return {delta + between(-2, 2), between(5, 300), delta, 0};
});
const std::vector<Case> kNoncentralF = cases([](auto between) -> Case {
    const double df1 = std::floor(between(1, 10)), noncentrality = between(0, 40);
    return {(1 + noncentrality / df1) * between(0.4, 1.8), df1, between(5, 300), noncentrality};
});
const std::vector<Case> kProbabilityAndDf = cases([](auto between) -> Case {
    return {between(0.9, 0.999), std::floor(between(1, 12)), std::floor(between(4, 300)), 0};
});
const std::vector<Case> kBeta = cases([](auto between) -> Case {
    const double a = between(1, 100), b = between(1, 100);
    return {std::min(0.99, a / (a + b) * between(0.6, 1.4)), a, b, between(0.01, 0.99)};
});
const std::vector<Case> kBinomial = cases([](auto between) -> Case {
    const double n = std::floor(between(10, 400)), p = between(0.05, 0.95);
    return {std::floor(n * p * between(0.7, 1.3)), n, p, between(0.01, 0.99)};
});
const std::vector<Case> kUnit = cases([](auto between) -> Case { return {between(0.001, 0.999), 0, 0, 0}; });

void operation(benchmark::State& state, const std::vector<Case>& all, double (*f)(const Case&)) {
    run(state, all, f);
}

#define COMPARE(name, cases, ours_value, boost_value)                               \
    BENCHMARK_CAPTURE(operation, name##_ours, cases, [](const Case& c) -> double {  \
        return ours_value;                                                          \
    })->Name(#name);                                                                \
    BENCHMARK_CAPTURE(operation, name##_boost, cases, [](const Case& c) -> double { \
        return boost_value;                                                         \
    })->Name(#name "/boost")

long ignored_status;

COMPARE(CdfStdNorm, kUnit, OrvDistFun::CdfStdNorm(c[0]),
        bm::cdf(bm::normal_distribution<double, Policy>(), c[0]));
COMPARE(IdfStdNorm, kUnit, OrvDistFun::IdfStdNorm(c[0]),
        bm::quantile(bm::normal_distribution<double, Policy>(), c[0]));
COMPARE(vorndnlgam, kBeta, OrvDistFun::vorndnlgam(c[1]), bm::lgamma(c[1], Policy()));
COMPARE(NonCentralCdfF, kNoncentralF, OrvDistFun::NonCentralCdfF(c[0], c[1], c[2], c[3], 1e-12),
        bm::cdf(bm::non_central_f_distribution<double, Policy>(c[1], c[2], c[3]), c[0]));
COMPARE(NonCentralCdfT, kNoncentralT, OrvDistFun::NonCentralCdfT(c[0], c[1], c[2], 1e-12),
        bm::cdf(bm::non_central_t_distribution<double, Policy>(c[1], c[2]), c[0]));
COMPARE(IdfF, kProbabilityAndDf, OrvDistFun::IdfF(c[0], c[1], c[2]),
        bm::quantile(bm::fisher_f_distribution<double, Policy>(c[1], c[2]), c[0]));
COMPARE(IdfT, kProbabilityAndDf, OrvDistFun::IdfT(c[0], c[2], 1e-40, 1e-30),
        bm::quantile(bm::students_t_distribution<double, Policy>(c[2]), c[0]));
COMPARE(CdfBin, kBinomial, OrvDistFun::CdfBin(c[0], c[1], c[2], ignored_status),
        c[0] > c[1] ? 1 : bm::cdf(bm::binomial_distribution<double, Policy>(c[1], c[2]), c[0]));
COMPARE(IdfBin, kBinomial, OrvDistFun::IdfBin(c[3], c[1], c[2], ignored_status),
        bm::quantile(bm::binomial_distribution<double, Policy>(c[1], c[2]), c[3]));
COMPARE(PdfBin, kBinomial, OrvDistFun::PdfBin(c[0], c[1], c[2], ignored_status),
        c[0] > c[1] ? 0 : bm::pdf(bm::binomial_distribution<double, Policy>(c[1], c[2]), c[0]));
COMPARE(CdfBeta, kBeta, OrvDistFun::CdfBeta(c[0], c[1], c[2]), cdf_beta_boost(c[0], c[1], c[2]));
COMPARE(IdfBeta, kBeta, OrvDistFun::IdfBeta(c[3], c[1], c[2]),
        bm::quantile(bm::beta_distribution<double, Policy>(c[1], c[2]), c[3]));
COMPARE(PdfNegBin, kBinomial, OrvDistFun::PdfNegBin(c[0], c[1], c[2], ignored_status),
        bm::pdf(bm::negative_binomial_distribution<double, Policy>(c[1], c[2]), c[0]));

// ---- the slowest call over a grid of extremes
// -----------------------------------------------------------------------

/// Every combination of extreme degrees of freedom and noncentralities; the counter is the slowest call, the
/// least of five tries each, in microseconds.
void slowest_extreme(benchmark::State& state, double (*f)(const Case&)) {
    std::vector<Case> grid;
    const double x[] = {1e-300, 1e-20, 1e-3, 0.3, 0.999, 1.0, 1.001, 7, 1e3, 1e8, 1e300};
    const double parameter[] = {1e-300, 1e-20, 1e-2, 0.5, 1, 3, 40, 1e3, 3e4, 1e5, 1e8, 1e15, 1e30, 1e300};
    for (double a : x)
        for (double b : parameter)
            for (double c : parameter)
                for (double d : {0.0, 1e-20, 1.0, 20.0, 290.0, 310.0, 1e4, 1e8, 1e12, 1e30, 1e100, 1e300})
                    grid.push_back({a, b, c, d});
    double slowest = 0;
    for (auto _ : state) {
        for (const Case& c : grid) {
            double least = 1e9;
            for (int i = 0; i < 5; ++i) {
                const auto start = std::chrono::steady_clock::now();
                benchmark::DoNotOptimize(f(c));
                const std::chrono::duration<double, std::micro> taken =
                    std::chrono::steady_clock::now() - start;
                least = std::min(least, taken.count());
            }
            slowest = std::max(slowest, least);
        }
    }
    state.counters["slowest_us"] = slowest;
}

#define EXTREMES(name, value)                                                               \
    BENCHMARK_CAPTURE(slowest_extreme, name, [](const Case& c) -> double { return value; }) \
        ->Name("slowest_extreme/" #name)                                                    \
        ->Iterations(1)                                                                     \
        ->Unit(benchmark::kMillisecond)

EXTREMES(NonCentralCdfF, OrvDistFun::NonCentralCdfF(c[0], c[1], c[2], c[3], 1e-12));
EXTREMES(NonCentralCdfT, OrvDistFun::NonCentralCdfT(c[0], c[1], c[3], 1e-12));
EXTREMES(NonCentralCdfT_opposite, OrvDistFun::NonCentralCdfT(-c[0], c[1], std::sqrt(c[3]), 1e-12));
EXTREMES(IdfF, OrvDistFun::IdfF(c[0], c[1], c[2]));
EXTREMES(IdfT, OrvDistFun::IdfT(c[0], c[1], 1e-40, 1e-30));
EXTREMES(IdfBeta, OrvDistFun::IdfBeta(c[0], c[1], c[2]));
EXTREMES(CdfBeta, OrvDistFun::CdfBeta(c[0], c[1], c[2]));
EXTREMES(CdfBin, OrvDistFun::CdfBin(c[1], c[2], c[0], ignored_status));
EXTREMES(IdfBin, OrvDistFun::IdfBin(c[0], c[1], std::fmod(c[3] / 320, 1.0), ignored_status));
EXTREMES(PdfBin, OrvDistFun::PdfBin(c[1], c[2], c[0], ignored_status));
EXTREMES(PdfNegBin, OrvDistFun::PdfNegBin(c[1], c[2], c[0], ignored_status));

}  // namespace
