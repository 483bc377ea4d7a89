// The z test of one mean with a known standard deviation: power in closed form.
#include "orvcommon/dist_fun.h"
#include "plan/vocabulary.h"

namespace statplan {

namespace {

using Normal = OrvMath_940::OrvDistFun;

const Argument known_sd = sd.means_in_words("Known standard deviation");

/// The quantile with `tail` above it, exact for small tails too.
double critical(double tail) {
    return -Normal::IdfStdNorm(tail);
}

const Entry z_one{{
    .name = "z-one",
    .title = "One mean, known standard deviation (z test)",
    .family = Family::means,
    .study =
        "One group, a measurement each, with a standard deviation that is known: does its mean differ from "
        "a given value?",
    .phrase = "one-sample z test",
    .sizes = one_sample(least_1),
    .power = {.ways = {{{mean, known_sd, null_mean}},
                       {{d}, [](Values& v) { v.set(mean, v[d]), v.set(sd, 1), v.set(null_mean, 0); }}},
              .options = {alternative, alpha},
              .value =
                  [](const Values& v, Cancel*) {
                      const double shift = std::sqrt(v[n]) * std::abs((v[mean] - v[null_mean]) / v[sd]);
                      const double z = critical(sided(v) ? v[alpha] : v[alpha] / 2);
                      return Normal::CdfStdNorm(shift - z) + (sided(v) ? 0 : Normal::CdfStdNorm(-shift - z));
                  }},
    .effect = [](const Values& v) { return v[mean] - v[null_mean]; },
    .precision = {.ways = {{{known_sd}}},
                  .options = {confidence},
                  .value =
                      [](const Values& v, Cancel*) {
                          return width(critical((1 - v[confidence]) / 2) * v[sd] / std::sqrt(v[n]));
                      }},
    .effects = {{d, [](const Values& v) { return (v[mean] - v[null_mean]) / v[sd]; }}},
    .method = [](const Values&) -> std::string { return "normal distribution"; },
    .sources =
        {"J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 2"},
    .examples = {{"A medium effect of half a standard deviation, two-sided at 0.05, power 0.8",
                  "z-one size --d 0.5", "n", 32, 0, "((1.959964 + 0.841621) / 0.5)^2 = 31.4, rounded up"},
                 {"50 observations, a mean of 105 against 100 with a standard deviation of 15",
                  "z-one power --mean 105 --null 100 --sd 15 --n 50", "power", 0.654345791737, 1e-10,
                  "R: pnorm(5 / 15 * sqrt(50) - 1.959964) and the other tail"}},
}};

}  // namespace

}  // namespace statplan
