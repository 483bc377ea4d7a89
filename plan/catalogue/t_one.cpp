// The t test of one mean.
#include "plan/vocabulary.h"
#include "statpower/means.h"

namespace statplan {

namespace {

const Entry t_one{{
    .name = "t-one",
    .title = "One mean (t test)",
    .family = Family::means,
    .study = "One group, a measurement each: does its mean differ from a given value?",
    .phrase = "one-sample t test",
    .sizes = one_sample(least_2),
    .power = {.ways = {{{mean, sd, null_mean}},
                       {{d.null_at(0)},
                        [](Values& v) { v.set(mean, v[d]), v.set(sd, 1), v.set(null_mean, 0); }}},
              .options = {alternative, alpha},
              .value =
                  [](const Values& v, Cancel*) {
                      const auto power = sided(v) ? PowerOneSampleDirectional : PowerOneSampleNondirectional;
                      return probability(power(v[n], v[mean], v[sd], v[null_mean], v[alpha]));
                  }},
    .effect = [](const Values& v) { return v[mean] - v[null_mean]; },
    .precision = {.ways = {{{sd}}},
                  .options = {confidence},
                  .value =
                      [](const Values& v, Cancel*) {
                          return width(HalfCIOneSampleMeans(v[n], v[sd], 1 - v[confidence]));
                      }},
    .effects = {{d, [](const Values& v) { return EffectSizeOneSample(v[mean], v[sd], v[null_mean]); }}},
    .method = [](const Values&) -> std::string { return "noncentral t distribution"; },
    .sources =
        {"J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 2"},
    .examples = {{"A medium effect of half a standard deviation, two-sided at 0.05, power 0.8",
                  "t-one size --d 0.5", "n", 34, 0,
                  "R: power.t.test(delta = 0.5, type = \"one.sample\", power = 0.8)"}},
}};

}  // namespace

}  // namespace statplan
