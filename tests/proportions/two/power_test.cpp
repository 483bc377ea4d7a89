// Two independent proportions: power of a design and sample size.
#include "proportions/two/power.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <thread>

#include "orvcommon/mv.h"
#include "proportions/two/fisher.h"
#include "proportions/two/normal.h"
#include "proportions/two/transcription.h"
#include "proportions/two/unconditional.h"
#include "statpower/independent_binomial.h"
#include "support/record.h"
#include "support/table.h"
#include "support/values.h"

using namespace POWER_NAMESPACE;
using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;
using testing::ElementsAre;
using testing_support::CountingCancel;
using testing_support::kNaN;
using testing_support::read_table;

namespace {

/// A question, of which a test changes what matters.
struct Question {
    double p1 = 0.2;
    double p2 = 0.5;
    double alpha = 0.05;
    int method = 1;
    int test = 0;
    int sides = 0;
    bool correction = false;
    bool pooled = false;
    double target = 0.8;
    double r = 1;

    double power(double n1, double n2, OrvQueryCancel* cancel = nullptr) const {
        return PowerIndSampBinom(n1, n2, p1, p2, alpha, method, test, sides, correction, pooled, cancel);
    }
    std::vector<double> sizes(OrvQueryCancel* cancel = nullptr) const {
        std::vector<double> result;
        PowerReverseIndSampBinom(target, p1, p2, r, alpha, result, method, test, sides, correction, pooled,
                                 cancel);
        return result;
    }
    std::vector<double> design() const {
        return {target,
                p1,
                p2,
                r,
                1.0 * method,
                1.0 * test,
                1.0 * sides,
                alpha,
                correction ? 1.0 : 0.0,
                pooled ? 1.0 : 0.0};
    }
    double objective(double N, OrvQueryCancel* cancel = nullptr) const {
        return IndSampBinomFunc(N, design(), cancel);
    }
};

const std::vector<double> kFailed = {OrvMV::Missing(), OrvMV::Missing()};

TEST(TwoProportions, PowersAgreeWithHighPrecision) {
    const auto rows = read_table("proportions/two_power.csv");
    EXPECT_GE(rows.size(), 80U);
    for (const auto& row : rows) {
        Question q{.p1 = row[7], .p2 = row[8], .alpha = row[9]};
        q.method = static_cast<int>(row[0]);
        q.test = static_cast<int>(row[1]);
        q.sides = static_cast<int>(row[2]);
        q.correction = row[3] != 0;
        q.pooled = row[4] != 0;
        EXPECT_NEAR(q.power(row[5], row[6]), row[10], 1e-12) << "line " << row.line;
    }
}

TEST(TwoProportions, TheCodesNameTheTest) {
    const double n1 = 14, n2 = 17, p1 = 0.2, p2 = 0.6, alpha = 0.05;
    for (int sides : {0, 1})
        for (bool flag : {false, true}) {
            Question q{
                .p1 = p1, .p2 = p2, .alpha = alpha, .sides = sides, .correction = flag, .pooled = !flag};
            q.method = 0;
            q.test = 0;
            EXPECT_EQ(q.power(n1, n2),
                      _PowerIndSamBinNormalApproxChisq(n1, n2, p1, p2, sides, alpha, flag, !flag));
            q.test = 1;
            EXPECT_EQ(q.power(n1, n2), _PowerIndSamBinNormalApproxT(n1, n2, p1, p2, sides, alpha, !flag));
            q.test = 2;
            EXPECT_EQ(q.power(n1, n2), _PowerIndSamBinNormalApproxLRT(n1, n2, p1, p2, sides, alpha));
            for (int other : {3, 4, 7, -1}) {
                q.test = other;
                EXPECT_EQ(q.power(n1, n2), _PowerIndSamBinNormalApproxFisher(n1, n2, p1, p2, sides, alpha));
            }
            for (int exact : {1, 2, 5, -1}) {
                q.method = exact;
                q.test = 0;
                EXPECT_EQ(q.power(n1, n2),
                          _PowerIndSamBinBinEnumChisq(n1, n2, p1, p2, sides, alpha, flag, nullptr));
                q.test = 1;
                EXPECT_EQ(q.power(n1, n2),
                          _PowerIndSamBinBinEnumT(n1, n2, p1, p2, sides, alpha, !flag, nullptr));
                q.test = 2;
                EXPECT_EQ(q.power(n1, n2), _PowerIndSamBinBinEnumLRT(n1, n2, p1, p2, sides, alpha, nullptr));
                for (int other : {3, 4, 7, -1}) {
                    q.test = other;
                    EXPECT_EQ(q.power(n1, n2),
                              _PowerIndSamBinBinEnumFisher(n1, n2, p1, p2, sides, alpha, nullptr));
                }
            }
        }
}

TEST(TwoProportions, PowerRefusesArgumentsOutOfTheirRanges) {
    for (int method : {0, 1})
        for (int test : {0, 1, 2, 3}) {
            const Question q{.method = method, .test = test};
            for (double bad : {0.99, 0.0, -4.0, kNaN}) {
                EXPECT_EQ(q.power(bad, 10), -1);
                EXPECT_EQ(q.power(10, bad), -1);
            }
            for (double bad : {0.0, 1.0, kNaN})
                for (double Question::*argument : {&Question::p1, &Question::p2, &Question::alpha}) {
                    Question wrong = q;
                    wrong.*argument = bad;
                    EXPECT_EQ(wrong.power(10, 10), -1);
                }
            EXPECT_GE(q.power(10, 10), 0);
        }
}

TEST(TwoProportionsObjective, IsThePowerMinusTheTarget) {
    const Question q{.test = 3, .r = 1.5};
    EXPECT_EQ(q.objective(20.5), q.power(20.5, 1.5 * 20.5) - 0.8);
}

TEST(TwoProportionsObjective, TheSecondGroupIsAtLeastOne) {
    const Question q{.r = 0.01};
    EXPECT_EQ(q.objective(20), q.power(20, 1) - 0.8);
}

TEST(TwoProportionsObjective, ExactTestFourIsTheChiSquareTest) {
    const Question four{.test = 4};
    EXPECT_EQ(four.objective(20), (Question{.test = 0}.objective(20)));
    EXPECT_NE(four.objective(20), (Question{.test = 3}.objective(20)));
    // Of the other methods it is Fisher's test.
    EXPECT_EQ((Question{.method = 2, .test = 4}.objective(20)),
              (Question{.method = 2, .test = 3}.objective(20)));
    EXPECT_EQ((Question{.method = 0, .test = 4}.objective(20)),
              (Question{.method = 0, .test = 3}.objective(20)));
}

TEST(TwoProportionsObjective, CodesAreTruncatedAndFlagsAreTrueUnlessZero) {
    const Question q{.test = 1, .sides = 1, .pooled = true};
    auto design = q.design();
    design[5] = 1.9;
    design[9] = -0.5;
    EXPECT_EQ(IndSampBinomFunc(20, design, nullptr), q.objective(20));
}

TEST(TwoProportionsObjective, PassesTheCancelObjectOn) {
    CountingCancel cancel(1);
    EXPECT_LT((Question{.test = 3}.objective(20, &cancel)), -1e38);
    EXPECT_EQ(cancel.queries, 1);
}

TEST(TwoProportionsObjective, EveryFractionalSizeHasAFinitePower) {
    for (int test : {0, 1, 2, 3})
        for (double N = 1.001; N < 700; N = N * 1.07 + 0.01) {
            const double power = Question{.test = test, .r = 0.7}.objective(N) + 0.8;
            EXPECT_GE(power, 0) << test << " " << N;
            EXPECT_LE(power, 1.1) << test << " " << N;
        }
}

// ---- Sample size -----------------------------------------------------------------------------------------

/// What the refinement of exact tests does, with the transcribed powers and the solver.
class TranscribedSearch {
  public:
    static std::vector<double> sizes(const Question& q) {
        const auto design = q.design();
        double low = 2;
        double high = 400;
        if (q.test == 3) {
            const double a = q.p1 <= q.p2 ? 0.5 / (1 - q.p1) : 0.5 / q.p1;
            const double b = q.p1 <= q.p2 ? 0.5 / (q.r * q.p2) : 0.5 / ((1 - q.p2) * q.r);
            low = a > b ? a : b;
            high = low + 400;
        }
        double U = std::ceil(PowerReverse(design, objective, nullptr, low, high, 1e-9));
        std::vector<double> list{U};
        auto search = design;
        if (q.test == 3) search[5] = 0;
        for (;;) {
            const double N = std::ceil(PowerReverse(search, objective, nullptr, 1, U, 1e-9));
            if (OrvMV::IsMissing(N) || std::find(list.begin(), list.end(), N) != list.end()) break;
            list.push_back(N);
            U = N;
        }
        double n1 = *std::min_element(list.begin(), list.end());
        const auto n2 = [&] { return std::max(1.0, std::floor(q.r * n1 + 0.5)); };
        while (power(design, static_cast<int>(design[5]), n1, n2()) < q.target) ++n1;
        return {n1, n2()};
    }

  private:
    static double power(const std::vector<double>& d, int test, double n1, double n2) {
        if (!(n1 >= 1)) return -1;
        transcription::Design design{n1, n2, d[1], d[2], static_cast<int>(d[6]), d[7]};
        design.flag = test == 0 ? d[8] != 0 : d[9] != 0;
        if (test == 0) return chi_square(design).power;
        if (test == 1) return t(design).power;
        if (test == 2) return likelihood_ratio(design).power;
        return transcription::fisher(design);
    }
    static double objective(double N, std::vector<double> d, OrvQueryCancel*) {
        const int test = d[5] == 4 ? 0 : static_cast<int>(d[5]);
        return power(d, test, N, std::max(1.0, d[3] * N)) - d[0];
    }
};

TEST(TwoProportionsSize, ExactSizesAreThoseOfTheTranscribedSearch) {
    for (const Question& q :
         {Question{.p1 = 0.1, .p2 = 0.6, .test = 0, .sides = 1, .r = 2.5},
          Question{.p1 = 0.9, .p2 = 0.5, .test = 0, .correction = true},
          Question{.p1 = 0.1, .p2 = 0.6, .test = 1, .r = 0.6},
          Question{.p1 = 0.6, .p2 = 0.1, .test = 2, .sides = 1, .r = 0.6},
          Question{.p1 = 0.1, .p2 = 0.6, .test = 3, .r = 0.6}, Question{.p1 = 0.1, .p2 = 0.6, .test = 4}})
        EXPECT_EQ(q.sizes(), TranscribedSearch::sizes(q)) << q.test;
}

TEST(TwoProportionsSize, FishersRefinementSearchesTheChiSquareTestAndWalksWithFishers) {
    const Question fisher{.test = 3, .target = 0.9};
    Question chi_square = fisher;
    chi_square.test = 0;
    const auto sizes = fisher.sizes();
    const double first = chi_square.sizes()[0];
    // Fisher's test needs more than the chi-square test, and every size in between falls short.
    ASSERT_GT(sizes[0], first);
    for (double n = first; n < sizes[0]; ++n) EXPECT_LT(fisher.power(n, n), 0.9);
    EXPECT_GE(fisher.power(sizes[0], sizes[1]), 0.9);
}

TEST(TwoProportionsSize, ExactSizesReachTheTarget) {
    for (int test : {0, 1, 2, 3, 4})
        for (double target : {0.5, 0.8, 0.95}) {
            const Question q{.p1 = 0.3, .p2 = 0.45, .test = test, .target = target, .r = 0.8};
            const auto sizes = q.sizes();
            EXPECT_GE(q.power(sizes[0], sizes[1]), target) << test;
            EXPECT_EQ(sizes[1], std::floor(0.8 * sizes[0] + 0.5));
        }
}

TEST(TwoProportionsSize, SmallDifferencesNeedThousandsInAGroup) {
    for (int test : {0, 3}) {
        const Question q{.p1 = 0.02, .p2 = 0.03, .test = test, .target = 0.9};
        const auto sizes = q.sizes();
        EXPECT_GT(sizes[0], 4000);
        EXPECT_GE(q.power(sizes[0], sizes[1]), 0.9);
        EXPECT_LT(q.power(sizes[0] - 1, sizes[1] - 1), 0.9);
    }
}

TEST(TwoProportionsSize, NormalSizesAreTheCeilingsOfTheSearch) {
    for (int test : {0, 1, 2, 3}) {
        const Question q{.p1 = 0.3, .p2 = 0.45, .method = 0, .test = test, .r = 0.5};
        const auto sizes = q.sizes();
        EXPECT_GE(q.power(sizes[0], 0.5 * sizes[0]), 0.8);
        EXPECT_LT(q.power(sizes[0] - 1, 0.5 * (sizes[0] - 1)), 0.8);
    }
}

TEST(TwoProportionsSize, TheSecondGroupIsTheCeilingOfTheRatioTimesTheUnroundedSizeButAtLeastOne) {
    const Question q{.p1 = 0.1, .p2 = 0.9, .method = 0, .r = 0.5};
    const double N = PowerReverse(q.design(), IndSampBinomFunc, nullptr, 2, 400, 1e-9);
    EXPECT_THAT(q.sizes(), ElementsAre(std::ceil(N), std::ceil(0.5 * N)));
    // At a ratio of 9.5 the rounded size would give another one.
    const Question large{.p1 = 0.3, .p2 = 0.45, .method = 0, .r = 9.5};
    const double M = PowerReverse(large.design(), IndSampBinomFunc, nullptr, 2, 400, 1e-9);
    EXPECT_NE(std::ceil(9.5 * M), std::ceil(9.5 * std::ceil(M)));
    EXPECT_THAT(large.sizes(), ElementsAre(std::ceil(M), std::ceil(9.5 * M)));
    const Question tiny{.p1 = 0.001, .p2 = 0.999, .method = 0, .r = 0.01};
    EXPECT_EQ(tiny.sizes()[1], 1);
}

TEST(TwoProportionsSize, TheOneSidedCorrectedAndPooledChiSquareTestSquaresTheSize) {
    Question q{.method = 0, .sides = 1, .correction = true, .pooled = true, .r = 0.5};
    const double N = PowerReverse(q.design(), IndSampBinomFunc, nullptr, 2, 400, 1e-9);
    EXPECT_THAT(q.sizes(), ElementsAre(std::ceil(N), std::ceil(N * N * 0.5)));
    // Each of the four conditions is needed.
    for (auto change : {+[](Question& x) { x.sides = 0; }, +[](Question& x) { x.correction = false; },
                        +[](Question& x) { x.pooled = false; }, +[](Question& x) { x.test = 1; }}) {
        Question other = q;
        change(other);
        const auto sizes = other.sizes();
        EXPECT_LE(sizes[1], sizes[0]);
    }
}

TEST(TwoProportionsSize, FishersSearchBeginsWhereItsApproximationIsUsable) {
    // From max(0.5 / 0.9, 0.5 / 0.3): there the power of a low target is already reached.
    const Question q{.p1 = 0.1, .p2 = 0.3, .method = 0, .test = 3, .target = 0.001};
    EXPECT_THAT(q.sizes(), ElementsAre(2, 2));
    const Question falling{.p1 = 0.3, .p2 = 0.9, .method = 0, .test = 3, .target = 0.001};
    EXPECT_THAT(falling.sizes(), ElementsAre(1, 1));
    const Question unequal{.p1 = 0.9, .p2 = 0.3, .method = 0, .test = 3, .target = 0.001, .r = 0.1};
    EXPECT_THAT(unequal.sizes(), ElementsAre(8, 1));  // 0.5 / (0.7 * 0.1) = 7.14
}

TEST(TwoProportionsSize, FishersSearchIsNotMisledAtItsLowerEnd) {
    // At 0.5 / 0.41 the corrected proportion comes out a hair below 0, which must not make the power NaN.
    const Question q{.p1 = 0.32, .p2 = 0.41, .method = 0, .test = 3};
    EXPECT_THAT(q.sizes(), ElementsAre(470, 470));
}

TEST(TwoProportionsSize, AVectorThatHoldsSomethingIsLeftAlone) {
    std::vector<double> result = {7};
    PowerReverseIndSampBinom(0.8, 0.2, 0.5, 1, 0.05, result, 0, 0, 0, false, false, nullptr);
    EXPECT_THAT(result, ElementsAre(7));
}

TEST(TwoProportionsSize, TheArcsineSearchStartsWhereTheApproximationIsUsableAndReaches400Further) {
    // 0.5 / (1 - p1) is the larger bound: 4, where a low target is already reached.
    Question q{.p1 = 0.875, .p2 = 0.95, .method = 0, .test = 3, .target = 0.01};
    EXPECT_EQ(q.sizes(), (std::vector<double>{4, 4}));
    // So is each of the other three where it is the larger one: 0.5 / (r p2), 0.5 / p1, 0.5 / (r (1 - p2)).
    for (const auto& [p1, p2] : {std::pair(0.05, 0.125), std::pair(0.125, 0.05), std::pair(0.95, 0.875)}) {
        const Question other{.p1 = p1, .p2 = p2, .method = 0, .test = 3, .target = 0.01};
        EXPECT_EQ(other.sizes(), (std::vector<double>{4, 4})) << p1;
    }
    // The first upper end is 404: a size of 403 needs no doubling, and is asked about as often as one of 300.
    const auto queries_for = [&](double n) {
        q.target = q.power(n, n);
        CountingCancel count;
        EXPECT_NEAR(q.sizes(&count)[0], n, 1);
        return count.queries;
    };
    const long within = queries_for(300.3);
    EXPECT_EQ(queries_for(402.3), within);
    EXPECT_EQ(queries_for(407.3), within + 1);
}

TEST(TwoProportionsSize, TheRefinementStopsAtAPowerThatEqualsTheTarget) {
    Question q{.p1 = 0.2, .p2 = 0.5};
    q.target = q.power(30, 30);
    std::vector<double> sizes{30, 30};
    PowerReverseU4Binom(sizes, q.design(), nullptr);
    EXPECT_LE(sizes[0], 30);
    EXPECT_GE(q.power(sizes[0], sizes[1]), q.target);
    Question fisher{.p1 = 0.2, .p2 = 0.5, .test = 3};
    fisher.target = fisher.power(sizes[0], sizes[1]);
    std::vector<double> one{sizes[0], sizes[1]};
    PowerReverseU4Binom(one, fisher.design(), nullptr);
    EXPECT_LE(one[0], sizes[0]);
}

TEST(TwoProportionsSize, TheRefinementAsksBeforeEveryRoundAndEveryStep) {
    // Rounds by the exact chi-square power, steps by Fisher's: cancelled anywhere, the sizes stay as they were.
    const Question q{.p1 = 0.1, .p2 = 0.9, .test = 3, .target = 0.7};
    CountingCancel all;
    std::vector<double> sizes{2, 2};
    PowerReverseU4Binom(sizes, q.design(), &all);
    ASSERT_GT(sizes[0], 2);
    for (long stop_at = 1; stop_at <= all.queries; ++stop_at) {
        CountingCancel cancel(stop_at);
        std::vector<double> kept{2, 2};
        PowerReverseU4Binom(kept, q.design(), &cancel);
        if (kept == sizes) {
            // Only the power of the size that is the answer can still be computed after a late yes.
            EXPECT_GT(stop_at, all.queries / 2);
            continue;
        }
        EXPECT_EQ(kept, (std::vector<double>{2, 2})) << stop_at;
        EXPECT_LE(cancel.queries, stop_at + 4) << stop_at;
    }
}

TEST(TwoProportionsSize, TheRefinementAsksOnceARoundAndOnceAStepBesidesItsSearchesAndPowers) {
    // Rounds by the chi-square approximation, which asks nothing, steps by Fisher's exact power.
    const Question q{.p1 = 0.1, .p2 = 0.9, .method = 0, .test = 3, .target = 0.7};
    Question round = q, step = q;
    round.test = 0;
    step.method = 1;
    long expected = 0;
    std::vector<double> candidates{20};
    for (;;) {
        CountingCancel count;
        const double n =
            std::ceil(PowerReverse(round.design(), IndSampBinomFunc, &count, 1, candidates.back(), 1e-9));
        expected += 1 + count.queries;
        if (std::find(candidates.begin(), candidates.end(), n) != candidates.end()) break;
        candidates.push_back(n);
    }
    double n = *std::min_element(candidates.begin(), candidates.end());
    int steps = 0;
    for (;; ++n, ++steps) {
        CountingCancel count;
        const bool reached = step.power(n, n, &count) >= q.target;
        expected += count.queries;
        if (reached) break;
        ++expected;
    }
    ASSERT_GT(candidates.size(), 1U);
    ASSERT_GT(steps, 0);
    CountingCancel count;
    std::vector<double> sizes{20, 20};
    PowerReverseU4Binom(sizes, q.design(), &count);
    EXPECT_EQ(sizes, (std::vector<double>{n, n}));
    EXPECT_EQ(count.queries, expected);
}

TEST(TwoProportionsSize, FishersTestReachesNoMoreThanItsLevelAtEqualProportions) {
    for (int sides : {0, 1})
        for (int method : {1, 2}) {
            Question q{.p1 = 0.3, .p2 = 0.3, .method = method, .test = 3, .sides = sides};
            CountingCancel cancel;
            EXPECT_EQ(q.sizes(&cancel), kFailed);
            EXPECT_EQ(cancel.queries, 1);
            EXPECT_EQ(q.sizes(), kFailed);
        }
    // Every size keeps the level, fractional ones included.
    Question q{.p1 = 0.3, .p2 = 0.3, .test = 3};
    for (int sides : {0, 1})
        for (double n : {10.0, 10.5, 33.3, 120.9, 600.75}) {
            q.sides = sides;
            EXPECT_LE(q.power(n, 1.25 * n), 0.05) << n;
        }
}

TEST(TwoProportionsSize, ACancelObjectIsHeardBeforeBigGroupsAreBuilt) {
    for (int test = 0; test < 4; ++test)
        for (long stop_at : {1L, 2L}) {
            CountingCancel cancel(stop_at);
            Question q{.test = test};
            EXPECT_TRUE(OrvMV::IsMissing(q.power(1e9, 1e9, &cancel)));
            EXPECT_EQ(cancel.queries, stop_at);
        }
}

TEST(TwoProportionsSize, ATargetThatNoSizeReachesIsMissing) {
    for (int method : {0, 1}) EXPECT_EQ((Question{.p2 = 0.2, .method = method}.sizes()), kFailed);
    EXPECT_EQ((Question{.p2 = 0.2, .method = 0, .test = 3}.sizes()), kFailed);
    EXPECT_EQ((Question{.alpha = 2}.sizes()), kFailed);
    EXPECT_EQ((Question{.p1 = kNaN}.sizes()), kFailed);
    EXPECT_EQ((Question{.target = 1.5, .r = kNaN}.sizes()), kFailed);
}

TEST(TwoProportionsSize, OnlyMethodOneRefines) {
    const Question q{.method = 2, .test = 2};
    const double N = PowerReverse(q.design(), IndSampBinomFunc, nullptr, 2, 400, 1e-9);
    EXPECT_EQ(q.sizes()[0], std::ceil(N));
}

TEST(TwoProportionsSize, CancelledBeforeTheSearchBothSizesAreMissing) {
    for (int method : {0, 1}) {
        CountingCancel cancel(1);
        EXPECT_EQ((Question{.method = method}.sizes(&cancel)), kFailed);
        EXPECT_EQ(cancel.queries, 1);
    }
}

TEST(TwoProportionsSize, CancelledDuringTheSearchBothSizesAreMissing) {
    for (int test : {0, 1, 2, 3}) {
        CountingCancel cancel(5000);
        EXPECT_EQ((Question{.p1 = 0.3, .p2 = 0.35, .test = test}.sizes(&cancel)), kFailed);
        EXPECT_LE(cancel.queries, 5010);
    }
}

TEST(TwoProportionsSize, CancelledDuringTheRefinementTheSizesOfTheSearchRemain) {
    const Question q{.p1 = 0.1, .p2 = 0.6, .test = 3};
    CountingCancel all;
    const auto refined = q.sizes(&all);
    EXPECT_EQ(refined, q.sizes());
    Question search = q;
    search.method = 2;
    const auto unrefined = search.sizes();
    CountingCancel near_the_end(all.queries);
    EXPECT_EQ(q.sizes(&near_the_end), unrefined);
    EXPECT_LE(near_the_end.queries, all.queries + 1);
}

/// Says that the search has asked it, and stop once another thread has set it.
class Flag : public OrvQueryCancel {
  public:
    bool IsCancelRequested() override {
        asked = true;
        asked.notify_one();
        return set;
    }
    std::atomic<bool> asked = false;
    std::atomic<bool> set = false;
};

TEST(TwoProportionsSize, CancellingFromAnotherThreadEndsASearchThatHasNoAnswer) {
    for (int test : {0, 1, 2, 3}) {
        Flag flag;
        std::vector<double> sizes;
        std::thread search([&] { sizes = Question{.p2 = 0.2, .test = test}.sizes(&flag); });
        flag.asked.wait(false);
        flag.set = true;
        search.join();
        EXPECT_EQ(sizes, kFailed);
    }
}

TEST(TwoProportionsRefinement, NeedsTwoSizes) {
    for (std::vector<double> result : {std::vector<double>{}, std::vector<double>{30}}) {
        const auto before = result;
        EXPECT_THROW(PowerReverseU4Binom(result, Question{}.design(), nullptr), std::out_of_range);
        EXPECT_EQ(result, before);
    }
}

TEST(TwoProportionsRefinement, StartsFromTheFirstSize) {
    const Question q{.p1 = 0.1, .p2 = 0.6};
    std::vector<double> result = {100, 100};
    PowerReverseU4Binom(result, q.design(), nullptr);
    EXPECT_LT(result[0], 40);
    EXPECT_GE(q.power(result[0], result[1]), 0.8);
}

TEST(TwoProportionsRefinement, TheSecondSizeIsRoundedHalfUpAndAtLeastOne) {
    std::vector<double> result = {20, 20};
    Question q{.p1 = 0.05, .p2 = 0.95, .r = 0.5};
    PowerReverseU4Binom(result, q.design(), nullptr);
    EXPECT_EQ(result[1], std::floor(0.5 * result[0] + 0.5));
    q.r = 0.001;
    q.target = 0.01;
    result = {20, 20};
    PowerReverseU4Binom(result, q.design(), nullptr);
    EXPECT_EQ(result[1], 1);
}

TEST(TwoProportionsRefinement, CancelledItLeavesTheSizesAlone) {
    for (long query : {1L, 2L, 100L, 2000L}) {
        CountingCancel cancel(query);
        std::vector<double> result = {100, 100};
        PowerReverseU4Binom(result, Question{.test = 3, .target = 0.9}.design(), &cancel);
        EXPECT_THAT(result, ElementsAre(100, 100));
    }
}

TEST(TwoProportionsRefinement, ASizeTooSmallForTheTTestIsRaised) {
    std::vector<double> sizes = {1, 1};
    const Question q{.p1 = 0.1, .p2 = 0.9, .method = 1, .test = 1, .r = 1};
    PowerReverseU4Binom(sizes, q.design(), nullptr);
    EXPECT_GT(sizes[0], 1);
    EXPECT_GE(q.power(sizes[0], sizes[1]), 0.8);
}

TEST(TwoProportionsSize, ANaNRatioHasNoAnswer) {
    const Question q{.p1 = 0.1, .p2 = 0.9, .method = 0, .r = std::numeric_limits<double>::quiet_NaN()};
    const auto sizes = q.sizes();
    EXPECT_TRUE(OrvCommon_940::OrvMV::IsMissing(sizes[0]));
}

}  // namespace
