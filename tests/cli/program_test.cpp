// What all commands have in common: help, exit statuses, error lines.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "cli/program.h"

using testing::HasSubstr;
using testing::StartsWith;
using testing_support::statpower;

namespace {

TEST(Program, ExplainsItself) {
    const auto help = statpower("--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.text, HasSubstr("anova"));
    EXPECT_EQ(statpower("anova power --help").status, 0);
}

TEST(Program, WithoutACommandIsAnError) {
    EXPECT_EQ(statpower("").status, 2);
    EXPECT_EQ(statpower("anova").status, 2);
}

TEST(Program, NamesAnUnknownOption) {
    const auto run = statpower("anova power --sizes 5,5 --f 0.2 --beta 0.1");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.text, HasSubstr("--beta"));
}

TEST(Program, NamesAnOptionWhoseValueIsNoNumber) {
    const auto run = statpower("anova power --sizes 5,5 --f 0.2 --alpha five");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.text, StartsWith("statpower: --alpha"));
}

TEST(Program, RefusesNaN) {
    const auto run = statpower("anova power --sizes 5,5 --f 0.2 --alpha nan");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.text, StartsWith("statpower: --alpha"));
}

}  // namespace
