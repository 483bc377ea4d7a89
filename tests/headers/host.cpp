// A host in C++17: group sizes in a vector, a cancel object, and the missing value that C knows as a number.
#include <cstdio>
#include <vector>

#include "statpower/statpower.h"

namespace {

struct Never final : OrvCommon_940::OrvQueryCancel {
    bool IsCancelRequested() override { return false; }
};

int failures = 0;

void expect(bool holds, const char* what) {
    if (holds) return;
    std::printf("failed: %s\n", what);
    ++failures;
}

}  // namespace

int main() {
    const double means[] = {10, 12, 14, 11}, weights[] = {1, 1, 1, 1};
    std::vector<double> sizes;
    const double total = PowerReverseOverallTest(4, means, weights, &sizes, 4, 0.8, 0.05);
    expect(sizes.size() == 4 && sizes[0] * 4 == total, "equal weights give equal groups");
    Never never;
    expect(PowerbyPRelSampBionm(STATPOWER_TWO_SIDED, STATPOWER_EXACT, &never, 30, 0.3, 0.1, 0.05) > 0,
           "a cancel object that never says stop");
    expect(OrvCommon_940::OrvMV::IsMissing(STATPOWER_MISSING), "the missing value of C is that of C++");
    return failures;
}
