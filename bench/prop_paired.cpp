// Speed of the test of paired proportions.
#include "statpower/related_binomial.h"

#include <benchmark/benchmark.h>

#include "tests/proportions/paired/sum.h"

namespace {

void exact_power(benchmark::State& state, double N) {
    for (auto _ : state) benchmark::DoNotOptimize(PowerbyPRelSampBionm(0, 1, nullptr, N, 0.2, 0.15, 0.05));
}

void exact_power_by_sum(benchmark::State& state, double N) {
    for (auto _ : state)
        benchmark::DoNotOptimize(testing_support::related_power_by_sum(0, N, 0.2, 0.15, 0.05));
}

void exact_size(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(PowerReversebyPRelSampBionm(0, 1, nullptr, 0.8, 0.2, 0.15, 0.05));
}

void exact_curve(benchmark::State& state) {
    for (auto _ : state) FreeMemXYPlot(PlotNRelSampBionm(2, 2500, 0, 1, 100, 0.2, 0.15, 0.05));
}

void exact_surface(benchmark::State& state) {
    for (auto _ : state) FreeMemXYZPlot(PlotPropRelSampBionm(0, 1, 200, 0.05, 0.05));
}

BENCHMARK_CAPTURE(exact_power, 100, 100)->Name("paired proportions: exact power at N = 100");
BENCHMARK_CAPTURE(exact_power_by_sum, 100, 100)->Name("paired proportions: exact power at N = 100/full sum");
BENCHMARK_CAPTURE(exact_power, 1000, 1000)->Name("paired proportions: exact power at N = 1000");
BENCHMARK_CAPTURE(exact_power_by_sum, 1000, 1000)
    ->Name("paired proportions: exact power at N = 1000/full sum");
BENCHMARK_CAPTURE(exact_power, 5000, 5000)->Name("paired proportions: exact power at N = 5000");
BENCHMARK_CAPTURE(exact_power_by_sum, 5000, 5000)
    ->Name("paired proportions: exact power at N = 5000/full sum");
BENCHMARK(exact_size)->Name("paired proportions: exact sample size");
BENCHMARK(exact_curve)->Name("paired proportions: exact curve of 2499 points");
BENCHMARK(exact_surface)->Name("paired proportions: exact surface of 19 x 19 points at N = 200");

}  // namespace
