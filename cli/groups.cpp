#include "groups.h"

#include "options.h"

namespace cli {

namespace {

/// --NAME-low and --NAME-high, which are given together or left to the library together.
template <class Number>
void add_range(CLI::App& command, const std::string& name, Range<Number>& range, const std::string& what,
               const CLI::Validator& lowest, const CLI::Validator& highest) {
    auto* low = command.add_option("--" + name + "-low", range.low,
                                   "First " + what + " (both ends chosen unless given)");
    auto* high = command.add_option("--" + name + "-high", range.high, "Last " + what);
    low->check(lowest)->needs(high);
    high->check(highest)->needs(low);
}

template <class Number>
void check_range(const std::string& name, const Range<Number>& range) {
    if (range.low > range.high) refuse("--" + name + "-low", "must not exceed --" + name + "-high");
}

}  // namespace

void add_sizes(CLI::App& command, Groups& groups) {
    add_list(command, "--sizes", groups.sizes, "Group sizes")->required()->check(kPositive);
}

void add_weights(CLI::App& command, Groups& groups) {
    add_list(command, "--weights", groups.sizes, "Allocation weights, of which only the proportions matter")
        ->required()
        ->check(kPositive);
}

void add_total(CLI::App& command, Groups& groups) {
    add_weights(command, groups);
    command.add_option("--total", groups.total, "Total sample size")->required()->check(kPositive);
}

void add_target_half_width(CLI::App& command, Groups& groups) {
    command.add_option("--halfwidth", groups.half_width, "Half-width to reach")->required()->check(kPositive);
}

void check_list(const Groups& groups, const std::string& option, const std::vector<double>& values,
                const std::string& sizes) {
    if (values.size() != groups.sizes.size()) refuse(option, "needs as many values as " + sizes);
}

void check_groups(const Groups& groups, const std::string& sizes) {
    if (groups.k() < 2) refuse(sizes, "needs a value for each of at least two groups");
    if (!groups.means.empty()) check_list(groups, "--means", groups.means, sizes);
}

void check_total(const Groups& groups, const std::string& option, double total) {
    if (!(total > groups.k()))
        refuse(option, "must leave at least one observation more than there are groups");
}

bool is_smallest_allocation(const Groups& groups, double total) {
    return total == 2.0 * groups.k();
}

void add_axes(CLI::App& command, Axes& axes, const std::vector<std::string>& choices) {
    axes.over = choices.front();
    command.add_option("--over", axes.over, "Axis of the curve, or the two axes of a surface")
        ->check(CLI::IsMember(choices))
        ->capture_default_str();
    add_range(command, "n", axes.n, "total sample size", at_least(2), at_least(2));
    add_range(command, "sd", axes.sd, "standard deviation", kPositive, kPositive);
    command.add_option("--steps", axes.steps, "Steps of an axis that is no sample size")
        ->check(at_least(1))
        ->capture_default_str();
}

void add_effect_size_axis(CLI::App& command, Axes& axes) {
    add_range(command, "es", axes.es, "effect size", at_least(0), kPositive);
}

void check_axes(const Axes& axes) {
    check_range("n", axes.n);
    check_range("sd", axes.sd);
    check_range("es", axes.es);
}

}  // namespace cli
