// The test of paired proportions.
#include <algorithm>

#include "plan/exact_binomial.h"
#include "plan/proportions.h"
#include "plan/text.h"
#include "plan/vocabulary.h"
#include "statpower/related_binomial.h"

namespace statplan {

namespace {

constexpr Range kCell{.low = 0, .high = 1, .low_open = false};
const Argument p01{.name = "p01",
                   .meaning = "Probability of a pair with a no first and a yes second",
                   .unit = "probability",
                   .range = kCell,
                   .phrase = "a probability of {} of no then yes"};
const Argument p10 = Argument{.name = "p10",
                              .meaning = "Probability of a pair with a yes first and a no second",
                              .unit = "probability",
                              .range = kCell,
                              .phrase = "a probability of {} of yes then no"}
                         .null_at(p01);
const Argument discordant{.name = "discordant",
                          .meaning = "Probability of a discordant pair, p10 + p01",
                          .unit = "probability",
                          .range = kInside01,
                          .phrase = "a proportion of {} of discordant pairs"};
const Argument rho{.name = "rho",
                   .meaning = "Correlation of the two responses of a pair",
                   .range = {.low = -1, .high = 1, .low_open = false, .high_open = false},
                   .phrase = "a correlation of {} of the responses"};
const Argument first =
    p1.means_in_words("Proportion of yes in the first response").null_at(p2).said("a proportion of {} first");
const Argument second = p2.means_in_words("Proportion of yes in the second response").said("{} second");
const Argument pair_ratio = odds_ratio.means_in_words("Odds ratio of the discordant pairs, p10 / p01");

enum Interval { wald, agresti_min, bonett_price };
const Argument interval{.name = "interval",
                        .meaning = "Confidence interval of the difference of the proportions",
                        .kind = Kind::choice,
                        .otherwise = bonett_price,
                        .choices = {"wald", "agresti-min", "bonett-price"}};

PairedTest exact_test(const Values& v) {
    return {v[p10], v[p01], v[alpha], tails_of(v, v[p10] - v[p01])};
}

void cells_from_margins(Values& v) {
    const double both =
        v[first] * v[second] + v[rho] * std::sqrt(v[first] * (1 - v[first]) * v[second] * (1 - v[second]));
    // A correlation at the end of its range leaves an empty cell but for rounding.
    const auto cell = [](double p) { return std::abs(p) < 1e-14 ? 0 : p; };
    v.set(p10, cell(v[first] - both)), v.set(p01, cell(v[second] - both));
}

/// Tables that no probabilities can have.
Check impossible(const Values& v) {
    if (v.has(rho)) {
        const double a = v[first], b = v[second], spread = std::sqrt(a * (1 - a) * b * (1 - b));
        const double low = (std::max(0.0, a + b - 1) - a * b) / spread,
                     high = (std::min(a, b) - a * b) / spread;
        if (v[rho] < low - 1e-12 || v[rho] > high + 1e-12)
            return Refusal{.argument = "rho",
                           .reason = "no pairs with these proportions have it; from " + number(low) + " to " +
                                     number(high) + " would do"};
    }
    if (v[p10] + v[p01] > 1) return Refusal{.argument = "p10", .reason = "p10 + p01 exceeds 1"};
    if (v[p10] + v[p01] <= 0)
        return Refusal{.argument = "p10", .reason = "no pair is discordant: nothing to test"};
    return {};
}

std::string performed(const Values& v) {
    return v.is(method, exact) ? "exact McNemar test of paired proportions"
                               : "McNemar test of paired proportions";
}

const Entry prop_paired{{
    .name = "prop-paired",
    .title = "Paired proportions (McNemar)",
    .family = Family::proportions,
    .study =
        "Pairs of a yes or no, before and after or of matched subjects: do the proportions of yes differ?",
    .phrase = "McNemar test of paired proportions",
    .sizes = one_sample(least_2, n.means_in_words("Number of pairs").measured_in("pairs").said("{} pairs")),
    .power = {.ways = {{{p10, p01}},
                       {{first, second, rho}, cells_from_margins},
                       {{pair_ratio, discordant},
                        [](Values& v) {
                            v.set(p10, v[discordant] * from_odds(v[pair_ratio]));
                            v.set(p01, v[discordant] / (1 + v[pair_ratio]));
                        }}},
              .options = {alternative, method, alpha},
              .value =
                  [](const Values& v, Cancel*) {
                      if (v.is(method, exact)) return exact_test(v).power(v[n]);
                      return found_power(
                          PowerbyPRelSampBionm(sided(v), 0, nullptr, v[n], v[p10], v[p01], v[alpha]));
                  },
              .contradiction = impossible},
    .effect = [](const Values& v) { return v[p10] - v[p01]; },
    .exact_powers = [](const Values& v) -> std::optional<SawTooth> {
        if (v.is(method, approximate)) return {};
        return exact_test(v).powers();
    },
    .level = [](const Values& v,
                Cancel* c) { return v.is(method, exact) ? exact_test(v).level(v[n], c) : kNotGiven; },
    .precision = {.ways = {{{p10, p01}}, {{first, second, rho}, cells_from_margins}},
                  .options = {interval, continuity.only_with(interval, {wald}), confidence},
                  .value =
                      [](const Values& v, Cancel*) {
                          return HalfCIRelSampBinom(static_cast<int>(v[interval]), v.is(continuity, yes),
                                                    v[n], v[p10], v[p01], 1 - v[confidence]);
                      },
                  .contradiction = impossible},
    .effects = {{risk_difference, [](const Values& v) { return v[p10] - v[p01]; }},
                {pair_ratio, [](const Values& v) { return v[p10] / v[p01]; }},
                {discordant, [](const Values& v) { return v[p10] + v[p01]; }}},
    .method = [](const Values& v) -> std::string {
        if (v.is(method, approximate)) return "normal approximation, unconditional";
        return std::string("exact binomial test of the discordant pairs") +
               (sided(v) ? "" : ", half of alpha in each tail");
    },
    .performed = performed,
    .notes = {"n is the number of pairs, discordant or not"},
    .sources = {"R. S. Connor, Biometrics 43 (1987) 207-211", "S. W. Duffy, Biometrics 40 (1984) 1005-1015",
                "A. Agresti, Y. Min, Statistics in Medicine 24 (2005) 729-740",
                "D. G. Bonett, R. M. Price, J. Educational and Behavioral Statistics 37 (2012) 479-488"},
    .examples =
        {{"Discordant pairs of probability 0.25 and 0.1, two-sided at 0.05, power 0.9",
          "prop-paired size --p10 0.25 --p01 0.1 --power 0.9", "n", 160, 0,
          "R: Connor's formula by pnorm and qnorm"},
         {"The same by the exact test", "prop-paired size --p10 0.25 --p01 0.1 --power 0.9 --method exact",
          "n", 168, 0,
          "R: the sum over dbinom of the discordant pairs of pbinom of the counts that qbinom rejects"}},
}};

}  // namespace

}  // namespace statplan
