// What the commands for tests of proportions share.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace cli {

/// Which form of a test is asked for.
struct TestForm {
    bool exact = false;
    bool one_sided = false;
    double alpha = 0.05;

    std::string name() const;  ///< "exact test, two-sided"
};

/// --exact, --one-sided and --alpha.
void add_test_form(CLI::App& command, TestForm& form);

/// An option for a proportion, 0 and 1 included.
CLI::Option* add_proportion(CLI::App& command, const std::string& name, double& p,
                            const std::string& description);

/// --n, a sample size.
CLI::Option* add_sample_size(CLI::App& command, double& n, double lowest, const std::string& description);

/// The axis of a curve: sample sizes, or points a step apart.
struct CurveAxis {
    std::string over = "n";
    int from = 2;
    int to = 100;
    double step = 0.05;
};

/// --over with its choices, --from, --to and --step.
void add_curve_axis(CLI::App& command, CurveAxis& axis, const std::vector<std::string>& choices);

/// The power as it is; throws NoAnswer for one of its failure values.
double power_or_no_answer(double power);

/// The half-width; throws NoAnswer where it is not a finite number.
double half_width_or_no_answer(double half_width);

/// The smallest whole sample size that is not below the one found; throws NoAnswer when a search found none.
double whole_sample_size(double N);

}  // namespace cli
