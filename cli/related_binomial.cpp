// statpower prop-paired: the test of paired proportions.
#include "statpower/related_binomial.h"

#include <map>
#include <memory>

#include "answer.h"
#include "commands.h"
#include "interrupt.h"
#include "options.h"
#include "proportions.h"

namespace cli {

namespace {

const std::map<std::string, int> kIntervals = {{"wald", 0}, {"adjusted-1", 1}, {"adjusted-2", 2}};

/// What the user says of a test: probabilities of discordant pairs, or margins and their correlation.
struct Design {
    TestForm form;
    double n = 0;
    double p1 = 0;
    double p2 = 0;
    std::vector<double> margins;
    double rho = 0;
    double target = 0.8;

    bool has_margins() const { return !margins.empty(); }

    double power(double N, OrvCommon_940::OrvQueryCancel* cancel) const {
        return has_margins()
                   ? PowerbyMargPRelSampBionm(form.one_sided, form.exact, N, margins[0], margins[1], rho,
                                              form.alpha)
                   : PowerbyPRelSampBionm(form.one_sided, form.exact, cancel, N, p1, p2, form.alpha);
    }
    double size(OrvCommon_940::OrvQueryCancel* cancel) const {
        return has_margins() ? PowerReversebyMargPRelSampBionm(form.one_sided, form.exact, cancel, target,
                                                               margins[0], margins[1], rho, form.alpha)
                             : PowerReversebyPRelSampBionm(form.one_sided, form.exact, cancel, target, p1, p2,
                                                           form.alpha);
    }
};

/// What the user says of an interval.
struct Interval {
    int method = 1;
    bool continuity = false;
    double n = 0;
    double p1 = 0;
    double p2 = 0;
    double alpha = 0.05;
    double target = 0;

    double half_width(double N) const { return HalfCIRelSampBinom(method, continuity, N, p1, p2, alpha); }
};

/// The axis of a curve, of ratios with a range.
struct PairedAxis : CurveAxis {
    double low = 0;
    double high = 0;
};

void check_cells(double p1, double p2) {
    if (p1 + p2 > 1) refuse("--p2", "must not exceed 1 together with --p1");
}

/// The design as the user gave it; a wrong one is refused.
void check_design(const Design& d) {
    check_cells(d.p1, d.p2);
    if (d.has_margins() && d.margins.size() != 2) refuse("--margins", "needs two values");
}

void add_cells(CLI::App& command, double& p1, double& p2) {
    auto* first = add_proportion(command, "--p1", p1, "Probability of a pair positive, then negative");
    auto* second = add_proportion(command, "--p2", p2, "Probability of a pair negative, then positive");
    first->needs(second);
    second->needs(first);
}

void add_margins(CLI::App& command, Design& d) {
    auto* margins =
        add_list(command, "--margins", d.margins, "Probabilities of a positive first and second response")
            ->check(kBetween0And1)
            ->excludes("--p1");
    command.add_option("--rho", d.rho, "Correlation of the two responses (with --margins)")
        ->check(kCorrelation)
        ->needs(margins);
}

void add_design(CLI::App& command, Design& d) {
    auto* design = command.add_option_group("design", "Which pairs are discordant?");
    design->require_option(1, 2);
    add_cells(*design, d.p1, d.p2);
    add_margins(*design, d);
    add_test_form(command, d.form);
}

void add_interval(CLI::App& command, Interval& i) {
    add_cells(command, i.p1, i.p2);
    command.get_option("--p1")->required();
    command.add_option("--method", i.method, "wald, adjusted-1 or adjusted-2 (default adjusted-1)")
        ->transform(CLI::CheckedTransformer(kIntervals));
    command.add_flag("--continuity", i.continuity, "Correct the Wald interval for continuity");
    add_alpha(command, i.alpha);
}

void add_power(CLI::App& parent) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(parent, "power", "Power of a design", [d] {
        check_design(*d);
        // The library cannot cancel the power of margins, so Ctrl-C must end the program itself.
        const double power = d->has_margins()
                                 ? d->power(d->n, nullptr)
                                 : interruptible([&](auto* cancel) { return d->power(d->n, cancel); });
        return Report{{"test", "paired proportions, " + d->form.name()},
                      {"pairs", d->n},
                      {"alpha", d->form.alpha},
                      {"power", power_or_no_answer(power)}};
    });
    add_sample_size(*command, d->n, 2, "Number of pairs");
    add_design(*command, *d);
}

void add_size(CLI::App& parent) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(parent, "size", "Number of pairs that reaches a power", [d] {
        check_design(*d);
        const double n = whole_sample_size(interruptible([&](auto* cancel) { return d->size(cancel); }));
        return Report{{"test", "paired proportions, " + d->form.name()},
                      {"target_power", d->target},
                      {"alpha", d->form.alpha},
                      {"pairs", n},
                      {"power", power_or_no_answer(d->power(n, nullptr))}};
    });
    add_design(*command, *d);
    add_target_power(*command, d->target);
}

void add_half_width(CLI::App& parent) {
    auto i = std::make_shared<Interval>();
    auto* command = add_command(parent, "halfwidth", "Half-width of the interval of the difference", [i] {
        check_cells(i->p1, i->p2);
        return Report{{"pairs", i->n},
                      {"confidence", 1 - i->alpha},
                      {"half_width", half_width_or_no_answer(i->half_width(i->n))}};
    });
    add_sample_size(*command, i->n, 1, "Number of pairs");
    add_interval(*command, *i);
}

void add_half_width_size(CLI::App& parent) {
    auto i = std::make_shared<Interval>();
    auto* command = add_command(parent, "halfwidth-size", "Number of pairs that reaches a half-width", [i] {
        check_cells(i->p1, i->p2);
        const double n = whole_sample_size(interruptible([&](auto* cancel) {
            return PowerReversebyHalfCIRelSampBinom(i->method, i->continuity, cancel, i->target, i->p1, i->p2,
                                                    i->alpha);
        }));
        return Report{{"target_half_width", i->target},
                      {"confidence", 1 - i->alpha},
                      {"pairs", n},
                      {"half_width", half_width_or_no_answer(i->half_width(n))}};
    });
    command->add_option("--halfwidth", i->target, "Half-width to reach")->required()->check(kPositive);
    add_interval(*command, *i);
}

void add_curve(CLI::App& parent) {
    auto d = std::make_shared<Design>();
    auto axis = std::make_shared<PairedAxis>();
    auto* command = add_curve_command(parent, "curve", "Power against one quantity", [d, axis] {
        check_design(*d);
        if (d->has_margins() != (axis->over == "correlation"))
            refuse("--margins", "and a curve over the correlation go together");
        const int sided = d->form.one_sided;
        const int exact = d->form.exact;
        const double alpha = d->form.alpha;
        if (axis->over == "n")
            return table_of(PlotNRelSampBionm(axis->from, axis->to, sided, exact, d->n, d->p1, d->p2, alpha),
                            "pairs", "power");
        if (axis->over == "difference")
            return table_of(PlotRiskDiffRelSampBionm(sided, exact, d->n, d->p1, alpha, axis->step),
                            "difference", "power");
        if (axis->over == "ratio")
            return table_of(PlotRiskRatioRelSampBionm(sided, exact, d->n, d->p1, d->p2, axis->low, axis->high,
                                                      alpha, axis->step),
                            "ratio", "power");
        if (axis->over == "odds-ratio")
            return table_of(PlotOddsRatioRelSampBionm(sided, exact, d->n, d->p1, axis->low, axis->high, alpha,
                                                      axis->step),
                            "odds_ratio", "power");
        return table_of(
            PlotCorrRelSampBionm(sided, exact, d->n, d->margins[0], d->margins[1], alpha, axis->step),
            "correlation", "power");
    });
    d->n = 100;
    add_curve_axis(*command, *axis, {"n", "difference", "ratio", "odds-ratio", "correlation"});
    command->add_option("--low", axis->low, "Lowest ratio, 0 for the default range")->capture_default_str();
    command->add_option("--high", axis->high, "Highest ratio, 0 for the default range")
        ->capture_default_str();
    command->add_option("--n", d->n, "Number of pairs, where it is not the axis")
        ->check(at_least(2))
        ->capture_default_str();
    add_design(*command, *d);
}

}  // namespace

void add_related_binomial(CLI::App& app) {
    auto* command = app.add_subcommand("prop-paired", "Paired proportions");
    command->require_subcommand(1);
    add_power(*command);
    add_size(*command);
    add_half_width(*command);
    add_half_width_size(*command);
    add_curve(*command);
}

}  // namespace cli
