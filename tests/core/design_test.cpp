// Design vectors: what is packed is read back in the same order.
#include "core/design.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using statpower::arrays;
using statpower::pack;
using statpower::unpack;
using testing::ElementsAre;

namespace {

struct Numbers {
    double first, second, third;
    auto fields() { return std::tie(first, second, third); }
};

struct Codes {
    int a, b, c, d, e;
    auto fields() { return std::tie(a, b, c, d, e); }
};

struct Flags {
    bool a, b, c, d;
    auto fields() { return std::tie(a, b, c, d); }
};

struct Groups {
    double target;
    int k;
    std::span<const double> means, sizes;
    double alpha;
    auto fields() { return std::tuple_cat(std::tie(target, k), arrays(k, means, sizes), std::tie(alpha)); }
};

TEST(DesignVector, HoldsNumbersCodesFlagsAndArraysInOrder) {
    EXPECT_THAT(pack(Numbers{0.8, -1.5, 7}), ElementsAre(0.8, -1.5, 7));
    EXPECT_THAT(pack(Codes{3, -2, 0, 1, 1}), ElementsAre(3, -2, 0, 1, 1));
    EXPECT_THAT(pack(Flags{true, false, true, true}), ElementsAre(1, 0, 1, 1));
    const std::vector<double> means = {7, 8}, sizes = {20, 30};
    EXPECT_THAT(pack(Groups{0.8, 2, means, sizes, 0.05}), ElementsAre(0.8, 2, 7, 8, 20, 30, 0.05));
}

TEST(DesignVector, NumbersAreReadBackInOrderAndBeyondTheEndAsNaN) {
    const std::vector<double> design = {0.8, 0.5};
    const auto numbers = unpack<Numbers>(design);
    EXPECT_EQ(numbers.first, 0.8);
    EXPECT_EQ(numbers.second, 0.5);
    EXPECT_TRUE(std::isnan(numbers.third));
}

TEST(DesignVector, IntegersAreReadBackByTruncationTowardsZero) {
    const std::vector<double> design = {2.9, -2.9, 1e300, -1e300, std::nan("")};
    const auto codes = unpack<Codes>(design);
    EXPECT_EQ(codes.a, 2);
    EXPECT_EQ(codes.b, -2);
    EXPECT_EQ(codes.c, std::numeric_limits<int>::max());
    EXPECT_EQ(codes.d, std::numeric_limits<int>::min());
    EXPECT_EQ(codes.e, 0);
}

TEST(DesignVector, FlagsAreTrueWhenNotZero) {
    const std::vector<double> design = {0, 1, -0.5, 0.25};
    const auto flags = unpack<Flags>(design);
    EXPECT_FALSE(flags.a);
    EXPECT_TRUE(flags.b);
    EXPECT_TRUE(flags.c);
    EXPECT_TRUE(flags.d);
}

TEST(DesignVector, ArraysAreReadBackByTheCountBeforeThem) {
    const std::vector<double> design = {0.8, 2, 7, 8, 20, 30, 0.05};
    const auto groups = unpack<Groups>(design);
    EXPECT_THAT(groups.means, ElementsAre(7, 8));
    EXPECT_THAT(groups.sizes, ElementsAre(20, 30));
    EXPECT_EQ(groups.alpha, 0.05);
}

TEST(DesignVector, ArraysThatDoNotFitAreEmptyAndTakeNothing) {
    const std::vector<double> too_short = {0.8, 3, 7};
    EXPECT_TRUE(unpack<Groups>(too_short).means.empty());
    EXPECT_EQ(unpack<Groups>(too_short).alpha, 7);
    const std::vector<double> negative = {0.8, -1, 7};
    EXPECT_TRUE(unpack<Groups>(negative).means.empty());
    EXPECT_EQ(unpack<Groups>(negative).alpha, 7);
}

}  // namespace
