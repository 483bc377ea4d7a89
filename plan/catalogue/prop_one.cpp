// The test of one proportion.
#include "plan/exact_binomial.h"
#include "plan/proportions.h"
#include "plan/vocabulary.h"
#include "statpower/one_sample_binomial.h"

namespace statplan {

namespace {

enum Interval { wald, anscombe_logit, logit, clopper_pearson, jeffreys, wilson, agresti_coull };
const Argument interval{
    .name = "interval",
    .meaning = "Confidence interval of the proportion",
    .kind = Kind::choice,
    .otherwise = wilson,
    .choices = {"wald", "anscombe-logit", "logit", "clopper-pearson", "jeffreys", "wilson", "agresti-coull"}};
const Argument p = p1.means_in_words("Proportion expected").null_at(p0).said("a proportion of {}");
const Measures measures{.difference = risk_difference.means_in_words("Risk difference, p1 - p0"),
                        .ratio = risk_ratio.means_in_words("Risk ratio, p1 / p0"),
                        .odds = odds_ratio.means_in_words("Odds ratio, p1 / (1 - p1) over p0 / (1 - p0)")};

BinomialTest exact_test(const Values& v) {
    return {v[p0], v[alpha], tails_of(v, v[p] - v[p0])};
}

const Entry prop_one{{
    .name = "prop-one",
    .title = "One proportion",
    .family = Family::proportions,
    .study = "One group, a yes or no each: does the proportion of yes differ from a given value?",
    .phrase = "test of one proportion",
    .sizes = one_sample(least_1),
    .power = {.ways = any_of({{{{p, p0}}}, measures_beside_second<p1, p0>(measures)}),
              .options = {alternative, method, continuity.only_with(method, {approximate}), alpha},
              .value =
                  [](const Values& v, Cancel*) {
                      if (v.is(method, exact)) return exact_test(v).power(v[n], v[p]);
                      return found_power(PowerOneSampBinom(v[n], v[p], v[p0], v[alpha], 0, sided(v),
                                                           v.is(continuity, yes), nullptr));
                  },
              .contradiction = [](const Values& v) { return check_follows(v, p, p0); }},
    .effect = [](const Values& v) { return v[p] - v[p0]; },
    .exact_powers = [](const Values& v) -> std::optional<SawTooth> {
        if (v.is(method, approximate)) return {};
        return powers(exact_test(v), v[p]);
    },
    .level = [](const Values& v,
                Cancel*) { return v.is(method, exact) ? exact_test(v).level(v[n]) : kNotGiven; },
    .precision = {.ways = {{{p}}},
                  .options = {interval, continuity.only_with(interval, {wald, wilson}), confidence},
                  .value =
                      [](const Values& v, Cancel*) {
                          return HalfCIOneSampBinom(v[n], v[p], 1 - v[confidence],
                                                    static_cast<int>(v[interval]), v.is(continuity, yes));
                      }},
    .effects = measures_of<p1, p0>(measures),
    .method = [](const Values& v) -> std::string {
        if (v.is(method, exact))
            return sided(v) ? "exact binomial test" : "exact binomial test with half of alpha in each tail";
        return v.is(continuity, yes)
                   ? "normal approximation with continuity correction, the null variance under "
                     "the null hypothesis"
                   : "normal approximation, the null variance under the null hypothesis";
    },
    .performed = [](const Values& v) -> std::string {
        if (v.is(method, exact)) return "exact binomial test of one proportion";
        return v.is(continuity, yes) ? "z test of one proportion with continuity correction"
                                     : "z test of one proportion";
    },
    .sources =
        {"J. L. Fleiss, B. Levin, M. C. Paik, Statistical Methods for Rates and Proportions, 3rd ed. (2003), "
         "chapter 2",
         "A. Agresti, Categorical Data Analysis, 3rd ed. (2013), section 1.4"},
    .examples =
        {{"A proportion of 0.95 against 0.9, exact, one-sided at 0.025, power 0.9",
          "prop-one size --p1 0.95 --p0 0.9 --method exact --alternative one-sided --alpha 0.025 --power 0.9",
          "n", 292, 0, "R: the least n whose power by qbinom and pbinom is at least 0.9"},
         {"Wilson's interval of a proportion of 0.3 from 100 observations",
          "prop-one precision --p1 0.3 --n 100", "halfwidth", 0.08845, 0.000005,
          "R: diff(prop.test(30, 100, correct = FALSE)$conf.int) / 2"}},
}};

}  // namespace

}  // namespace statplan
