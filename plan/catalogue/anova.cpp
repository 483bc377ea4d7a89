// One-way analysis of variance: the overall F test of group means.
#include <algorithm>

#include "plan/groups.h"
#include "statpower/anova.h"

namespace statplan {

namespace {

enum Interval { group_mean, grand_mean };
const Argument interval{.name = "interval",
                        .meaning =
                            "Whose interval: the mean of a group (the smallest, where sizes differ) or "
                            "the mean of all groups, weighted by their sizes",
                        .kind = Kind::choice,
                        .otherwise = group_mean,
                        .choices = {"group-mean", "grand-mean"}};
const Argument rmsse{.name = "rmsse",
                     .meaning =
                         "Root mean square standardised effect: the root of the sum of the squared "
                         "deviations of the means from their mean over k - 1, over the standard deviation",
                     .unit = "standard deviations",
                     .range = kNotNegative,
                     .null = Null{0}};

/// Cohen's f: each group counts by its share of the sample. Of means, their deviations from the first one are
/// taken, so that nothing cancels or overflows.
double cohen_f(const Values& v) {
    const auto mean_of = v.list(means);
    if (mean_of.empty()) return v[f];
    const std::vector<double> share = proportions_of_groups(v);
    if (share.size() != mean_of.size()) return kNotGiven;
    constexpr double kHuge = 1e150;  // the power is 1, and the square is finite
    std::vector<double> deviation;
    for (const double m : mean_of) deviation.push_back(std::clamp((m - mean_of[0]) / v[sd], -kHuge, kHuge));
    const double grand = std::inner_product(share.begin(), share.end(), deviation.begin(), 0.0);
    double square = 0;
    for (std::size_t i = 0; i < share.size(); ++i)
        square += share[i] * (deviation[i] - grand) * (deviation[i] - grand);
    return std::sqrt(square);
}

double power_of(const Values& v, Cancel*) {
    const auto size = v.list(sizes);
    const double effect = cohen_f(v);
    if (std::isnan(effect) || !has_error_df(v)) return kNotGiven;
    return probability(PowerOverallTestwES(static_cast<int>(size.size()), 0, size.data(), effect, v[alpha]));
}

double half_width_of(const Values& v, Cancel*) {
    const auto size = v.list(sizes);
    if (!has_error_df(v)) return kNotGiven;
    const double N = total_size(v);
    const double of_grand = HalfCIOverallTest(static_cast<int>(size.size()), N, v[sd], 1 - v[confidence]);
    return width(v.is(interval, grand_mean) ? of_grand : of_grand * std::sqrt(N / std::ranges::min(size)));
}

void from_eta2(Values& v) {
    v.set(f, std::sqrt(v[eta2] / (1 - v[eta2])));
}

const Entry anova{{
    .name = "anova",
    .title = "Group means (one-way analysis of variance)",
    .family = Family::groups,
    .study = "Two or more groups, a measurement each: do any of their means differ?",
    .phrase = "one-way analysis of variance",
    .sizes = k_samples(),
    .power = {.ways = {{{means, sd_within}},
                       {{f}},
                       {{f, groups}},
                       {{eta2}, from_eta2},
                       {{eta2, groups}, from_eta2}},
              .options = {alpha},
              .value = power_of,
              .contradiction = groups_agree},
    .effect = cohen_f,
    // More in one group, the others as they are, can make f smaller.
    .saw_tooth =
        [](const Values& v) {
            return v.has(means) && std::ranges::adjacent_find(v.list(weights), std::not_equal_to<>()) !=
                                       v.list(weights).end();
        },
    .precision = {.ways = {{{sd_within}}, {{sd_within, groups}}},
                  .options = {interval, confidence},
                  .value = half_width_of,
                  .contradiction = groups_agree},
    .effects = {{f, cohen_f},
                {eta2, [](const Values& v) { return 1 / (1 + 1 / (cohen_f(v) * cohen_f(v))); }},
                {rmsse,
                 [](const Values& v) {
                     const std::vector<double> equal(v.list(means).size(), 1);
                     if (equal.empty()) return kNotGiven;
                     return RMSSEOverallTest(static_cast<int>(equal.size()), v.list(means).data(),
                                             equal.data(), v[sd], 0.5);
                 }}},
    .method = [](const Values&) -> std::string { return "noncentral F distribution"; },
    .notes = {"f and eta2 of given means depend on the sizes of the groups: each group counts by its share"},
    .sources =
        {"J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 8"},
    .examples = {{"Four groups, a medium effect f of 0.25 at 0.05, power 0.8",
                  "anova size --f 0.25 --groups 4", "sizes", 45, 0,
                  "J. Cohen, A power primer, Psychological Bulletin 112 (1992), table 2"},
                 {"Four groups of 15 with given means", "anova power --means 10,12,15,11 --sd 5 --n 15",
                  "power", 0.643939868866, 1e-9, "R: power.anova.test(4, 15, var(c(10, 12, 15, 11)), 25)"}},
}};

}  // namespace

}  // namespace statplan
