// Memory that runs out: the standard exception leaves the library, and nothing is left behind. A program of
// its own, since it replaces the allocation functions.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "statpower/anova.h"

namespace {

long live = 0;        // blocks that are allocated and not released
long remaining = -1;  // allocations that still succeed; negative: all

void* allocate(std::size_t size) {
    if (remaining == 0) throw std::bad_alloc();
    if (remaining > 0) --remaining;
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr) throw std::bad_alloc();
    ++live;
    return block;
}

void release(void* block) {
    if (block != nullptr) --live;
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* block) noexcept {
    release(block);
}
void operator delete[](void* block) noexcept {
    release(block);
}
void operator delete(void* block, std::size_t) noexcept {
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    release(block);
}

namespace {

const double kMeans[] = {0, 1, 2};
const double kSizes[] = {10, 10, 20};

/// Lets the first, the second, ... allocation of `call` fail until it succeeds. `call` returns a function
/// that releases its result. Gives the number of failures.
template <class Call>
int failures_of(Call call) {
    for (int failures = 0;; ++failures) {
        const long before = live;
        remaining = failures;
        try {
            auto result = call();
            remaining = -1;
            EXPECT_GT(live, before);
            result.release(result.plot);
            EXPECT_EQ(live, before);
            return failures;
        } catch (const std::bad_alloc&) {
            remaining = -1;
            EXPECT_EQ(live, before) << "allocation " << failures + 1;
        }
    }
}

struct CurveCall {
    XYPlot plot;
    void (*release)(XYPlot) = FreeMemXYPlot;
};
struct SurfaceCall {
    XYZPlot plot;
    void (*release)(XYZPlot) = FreeMemXYZPlot;
};

TEST(AllocationFailure, InACurveLeavesNothingBehind) {
    // At least the two arrays of the result.
    EXPECT_GE(failures_of([] { return CurveCall{PlotNOverallTest(3, kMeans, kSizes, 10, 20, 2, 0.05)}; }), 2);
    EXPECT_GE(failures_of([] { return CurveCall{PlotNOverallTest(3, kMeans, kSizes, 0, 0, 2, 0.05)}; }), 2);
    EXPECT_GE(failures_of([] { return CurveCall{PlotSDOverallTest(3, kMeans, kSizes, 2, 1, 4, 0.05, 0.2)}; }),
              2);
}

TEST(AllocationFailure, InASurfaceLeavesNothingBehind) {
    // At least the three arrays of the result.
    const auto call = [] {
        return SurfaceCall{PlotNaSDOverallTest(3, kMeans, kSizes, 10, 20, 2, 1, 4, 0.05, 0.2)};
    };
    EXPECT_GE(failures_of(call), 3);
}

TEST(AllocationFailure, OfASurfaceBeyondTheAddressSpaceIsTheStandardException) {
    // A thousand million sample sizes by two thousand million standard deviations.
    const long before = live;
    EXPECT_THROW(PlotNaSDOverallTest(3, kMeans, kSizes, 10, 2000000010, 2, 1, 2, 0.05, 5e-10),
                 std::bad_alloc);
    EXPECT_EQ(live, before);
}

}  // namespace
