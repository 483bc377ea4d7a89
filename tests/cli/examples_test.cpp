// The worked examples of the catalogue, run as help and pages print them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/program.h"
#include "statplan/plan.h"

namespace statplan {

void PrintTo(const Example& example, std::ostream* stream) {
    *stream << example.command;
}

}  // namespace statplan

namespace {

using testing_support::statpower;

std::vector<statplan::Example> examples() {
    std::vector<statplan::Example> all;
    for (const statplan::Test* test : statplan::catalogue())
        all.insert(all.end(), test->examples.begin(), test->examples.end());
    return all;
}

class Examples : public testing::TestWithParam<statplan::Example> {};

TEST_P(Examples, AnswerTheirPublishedValue) {
    const statplan::Example& example = GetParam();
    const auto run = statpower(std::string(example.command) + " --json");
    ASSERT_EQ(run.status, 0) << example.command << "\n" << run.text;
    const auto record = run.json();
    const std::string name(example.answer);
    auto answer = record["answer"].contains(name) ? record["answer"][name] : record["effects"][name];
    if (answer.is_array()) answer = answer[0];
    ASSERT_TRUE(answer.is_number()) << example.command << "\n" << run.text;
    EXPECT_NEAR(answer.get<double>(), example.value, example.tolerance + 1e-12) << example.command;
}

INSTANTIATE_TEST_SUITE_P(Catalogue, Examples, testing::ValuesIn(examples()),
                         [](const auto& example) { return std::to_string(example.index); });

TEST(Catalogue, HasAnExampleForEveryTest) {
    for (const statplan::Test* test : statplan::catalogue())
        EXPECT_FALSE(test->examples.empty()) << test->name;
}

TEST(Help, OfEveryQuestionHasRangesDefaultsAndAnExample) {
    for (const statplan::Test* test : statplan::catalogue())
        for (const auto& question : statplan::questions(*test)) {
            const auto help =
                statpower(std::string(test->name) + " " + std::string(question.name) + " --help");
            EXPECT_EQ(help.status, 0);
            EXPECT_THAT(help.text, testing::HasSubstr("    statpower " + std::string(test->name) + " "));
            EXPECT_THAT(help.text, testing::ContainsRegex("greater than|at least|a number"));
            if (question.name != "effect") {
                EXPECT_THAT(help.text, testing::HasSubstr(" unless"));
            }
            EXPECT_THAT(help.text, testing::HasSubstr("answers "));
        }
}

}  // namespace
