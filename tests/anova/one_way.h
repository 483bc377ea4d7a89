// What every test of a one-way design refuses, and the default range of its standard deviations.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

#include "support/curves.h"
#include "support/values.h"

namespace testing_support {

template <class Number>
struct Ends {
    Number min, max;
};

/// Out of order, or an end that is neither at least 2 nor exactly 0.
inline constexpr Ends<int> kRefusedSampleSizes[] = {
    {11, 10}, {1, 10}, {-1, 10}, {-3, -2}, {1, 1}, {0, 1}, {-1, 0}, {5, 0}, {kSmallestInt, kLargestInt}};

/// Out of order, NaN, or of a width that is zero or overflows.
inline constexpr Ends<double> kRefusedRanges[] = {{2, 1},          {1.0000000000000002, 1},
                                                  {kNaN, 1},       {1, kNaN},
                                                  {0.5, 0},        {kNaN, 0},
                                                  {1, -1},         {1, 1},
                                                  {-1e308, 1e308}, {-kInfinity, 1},
                                                  {1, kInfinity},  {kInfinity, kInfinity}};

/// Zero, negative, NaN, infinite, or so small that an int does not count the points.
inline constexpr double kRefusedSteps[] = {0.0, -0.25, -1.0, -5.0, kNaN, kInfinity, 1e-10, kSmallest};

/// Sizes of refused designs are missing, and the caller's vector is left as it was.
/// @param refused  by every search
/// @param refused_deviations  by those that have a standard deviation
template <class Design>
void expect_refused_sizes(std::initializer_list<Design> refused,
                          std::initializer_list<Design> refused_deviations) {
    for (Design d : refused) {
        std::vector<double> sizes = {7, 8};
        EXPECT_MISSING(d.size(&sizes));
        EXPECT_MISSING(d.size_es(&sizes));
        EXPECT_MISSING(d.size_half_width(&sizes));
        EXPECT_THAT(sizes, testing::ElementsAre(7, 8));
    }
    for (Design d : refused_deviations) {
        std::vector<double> sizes = {7, 8};
        EXPECT_MISSING(d.size(&sizes));
        EXPECT_MISSING(d.size_half_width(&sizes));
        EXPECT_THAT(sizes, testing::ElementsAre(7, 8));
        EXPECT_PRESENT(d.size_es(&sizes));
    }
}

/// An end of zero leaves the range of standard deviations open: from `distance` / 5 to 5 `distance`.
template <class Request>
void expect_default_deviations(double distance) {
    for (const auto& [min, max] : {std::pair(0.0, 0.0), std::pair(0.0, 3.0), std::pair(-2.0, 0.0)}) {
        Request r;
        r.sd_min = min, r.sd_max = max;
        for (const auto& axis : {take(r.over_sd()).x, take(r.over_n_and_sd()).y}) {
            EXPECT_EQ(axis.size(), 5u);
            EXPECT_EQ(axis.front(), distance / 5);
            EXPECT_EQ(axis.back(), 5 * distance);
        }
    }
}

}  // namespace testing_support
