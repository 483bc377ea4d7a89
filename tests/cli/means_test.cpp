// statpower t-one, t-paired and t-ind: the program's answers are the library's.
#include "statpower/means.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "cli/program.h"

using testing::HasSubstr;
using testing::StartsWith;
using testing_support::statpower;

namespace {

nlohmann::json answer(const std::string& arguments) {
    const auto run = statpower(arguments + " --json");
    EXPECT_EQ(run.status, 0) << run.text;
    return run.json();
}

/// The numbers of one column of a printed curve.
std::vector<double> column(const nlohmann::json& points, const char* name) {
    std::vector<double> values;
    for (const auto& point : points) values.push_back(point[name]);
    return values;
}

/// The powers of a curve, its arrays released.
std::vector<double> powers(XYPlot plot) {
    std::vector<double> values(plot.y, plot.y + plot.count);
    FreeMemXYPlot(plot);
    return values;
}

std::vector<double> powers(XYZPlot plot) {
    std::vector<double> values(plot.z, plot.z + static_cast<std::ptrdiff_t>(plot.nx) * plot.ny);
    FreeMemXYZPlot(plot);
    return values;
}

TEST(OneSampleCommand, PowerIsTheLibrarys) {
    EXPECT_EQ(answer("t-one power --n 34 --es 0.5 --alpha 0.01")["power"],
              PowerOneSampleNondirectionalES(34, 0.5, 0.01));
    EXPECT_EQ(answer("t-one power --n 34 --es 0.5 --one-sided")["power"],
              PowerOneSampleDirectionalES(34, 0.5, 0.05));
    EXPECT_EQ(answer("t-one power --n 34 --mean 106 --sd 9 --null 100")["power"],
              PowerOneSampleNondirectional(34, 106, 9, 100, 0.05));
}

TEST(OneSampleCommand, SizeIsTheLibrarysRoundedUp) {
    EXPECT_EQ(answer("t-one size --es 0.5 --power 0.9")["sample_size"],
              std::ceil(PowerReverseOneSampleNondirectionalES(0.9, 0.5, 0.05)));
    const auto means = answer("t-one size --mean 106 --sd 9 --null 100 --one-sided");
    EXPECT_EQ(means["sample_size"], std::ceil(PowerReverseOneSampleDirectional(0.8, 106, 9, 100, 0.05)));
    EXPECT_GE(means["power"], 0.8);
}

TEST(OneSampleCommand, EffectAndHalfWidthsAreTheLibrarys) {
    EXPECT_EQ(answer("t-one effect --mean 106 --sd 9 --null 100")["effect"],
              EffectSizeOneSample(106, 9, 100));
    EXPECT_EQ(answer("t-one halfwidth --n 20 --sd 3")["half_width"], HalfCIOneSampleMeans(20, 3, 0.05));
    EXPECT_EQ(answer("t-one halfwidth-size --halfwidth 0.5 --sd 3")["sample_size"],
              PowerReversebyHalfCIOneSampleMeans(0.5, 3, 0.05));
}

TEST(OneSampleCommand, CurvesAreTheLibrarys) {
    EXPECT_EQ(column(answer("t-one curve --es 0.5 --n-high 20"), "power"),
              powers(PlotNOneSampleFES(2, 20, 0, 0.5, 0.05)));
    EXPECT_EQ(column(answer("t-one curve --mean 1 --sd 2 --n-low 5 --n-high 20"), "power"),
              powers(PlotNOneSample(5, 20, 0, 0, 1, 2, 0, 0.05)));
    EXPECT_EQ(column(answer("t-one curve --over es --n 20 --steps 4 --one-sided"), "power"),
              powers(PlotESOneSample(1, 20, -5, 1, 0.05, 0.25)));
    EXPECT_EQ(column(answer("t-one curve --over n-es --n-high 5 --steps 4"), "power"),
              powers(PlotNaESOneSample(2, 5, 0, -5, 1, 0.05, 0.25)));
}

TEST(PairedCommand, PowerAndSizeAreTheLibrarys) {
    const std::string means = " --mean1 5 --mean2 4 --sd1 2 --sd2 3 --corr 0.5";
    EXPECT_EQ(answer("t-paired power --n 20" + means)["power"],
              PowerRelatedNondirectional(20, 5, 2, 4, 3, 0.5, 0.05));
    EXPECT_EQ(answer("t-paired power --n 20 --es 0.4 --one-sided")["power"],
              PowerRelatedDirectionalES(20, 0.4, 0.05));
    EXPECT_EQ(answer("t-paired size --one-sided" + means)["sample_size"],
              std::ceil(PowerReverseRelatedDirectional(0.8, 5, 2, 4, 3, 0.5, 0.05)));
    EXPECT_EQ(answer("t-paired size --es 0.4")["sample_size"],
              std::ceil(PowerReverseRelatedNondirectionalES(0.8, 0.4, 0.05)));
    EXPECT_EQ(answer("t-paired effect" + means)["effect"], EffectSizeRelated(5, 2, 4, 3, 0.5));
}

TEST(PairedCommand, HalfWidthsAreTheLibrarys) {
    EXPECT_EQ(answer("t-paired halfwidth --n 20 --sd1 2 --sd2 3 --corr 0")["half_width"],
              HalfCIRelatedMeans(20, 2, 3, 0, 0.05));
    EXPECT_EQ(answer("t-paired halfwidth-size --halfwidth 1 --sd1 2 --sd2 3 --corr 0.5")["sample_size"],
              PowerReversebyHalfCIRelatedMeans(1, 2, 3, 0.5, 0.05));
}

TEST(PairedCommand, CurvesAreTheLibrarys) {
    EXPECT_EQ(column(answer("t-paired curve --mean1 5 --mean2 4 --sd1 2 --sd2 3 --corr 0.5"), "power"),
              powers(PlotNRelated(2, 100, 0, 0, 5, 2, 4, 3, 0.5, 0.05)));
    EXPECT_EQ(column(answer("t-paired curve --es 0.4 --n-high 9"), "power"),
              powers(PlotNRelatedFES(2, 9, 0, 0.4, 0.05)));
    EXPECT_EQ(column(answer("t-paired curve --over es --n 9 --es-high 2"), "power"),
              powers(PlotESRelated(0, 9, -5, 2, 0.05, 1.0 / 20)));
    EXPECT_EQ(column(answer("t-paired curve --over n-es --n-high 5 --steps 4"), "power"),
              powers(PlotNaESRelated(2, 5, 0, -5, 1, 0.05, 0.25)));
}

TEST(PairedCommand, RefusesACorrelationThatTheTestRefuses) {
    const std::string means = " --mean1 5 --mean2 4 --sd1 2";
    for (const std::string arguments :
         {"power --n 20 --sd2 3 --corr 0", "size --sd2 3 --corr 0", "curve --sd2 3 --corr 0",
          "power --n 20 --sd2 2 --corr -1", "size --sd2 3 --corr 1 --one-sided",
          "power --n 20 --sd2 3 --corr 1.1"}) {
        const auto run = statpower("t-paired " + arguments + means);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_THAT(run.text, StartsWith("statpower: --corr")) << arguments;
    }
}

TEST(IndependentCommand, PowerAndSizeAreTheLibrarys) {
    const std::string means = " --mean1 5 --mean2 4 --sd1 2 --sd2 3";
    EXPECT_EQ(answer("t-ind power --n1 20 --n2 30" + means)["power"],
              PowerIndependentNondirectional(20, 5, 2, 30, 4, 3, 0.05));
    EXPECT_EQ(answer("t-ind power --n1 20 --n2 30 --es 0.4 --one-sided")["power"],
              PowerIndependentDirectionalES(20, 30, 0.4, 0.05));
    std::vector<double> sizes;
    PowerReverseIndependentDirectional(0.8, 1.5, 5, 2, 4, 3, 0.05, sizes);
    EXPECT_EQ(answer("t-ind size --ratio 1.5 --one-sided" + means)["sample_size"], sizes);
    sizes.clear();
    PowerReverseIndependentNondirectionalES(0.9, 1, 0.4, 0.05, sizes);
    EXPECT_EQ(answer("t-ind size --es 0.4 --power 0.9")["sample_size"], sizes);
    EXPECT_EQ(answer("t-ind effect --mean1 5 --mean2 4 --sd 2")["effect"], EffectSizeIndependent(5, 4, 2));
}

TEST(IndependentCommand, HalfWidthsAreTheLibrarys) {
    EXPECT_EQ(answer("t-ind halfwidth --n1 20 --n2 30 --sd1 2 --sd2 3")["half_width"],
              HalfCIIndependentMeans(20, 2, 30, 3, 0.05));
    std::vector<double> sizes;
    PowerReversebyHalfCIIndependentMeans(1, 2, 2, 3, 0.05, sizes);
    EXPECT_EQ(answer("t-ind halfwidth-size --halfwidth 1 --ratio 2 --sd1 2 --sd2 3")["sample_size"], sizes);
}

TEST(IndependentCommand, CurvesAreTheLibrarys) {
    const std::string means = " --mean1 5 --mean2 4 --sd1 2 --sd2 3";
    EXPECT_EQ(column(answer("t-ind curve --total 52 --steps 4" + means), "power"),
              powers(PlotRatioIndependent(0, 52, 5, 2, 4, 3, 0, 0, 0.05, 0.25)));
    EXPECT_EQ(column(answer("t-ind curve --total 52 --es 0.4 --ratio-low 0.5 --ratio-high 2"), "power"),
              powers(PlotRatioIndependentFES(0, 52, 0.4, 0.5, 2, 0.05, 1.0 / 20)));
    EXPECT_EQ(column(answer("t-ind curve --over es --n1 9 --n2 12 --one-sided"), "power"),
              powers(PlotESIndepended(1, 9, 12, -5, 1, 0.05, 1.0 / 20)));
    EXPECT_EQ(column(answer("t-ind curve --over difference --n1 9 --n2 12 --diff-step 2" + means), "power"),
              powers(PlotMeanDiffIndepended(0, 9, 5, 2, 12, 4, 3, 0, 0, 0.05, 2)));
    EXPECT_EQ(column(answer("t-ind curve --over ratio-es --total 52 --steps 4"), "power"),
              powers(PlotRatioaESIndependent(0, 52, 0, 0, -5, 1, 0.05, 0.25)));
    EXPECT_EQ(column(answer("t-ind curve --over ratio-difference --total 52 --steps 4" + means), "power"),
              powers(PlotRatioaMeanDiffIndependent(0, 52, 5, 2, 4, 3, 0, 0, 0, 0, 0.05, 0.25)));
}

TEST(MeansCommands, ATargetThatNoSizeReachesHasNoAnswer) {
    for (const std::string test : {"t-one", "t-paired", "t-ind"}) {
        const auto run = statpower(test + " size --es 0");
        EXPECT_EQ(run.status, 1) << test;
        EXPECT_THAT(run.text, HasSubstr("no sample size")) << test;
    }
}

TEST(MeansCommands, ExactlyOneKindOfEffectIsGiven) {
    for (const std::string arguments :
         {"t-one size", "t-one size --es 0.5 --mean 1 --sd 2", "t-one size --mean 1",
          "t-paired size --mean1 1", "t-ind power --n1 5 --n2 5", "t-one curve --es 0.5 --mean 1 --sd 2"})
        EXPECT_EQ(statpower(arguments).status, 2) << arguments;
}

TEST(MeansCommands, AWrongArgumentIsNamed) {
    const struct {
        const char* arguments;
        const char* option;
    } cases[] = {
        {"t-one power --n 1 --es 0.5", "--n"},
        {"t-one power --n 10 --mean 1 --sd 0", "--sd"},
        {"t-one curve", "--es or --mean"},
        {"t-one curve --over es", "--n"},
        {"t-paired curve", "--es or --mean1"},
        {"t-ind power --n1 5 --n2 1 --es 0.5", "--n2"},
        {"t-ind size --es 0.5 --ratio 0", "--ratio"},
        {"t-ind curve --es 0.5", "--total"},
        {"t-ind curve --total 52", "--es or --mean1"},
        {"t-ind curve --over es --n1 5", "--n2"},
        {"t-ind curve --over ratio-difference --total 52", "--mean1"},
    };
    for (const auto& c : cases) {
        const auto run = statpower(c.arguments);
        EXPECT_EQ(run.status, 2) << c.arguments;
        EXPECT_THAT(run.text, StartsWith(std::string("statpower: ") + c.option)) << c.arguments;
    }
}

TEST(MeansCommands, ACurveWithoutPointsHasNoAnswer) {
    EXPECT_EQ(statpower("t-one curve --es 0.5 --n-low 9 --n-high 5").status, 1);
    EXPECT_EQ(statpower("t-one curve --over es --n 9 --es-low -1").status, 1);
}

TEST(MeansCommands, RefuseNumbersThatAreNotFinite) {
    for (const char* arguments :
         {"t-one power --n 20 --es nan", "t-one size --mean 1 --sd 1 --null nan",
          "t-one power --n inf --es 0.5", "t-ind power --n1 9 --n2 9 --mean1 nan --mean2 0 --sd1 1 --sd2 1",
          "t-paired size --mean1 1 --mean2 0 --sd1 1 --sd2 1 --corr nan"})
        EXPECT_EQ(statpower(arguments).status, 2) << arguments;
}

TEST(MeansCommands, ASpreadWithoutAMeanMakesNoCurve) {
    for (const char* arguments : {"t-one curve --sd 2", "t-paired curve --sd1 2 --corr 0.5",
                                  "t-ind curve --total 52 --sd1 1 --sd2 1"})
        EXPECT_EQ(statpower(arguments).status, 2) << arguments;
}

TEST(MeansCommands, AHalfWidthThatTheSizesMissIsNoAnswer) {
    EXPECT_EQ(statpower("t-ind halfwidth-size --halfwidth 5 --ratio 0.05 --sd1 1 --sd2 0.1").status, 1);
}

TEST(MeansCommands, RatiosThatLeaveAGroupWithoutTwoObservationsAreRefused) {
    EXPECT_EQ(statpower("t-ind curve --over ratio-es --total 52 --ratio-low 0.01 --ratio-high 4").status, 2);
    EXPECT_EQ(statpower("t-ind curve --over ratio-es --total 52 --ratio-low 0.5 --ratio-high 51").status, 2);
}

}  // namespace
