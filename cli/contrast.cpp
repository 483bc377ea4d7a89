// statpower contrast: a specified contrast of group means in a one-way design.
#include <algorithm>
#include <memory>

#include "answer.h"
#include "commands.h"
#include "groups.h"
#include "options.h"
#include "orvcommon/mv.h"
#include "statpower/anova.h"

namespace cli {

namespace {

/// The effect is given by means and a standard deviation, or as the contrast in units of that.
struct Contrast : Groups {
    std::vector<double> coefficients;
    bool one_sided = false;
    double es = 0;
    Axes axes;

    int directional() const { return one_sided ? 1 : 0; }

    double power(const std::vector<double>& group_sizes) {
        if (!means.empty())
            return PowerSC(k(), means.data(), group_sizes.data(), coefficients.data(), directional(), sd,
                           alpha);
        return PowerSCwES(k(), group_sizes.data(), coefficients.data(), directional(), es, alpha);
    }

    double allocate(std::vector<double>& group_sizes) const {
        if (!means.empty())
            return PowerReverseSC(k(), means.data(), sizes.data(), coefficients.data(), &group_sizes,
                                  directional(), sd, target, alpha);
        return PowerReverseSCwES(k(), sizes.data(), coefficients.data(), &group_sizes, directional(), es,
                                 target, alpha);
    }

    Report report() const {
        return {{"test", "contrast of group means"},
                {"alternative", one_sided ? "one-sided" : "two-sided"},
                {"coefficients", coefficients}};
    }
};

/// The library makes the last coefficient complete the sum to zero; all answers use and show it as repaired.
void check_contrast(Contrast& c, const std::string& sizes) {
    check_groups(c, sizes);
    check_list(c, "--coefficients", c.coefficients, sizes);
    const double any_mean_will_do = EffectSizeSC(c.k(), c.sizes.data(), c.coefficients.data(), 1);
    if (OrvCommon_940::OrvMV::IsMissing(any_mean_will_do))
        refuse("--coefficients", "must sum to zero, or a last one between -1 and 1 must make them");
    if (std::all_of(c.coefficients.begin(), c.coefficients.end(), [](double x) { return x == 0; }))
        refuse("--coefficients", "must not all be zero");
}

void add_coefficients(CLI::App& command, Contrast& c) {
    add_list(command, "--coefficients", c.coefficients, "Coefficients of the contrast, which sum to zero")
        ->required();
}

void add_test(CLI::App& command, Contrast& c) {
    add_coefficients(command, c);
    auto* sd = add_sd(command, c.sd);
    auto* effect = command.add_option_group("effect", "How large is the effect?");
    effect->require_option(1);
    add_list(*effect, "--means", c.means, "Group means (with --sd)")->needs(sd);
    effect->add_option("--es", c.es, "Contrast of the means in standard deviations")->check(kFinite);
    command.add_flag("--one-sided", c.one_sided, "One-sided t test (two-sided F test unless given)");
    add_alpha(command, c.alpha);
}

void add_power(CLI::App& contrast) {
    auto c = std::make_shared<Contrast>();
    auto* command = add_command(contrast, "power", "Power of a design", [c] {
        check_contrast(*c, "--sizes");
        const double total = SampleSizeTotal(c->k(), c->sizes.data());
        check_total(*c, "--sizes", total);
        Report report = c->report();
        report.update({{"group_sizes", c->sizes},
                       {"total", total},
                       {"alpha", c->alpha},
                       {"power", c->power(c->sizes)}});
        return report;
    });
    add_sizes(*command, *c);
    add_test(*command, *c);
}

void add_size(CLI::App& contrast) {
    auto c = std::make_shared<Contrast>();
    auto* command = add_command(contrast, "size", "Group sizes that reach a power", [c] {
        check_contrast(*c, "--weights");
        std::vector<double> sizes;
        const double total = c->allocate(sizes);
        const double power = c->power(sizes);
        if (is_smallest_allocation(*c, total) && power < c->target)
            throw NoAnswer("no sample size reaches the power: is there an effect?");
        Report report = c->report();
        report.update({{"target_power", c->target},
                       {"alpha", c->alpha},
                       {"group_sizes", sizes},
                       {"total", total},
                       {"power", power}});
        return report;
    });
    add_weights(*command, *c);
    add_test(*command, *c);
    add_target_power(*command, c->target);
}

void add_effect_size(CLI::App& contrast) {
    auto c = std::make_shared<Contrast>();
    auto* command = add_command(contrast, "effect", "Contrast of the means in standard deviations", [c] {
        c->sizes.assign(c->means.size(), 1);
        check_contrast(*c, "--means");
        return Report{{"coefficients", c->coefficients},
                      {"effect", EffectSizeSC(c->k(), c->means.data(), c->coefficients.data(), c->sd)}};
    });
    add_list(*command, "--means", c->means, "Group means")->required();
    add_coefficients(*command, *c);
    add_sd(*command, c->sd)->required();
}

void add_half_width(CLI::App& contrast) {
    auto c = std::make_shared<Contrast>();
    auto* command =
        add_command(contrast, "halfwidth", "Half-width of the confidence interval of a contrast", [c] {
            check_contrast(*c, "--weights");
            check_total(*c, "--total", c->total);
            return Report{{"coefficients", c->coefficients},
                          {"total", c->total},
                          {"confidence", 1 - c->alpha},
                          {"half_width", HalfCISCTest(c->k(), c->sizes.data(), c->coefficients.data(),
                                                      c->total, c->sd, c->alpha)}};
        });
    add_total(*command, *c);
    add_coefficients(*command, *c);
    add_sd(*command, c->sd)->required();
    add_alpha(*command, c->alpha);
}

void add_half_width_size(CLI::App& contrast) {
    auto c = std::make_shared<Contrast>();
    auto* command = add_command(contrast, "halfwidth-size", "Group sizes that reach a half-width", [c] {
        check_contrast(*c, "--weights");
        std::vector<double> sizes;
        const double total = PowerReversebyHalfCISCTest(c->k(), c->sizes.data(), c->coefficients.data(),
                                                        &sizes, c->half_width, c->sd, c->alpha);
        const double half_width =
            HalfCISCTest(c->k(), sizes.data(), c->coefficients.data(), total, c->sd, c->alpha);
        if (is_smallest_allocation(*c, total) && half_width > c->half_width)
            throw NoAnswer("no sample size reaches the half-width");
        return Report{{"coefficients", c->coefficients},
                      {"target_half_width", c->half_width},
                      {"confidence", 1 - c->alpha},
                      {"group_sizes", sizes},
                      {"total", total},
                      {"half_width", half_width}};
    });
    add_weights(*command, *c);
    add_coefficients(*command, *c);
    add_target_half_width(*command, *c);
    add_sd(*command, c->sd)->required();
    add_alpha(*command, c->alpha);
}

/// The points of `over`, one of the choices that add_curve offers.
Table curve_of(Contrast& c) {
    const auto& [over, n, sd, es, steps] = c.axes;
    const double *means = c.means.data(), *sizes = c.sizes.data();
    double* coefficients = c.coefficients.data();
    if (over == "n" && c.means.empty())
        return table_of(PlotNSCFES(c.k(), sizes, coefficients, n.low, n.high, c.directional(), c.es, c.alpha),
                        "n", "power");
    if (over == "n")
        return table_of(
            PlotNSC(c.k(), means, sizes, coefficients, n.low, n.high, c.directional(), c.sd, c.alpha), "n",
            "power");
    if (over == "sd")
        return table_of(PlotSDSC(c.k(), means, sizes, coefficients, c.directional(), c.sd, sd.low, sd.high,
                                 c.alpha, c.axes.step(sd)),
                        "sd", "power");
    return table_of(PlotNaSDSC(c.k(), means, sizes, coefficients, n.low, n.high, c.directional(), c.sd,
                               sd.low, sd.high, c.alpha, c.axes.step(sd)),
                    "n", "sd", "power");
}

void add_curve(CLI::App& contrast) {
    auto c = std::make_shared<Contrast>();
    auto* command = add_curve_command(contrast, "curve", "Power curve or surface", [c] {
        check_contrast(*c, "--sizes");
        check_axes(c->axes);
        if (c->means.empty() && c->axes.over != "n")
            refuse("--over " + c->axes.over, "needs --means and --sd");
        if (c->means.empty() && c->axes.n.low == 0) refuse("--es", "needs --n-low and --n-high");
        return curve_of(*c);
    });
    add_sizes(*command, *c);
    add_test(*command, *c);
    add_axes(*command, c->axes, {"n", "sd", "n-sd"});
}

}  // namespace

void add_contrast(CLI::App& app) {
    auto* contrast = app.add_subcommand("contrast", "One-way analysis of variance: a contrast of means");
    contrast->require_subcommand(1);
    add_power(*contrast);
    add_size(*contrast);
    add_effect_size(*contrast);
    add_half_width(*contrast);
    add_half_width_size(*contrast);
    add_curve(*contrast);
}

}  // namespace cli
