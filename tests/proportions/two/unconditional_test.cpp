// Two independent proportions: exact chi-square, t and likelihood-ratio tests.
#include "proportions/two/unconditional.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "orvcommon/mv.h"
#include "proportions/two/transcription.h"
#include "support/record.h"
#include "support/values.h"

using namespace POWER_NAMESPACE;
using OrvCommon_940::OrvMV;
using testing_support::CountingCancel;
using testing_support::kInfinity;
using testing_support::kNaN;
using transcription::Design;

namespace {

struct Procedure {
    const char* name;
    double (*power)(const Design&, OrvCommon_940::OrvQueryCancel*);
    transcription::Result (*transcribed)(const Design&);
    bool asks_again;
};

const Procedure kTests[] = {
    {"chi-square",
     [](const Design& d, OrvCommon_940::OrvQueryCancel* cancel) {
         return _PowerIndSamBinBinEnumChisq(d.n1, d.n2, d.p1, d.p2, d.sides, d.alpha, d.flag, cancel);
     },
     transcription::chi_square, false},
    {"t",
     [](const Design& d, OrvCommon_940::OrvQueryCancel* cancel) {
         return _PowerIndSamBinBinEnumT(d.n1, d.n2, d.p1, d.p2, d.sides, d.alpha, d.flag, cancel);
     },
     transcription::t, true},
    {"likelihood ratio",
     [](const Design& d, OrvCommon_940::OrvQueryCancel* cancel) {
         return _PowerIndSamBinBinEnumLRT(d.n1, d.n2, d.p1, d.p2, d.sides, d.alpha, cancel);
     },
     transcription::likelihood_ratio, true},
};

/// The power, and by the number of times that the cancel object is asked the number of tables that reject.
void expect_as_transcribed(const Procedure& test, const Design& d) {
    const auto reference = test.transcribed(d);
    SCOPED_TRACE(testing::Message() << test.name << " n " << d.n1 << " " << d.n2 << " p " << d.p1 << " "
                                    << d.p2 << " sides " << d.sides << " alpha " << d.alpha << " flag "
                                    << d.flag);
    const double tolerance = 1e-14 * reference.power;
    EXPECT_NEAR(test.power(d, nullptr), reference.power, tolerance);
    CountingCancel count;
    EXPECT_NEAR(test.power(d, &count), reference.power, tolerance);
    const double tables = std::ceil(d.n1 + 1) * std::ceil(d.n2 + 1);
    EXPECT_EQ(static_cast<double>(count.queries),
              tables + (test.asks_again ? static_cast<double>(reference.rejected) : 0));
}

TEST(TwoProportionsEnumerated, EveryDesignUpToTwelveInAGroupIsDecidedAsTranscribed) {
    for (const Procedure& test : kTests)
        for (int n1 = 1; n1 <= 12; ++n1)
            for (int n2 = n1 == 1 ? 2 : 1; n2 <= 12; ++n2)
                for (double alpha : {0.05, 0.1, 0.01, 0.5, 0.85})
                    for (bool flag : {false, true}) {
                        expect_as_transcribed(test, {1.0 * n1, 1.0 * n2, 0.55, 0.35, 0, alpha, flag});
                        expect_as_transcribed(test, {1.0 * n1, 1.0 * n2, 0.55, 0.35, 1, alpha, flag});
                        expect_as_transcribed(test, {1.0 * n1, 1.0 * n2, 0.35, 0.55, 1, alpha, flag});
                    }
}

TEST(TwoProportionsEnumerated, RandomDesignsUpToSixtyInAGroupAreDecidedAsTranscribed) {
    std::mt19937 random(20);
    std::uniform_real_distribution<double> unit(0.001, 0.999);
    std::uniform_int_distribution<int> size(2, 60);
    std::uniform_int_distribution<int> coin(0, 1);
    for (int i = 0; i < 300; ++i) {
        const Design d{1.0 * size(random), 1.0 * size(random),          unit(random),     unit(random),
                       coin(random),       i % 2 ? 0.05 : unit(random), coin(random) == 1};
        for (const Procedure& test : kTests) expect_as_transcribed(test, d);
    }
}

TEST(TwoProportionsEnumerated, UnevenGroupsAreDecidedAsTranscribed) {
    // With two or three against many the one-sided corrected statistic is not monotone in the outer rows.
    for (const Procedure& test : kTests)
        for (int few : {1, 2, 3})
            for (bool flag : {false, true})
                for (double alpha : {0.001, 0.05, 0.3, 0.7}) {
                    for (double p1 : {0.2, 0.6}) {
                        expect_as_transcribed(test, {1.0 * few, 90, p1, 0.4, 1, alpha, flag});
                        expect_as_transcribed(test, {90, 1.0 * few, p1, 0.4, 1, alpha, flag});
                        expect_as_transcribed(test, {90, 1.0 * few, p1, 0.4, 0, alpha, flag});
                    }
                }
}

TEST(TwoProportionsEnumerated, FractionalGroupsCountWhileBelowTheSizePlusOne) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> size(1.01, 40);
    for (int i = 0; i < 100; ++i)
        for (const Procedure& test : kTests)
            expect_as_transcribed(test, {size(random), size(random), 0.3, 0.6, i % 2, 0.05, i % 3 == 0});
    expect_as_transcribed(kTests[0], {10.5, 10.5, 0.3, 0.6, 0, 0.05});
    // Where the critical value is below -1, the code of no statistic, the counts beyond a fractional size
    // are rejected: questions more, probability 0.
    for (const Procedure& test : kTests) {
        expect_as_transcribed(test, {6.5, 4.5, 0.6, 0.3, 1, 0.95});
        expect_as_transcribed(test, {6, 4.5, 0.3, 0.6, 1, 0.95});
        expect_as_transcribed(test, {6.5, 4, 0.3, 0.6, 0, 0.95});
    }
}

TEST(TwoProportionsEnumerated, LevelsNearTheEndsAreDecidedAsTranscribed) {
    for (const Procedure& test : kTests)
        for (double alpha : {1e-300, 1e-17, 1e-9, 1 - 1e-9, std::nextafter(1.0, 0.0)})
            for (int sides : {0, 1}) expect_as_transcribed(test, {9, 7, 0.2, 0.7, sides, alpha});
}

TEST(TwoProportionsEnumerated, PowersRefuseArgumentsOutOfTheirRanges) {
    for (const Procedure& test : kTests) {
        for (double Design::*argument : {&Design::p1, &Design::p2, &Design::alpha})
            for (double bad : {0.0, 1.0, -0.5, kNaN}) {
                Design d{10, 12, 0.3, 0.6, 0, 0.05};
                d.*argument = bad;
                EXPECT_EQ(test.power(d, nullptr), -1) << test.name;
            }
        for (double Design::*argument : {&Design::n1, &Design::n2})
            for (double bad : {0.99, 0.0, -3.0, kNaN, kInfinity, 3e9}) {
                Design d{10, 12, 0.3, 0.6, 0, 0.05};
                d.*argument = bad;
                EXPECT_EQ(test.power(d, nullptr), -1) << test.name;
            }
    }
}

TEST(TwoProportionsEnumerated, AGroupSizeAHairBelowOneIsAccepted) {
    for (const Procedure& test : kTests)
        EXPECT_GE(test.power({0.9999999999995, 12, 0.3, 0.6, 0, 0.05}, nullptr), 0) << test.name;
}

TEST(TwoProportionsEnumerated, OnlyTheTTestNeedsMoreThanTwoObservations) {
    const Design d{1, 1, 0.3, 0.6, 0, 0.05};
    EXPECT_GE(kTests[0].power(d, nullptr), 0);
    EXPECT_EQ(kTests[1].power(d, nullptr), -1);
    EXPECT_GE(kTests[2].power(d, nullptr), 0);
}

TEST(TwoProportionsEnumerated, AYesToAnyQueryGivesTheMissingValue) {
    const Design d{9, 6, 0.2, 0.7, 0, 0.1};
    for (const Procedure& test : kTests) {
        CountingCancel all;
        test.power(d, &all);
        for (long query = 1; query <= all.queries; ++query) {
            CountingCancel cancel(query);
            EXPECT_TRUE(OrvMV::IsMissing(test.power(d, &cancel))) << test.name << " " << query;
            EXPECT_EQ(cancel.queries, query);
        }
        CountingCancel never(all.queries + 1);
        EXPECT_EQ(test.power(d, &never), test.power(d, nullptr));
    }
}

TEST(TwoProportionsEnumerated, LargeGroupsHaveFinitePowersThatCancellationDoesNotChange) {
    for (const Procedure& test : kTests) {
        CountingCancel count;
        const Design d{3000, 2500, 0.5, 0.53, 0, 0.05};
        const double power = test.power(d, nullptr);
        EXPECT_GT(power, 0.5);
        EXPECT_LT(power, 0.7);
        EXPECT_EQ(test.power(d, &count), power);
    }
}

TEST(ChiSquareStatistic, TheOneSidedStatisticAddsTheContinuityCorrection) {
    const double S = std::sqrt(0.5 * 0.5 * 0.2);
    EXPECT_DOUBLE_EQ(_BinEnumChisqTestStatsZ(10, 10, 0.6, 0.3, 7, 3, 1, true).first, (0.4 + 0.1) / S);
    EXPECT_DOUBLE_EQ(_BinEnumChisqTestStatsZ(10, 10, 0.3, 0.6, 7, 3, 1, true).first, (-0.4 + 0.1) / S);
    EXPECT_DOUBLE_EQ(_BinEnumChisqTestStatsZ(10, 10, 0.6, 0.3, 7, 3, 0, true).first, (0.4 - 0.1) / S);
}

TEST(ChiSquareStatistic, TheOneSidedCorrectionRejectsMoreTablesTheTwoSidedOneFewer) {
    const auto power = [](int sides, bool correction) {
        return _PowerIndSamBinBinEnumChisq(15, 12, 0.6, 0.3, sides, 0.05, correction, nullptr);
    };
    EXPECT_GT(power(1, true), power(1, false));
    EXPECT_LT(power(0, true), power(0, false));
}

TEST(ChiSquareStatistic, IsTheDifferenceInTheDirectionOfTheAlternative) {
    const double S = std::sqrt(0.5 * 0.5 * 0.2);
    EXPECT_DOUBLE_EQ(_BinEnumChisqTestStatsZ(10, 10, 0.6, 0.3, 7, 3, 0, false).first, 0.4 / S);
    EXPECT_DOUBLE_EQ(_BinEnumChisqTestStatsZ(10, 10, 0.6, 0.3, 3, 7, 0, false).first, 0.4 / S);
    EXPECT_DOUBLE_EQ(_BinEnumChisqTestStatsZ(10, 10, 0.6, 0.3, 3, 7, 1, false).first, -0.4 / S);
    EXPECT_DOUBLE_EQ(_BinEnumChisqTestStatsZ(10, 10, 0.3, 0.3, 3, 7, 1, false).first, 0.4 / S);
}

TEST(ChiSquareStatistic, CarriesTheCorrectionAsItsSecondValue) {
    EXPECT_DOUBLE_EQ(_BinEnumChisqTestStatsZ(10, 5, 0.6, 0.3, 7, 3, 0, false).second, 0.15);
}

TEST(ChiSquareStatistic, TablesWithoutSuccessOrFailureGetAThousandthOfOne) {
    const double phat1 = 0.001 / 10;
    const double phat2 = 0.001 / 4;
    const double pbar = 0.002 / 14;
    const double S = std::sqrt(pbar * (1 - pbar) * (0.1 + 0.25));
    EXPECT_NEAR(_BinEnumChisqTestStatsZ(10, 4, 0.3, 0.6, 0, 0, 1, false).first, (phat2 - phat1) / S, 1e-14);
    EXPECT_NEAR(_BinEnumChisqTestStatsZ(10, 4, 0.3, 0.6, 10, 4, 1, false).first, (phat1 - phat2) / S, 1e-12);
    // Fractional sizes: the largest counts leave failures, and nothing is adjusted.
    const double pbar3 = 14 / 14.5;
    EXPECT_DOUBLE_EQ(_BinEnumChisqTestStatsZ(10.25, 4.25, 0.3, 0.6, 10, 4, 1, false).first,
                     (4 / 4.25 - 10 / 10.25) / std::sqrt(pbar3 * (1 - pbar3) * (1 / 10.25 + 1 / 4.25)));
}

TEST(TStatistic, WithoutPoolingTheVariancesAreWeightedWithTheOtherGroupsSize) {
    // phat1 = 0.5 and phat2 = 0.75: variances 0.25 and 0.1875.
    const double difference = 0.25 * std::sqrt(4 * 16.0);
    EXPECT_DOUBLE_EQ(_BinEnumTTestStatsT(4, 16, 0.3, 0.6, 2, 12, 0, false),
                     difference / std::sqrt((16 * 0.25 + 4 * 0.1875) * 20 / 18));
    EXPECT_DOUBLE_EQ(_BinEnumTTestStatsT(4, 16, 0.3, 0.6, 2, 12, 0, true),
                     difference / std::sqrt((4 * 0.25 + 16 * 0.1875) * 20 / 18));
}

TEST(TStatistic, IsTheDifferenceInTheDirectionOfTheAlternative) {
    const double two_sided = _BinEnumTTestStatsT(4, 16, 0.3, 0.6, 2, 12, 0, true);
    EXPECT_EQ(_BinEnumTTestStatsT(4, 16, 0.6, 0.3, 2, 12, 1, true), -two_sided);
    EXPECT_EQ(_BinEnumTTestStatsT(4, 16, 0.3, 0.6, 2, 12, 1, true), two_sided);
    EXPECT_EQ(_BinEnumTTestStatsT(4, 16, 0.3, 0.3, 2, 12, 1, true), two_sided);
}

TEST(TStatistic, IsInfiniteWhereAllSucceedInOneGroupAndNoneInTheOther) {
    EXPECT_EQ(_BinEnumTTestStatsT(4, 5, 0.3, 0.6, 0, 5, 0, true), kInfinity);
    EXPECT_EQ(_BinEnumTTestStatsT(4, 5, 0.3, 0.6, 4, 0, 1, false), -kInfinity);
}

TEST(TStatistic, TablesWithoutSuccessOrFailureGetAThousandthOfOne) {
    const double phat1 = 0.001 / 10;
    const double phat2 = 0.001 / 4;
    const double V = 4 * phat2 * (1 - phat2) + 10 * phat1 * (1 - phat1);
    EXPECT_NEAR(_BinEnumTTestStatsT(10, 4, 0.3, 0.6, 0, 0, 1, true),
                std::sqrt(40.0) * (phat2 - phat1) / std::sqrt(V * 14 / 12), 1e-14);
    EXPECT_NEAR(_BinEnumTTestStatsT(10, 4, 0.3, 0.6, 10, 4, 1, true),
                std::sqrt(40.0) * (phat1 - phat2) / std::sqrt(V * 14 / 12), 1e-12);
}

TEST(LikelihoodRatioStatistic, IsTwiceTheSumOfObservedLogRatios) {
    // Cells 2, 8, 6, 4; expected 4, 6, 4, 6.
    const double G2 =
        2 * (2 * std::log(0.5) + 8 * std::log(8.0 / 6) + 6 * std::log(1.5) + 4 * std::log(4.0 / 6));
    EXPECT_NEAR(_BinEnumLRTTestStatsL(10, 10, 2, 6), G2, 1e-13);
    EXPECT_NEAR(_BinEnumLRTTestStatsL(5, 7, 0, 7), 2 * (5 * std::log(12 / 5.0) + 7 * std::log(12 / 7.0)),
                1e-13);
    EXPECT_NEAR(_BinEnumLRTTestStatsL(5, 7, 0, 0), 0, 1e-13);
}

TEST(LikelihoodRatioStatistic, XLogXIsZeroAtZeroAndMinusOneBelow) {
    EXPECT_EQ(_logLRT(0), 0);
    EXPECT_EQ(_logLRT(1), 0);
    EXPECT_DOUBLE_EQ(_logLRT(3), 3 * std::log(3.0));
    EXPECT_EQ(_logLRT(-0.5), -1);
    EXPECT_TRUE(std::isnan(_logLRT(kNaN)));
}

TEST(LikelihoodRatioTest, TheOneSidedTestRejectsOnBothSides) {
    // It is the two-sided test at twice the level.
    for (double p1 : {0.2, 0.7})
        EXPECT_EQ(_PowerIndSamBinBinEnumLRT(12, 15, p1, 0.5, 1, 0.05, nullptr),
                  _PowerIndSamBinBinEnumLRT(12, 15, p1, 0.5, 0, 0.1, nullptr));
}

TEST(TableStatistics, RefuseArgumentsOutOfTheirRanges) {
    const auto expect_refused = [](double n1, double n2, double p1, double p2, int x1, int x2) {
        EXPECT_EQ(_BinEnumChisqTestStatsZ(n1, n2, p1, p2, x1, x2, 0, false).first, -1);
        EXPECT_EQ(_BinEnumTTestStatsT(n1, n2, p1, p2, x1, x2, 0, false), -1);
    };
    expect_refused(0.5, 10, 0.3, 0.6, 0, 5);
    expect_refused(10, kNaN, 0.3, 0.6, 5, 5);
    expect_refused(10, 10, 0, 0.6, 5, 5);
    expect_refused(10, 10, 0.3, 1, 5, 5);
    for (auto [x1, x2] : {std::pair{-1, 5}, {11, 5}, {5, -1}, {5, 11}}) {
        expect_refused(10, 10, 0.3, 0.6, x1, x2);
        EXPECT_EQ(_BinEnumLRTTestStatsL(10, 10, x1, x2), -1);
    }
    EXPECT_EQ(_BinEnumLRTTestStatsL(0.5, 10, 0, 5), -1);
    EXPECT_EQ(_BinEnumTTestStatsT(1, 1, 0.3, 0.6, 0, 1, 0, false), -1);
    EXPECT_NE(_BinEnumChisqTestStatsZ(1, 1, 0.3, 0.6, 0, 1, 0, false).first, -1);
}

}  // namespace
