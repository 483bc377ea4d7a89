// statpower anova: the overall F test of a one-way analysis of variance.
#include "statpower/anova.h"

#include <memory>

#include "answer.h"
#include "commands.h"
#include "options.h"

namespace cli {

namespace {

/// What the user says of a design. The effect is given in one of three ways: means and a standard deviation,
/// f, or a proportion of variance.
struct Design {
    std::vector<double> means;
    std::vector<double> sizes;
    double sd = 0;
    double f = 0;
    double variance_explained = 0;
    double alpha = 0.05;
    double target = 0.8;
    double half_width = 0;
    double total = 0;
    int groups = 0;

    int k() const { return static_cast<int>(sizes.size()); }
    bool has_means() const { return !means.empty(); }
    int effect_size_type() const { return variance_explained > 0 ? 1 : 0; }
    double effect_size() const { return effect_size_type() != 0 ? variance_explained : f; }

    double power(const std::vector<double>& group_sizes) const {
        if (has_means()) return PowerOverallTest(k(), means.data(), group_sizes.data(), sd, alpha);
        return PowerOverallTestwES(k(), effect_size_type(), group_sizes.data(), effect_size(), alpha);
    }
};

void add_sizes(CLI::App& command, const std::string& name, Design& d, const std::string& description) {
    add_list(command, name, d.sizes, description)->required()->check(kPositive);
}

void add_effect(CLI::App& command, Design& d) {
    auto* sd = add_sd(command, d.sd);
    auto* effect = command.add_option_group("effect", "How large is the effect?");
    effect->require_option(1);
    add_list(*effect, "--means", d.means, "Group means (with --sd)")->needs(sd);
    effect->add_option("--f", d.f, "Root mean square standardised effect")->check(kPositive);
    effect->add_option("--variance-explained", d.variance_explained, "Proportion of variance explained")
        ->check(kBetween0And1);
}

void check_groups(const Design& d, const std::string& sizes) {
    if (d.k() < 2) refuse(sizes, "needs a value for each of at least two groups");
    if (d.has_means() && d.means.size() != d.sizes.size())
        refuse("--means", "needs as many values as " + sizes);
}

// The library does not report a search that fails: it answers with the smallest allocation.
bool is_smallest_allocation(const Design& d, double total) {
    return total == 2.0 * d.k();
}

void check_total(const Design& d, const std::string& option, double total) {
    if (!(total > d.k())) refuse(option, "must leave at least one observation more than there are groups");
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
    add_sizes(*command, "--sizes", *d, "Group sizes");
    add_effect(*command, *d);
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
    add_sizes(*command, "--weights", *d, "Allocation weights, of which only the proportions matter");
    add_effect(*command, *d);
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
    add_sizes(*command, "--sizes", *d, "Group sizes, the weights of the grand mean");
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
    add_sizes(*command, "--weights", *d, "Allocation weights, of which only the proportions matter");
    command->add_option("--halfwidth", d->half_width, "Half-width to reach")->required()->check(kPositive);
    add_sd(*command, d->sd)->required();
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
}

}  // namespace cli
