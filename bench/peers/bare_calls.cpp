// The designs of designs.py by calls of this library's own functions, one after another. Prints for each job the
// processor time of a call in nanoseconds.
#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

#include "statpower/independent_binomial.h"
#include "statpower/means.h"

namespace {

constexpr int kDesigns = 100000;

template <typename Call>
void measure(const char* job, Call call) {
    std::vector<double> answers(kDesigns);
    double best = 1e9;
    for (int round = 0; round < 10; ++round) {
        const std::clock_t started = std::clock();
        for (int i = 0; i < kDesigns; ++i) answers[static_cast<std::size_t>(i)] = call(i);
        best = std::min(best, static_cast<double>(std::clock() - started) / CLOCKS_PER_SEC);
    }
    volatile double kept = answers.back();
    static_cast<void>(kept);
    std::printf("%s\t%.6g\n", job, best / kDesigns * 1e9);
}

}  // namespace

int main() {
    struct Design {
        double n, d, p1, p2;
    };
    std::vector<Design> designs;
    designs.reserve(kDesigns);
    for (int i = 0; i < kDesigns; ++i)
        designs.push_back({10.0 + i % 190, 0.2 + i % 7 * 0.1, 0.2 + i % 9 * 0.05, 0.5 + i % 4 * 0.1});
    measure("t power", [&](int i) {
        const Design& v = designs[static_cast<std::size_t>(i)];
        return PowerIndependentNondirectionalES(v.n, v.n, v.d, 0.05);
    });
    measure("two proportions power", [&](int i) {
        const Design& v = designs[static_cast<std::size_t>(i)];
        return PowerIndSampBinom(v.n, v.n, v.p1, v.p2, 0.05, STATPOWER_NORMAL_APPROXIMATION,
                                 STATPOWER_CHI_SQUARE, STATPOWER_TWO_SIDED, false, true, nullptr);
    });
}
