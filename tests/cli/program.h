// Runs the statpower command as a user would.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace testing_support {

struct Output {
    int status;        ///< exit status
    std::string text;  ///< what the program printed, errors included

    /// The text as JSON; fails the test that asks when it is none.
    nlohmann::json json() const { return nlohmann::json::parse(text); }
};

/// Runs `statpower ARGUMENTS`.
Output statpower(const std::string& arguments);

/// Arguments that are wrong, and the option that the error must name.
struct Refusal {
    std::string arguments;
    std::string option;
};

/// Expects that `statpower COMMAND ARGUMENTS` ends with the status of a wrong argument and names the option.
void expect_refusals(const std::string& command, const std::vector<Refusal>& refusals);

/// Runs `statpower ARGUMENTS` and sends it the signal of Ctrl-C when it has not ended after two seconds.
Output interrupted_statpower(const std::string& arguments);

}  // namespace testing_support
