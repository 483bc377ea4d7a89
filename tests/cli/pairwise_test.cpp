// statpower pairwise: the program's answers are the library's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/program.h"
#include "statpower/anova.h"

using testing::HasSubstr;
using testing_support::expect_refusals;
using testing_support::statpower;

namespace {

const double kMeans[] = {10, 12, 14, 11};
const double kSizes[] = {10, 12, 8, 30};

const struct {
    const char* name;
    int code;
} kMethods[] = {{"bonferroni", 0}, {"sidak", 1}, {"none", 2}};

TEST(PairwiseCommand, PowerIsTheLibrarysByEveryMethod) {
    const std::string design =
        "pairwise power --sizes 10,12,8,30 --means 10,12,14,11 --pair 2,4 --sd 2 --json";
    for (const auto& method : kMethods)
        EXPECT_EQ(statpower(design + " --method " + method.name).json()["power"],
                  PowerPairwiseDiff(4, kMeans, kSizes, 2, 4, method.code, 2, 0.05));
    EXPECT_EQ(statpower(design + " --alpha 0.1").json()["power"],
              PowerPairwiseDiff(4, kMeans, kSizes, 2, 4, 0, 2, 0.1));
}

TEST(PairwiseCommand, SizeReachesThePower) {
    const double weights[] = {1, 1, 1, 2};
    std::vector<double> sizes;
    const auto run =
        statpower(
            "pairwise size --weights 1,1,1,2 --means 10,12,14,11 --pair 1,3 --sd 4 --method sidak "
            "--power 0.9 --json")
            .json();
    EXPECT_EQ(run["total"], PowerReversePairwiseDiff(4, kMeans, weights, 1, 3, sizes, 1, 4, 0.9, 0.05));
    EXPECT_EQ(run["group_sizes"], sizes);
    EXPECT_GE(run["power"], 0.9);
}

TEST(PairwiseCommand, EqualMeansHaveNoAnswer) {
    const auto run = statpower("pairwise size --weights 1,1 --means 1,1 --pair 1,2 --sd 1");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("no sample size"));
}

TEST(PairwiseCommand, EffectIsTheLibrarys) {
    EXPECT_EQ(statpower("pairwise effect --means 10,12,14,11 --pair 2,4 --sd 2 --json").json()["effect"],
              0.5);
}

TEST(PairwiseCommand, HalfWidthAndItsSizeAreTheLibrarys) {
    for (const auto& method : kMethods) {
        const std::string design =
            std::string(" --weights 10,12,8,30 --pair 2,4 --sd 2 --json --method ") + method.name;
        EXPECT_EQ(statpower("pairwise halfwidth --total 90" + design).json()["half_width"],
                  HalfCIPairwiseDiff(4, kSizes, 2, 4, method.code, 90, 2, 0.05));
        std::vector<double> sizes;
        const auto run = statpower("pairwise halfwidth-size --halfwidth 0.5" + design).json();
        EXPECT_EQ(run["total"],
                  PowerReversebyHalfCIPairwiseDiff(4, kSizes, 2, 4, sizes, method.code, 0.5, 2, 0.05));
        EXPECT_EQ(run["group_sizes"], sizes);
        EXPECT_LE(run["half_width"], 0.5);
    }
}

TEST(PairwiseCommand, NamesTheArgumentThatIsOutOfRangeOrNeeded) {
    expect_refusals("pairwise",
                    {
                        {"power --sizes 5,5 --means 1,2 --sd 1 --pair 0,1", "--pair"},
                        {"power --sizes 5,5 --means 1,2 --sd 1 --pair 1,1", "--pair"},
                        {"power --sizes 5,5 --means 1,2 --sd 1 --pair 2,1", "--pair"},
                        {"power --sizes 5,5 --means 1,2 --sd 1 --pair 1,3", "--pair"},
                        {"power --sizes 5,5 --means 1,2 --sd 1 --pair 1", "--pair"},
                        {"power --sizes 5,5 --means 1,2 --sd 1", "--pair"},
                        {"power --sizes 5,5 --means 1,2 --pair 1,2", "--sd"},
                        {"power --sizes 5,5 --means 1,2 --pair 1,2 --sd 0", "--sd"},
                        {"power --sizes 5,5 --means 1,2,3 --pair 1,2 --sd 1", "--means"},
                        {"power --sizes 1,1 --means 1,2 --pair 1,2 --sd 1", "--sizes"},
                        {"power --sizes 5,5 --means 1,2 --pair 1,2 --sd 1 --method scheffe", "--method"},
                        {"power --sizes 5,5 --means 1,2 --pair 1,2 --sd 1 --alpha 1", "--alpha"},
                        {"size --weights 1,-1 --means 1,2 --pair 1,2 --sd 1", "--weights"},
                        {"halfwidth --weights 1,1 --total 2 --pair 1,2 --sd 1", "--total"},
                        {"halfwidth-size --weights 1,1 --halfwidth 0 --pair 1,2 --sd 1", "--halfwidth"},
                    });
}

}  // namespace
