// Answers and explanations as people read them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <nlohmann/json.hpp>
#include <set>

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

TEST(Text, SaysWhatWasGivenToTheLastDigit) {
    const auto record = asked("t-one power --d 0.2000001 --n 30 --alpha 0.0123456789");
    EXPECT_THAT(to_text(*record, 3),
                HasSubstr("d 0.2000001, n 30, alternative two-sided, alpha 0.0123456789"));
    EXPECT_THAT(to_text(table_of("t-one", "power", {{"d", "0.2,0.2000001"}, {"n", "34"}}), 3),
                HasSubstr("\n  0.2000001  "));
}

TEST(Reports, NameTheTestThatIsDone) {
    const std::pair<const char*, const char*> all[] = {
        {"t-two power --d 0.5 --n 20", "a two-sided two-sample t test at"},
        {"t-two power --d 0.5 --n 20 --variance unpooled", "a two-sided Welch two-sample t test at"},
        {"prop-one power --p1 0.3 --p0 0.2 --n 50", "a two-sided z test of one proportion at"},
        {"prop-one power --p1 0.3 --p0 0.2 --n 50 --continuity yes", "with continuity correction at"},
        {"prop-one power --p1 0.3 --p0 0.2 --n 50 --method exact",
         "a two-sided exact binomial test of one proportion at"},
        {"prop-two power --p1 0.3 --p2 0.5 --n 50",
         "a two-sided z test of two proportions (pooled variance) at"},
        {"prop-two power --p1 0.3 --p2 0.5 --n 50 --variance unpooled --continuity yes",
         "a two-sided z test of two proportions (unpooled variance, continuity correction) at"},
        {"prop-two power --p1 0.3 --p2 0.5 --n 50 --statistic t",
         "a two-sided t test of two proportions (pooled variance) at"},
        {"prop-two power --p1 0.3 --p2 0.5 --n 50 --statistic fisher --alternative one-sided",
         "a one-sided Fisher exact test of two proportions at"},
        {"prop-two power --p1 0.3 --p2 0.5 --n 50 --statistic likelihood-ratio",
         "a two-sided likelihood-ratio test of two proportions at"},
        {"prop-paired power --p10 0.3 --p01 0.1 --n 50 --method exact",
         "a two-sided exact McNemar test of paired proportions at"},
        {"pearson power --r 0.3 --n 50", "a two-sided Fisher z test of Pearson's correlation at"},
        {"pairwise power --d 0.5 --groups 3 --n 20", "adjusted for all pairs (bonferroni), at"},
        {"pairwise power --d 0.5 --groups 3 --n 20 --adjustment none", "not adjusted for other pairs, at"},
        {"regression power --f2 0.1 --predictors 3 --n 50 --model random",
         "a multiple regression F test with random predictors at"},
    };
    for (const auto& [question, words] : all)
        EXPECT_THAT(asked(question)->report, HasSubstr(words)) << question;
}

TEST(Reports, SayTheSizesHoweverTheyAreGiven) {
    const std::pair<const char*, const char*> all[] = {
        {"t-two power --d 0.5 --n 20", "With 20 in each group, a "},
        {"t-two power --d 0.5 --total 41", "With 21 in the first group and 20 in the second group, a "},
        {"t-two power --d 0.5 --n1 20 --ratio 2",
         "With 20 in the first group and 40 in the second group, a "},
        {"t-two precision --sd 1 --n1 20 --ratio 2",
         "With 20 in the first group and 40 in the second group, the "},
        {"t-two solve --solve-for ratio --n1 40 --d 0.5 --power 0.5",
         "With 40 in the first group and 27 in the second group, a "},
        {"anova power --f 0.25 --groups 4 --total 61", "With groups of 16, 15, 15 and 15, a "},
        {"anova size --f 0.25 --groups 2", "With groups of 64 and 64, a "},
        {"t-paired size --d 0.5 --corr 0.5", " pairs, a "},
    };
    for (const auto& [question, words] : all) {
        const auto record = asked(question);
        ASSERT_TRUE(record) << question << record.refusal().message();
        EXPECT_THAT(record->report, HasSubstr(words)) << question;
    }
}

TEST(Catalogue, SaysWhatEveryAnswerMeans) {
    const auto catalogue = nlohmann::json::parse(catalogue_json());
    std::set<std::string> known;
    const std::function<void(const nlohmann::json&)> collect = [&](const nlohmann::json& json) {
        if (json.is_object() && json.contains("name") && json.contains("meaning") &&
            !json["meaning"].get<std::string>().empty())
            known.insert(json["name"]);
        if (json.is_structured()) std::ranges::for_each(json, collect);
    };
    collect(catalogue);
    for (const statplan::Test* test : statplan::catalogue())
        for (const Example& example : test->examples) {
            const auto record = nlohmann::json::parse(to_json(*asked(std::string(example.command))));
            for (const char* part : {"asked", "answer", "effects"}) {
                if (!record.contains(part)) continue;
                for (const auto& [name, value] : record[part].items())
                    EXPECT_TRUE(known.contains(name)) << test->name << ": " << name;
            }
        }
    EXPECT_TRUE(known.contains("level"));
}

}  // namespace
}  // namespace statplan
