// statpower prop-two: the program's answers are the library's.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>
#include <vector>

#include "cli/program.h"
#include "statpower/independent_binomial.h"

using testing::HasSubstr;
using testing::StartsWith;
using testing_support::statpower;

namespace {

TEST(PropTwoCommand, PowerIsTheLibrarysForEveryNamedTest) {
    int code = 0;
    for (const char* name : {"chi2", "t", "lr", "fisher"}) {
        const std::string arguments =
            std::string("prop-two power --sizes 20,30 --p1 0.2 --p2 0.5 --json --test ") + name;
        EXPECT_EQ(statpower(arguments).json()["power"],
                  PowerIndSampBinom(20, 30, 0.2, 0.5, 0.05, 0, code, 0, false, false, nullptr));
        EXPECT_EQ(
            statpower(arguments + " --exact --one-sided --continuity --pooled --alpha 0.1").json()["power"],
            PowerIndSampBinom(20, 30, 0.2, 0.5, 0.1, 1, code, 1, true, true, nullptr));
        ++code;
    }
}

TEST(PropTwoCommand, SizeIsTheLibrarysAndReachesThePower) {
    const auto run =
        statpower("prop-two size --p1 0.2 --p2 0.5 --power 0.9 --ratio 2 --exact --test fisher --json");
    EXPECT_EQ(run.status, 0);
    std::vector<double> sizes;
    PowerReverseIndSampBinom(0.9, 0.2, 0.5, 2, 0.05, sizes, 1, 3, 0, false, false, nullptr);
    EXPECT_EQ(run.json()["group_sizes"], sizes);
    EXPECT_GE(run.json()["power"], 0.9);
}

TEST(PropTwoCommand, HalfWidthsAreTheLibrarys) {
    EXPECT_EQ(
        statpower("prop-two halfwidth --sizes 20,30 --p1 0.2 --p2 0.5 --interval hybrid-score --continuity "
                  "--json")
            .json()["half_width"],
        HalfCIIndSampBinom(20, 30, 0.2, 0.5, 0.05, 5, true));
    const auto run = statpower("prop-two halfwidth-size --halfwidth 0.1 --p1 0.5 --p2 0.5 --json");
    EXPECT_EQ(run.json()["group_sizes"], (std::vector<double>{193, 193}));
}

TEST(PropTwoCommand, CurvesHaveOneRowAPoint) {
    const auto run = statpower(
        "prop-two curve --over allocation --total 100 --p1 0.3 --p2 0.6 --from 0.5 --to 2 --step "
        "0.25 --json");
    EXPECT_EQ(run.status, 0);
    ASSERT_EQ(run.json().size(), 5U);
    EXPECT_EQ(run.json()[1]["ratio"], 0.875);
    for (const char* axis : {"difference", "risk-ratio --from 0.5 --to 2", "odds-ratio --to 3", "proportions",
                             "sizes --n1 5,6 --n2 7,8"}) {
        const auto csv =
            statpower(std::string("prop-two curve --exact --p1 0.3 --sizes 9,9 --step 0.25 --over ") + axis);
        EXPECT_EQ(csv.status, 0) << csv.text;
        EXPECT_THAT(csv.text, HasSubstr(",power\n"));
    }
}

TEST(PropTwoCommand, AnUnknownTestIsRefusedByName) {
    const auto run = statpower("prop-two power --sizes 20,30 --p1 0.2 --p2 0.5 --test barnard");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.text, StartsWith("statpower: --test: must be one of chi2, fisher, lr, t, not barnard"));
}

TEST(PropTwoCommand, AnAxisNamesTheOptionThatItNeeds) {
    for (const char* axis : {"difference", "risk-ratio", "odds-ratio", "proportions"})
        EXPECT_THAT(statpower(std::string("prop-two curve --over ") + axis).text,
                    StartsWith("statpower: --sizes"));
    EXPECT_THAT(statpower("prop-two curve --over allocation").text, StartsWith("statpower: --total"));
    EXPECT_THAT(statpower("prop-two curve --over sizes").text, StartsWith("statpower: --n1"));
}

TEST(PropTwoCommand, ATargetThatNoSizeReachesHasNoAnswer) {
    const auto run = statpower("prop-two size --p1 0.3 --p2 0.3");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.text, HasSubstr("no sample size"));
}

TEST(PropTwoCommand, LongWorkShowsTheElapsedTimeOnATerminalAndCtrlCStopsIt) {
    int terminal = 0;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child < 0) GTEST_SKIP() << "this machine has no pseudo-terminals";
    if (child == 0) {
        // No size reaches the power: without Ctrl-C the search would go on for hours.
        execl(STATPOWER_PROGRAM, "statpower", "prop-two", "size", "--p1", "0.5", "--p2", "0.5", "--exact",
              "--test", "fisher", static_cast<char*>(nullptr));
        _exit(127);
    }
    std::string shown;
    bool stopped = false;
    char buffer[256];
    for (ssize_t count; (count = read(terminal, buffer, sizeof buffer)) > 0;) {
        shown.append(buffer, static_cast<std::size_t>(count));
        if (!stopped && shown.find("2 s") != std::string::npos) {
            stopped = true;
            const char ctrl_c = 3;
            ASSERT_EQ(write(terminal, &ctrl_c, 1), 1);
        }
    }
    int status = 0;
    waitpid(child, &status, 0);
    close(terminal);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 130);
    EXPECT_THAT(shown, HasSubstr("1 s (Ctrl-C stops)"));
    EXPECT_THAT(shown, HasSubstr("statpower: interrupted"));
}

TEST(PropTwoCommand, WithoutATerminalNoElapsedTimeIsShown) {
    const auto run = statpower("prop-two size --p1 0.3 --p2 0.5 --exact");
    EXPECT_EQ(run.text.find("Ctrl-C"), std::string::npos);
    EXPECT_THAT(run.text, StartsWith("test:"));
}

TEST(PropTwoCommand, AnIntervalThatDoesNotExistHasNoAnswer) {
    EXPECT_EQ(statpower("prop-two halfwidth --sizes 1,1 --p1 0.5 --p2 0.4 --interval unbiased").status, 1);
}

TEST(PropTwoCommand, RefusesATotalThatIsNotFinite) {
    const auto run = statpower("prop-two curve --over allocation --p1 0.5 --p2 0.4 --total inf");
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.text, StartsWith("statpower: --total"));
}

}  // namespace
