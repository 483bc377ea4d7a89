// Speed of the tests of two independent proportions, beside their rules transcribed.
#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "proportions/two/transcription.h"
#include "statpower/independent_binomial.h"

namespace {

const char* const kTests[] = {"chi-square", "t", "likelihood ratio", "Fisher"};

transcription::Design design(double n) {
    return {n, n, 0.45, 0.55, 0, 0.05};
}

double power(int test, double n, OrvCommon_940::OrvQueryCancel* cancel = nullptr) {
    return PowerIndSampBinom(n, n, 0.45, 0.55, 0.05, 1, test, 0, false, false, cancel);
}

double transcribed(int test, double n) {
    switch (test) {
        case 0:
            return chi_square(design(n)).power;
        case 1:
            return t(design(n)).power;
        case 2:
            return likelihood_ratio(design(n)).power;
        default:
            return transcription::fisher(design(n), true);
    }
}

std::vector<double> sizes(double p1, double p2, int test, OrvCommon_940::OrvQueryCancel* cancel = nullptr) {
    std::vector<double> result;
    PowerReverseIndSampBinom(0.9, p1, p2, 1, 0.05, result, 1, test, 0, false, false, cancel);
    return result;
}

class Flag : public OrvCommon_940::OrvQueryCancel {
  public:
    bool IsCancelRequested() override { return set.load(std::memory_order_relaxed); }
    std::atomic<bool> set = false;
};

/// Time from the request to the end of a search that has no answer, the search given a head start.
void cancel_latency(benchmark::State& state, int test, double p) {
    for (auto _ : state) {
        Flag flag;
        std::thread search([&] { sizes(p, p, test, &flag); });
        std::this_thread::sleep_for(std::chrono::milliseconds(30 + 7 * (state.iterations() % 20)));
        const auto start = std::chrono::steady_clock::now();
        flag.set = true;
        search.join();
        state.SetIterationTime(
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }
}

void add(const std::string& name, const std::function<void()>& work) {
    benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State& state) {
        for (auto _ : state) work();
    });
}

const bool kRegistered = [] {
    for (int test = 0; test < 4; ++test) {
        const std::string name = std::string("two proportions, ") + kTests[test] + ": power at ";
        for (int n : {10, 20, 40, 100, 1000, 5000}) {
            const std::string at = name + std::to_string(n);
            add(at, [=] { benchmark::DoNotOptimize(power(test, n)); });
            // Fisher's transcription takes about n^5 steps.
            if (n <= 40 || (test < 3 && n <= 1000))
                add(at + "/transcribed", [=] { benchmark::DoNotOptimize(transcribed(test, n)); });
        }
        add(name + "1000/with a cancel object", [=] {
            Flag flag;
            benchmark::DoNotOptimize(power(test, 1000, &flag));
        });
    }
    for (int test : {0, 3})
        for (auto [p1, p2] : {std::pair{0.2, 0.5}, {0.02, 0.03}}) {
            const std::string name = std::string("two proportions, ") + kTests[test] + ": size for " +
                                     std::to_string(p1).substr(0, 4) + " against " +
                                     std::to_string(p2).substr(0, 4);
            add(name, [=, a = p1, b = p2] { benchmark::DoNotOptimize(sizes(a, b, test)); });
            add(name + "/with a cancel object", [=, a = p1, b = p2] {
                Flag flag;
                benchmark::DoNotOptimize(sizes(a, b, test, &flag));
            });
        }
    for (int test : {0, 3}) {
        const std::string name = std::string("two proportions, ") + kTests[test] + ": surface of ";
        add(name + "19 by 19 proportions at 50", [=] {
            FreeMemXYZPlot(PlotPropIndSampBinom(1, test, 0, false, false, 50, 50, 0.5, 0.5, 0.05, 0.05));
        });
        add(name + "sizes 20 to 120 squared", [=] {
            FreeMemXYZPlot(
                PlotNIndSampBinom(1, test, 0, false, false, 20, 120, 20, 120, 50, 50, 0.2, 0.5, 0.05));
        });
    }
    for (int test = 0; test < 4; ++test)
        benchmark::RegisterBenchmark(
            (std::string("two proportions, ") + kTests[test] + ": from cancelling to the end of a search")
                .c_str(),
            [=](benchmark::State& state) { cancel_latency(state, test, 0.3); })
            ->UseManualTime()
            ->Iterations(20);
    return true;
}();

}  // namespace
