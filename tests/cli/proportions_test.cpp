// statpower prop-one and prop-paired: the program's answers are the library's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "cli/program.h"
#include "statpower/one_sample_binomial.h"
#include "statpower/related_binomial.h"

using testing::HasSubstr;
using testing::StartsWith;
using testing_support::expect_refusals;
using testing_support::statpower;

namespace {

TEST(PropOneCommand, PowerIsTheLibrarys) {
    const std::string design = "prop-one power --n 40 --p1 0.7 --p0 0.5 --json";
    EXPECT_EQ(statpower(design).json()["power"], PowerOneSampBinom(40, 0.7, 0.5, 0.05, 0, 0, false, nullptr));
    EXPECT_EQ(statpower(design + " --continuity --one-sided --alpha 0.01").json()["power"],
              PowerOneSampBinom(40, 0.7, 0.5, 0.01, 0, 1, true, nullptr));
    EXPECT_EQ(statpower(design + " --exact").json()["power"],
              PowerOneSampBinom(40, 0.7, 0.5, 0.05, 1, 0, false, nullptr));
}

TEST(PropOneCommand, SizeIsTheLibrarysRoundedUpWithItsPower) {
    const auto normal = statpower("prop-one size --p1 0.7 --p0 0.5 --power 0.9 --json");
    EXPECT_EQ(normal.json()["n"],
              std::ceil(PowerReverseOneSampBinom(0.9, 0.7, 0.5, 0.05, 0, 0, false, nullptr)));
    EXPECT_GE(normal.json()["power"], 0.9);
    const auto exact = statpower("prop-one size --p1 0.7 --p0 0.5 --exact --one-sided --json");
    EXPECT_EQ(exact.json()["n"], PowerReverseOneSampBinom(0.8, 0.7, 0.5, 0.05, 1, 1, false, nullptr));
    EXPECT_GE(exact.json()["power"], 0.8);
}

TEST(PropOneCommand, HalfWidthAndItsSizeAreTheLibrarys) {
    const char* methods[] = {"wald",     "logit-adjusted", "logit",        "exact",
                             "jeffreys", "score",          "agresti-coull"};
    for (int code = 0; code < 7; ++code) {
        const std::string interval = std::string(" --p 0.3 --continuity --json --method ") + methods[code];
        EXPECT_EQ(statpower("prop-one halfwidth --n 50" + interval).json()["half_width"],
                  HalfCIOneSampBinom(50, 0.3, 0.05, code, true));
        EXPECT_EQ(statpower("prop-one halfwidth-size --halfwidth 0.07" + interval).json()["n"],
                  std::ceil(PowerReversebyHalfCIOneSampBinom(0.07, 0.3, 0.05, code, true, nullptr)));
    }
}

TEST(PropOneCommand, CurvesHaveTheirAxes) {
    const auto over_n = statpower("prop-one curve --exact --from 10 --to 12 --p1 0.7 --p0 0.4 --json").json();
    ASSERT_EQ(over_n.size(), 3u);
    EXPECT_EQ(over_n[1]["n"], 11);
    EXPECT_EQ(over_n[1]["power"],
              static_cast<float>(PowerOneSampBinom(11, 0.7, 0.4, 0.05, 1, 0, false, nullptr)));
    const std::string steps = "prop-one curve --n 30 --p1 0.7 --p0 0.4 --step 0.25 --json --over ";
    const auto power = [](double p1, double p0) {
        return static_cast<float>(PowerOneSampBinom(30, p1, p0, 0.05, 0, 0, false, nullptr));
    };
    EXPECT_EQ(statpower(steps + "p0").json()[0]["power"], power(0.7, 0.25));
    EXPECT_EQ(statpower(steps + "p1").json()[0]["power"], power(0.25, 0.4));
    EXPECT_EQ(statpower(steps + "difference").json()[2]["difference"], 0.75 - 0.4);
}

TEST(PropPairedCommand, PowerIsTheLibrarys) {
    const std::string design = "prop-paired power --n 60 --json ";
    EXPECT_EQ(statpower(design + "--p1 0.3 --p2 0.1").json()["power"],
              PowerbyPRelSampBionm(0, 0, nullptr, 60, 0.3, 0.1, 0.05));
    EXPECT_EQ(statpower(design + "--p1 0.3 --p2 0.1 --exact --one-sided --alpha 0.1").json()["power"],
              PowerbyPRelSampBionm(1, 1, nullptr, 60, 0.3, 0.1, 0.1));
    EXPECT_EQ(statpower(design + "--margins 0.6,0.4 --rho 0.25 --exact").json()["power"],
              PowerbyMargPRelSampBionm(0, 1, 60, 0.6, 0.4, 0.25, 0.05));
}

TEST(PropPairedCommand, SizeIsTheLibrarysRoundedUpWithItsPower) {
    const auto exact = statpower("prop-paired size --p1 0.3 --p2 0.1 --exact --json");
    EXPECT_EQ(exact.json()["pairs"], PowerReversebyPRelSampBionm(0, 1, nullptr, 0.8, 0.3, 0.1, 0.05));
    EXPECT_GE(exact.json()["power"], 0.8);
    const auto normal = statpower("prop-paired size --margins 0.6,0.4 --power 0.9 --one-sided --json");
    EXPECT_EQ(normal.json()["pairs"],
              std::ceil(PowerReversebyMargPRelSampBionm(1, 0, nullptr, 0.9, 0.6, 0.4, 0, 0.05)));
}

TEST(PropPairedCommand, HalfWidthAndItsSizeAreTheLibrarys) {
    const char* methods[] = {"wald", "adjusted-1", "adjusted-2"};
    for (int code = 0; code < 3; ++code) {
        const std::string interval =
            std::string(" --p1 0.3 --p2 0.1 --continuity --json --method ") + methods[code];
        EXPECT_EQ(statpower("prop-paired halfwidth --n 50" + interval).json()["half_width"],
                  HalfCIRelSampBinom(code, true, 50, 0.3, 0.1, 0.05));
        EXPECT_EQ(statpower("prop-paired halfwidth-size --halfwidth 0.07" + interval).json()["pairs"],
                  PowerReversebyHalfCIRelSampBinom(code, true, nullptr, 0.07, 0.3, 0.1, 0.05));
    }
}

TEST(PropPairedCommand, CurvesHaveTheirAxes) {
    const std::string curve = "prop-paired curve --n 40 --json --step 0.25 --over ";
    EXPECT_EQ(statpower(curve + "n --p1 0.3 --p2 0.1 --from 20 --to 24").json()[4]["pairs"], 24);
    EXPECT_EQ(statpower(curve + "difference --p1 0.3 --p2 0.1").json().size(), 3u);
    EXPECT_EQ(statpower(curve + "ratio --p1 0.3 --p2 0.1 --low 1 --high 3").json()[4]["ratio"], 3);
    EXPECT_EQ(statpower(curve + "odds-ratio --p1 0.3 --p2 0.1 --low 1 --high 3").json()[4]["odds_ratio"], 3);
    EXPECT_EQ(statpower(curve + "correlation --margins 0.5,0.5").json()[8]["correlation"], 1);
}

TEST(PropCommands, NameTheArgumentThatIsOutOfRange) {
    expect_refusals("prop-one", {
                                    {"power --n 0 --p1 0.5 --p0 0.4", "--n"},
                                    {"power --n 10 --p1 1.5 --p0 0.4", "--p1"},
                                    {"power --n 10 --p1 0.5 --p0 nan", "--p0"},
                                    {"power --n 10 --p1 0.5 --p0 0.4 --alpha 0", "--alpha"},
                                    {"size --p1 0.5 --p0 0.4 --power 1", "--power"},
                                    {"size --p1 0.5 --p0 0.5", "--p1"},
                                    {"size --p1 0.5 --p0 0.500000000000001", "--p1"},
                                    {"halfwidth --n 10 --p 0.5 --method other", "--method"},
                                    {"halfwidth-size --p 0.5 --halfwidth 0", "--halfwidth"},
                                    {"curve --over other", "--over"},
                                });
    expect_refusals("prop-paired", {
                                       {"power --n 1 --p1 0.2 --p2 0.1", "--n"},
                                       {"power --n 10 --p1 0.8 --p2 0.3", "--p2"},
                                       {"power --n 10 --p1 0.8", "--p1"},
                                       {"power --n 10 --margins 0.8", "--margins"},
                                       {"power --n 10 --margins 0.8,1", "--margins"},
                                       {"power --n 10 --margins 0.8,0.7 --rho 1.5", "--rho"},
                                       {"curve --p1 0.2 --p2 0.1 --over correlation", "--margins"},
                                       {"curve --margins 0.2,0.1 --over n", "--margins"},
                                   });
}

TEST(PropCommands, ADesignWithoutAnswerSaysSo) {
    for (const char* arguments :
         {"prop-paired power --n 10 --margins 0.6,0.5 --rho 0.99", "prop-paired size --p1 0 --p2 0 --exact",
          "prop-one curve --from 10 --to 10"}) {
        const auto run = statpower(arguments);
        EXPECT_EQ(run.status, 1) << arguments;
        EXPECT_THAT(run.text, StartsWith("statpower: ")) << arguments;
    }
}

TEST(PropCommands, ControlCStopsALongExactSearchAndSaysSo) {
    // No number of pairs reaches the power: only the signal ends the search.
    const auto paired = testing_support::interrupted_statpower("prop-paired size --p1 0.2 --p2 0.2 --exact");
    EXPECT_EQ(paired.status, 130);
    EXPECT_THAT(paired.text, HasSubstr("statpower: interrupted"));
    // An effect so small that the questions along the walks alone take for ever.
    const auto one = testing_support::interrupted_statpower("prop-one size --p1 0.5 --p0 0.50000001 --exact");
    EXPECT_EQ(one.status, 130);
    EXPECT_THAT(one.text, HasSubstr("statpower: interrupted"));
}

}  // namespace
