// The exact test of paired proportions when the distribution library fails.
#include <gtest/gtest.h>

#include "proportions/paired/sum.h"
#include "statpower/related_binomial.h"
#include "support/distribution_stand_in.h"

using namespace testing_support;

namespace {

// Twelve pairs, most of them discordant. At level 0.05 the smallest number with a region is 6 two-sided and 5
// one-sided.
constexpr double kN = 12, kAlpha = 0.05;

struct Cells {
    double p1, p2;
};
constexpr Cells kLowerTail = {0.5, 0.25}, kUpperTail = {0.25, 0.5};

double power(int sided, Cells cells) {
    return PowerbyPRelSampBionm(sided, 1, nullptr, kN, cells.p1, cells.p2, kAlpha);
}

double by_sum(int sided, Cells cells) {
    return related_power_by_sum(sided, kN, cells.p1, cells.p2, kAlpha);
}

auto calls_for(Operation operation, double n) {
    return [=](const BinomialCall& call) { return call.operation == operation && call.n == n; };
}

TEST(PairedFailure, NothingFailsByItself) {
    for (Cells cells : {kLowerTail, kUpperTail})
        for (int sided : {0, 1}) {
            EXPECT_GT(power(sided, cells), 0.05);
            EXPECT_EQ(power(sided, cells), by_sum(sided, cells));
        }
}

TEST(PairedFailure, AFailedWeightOfATermIsMinusTwo) {
    for (double m : {6.0, 9.0, 12.0}) {
        FailingCalls calls([=](const BinomialCall& call) {
            return call.operation == Operation::kPdf && call.argument == m;
        });
        for (Cells cells : {kLowerTail, kUpperTail})
            for (int sided : {0, 1}) EXPECT_EQ(power(sided, cells), -2);
    }
}

TEST(PairedFailure, AWeightThatIsNotNeededMayFail) {
    // Up to four discordant pairs have no lower region, and so no two-sided one. The quantile of the upper
    // tail brackets its level all the same: those terms are added, and are 0.
    FailingCalls calls(
        [](const BinomialCall& call) { return call.operation == Operation::kPdf && call.argument <= 4; });
    EXPECT_GT(power(0, kLowerTail), 0);
    EXPECT_GT(power(0, kUpperTail), 0);
    EXPECT_GT(power(1, kLowerTail), 0);
    EXPECT_EQ(power(1, kUpperTail), -2);
}

TEST(PairedFailure, AFailedQuantileSpoilsEveryLaterTerm) {
    // At m = 1 nothing is added, but the code is kept: the next term finds it.
    for (double m : {1.0, 3.0, 8.0, 11.0}) {
        FailingCalls calls(calls_for(Operation::kIdf, m));
        for (Cells cells : {kLowerTail, kUpperTail})
            for (int sided : {0, 1}) EXPECT_EQ(power(sided, cells), -2) << m;
    }
}

TEST(PairedFailure, AFailureAfterTheLastTermGoesUnnoticed) {
    // At m = 12 the quantile fails, so nothing is added there, and no term follows.
    FailingCalls calls(calls_for(Operation::kIdf, 12));
    for (Cells cells : {kLowerTail, kUpperTail})
        for (int sided : {0, 1}) {
            EXPECT_GT(power(sided, cells), 0);
            EXPECT_EQ(power(sided, cells), by_sum(sided, cells));
        }
}

TEST(PairedFailure, AFailedDistributionFunctionIsMinusTwoUnderEitherHypothesis) {
    for (Cells cells : {kLowerTail, kUpperTail})
        for (int sided : {0, 1})
            for (double p : {0.5, cells.p2 / (cells.p1 + cells.p2)}) {
                FailingCalls calls([=](const BinomialCall& call) {
                    return call.operation == Operation::kCdf && call.n == 9 && call.p == p;
                });
                EXPECT_EQ(power(sided, cells), -2);
            }
}

TEST(PairedFailure, AnyFailingCallGivesWhatTheFullSumGives) {
    for (double m = 1; m <= kN; ++m)
        for (Operation operation : {Operation::kCdf, Operation::kIdf, Operation::kPdf})
            for (double argument = -2; argument <= kN + 1; ++argument) {
                FailingCalls calls([=](const BinomialCall& call) {
                    return call.operation == operation && call.n == m && call.argument == argument;
                });
                for (Cells cells : {kLowerTail, kUpperTail})
                    for (int sided : {0, 1})
                        ASSERT_EQ(power(sided, cells), by_sum(sided, cells)) << m << " " << argument;
            }
}

TEST(PairedFailure, AQuantileThatIsOffByOneCountsOnlyWhereItBracketsTheLevel) {
    // On an exact tie the upper bracket includes both its ends, the lower one only the lower: levels that are sums of
    // probabilities of few tosses, in both tails.
    for (double shift : {-1.0, 0.0, 1.0}) {
        const ShiftedQuantiles quantiles(shift);
        for (double alpha : {0.05, 1.0 / 32, 1.0 / 16, 3.0 / 16, 0.25, 0.5, 11.0 / 16, 1 - 1.0 / 32})
            for (Cells cells : {kLowerTail, kUpperTail})
                for (int sided : {0, 1})
                    EXPECT_EQ(PowerbyPRelSampBionm(sided, 1, nullptr, kN, cells.p1, cells.p2, alpha),
                              related_power_by_sum(sided, kN, cells.p1, cells.p2, alpha))
                        << shift << " " << alpha << " " << sided;
    }
}

TEST(PairedFailure, AllFormsOfADesignReportIt) {
    FailingCalls calls([](const BinomialCall& call) { return call.operation == Operation::kPdf; });
    EXPECT_EQ(PowerbyCRelSampBionm(0, 1, kN, 6, 3, kAlpha), -2);
    EXPECT_EQ(PowerbyMargPRelSampBionm(0, 1, kN, 0.6, 0.4, 0, kAlpha), -2);
    EXPECT_EQ(PowerbyMargCRelSampBionm(0, 1, kN, 6, 3, 0, kAlpha), -2);
    const XYPlot curve = PlotNRelSampBionm(10, 12, 0, 1, kN, 0.5, 0.25, kAlpha);
    ASSERT_EQ(curve.count, 3);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(curve.y[i], -2);
    FreeMemXYPlot(curve);
}

}  // namespace
