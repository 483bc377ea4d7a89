// Speed of a curve and a surface of the overall F test, beside the bare distribution calls that they make.
#include <benchmark/benchmark.h>

#include "orvcommon/dist_fun.h"
#include "statpower/anova.h"

namespace {

using OrvMath_940::OrvDistFun;

// Four means whose effect is f = 0.1: the powers along the curve run from alpha to 1.
constexpr int kGroups = 4;
const double kMeans[] = {0, 0.2, 0, 0.2};
const double kSizes[] = {1, 1, 1, 1};
constexpr double kVariance = 0.01;
constexpr double kAlpha = 0.05;

constexpr int kFirst = 5;
constexpr int kCurvePoints = 5000;
constexpr int kRows = 500;
constexpr int kColumns = 20;

double distribution_calls(double N, double sd) {
    const double critical = OrvDistFun::IdfF(1 - kAlpha, kGroups - 1, N - kGroups);
    return OrvDistFun::NonCentralCdfF(critical, kGroups - 1, N - kGroups, kVariance * N / (sd * sd), 1e-12);
}

void count_points(benchmark::State& state, int points) {
    state.SetItemsProcessed(state.iterations() * points);
}

void curve(benchmark::State& state) {
    for (auto _ : state) {
        const XYPlot plot =
            PlotNOverallTest(kGroups, kMeans, kSizes, kFirst, kFirst + kCurvePoints - 1, 1, kAlpha);
        if (plot.count != kCurvePoints) state.SkipWithError("not the points that are counted");
        FreeMemXYPlot(plot);
    }
    count_points(state, kCurvePoints);
}

void curve_calls(benchmark::State& state) {
    for (auto _ : state)
        for (int i = 0; i < kCurvePoints; ++i) benchmark::DoNotOptimize(distribution_calls(kFirst + i, 1));
    count_points(state, kCurvePoints);
}

void surface(benchmark::State& state) {
    for (auto _ : state) {
        const XYZPlot plot = PlotNaSDOverallTest(kGroups, kMeans, kSizes, kFirst, kFirst + kRows - 1, 1, 1, 2,
                                                 kAlpha, 1.0 / (kColumns - 1));
        if (plot.nx != kRows || plot.ny != kColumns) state.SkipWithError("not the points that are counted");
        FreeMemXYZPlot(plot);
    }
    count_points(state, kRows * kColumns);
}

void surface_calls(benchmark::State& state) {
    const double step = 1.0 / (kColumns - 1);
    for (auto _ : state)
        for (int i = 0; i < kRows; ++i)
            for (int j = 0; j < kColumns; ++j)
                benchmark::DoNotOptimize(distribution_calls(kFirst + i, 1 + j * step));
    count_points(state, kRows * kColumns);
}

BENCHMARK(curve)->Name("overall F: curve of 5000 sample sizes");
BENCHMARK(curve_calls)->Name("overall F: curve of 5000 sample sizes/its distribution calls");
BENCHMARK(surface)->Name("overall F: surface of 500 x 20 points");
BENCHMARK(surface_calls)->Name("overall F: surface of 500 x 20 points/its distribution calls");

}  // namespace
