// statpower anova: the overall F test of a one-way analysis of variance.
#include "statpower/anova.h"

#include <memory>

#include "answer.h"
#include "commands.h"
#include "groups.h"
#include "options.h"

namespace cli {

namespace {

/// The effect is given in one of three ways: means and a standard deviation, f, or a proportion of variance.
struct Design : Groups {
    double f = 0;
    double variance_explained = 0;
    int groups = 0;
    Axes axes;

    bool has_means() const { return !means.empty(); }
    bool has_effect() const { return has_means() || f > 0 || variance_explained > 0; }
    int effect_size_type() const { return variance_explained > 0 ? 1 : 0; }
    double effect_size() const { return effect_size_type() != 0 ? variance_explained : f; }

    double power(const std::vector<double>& group_sizes) const {
        if (has_means()) return PowerOverallTest(k(), means.data(), group_sizes.data(), sd, alpha);
        return PowerOverallTestwES(k(), effect_size_type(), group_sizes.data(), effect_size(), alpha);
    }
};

/// The options of an effect, of which at most one is given.
CLI::Option_group* add_effect(CLI::App& command, Design& d) {
    auto* sd = add_sd(command, d.sd);
    auto* effect = command.add_option_group("effect", "How large is the effect?");
    effect->require_option(0, 1);
    add_list(*effect, "--means", d.means, "Group means (with --sd)")->needs(sd);
    effect->add_option("--f", d.f, "Root mean square standardised effect")->check(kPositive);
    effect->add_option("--variance-explained", d.variance_explained, "Proportion of variance explained")
        ->check(kBetween0And1);
    return effect;
}

void add_power(CLI::App& anova) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(anova, "power", "Power of a design", [d] {
        check_groups(*d, "--sizes");
        const double total = SampleSizeTotal(d->k(), d->sizes.data());
        check_total(*d, "--sizes", total);
        return Report{{"test", "one-way analysis of variance, overall F test"},
                      {"group_sizes", d->sizes},
                      {"total", total},
                      {"alpha", d->alpha},
                      {"power", d->power(d->sizes)}};
    });
    add_sizes(*command, *d);
    add_effect(*command, *d)->require_option(1);
    add_alpha(*command, d->alpha);
}

void add_size(CLI::App& anova) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(anova, "size", "Group sizes that reach a power", [d] {
        check_groups(*d, "--weights");
        std::vector<double> sizes;
        const double total = d->has_means()
                                 ? PowerReverseOverallTest(d->k(), d->means.data(), d->sizes.data(), &sizes,
                                                           d->sd, d->target, d->alpha)
                                 : PowerReverseOverallTestwES(d->k(), d->effect_size_type(), d->sizes.data(),
                                                              &sizes, d->effect_size(), d->target, d->alpha);
        const double power = d->power(sizes);
        if (is_smallest_allocation(*d, total) && power < d->target)
            throw NoAnswer("no sample size reaches the power: is there an effect?");
        return Report{{"test", "one-way analysis of variance, overall F test"},
                      {"target_power", d->target},
                      {"alpha", d->alpha},
                      {"group_sizes", sizes},
                      {"total", total},
                      {"power", power}};
    });
    add_weights(*command, *d);
    add_effect(*command, *d)->require_option(1);
    add_target_power(*command, d->target);
    add_alpha(*command, d->alpha);
}

void add_effect_size(CLI::App& anova) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(anova, "effect", "Root mean square standardised effect", [d] {
        check_groups(*d, "--sizes");
        return Report{
            {"effect", RMSSEOverallTest(d->k(), d->means.data(), d->sizes.data(), d->sd, d->alpha)}};
    });
    add_list(*command, "--means", d->means, "Group means")->required();
    add_sizes(*command, *d);
    add_sd(*command, d->sd)->required();
}

void add_half_width(CLI::App& anova) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(anova, "halfwidth", "Half-width of the confidence interval of a mean", [d] {
        if (!(d->total > d->groups)) refuse("--total", "must be greater than the number of groups");
        return Report{{"total", d->total},
                      {"confidence", 1 - d->alpha},
                      {"half_width", HalfCIOverallTest(d->groups, d->total, d->sd, d->alpha)}};
    });
    command->add_option("--groups", d->groups, "Number of groups")->required()->check(at_least(2));
    command->add_option("--total", d->total, "Total sample size")->required()->check(kPositive);
    add_sd(*command, d->sd)->required();
    add_alpha(*command, d->alpha);
}

void add_half_width_size(CLI::App& anova) {
    auto d = std::make_shared<Design>();
    auto* command = add_command(anova, "halfwidth-size", "Group sizes that reach a half-width", [d] {
        check_groups(*d, "--weights");
        std::vector<double> sizes;
        const double total =
            PowerReversebyHalfCIOverallTest(d->k(), d->sizes.data(), &sizes, d->half_width, d->sd, d->alpha);
        const double half_width = HalfCIOverallTest(d->k(), total, d->sd, d->alpha);
        if (is_smallest_allocation(*d, total) && half_width > d->half_width)
            throw NoAnswer("no sample size reaches the half-width");
        return Report{{"target_half_width", d->half_width},
                      {"confidence", 1 - d->alpha},
                      {"group_sizes", sizes},
                      {"total", total},
                      {"half_width", half_width}};
    });
    add_weights(*command, *d);
    add_target_half_width(*command, *d);
    add_sd(*command, d->sd)->required();
    add_alpha(*command, d->alpha);
}

/// The points of `over`, one of the choices that add_curve offers.
Table curve_of(const Design& d) {
    const auto& [over, n, sd, es, steps] = d.axes;
    const int type = over.ends_with("variance-explained") ? 1 : 0;
    const double *means = d.means.data(), *sizes = d.sizes.data(),
                 step = d.axes.step(over.ends_with("sd") ? sd : es);
    const char* effect = type != 0 ? "variance_explained" : "f";
    if (over == "n" && d.has_means())
        return table_of(PlotNOverallTest(d.k(), means, sizes, n.low, n.high, d.sd, d.alpha), "n", "power");
    if (over == "n")
        return table_of(
            PlotNOverallTestFES(d.k(), d.effect_size_type(), sizes, n.low, n.high, d.effect_size(), d.alpha),
            "n", "power");
    if (over == "sd")
        return table_of(PlotSDOverallTest(d.k(), means, sizes, d.sd, sd.low, sd.high, d.alpha, step), "sd",
                        "power");
    if (over == "n-sd")
        return table_of(
            PlotNaSDOverallTest(d.k(), means, sizes, n.low, n.high, d.sd, sd.low, sd.high, d.alpha, step),
            "n", "sd", "power");
    if (over.starts_with("n-"))
        return table_of(PlotNaESOverallTest(d.k(), type, sizes, n.low, n.high, d.effect_size(), es.low,
                                            es.high, d.alpha, step),
                        "n", effect, "power");
    return table_of(PlotESOverallTest(d.k(), type, sizes, es.low, es.high, d.alpha, step), effect, "power");
}

/// What the axes ask for: means where the standard deviation varies, an effect where only the sample size does.
/// Where both sample size and effect vary, the current effect decides only which sample sizes are chosen.
void check_effect(const Design& d) {
    const std::string& over = d.axes.over;
    if (over.ends_with("variance-explained") && d.axes.es.high > 1)
        refuse("--es-high", "must be at most 1 for a proportion of variance");
    if (over.ends_with("sd")) {
        if (!d.has_means()) refuse("--over " + over, "needs --means and --sd");
    } else if (over == "n") {
        if (!d.has_effect()) refuse("--over n", "needs --means, --f or --variance-explained");
    } else if (over == "n-f" && d.axes.n.low == 0 && !(d.f > 0)) {
        refuse("--over n-f", "needs --f, or --n-low and --n-high");
    } else if (over == "n-variance-explained" && d.axes.n.low == 0 && !(d.variance_explained > 0)) {
        refuse("--over n-variance-explained", "needs --variance-explained, or --n-low and --n-high");
    }
}

void add_curve(CLI::App& anova) {
    auto d = std::make_shared<Design>();
    auto* command = add_curve_command(anova, "curve", "Power curve or surface", [d] {
        check_groups(*d, "--sizes");
        check_axes(d->axes);
        check_effect(*d);
        return curve_of(*d);
    });
    add_sizes(*command, *d);
    add_effect(*command, *d);
    add_axes(*command, d->axes,
             {"n", "f", "variance-explained", "sd", "n-sd", "n-f", "n-variance-explained"});
    add_effect_size_axis(*command, d->axes);
    add_alpha(*command, d->alpha);
}

}  // namespace

void add_anova(CLI::App& app) {
    auto* anova = app.add_subcommand("anova", "One-way analysis of variance: overall F test");
    anova->require_subcommand(1);
    add_power(*anova);
    add_size(*anova);
    add_effect_size(*anova);
    add_half_width(*anova);
    add_half_width_size(*anova);
    add_curve(*anova);
}

}  // namespace cli
