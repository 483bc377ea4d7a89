// statpower regression: the program's answers are the library's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "cli/program.h"
#include "statpower/regression.h"

using testing::HasSubstr;
using testing_support::statpower;

namespace {

TEST(RegressionCommand, PowerTakesTheEffectInThreeWays) {
    EXPECT_EQ(statpower("regression power --n 60 --predictors 5 --r 0.5 --json").json()["power"],
              Powerbymlr(0, true, 60, 5, 5, 0.5, 0, 0.05));
    EXPECT_EQ(statpower("regression power --n 60 --predictors 5 --r2 0.25 --json").json()["power"],
              Powerbymlr(0, true, 60, 5, 5, 0.5, 0, 0.05));
    EXPECT_EQ(
        statpower("regression power --n 60 --predictors 5 --tested 2 --r2 0.4 --r2-reduced 0.3 --random "
                  "--no-intercept --alpha 0.01 --json")
            .json()["power"],
        Powerbymlr(1, false, 60, 5, 2, 0.4, 0.3, 0.01));
    EXPECT_EQ(statpower("regression power --n 60 --predictors 5 --f2 0.15 --json").json()["power"],
              PowerbymlrwES(0, true, 60, 5, 5, 0.15, 0.05));
}

TEST(RegressionCommand, SizeIsTheLibrarysRoundedUp) {
    const auto run = statpower("regression size --predictors 5 --f2 0.15 --random --power 0.9 --json");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.json()["n"], std::ceil(PowerReversebymlrwES(1, true, 0.9, 5, 5, 0.15, 0.05)));
    EXPECT_GE(run.json()["power"], 0.9);
    EXPECT_EQ(statpower("regression size --predictors 3 --r 0.3 --json").json()["n"],
              std::ceil(PowerReversebymlr(0, true, 0.8, 3, 3, 0.3, 0, 0.05)));
}

TEST(RegressionCommand, CurveIsTheLibrarys) {
    const auto over_n =
        statpower("regression curve --over n --from 20 --to 22 --predictors 3 --f2 0.2 --json").json();
    ASSERT_EQ(over_n.size(), 3u);
    EXPECT_EQ(over_n[1]["n"], 21);
    EXPECT_EQ(over_n[1]["power"], static_cast<float>(PowerbymlrwES(0, true, 21, 3, 3, 0.2, 0.05)));
    EXPECT_EQ(statpower("regression curve --over r --n 30 --predictors 3 --step 0.1 --json").json().size(),
              19u);
    const auto over_f2 =
        statpower("regression curve --over f2 --n 30 --predictors 3 --step 0.1 --json").json();
    ASSERT_EQ(over_f2.size(), 9u);
    EXPECT_EQ(over_f2[0]["f2"], 0.1);
}

TEST(RegressionCommand, RefusesWrongArgumentsByName) {
    const auto refused = [](const std::string& arguments, const std::string& name) {
        const auto run = statpower(arguments);
        EXPECT_EQ(run.status, 2) << arguments;
        EXPECT_THAT(run.text, HasSubstr(name)) << arguments;
    };
    refused("regression power --n 6 --predictors 5 --r 0.5", "--n");
    refused("regression power --n 60 --predictors 5 --tested 6 --r 0.5", "--tested");
    refused("regression power --n 60 --predictors 5 --r2 0.2 --r2-reduced 0.3", "--r2-reduced");
    refused("regression power --n 60 --predictors 5 --r2-reduced 0.3 --r 0.5", "--r2-reduced");
    refused("regression power --n 60 --predictors 5 --r 0.5 --f2 0.2", "--r,--r2,--f2");
    refused("regression power --n 60 --predictors 5", "--r,--r2,--f2");
    refused("regression curve --over n --from 20 --to 30 --predictors 3", "--over");
    refused("regression curve --over n --from 4 --to 30 --predictors 3 --f2 0.1", "--from");
}

}  // namespace
