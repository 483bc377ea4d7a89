// One contrast of group means in a one-way design.
#include "plan/groups.h"
#include "statpower/anova.h"

namespace statplan {

namespace {

const Argument psi{.name = "psi",
                   .meaning = "Value of the contrast: the sum of coefficients times means",
                   .unit = "units of the data",
                   .null = Null{0},
                   .phrase = "a contrast of {}"};
const Argument d_psi =
    d.means_in_words("Standardised contrast: psi over the standard deviation within groups")
        .said("a standardised contrast of {}");
const Argument f_psi = f.means_in_words("Cohen's f of the contrast: noncentrality N f^2");

void complete_psi(Values& v) {
    const auto c = v.list(coefficients), m = v.list(means);
    if (c.size() == m.size()) v.set(psi, std::inner_product(c.begin(), c.end(), m.begin(), 0.0));
}

/// Variance of the estimated contrast where the standard deviation is 1.
double unit_variance(const Values& v) {
    const auto c = v.list(coefficients), size = v.list(sizes);
    if (c.size() != size.size()) return kNotGiven;
    return std::inner_product(c.begin(), c.end(), size.begin(), 0.0, std::plus<>(),
                              [](double a, double b) { return a * a / b; });
}

double power_of(const Values& v, Cancel*) {
    const double effect = v[psi] / v[sd];
    if (std::isnan(effect * unit_variance(v)) || !has_error_df(v)) return kNotGiven;
    const auto c = v.list(coefficients), size = v.list(sizes);
    return probability(
        PowerSCwES(static_cast<int>(c.size()), size.data(), c.data(), sided(v), effect, v[alpha]));
}

double half_width_of(const Values& v, Cancel*) {
    const auto c = v.list(coefficients), size = v.list(sizes);
    if (std::isnan(unit_variance(v)) || !has_error_df(v)) return kNotGiven;
    return width(HalfCISCTest(static_cast<int>(c.size()), size.data(), c.data(), total_size(v), v[sd],
                              1 - v[confidence]));
}

Check not_a_contrast(const Values& v) {
    constexpr double kRounding = 1e-10, kZero = 1e-100;
    double sum = 0, absolute = 0;
    for (const double c : v.list(coefficients)) sum += c, absolute += std::abs(c);
    if (absolute < kZero) return Refusal{.argument = "coefficients", .reason = "all are 0"};
    if (std::abs(sum) > kRounding * absolute)
        return Refusal{
            .argument = "coefficients",
            .reason = "do not sum to 0; whole numbers do exactly, as in 2,-1,-1: the scale is free"};
    return groups_agree(v);
}

const Entry contrast{{
    .name = "contrast",
    .title = "A contrast of group means",
    .family = Family::groups,
    .study =
        "Two or more groups, a measurement each: does a weighted comparison of their means differ from 0?",
    .phrase = "test of a contrast in a one-way design",
    .sizes = k_samples(),
    .power = {.ways = {{{means, sd_within, coefficients}, complete_psi},
                       {{psi, sd_within, coefficients}},
                       {{d_psi, coefficients}, [](Values& v) { v.set(psi, v[d]), v.set(sd, 1); }}},
              .options = {alternative, alpha},
              .value = power_of,
              .contradiction = not_a_contrast},
    .effect = [](const Values& v) { return v[psi]; },
    .precision = {.ways = {{{sd_within, coefficients}}},
                  .options = {confidence},
                  .value = half_width_of,
                  .contradiction = not_a_contrast},
    .effects = {{d_psi, [](const Values& v) { return v[psi] / v[sd]; }},
                {f_psi,
                 [](const Values& v) {
                     return std::abs(v[psi]) / v[sd] / std::sqrt(total_size(v) * unit_variance(v));
                 }}},
    .method = [](const Values& v) -> std::string {
        return sided(v) ? "noncentral t distribution" : "noncentral F distribution";
    },
    .notes =
        {"psi, its half-width and d are on the scale of the coefficients; the power does not depend on it"},
    .sources = {"S. E. Maxwell and H. D. Delaney, Designing Experiments and Analyzing Data, 2nd ed. (2004), "
                "chapter 4"},
    .examples = {{"Does the first of four groups differ from the mean of the next two?",
                  "contrast power --means 10,12,15,11 --coefficients 2,-1,-1,0 --sd 5 --n 15", "power",
                  0.585353935125, 1e-9, "R: noncentral pt() with 56 degrees of freedom"},
                 {"A linear trend over four groups of 50",
                  "contrast power --d 0.6 --coefficients -3,-1,1,3 --n 50", "power", 0.156674987795, 1e-9,
                  "R: noncentral pt() with 196 degrees of freedom"}},
}};

}  // namespace

}  // namespace statplan
