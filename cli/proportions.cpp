#include "proportions.h"

#include <cmath>

#include "answer.h"
#include "options.h"
#include "orvcommon/mv.h"

namespace cli {

std::string TestForm::name() const {
    return std::string(exact ? "exact test" : "normal approximation") +
           (one_sided ? ", one-sided" : ", two-sided");
}

void add_test_form(CLI::App& command, TestForm& form) {
    command.add_flag("--exact", form.exact, "Exact binomial test instead of the normal approximation");
    command.add_flag("--one-sided", form.one_sided, "Test in the direction of the alternative only");
    add_alpha(command, form.alpha);
}

CLI::Option* add_proportion(CLI::App& command, const std::string& name, double& p,
                            const std::string& description) {
    return command.add_option(name, p, description)->check(kFrom0To1);
}

CLI::Option* add_sample_size(CLI::App& command, double& n, double lowest, const std::string& description) {
    return command.add_option("--n", n, description)->required()->check(at_least(lowest));
}

void add_curve_axis(CLI::App& command, CurveAxis& axis, const std::vector<std::string>& choices) {
    command.add_option("--over", axis.over, "What the curve runs over")
        ->check(CLI::IsMember(choices))
        ->capture_default_str();
    command.add_option("--from", axis.from, "First sample size")->capture_default_str();
    command.add_option("--to", axis.to, "Last sample size")->capture_default_str();
    command.add_option("--step", axis.step, "Distance of the points, of ratios as a fraction of their range")
        ->check(kBetween0And1)
        ->capture_default_str();
}

double power_or_no_answer(double power) {
    if (!(power >= 0)) throw NoAnswer("the power of this design cannot be computed");
    return power;
}

double half_width_or_no_answer(double half_width) {
    if (!std::isfinite(half_width)) throw NoAnswer("the interval of this design does not exist");
    return half_width;
}

double whole_sample_size(double N) {
    if (OrvCommon_940::OrvMV::IsMissing(N)) throw NoAnswer("no sample size reaches the target");
    if (!(N > 0)) throw NoAnswer("the interval of this design does not exist");
    return std::ceil(N);
}

}  // namespace cli
