// Which question is asked, and what is refused.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "plan/asked.h"
#include "statpower/means.h"

namespace statplan {
namespace {

using testing::AllOf;
using testing::HasSubstr;

TEST(Questions, PowerIsThatOfTheLibrary) {
    EXPECT_EQ(answer_to("t-one power --d 0.5 --n 30", "power"),
              PowerOneSampleNondirectional(30, 0.5, 1, 0, 0.05));
    EXPECT_EQ(answer_to("t-one power --mean 12 --null 10 --sd 4 --n 30 --alternative one-sided --alpha 0.01",
                        "power"),
              PowerOneSampleDirectional(30, 12, 4, 10, 0.01));
}

TEST(Questions, TheOneThatIsLeftOutIsFound) {
    const auto unknown = [](const std::string& words) {
        const auto record = asked("t-one solve " + words);
        return record ? record->unknown : record.refusal().message();
    };
    EXPECT_EQ(unknown("--d 0.5"), "size");
    EXPECT_EQ(unknown("--d 0.5 --power 0.9"), "size");
    EXPECT_EQ(unknown("--d 0.5 --n 30"), "power");
    EXPECT_EQ(unknown("--n 30 --power 0.9"), "d");
    EXPECT_EQ(unknown("--n 30 --power 0.9 --sd 4"), "mean");
    EXPECT_EQ(unknown("--n 30 --power 0.9 --mean 4"), "sd");
    EXPECT_EQ(unknown("--sd 4 --halfwidth 1"), "size");
    EXPECT_EQ(unknown("--n 30 --halfwidth 1"), "sd");
    EXPECT_EQ(unknown("--sd 4 --n 30 --confidence 0.9"), "halfwidth");
    EXPECT_THAT(unknown("--d 0.5 --n 30 --power 0.9"), HasSubstr("nothing is left out"));
}

TEST(Questions, WhatIsFoundMustNotBeGiven) {
    EXPECT_EQ(refusal_of("t-one power --d 0.5 --n 30 --power 0.8"), "power: is what is found; leave it out");
    EXPECT_EQ(refusal_of("t-one size --d 0.5 --n 30"), "n: is what size finds; leave it out");
    EXPECT_EQ(refusal_of("t-one solve --solve-for sd --sd 2 --n 30 --mean 1"),
              "sd: is what is found; leave it out");
}

TEST(Questions, WhatIsMissingIsNamed) {
    EXPECT_EQ(refusal_of("t-one power --d 0.5"), "n: is needed; give n");
    EXPECT_EQ(refusal_of("t-one size"), "d: is needed; give mean, sd and null, or d");
    EXPECT_EQ(refusal_of("t-one size --mean 3"), "sd: is needed beside mean");
    EXPECT_EQ(refusal_of("t-one precision --n 20"), "sd: is needed; give sd");
}

TEST(Questions, WaysThatExcludeEachOtherAreRefused) {
    EXPECT_EQ(refusal_of("t-one power --d 0.5 --sd 2 --n 20"),
              "d: cannot stand beside sd; give mean, sd and null, or d");
}

TEST(Questions, AnUnknownWordGetsTheNearestOne) {
    EXPECT_EQ(refusal_of("t-one power --alhpa 0.1 --d 1 --n 9"),
              "alhpa: t-one has no such argument; did you mean alpha?");
    EXPECT_EQ(
        refusal_of("z-one power --effect-size 0.5 --n 9"),
        "effect-size: z-one has no such argument; it has mean, sd, null, d, n, alternative, alpha, power, "
        "halfwidth, rule, dropout, max-n and confidence");
    EXPECT_THAT(refusal_of("t-one power --size 9"), HasSubstr("; it has mean,"));
    EXPECT_EQ(refusal_of("t-on power --d 1"), "test: there is no test 't-on'; did you mean t-one?");
    EXPECT_THAT(refusal_of("t-one pwoer --d 1"), HasSubstr("did you mean power?"));
    EXPECT_THAT(refusal_of("t-one power --d 1 --n 9 --alternative onesided"),
                HasSubstr("did you mean one-sided?"));
}

TEST(Questions, SizesOfGroupsNeedTheirNumber) {
    for (const char* design : {"anova power --f 0.3 --n 10", "anova power --f 0.3 --total 40",
                               "anova size --f 0.3", "anova solve --n 10 --solve-for f --power 0.9",
                               "pairwise power --d 0.5 --n 9", "pairwise precision --sd 2 --halfwidth 1"})
        EXPECT_THAT(refusal_of(design), HasSubstr("groups: is needed")) << design;
}

TEST(Questions, EffectsAreConvertedWithoutSizesAndTheirNumber) {
    EXPECT_NEAR(answer_to("anova effect --eta2 0.1", "f"), std::sqrt(0.1 / 0.9), 1e-15);
    EXPECT_EQ(answer_to("pairwise effect --diff 2 --sd 4", "d"), 0.5);
    EXPECT_THAT(refusal_of("anova effect --f 0.3 --groups 4 --weights 1,2"), HasSubstr("says 4 groups"));
}

TEST(Questions, ATotalIsSharedEquallyUnlessWeightsAreGiven) {
    for (const std::string design :
         {"anova power --f 0.25 --groups 3", "anova power --means 1,2,4 --sd 3",
          "contrast power --d 0.5 --coefficients 2,-1,-1", "pairwise power --d 0.5 --groups 3",
          "anova precision --sd 5 --groups 3", "contrast precision --sd 5 --coefficients 2,-1,-1",
          "pairwise precision --sd 5 --groups 3"}) {
        const char* name = design.find("power") != design.npos ? "power" : "halfwidth";
        const double shared = answer_to(design + " --total 61", name);
        EXPECT_GT(shared, 0) << design;
        EXPECT_EQ(shared, answer_to(design + " --sizes 21,20,20", name)) << design;
    }
    EXPECT_EQ(answer_to("anova solve --f 0.25 --groups 4 --solve-for total", "total"),
              answer_to("anova solve --f 0.25 --weights 1,1,1,1 --solve-for total", "total"));
}

TEST(Questions, WeightsOfAnyScaleAreAnAllocation) {
    EXPECT_EQ(answer_to("anova size --f 0.3 --weights 1e308,1e308,1e308", "sizes"),
              answer_to("anova size --f 0.3 --groups 3", "sizes"));
    EXPECT_EQ(answer_to("anova size --f 0.3 --weights 1e-308,1e-308", "sizes"),
              answer_to("anova size --f 0.3 --groups 2", "sizes"));
}

TEST(Questions, ArgumentsWithoutEffectAreRefused) {
    EXPECT_EQ(refusal_of("t-one power --d 0.5 --n 30 --confidence 0.9"),
              "confidence: has no effect on the power");
    EXPECT_EQ(refusal_of("t-one precision --sd 2 --n 30 --alpha 0.1"),
              "alpha: has no effect on the half-width");
    EXPECT_EQ(refusal_of("t-one power --d 0.5 --n 30 --rule smallest"),
              "rule: has no effect where no sizes are sought");
}

TEST(Questions, ValuesOutOfRangeAreNamedWithTheRule) {
    EXPECT_EQ(refusal_of("t-one power --mean 1 --sd -2 --n 30"), "sd: -2 is not greater than 0");
    EXPECT_EQ(refusal_of("t-one power --d 1 --n 30 --alpha 1"),
              "alpha: 1 is not at least 1e-12 and less than 1");
    EXPECT_EQ(refusal_of("t-one power --d 1 --n 30.5"), "n: 30.5 is not a whole number, at least 1");
    EXPECT_EQ(refusal_of("t-one power --d 1 --n 1"), "n: leaves a group of fewer than 2 observations");
    EXPECT_EQ(refusal_of("t-one power --d x --n 9"), "d: 'x' is not a number");
    for (const char* text : {"nan", "inf", "0x10", "1e999", "1,,2", ""})
        EXPECT_FALSE(asked("t-one power --n 9 --d " + std::string(text))) << text;
}

TEST(Questions, TextOfOthersIsEscapedAndCut) {
    const auto refusal =
        read_question("t-one", "power", {{"d", "\x1b[31m\xff" + std::string(5000, 'x')}}).refusal();
    EXPECT_THAT(refusal.reason, AllOf(HasSubstr("\\x1b[31m\\xff"), HasSubstr("...")));
    EXPECT_LT(refusal.reason.size(), 200u);
}

TEST(Questions, ADirectionThatTheEffectDoesNotHaveIsRefused) {
    EXPECT_GT(answer_to("t-one power --d 0.5 --n 30 --alternative greater", "power"), 0.8);
    EXPECT_THAT(refusal_of("t-one power --d -0.5 --n 30 --alternative greater"),
                HasSubstr("alternative: greater, but"));
    EXPECT_THAT(refusal_of("t-one size --d 0.5 --alternative less"), HasSubstr("alternative: less, but"));
    EXPECT_EQ(answer_to("t-one power --d -0.5 --n 30 --alternative less", "power"),
              answer_to("t-one power --d 0.5 --n 30 --alternative one-sided", "power"));
}

TEST(Questions, NumbersListsAndRangesAreReadAsAPersonWritesThem) {
    const Argument& d = *find_argument(*find_test("t-one"), "d");
    EXPECT_THAT(*read_values(d, "0.1:0.5:0.1"), testing::ElementsAre(0.1, 0.2, 0.3, 0.4, 0.5));
    EXPECT_THAT(*read_values(d, "20:200:60"), testing::ElementsAre(20, 80, 140, 200));
    EXPECT_THAT(*read_values(d, "3:1:-1"), testing::ElementsAre(3, 2, 1));
    EXPECT_THAT(*read_values(d, "1,2:4,1e-3"), testing::ElementsAre(1, 2, 3, 4, 0.001));
    for (const char* text : {"1:2:0", "2:1", "1:2:3:4", "1:", ":", "1:1e9", "0:1:1e-9"})
        EXPECT_FALSE(read_values(d, text)) << text;
}

TEST(Questions, SeveralValuesMakeATableOfTheirCombinations) {
    const auto question = question_of("t-one power --d 0.2,0.5 --n 10:30:10");
    ASSERT_TRUE(question);
    EXPECT_TRUE(is_table(*question));
    const auto table = ask_table(*question);
    ASSERT_TRUE(table);
    ASSERT_EQ(table->columns.size(), 3u);
    EXPECT_THAT(table->columns[0].values, testing::ElementsAre(0.2, 0.2, 0.2, 0.5, 0.5, 0.5));
    EXPECT_THAT(table->columns[1].values, testing::ElementsAre(10, 20, 30, 10, 20, 30));
    EXPECT_EQ(table->columns[2].values[4], PowerOneSampleNondirectional(20, 0.5, 1, 0, 0.05));
    EXPECT_TRUE(table->refusals.empty());
}

TEST(Questions, ARowOfATableThatIsRefusedSaysWhyAndTheOthersAreAnswered) {
    const auto table = ask_table(*question_of("t-one power --d 0.5 --n 0,10"));
    ASSERT_TRUE(table);
    EXPECT_THAT(table->refusals, testing::ElementsAre("n: 0 is not a whole number, at least 1", ""));
    EXPECT_TRUE(std::isnan(table->columns[1].values[0]));
    EXPECT_EQ(table->columns[1].values[1], PowerOneSampleNondirectional(10, 0.5, 1, 0, 0.05));
}

TEST(Questions, EveryWorkedExampleHasItsPublishedValue) {
    for (const statplan::Test* test : catalogue()) {
        EXPECT_GE(test->examples.size(), 1u) << test->name;
        for (const Example& example : test->examples) {
            const auto record = asked(std::string(example.command));
            ASSERT_TRUE(record) << example.command << ": " << record.refusal().message();
            EXPECT_NEAR(answer_of(*record, example.answer), example.value, example.tolerance)
                << example.command;
        }
    }
}

}  // namespace
}  // namespace statplan
