// Speed of the test of one proportion.
#include "statpower/one_sample_binomial.h"

#include <benchmark/benchmark.h>

#include "tests/proportions/one/walk.h"
#include "tests/support/record.h"

namespace {

void exact_power(benchmark::State& state, double N) {
    for (auto _ : state)
        benchmark::DoNotOptimize(PowerOneSampBinom(N, 0.55, 0.5, 0.05, 1, 0, false, nullptr));
}

void exact_power_asked(benchmark::State& state, double N) {
    testing_support::CountingCancel cancel;
    for (auto _ : state)
        benchmark::DoNotOptimize(PowerOneSampBinom(N, 0.55, 0.5, 0.05, 1, 0, false, &cancel));
}

void exact_power_by_walk(benchmark::State& state, double N) {
    for (auto _ : state)
        benchmark::DoNotOptimize(testing_support::one_sample_power_by_walk(N, 0.55, 0.5, 0, 0.05));
}

void exact_size(benchmark::State& state, double power, double p1) {
    for (auto _ : state)
        benchmark::DoNotOptimize(PowerReverseOneSampBinom(power, p1, 0.5, 0.05, 1, 0, false, nullptr));
}

void exact_curve(benchmark::State& state) {
    for (auto _ : state) FreeMemXYPlot(PlotNOneSampBinom(1, 0, 1, 5000, false, 100, 0.55, 0.5, 0.05));
}

BENCHMARK_CAPTURE(exact_power, 400, 400)->Name("one proportion: exact power at N = 400");
BENCHMARK_CAPTURE(exact_power_by_walk, 400, 400)->Name("one proportion: exact power at N = 400/by walk");
BENCHMARK_CAPTURE(exact_power_asked, 400, 400)->Name("one proportion: exact power at N = 400/cancellable");
BENCHMARK_CAPTURE(exact_power, 5000, 5000)->Name("one proportion: exact power at N = 5000");
BENCHMARK_CAPTURE(exact_power_by_walk, 5000, 5000)->Name("one proportion: exact power at N = 5000/by walk");
BENCHMARK_CAPTURE(exact_power, million, 1e6)->Name("one proportion: exact power at N = 1e6");
BENCHMARK_CAPTURE(exact_power_asked, million, 1e6)
    ->Name("one proportion: exact power at N = 1e6/cancellable");
BENCHMARK_CAPTURE(exact_power, 2 ^ 1023, 0x1p1023)->Name("one proportion: exact power at N = 2^1023");
BENCHMARK_CAPTURE(exact_size, reachable, 0.8, 0.55)->Name("one proportion: exact sample size (797)");
BENCHMARK_CAPTURE(exact_size, unreachable, 1.5, 0.55)
    ->Name("one proportion: exact sample size, unreachable target");
BENCHMARK(exact_curve)->Name("one proportion: exact curve of 5000 points");

}  // namespace
