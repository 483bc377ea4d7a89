// Any one number that is left out is found again.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "plan/asked.h"
#include "statplan/text.h"

namespace statplan {
namespace {

using testing::HasSubstr;

/// The design of a record with one argument left out and the power that it reached as the target.
Question without(const Record& record, std::string_view left_out, double power) {
    Question question{.test = record.test, .unknown = std::string(left_out)};
    const auto is_share = [&](std::string_view name) {  // it has become sizes
        return record.unknown == "size" &&
               std::ranges::any_of(record.test->sizes.shares,
                                   [&](const Argument& a) { return a.name == name; });
    };
    for (const auto* items : {&record.asked, &record.answer})
        for (const Item& item : *items) {
            const std::string_view name = item.argument->name;
            if (name != left_out && name != "power" && name != "level" && name != "total" && name != "rule" &&
                !is_share(name))
                question.give(name, item.values);
        }
    question.give("power", power);
    return question;
}

bool near_one_of(double x, std::initializer_list<double> candidates) {
    for (const double candidate : candidates)
        if (std::abs(x - candidate) <= 1e-7 * std::max(std::abs(x), 1e-3)) return true;
    return false;
}

TEST(Solve, EveryNumberOfEveryWorkedExampleIsFoundAgainFromItsPower) {
    int found_again = 0;
    for (const statplan::Test* test : catalogue())
        for (const Example& example : test->examples) {
            const auto record = asked(std::string(example.command));
            if (!record || record->question == "precision" || record->question == "effect") continue;
            const double power = answer_of(*record, "power");
            if (!(power < 1 - 1e-9)) continue;  // flat there: no one answer
            for (const auto* items : {&record->asked, &record->answer})
                for (const Item& item : *items) {
                    const Argument& a = *item.argument;
                    if (a.kind != Kind::number || a.name == "power" || a.name == "level" || a.name == "ratio")
                        continue;
                    // The power of an exact test is a step function of them.
                    if (!std::isnan(answer_of(*record, "level")) && (a.name == "alpha" || a.name == "p0"))
                        continue;
                    const auto solved = ask(without(*record, a.name, power));
                    ASSERT_TRUE(solved)
                        << example.command << " for " << a.name << ": " << solved.refusal().message();
                    const double again = answer_of(*solved, a.name),
                                 other =
                                     solved->other.empty() ? kNotGiven : solved->other.front().values.front();
                    EXPECT_TRUE(near_one_of(item.values.front(), {again, other}))
                        << example.command << ": " << a.name << " " << item.values.front() << " found as "
                        << again << " or " << other;
                    EXPECT_GE(answer_of(*solved, "power"), power);
                    EXPECT_NEAR(answer_of(*solved, "power"), power, 1e-9)
                        << example.command << " for " << a.name;
                    ++found_again;
                }
        }
    EXPECT_GT(found_again, 50);
}

TEST(Solve, BothSidesOfTheNullAreFoundAndTheUpperOneComesFirst) {
    const auto record = asked("t-one solve --n 30 --power 0.8 --sd 2 --null 10");
    ASSERT_TRUE(record);
    const double above = answer_of(*record, "mean"), below = record->other.front().values.front();
    EXPECT_GT(above, 10);
    EXPECT_NEAR(10 - below, above - 10, 1e-9);  // a symmetric test
    // scipy: brentq over both tails of nct
    EXPECT_NEAR(above - 10, 1.05847123022590, 1e-12);
}

TEST(Solve, ADirectionLeavesOneSide) {
    const auto up = asked("t-one solve --n 30 --power 0.8 --sd 2 --alternative greater");
    const auto down = asked("t-one solve --n 30 --power 0.8 --sd 2 --alternative less");
    ASSERT_TRUE(up && down);
    EXPECT_TRUE(up->other.empty());
    EXPECT_TRUE(down->other.empty());
    EXPECT_NEAR(answer_of(*up, "mean"), -answer_of(*down, "mean"), 1e-12);
}

TEST(Solve, OneGroupsSizeIsFoundForTheOthers) {
    const auto record = asked("t-two size --d 0.5 --n1 40");
    ASSERT_TRUE(record);
    EXPECT_EQ(record->unknown, "n2");
    const double n2 = answer_of(*record, "n2");
    const auto power = [](double n) {
        return answer_to("t-two power --d 0.5 --n1 40 --n2 " + std::to_string(static_cast<int>(n)), "power");
    };
    EXPECT_GE(power(n2), 0.8);
    EXPECT_LT(power(n2 - 1), 0.8);
    EXPECT_THAT(refusal_of("t-two size --d 0.2 --n1 40"), testing::HasSubstr("does not reach 0.8"));
}

TEST(Solve, WhatHasNoAnswerSaysWhy) {
    EXPECT_THAT(refusal_of("t-one size --d 0"), testing::HasSubstr("there is no effect"));
    EXPECT_THAT(refusal_of("t-one size --d 1e-5"),
                testing::HasSubstr("does not reach 0.8 with 10000000 observations"));
    EXPECT_THAT(refusal_of("t-one size --d 0.01 --max-n 1000"), testing::HasSubstr("with 1000 observations"));
    EXPECT_THAT(refusal_of("t-one solve --n 30 --power 0.04"), testing::HasSubstr("at most alpha"));
}

TEST(Solve, CountsAndWordsCannotBeFound) {
    EXPECT_THAT(refusal_of("t-one solve --solve-for alternative --d 1 --n 9 --power 0.9"),
                testing::HasSubstr("cannot be found by a search"));
}

class StopsAt : public Cancel {
  public:
    explicit StopsAt(int question) : left_(question) {}
    bool IsCancelRequested() override { return --left_ < 0; }

  private:
    int left_;
};

TEST(Solve, EverySearchStopsWhenItIsToldTo) {
    for (const char* command :
         {"t-one size --d 0.01", "t-one solve --n 30 --power 0.8", "t-one solve --mean 1 --n 30 --power 0.8"})
        for (const int question : {0, 1, 5}) {
            StopsAt cancel(question);
            const auto record = asked(command, &cancel);
            ASSERT_FALSE(record) << command;
            EXPECT_EQ(record.refusal().kind, Refusal::cancelled) << command;
        }
}

TEST(Solve, SizesAreSoughtUpToTheMostThatMayBeHadAndNoFarther) {
    const auto n = [](const std::string& words, const char* name) {
        return answer_to(words + " --max-n 34", name);
    };
    EXPECT_EQ(n("t-one size --d 0.5", "n"), 34);
    EXPECT_EQ(n("t-one solve --solve-for n --d 0.5", "n"), 34);
    EXPECT_EQ(n("t-two solve --solve-for n --d 1", "n"), 17);
    EXPECT_EQ(n("t-two solve --solve-for total --d 1", "total"), 34);
    EXPECT_EQ(n("t-two solve --solve-for n2 --n1 17 --d 1", "n2"), 17);
    EXPECT_EQ(n("anova solve --solve-for n --groups 2 --f 0.5", "n"), 17);
    for (const char* words :
         {"t-one size --d 0.5", "t-one solve --solve-for n --d 0.5", "t-two solve --solve-for n --d 1",
          "t-two solve --solve-for total --d 1", "t-two solve --solve-for n2 --n1 17 --d 1",
          "anova solve --solve-for n --groups 2 --f 0.5", "t-two size --d 1"})
        EXPECT_THAT(refusal_of(words + std::string(" --max-n 33")),
                    testing::ContainsRegex("does not reach 0.8 with 3[23] observations"))
            << words;
    EXPECT_EQ(refusal_of("t-two solve --solve-for n2 --n1 50 --d 1 --max-n 34"),
              "max-n: is less than the sizes that are given");
    EXPECT_EQ(refusal_of("t-two size --d 9 --max-n 3"), "the least size is 4 observations, more than max-n");
}

TEST(Solve, AnAllocationIsThatOfWholeSizes) {
    // 40 and 26 have a power of 0.498.
    EXPECT_EQ(answer_to("t-two solve --solve-for ratio --n1 40 --d 0.5 --power 0.5", "ratio"), 27.0 / 40);
    // 100 * 1.1 is a little more than 110, 49 * (1 / 49) a little less than 1.
    EXPECT_EQ(answer_to("t-two power --n1 100 --ratio 1.1 --d 0.5", "power"),
              answer_to("t-two power --n1 100 --n2 110 --d 0.5", "power"));
    for (double n2 = 2; n2 < 200; ++n2)
        EXPECT_EQ(answer_to("t-two power --n1 49 --d 0.5 --ratio " + exactly(n2 / 49), "power"),
                  answer_to("t-two power --n1 49 --d 0.5 --n2 " + exactly(n2), "power"));
}

TEST(Solve, ASizeOfUnequalVariancesThatNoneReachesEndsWithTheReason) {
    EXPECT_THAT(
        refusal_of("t-two solve --solve-for n2 --n1 5 --diff 0.5 --sd1 1 --sd2 2 --variance unpooled"),
        HasSubstr("does not reach 0.8 with 10000000 observations"));
}

}  // namespace
}  // namespace statplan
