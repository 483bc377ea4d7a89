// Runs the statpower command as a user would.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

namespace testing_support {

struct Output {
    int status;        ///< exit status
    std::string text;  ///< what the program printed, errors included

    /// The text as JSON; fails the test that asks when it is none.
    nlohmann::json json() const { return nlohmann::json::parse(text); }
};

/// Runs `statpower ARGUMENTS` in a shell.
Output statpower(const std::string& arguments);

/// Runs a shell command in which $STATPOWER is the program.
Output shell(const std::string& command);

/// A folder that is removed at the end.
class Folder {
  public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    /// Writes a file. @return its path
    std::string write(const std::string& name, const std::string& text) const;
    std::string read(const std::string& name) const;

  private:
    std::filesystem::path folder_;
};

}  // namespace testing_support
