// How the time of each exact power grows with the size N (of each group where there are two), at alternatives that come
// nearer as N grows, so that the power stays where studies are planned.
#include <benchmark/benchmark.h>

#include <cmath>
#include <string>
#include <vector>

#include "statpower/independent_binomial.h"
#include "statpower/one_sample_binomial.h"
#include "statpower/related_binomial.h"

namespace {

double one_proportion(double N) {
    return PowerOneSampBinom(N, 0.4 + 1.4 / std::sqrt(N), 0.4, 0.05, STATPOWER_EXACT, STATPOWER_TWO_SIDED,
                             false, nullptr);
}

double pairs(double N) {
    return PowerbyPRelSampBionm(STATPOWER_TWO_SIDED, STATPOWER_EXACT, nullptr, N, 0.2 + 0.9 / std::sqrt(N),
                                0.2 - 0.9 / std::sqrt(N), 0.05);
}

double two_proportions(double N, int test) {
    return PowerIndSampBinom(N, N, 0.4 + 0.9 / std::sqrt(N), 0.4 - 0.9 / std::sqrt(N), 0.05, STATPOWER_EXACT,
                             test, STATPOWER_TWO_SIDED, false, true, nullptr);
}

void add(const std::string& name, std::vector<int> sizes, double (*power)(double)) {
    for (int N : sizes)
        benchmark::RegisterBenchmark((name + " at " + std::to_string(N)).c_str(),
                                     [=](benchmark::State& state) {
                                         for (auto _ : state) benchmark::DoNotOptimize(power(N));
                                     })
            ->Unit(benchmark::kMicrosecond);
}

const bool added = [] {
    add("one proportion", {100, 1000, 10000, 100000, 1000000}, one_proportion);
    add("pairs", {100, 1000, 10000, 100000, 1000000}, pairs);
    add("two proportions, chi-square", {50, 100, 200, 500, 1000, 2000, 5000},
        [](double N) { return two_proportions(N, STATPOWER_CHI_SQUARE); });
    add("two proportions, t", {50, 100, 200, 500, 1000, 2000, 5000},
        [](double N) { return two_proportions(N, STATPOWER_T_OF_PROPORTIONS); });
    add("two proportions, likelihood ratio", {50, 100, 200, 500, 1000, 2000, 5000},
        [](double N) { return two_proportions(N, STATPOWER_LIKELIHOOD_RATIO); });
    add("two proportions, Fisher", {50, 100, 200, 500, 1000, 2000, 5000},
        [](double N) { return two_proportions(N, STATPOWER_FISHER); });
    return true;
}();

}  // namespace
