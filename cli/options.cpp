#include "options.h"

#include <cmath>
#include <cstdio>

namespace cli {

namespace {

// Written so that NaN is refused too.
template <class InRange>
CLI::Validator range(const std::string& rule, InRange in_range) {
    return CLI::Validator(
        [=](const std::string& text) -> std::string {
            double value = 0;
            const bool accepted = CLI::detail::lexical_cast(text, value) && in_range(value);
            return accepted ? "" : "must be " + rule + ", not " + text;
        },
        "");
}

}  // namespace

const CLI::Validator kBetween0And1 =
    range("greater than 0 and less than 1", [](double x) { return std::abs(x - 0.5) < 0.5; });
const CLI::Validator kFrom0To1 = range("at least 0 and at most 1", [](double x) { return x >= 0 && x <= 1; });
const CLI::Validator kFinite = range("a finite number", [](double x) { return std::isfinite(x); });
const CLI::Validator kPositive = range("greater than 0", [](double x) { return x > 0 && std::isfinite(x); });
const CLI::Validator kCorrelation =
    range("a correlation, from -1 to 1", [](double x) { return x >= -1 && x <= 1; });

const CLI::Validator kStep =
    range("greater than 0 and at most 0.5", [](double x) { return x > 0 && x <= 0.5; });

CLI::Validator at_least(double lowest) {
    char digits[32];
    std::snprintf(digits, sizeof digits, "%g", lowest);
    return range(std::string("at least ") + digits,
                 [=](double x) { return x >= lowest && std::isfinite(x); });
}

double step_fraction(int steps, double low, double high) {
    const double width = high > low ? high - low : 1;
    const double fraction = 1.0 / steps;
    return std::ceil(width / (fraction * width)) > steps ? std::nextafter(fraction, 1) : fraction;
}

CLI::Option* add_alpha(CLI::App& command, double& alpha) {
    return command.add_option("--alpha", alpha, "Significance level")
        ->check(kBetween0And1)
        ->capture_default_str();
}

CLI::Option* add_target_power(CLI::App& command, double& power) {
    return command.add_option("--power", power, "Power to reach")
        ->check(kBetween0And1)
        ->capture_default_str();
}

CLI::Option* add_sd(CLI::App& command, double& sd) {
    return command.add_option("--sd", sd, "Standard deviation within the groups")->check(kPositive);
}

CLI::Option* add_list(CLI::App& command, const std::string& name, std::vector<double>& values,
                      const std::string& description) {
    return command.add_option(name, values, description)->delimiter(',')->check(kFinite);
}

void refuse(const std::string& option, const std::string& reason) {
    throw CLI::ValidationError(option, reason);
}

}  // namespace cli
