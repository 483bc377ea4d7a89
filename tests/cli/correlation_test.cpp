// statpower pearson, spearman and partial: the program's answers are the library's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "cli/program.h"
#include "statpower/correlation.h"

using testing::HasSubstr;
using testing::StartsWith;
using testing_support::statpower;

namespace {

TEST(CorrelationCommand, PowerIsTheLibrarys) {
    EXPECT_EQ(statpower("pearson power --n 40 --r 0.4 --null 0.1 --one-sided --json").json()["power"],
              PowerbyOneSampPearson(1, false, 40, 0.4, 0.1, 0.05));
    EXPECT_EQ(statpower("pearson power --n 40 --r 0.4 --bias-correction --alpha 0.01 --json").json()["power"],
              PowerbyOneSampPearson(0, true, 40, 0.4, 0, 0.01));
    EXPECT_EQ(statpower("spearman power --n 40 --r -0.4 --method 2 --json").json()["power"],
              PowerbyOneSampSpearman(2, 0, 40, -0.4, 0, 0.05));
    EXPECT_EQ(statpower("partial power --n 40 --r 0.4 --partialled-out 3 --json").json()["power"],
              PowerbyOneSampPartial(0, 40, 3, 0.4, 0, 0.05));
}

TEST(CorrelationCommand, SizeIsTheLibrarysRoundedUp) {
    const auto run = statpower("pearson size --r 0.4 --power 0.9 --json");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.json()["n"], std::ceil(PowerReversebyOneSampPearson(0, false, nullptr, 0.9, 0.4, 0, 0.05)));
    EXPECT_GE(run.json()["power"], 0.9);
    EXPECT_EQ(statpower("spearman size --r 0.4 --method 1 --json").json()["n"],
              std::ceil(PowerReversebyOneSampSpearman(1, 0, 0.8, 0.4, 0, 0.05)));
    EXPECT_EQ(statpower("partial size --r 0.4 --partialled-out 2 --json").json()["n"],
              std::ceil(PowerReversebyOneSampPartial(0, 0.8, 2, 0.4, 0, 0.05)));
}

TEST(CorrelationCommand, ATargetThatNoSizeReachesHasNoAnswer) {
    const auto run = statpower("spearman size --r 0.4 --null 0.4");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("no sample size"));
}

TEST(CorrelationCommand, HalfWidthAndItsSizeAreTheLibrarys) {
    EXPECT_EQ(statpower("pearson halfwidth --n 40 --r 0.4 --bias-correction --json").json()["half_width"],
              HalfCIOneSampPearson(true, 40, 0.4, 0.05));
    EXPECT_EQ(statpower("spearman halfwidth-size --halfwidth 0.1 --r 0.4 --json").json()["n"],
              PowerReversebyHalfCIOneSampSpearman(0, nullptr, 0.1, 0.4, 0.05));
    EXPECT_EQ(
        statpower("partial halfwidth-size --halfwidth 0.1 --r 0.4 --partialled-out 2 --json").json()["n"],
        PowerReversebyHalfCIOneSampPartial(nullptr, 0.1, 2, 0.4, 0.05));
}

TEST(CorrelationCommand, CurveIsTheLibrarys) {
    const auto over_n = statpower("pearson curve --over n --from 10 --to 12 --r 0.4 --json").json();
    ASSERT_EQ(over_n.size(), 3u);
    EXPECT_EQ(over_n[2]["n"], 12);
    EXPECT_EQ(over_n[2]["power"], static_cast<float>(PowerbyOneSampPearson(0, false, 12, 0.4, 0, 0.05)));
    EXPECT_EQ(statpower("partial curve --over r --n 30 --partialled-out 2 --step 0.1 --json").json().size(),
              21u);
    EXPECT_THAT(statpower("spearman curve --over null --n 30 --r 0.2 --step 0.5").text,
                StartsWith("null,power\n-1.0,1.0\n"));
    EXPECT_EQ(statpower("spearman curve --over difference --n 30 --null 0.2 --step 0.5 --json")
                  .json()[0]["difference"],
              -1.2);
}

TEST(CorrelationCommand, RefusesWrongArgumentsByName) {
    const auto refused = [](const std::string& arguments, const std::string& name) {
        const auto run = statpower(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_THAT(run.text, HasSubstr(name)) << arguments;
    };
    refused("pearson power --n 40 --r 1.4", "--r");
    refused("pearson power --n 40 --r nan", "--r");
    refused("pearson power --n 3 --r 0.4", "--n");
    refused("partial power --n 6 --r 0.4 --partialled-out 3", "--n");
    refused("spearman power --n 40 --r 0.4 --method 3", "--method");
    refused("pearson curve --over n --from 3 --to 10 --r 0.4", "--from");
    refused("pearson curve --over null --n 30 --r 0.4 --step 0.6", "--step");
    refused("pearson curve --over null --n 30", "--r");
    refused("pearson curve --over everything --n 30 --r 0.4", "--over");
}

}  // namespace
