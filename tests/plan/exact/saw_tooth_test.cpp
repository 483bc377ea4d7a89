// Sizes of exact tests: found quickly, and the same as a scan of all sizes finds.
#include "plan/saw_tooth.h"

#include <gtest/gtest.h>

#include "designs.h"
#include "plan/exact_binomial.h"

using namespace statplan;
using namespace testing_support;

namespace {

/// n = first, first + 1, ...
Chain one_sample_chain(double first) {
    return {.at = [=](double size) { return GroupSizes{std::max(first, std::ceil(size))}; },
            .above = [](const GroupSizes& n) { return GroupSizes{n[0] + 1}; }};
}

/// Groups of R and ratio R, rounded up, for growing R.
Chain two_sample_chain(double ratio) {
    const auto at = [=](double size) {
        return GroupSizes{std::max(2.0, std::ceil(size)),
                          std::max(2.0, std::ceil(ratio * size * (1 - 1e-12)))};
    };
    const auto above = [=](const GroupSizes& n) {
        const double end1 = n[0], end2 = n[1] / ratio;
        if (std::abs(end1 - end2) < 1e-9 * end1) return GroupSizes{n[0] + 1, n[1] + 1};
        return end1 < end2 ? GroupSizes{n[0] + 1, n[1]} : GroupSizes{n[0], n[1] + 1};
    };
    return {at, above};
}

/// The same sizes by computing every power up to far beyond the last one that fails.
FoundSizes scanned(const SawTooth& powers, const Chain& chain, double target, double largest) {
    FoundSizes found;
    for (GroupSizes sizes = chain.at(0); sizes[0] <= largest; sizes = chain.above(sizes)) {
        if (!(powers.power(sizes) >= target)) {
            found.guaranteed.clear();
            continue;
        }
        if (found.smallest.empty()) found.smallest = sizes;
        if (found.guaranteed.empty()) found.guaranteed = sizes;
    }
    return found;
}

struct Tally {
    int designs = 0, jumps = 0;
};

/// Compares the search with the scan, unless the target takes larger sizes than the scan goes to.
template <typename Design>
void compare(const SawTooth& powers, const Chain& chain, double target, double largest, const Design& design,
             Tally& tally) {
    const FoundSizes all = scanned(powers, chain, target, largest);
    if (all.guaranteed.empty() || 1.5 * all.guaranteed[0] + 20 > largest) return;
    const FoundSizes found = find_sizes(powers, chain, target, 1e6, nullptr);
    EXPECT_EQ(found.smallest, all.smallest) << design;
    EXPECT_EQ(found.guaranteed, all.guaranteed) << design;
    ++tally.designs;
    tally.jumps += all.smallest != all.guaranteed;
}

class SawToothOfTwoProportions : public testing::TestWithParam<TwoProportions::Statistic> {};

TEST_P(SawToothOfTwoProportions, FindsWhatAScanOfAllSizesFinds) {
    Random random(100 + GetParam());
    Tally tally;
    while (tally.designs < 500) {
        const TwoGroups design(random, GetParam());
        constexpr double kLargest = 150;
        if (!(design.size() < kLargest / 2)) continue;
        compare(design.test.powers(design.p1, design.p2), two_sample_chain(design.ratio), design.target,
                kLargest, design, tally);
        if (HasFailure()) break;
    }
    EXPECT_GT(tally.jumps, 50);
}

INSTANTIATE_TEST_SUITE_P(Tests, SawToothOfTwoProportions,
                         testing::Values(TwoProportions::chi_square, TwoProportions::t,
                                         TwoProportions::likelihood_ratio, TwoProportions::fisher));

TEST(SawToothOfOneProportion, FindsWhatAScanOfAllSizesFinds) {
    Random random(1);
    Tally tally;
    while (tally.designs < 700 && !testing::Test::HasFailure()) {
        const double p0 = random.proportion(), p = random.proportion();
        const Tails tails = random.chance(0.5) ? Tails::both : p > p0 ? Tails::large : Tails::small;
        const BinomialTest test(p0, random.alpha(), tails);
        const double target = random.chance(0.5) ? 0.9 : random.between(0.1, 0.99);
        compare(powers(test, p), one_sample_chain(1), target, 1200, testing::Message() << p0 << " " << p,
                tally);
    }
    EXPECT_GT(tally.jumps, 200);
}

TEST(SawToothOfPairs, FindsWhatAScanOfAllSizesFinds) {
    Random random(2);
    Tally tally;
    while (tally.designs < 500 && !testing::Test::HasFailure()) {
        const double discordant = random.between(0.05, 1), share = random.proportion();
        const double p10 = share * discordant, p01 = discordant - p10;
        const Tails tails = random.chance(0.5) ? Tails::both : p10 > p01 ? Tails::large : Tails::small;
        const PairedTest test(p10, p01, random.alpha(), tails);
        const double target = random.chance(0.5) ? 0.8 : random.between(0.1, 0.99);
        compare(test.powers(), one_sample_chain(2), target, 800, testing::Message() << p10 << " " << p01,
                tally);
    }
    EXPECT_GT(tally.jumps, 5);
}

TEST(SawTooth, FindsSizesThatTheSearchOfTheCInterfaceMisses) {
    const FoundSizes found = find_sizes(powers(BinomialTest(0.9, 0.025, Tails::large), 0.95),
                                        one_sample_chain(1), 0.9, 1e6, nullptr);
    EXPECT_EQ(found.smallest, GroupSizes{292});
    EXPECT_EQ(found.guaranteed, GroupSizes{316});
}

TEST(SawTooth, FindsNoSizesWhereTheLargestIsTooSmall) {
    const SawTooth one = powers(BinomialTest(0.9, 0.025, Tails::large), 0.95);
    EXPECT_TRUE(find_sizes(one, one_sample_chain(1), 0.9, 200, nullptr).smallest.empty());
    // Some reach the target below the largest size, but whether all beyond it do is not known.
    const FoundSizes cut = find_sizes(one, one_sample_chain(1), 0.9, 300, nullptr);
    EXPECT_EQ(cut.smallest, GroupSizes{292});
    EXPECT_TRUE(cut.guaranteed.empty());
    EXPECT_TRUE(
        find_sizes(powers(BinomialTest(0.5, 0.05, Tails::both), 0.5), one_sample_chain(1), 0.9, 1e7, nullptr)
            .smallest.empty());
}

TEST(SawTooth, StopsWhenCancelled) {
    struct AfterTen final : Cancel {
        int asked = 0;
        bool IsCancelRequested() override { return ++asked > 10; }
    } cancel;
    const FoundSizes found = find_sizes(powers(BinomialTest(0.9, 0.025, Tails::large), 0.95),
                                        one_sample_chain(1), 0.9, 1e6, &cancel);
    EXPECT_TRUE(found.cancelled);
    EXPECT_LT(cancel.asked, 30);
}

}  // namespace
