// Memory that runs out: the standard exception leaves the library, and nothing is left behind.
#include <gtest/gtest.h>

#include <new>

#include "statpower/anova.h"
#include "support/allocations.h"

namespace {

using testing_support::Allocations;
using testing_support::allocations_that_fail;

const double kMeans[] = {0, 1, 2};
const double kSizes[] = {10, 10, 20};

/// Lets each allocation of a curve or surface fail in turn, and expects that nothing is left behind.
template <class Draw, class Release>
int failures_of(Draw draw, Release release) {
    return allocations_that_fail([&](Allocations& allocations) {
        bool failed = false;
        try {
            const auto plot = draw();
            allocations.fail_no_more();
            EXPECT_GT(allocations.live(), 0u);
            release(plot);
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        allocations.fail_no_more();
        EXPECT_EQ(allocations.live(), 0u);
        return failed;
    });
}

TEST(AllocationFailure, InACurveLeavesNothingBehind) {
    // At least the two arrays of the result.
    const auto failures = [](auto draw) { return failures_of(draw, FreeMemXYPlot); };
    EXPECT_GE(failures([] { return PlotNOverallTest(3, kMeans, kSizes, 10, 20, 2, 0.05); }), 2);
    EXPECT_GE(failures([] { return PlotNOverallTest(3, kMeans, kSizes, 0, 0, 2, 0.05); }), 2);
    EXPECT_GE(failures([] { return PlotSDOverallTest(3, kMeans, kSizes, 2, 1, 4, 0.05, 0.2); }), 2);
}

TEST(AllocationFailure, InASurfaceLeavesNothingBehind) {
    // At least the three arrays of the result.
    const auto draw = [] { return PlotNaSDOverallTest(3, kMeans, kSizes, 10, 20, 2, 1, 4, 0.05, 0.2); };
    EXPECT_GE(failures_of(draw, FreeMemXYZPlot), 3);
}

TEST(AllocationFailure, OfASurfaceBeyondTheAddressSpaceIsTheStandardException) {
    // A thousand million sample sizes by two thousand million standard deviations.
    const Allocations allocations;
    EXPECT_THROW(PlotNaSDOverallTest(3, kMeans, kSizes, 10, 2000000010, 2, 1, 2, 0.05, 5e-10),
                 std::bad_alloc);
    EXPECT_EQ(allocations.live(), 0u);
}

}  // namespace
