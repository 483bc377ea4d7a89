// The test of two independent proportions.
#include "plan/exact_two_proportions.h"
#include "plan/proportions.h"
#include "plan/vocabulary.h"
#include "statpower/independent_binomial.h"

namespace statplan {

namespace {

using enum TwoProportions::Statistic;
const Argument statistic{
    .name = "statistic",
    .meaning =
        "Test statistic; chi-square is the z test, t that of the 0/1 outcomes; Fisher's approximately is the "
        "arcsine test with continuity correction",
    .kind = Kind::choice,
    .otherwise = chi_square,
    .choices = {"chi-square", "t", "likelihood-ratio", "fisher"}};
enum Interval { wald, agresti_caffo, uniform_prior, brown_li_jeffreys, hauck_anderson, newcombe };
const Argument interval{
    .name = "interval",
    .meaning = "Confidence interval of the difference p1 - p2",
    .kind = Kind::choice,
    .otherwise = newcombe,
    .choices = {"wald", "agresti-caffo", "uniform-prior", "brown-li-jeffreys", "hauck-anderson", "newcombe"}};
const Argument first = p1.null_at(p2);

TwoProportions exact_test(const Values& v) {
    return {static_cast<TwoProportions::Statistic>(v[statistic]), v.is(variance, pooled),
            v.is(continuity, yes), tails_of(v, v[p1] - v[p2]), v[alpha]};
}

double power_of(const Values& v, Cancel*) {
    if (v.is(method, exact)) return exact_test(v).power(v[n1], v[n2], v[p1], v[p2]);
    // Fisher's corrections of half an observation leave no difference rather than turn it around.
    if (v.is(statistic, fisher) && 0.5 / v[n1] + 0.5 / v[n2] >= std::abs(v[p1] - v[p2])) return v[alpha];
    return found_power(PowerIndSampBinom(v[n1], v[n2], v[p1], v[p2], v[alpha], 0,
                                         static_cast<int>(v[statistic]), sided(v), v.is(continuity, yes),
                                         v.is(variance, pooled), nullptr));
}

Check impossible(const Values& v) {
    if (Check wrong = check_follows(v, p1, p2)) return wrong;
    if (Check wrong = check_follows(v, p2, p1)) return wrong;
    if (v.is(method, exact) && v.is(statistic, t) && v.is(variance, unpooled))
        return Refusal{.argument = "variance",
                       .reason =
                           "is pooled in the exact t test; statistic chi-square has an "
                           "exact one with unpooled variance"};
    return {};
}

/// ", pooled variance, continuity correction", of statistics that have them.
std::string details_of(const Values& v) {
    if (!v.is(statistic, chi_square) && !v.is(statistic, t)) return "";
    std::string details = v.is(variance, pooled) ? ", pooled variance" : ", unpooled variance";
    if (v.is(statistic, chi_square) && v.is(continuity, yes)) details += ", continuity correction";
    return details;
}

std::string performed(const Values& v) {
    const char* const words = v.is(statistic, fisher)       ? "Fisher exact test"
                              : v.is(statistic, chi_square) ? "z test"
                              : v.is(statistic, t)          ? "t test"
                                                            : "likelihood-ratio test";
    const std::string details = details_of(v);
    return std::string(words) + " of two proportions" +
           (details.empty() ? "" : " (" + details.substr(2) + ")");
}

const Entry prop_two{{
    .name = "prop-two",
    .title = "Two independent proportions",
    .family = Family::proportions,
    .study = "Two groups, a yes or no each: do their proportions of yes differ?",
    .phrase = "test of two proportions",
    .sizes = two_samples(least_2),
    .power = {.ways = any_of(
                  {{{{first, p2}}}, measures_beside_first<p1, p2>(), measures_beside_second<p1, p2>()}),
              .options = {alternative, method, statistic, variance.only_with(statistic, {chi_square, t}),
                          continuity.only_with(statistic, {chi_square}), alpha},
              .value = power_of,
              .contradiction = impossible},
    .effect = [](const Values& v) { return v[p1] - v[p2]; },
    .exact_powers = [](const Values& v) -> std::optional<SawTooth> {
        if (v.is(method, approximate)) return {};
        return exact_test(v).powers(v[p1], v[p2]);
    },
    .level = [](const Values& v,
                Cancel* c) { return v.is(method, exact) ? exact_test(v).level(v[n1], v[n2], c) : kNotGiven; },
    .precision = {.ways = {{{first, p2}}},
                  .options = {interval, continuity.only_with(interval, {wald, newcombe}), confidence},
                  .value =
                      [](const Values& v, Cancel*) {
                          return HalfCIIndSampBinom(v[n1], v[n2], v[p1], v[p2], 1 - v[confidence],
                                                    static_cast<int>(v[interval]), v.is(continuity, yes));
                      }},
    .effects = measures_of<p1, p2>(),
    .method = [](const Values& v) -> std::string {
        const bool is_exact = v.is(method, exact);
        if (v.is(statistic, fisher))
            return is_exact ? "Fisher's exact test" : "arcsine approximation of Fisher's test";
        const char* const words = v.is(statistic, chi_square) ? "chi-square (z) test"
                                  : v.is(statistic, t)        ? "t test"
                                                              : "likelihood-ratio test";
        return words + details_of(v) + (is_exact ? ", exact power" : ", approximate power");
    },
    .performed = performed,
    .sources =
        {"J. L. Fleiss, B. Levin, M. C. Paik, Statistical Methods for Rates and Proportions, 3rd ed. (2003), "
         "chapters 3 and 4",
         "R. B. D'Agostino, W. Chase, A. Belanger, The American Statistician 42 (1988) 198-202 (t test)",
         "R. G. Newcombe, Statistics in Medicine 17 (1998) 873-890 (intervals)"},
    .examples = {{"Proportions of 0.5 and 0.75, two-sided at 0.05, power 0.9",
                  "prop-two size --p1 0.5 --p2 0.75 --power 0.9", "n1", 77, 0,
                  "R: power.prop.test(p1 = 0.5, p2 = 0.75, power = 0.9)"},
                 {"The same by Fisher's exact test",
                  "prop-two size --p1 0.5 --p2 0.75 --power 0.9 --statistic fisher --method exact", "n1", 85,
                  0, "R: the least n of which dbinom over the tables that phyper rejects adds up to 0.9"},
                 {"Newcombe's interval of 56 of 70 against 48 of 80, 0.0524 to 0.3339",
                  "prop-two precision --p1 0.8 --p2 0.6 --n1 70 --n2 80", "halfwidth", 0.14075, 0.0001,
                  "R. G. Newcombe, Statistics in Medicine 17 (1998) 873-890, table II, method 10"}},
}};

}  // namespace

}  // namespace statplan
