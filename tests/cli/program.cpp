#include "program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <stdexcept>

namespace testing_support {

namespace {

Output run(const std::string& command) {
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr) throw std::runtime_error("cannot run the program");
    std::string text;
    for (int c; (c = std::fgetc(pipe)) != EOF;) text += static_cast<char>(c);
    return {WEXITSTATUS(pclose(pipe)), text};
}

}  // namespace

Output statpower(const std::string& arguments) {
    return run(STATPOWER_PROGRAM " " + arguments);
}

Output interrupted_statpower(const std::string& arguments) {
    return run("timeout --preserve-status --signal=INT --kill-after=60 2 " STATPOWER_PROGRAM " " + arguments);
}

void expect_refusals(const std::string& command, const std::vector<Refusal>& refusals) {
    for (const Refusal& refusal : refusals) {
        const auto run = statpower(command + " " + refusal.arguments);
        EXPECT_EQ(run.status, 2) << refusal.arguments;
        EXPECT_THAT(run.text, testing::StartsWith("statpower: " + refusal.option)) << refusal.arguments;
    }
}

}  // namespace testing_support
