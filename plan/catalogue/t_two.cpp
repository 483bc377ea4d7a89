// The t tests of two independent means: pooled, and Welch's for unequal variances.
#include "plan/vocabulary.h"
#include "statpower/means.h"

namespace statplan {

namespace {

const Argument sd_each = sd.means_in_words("Standard deviation of each group");
const Argument estimate = variance.means_in_words(
    "Variance of both groups together (pooled), or of each on its own (unpooled: Welch's test)");
const Argument d_average = d.means_in_words(
    "Cohen's d: difference over the standard deviation, the root mean square of both where they differ");
const Argument delta{.name = "delta",
                     .meaning = "Glass's delta: difference over the standard deviation of the second group",
                     .unit = "standard deviations",
                     .null = Null{0}};

void same_sd(Values& v) {
    v.set(sd1, v[sd]), v.set(sd2, v[sd]);
}

/// The library pools exactly where both standard deviations are equal. For Welch's test equal ones are an ulp
/// apart, which moves no result by more than rounding does; where pooling is asked for different ones: NaN.
double second_sd(const Values& v) {
    if (v.is(variance, pooled)) return v[sd1] == v[sd2] ? v[sd2] : kNotGiven;
    return v[sd1] == v[sd2] ? std::nextafter(v[sd2], kInfinity) : v[sd2];
}

Check pooled_differ(const Values& v) {
    if (!v.is(variance, pooled) || !(v.has(sd1) || v.has(sd2)) || v[sd1] == v[sd2]) return {};
    return Refusal{.argument = "variance",
                   .reason = "pooled is for equal standard deviations; use unpooled, or give sd"};
}

const Entry t_two{{
    .name = "t-two",
    .title = "Two independent means (t test)",
    .family = Family::means,
    .study = "Two groups, a measurement each: do their means differ?",
    .phrase = "two-sample t test",
    .sizes = two_samples(least_2),
    .power = {.ways = {{{diff, sd_each}, same_sd},
                       {{diff, sd1, sd2}},
                       {{d_average}, [](Values& v) { v.set(diff, v[d]), v.set(sd, 1), same_sd(v); }}},
              .options = {estimate, alternative, alpha},
              .value =
                  [](const Values& v, Cancel*) {
                      const auto power =
                          sided(v) ? PowerIndependentDirectional : PowerIndependentNondirectional;
                      return probability(power(v[n1], v[diff], v[sd1], v[n2], 0, second_sd(v), v[alpha]));
                  },
              .contradiction = pooled_differ},
    .effect = [](const Values& v) { return v[diff]; },
    // More in one group can mean fewer degrees of freedom.
    .saw_tooth = [](const Values& v) { return v.is(variance, unpooled) && v[ratio] != 1; },
    .precision = {.ways = {{{sd_each}, same_sd}, {{sd1, sd2}}},
                  .options = {estimate, confidence},
                  .value =
                      [](const Values& v, Cancel*) {
                          return width(
                              HalfCIIndependentMeans(v[n1], v[sd1], v[n2], second_sd(v), 1 - v[confidence]));
                      },
                  .contradiction = pooled_differ},
    .effects = {{d_average, [](const Values& v) { return v[diff] / average_sd(v); }},
                {delta, [](const Values& v) { return v[diff] / v[sd2]; }}},
    .method = [](const Values& v) -> std::string {
        return v.is(variance, pooled) ? "noncentral t distribution"
                                      : "noncentral t distribution, Welch-Satterthwaite degrees of freedom";
    },
    .performed = [](const Values& v) -> std::string {
        return v.is(variance, pooled) ? "two-sample t test" : "Welch two-sample t test";
    },
    .sources =
        {"J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 2",
         "B. L. Welch, Biometrika 34 (1947), 28-35; F. E. Satterthwaite, Biometrics Bulletin 2 (1946), "
         "110-114"},
    .examples = {{"A medium effect of half a standard deviation, two-sided at 0.05, power 0.8",
                  "t-two size --d 0.5", "n1", 64, 0,
                  "J. Cohen, A power primer, Psychological Bulletin 112 (1992), table 2"},
                 {"20 in each group, means one standard deviation apart",
                  "t-two power --diff 1 --sd 1 --n 20", "power", 0.868953027725, 1e-10,
                  "R: power.t.test(20, delta = 1, sd = 1, strict = TRUE)"},
                 {"40 and 50 in groups with different standard deviations, Welch's test",
                  "t-two power --diff 5 --sd1 8 --sd2 12 --n1 40 --n2 50 --variance unpooled", "power",
                  0.646437133117, 1e-10, "R: noncentral pt() with Welch-Satterthwaite degrees of freedom"}},
}};

}  // namespace

}  // namespace statplan
