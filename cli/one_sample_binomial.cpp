// statpower prop-one: the test of one proportion.
#include "statpower/one_sample_binomial.h"

#include <map>
#include <memory>

#include "answer.h"
#include "commands.h"
#include "interrupt.h"
#include "options.h"
#include "proportions.h"

namespace cli {

namespace {

const std::map<std::string, int> kIntervals = {{"wald", 0},         {"logit-adjusted", 1}, {"logit", 2},
                                               {"exact", 3},        {"jeffreys", 4},       {"score", 5},
                                               {"agresti-coull", 6}};

/// What the user says of a test.
struct Design {
    TestForm form;
    bool continuity = false;
    double n = 0;
    double p1 = 0;
    double p0 = 0;
    double target = 0.8;

    double power(double N) const {
        return power_or_no_answer(
            PowerOneSampBinom(N, p1, p0, form.alpha, form.exact, form.one_sided, continuity, nullptr));
    }
};

/// What the user says of an interval.
struct Interval {
    int method = 5;
    bool continuity = false;
    double n = 0;
    double p = 0;
    double alpha = 0.05;
    double target = 0;

    double half_width(double N) const { return HalfCIOneSampBinom(N, p, alpha, method, continuity); }
};

void add_continuity(CLI::App& command, bool& continuity) {
    command.add_flag("--continuity", continuity, "Correct for continuity");
}

void add_test(CLI::App& command, Design& d) {
    add_test_form(command, d.form);
    add_continuity(command, d.continuity);
}

void add_interval(CLI::App& command, Interval& i) {
    add_proportion(command, "--p", i.p, "Expected proportion")->required();
    command
        .add_option("--method", i.method,
                    "wald, logit-adjusted, logit, exact, jeffreys, score or agresti-coull (default score)")
        ->transform(CLI::CheckedTransformer(kIntervals));
    add_continuity(command, i.continuity);
    add_alpha(command, i.alpha);
}

void add_power(CLI::App& parent) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(parent, "power", "Power of a design", [d] {
        return Report{{"test", "one proportion, " + d->form.name()},
                      {"n", d->n},
                      {"p1", d->p1},
                      {"p0", d->p0},
                      {"alpha", d->form.alpha},
                      {"power", d->power(d->n)}};
    });
    add_sample_size(*command, d->n, 1, "Number of trials");
    add_proportion(*command, "--p1", d->p1, "Proportion under the alternative")->required();
    add_proportion(*command, "--p0", d->p0, "Proportion under the null hypothesis")->required();
    add_test(*command, *d);
}

void add_size(CLI::App& parent) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(parent, "size", "Number of trials that reaches a power", [d] {
        const double found = interruptible([&](auto* cancel) {
            return PowerReverseOneSampBinom(d->target, d->p1, d->p0, d->form.alpha, d->form.exact,
                                            d->form.one_sided, d->continuity, cancel);
        });
        if (found == -1) refuse("--p1", "must differ from --p0");  // all else has been checked
        const double n = whole_sample_size(found);
        return Report{{"test", "one proportion, " + d->form.name()},
                      {"target_power", d->target},
                      {"alpha", d->form.alpha},
                      {"n", n},
                      {"power", d->power(n)}};
    });
    add_proportion(*command, "--p1", d->p1, "Proportion under the alternative")->required();
    add_proportion(*command, "--p0", d->p0, "Proportion under the null hypothesis")->required();
    add_target_power(*command, d->target);
    add_test(*command, *d);
}

void add_half_width(CLI::App& parent) {
    auto i = std::make_shared<Interval>();
    auto* command = add_command(parent, "halfwidth", "Half-width of a confidence interval", [i] {
        return Report{{"n", i->n},
                      {"confidence", 1 - i->alpha},
                      {"half_width", half_width_or_no_answer(i->half_width(i->n))}};
    });
    add_sample_size(*command, i->n, 1, "Number of trials");
    add_interval(*command, *i);
}

void add_half_width_size(CLI::App& parent) {
    auto i = std::make_shared<Interval>();
    auto* command = add_command(parent, "halfwidth-size", "Number of trials that reaches a half-width", [i] {
        const double n = whole_sample_size(interruptible([&](auto* cancel) {
            return PowerReversebyHalfCIOneSampBinom(i->target, i->p, i->alpha, i->method, i->continuity,
                                                    cancel);
        }));
        return Report{{"target_half_width", i->target},
                      {"confidence", 1 - i->alpha},
                      {"n", n},
                      {"half_width", half_width_or_no_answer(i->half_width(n))}};
    });
    command->add_option("--halfwidth", i->target, "Half-width to reach")->required()->check(kPositive);
    add_interval(*command, *i);
}

void add_curve(CLI::App& parent) {
    auto d = std::make_shared<Design>();
    auto axis = std::make_shared<CurveAxis>();
    auto* command = add_curve_command(parent, "curve", "Power against one quantity", [d, axis] {
        const TestForm& form = d->form;
        if (axis->over == "n")
            return table_of(PlotNOneSampBinom(form.exact, form.one_sided, axis->from, axis->to, d->continuity,
                                              d->n, d->p1, d->p0, form.alpha),
                            "n", "power");
        if (axis->over == "p0")
            return table_of(PlotNullOneSampBinom(form.exact, form.one_sided, d->continuity, d->n, d->p1,
                                                 form.alpha, axis->step),
                            "p0", "power");
        if (axis->over == "p1")
            return table_of(PlotAlterOneSampBinom(form.exact, form.one_sided, d->continuity, d->n, d->p0,
                                                  form.alpha, axis->step),
                            "p1", "power");
        return table_of(PlotRiskDiffOneSampBionm(form.exact, form.one_sided, d->continuity, d->n, d->p0,
                                                 form.alpha, axis->step),
                        "difference", "power");
    });
    d->n = 100;
    d->p1 = d->p0 = 0.5;
    add_curve_axis(*command, *axis, {"n", "p0", "p1", "difference"});
    command->add_option("--n", d->n, "Number of trials, where it is not the axis")
        ->check(at_least(1))
        ->capture_default_str();
    add_proportion(*command, "--p1", d->p1, "Proportion under the alternative")->capture_default_str();
    add_proportion(*command, "--p0", d->p0, "Proportion under the null hypothesis")->capture_default_str();
    add_test(*command, *d);
}

}  // namespace

void add_one_sample_binomial(CLI::App& app) {
    auto* command = app.add_subcommand("prop-one", "One proportion");
    command->require_subcommand(1);
    add_power(*command);
    add_size(*command);
    add_half_width(*command);
    add_half_width_size(*command);
    add_curve(*command);
}

}  // namespace cli
