// statpower anova: the program's answers are the library's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/program.h"
#include "statpower/anova.h"

using testing::HasSubstr;
using testing::StartsWith;
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
    const struct {
        const char* arguments;
        const char* option;
    } cases[] = {
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
    };
    for (const auto& c : cases) {
        const auto run = statpower(std::string("anova ") + c.arguments);
        EXPECT_EQ(run.status, 2) << c.arguments;
        EXPECT_THAT(run.text, StartsWith(std::string("statpower: ") + c.option)) << c.arguments;
    }
}

TEST(AnovaCommand, ExactlyOneKindOfEffectIsGiven) {
    EXPECT_EQ(statpower("anova power --sizes 5,5").status, 2);
    EXPECT_EQ(statpower("anova power --sizes 5,5 --f 0.2 --variance-explained 0.1").status, 2);
}

}  // namespace
