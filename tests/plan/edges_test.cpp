// What is refused and why, and the answers of rarer questions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "plan/asked.h"
#include "statplan/ask.h"

namespace statplan {
namespace {

using testing::HasSubstr;
using Json = nlohmann::json;

TEST(Refusals, NameWhatIsNeeded) {
    EXPECT_EQ(refusal_of("t-one size"), "d: is needed; give mean, sd and null, or d");
    EXPECT_EQ(refusal_of("z-one power --d 0.3"), "n: is needed; give n");
    EXPECT_EQ(refusal_of("contrast precision --sd 3"),
              "sizes: is needed; give n, sizes, total, or total and weights");
    EXPECT_EQ(refusal_of("anova size --f 0.25"), "groups: is needed, or the sizes or weights of the groups");
    EXPECT_EQ(refusal_of("anova power --means 1 --sd 2 --n 10"),
              "means: needs a number for each of two or more groups");
    EXPECT_EQ(refusal_of("anova size --f 0.25 --groups 200000"), "sizes: of more than 100000 groups");
    EXPECT_EQ(refusal_of("t-one power --d 0.5 --n 10 --solve-for d"),
              "solve-for: belongs to the question solve");
}

TEST(Refusals, OfATestWithoutAnIntervalSaySo) {
    for (const statplan::Test* test : catalogue())
        if (!test->precision.value) {
            EXPECT_THAT(refusal_of(std::string(test->name) + " precision"), HasSubstr("there is no interval"))
                << test->name;
        }
}

TEST(Refusals, OfSeveralValuesWhereOneRecordIsAsked) {
    Question question{.test = find_test("t-one")};
    question.give("d", 0.5), question.give("n", std::vector<double>{20, 30});
    const auto record = ask(question);
    ASSERT_FALSE(record);
    EXPECT_THAT(record.refusal().message(), HasSubstr("n: "));
}

TEST(Refusals, OfTablesThatAreTooLong) {
    const auto several =
        read_values(*find_argument(*find_test("t-one"), "d"), "0:1:0.000002,0:1:0.000002,0:1:0.000002");
    ASSERT_FALSE(several);
    EXPECT_THAT(several.refusal().message(), HasSubstr("more than a million values"));
    const auto question = question_of("t-one power --d 0:1:0.0001 --n 20:2000 --alpha 0.05");
    ASSERT_TRUE(question);
    EXPECT_EQ(ask_table(*question).refusal().message(), "the table has more than ten million rows");
    EXPECT_EQ(ask_table(*question_of("anova effect --f 0.1,0.2 --groups 3")).refusal().message(),
              "effect answers one design at a time");
    EXPECT_EQ(ask_table({}).refusal().message(), "test: is needed");
}

TEST(Tables, OfNumbersThatAreSolvedAndOfTotals) {
    const auto solved = ask_table(*question_of("t-one solve --solve-for d --n 20,30"));
    ASSERT_TRUE(solved);
    ASSERT_EQ(solved->columns.size(), 3U);
    for (const std::size_t row : {0U, 1U}) {
        const double n = solved->columns[0].values[row], d = solved->columns[1].values[row];
        EXPECT_NEAR(answer_to("t-one power --n " + std::to_string(n) + " --d " + std::to_string(d), "power"),
                    0.8, 1e-5);
    }
    const auto totals = ask_table(*question_of("anova size --means 1,2,4 --sd 2,3"));
    ASSERT_TRUE(totals);
    EXPECT_EQ(totals->columns[1].name, "total");
    for (const std::size_t row : {0U, 1U})
        EXPECT_EQ(totals->columns[1].values[row],
                  3 * answer_to("anova size --means 1,2,4 --sd " + std::to_string(2 + row), "sizes"));
}

TEST(Tables, StopWhereTheyAreToldTo) {
    struct Stop : Cancel {
        bool IsCancelRequested() override { return true; }
    } stop;
    const auto table = ask_table(*question_of("t-one size --d 0.2,0.3"), &stop);
    ASSERT_FALSE(table);
    EXPECT_EQ(table.refusal().kind, Refusal::cancelled);
}

Json answered(const std::string& request) {
    char* text = statplan_ask(request.c_str(), nullptr, nullptr);
    const Json json = Json::parse(text);
    statplan_free(text);
    return json;
}

TEST(Records, OfGroupsHaveListsInJson) {
    const Json record = answered(R"({"test": "anova", "question": "size", "means": [1, 2, 4], "sd": 2})");
    EXPECT_EQ(record["asked"]["means"], Json::parse("[1, 2, 4]"));
    EXPECT_EQ(record["answer"]["sizes"].size(), 3U);
}

TEST(Tables, OfRefusedRowsHaveTheirReasonsInJson) {
    const Json table = answered(R"({"test": "t-one", "question": "power", "d": 0.5, "n": [1, 20]})");
    EXPECT_THAT(table["refusals"][0].get<std::string>(), HasSubstr("fewer than 2"));
    EXPECT_TRUE(table["refusals"][1].is_null());
    EXPECT_TRUE(table["columns"]["power"][0].is_null());
}

double column(const char* test, const char* unknown, const char* const* given, const double* numbers,
              std::size_t count, const char* output) {
    std::vector<statplan_column> columns;
    for (std::size_t i = 0; i < count; ++i) columns.push_back({&numbers[i], 0, 1, 0});
    double answer = -7;
    EXPECT_EQ(statplan_columns(test, unknown, given, columns.data(), count, 1, output, &answer, nullptr,
                               nullptr, nullptr),
              0)
        << output;
    return answer;
}

TEST(Columns, AnswerEffectsLevelsAndSecondSolutions) {
    const char* const one[] = {"p1", "p0", "n", "method"};
    const double exact[] = {0.6, 0.5, 50, 1};
    EXPECT_EQ(column("prop-one", "power", one, exact, 4, "level"),
              answer_to("prop-one power --p1 0.6 --p0 0.5 --n 50 --method exact", "level"));
    const char* const means[] = {"mean", "sd", "null", "n"};
    const double design[] = {105, 15, 100, 50};
    EXPECT_EQ(column("t-one", "power", means, design, 4, "d"), (105.0 - 100) / 15);
    const char* const sizes[] = {"n", "sd", "power"};
    const double target[] = {50, 15, 0.8};
    const double found = column("t-one", "mean", sizes, target, 3, "mean"),
                 other = column("t-one", "mean", sizes, target, 3, "other");
    EXPECT_GT(found, 0);
    EXPECT_NEAR(other, -found, 1e-6);
}

}  // namespace
}  // namespace statplan
