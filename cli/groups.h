// Options of a one-way design, as the overall test, contrasts and pairwise differences have them.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "options.h"

namespace cli {

/// What the user says of k groups and of the question.
struct Groups {
    std::vector<double> means;
    std::vector<double> sizes;  ///< group sizes, or the weights of an allocation
    double sd = 0;
    double alpha = 0.05;
    double target = 0.8;
    double half_width = 0;
    double total = 0;

    int k() const { return static_cast<int>(sizes.size()); }
};

void add_sizes(CLI::App& command, Groups& groups);
void add_weights(CLI::App& command, Groups& groups);
/// --total and --weights of a half-width.
void add_total(CLI::App& command, Groups& groups);
/// --halfwidth, the target of a search.
void add_target_half_width(CLI::App& command, Groups& groups);

/// There are two groups at least, and as many means if any; `sizes` is the option that counts them.
void check_groups(const Groups& groups, const std::string& sizes);
/// A list that has one value a group.
void check_list(const Groups& groups, const std::string& option, const std::vector<double>& values,
                const std::string& sizes);
/// A total that leaves degrees of freedom for the error.
void check_total(const Groups& groups, const std::string& option, double total);

/// The total that a search answers with when it fails, which the library does not report.
bool is_smallest_allocation(const Groups& groups, double total);

/// The ends of an axis; 0 and 0 where the user leaves them to the library.
template <class Number>
struct Range {
    Number low = 0;
    Number high = 0;
};

/// The axes of a curve or surface over one-way designs.
struct Axes {
    std::string over;
    Range<int> n;
    Range<double> sd;
    Range<double> es;
    int steps = 20;

    double step(const Range<double>& axis) const { return step_fraction(steps, axis.low, axis.high); }
};

/// --over, whose first choice is the default, the ends of the axes of sample size and standard deviation, and
/// --steps.
void add_axes(CLI::App& command, Axes& axes, const std::vector<std::string>& choices);
/// The ends of the axis of the effect size.
void add_effect_size_axis(CLI::App& command, Axes& axes);
/// The ends of every axis are in order.
void check_axes(const Axes& axes);

}  // namespace cli
