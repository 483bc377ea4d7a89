// statpower anova: the program's answers are the library's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/program.h"
#include "statpower/anova.h"
#include "support/curves.h"

using testing::HasSubstr;
using testing_support::expect_refusals;
using testing_support::statpower;

namespace {

const double kMeans[] = {10, 12, 14, 11};
const double kSizes[] = {10, 10, 10, 20};

TEST(AnovaCommand, PowerIsTheLibrarys) {
    const auto run =
        statpower("anova power --means 10,12,14,11 --sizes 10,10,10,20 --sd 4 --alpha 0.01 --json");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.json()["power"], PowerOverallTest(4, kMeans, kSizes, 4, 0.01));
    EXPECT_EQ(run.json()["total"], 50);
}

TEST(AnovaCommand, PowerTakesAnEffectSizeOfEitherKind) {
    EXPECT_EQ(statpower("anova power --f 0.25 --sizes 10,10,10,20 --json").json()["power"],
              PowerOverallTestwES(4, 0, kSizes, 0.25, 0.05));
    EXPECT_EQ(statpower("anova power --variance-explained 0.1 --sizes 10,10,10,20 --json").json()["power"],
              PowerOverallTestwES(4, 1, kSizes, 0.1, 0.05));
}

TEST(AnovaCommand, SizeReachesThePower) {
    const auto run =
        statpower("anova size --means 10,12,14,11 --weights 1,1,1,1 --sd 4 --power 0.8 --alpha 0.05 --json");
    EXPECT_EQ(run.status, 0);
    const double weights[] = {1, 1, 1, 1};
    std::vector<double> sizes;
    EXPECT_EQ(run.json()["total"], PowerReverseOverallTest(4, kMeans, weights, &sizes, 4, 0.8, 0.05));
    EXPECT_EQ(run.json()["group_sizes"], sizes);
    EXPECT_GE(run.json()["power"], 0.8);
}

TEST(AnovaCommand, SizePrintsTextForPeople) {
    const auto run = statpower("anova size --f 0.25 --weights 1,1,1");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.text, HasSubstr("group sizes:"));
    EXPECT_THAT(run.text, HasSubstr("\ntotal:        "));
}

TEST(AnovaCommand, ATargetThatNoSizeReachesHasNoAnswer) {
    const auto run = statpower("anova size --means 1,1,1 --sd 1 --weights 1,1,1");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("no sample size"));
}

TEST(AnovaCommand, AnAnswerThatFallsShortByRoundingIsStillAnAnswer) {
    // The search ends within a millionth of an observation below the root, here just below the whole number 84.
    const auto run = statpower(
        "anova size --means 10,12,14,11 --weights 1,1,1,1 --sd 4 --power 0.80133194081996162 --json");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.json()["total"], 84);
}

TEST(AnovaCommand, AHalfWidthThatNoSizeReachesHasNoAnswer) {
    const auto run = statpower("anova halfwidth-size --weights 1,1,1 --sd 1 --halfwidth 1e-200");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("no sample size"));
}

TEST(AnovaCommand, EffectIsTheLibrarys) {
    EXPECT_EQ(
        statpower("anova effect --means 10,12,14,11 --sizes 10,10,10,20 --sd 4 --json").json()["effect"],
        RMSSEOverallTest(4, kMeans, kSizes, 4, 0.05));
}

TEST(AnovaCommand, HalfWidthAndItsSizeAreTheLibrarys) {
    EXPECT_EQ(statpower("anova halfwidth --groups 3 --total 40 --sd 2 --json").json()["half_width"],
              HalfCIOverallTest(3, 40, 2, 0.05));
    const double weights[] = {1, 1, 2};
    std::vector<double> sizes;
    const auto run = statpower("anova halfwidth-size --weights 1,1,2 --halfwidth 0.3 --sd 2 --json");
    EXPECT_EQ(run.json()["total"], PowerReversebyHalfCIOverallTest(3, weights, &sizes, 0.3, 2, 0.05));
    EXPECT_EQ(run.json()["group_sizes"], sizes);
}

TEST(AnovaCommand, NamesTheArgumentThatIsOutOfRange) {
    expect_refusals("anova", {
                                 {"power --f 0.2 --sizes 5,5 --alpha 0", "--alpha"},
                                 {"power --f 0.2 --sizes 5,5 --alpha 1", "--alpha"},
                                 {"power --f 0.2 --sizes 5", "--sizes"},
                                 {"power --f 0.2 --sizes 5,-1", "--sizes"},
                                 {"power --f 0.2 --sizes 1,1", "--sizes"},
                                 {"power --f 0 --sizes 5,5", "--f"},
                                 {"power --variance-explained 1 --sizes 5,5", "--variance-explained"},
                                 {"power --means 1,2 --sd 0 --sizes 5,5", "--sd"},
                                 {"power --means 1,2 --sizes 5,5", "--means"},
                                 {"power --means 1,2,3 --sd 1 --sizes 5,5", "--means"},
                                 {"size --f 0.2 --weights 5,5 --power 1", "--power"},
                                 {"size --f 0.2 --weights 5,0", "--weights"},
                                 {"effect --means 1,2 --sd 1", "--sizes"},
                                 {"halfwidth --groups 1 --total 40 --sd 2", "--groups"},
                                 {"halfwidth --groups 3 --total 3 --sd 2", "--total"},
                                 {"halfwidth-size --weights 1,1 --halfwidth 0 --sd 2", "--halfwidth"},
                             });
}

TEST(AnovaCommand, ExactlyOneKindOfEffectIsGiven) {
    EXPECT_EQ(statpower("anova power --sizes 5,5").status, 2);
    EXPECT_EQ(statpower("anova power --sizes 5,5 --f 0.2 --variance-explained 0.1").status, 2);
}

// ---- Curves ----------------------------------------------------------------------------------------------

const double kCurveMeans[] = {0, 1, 2};
const double kCurveSizes[] = {10, 10, 20};

TEST(AnovaCurveCommand, OverNIsTheLibrarysCurve) {
    const auto given = testing_support::take(PlotNOverallTest(3, kCurveMeans, kCurveSizes, 10, 13, 2, 0.01));
    const auto points =
        statpower(
            "anova curve --sizes 10,10,20 --means 0,1,2 --sd 2 --n-low 10 --n-high 13 --alpha 0.01 --json")
            .json();
    ASSERT_EQ(points.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(points[i]["n"], given.x[i]);
        EXPECT_EQ(points[i]["power"], given.y[i]);
    }
    const auto chosen = testing_support::take(PlotNOverallTestFES(3, 1, kCurveSizes, 0, 0, 0.1, 0.05));
    const auto open = statpower("anova curve --sizes 10,10,20 --variance-explained 0.1 --json").json();
    ASSERT_EQ(open.size(), chosen.x.size());
    EXPECT_EQ(open.front()["n"], chosen.x.front());
    EXPECT_EQ(open.back()["power"], chosen.y.back());
}

TEST(AnovaCurveCommand, OverAnEffectSizeOrTheDeviationIsTheLibrarysCurve) {
    const auto f = testing_support::take(PlotESOverallTest(3, 0, kCurveSizes, 0, 0, 0.05, 0.25));
    const auto f_points = statpower("anova curve --sizes 10,10,20 --over f --steps 4 --json").json();
    ASSERT_EQ(f_points.size(), 5u);
    EXPECT_EQ(f_points[3]["f"], f.x[3]);
    EXPECT_EQ(f_points[3]["power"], f.y[3]);

    const auto v = testing_support::take(PlotESOverallTest(3, 1, kCurveSizes, 0.1, 0.5, 0.05, 0.25));
    const auto v_points =
        statpower(
            "anova curve --sizes 10,10,20 --over variance-explained --es-low 0.1 --es-high 0.5 "
            "--steps 4 --json")
            .json();
    ASSERT_EQ(v_points.size(), 4u);
    EXPECT_EQ(v_points[3]["variance_explained"], v.x[3]);
    EXPECT_EQ(v_points[3]["power"], v.y[3]);

    const auto sd =
        testing_support::take(PlotSDOverallTest(3, kCurveMeans, kCurveSizes, 2, 1, 3, 0.05, 0.25));
    const auto sd_points =
        statpower(
            "anova curve --sizes 10,10,20 --means 0,1,2 --sd 2 --over sd --sd-low 1 --sd-high 3 "
            "--steps 4 --json")
            .json();
    ASSERT_EQ(sd_points.size(), 5u);
    EXPECT_EQ(sd_points[1]["sd"], sd.x[1]);
    EXPECT_EQ(sd_points[1]["power"], sd.y[1]);
}

TEST(AnovaCurveCommand, OverTwoAxesIsTheLibrarysSurface) {
    const auto by_sd =
        testing_support::take(PlotNaSDOverallTest(3, kCurveMeans, kCurveSizes, 10, 11, 2, 1, 3, 0.05, 0.5));
    const auto sd_points =
        statpower(
            "anova curve --sizes 10,10,20 --means 0,1,2 --sd 2 --over n-sd --n-low 10 --n-high 11 "
            "--sd-low 1 --sd-high 3 --steps 2 --json")
            .json();
    ASSERT_EQ(sd_points.size(), 6u);
    EXPECT_EQ(sd_points[4]["n"], 11);
    EXPECT_EQ(sd_points[4]["sd"], 2);
    EXPECT_EQ(sd_points[4]["power"], by_sd.at(1, 1));

    for (int type : {0, 1}) {
        const auto by_effect =
            testing_support::take(PlotNaESOverallTest(3, type, kCurveSizes, 0, 0, 0.2, 0, 0, 0.05, 0.5));
        const std::string effect = type == 0 ? "f" : "variance-explained";
        const auto points = statpower("anova curve --sizes 10,10,20 --over n-" + effect + " --" + effect +
                                      " 0.2 --steps 2 --json")
                                .json();
        ASSERT_EQ(points.size(), by_effect.z.size());
        EXPECT_EQ(points[0]["n"], by_effect.x[0]);
        EXPECT_EQ(points.back()["power"], by_effect.z.back());
    }
}

TEST(AnovaCurveCommand, PrintsCsvWithAnEmptyCellWhereThePowerIsMissing) {
    const auto run = statpower("anova curve --sizes 1,1 --f 0.2 --n-low 2 --n-high 2 --alpha 0.25");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.text, "n,power\n2.0,1.0\n");
    EXPECT_EQ(statpower("anova curve --sizes 1,1,1 --f 0.2 --n-low 2 --n-high 2").text, "n,power\n2.0,\n");
}

TEST(AnovaCurveCommand, HasNoAnswerWhereTheAxisHasNoPoints) {
    EXPECT_EQ(statpower("anova curve --sizes 10,10 --means 1,1 --sd 2 --over sd").status, 1);
    EXPECT_EQ(statpower("anova curve --sizes 10,10 --over f --es-low 1 --es-high 1").status, 1);
}

TEST(AnovaCurveCommand, NamesTheArgumentThatIsOutOfRangeOrNeeded) {
    expect_refusals("anova curve",
                    {
                        {"--sizes 5,5 --over n", "--over n"},
                        {"--sizes 5,5 --over sd", "--over sd"},
                        {"--sizes 5,5 --over n-sd --f 0.2", "--over n-sd"},
                        {"--sizes 5,5 --over n-f", "--over n-f"},
                        {"--sizes 5,5 --over n-f --variance-explained 0.2", "--over n-f"},
                        {"--sizes 5,5 --over n-variance-explained --f 0.2", "--over n-variance-explained"},
                        {"--sizes 5,5 --over means", "--over"},
                        {"--sizes 5 --f 0.2", "--sizes"},
                        {"--sizes 5,5 --means 1,2,3 --sd 1", "--means"},
                        {"--sizes 5,5 --f 0.2 --n-low 1 --n-high 10", "--n-low"},
                        {"--sizes 5,5 --f 0.2 --n-low 10", "--n-low"},
                        {"--sizes 5,5 --f 0.2 --n-high 10", "--n-high"},
                        {"--sizes 5,5 --f 0.2 --n-low 10 --n-high 9", "--n-low"},
                        {"--sizes 5,5 --over f --es-low 2 --es-high 1", "--es-low"},
                        {"--sizes 5,5 --over f --es-low -1 --es-high 1", "--es-low"},
                        {"--sizes 5,5 --over sd --means 1,2 --sd 1 --sd-low 0 --sd-high 1", "--sd-low"},
                        {"--sizes 5,5 --over sd --means 1,2 --sd 1 --sd-low 2 --sd-high 1", "--sd-low"},
                        {"--sizes 5,5 --over f --steps 0", "--steps"},
                        {"--sizes 5,5 --over f --alpha 1", "--alpha"},
                    });
}

TEST(AnovaCommand, RefusesNumbersThatAreNotFinite) {
    EXPECT_EQ(statpower("anova power --means nan,1 --sd 1 --sizes 5,5").status, 2);
    EXPECT_EQ(statpower("anova power --means 0,inf --sd 1 --sizes 5,5").status, 2);
    EXPECT_EQ(statpower("anova power --f inf --sizes 5,5").status, 2);
    EXPECT_EQ(statpower("anova power --f 0.2 --sizes 5,inf").status, 2);
}

TEST(AnovaCommand, RefusesAnAxisOfProportionsBeyondOne) {
    EXPECT_EQ(statpower("anova curve --sizes 5,5 --over variance-explained --es-high 3").status, 2);
}

}  // namespace
