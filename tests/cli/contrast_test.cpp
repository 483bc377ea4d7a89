// statpower contrast: the program's answers are the library's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/program.h"
#include "statpower/anova.h"
#include "support/curves.h"

using testing::HasSubstr;
using testing_support::expect_refusals;
using testing_support::statpower;
using testing_support::take;

namespace {

const double kMeans[] = {0, 1, 3};
const double kSizes[] = {10, 10, 20};

struct Coefficients {
    double values[3] = {0.5, 0.5, -1};
    operator double*() { return values; }
};

TEST(ContrastCommand, PowerIsTheLibrarys) {
    const std::string design = "contrast power --sizes 10,10,20 --coefficients 0.5,0.5,-1 --json ";
    EXPECT_EQ(statpower(design + "--means 0,1,3 --sd 4 --alpha 0.01").json()["power"],
              PowerSC(3, kMeans, kSizes, Coefficients(), 0, 4, 0.01));
    EXPECT_EQ(statpower(design + "--means 0,1,3 --sd 4 --one-sided").json()["power"],
              PowerSC(3, kMeans, kSizes, Coefficients(), 1, 4, 0.05));
    EXPECT_EQ(statpower(design + "--es 0.5").json()["power"],
              PowerSCwES(3, kSizes, Coefficients(), 0, 0.5, 0.05));
}

TEST(ContrastCommand, ShowsTheCoefficientsWithTheLastOneRepaired) {
    const auto run =
        statpower("contrast power --sizes 10,10,20 --coefficients 0.5,0.5,0 --es 0.5 --json").json();
    EXPECT_EQ(run["coefficients"], std::vector<double>({0.5, 0.5, -1}));
    EXPECT_EQ(run["power"], PowerSCwES(3, kSizes, Coefficients(), 0, 0.5, 0.05));
}

TEST(ContrastCommand, SizeReachesThePower) {
    const double weights[] = {1, 1, 2};
    const std::string design = "contrast size --weights 1,1,2 --coefficients 0.5,0.5,-1 --json ";
    std::vector<double> sizes;
    const auto by_means = statpower(design + "--means 0,1,3 --sd 4 --power 0.9").json();
    EXPECT_EQ(by_means["total"], PowerReverseSC(3, kMeans, weights, Coefficients(), &sizes, 0, 4, 0.9, 0.05));
    EXPECT_EQ(by_means["group_sizes"], sizes);
    EXPECT_GE(by_means["power"], 0.9);
    const auto by_effect = statpower(design + "--es 0.5 --one-sided").json();
    EXPECT_EQ(by_effect["total"], PowerReverseSCwES(3, weights, Coefficients(), &sizes, 1, 0.5, 0.8, 0.05));
    EXPECT_GE(by_effect["power"], 0.8);
}

TEST(ContrastCommand, ATargetThatNoSizeReachesHasNoAnswer) {
    const auto run = statpower("contrast size --weights 1,1 --coefficients 1,-1 --es 0");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("no sample size"));
}

TEST(ContrastCommand, EffectIsTheLibrarys) {
    EXPECT_EQ(
        statpower("contrast effect --means 0,1,3 --coefficients 0.5,0.5,-1 --sd 4 --json").json()["effect"],
        EffectSizeSC(3, kMeans, Coefficients(), 4));
}

TEST(ContrastCommand, HalfWidthAndItsSizeAreTheLibrarys) {
    const std::string design = " --weights 10,10,20 --coefficients 0.5,0.5,-1 --sd 4 --json ";
    EXPECT_EQ(statpower("contrast halfwidth --total 80" + design).json()["half_width"],
              HalfCISCTest(3, kSizes, Coefficients(), 80, 4, 0.05));
    std::vector<double> sizes;
    const auto run = statpower("contrast halfwidth-size --halfwidth 0.5" + design).json();
    EXPECT_EQ(run["total"], PowerReversebyHalfCISCTest(3, kSizes, Coefficients(), &sizes, 0.5, 4, 0.05));
    EXPECT_EQ(run["group_sizes"], sizes);
    EXPECT_LE(run["half_width"], 0.5);
}

TEST(ContrastCommand, CurvesAreTheLibrarys) {
    const std::string design = "contrast curve --sizes 10,10,20 --coefficients 0.5,0.5,-1 --json ";
    const auto n = take(PlotNSC(3, kMeans, kSizes, Coefficients(), 0, 0, 0, 4, 0.05));
    const auto n_points = statpower(design + "--means 0,1,3 --sd 4").json();
    ASSERT_EQ(n_points.size(), n.x.size());
    EXPECT_EQ(n_points[5]["n"], n.x[5]);
    EXPECT_EQ(n_points[5]["power"], n.y[5]);

    const auto es = take(PlotNSCFES(3, kSizes, Coefficients(), 10, 13, 1, 0.5, 0.05));
    const auto es_points = statpower(design + "--es 0.5 --one-sided --n-low 10 --n-high 13").json();
    ASSERT_EQ(es_points.size(), 4u);
    EXPECT_EQ(es_points[3]["power"], es.y[3]);

    const auto sd = take(PlotSDSC(3, kMeans, kSizes, Coefficients(), 0, 4, 1, 3, 0.05, 0.25));
    const auto sd_points =
        statpower(design + "--means 0,1,3 --sd 4 --over sd --sd-low 1 --sd-high 3 --steps 4").json();
    ASSERT_EQ(sd_points.size(), 5u);
    EXPECT_EQ(sd_points[2]["sd"], sd.x[2]);
    EXPECT_EQ(sd_points[2]["power"], sd.y[2]);

    const auto both = take(PlotNaSDSC(3, kMeans, kSizes, Coefficients(), 10, 11, 0, 4, 1, 3, 0.05, 0.5));
    const auto both_points = statpower(design +
                                       "--means 0,1,3 --sd 4 --over n-sd --n-low 10 --n-high 11 --sd-low 1 "
                                       "--sd-high 3 --steps 2")
                                 .json();
    ASSERT_EQ(both_points.size(), 6u);
    EXPECT_EQ(both_points[4]["power"], both.at(1, 1));
}

TEST(ContrastCommand, NamesTheArgumentThatIsOutOfRangeOrNeeded) {
    expect_refusals(
        "contrast",
        {
            {"power --sizes 5,5 --coefficients 1,1 --es 0.5 --alpha 0", "--alpha"},
            {"power --sizes 5,5,5 --coefficients 1,1,0 --es 0.5", "--coefficients"},
            {"power --sizes 5,5 --coefficients 1,0,-1 --es 0.5", "--coefficients"},
            {"power --sizes 5,5 --es 0.5", "--coefficients"},
            {"power --sizes 5 --coefficients 1 --es 0.5", "--sizes"},
            {"power --sizes 1,1 --coefficients 1,-1 --es 0.5", "--sizes"},
            {"power --sizes 5,5 --coefficients 1,-1 --means 1,2", "--means"},
            {"power --sizes 5,5 --coefficients 1,-1 --means 1,2,3 --sd 1", "--means"},
            {"size --weights 5,0 --coefficients 1,-1 --es 0.5", "--weights"},
            {"effect --means 1,2 --coefficients 1,0,-1 --sd 1", "--coefficients"},
            {"halfwidth --weights 5,5 --total 2 --coefficients 1,-1 --sd 1", "--total"},
            {"halfwidth-size --weights 5,5 --halfwidth 0 --coefficients 1,-1 --sd 1", "--halfwidth"},
            {"curve --sizes 5,5 --coefficients 1,-1 --es 0.5", "--es"},
            {"curve --sizes 5,5 --coefficients 1,-1 --es 0.5 --over sd", "--over sd"},
            {"curve --sizes 5,5 --coefficients 1,-1 --means 1,2 --sd 1 --over es", "--over"},
        });
}

TEST(ContrastCommand, AHalfWidthThatNoSizeReachesHasNoAnswer) {
    EXPECT_EQ(statpower("contrast halfwidth-size --weights 1,1 --coefficients 1,-1 --halfwidth 1e-200 --sd 1")
                  .status,
              1);
}

TEST(ContrastCommand, RefusesAContrastOfNothing) {
    const auto run = statpower("contrast power --sizes 9,9 --coefficients 0,0 --es 0.5");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.text, testing::StartsWith("statpower: --coefficients"));
}

TEST(ContrastCommand, DividesAnAxisIntoAsManyStepsAsAsked) {
    // 3 (1 / 3 5) is just below 5 in double precision: a plain third would take a fourth step.
    const auto points = statpower(
                            "contrast curve --sizes 9,9 --coefficients 1,-1 --means 0,1 --sd 1 --over sd "
                            "--sd-low 1 --sd-high 6 --steps 3 --json")
                            .json();
    EXPECT_EQ(points.size(), 4u);
}

}  // namespace
