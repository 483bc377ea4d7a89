// Runs the statpower command as a user would.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace testing_support {

struct Output {
    int status;        ///< exit status
    std::string text;  ///< what the program printed, errors included

    /// The text as JSON; fails the test that asks when it is none.
    nlohmann::json json() const { return nlohmann::json::parse(text); }
};

/// Runs `statpower ARGUMENTS`.
Output statpower(const std::string& arguments);

}  // namespace testing_support
