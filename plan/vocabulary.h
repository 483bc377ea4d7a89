// The words that all tests share: each argument is said once. A test that knows more about one of its
// arguments says so in a copy (`n.from(4)`), which is still the same argument.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "statplan/catalogue.h"

namespace statplan {

inline constexpr Range kPositive{.low = 0};
inline constexpr Range kNotNegative{.low = 0, .low_open = false};
inline constexpr Range kInside01{.low = 0, .high = 1};
inline constexpr Range kCorrelation{.low = -1, .high = 1};  // both ends excluded: no spread is left at +-1
inline constexpr Range kSize{.low = 1, .low_open = false};

// ---- The test --------------------------------------------------------------------------------------------

enum Alternative { two_sided, one_sided, greater, less };

inline const Argument alternative{
    .name = "alternative",
    .meaning = "Alternative hypothesis; one-sided is the direction of the effect, greater and less say which",
    .kind = Kind::choice,
    .otherwise = two_sided,
    .choices = {"two-sided", "one-sided", "greater", "less"}};

/// Critical values are those of 1 - alpha, which rounds: below the least level, powers would lose all digits.
inline constexpr double kLeastAlpha = 1e-12;
inline const Argument alpha{.name = "alpha",
                            .meaning = "Significance level",
                            .unit = "probability",
                            .range = {.low = kLeastAlpha, .high = 1, .low_open = false},
                            .otherwise = 0.05};

enum Method { approximate, exact };
inline const Argument method{.name = "method",
                             .meaning = "Powers by a normal approximation or by the exact distribution",
                             .kind = Kind::choice,
                             .otherwise = approximate,
                             .choices = {"approximate", "exact"}};

enum Variance { pooled, unpooled };
inline const Argument variance{.name = "variance",
                               .meaning = "Variance estimated from the groups together or each on its own",
                               .kind = Kind::choice,
                               .otherwise = pooled,
                               .choices = {"pooled", "unpooled"}};

enum YesNo { no, yes };
inline const Argument continuity{.name = "continuity",
                                 .meaning = "Continuity correction",
                                 .kind = Kind::choice,
                                 .otherwise = no,
                                 .choices = {"no", "yes"}};

// ---- Sizes -----------------------------------------------------------------------------------------------

inline const Argument n{.name = "n",
                        .meaning = "Sample size",
                        .unit = "observations",
                        .range = kSize,
                        .kind = Kind::whole,
                        .phrase = "{} observations"};
inline const Argument n1{.name = "n1",
                         .meaning = "Size of the first group",
                         .unit = "observations",
                         .range = kSize,
                         .kind = Kind::whole,
                         .phrase = "{} in the first group"};
inline const Argument n2{.name = "n2",
                         .meaning = "Size of the second group",
                         .unit = "observations",
                         .range = kSize,
                         .kind = Kind::whole,
                         .phrase = "{} in the second group"};
inline const Argument total{.name = "total",
                            .meaning = "Sizes of all groups together",
                            .unit = "observations",
                            .range = {.low = 2, .low_open = false},
                            .kind = Kind::whole,
                            .phrase = "{} observations in all"};
inline const Argument sizes{.name = "sizes",
                            .meaning = "Size of each group",
                            .unit = "observations",
                            .range = kSize,
                            .kind = Kind::list,
                            .whole_elements = true,
                            .phrase = "groups of {}"};
inline const Argument ratio{.name = "ratio",
                            .meaning = "Allocation: size of the second group over the first",
                            .range = kPositive,
                            .otherwise = 1,
                            .phrase = "an allocation ratio of {}"};
inline const Argument weights{.name = "weights",
                              .meaning = "Allocation: relative sizes of the groups; equal unless given",
                              .range = kPositive,
                              .kind = Kind::list,
                              .phrase = "an allocation of {}"};
inline const Argument groups{.name = "groups",
                             .meaning = "Number of groups",
                             .unit = "groups",
                             .range = {.low = 2, .low_open = false},
                             .kind = Kind::whole,
                             .phrase = "{} groups"};

// ---- Effects of means ------------------------------------------------------------------------------------

inline const Argument null_mean{.name = "null",
                                .meaning = "Mean under the null hypothesis",
                                .unit = "units of the data",
                                .otherwise = 0,
                                .phrase = "a null mean of {}"};
inline const Argument mean{.name = "mean",
                           .meaning = "Mean expected",
                           .unit = "units of the data",
                           .null = Null{.of = "null", .place = null_mean.place},
                           .phrase = "a mean of {}"};
inline const Argument means{.name = "means",
                            .meaning = "Mean of each group",
                            .unit = "units of the data",
                            .kind = Kind::list,
                            .phrase = "means of {}"};
inline const Argument coefficients{
    .name = "coefficients",
    .meaning = "Contrast: a coefficient for each group, on any scale; they sum to 0",
    .range = {.low = -1e100, .high = 1e100},
    .kind = Kind::list,
    .phrase = "contrast coefficients of {}"};
inline const Argument diff{.name = "diff",
                           .meaning = "Difference of the means, first minus second",
                           .unit = "units of the data",
                           .null = Null{0},
                           .phrase = "a difference of {}"};
inline const Argument sd{.name = "sd",
                         .meaning = "Standard deviation",
                         .unit = "units of the data",
                         .range = kPositive,
                         .phrase = "a standard deviation of {}"};
inline const Argument sd1{.name = "sd1",
                          .meaning = "Standard deviation of the first group",
                          .unit = "units of the data",
                          .range = kPositive,
                          .phrase = "a standard deviation of {} in the first group"};
inline const Argument sd2{.name = "sd2",
                          .meaning = "Standard deviation of the second group",
                          .unit = "units of the data",
                          .range = kPositive,
                          .phrase = "a standard deviation of {} in the second group"};
inline const Argument corr{.name = "corr",
                           .meaning = "Correlation of the two measurements of a pair",
                           .range = kCorrelation,
                           .phrase = "a correlation of {}"};
inline const Argument d{.name = "d",
                        .meaning = "Cohen's d: difference over standard deviation",
                        .unit = "standard deviations",
                        .null = Null{0},
                        .phrase = "a standardised difference d of {}"};
inline const Argument dz{
    .name = "dz",
    .meaning = "Cohen's dz: mean difference over the standard deviation of the differences",
    .unit = "standard deviations",
    .null = Null{0},
    .phrase = "a standardised difference dz of {}"};
inline const Argument f{
    .name = "f",
    .meaning = "Cohen's f: spread of the group means over the standard deviation within groups",
    .unit = "standard deviations",
    .range = kNotNegative,
    .null = Null{0},
    .phrase = "an effect f of {}"};
inline const Argument eta2{.name = "eta2",
                           .meaning = "Eta squared: proportion of the variance that the groups explain",
                           .unit = "proportion",
                           .range = {.low = 0, .high = 1, .low_open = false},
                           .null = Null{0},
                           .phrase = "an explained proportion of variance of {}"};
inline const Argument f2{.name = "f2",
                         .meaning = "Cohen's f squared: explained over unexplained variance",
                         .range = kNotNegative,
                         .null = Null{0},
                         .phrase = "an effect f2 of {}"};

// ---- Effects of correlations and proportions -------------------------------------------------------------

inline const Argument r0{.name = "r0",
                         .meaning = "Correlation under the null hypothesis",
                         .range = kCorrelation,
                         .otherwise = 0,
                         .phrase = "a null correlation of {}"};
inline const Argument r{.name = "r",
                        .meaning = "Correlation expected",
                        .range = kCorrelation,
                        .null = Null{.of = "r0", .place = r0.place},
                        .phrase = "a correlation of {}"};
inline const Argument p0{.name = "p0",
                         .meaning = "Proportion under the null hypothesis",
                         .unit = "probability",
                         .range = kInside01,
                         .phrase = "a null proportion of {}"};
inline const Argument p1{.name = "p1",
                         .meaning = "Proportion expected in the first group",
                         .unit = "probability",
                         .range = kInside01,
                         .phrase = "a proportion of {} in the first group"};
inline const Argument p2{.name = "p2",
                         .meaning = "Proportion expected in the second group",
                         .unit = "probability",
                         .range = kInside01,
                         .null = Null{.of = "p1", .place = p1.place},
                         .phrase = "a proportion of {} in the second group"};
inline const Argument odds_ratio{.name = "odds-ratio",
                                 .meaning = "Odds ratio, p1 / (1 - p1) over p2 / (1 - p2)",
                                 .range = kPositive,
                                 .null = Null{1},
                                 .phrase = "an odds ratio of {}"};
inline const Argument risk_ratio{.name = "risk-ratio",
                                 .meaning = "Risk ratio, p1 / p2",
                                 .range = kPositive,
                                 .null = Null{1},
                                 .phrase = "a risk ratio of {}"};
inline const Argument risk_difference{.name = "risk-difference",
                                      .meaning = "Risk difference, p1 - p2",
                                      .range = {.low = -1, .high = 1},
                                      .null = Null{0},
                                      .phrase = "a risk difference of {}"};
inline const Argument h{.name = "h",
                        .meaning = "Cohen's h: difference of the arcsine-transformed proportions",
                        .null = Null{0},
                        .phrase = "an effect h of {}"};

// ---- Intervals -------------------------------------------------------------------------------------------

inline const Argument confidence{.name = "confidence",
                                 .meaning = "Confidence level of the interval",
                                 .unit = "probability",
                                 .range = kInside01,
                                 .otherwise = 0.95};

// ---- How sizes are given ---------------------------------------------------------------------------------

/// One sample of size n; `least` is the smallest size that the test can do with.
Sizes one_sample(double (*least)(const Values&), const Argument& size = n);
/// Two groups: n each, n1 and n2, n1 and ratio, or total and ratio. Kernels read n1 and n2.
Sizes two_samples(double (*least)(const Values&));
/// k groups: n each, sizes, or total and weights. Kernels read `sizes`.
Sizes k_samples();
/// How many groups a design has: as many as `means`, `coefficients`, `sizes`, `weights` or `groups` say, 0 where
/// nothing does.
int group_count(const Values& v);
/// Refuses a number of groups that these arguments do not agree on. (Effects alone need not know it.)
Check groups_agree(const Values& v);
/// Proportions of the groups in the sample: by `sizes` or else `weights`, equal where neither is given.
std::vector<double> proportions_of_groups(const Values& v);

/// Smallest sizes that most tests can do with.
inline double least_1(const Values&) {
    return 1;
}
inline double least_2(const Values&) {
    return 2;
}

/// Of two groups or measurements: the root mean square of both, exactly either where they are equal.
inline double average_sd(const Values& v) {
    const double quotient = v[sd2] / v[sd1];
    return v[sd1] * std::sqrt((1 + quotient * quotient) / 2);
}

// ---- Answers of the power library ------------------------------------------------------------------------

/// A power. The library's failure values (-1, 2, the missing value) are outside [0, 1]: NaN. The sum of two
/// tails may round to a hair above 1.
inline double probability(double power) {
    constexpr double kRounding = 1e-9;
    return power >= 0 && power <= 1 + kRounding ? std::min(power, 1.0) : kNotGiven;
}

/// A half-width; NaN where there is none (a missing quantile makes it negative).
inline double width(double half_width) {
    return half_width >= 0 && half_width < kInfinity ? half_width : kNotGiven;
}

inline bool sided(const Values& v) {
    return !v.is(alternative, two_sided);
}

}  // namespace statplan
