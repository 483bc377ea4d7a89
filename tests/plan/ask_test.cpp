// The C interface: requests and answers as JSON, columns with strides.
#include "statplan/ask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <thread>

#include "statplan/plan.h"
#include "statpower/anova.h"
#include "statpower/means.h"

namespace {

using Json = nlohmann::json;

Json answered(const std::string& request, statplan_cancel cancel = nullptr, void* context = nullptr) {
    char* text = statplan_ask(request.c_str(), cancel, context);
    const Json json = Json::parse(text);
    statplan_free(text);
    return json;
}

TEST(Ask, ARecordSaysWhatWasAskedAndAnswered) {
    const Json record = answered(R"({"test": "t-one", "question": "size", "d": 0.5, "dropout": 0.15})");
    EXPECT_EQ(record["statpower"], statplan_version());
    EXPECT_EQ(record["asked"],
              Json::parse(R"({"d": 0.5, "power": 0.8, "alternative": "two-sided", "alpha": 0.05,
                                              "dropout": 0.15})"));
    EXPECT_EQ(record["answer"]["n"], 34);  // R: power.t.test(delta = 0.5, power = 0.8, type = "one.sample")
    EXPECT_EQ(record["answer"]["power"], PowerOneSampleNondirectional(34, 0.5, 1, 0, 0.05));
    EXPECT_EQ(record["enrolled"]["n"], 40);  // 34 / 0.85
    EXPECT_FALSE(record["sources"].empty());
    EXPECT_THAT(record["report"].get<std::string>(), testing::HasSubstr("With 34 observations"));
}

TEST(Ask, AWidthBeyondTheRangeOfADoubleIsNoAnswer) {
    for (const char* test : {"z-one", "t-one"}) {
        const std::string request =
            std::string(R"({"question": "precision", "sd": 1e308, "n": 2, "test": ")") + test + "\"}";
        EXPECT_EQ(answered(request)["refusal"]["kind"], "no-answer") << test;
    }
}

TEST(Ask, ChoicesAreWordsAndListsAreArrays) {
    const Json table = answered(R"({"test": "t-one", "question": "power", "d": [0.2, 0.5], "n": "10:20:10",
                                    "alternative": "one-sided"})");
    EXPECT_EQ(table["over"], Json::parse(R"(["d", "n"])"));
    EXPECT_EQ(table["columns"]["n"], Json::parse("[10, 20, 10, 20]"));
    EXPECT_EQ(table["columns"]["power"][3], PowerOneSampleDirectional(20, 0.5, 1, 0, 0.05));
}

TEST(Ask, WhatIsNoRequestIsRefused) {
    for (const char* request :
         {"", "[]", "{", "null", "\"x\"", "{}", R"({"test": 3})", "{\"test\": \"t-one\", \"d\": {}}",
          R"({"test": "t-one", "question": "power", "n": 9, "d": [[1]]})"})
        EXPECT_TRUE(answered(request).contains("refusal")) << request;
    EXPECT_TRUE(answered(std::string(200000, '[')).contains("refusal"));
    EXPECT_EQ(answered(R"({"test": "t-one", "d\u0007": 1})")["refusal"]["argument"], "d\\x07");
    char* text = statplan_ask(nullptr, nullptr, nullptr);
    EXPECT_TRUE(Json::parse(text).contains("refusal"));
    statplan_free(text);
    statplan_free(nullptr);
}

TEST(Ask, WhatAQuestionFindsIsKnownBeforeItIsAsked) {
    const auto answers = [](const char* test, const char* unknown, std::vector<const char*> given) {
        char* text = statplan_answers(test, unknown, given.data(), given.size());
        const Json json = Json::parse(text);
        statplan_free(text);
        return json;
    };
    EXPECT_EQ(answers("t-one", "", {"d"}), Json::parse(R"({"question": "size", "answers": ["n", "power"]})"));
    EXPECT_EQ(answers("t-one", "", {"sd", "n", "power"}),
              Json::parse(R"({"question": "solve", "answers": ["mean", "power"]})"));
    EXPECT_EQ(answers("t-one", "halfwidth", {"sd", "n"}),
              Json::parse(R"({"question": "precision", "answers": ["halfwidth"]})"));
    EXPECT_EQ(answers("anova", "size", {"means", "sd"}),
              Json::parse(R"({"question": "size", "answers": ["total", "power"]})"));
    EXPECT_EQ(answers("t-one", "power", {"delta"})["refusal"]["argument"], "delta");
    EXPECT_EQ(answers("t-1", "power", {})["refusal"]["argument"], "test");
}

TEST(Ask, TheTotalOfSizesThatAreFoundIsAnAnswer) {
    const char* given[] = {"means", "sd"};
    const double means[] = {10, 12, 15, 11}, sd = 5;
    const statplan_column columns[] = {{means, 0, 4, sizeof(double)}, {&sd, 0, 1, 0}};
    double found = 0, of_first = 0;
    EXPECT_EQ(
        statplan_columns("anova", "size", given, columns, 2, 1, "total", &found, nullptr, nullptr, nullptr),
        0);
    EXPECT_EQ(statplan_columns("anova", "size", given, columns, 2, 1, "sizes", &of_first, nullptr, nullptr,
                               nullptr),
              0);
    EXPECT_GT(of_first, 2);
    EXPECT_EQ(found, 4 * of_first);
}

TEST(Ask, TheCatalogueDescribesEveryTest) {
    const Json catalogue = Json::parse(statplan_catalogue());
    EXPECT_EQ(catalogue["tests"].size(), statplan::catalogue().size());
    for (const Json& test : catalogue["tests"]) {
        for (const char* member : {"name", "title", "study"}) EXPECT_NE(test[member], "") << test["name"];
        for (const char* measure : {"power", "precision"}) {
            if (!test.contains(measure)) continue;
            for (const Json& way : test[measure]["ways"])
                for (const Json& argument : way) {
                    EXPECT_NE(argument["meaning"], "") << test["name"] << argument["name"];
                    EXPECT_NE(argument["rule"], "") << test["name"] << argument["name"];
                }
            for (const Json& option : test[measure]["options"])
                EXPECT_EQ(option["kind"] == "choice", option.contains("choices")) << option["name"];
        }
        EXPECT_FALSE(test["sources"].empty()) << test["name"];
        EXPECT_FALSE(test["examples"].empty()) << test["name"];
    }
}

TEST(Ask, EveryArgumentHasItsPlaceAmongTheValues) {
    for (const statplan::Test* test : statplan::catalogue())
        for (const statplan::Measure* measure : {&test->power, &test->precision})
            for (const statplan::Way& way : measure->ways)
                for (const statplan::Argument& argument : way.arguments)
                    EXPECT_LT(static_cast<std::size_t>(argument.place), statplan::kPlaces) << argument.name;
    // Places are given in order: whatever is made now is behind all of them.
    EXPECT_LT(static_cast<std::size_t>(statplan::Argument{.name = "last", .meaning = ""}.place),
              statplan::kPlaces);
}

TEST(Columns, FollowStridesAndBroadcast) {
    struct Row {
        double n, power, halves;
    };
    std::array<Row, 3> rows{{{10, 0, 0.5}, {20, 0, 0.3}, {30, 0, 0.1}}};
    const double alpha = 0.01;
    const char* const given[] = {"alpha", "n", "d"};
    const statplan_column columns[] = {
        {&alpha, 0, 1, 0}, {&rows[0].n, sizeof(Row), 1, 0}, {&rows[0].halves, sizeof(Row), 1, 0}};
    const char* const outputs[] = {"power"};
    statplan_plan* plan = statplan_prepare("t-one", "power", given, 3, outputs, 1, nullptr);
    ASSERT_NE(plan, nullptr);
    const statplan_output room{&rows[0].power, sizeof(Row), 1, 0};
    EXPECT_EQ(statplan_run(plan, rows.size(), columns, &room, nullptr, nullptr), rows.size());
    statplan_release(plan);
    for (const Row& row : rows)
        EXPECT_EQ(row.power, PowerOneSampleNondirectional(row.n, row.halves, 1, 0, 0.01));
}

TEST(Columns, ARowThatIsRefusedHasNoNumberAndTheOthersAreAnswered) {
    const double n[] = {10, -1, std::nan(""), 10.5, 20}, d = 0.5;
    const char* const given[] = {"n", "d"};
    const statplan_column columns[] = {{n, sizeof(double), 1, 0}, {&d, 0, 1, 0}};
    double power[5];
    ASSERT_EQ(
        statplan_columns("t-one", "power", given, columns, 2, 5, "power", power, nullptr, nullptr, nullptr),
        0);
    EXPECT_EQ(power[0], PowerOneSampleNondirectional(10, 0.5, 1, 0, 0.05));
    for (const int i : {1, 2, 3}) EXPECT_TRUE(std::isnan(power[i])) << i;
    EXPECT_EQ(power[4], PowerOneSampleNondirectional(20, 0.5, 1, 0, 0.05));
}

TEST(Columns, RowsMayHaveDifferentNumbersOfGroups) {
    const double groups[] = {3, 5, 4}, f = 0.25;
    const char* const given[] = {"groups", "n", "f"};
    const double n[] = {20, 20, 20};
    const statplan_column columns[] = {
        {groups, sizeof(double), 1, 0}, {n, sizeof(double), 1, 0}, {&f, 0, 1, 0}};
    double power[3], total[3];
    ASSERT_EQ(
        statplan_columns("anova", "power", given, columns, 3, 3, "power", power, nullptr, nullptr, nullptr),
        0);
    const char* const searched[] = {"groups", "f"};
    const statplan_column of_search[] = {columns[0], columns[2]};
    ASSERT_EQ(statplan_columns("anova", "size", searched, of_search, 2, 3, "total", total, nullptr, nullptr,
                               nullptr),
              0);
    for (const int i : {0, 1, 2}) {
        const statplan_column alone[] = {{&groups[i], 0, 1, 0}, columns[1], columns[2]};
        double one = 0, found = 0;
        statplan_columns("anova", "power", given, alone, 3, 1, "power", &one, nullptr, nullptr, nullptr);
        EXPECT_EQ(power[i], one) << groups[i];
        const statplan_column alone_searched[] = {alone[0], columns[2]};
        statplan_columns("anova", "size", searched, alone_searched, 2, 1, "total", &found, nullptr, nullptr,
                         nullptr);
        EXPECT_EQ(total[i], found) << groups[i];
        EXPECT_EQ(std::fmod(total[i], groups[i]), 0);
    }
}

TEST(Columns, SizesThatAreEnrolledAreThoseOfTheRecord) {
    const double dropout[] = {0.15, 0.5}, d = 0.5;
    const char* const given[] = {"dropout", "d"};
    const statplan_column columns[] = {{dropout, sizeof(double), 1, 0}, {&d, 0, 1, 0}};
    const auto found = [&](const char* test, const char* output) {
        std::array<double, 2> values{};
        EXPECT_EQ(statplan_columns(test, "size", given, columns, 2, 2, output, values.data(), nullptr,
                                   nullptr, nullptr),
                  0);
        return values;
    };
    // 64 in each group
    EXPECT_THAT(found("t-two", "enrolled-n1"), testing::ElementsAre(76, 128));
    EXPECT_THAT(found("t-two", "enrolled-total"), testing::ElementsAre(152, 256));
    EXPECT_EQ(
        answered(R"({"test": "t-two", "question": "size", "d": 0.5, "dropout": 0.15})")["enrolled"]["n2"],
        76);
}

TEST(Columns, SeveralAnswersOfASearchComeAtOnce) {
    const double d[] = {0.5, 0.25};
    const char* const given[] = {"d"};
    const char* const outputs[] = {"n", "power", "guaranteed-n"};
    statplan_plan* plan = statplan_prepare("t-one", "size", given, 1, outputs, 3, nullptr);
    ASSERT_NE(plan, nullptr);
    const statplan_column column{d, sizeof(double), 1, 0};
    double n[2], power[2], guaranteed[2];
    const statplan_output room[] = {
        {n, sizeof(double), 1, 0}, {power, sizeof(double), 1, 0}, {guaranteed, sizeof(double), 1, 0}};
    statplan_run(plan, 2, &column, room, nullptr, nullptr);
    statplan_release(plan);
    // R: power.t.test(delta = c(0.5, 0.25), power = 0.8, type = "one.sample"): 33.37, 127.5
    EXPECT_THAT(n, testing::ElementsAre(34, 128));
    EXPECT_THAT(guaranteed, testing::ElementsAre(34, 128));
    EXPECT_EQ(power[1], PowerOneSampleNondirectional(128, 0.25, 1, 0, 0.05));
}

TEST(Columns, ARowIsAnsweredAsIfItWereAlone) {
    // What is found out about a row, the sizes of so many groups, is not there for the next one.
    const double groups[] = {4, 40, 3}, f = 0.4, n = 5;
    const char* const given[] = {"f", "groups", "n"};
    const statplan_column all[] = {{&f, 0, 1, 0}, {groups, sizeof(double), 1, 0}, {&n, 0, 1, 0}};
    double power[3];
    ASSERT_EQ(statplan_columns("anova", "power", given, all, 3, 3, "power", power, nullptr, nullptr, nullptr),
              0);
    const double of_4[] = {5, 5, 5, 5}, of_3[] = {5, 5, 5};
    EXPECT_EQ(power[0], PowerOverallTestwES(4, 0, of_4, 0.4, 0.05));
    EXPECT_EQ(power[1], PowerOverallTestwES(40, 0, std::vector<double>(40, 5).data(), 0.4, 0.05));
    EXPECT_EQ(power[2], PowerOverallTestwES(3, 0, of_3, 0.4, 0.05));
}

TEST(Columns, WhatCannotBePreparedIsRefused) {
    const char* const given[] = {"d", "nn"};
    const char* const outputs[] = {"power"};
    char* refusal = nullptr;
    EXPECT_EQ(statplan_prepare("t-one", "power", given, 2, outputs, 1, &refusal), nullptr);
    EXPECT_EQ(Json::parse(refusal)["refusal"]["argument"], "nn");
    statplan_free(refusal);
    EXPECT_EQ(statplan_prepare("no-test", "power", given, 1, outputs, 1, nullptr), nullptr);
    EXPECT_EQ(statplan_prepare(nullptr, nullptr, nullptr, 0, nullptr, 0, nullptr), nullptr);
    const char* const answers[] = {"colour"};
    EXPECT_EQ(statplan_prepare("t-one", "size", given, 1, answers, 1, &refusal), nullptr);
    EXPECT_EQ(Json::parse(refusal)["refusal"]["argument"], "colour");
    statplan_free(refusal);
}

TEST(Columns, OnlyAPowerHasAnActualLevel) {
    const char* const given[] = {"p1", "p2", "method"};
    const char* const outputs[] = {"level"};
    for (const char* unknown : {"effect", "halfwidth"})
        EXPECT_EQ(statplan_prepare("prop-two", unknown, given, 3, outputs, 1, nullptr), nullptr) << unknown;
    statplan_plan* plan = statplan_prepare("prop-two", "size", given, 3, outputs, 1, nullptr);
    EXPECT_NE(plan, nullptr);
    statplan_release(plan);
}

TEST(Columns, StopWhereTheyAreToldTo) {
    const std::vector<double> n(1000, 10);
    std::vector<double> power(1000, 7);
    const double d = 0.5;
    const char* const given[] = {"n", "d"};
    const statplan_column columns[] = {{n.data(), sizeof(double), 1, 0}, {&d, 0, 1, 0}};
    int asked = 0;
    const auto after_100 = [](void* context) { return ++*static_cast<int*>(context) > 100 ? 1 : 0; };
    EXPECT_EQ(statplan_columns("t-one", "power", given, columns, 2, 1000, "power", power.data(), after_100,
                               &asked, nullptr),
              2);
    EXPECT_NE(power[0], 7);
    EXPECT_EQ(power[999], 7);
    EXPECT_EQ(answered(R"({"test": "t-one", "d": 0.001})", [](void*) { return 1; })["refusal"]["kind"],
              "cancelled");
}

TEST(Columns, AnyNumberOfThreadsMayAsk) {
    const auto work = [](double d, double* n) {
        const char* const given[] = {"d"};
        const statplan_column column{&d, 0, 1, 0};
        statplan_columns("t-one", "size", given, &column, 1, 100, "n", n, nullptr, nullptr, nullptr);
    };
    std::array<std::array<double, 100>, 8> n;
    std::vector<std::thread> threads;
    for (auto& each : n) threads.emplace_back(work, 0.5, each.data());
    for (std::thread& thread : threads) thread.join();
    for (const auto& each : n)
        for (const double size : each) EXPECT_EQ(size, 34);
}

}  // namespace
