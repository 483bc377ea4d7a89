// The descriptions of the tests by themselves: powers, half-widths and effects of single designs.
#include <gmock/gmock.h>

#include <cmath>
#include <set>

#include "plan/design.h"
#include "statpower/correlation.h"

using namespace testing_support;
using ::testing::DoubleNear;
using ::testing::HasSubstr;

namespace {

double answer(const std::string& design) {
    return Design(design).answer();
}

std::string refusal(const std::string& design) {
    const auto found = Design(design).contradiction;
    return found ? found->message() : "";
}

TEST(Kernels, AgreeWithRAndClosedFormsAndPublishedTables) {
    std::set<std::string> tests;
    for (const Row& row : read_table("plan/tests_of_means_and_correlations.csv")) {
        const Design design(row.label);
        EXPECT_THAT(design.answer(), DoubleNear(row[0], row[1])) << row.label;
        EXPECT_FALSE(design.contradiction) << row.label;
        tests.emplace(design.test().name);
    }
    for (const char* name : {"t-paired", "t-two", "anova", "contrast", "pairwise", "pearson", "spearman",
                             "partial", "regression", "z-one"})
        EXPECT_TRUE(tests.contains(name)) << name;
}

TEST(Kernels, AreOneThroughEveryWayToGiveAnEffect) {
    EXPECT_NEAR(answer("t-paired power d=0.5 corr=0.7 n=20"),
                answer("t-paired power diff=2 sd1=4 sd2=4 corr=0.7 n=20"), 1e-14);
    EXPECT_NEAR(answer("t-two power d=0.5 n=20"), answer("t-two power diff=2 sd1=4 sd2=4 n=20"), 1e-14);
    EXPECT_NEAR(answer("anova power eta2=0.2 groups=3 n=9"), answer("anova power f=0.5 groups=3 n=9"), 1e-14);
}

TEST(Regression, IsOneThroughEveryWayToGiveAnEffect) {
    const double power = answer("regression power r2=0.3 r2-reduced=0.2 predictors=5 tested=2 n=60");
    EXPECT_NEAR(answer("regression power partial-r2=0.125 predictors=5 tested=2 n=60"), power, 1e-14);
    EXPECT_NEAR(answer("regression power f2=0.14285714285714285 predictors=5 tested=2 n=60"), power, 1e-14);
    // R squared, never R: of all predictors it is the effect of a model with nothing in the reduced one.
    EXPECT_NEAR(answer("regression power r2=0.3 predictors=5 n=60"),
                answer("regression power r2=0.3 r2-reduced=0 predictors=5 tested=5 n=60"), 1e-14);
}

TEST(Regression, RefusesModelsThatContradictThemselves) {
    EXPECT_THAT(refusal("regression power r2=0.3 r2-reduced=0.2 predictors=5 tested=5 n=60"),
                HasSubstr("r2-reduced: is 0 where all predictors are tested"));
    EXPECT_THAT(refusal("regression power r2=0.1 r2-reduced=0.2 predictors=5 tested=2 n=60"),
                HasSubstr("r2: is below r2-reduced"));
    EXPECT_THAT(refusal("regression power f2=0.1 predictors=2 tested=3 n=60"), HasSubstr("tested: is more"));
    EXPECT_EQ(refusal("regression power r2=0.3 r2-reduced=0 predictors=5 tested=5 n=60"), "");
    EXPECT_EQ(refusal("regression power r2=0.3 r2-reduced=0.3 predictors=5 tested=2 n=60"), "");
}

TEST(Regression, CountsPredictorsInWholeNumbers) {
    for (const statplan::Way& way : statplan::find_test("regression")->power.ways)
        for (const Argument& a : way.arguments)
            if (a.name == "predictors" || a.name == "tested") {
                EXPECT_EQ(a.kind, Kind::whole);
            }
}

TEST(Contrast, IsRefusedNotChangedWhereItDoesNotSumTo0) {
    EXPECT_THAT(refusal("contrast power means=1;2;3 coefficients=1;-0.3;-0.3 sd=1 n=9"),
                HasSubstr("coefficients: do not sum to 0"));
    EXPECT_THAT(refusal("contrast halfwidth coefficients=1;1;1 sd=1 n=9"), HasSubstr("do not sum to 0"));
    EXPECT_THAT(refusal("contrast power means=1;2;3 coefficients=0;0;0 sd=1 n=9"), HasSubstr("all are 0"));
    EXPECT_THAT(refusal("contrast power means=1;2 coefficients=1;1;-2 sd=1 n=9"), HasSubstr("says 3 groups"));
    EXPECT_EQ(refusal("contrast power means=1;2;3 coefficients=0.1;0.2;-0.3 sd=1 n=9"), "");
}

TEST(Contrast, MayHaveAnyScale) {
    const double power = answer("contrast power means=1;2;4 coefficients=1;1;-2 sd=2 n=9");
    for (const char* c : {"0.5;0.5;-1", "-7;-7;14", "1e90;1e90;-2e90", "1e-90;1e-90;-2e-90"})
        EXPECT_NEAR(answer(std::string("contrast power means=1;2;4 sd=2 n=9 coefficients=") + c), power,
                    1e-13)
            << c;
}

TEST(Pairwise, NeedsTwoOfTheGroups) {
    EXPECT_THAT(refusal("pairwise power means=1;2;3 sd=1 n=9 first=2 second=2"), HasSubstr("second: "));
    EXPECT_THAT(refusal("pairwise power means=1;2;3 sd=1 n=9 first=1 second=4"),
                HasSubstr("second: there are only 3"));
    EXPECT_THAT(refusal("pairwise power means=1;2;3 sd=1 n=9 first=5 second=1"),
                HasSubstr("first: there are only 3"));
}

TEST(Partial, WithNothingPartialledOutIsPearson) {
    EXPECT_EQ(answer("partial power r=0.3 partialled-out=0 n=50"), answer("pearson power r=0.3 n=50"));
    EXPECT_EQ(answer("partial halfwidth r=0.3 partialled-out=0 n=50"),
              answer("pearson halfwidth r=0.3 n=50"));
}

TEST(Partial, WithTheSmallSampleCorrectionIsTheLibrarysOwn) {
    EXPECT_EQ(answer("partial power r=0.3 partialled-out=3 n=50 bias-correction=yes"),
              PowerbyOneSampPartial(0, 50, 3, 0.3, 0, 0.05));
    EXPECT_EQ(answer("partial halfwidth r=0.3 partialled-out=3 n=50"),
              HalfCIOneSampPartial(50, 3, 0.3, 1 - 0.95));
}

TEST(TwoMeans, WelchStaysWelchAtEqualStandardDeviations) {
    const double equal = answer("t-two power diff=5 sd=12 n1=12 n2=60 variance=unpooled");
    const double nearly = answer("t-two power diff=5 sd1=12 sd2=12.000001 n1=12 n2=60 variance=unpooled");
    EXPECT_NEAR(equal, nearly, 1e-7);
    EXPECT_GT(std::abs(equal - answer("t-two power diff=5 sd=12 n1=12 n2=60")), 0.01);
}

TEST(TwoMeans, PooledRefusesDifferentStandardDeviationsAndSaysWhatToUse) {
    EXPECT_THAT(refusal("t-two power diff=5 sd1=8 sd2=12 n=40"), HasSubstr("use unpooled"));
    EXPECT_THAT(refusal("t-two halfwidth sd1=8 sd2=12 n=40"), HasSubstr("use unpooled"));
    EXPECT_EQ(refusal("t-two power diff=5 sd1=8 sd2=8 n=40"), "");
}

TEST(PairedMeans, UncorrelatedPairsAreAnOrdinaryDesign) {
    const double at_0 = answer("t-paired power diff=2 sd1=5 sd2=6 corr=0 n=30");
    EXPECT_LT(answer("t-paired power diff=2 sd1=5 sd2=6 corr=-0.01 n=30"), at_0);
    EXPECT_GT(answer("t-paired power diff=2 sd1=5 sd2=6 corr=0.01 n=30"), at_0);
}

// The library answers what it cannot compute with the missing value, -1 or 1; none of them is an answer.
TEST(Kernels, GiveNoAnswerWhereThereIsNone) {
    for (const char* design : {"t-paired power dz=0.5 n=1", "t-paired halfwidth sd=4 n=1",
                               "t-two power d=0.5 n1=1 n2=9", "t-two halfwidth sd=4 n1=1 n2=1",
                               "anova power f=0.5 sizes=1;1;1", "anova halfwidth sd=4 sizes=1;1;1"})
        EXPECT_TRUE(std::isnan(answer(design))) << design;
}

TEST(Kernels, StayProbabilitiesForEffectsOfAnySize) {
    for (const char* design :
         {"t-paired power diff=1e300 sd=1e-300 n=5",
          "t-paired power diff=-1e300 sd=1e-300 n=5 alternative=one-sided",
          "t-two power diff=1e300 sd=1e-300 n=5",
          "t-two power diff=1e308 sd1=1e-300 sd2=1e-200 n=5 variance=unpooled",
          "anova power f=1e300 groups=3 n=2", "anova power means=-1e308;1e308 sd=1e-300 n=5",
          "contrast power d=1e300 coefficients=1;-1 n=2",
          "contrast power d=-1e300 coefficients=1;-1 n=2 alternative=one-sided",
          "pairwise power d=1e300 groups=3 n=2", "pairwise power diff=1e300 sd=1e-300 groups=3 n=2",
          "pearson power q=50 n=4",
          "pearson power r=0.9999999999999999 r0=-0.9999999999999999 n=9 bias-correction=yes",
          "spearman power q=-50 n=4", "partial power q=50 n=9 partialled-out=2",
          "regression power f2=1e300 predictors=3 n=9",
          "regression power f2=1e300 predictors=3 n=9 model=random",
          "z-one power mean=1e308 null=-1e308 sd=1e-300 n=5"})
        EXPECT_EQ(answer(design), 1) << design;
    EXPECT_NEAR(answer("anova power means=1e308;1e308;1e308 sd=1e300 n=5"), 0.05, 1e-14);
}

TEST(Groups, ThatArgumentsDisagreeOnAreRefused) {
    EXPECT_THAT(refusal("anova power means=1;2;3 sd=1 sizes=5;5"), HasSubstr("sizes: says 2 groups"));
    EXPECT_THAT(refusal("anova power f=0.3 groups=4 sizes=5;5"), HasSubstr("groups: says 4 groups"));
    EXPECT_EQ(refusal("anova power f=0.3 sizes=10;20"), "");
}

}  // namespace
