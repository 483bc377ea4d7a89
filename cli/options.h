// Options that recur in the commands, and the ranges of their values.
//
// A value outside its range is refused before the library is called, in one line that names the option.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace cli {

extern const CLI::Validator kBetween0And1;  ///< both excluded
extern const CLI::Validator kFrom0To1;      ///< both included
extern const CLI::Validator kFinite;
extern const CLI::Validator kPositive;     ///< greater than 0 and finite
extern const CLI::Validator kCorrelation;  ///< from -1 to 1
extern const CLI::Validator kStep;         ///< of a correlation or an effect: above 0, up to 0.5
CLI::Validator at_least(double lowest);

/// The width of one of `steps` steps of the axis from low to high as a fraction of the whole, 1 / steps but for
/// the last digit: the library counts how many steps cover the axis, and rounding must not add one. An axis
/// whose ends are the library's choice counts as one of unit width.
double step_fraction(int steps, double low, double high);

/// --alpha, 0.05 unless given.
CLI::Option* add_alpha(CLI::App& command, double& alpha);
/// --power, the target of a sample-size search, 0.8 unless given.
CLI::Option* add_target_power(CLI::App& command, double& power);
/// --sd, the common standard deviation.
CLI::Option* add_sd(CLI::App& command, double& sd);
/// A comma-separated list with one value a group.
CLI::Option* add_list(CLI::App& command, const std::string& name, std::vector<double>& values,
                      const std::string& description);

/// Refuses an option for a reason that involves other options too.
[[noreturn]] void refuse(const std::string& option, const std::string& reason);

}  // namespace cli
