// Speed of the t tests.
#include <benchmark/benchmark.h>

#include <vector>

#include "statpower/means.h"

namespace {

void power_two_sided(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(PowerOneSampleNondirectionalES(34, 0.5, 0.05));
}

void power_one_sided(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(PowerOneSampleDirectionalES(34, 0.5, 0.05));
}

void power_welch(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(PowerIndependentNondirectional(30, 1, 2, 40, 0, 3, 0.05));
}

void size_two_sided(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(PowerReverseOneSampleNondirectionalES(0.8, 0.5, 0.05));
}

void size_one_sided(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(PowerReverseOneSampleDirectionalES(0.8, 0.5, 0.05));
}

void size_welch(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<double> sizes;
        PowerReverseIndependentNondirectional(0.8, 1.5, 1, 2, 0, 3, 0.05, sizes);
        benchmark::DoNotOptimize(sizes.data());
    }
}

void size_never_reached(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(PowerReverseOneSampleNondirectionalES(0.8, 0, 0.05));
}

void size_half_width(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(PowerReversebyHalfCIOneSampleMeans(0.3, 1, 0.05));
}

void curve_of_100_points(benchmark::State& state) {
    for (auto _ : state) FreeMemXYPlot(PlotNOneSampleFES(2, 101, 0, 0.5, 0.05));
}

void power_at_100_sizes(benchmark::State& state) {
    for (auto _ : state)
        for (int n = 2; n <= 101; ++n) benchmark::DoNotOptimize(PowerOneSampleNondirectionalES(n, 0.5, 0.05));
}

void surface_of_50_by_50_points(benchmark::State& state) {
    for (auto _ : state) FreeMemXYZPlot(PlotNaESOneSample(2, 51, 0, 0, 1, 0.05, 1.0 / 49));
}

BENCHMARK(power_two_sided)->Name("t tests: two-sided power");
BENCHMARK(power_one_sided)->Name("t tests: one-sided power");
BENCHMARK(power_welch)->Name("t tests: two-sided power, Welch");
BENCHMARK(size_two_sided)->Name("t tests: sample size, two-sided");
BENCHMARK(size_one_sided)->Name("t tests: sample size, one-sided");
BENCHMARK(size_welch)->Name("t tests: sample size, Welch");
BENCHMARK(size_never_reached)->Name("t tests: sample size of a target that is never reached");
BENCHMARK(size_half_width)->Name("t tests: sample size for a half-width");
BENCHMARK(power_at_100_sizes)->Name("t tests: power at 100 sample sizes");
BENCHMARK(curve_of_100_points)->Name("t tests: curve of 100 points");
BENCHMARK(surface_of_50_by_50_points)->Name("t tests: surface of 50 x 50 points");

}  // namespace
