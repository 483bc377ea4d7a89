// Speed of the overall F test.
#include <benchmark/benchmark.h>

#include <vector>

#include "statpower/anova.h"

namespace {

const double kMeans[] = {10, 12, 14, 11};
const double kSizes[] = {21, 21, 21, 21};
const double kWeights[] = {1, 1, 1, 1};

void f_power(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(PowerOverallTest(4, kMeans, kSizes, 4, 0.05));
}

void f_sample_size(benchmark::State& state) {
    std::vector<double> sizes;
    for (auto _ : state)
        benchmark::DoNotOptimize(PowerReverseOverallTest(4, kMeans, kWeights, &sizes, 4, 0.8, 0.05));
}

void f_power_at_100_sizes(benchmark::State& state) {
    for (auto _ : state)
        for (int n = 5; n < 105; ++n) {
            const double size = n;
            const double sizes[] = {size, size, size, size};
            benchmark::DoNotOptimize(PowerOverallTest(4, kMeans, sizes, 4, 0.05));
        }
}

BENCHMARK(f_power)->Name("overall F: power");
BENCHMARK(f_sample_size)->Name("overall F: sample size");
BENCHMARK(f_power_at_100_sizes)->Name("overall F: power at 100 sample sizes");

}  // namespace
