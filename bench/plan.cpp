// What a column of powers costs through the planner, beside the bare calls of the power library.
#include <benchmark/benchmark.h>

#include <vector>

#include "statplan/ask.h"
#include "statpower/means.h"

namespace {

constexpr std::size_t kRows = 10000;

std::vector<double> group_sizes() {
    std::vector<double> n;
    for (std::size_t i = 0; i < kRows; ++i) n.push_back(10 + static_cast<double>(i % 200));
    return n;
}

void TwoMeansBare(benchmark::State& state) {
    const std::vector<double> n = group_sizes();
    std::vector<double> power(kRows);
    for (auto _ : state) {
        for (std::size_t i = 0; i < kRows; ++i)
            power[i] = PowerIndependentNondirectional(n[i], 5, 12, n[i], 0, 12, 0.05);
        benchmark::DoNotOptimize(power.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kRows));
}
BENCHMARK(TwoMeansBare);

void TwoMeansColumns(benchmark::State& state) {
    const std::vector<double> n = group_sizes();
    const double diff = 5, sd = 12;
    const char* const given[] = {"n", "diff", "sd"};
    const statplan_column columns[] = {{n.data(), sizeof(double), 1, 0}, {&diff, 0, 1, 0}, {&sd, 0, 1, 0}};
    std::vector<double> power(kRows);
    for (auto _ : state) {
        if (statplan_columns("t-two", "power", given, columns, 3, kRows, "power", power.data(), nullptr,
                             nullptr, nullptr) != 0)
            state.SkipWithError("refused");
        benchmark::DoNotOptimize(power.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kRows));
}
BENCHMARK(TwoMeansColumns);

void TwoMeansSizes(benchmark::State& state) {
    std::vector<double> diff, n(kRows);
    for (std::size_t i = 0; i < kRows; ++i) diff.push_back(3 + static_cast<double>(i) / kRows * 9);
    const double sd = 12;
    const char* const given[] = {"diff", "sd"};
    const statplan_column columns[] = {{diff.data(), sizeof(double), 1, 0}, {&sd, 0, 1, 0}};
    for (auto _ : state) {
        if (statplan_columns("t-two", "size", given, columns, 2, kRows, "n1", n.data(), nullptr, nullptr,
                             nullptr) != 0)
            state.SkipWithError("refused");
        benchmark::DoNotOptimize(n.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kRows));
}
BENCHMARK(TwoMeansSizes);

}  // namespace
