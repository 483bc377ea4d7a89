// statpower prop-two: tests and intervals of two independent proportions.
#include "statpower/independent_binomial.h"

#include <map>
#include <memory>
#include <utility>

#include "answer.h"
#include "commands.h"
#include "interrupt.h"
#include "options.h"
#include "orvcommon/mv.h"
#include "proportions.h"

namespace cli {

namespace {

using Names = std::map<std::string, int>;

const Names kTests = {{"chi2", 0}, {"t", 1}, {"lr", 2}, {"fisher", 3}};
const Names kIntervals = {{"wald", 0},       {"agresti-caffo", 1}, {"agresti-caffo-plus", 2},
                          {"half-added", 3}, {"unbiased", 4},      {"hybrid-score", 5}};

/// Axes of a curve.
enum Over { kDifference, kRiskRatio, kOddsRatio, kAllocation, kProportions, kSizes };
const Names kAxes = {{"difference", kDifference}, {"risk-ratio", kRiskRatio},    {"odds-ratio", kOddsRatio},
                     {"allocation", kAllocation}, {"proportions", kProportions}, {"sizes", kSizes}};

const char* name_of(const Names& names, int code) {
    for (const auto& [name, value] : names)
        if (value == code) return name.c_str();
    return "";
}

struct Design {
    int test = 0;
    int interval = 0;
    bool exact = false;
    bool one_sided = false;
    bool continuity_correction = false;
    bool pooled = false;
    std::vector<double> sizes;
    double p1 = 0.5;
    double p2 = 0.5;
    double alpha = 0.05;
    double target = 0.8;
    double ratio = 1;
    double half_width = 0;

    int axis = kDifference;
    double total = 0;
    double from = 0;
    double to = 0;
    double step = 0.05;
    std::vector<int> range1;
    std::vector<int> range2;

    int method() const { return exact ? 1 : 0; }
    int sides() const { return one_sided ? 1 : 0; }

    double power(double n1, double n2) const {
        return interruptible([&](auto* cancel) {
            return PowerIndSampBinom(n1, n2, p1, p2, alpha, method(), test, sides(), continuity_correction,
                                     pooled, cancel);
        });
    }
    double half_width_at(const std::vector<double>& n) const {
        return HalfCIIndSampBinom(n[0], n[1], p1, p2, alpha, interval, continuity_correction);
    }
};

CLI::Option* add_choice(CLI::App& command, const std::string& name, int& code, const Names& names,
                        const std::string& description) {
    std::string choices;
    for (const auto& [choice, value] : names) choices += (choices.empty() ? "" : ", ") + choice;
    const auto to_code = [=](std::string& text) -> std::string {
        const auto found = names.find(text);
        if (found == names.end()) return "must be one of " + choices + ", not " + text;
        text = std::to_string(found->second);
        return "";
    };
    return command.add_option(name, code, description)
        ->type_name("{" + choices + "}")
        ->transform(CLI::Validator(to_code, ""));
}

void add_test(CLI::App& command, Design& d) {
    add_choice(command, "--test", d.test, kTests, "Test, chi2 unless given");
    command.add_flag("--exact", d.exact, "Enumerate the outcomes instead of the normal approximation");
    command.add_flag("--one-sided", d.one_sided, "Test in the direction of the difference only");
    command.add_flag("--continuity", d.continuity_correction, "Continuity correction (chi2)");
    command.add_flag("--pooled", d.pooled, "Variance from both groups together (chi2, t)");
    add_alpha(command, d.alpha);
}

void add_interval(CLI::App& command, Design& d) {
    add_choice(command, "--interval", d.interval, kIntervals, "Interval, wald unless given");
    command.add_flag("--continuity", d.continuity_correction, "Continuity correction (wald, hybrid-score)");
    add_alpha(command, d.alpha);
}

void add_proportions(CLI::App& command, Design& d) {
    command.add_option("--p1", d.p1, "Success probability of group 1")->required()->check(kBetween0And1);
    command.add_option("--p2", d.p2, "Success probability of group 2")->required()->check(kBetween0And1);
}

CLI::Option* add_sizes(CLI::App& command, Design& d) {
    return add_list(command, "--sizes", d.sizes, "Sizes of the two groups")->expected(2)->check(at_least(1));
}

void add_ratio(CLI::App& command, Design& d) {
    command.add_option("--ratio", d.ratio, "Size of group 2 over that of group 1")
        ->check(kPositive)
        ->capture_default_str();
}

/// What a report says of the test.
Report described(const Design& d) {
    return {{"test", name_of(kTests, d.test)},
            {"method", d.exact ? "exact" : "normal approximation"},
            {"sides", d.one_sided ? "one" : "two"},
            {"alpha", d.alpha}};
}

Report with(Report report, const Report& more) {
    report.update(more);
    return report;
}

void check_power(double power) {
    if (!(power >= 0)) throw NoAnswer("this test has no power at these sizes: are the groups too small?");
}

void add_power(CLI::App& prop_two) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(prop_two, "power", "Power of a design", [d] {
        const double power = d->power(d->sizes[0], d->sizes[1]);
        check_power(power);
        return with(described(*d), {{"group_sizes", d->sizes}, {"power", power}});
    });
    add_sizes(*command, *d)->required();
    add_proportions(*command, *d);
    add_test(*command, *d);
}

void add_size(CLI::App& prop_two) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(prop_two, "size", "Group sizes that reach a power", [d] {
        const auto sizes = interruptible([&](auto* cancel) {
            std::vector<double> result;
            PowerReverseIndSampBinom(d->target, d->p1, d->p2, d->ratio, d->alpha, result, d->method(),
                                     d->test, d->sides(), d->continuity_correction, d->pooled, cancel);
            return result;
        });
        if (OrvCommon_940::OrvMV::IsMissing(sizes[0]))
            throw NoAnswer("no sample size reaches the power: is there a difference?");
        return with(
            described(*d),
            {{"target_power", d->target}, {"group_sizes", sizes}, {"power", d->power(sizes[0], sizes[1])}});
    });
    add_proportions(*command, *d);
    add_ratio(*command, *d);
    add_target_power(*command, d->target);
    add_test(*command, *d);
}

void add_half_width(CLI::App& prop_two) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(prop_two, "halfwidth", "Half-width of the interval of the difference", [d] {
        return Report{{"interval", name_of(kIntervals, d->interval)},
                      {"confidence", 1 - d->alpha},
                      {"group_sizes", d->sizes},
                      {"half_width", half_width_or_no_answer(d->half_width_at(d->sizes))}};
    });
    add_sizes(*command, *d)->required();
    add_proportions(*command, *d);
    add_interval(*command, *d);
}

void add_half_width_size(CLI::App& prop_two) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(prop_two, "halfwidth-size", "Group sizes that reach a half-width", [d] {
        const auto sizes = interruptible([&](auto* cancel) {
            std::vector<double> result;
            PowerReversebyHalfCIIndSampBinom(d->half_width, d->p1, d->p2, d->ratio, d->alpha, result,
                                             d->interval, d->continuity_correction, cancel);
            return result;
        });
        if (OrvCommon_940::OrvMV::IsMissing(sizes[0]))
            throw NoAnswer("no sample size reaches the half-width");
        return Report{{"interval", name_of(kIntervals, d->interval)},
                      {"confidence", 1 - d->alpha},
                      {"target_half_width", d->half_width},
                      {"group_sizes", sizes},
                      {"half_width", half_width_or_no_answer(d->half_width_at(sizes))}};
    });
    add_proportions(*command, *d);
    add_ratio(*command, *d);
    command->add_option("--halfwidth", d->half_width, "Half-width to reach")->required()->check(kPositive);
    add_interval(*command, *d);
}

Table curve_of(const Design& d) {
    const auto sizes = [&] {
        if (d.sizes.empty()) refuse("--sizes", "is needed for this axis");
        return d.sizes;
    };
    switch (d.axis) {
        case kDifference:
            return table_of(PlotRiskDiffIndSampBinom(d.method(), d.test, d.sides(), d.continuity_correction,
                                                     d.pooled, sizes()[0], sizes()[1], d.p1, d.alpha, d.step),
                            "difference", "power");
        case kRiskRatio:
            return table_of(
                PlotRiskRatioIndSampBinom(d.method(), d.test, d.sides(), d.continuity_correction, d.pooled,
                                          sizes()[0], sizes()[1], d.p1, d.alpha, d.from, d.to, d.step),
                "risk_ratio", "power");
        case kOddsRatio:
            return table_of(
                PlotOddsRatioIndSampBinom(d.method(), d.test, d.sides(), d.continuity_correction, d.pooled,
                                          sizes()[0], sizes()[1], d.p1, d.alpha, d.from, d.to, d.step),
                "odds_ratio", "power");
        case kAllocation:
            if (!(d.total >= 2)) refuse("--total", "is needed for this axis, at least 2");
            return table_of(
                PlotNRatioIndSampBinom(d.method(), d.test, d.sides(), d.continuity_correction, d.pooled,
                                       d.total, d.p1, d.p2, d.alpha, d.from, d.to, d.step),
                "ratio", "power");
        case kProportions:
            return table_of(
                PlotPropIndSampBinom(d.method(), d.test, d.sides(), d.continuity_correction, d.pooled,
                                     sizes()[0], sizes()[1], d.p1, d.p2, d.alpha, d.step),
                "p1", "p2", "power");
        default:
            if (d.range1.empty() || d.range2.empty()) refuse("--n1", "and --n2 are needed for this axis");
            return table_of(PlotNIndSampBinom(d.method(), d.test, d.sides(), d.continuity_correction,
                                              d.pooled, d.range1[0], d.range1[1], d.range2[0], d.range2[1],
                                              d.range1[1], d.range2[1], d.p1, d.p2, d.alpha),
                            "n1", "n2", "power");
    }
}

void add_curve(CLI::App& prop_two) {
    auto d = std::make_shared<Design>();
    auto* command = add_curve_command(prop_two, "curve", "Power over an effect, the allocation or the sizes",
                                      [d] { return interruptible([&](auto*) { return curve_of(*d); }); });
    add_choice(*command, "--over", d->axis, kAxes, "What varies")->required();
    add_sizes(*command, *d);
    command->add_option("--p1", d->p1, "Success probability of group 1")
        ->check(kBetween0And1)
        ->capture_default_str();
    command->add_option("--p2", d->p2, "Success probability of group 2 (allocation, sizes)")
        ->check(kBetween0And1)
        ->capture_default_str();
    command->add_option("--total", d->total, "Size of both groups together (allocation)")->check(kFinite);
    command->add_option("--from", d->from, "First ratio, 0 leaves it to the program");
    command->add_option("--to", d->to, "Last ratio, at most 10 (allocation: 0 leaves it to the program)");
    command->add_option("--step", d->step, "Step, of a ratio as a fraction of its range")
        ->check(CLI::Range(1e-6, 0.5))
        ->capture_default_str();
    command->add_option("--n1", d->range1, "Smallest and largest size of group 1 (sizes)")
        ->delimiter(',')
        ->expected(2);
    command->add_option("--n2", d->range2, "Smallest and largest size of group 2 (sizes)")
        ->delimiter(',')
        ->expected(2);
    add_test(*command, *d);
}

}  // namespace

void add_prop_two(CLI::App& app) {
    auto* prop_two = app.add_subcommand("prop-two", "Two independent proportions");
    prop_two->require_subcommand(1);
    add_power(*prop_two);
    add_size(*prop_two);
    add_half_width(*prop_two);
    add_half_width_size(*prop_two);
    add_curve(*prop_two);
}

}  // namespace cli
