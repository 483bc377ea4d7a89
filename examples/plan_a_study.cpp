// Plans a study of four groups: the sizes that reach a power of 0.8, and how precise the means will be.
//
//   c++ -std=c++20 plan_a_study.cpp $(pkg-config --cflags --libs statpower) -o plan_a_study
#include <cstdio>
#include <vector>

#include "statpower/statpower.h"

int main() {
    const int k = 4;
    const double means[] = {10, 12, 14, 11};  // what the study expects to find
    const double weights[] = {1, 1, 1, 1};    // groups of equal size
    const double sigma = 4, alpha = 0.05;

    std::vector<double> sizes;
    const double total = PowerReverseOverallTest(k, means, weights, &sizes, sigma, 0.8, alpha);
    if (OrvCommon_940::OrvMV::IsMissing(total)) {
        std::puts("an argument is out of its range");
        return 1;
    }
    const double power = PowerOverallTest(k, means, sizes.data(), sigma, alpha);
    if (total == 2 * k && power < 0.8) {  // a failed search answers with the smallest allocation
        std::puts("no sample size reaches the power");
        return 1;
    }
    std::printf("%g observations in all, %g in each group\n", total, sizes[0]);
    std::printf("power %.4f, half-width of a mean's 95%% interval %.3f\n", power,
                HalfCIOverallTest(k, total, sigma, alpha));
}
