// statpower pairwise: the difference of two of the group means in a one-way design.
#include <map>
#include <memory>

#include "answer.h"
#include "commands.h"
#include "groups.h"
#include "options.h"
#include "statpower/anova.h"

namespace cli {

namespace {

const std::map<std::string, int> kMethods = {{"bonferroni", 0}, {"sidak", 1}, {"none", 2}};

struct Pair : Groups {
    std::vector<int> groups;
    std::string method = "bonferroni";

    int i() const { return groups[0]; }
    int j() const { return groups[1]; }
    int method_code() const { return kMethods.at(method); }

    double power(const std::vector<double>& group_sizes) const {
        return PowerPairwiseDiff(k(), means.data(), group_sizes.data(), i(), j(), method_code(), sd, alpha);
    }
    double half_width_at(const std::vector<double>& group_sizes, double N) const {
        return HalfCIPairwiseDiff(k(), group_sizes.data(), i(), j(), method_code(), N, sd, alpha);
    }

    Report report() const {
        return {{"test", "pairwise difference of group means"}, {"pair", groups}, {"adjustment", method}};
    }
};

void add_pair(CLI::App& command, Pair& p) {
    command.add_option("--pair", p.groups, "The two groups, counted from 1")
        ->required()
        ->delimiter(',')
        ->expected(2);
    add_sd(command, p.sd)->required();
}

void add_level(CLI::App& command, Pair& p) {
    command.add_option("--method", p.method, "Adjustment of the level for the number of pairs")
        ->check(CLI::IsMember(kMethods))
        ->capture_default_str();
    add_alpha(command, p.alpha);
}

void add_means(CLI::App& command, Pair& p) {
    add_list(command, "--means", p.means, "Group means")->required();
}

void check_pair(const Pair& p, const std::string& sizes) {
    check_groups(p, sizes);
    if (!(1 <= p.i() && p.i() < p.j() && p.j() <= p.k()))
        refuse("--pair", "needs two groups in order, counted from 1");
}

void add_power(CLI::App& pairwise) {
    auto p = std::make_shared<Pair>();
    auto* command = add_command(pairwise, "power", "Power of a design", [p] {
        check_pair(*p, "--sizes");
        const double total = SampleSizeTotal(p->k(), p->sizes.data());
        check_total(*p, "--sizes", total);
        Report report = p->report();
        report.update({{"group_sizes", p->sizes},
                       {"total", total},
                       {"alpha", p->alpha},
                       {"power", p->power(p->sizes)}});
        return report;
    });
    add_sizes(*command, *p);
    add_means(*command, *p);
    add_pair(*command, *p);
    add_level(*command, *p);
}

void add_size(CLI::App& pairwise) {
    auto p = std::make_shared<Pair>();
    auto* command = add_command(pairwise, "size", "Group sizes that reach a power", [p] {
        check_pair(*p, "--weights");
        std::vector<double> sizes;
        const double total =
            PowerReversePairwiseDiff(p->k(), p->means.data(), p->sizes.data(), p->i(), p->j(), sizes,
                                     p->method_code(), p->sd, p->target, p->alpha);
        const double power = p->power(sizes);
        if (is_smallest_allocation(*p, total) && power < p->target)
            throw NoAnswer("no sample size reaches the power: do the means differ?");
        Report report = p->report();
        report.update({{"target_power", p->target},
                       {"alpha", p->alpha},
                       {"group_sizes", sizes},
                       {"total", total},
                       {"power", power}});
        return report;
    });
    add_weights(*command, *p);
    add_means(*command, *p);
    add_pair(*command, *p);
    add_level(*command, *p);
    add_target_power(*command, p->target);
}

void add_effect_size(CLI::App& pairwise) {
    auto p = std::make_shared<Pair>();
    auto* command = add_command(pairwise, "effect", "Difference of the means in standard deviations", [p] {
        p->sizes.assign(p->means.size(), 1);
        check_pair(*p, "--means");
        return Report{{"pair", p->groups},
                      {"effect", EffectSizePairwiseDiff(p->k(), p->means.data(), p->sizes.data(), p->i(),
                                                        p->j(), p->sd)}};
    });
    add_means(*command, *p);
    add_pair(*command, *p);
}

void add_half_width(CLI::App& pairwise) {
    auto p = std::make_shared<Pair>();
    auto* command =
        add_command(pairwise, "halfwidth", "Half-width of the confidence interval of a difference", [p] {
            check_pair(*p, "--weights");
            check_total(*p, "--total", p->total);
            return Report{{"pair", p->groups},
                          {"adjustment", p->method},
                          {"total", p->total},
                          {"confidence", 1 - p->alpha},
                          {"half_width", p->half_width_at(p->sizes, p->total)}};
        });
    add_total(*command, *p);
    add_pair(*command, *p);
    add_level(*command, *p);
}

void add_half_width_size(CLI::App& pairwise) {
    auto p = std::make_shared<Pair>();
    auto* command = add_command(pairwise, "halfwidth-size", "Group sizes that reach a half-width", [p] {
        check_pair(*p, "--weights");
        std::vector<double> sizes;
        const double total = PowerReversebyHalfCIPairwiseDiff(
            p->k(), p->sizes.data(), p->i(), p->j(), sizes, p->method_code(), p->half_width, p->sd, p->alpha);
        const double half_width = p->half_width_at(sizes, total);
        if (is_smallest_allocation(*p, total) && half_width > p->half_width)
            throw NoAnswer("no sample size reaches the half-width");
        return Report{
            {"pair", p->groups},          {"adjustment", p->method}, {"target_half_width", p->half_width},
            {"confidence", 1 - p->alpha}, {"group_sizes", sizes},    {"total", total},
            {"half_width", half_width}};
    });
    add_weights(*command, *p);
    add_pair(*command, *p);
    add_level(*command, *p);
    add_target_half_width(*command, *p);
}

}  // namespace

void add_pairwise(CLI::App& app) {
    auto* pairwise =
        app.add_subcommand("pairwise", "One-way analysis of variance: the difference of two means");
    pairwise->require_subcommand(1);
    add_power(*pairwise);
    add_size(*pairwise);
    add_effect_size(*pairwise);
    add_half_width(*pairwise);
    add_half_width_size(*pairwise);
}

}  // namespace cli
