// Answers and explanations as people read them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "plan/asked.h"
#include "statplan/text.h"

namespace statplan {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

Table table_of(const std::string& test, const std::string& question,
               const std::vector<std::pair<std::string, std::string>>& words) {
    const auto asked = read_question(test, question, words);
    EXPECT_TRUE(asked) << asked.refusal().message();
    const auto table = ask_table(*asked);
    EXPECT_TRUE(table) << table.refusal().message();
    return *table;
}

TEST(Numbers, ReadBackAsTheSameDouble) {
    for (const double x : {0.1, 1.0 / 3, 1e-300, 0.8077775012792746, 1e22, 123456789.0, -0.15})
        EXPECT_EQ(std::strtod(exactly(x).c_str(), nullptr), x);
    EXPECT_EQ(exactly(0.15), "0.15");
    EXPECT_EQ(exactly(1000000), "1000000");
}

TEST(Ranges, PassThroughZero) {
    const auto values = read_values(*find_argument(*find_test("t-one"), "d"), "-0.3:0.3:0.1");
    ASSERT_TRUE(values);
    EXPECT_THAT(*values, ElementsAre(-0.3, -0.2, -0.1, 0, 0.1, 0.2, 0.3));
}

TEST(Text, SaysTheAnswerFirstAndThenWhatWasAsked) {
    const auto record = asked("t-one size --d 0.5");
    ASSERT_TRUE(record);
    EXPECT_EQ(to_text(*record),
              "One mean (t test): size\n"
              "\n"
              "  n      34 observations\n"
              "  power  0.807778\n"
              "\n"
              "  asked    d 0.5, power 0.8, alternative two-sided, alpha 0.05\n"
              "  effects  d 0.5\n"
              "  method   noncentral t distribution\n");
    EXPECT_THAT(to_text(*record, 2), HasSubstr("power  0.81\n"));
}

TEST(Text, AlignsTheColumnsOfATable) {
    EXPECT_THAT(to_text(table_of("t-one", "power", {{"d", "0.5"}, {"n", "34,199"}})),
                HasSubstr("    n   power\n"
                          "   34  0.8078\n"
                          "  199  1.0000\n"));
}

TEST(Text, SaysBehindARowWhyItHasNoAnswer) {
    const auto table = table_of("t-one", "power", {{"d", "0.5"}, {"n", "1,100"}});
    EXPECT_THAT(to_text(table), HasSubstr("    1       -  n: leaves a group of fewer than 2 observations\n"));
    EXPECT_THAT(to_csv(table), HasSubstr("\n1,,n: leaves a group of fewer than 2 observations\n100,0.99"));
}

TEST(Csv, HasTheDoublesOrSoManyDigits) {
    const auto table = table_of("t-one", "power", {{"d", "0.5"}, {"n", "34"}, {"alpha", "0.05,0.1"}});
    EXPECT_THAT(to_csv(table, 3), testing::MatchesRegex("alpha,power\n0.05,0.808\n0.1,0.8[89][0-9]?\n"));
    EXPECT_THAT(to_csv(table), testing::ContainsRegex("0.05,0.80777750127927[0-9]*\n"));
    EXPECT_EQ(to_csv(*asked("t-one size --d 0.5"), 2), "n,power\n34,0.81\n");
    EXPECT_EQ(in_csv("a \"b\", c"), "\"a \"\"b\"\", c\"");
}

TEST(Csv, NamesThePowerReachedApartFromTheOneAskedFor) {
    EXPECT_EQ(to_csv(table_of("t-one", "size", {{"d", "0.5"}, {"power", "0.8,0.9"}}), 3),
              "power,n,reached\n0.8,34,0.808\n0.9,44,0.9\n");
}

TEST(Ndjson, HasALineForEachRow) {
    EXPECT_THAT(to_ndjson(table_of("t-one", "size", {{"d", "0.5,0.6"}})),
                testing::MatchesRegex("\\{\"d\":0.5,\"n\":34,\"power\":0.80777750127927[0-9]*\\}\n"
                                      "\\{\"d\":0.6,\"n\":24,\"power\":0.8[0-9]*\\}\n"));
}

TEST(Explanations, HaveMeaningUnitRangeDefaultAndAnExample) {
    const std::string text = to_text(explained(*find_test("t-one"), "size"));
    EXPECT_THAT(text,
                HasSubstr("  --alpha        Significance level (probability; at least 1e-12 and less than 1; "
                          "0.05 unless\n                 given)\n"));
    EXPECT_THAT(text, HasSubstr("    statpower t-one size --d 0.5\n"));
    EXPECT_THAT(text, Not(HasSubstr("--n ")));
    EXPECT_THAT(to_markdown(explained(*find_test("t-one"))),
                HasSubstr("| `--sd` | Standard deviation (units of the data; greater than 0) |\n"));
    EXPECT_THAT(to_roff(explained(*find_test("t-one"))),
                HasSubstr(".TP\n.B \\-\\-alpha\nSignificance level"));
}

}  // namespace
}  // namespace statplan
