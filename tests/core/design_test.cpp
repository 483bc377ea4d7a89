// Design vectors: what is packed is read back in the same order.
#include "core/design.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using statpower::DesignReader;
using statpower::pack_design;
using testing::ElementsAre;

namespace {

TEST(DesignVector, HoldsNumbersCodesFlagsAndArraysInOrder) {
    const std::vector<double> array = {7, 8};
    EXPECT_THAT(pack_design(0.8, 3, true, false, array, -1.5), ElementsAre(0.8, 3, 1, 0, 7, 8, -1.5));
}

TEST(DesignVector, NumbersAreReadBackInOrderAndBeyondTheEndAsNaN) {
    const std::vector<double> design = {0.8, 0.5, 0.05, 7};
    DesignReader d(design);
    EXPECT_THAT(d.numbers<3>(), ElementsAre(0.8, 0.5, 0.05));
    const auto [last, beyond] = d.numbers<2>();
    EXPECT_EQ(last, 7);
    EXPECT_TRUE(std::isnan(beyond));
}

TEST(DesignVector, IntegersAreReadBackByTruncationTowardsZero) {
    const std::vector<double> design = {2.9, -2.9, 1e300, -1e300, std::nan("")};
    DesignReader d(design);
    EXPECT_EQ(d.integer(), 2);
    EXPECT_EQ(d.integer(), -2);
    EXPECT_EQ(d.integer(), std::numeric_limits<int>::max());
    EXPECT_EQ(d.integer(), std::numeric_limits<int>::min());
    EXPECT_EQ(d.integer(), 0);
}

TEST(DesignVector, FlagsAreTrueWhenNotZero) {
    const std::vector<double> design = {0, 1, -0.5, 0.25};
    DesignReader d(design);
    EXPECT_FALSE(d.flag());
    EXPECT_TRUE(d.flag());
    EXPECT_TRUE(d.flag());
    EXPECT_TRUE(d.flag());
}

TEST(DesignVector, ElementsBeyondTheEndAreNaNAndArraysThatDoNotFitAreEmpty) {
    const std::vector<double> design = {1, 2, 3};
    DesignReader d(design);
    EXPECT_TRUE(d.array(4).empty());
    EXPECT_TRUE(d.array(-1).empty());
    EXPECT_EQ(d.array(2).size(), 2u);
    EXPECT_EQ(d.number(), 3);
    EXPECT_TRUE(std::isnan(d.number()));
}

}  // namespace
