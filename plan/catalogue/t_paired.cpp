// The t test of paired measurements: the one-sample test of their differences.
#include "plan/vocabulary.h"
#include "statpower/means.h"

namespace statplan {

namespace {

const Argument pairs = n.means_in_words("Number of pairs").from(2).measured_in("pairs").said("{} pairs");
const Argument sd_diff = sd.means_in_words("Standard deviation of the differences")
                             .said("differences with a standard deviation of {}");
const Argument first_sd = sd1.means_in_words("Standard deviation of the first measurement")
                              .said("a standard deviation of {} at first");
const Argument second_sd = sd2.means_in_words("Standard deviation of the second measurement")
                               .said("a standard deviation of {} at second");
const Argument d_average =
    d.means_in_words("Cohen's d: difference over the root mean square of both standard deviations");

/// The root of sd1^2 + sd2^2 - 2 corr sd1 sd2, so that nothing cancels at high correlations.
void complete_sd(Values& v) {
    const double r = v[corr];
    v.set(sd, std::hypot(v[sd1] - r * v[sd2], v[sd2] * std::sqrt((1 - r) * (1 + r))));
}

const Entry t_paired{{
    .name = "t-paired",
    .title = "Two paired means (t test)",
    .family = Family::means,
    .study = "Pairs of measurements, as before and after: do their means differ?",
    .phrase = "paired t test",
    .sizes = one_sample(least_2, pairs),
    .power = {.ways = {{{diff, sd_diff}},
                       {{diff, first_sd, second_sd, corr}, complete_sd},
                       {{dz}, [](Values& v) { v.set(diff, v[dz]), v.set(sd, 1); }},
                       {{d_average, corr},
                        [](Values& v) {
                            v.set(diff, v[d]), v.set(sd1, 1), v.set(sd2, 1);
                            complete_sd(v);
                        }}},
              .options = {alternative, alpha},
              .value =
                  [](const Values& v, Cancel*) {
                      const auto power = sided(v) ? PowerRelatedDirectionalES : PowerRelatedNondirectionalES;
                      return probability(power(v[n], v[diff] / v[sd], v[alpha]));
                  }},
    .effect = [](const Values& v) { return v[diff]; },
    .precision = {.ways = {{{sd_diff}}, {{first_sd, second_sd, corr}, complete_sd}},
                  .options = {confidence},
                  .value =
                      [](const Values& v, Cancel*) {
                          return width(HalfCIOneSampleMeans(v[n], v[sd], 1 - v[confidence]));
                      }},
    .effects = {{dz, [](const Values& v) { return v[diff] / v[sd]; }},
                {d_average, [](const Values& v) { return v[diff] / average_sd(v); }}},
    .method = [](const Values&) -> std::string { return "noncentral t distribution"; },
    .notes = {"n is the number of pairs, each measured twice"},
    .sources =
        {"J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 2"},
    .examples = {{"Pairs that differ by half the standard deviation of their differences, two-sided at 0.05, "
                  "power 0.8",
                  "t-paired size --dz 0.5", "n", 34, 0,
                  "R: power.t.test(delta = 0.5, type = \"paired\", power = 0.8)"},
                 {"40 pairs, a difference of 1.5 with a standard deviation of 4",
                  "t-paired power --diff 1.5 --sd 4 --n 40", "power", 0.637983333684, 1e-10,
                  "R: power.t.test(40, 1.5, 4, type = \"paired\", strict = TRUE)"}},
}};

}  // namespace

}  // namespace statplan
