// What a power costs beside its distribution calls. This program defines the distribution operations itself,
// as constants, and so takes the place of the common library for the power library that it loads.
#include <benchmark/benchmark.h>

#include "orvcommon/dist_fun.h"
#include "statpower/anova.h"

namespace OrvMath_940 {

double OrvDistFun::IdfF(double, double, double) noexcept {
    return 2.7;
}
double OrvDistFun::NonCentralCdfF(double, double, double, double, double) noexcept {
    return 0.2;
}

}  // namespace OrvMath_940

namespace {

void f_power(benchmark::State& state) {
    const double means[] = {10, 12, 14, 11};
    const double sizes[] = {21, 21, 21, 21};
    if (PowerOverallTest(4, means, sizes, 4, 0.05) != 1 - 0.2) state.SkipWithError("not the stand-ins");
    for (auto _ : state) benchmark::DoNotOptimize(PowerOverallTest(4, means, sizes, 4, 0.05));
}

BENCHMARK(f_power)->Name("overall F: power/all but its distribution calls");

}  // namespace
