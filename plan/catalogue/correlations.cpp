// The tests of one correlation, Pearson's, Spearman's or a partial one, by Fisher's z.
#include "plan/vocabulary.h"
#include "statpower/correlation.h"

namespace statplan {

namespace {

const Argument q{.name = "q",
                 .meaning = "Cohen's q: difference of the Fisher-transformed correlations",
                 .null = Null{0},
                 .phrase = "an effect q of {}"};
const Argument bias_correction{.name = "bias-correction",
                               .meaning = "Correct mean and variance of Fisher's z for small samples",
                               .kind = Kind::choice,
                               .otherwise = no,
                               .choices = {"no", "yes"}};
enum ZVariance { bonett_wright, fieller, caruso_cliff };  // the library's codes
const Argument z_variance{.name = "z-variance",
                          .meaning = "Variance of Fisher's z of a rank correlation, by its authors",
                          .kind = Kind::choice,
                          .otherwise = bonett_wright,
                          .choices = {"bonett-wright", "fieller", "caruso-cliff"}};
const Argument partialled_out{.name = "partialled-out",
                              .meaning = "Number of variables partialled out",
                              .unit = "variables",
                              .range = kNotNegative,
                              .kind = Kind::whole,
                              .phrase = "{} variables partialled out"};

void from_q(Values& v) {
    v.set(r, std::tanh(std::atanh(v[r0]) + v[q]));
}

/// A partial correlation is distributed as Pearson's of so many fewer observations.
double n_left(const Values& v) {
    return v.has(partialled_out) ? v[n] - v[partialled_out] : v[n];
}

double pearson_power(const Values& v, Cancel*) {
    return probability(
        PowerbyOneSampPearson(sided(v), v.is(bias_correction, yes), n_left(v), v[r], v[r0], v[alpha]));
}

double pearson_half_width(const Values& v, Cancel*) {
    if (!(n_left(v) > 3)) return kNotGiven;
    return width(HalfCIOneSampPearson(v.is(bias_correction, yes), n_left(v), v[r], 1 - v[confidence]));
}

std::string pearson_method(const Values& v) {
    return v.is(bias_correction, yes) ? "Fisher's z with its small-sample mean and variance" : "Fisher's z";
}

double q_of(const Values& v) {
    return std::atanh(v[r]) - std::atanh(v[r0]);
}

double difference(const Values& v) {
    return v[r] - v[r0];
}

using Value = double (*)(const Values&, Cancel*);

/// The power, with the arguments that every test of a correlation has behind its own options.
Measure power_by(Value value, const Argument& r_expected, std::vector<Argument> options) {
    options.insert(options.end(), {alternative, alpha});
    return {.ways = {{{r_expected, r0}}, {{q, r0}, from_q}}, .options = std::move(options), .value = value};
}

Measure interval_by(Value value, const Argument& r_expected, std::vector<Argument> options) {
    options.push_back(confidence);
    return {.ways = {{{r_expected}}}, .options = std::move(options), .value = value};
}

const Entry pearson{{
    .name = "pearson",
    .title = "Pearson's correlation",
    .family = Family::correlations,
    .study = "One group, two measurements each: does their correlation differ from 0, or a given value?",
    .phrase = "Fisher z test of Pearson's correlation",
    .sizes = one_sample([](const Values&) { return 4.0; }),
    .power = power_by(pearson_power, r, {bias_correction}),
    .effect = difference,
    .precision = interval_by(pearson_half_width, r, {bias_correction}),
    .effects = {{q, q_of}},
    .method = pearson_method,
    .sources = {"R. A. Fisher, Metron 1 (1921), 3-32",
                "H. Hotelling, J. R. Statist. Soc. B 15 (1953), 193-232"},
    .examples = {{"A medium correlation of 0.3, two-sided at 0.05, power 0.8", "pearson size --r 0.3", "n",
                  85, 0, "J. Cohen, A power primer, Psychological Bulletin 112 (1992), table 2"},
                 {"A correlation of 0.5 against one of 0.3, one-sided, 100 observations",
                  "pearson power --r 0.5 --r0 0.3 --n 100 --alternative one-sided", "power", 0.763241959344,
                  1e-9, "R: pnorm((atanh(0.5) - atanh(0.3)) * sqrt(97) - qnorm(0.95))"}},
}};

const Argument r_partial =
    r.means_in_words("Partial correlation expected").said("a partial correlation of {}");

const Entry partial{{
    .name = "partial",
    .title = "Partial correlation",
    .family = Family::correlations,
    .study = "One group, two measurements each, others held constant: does the correlation differ from 0, or "
             "a given value?",
    .phrase = "Fisher z test of a partial correlation",
    .sizes = one_sample([](const Values& v) { return 4 + v[partialled_out]; }),
    .power = power_by(pearson_power, r_partial, {partialled_out, bias_correction}),
    .effect = difference,
    .precision = interval_by(pearson_half_width, r_partial, {partialled_out, bias_correction}),
    .effects = {{q, q_of}},
    .method = pearson_method,
    .notes = {"the test of Pearson's correlation with as many fewer observations as variables are partialled "
              "out"},
    .sources = {"R. A. Fisher, Metron 3 (1924), 329-332",
                "H. Hotelling, J. R. Statist. Soc. B 15 (1953), 193-232"},
    .examples = {{"A partial correlation of 0.3, 4 variables partialled out: 4 more than 85 observations",
                  "partial size --r 0.3 --partialled-out 4", "n", 89, 0,
                  "J. Cohen, A power primer, Psychological Bulletin 112 (1992), table 2"},
                 {"One of 0.3 against 0.1, one-sided, 60 observations, 2 variables partialled out",
                  "partial power --r 0.3 --r0 0.1 --partialled-out 2 --n 60 --alternative one-sided", "power",
                  0.462752515262, 1e-9, "R: pnorm((atanh(0.3) - atanh(0.1)) * sqrt(55) - qnorm(0.95))"}},
}};

const Argument r_of_ranks = r.means_in_words("Rank correlation expected").said("a rank correlation of {}");

/// The variances of z have N - 3 in them, except Caruso and Cliff's.
double least_for_ranks(const Values& v) {
    return v.is(z_variance, caruso_cliff) ? 3 : 4;
}

double spearman_power(const Values& v, Cancel*) {
    if (!(v[n] >= least_for_ranks(v))) return kNotGiven;
    return probability(
        PowerbyOneSampSpearman(static_cast<int>(v[z_variance]), sided(v), v[n], v[r], v[r0], v[alpha]));
}

double spearman_half_width(const Values& v, Cancel*) {
    if (!(v[n] >= least_for_ranks(v))) return kNotGiven;
    return width(HalfCIOneSampSpearman(static_cast<int>(v[z_variance]), v[n], v[r], 1 - v[confidence]));
}

const Entry spearman{{
    .name = "spearman",
    .title = "Spearman's rank correlation",
    .family = Family::correlations,
    .study =
        "One group, two measurements each: does the correlation of their ranks differ from 0, or a given "
        "value?",
    .phrase = "Fisher z test of Spearman's rank correlation",
    .sizes = one_sample(least_for_ranks),
    .power = power_by(spearman_power, r_of_ranks, {z_variance}),
    .effect = difference,
    .precision = interval_by(spearman_half_width, r_of_ranks, {z_variance}),
    .effects = {{q, q_of}},
    .method = [](const Values&) -> std::string { return "Fisher's z of the rank correlation"; },
    .notes = {"the variance of z at the expected correlation serves the null hypothesis too"},
    .sources = {"D. G. Bonett and T. A. Wright, Psychometrika 65 (2000), 23-28",
                "E. C. Fieller, H. O. Hartley and E. S. Pearson, Biometrika 44 (1957), 470-481",
                "J. C. Caruso and N. Cliff, Educ. Psychol. Meas. 57 (1997), 637-654"},
    .examples = {{"A rank correlation of 0.4 in 50 observations", "spearman power --r 0.4 --n 50", "power",
                  0.7980822563, 1e-9,
                  "R: pnorm(atanh(0.4) * sqrt(47 / 1.08) - qnorm(0.975)) and the other tail"},
                 {"Half-width of its 95 % interval", "spearman precision --r 0.4 --n 50", "halfwidth",
                  0.245752253305, 1e-9, "R: tanh(atanh(0.4) +- qnorm(0.975) * sqrt(1.08 / 47))"}},
}};

}  // namespace

}  // namespace statplan
