// Speed of multiple regression with random predictors, beside the incomplete beta functions that its series
// would take term by term up to the first negligible weight. The second argument of a benchmark is 1000 times
// the squared correlation e.
#include <benchmark/benchmark.h>

#include <cmath>

#include "orvcommon/dist_fun.h"
#include "regression/regression.h"
#include "statpower/regression.h"

using OrvMath_940::OrvDistFun;

namespace {

constexpr double kPredictors = 5, kAlpha = 0.05;

double effect(double e) {
    return e / (1 - e);
}

/// The incomplete beta functions of the series at N, up to the first weight that underflows.
double bare_incomplete_betas(double N, double e) {
    const double dfe = N - 1 - kPredictors, n = dfe + kPredictors;
    const double F = OrvDistFun::IdfF(1 - kAlpha, kPredictors, dfe);
    const double x = F / (dfe / kPredictors + F), mode = (n / 2 - 1) * e / (1 - e);
    double sum = 0, log_weight = n / 2 * std::log1p(-e);
    for (double k = 0; k <= mode || log_weight > -708.3964; ++k) {
        sum += OrvDistFun::CdfBeta(x, kPredictors / 2 + k, dfe / 2);
        log_weight += std::log(e * (n / 2 + k) / (k + 1));
    }
    return sum;
}

double bare_objective(double N, std::vector<double> design, OrvCommon_940::OrvQueryCancel* cancel) {
    benchmark::DoNotOptimize(bare_incomplete_betas(N, design[3] / (1 + design[3])));
    return POWER_NAMESPACE::PowerbymlrwESFunc(N, design, cancel);
}

void power(benchmark::State& state) {
    const double N = static_cast<double>(state.range(0)),
                 f2 = effect(static_cast<double>(state.range(1)) / 1e3);
    for (auto _ : state)
        benchmark::DoNotOptimize(PowerbymlrwES(1, true, N, kPredictors, kPredictors, f2, kAlpha));
}

void power_betas(benchmark::State& state) {
    const double N = static_cast<double>(state.range(0)), e = static_cast<double>(state.range(1)) / 1e3;
    for (auto _ : state) benchmark::DoNotOptimize(bare_incomplete_betas(N, e));
}

void size(benchmark::State& state) {
    const double f2 = effect(static_cast<double>(state.range(0)) / 1e3);
    for (auto _ : state)
        benchmark::DoNotOptimize(PowerReversebymlrwES(1, true, 0.8, kPredictors, kPredictors, f2, kAlpha));
}

void size_betas(benchmark::State& state) {
    const double f2 = effect(static_cast<double>(state.range(0)) / 1e3);
    for (auto _ : state)
        benchmark::DoNotOptimize(PowerReverse({0.8, kPredictors, kPredictors, f2, 1, 1, kAlpha},
                                              bare_objective, nullptr, kPredictors + 2, kPredictors + 400,
                                              1e-9));
}

void curve(benchmark::State& state) {
    for (auto _ : state) {
        const XYPlot plot = PlotNmlr(1, true, 10, 2010, kPredictors, kPredictors, 0.3, 0, kAlpha);
        benchmark::DoNotOptimize(plot.y);
        FreeMemXYPlot(plot);
    }
}

void unreachable(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(PowerReversebymlrwES(1, true, 1.5, kPredictors, kPredictors, 0.3, kAlpha));
}

#define SIZES_AND_EFFECTS Args({100, 20})->Args({100, 500})->Args({5000, 2})->Args({5000, 500})

BENCHMARK(power)->Name("random predictors: power")->SIZES_AND_EFFECTS;
BENCHMARK(power_betas)->Name("random predictors: bare incomplete betas of a power")->SIZES_AND_EFFECTS;
BENCHMARK(size)->Name("random predictors: sample size")->Arg(2)->Arg(500);
BENCHMARK(size_betas)->Name("random predictors: bare incomplete betas of a sample size")->Arg(2)->Arg(500);
BENCHMARK(curve)->Name("random predictors: curve over N from 10 to 2010");
BENCHMARK(unreachable)->Name("random predictors: search for a target that no size reaches");

}  // namespace
