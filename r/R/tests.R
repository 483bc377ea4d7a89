# Written from the catalogue by generate.R: change nothing here, say `scripts/r-package --generate`.

#' Group means (one-way analysis of variance)
#'
#' Two or more groups, a measurement each: do any of their means differ?
#'
#' n is the number in each group. f and eta2 of given means depend on the sizes of the groups:
#' each group counts by its share.
#'
#' @param means Mean of each group. A list of numbers. Unit: units of the data.
#' @param sd Standard deviation within each group. Greater than 0. Unit: units of the data.
#' @param f Cohen's f: spread of the group means over the standard deviation within groups. At
#'   least 0. Unit: standard deviations.
#' @param groups Number of groups. A whole number, at least 2. Unit: groups.
#' @param eta2 Eta squared: proportion of the variance that the groups explain. At least 0 and
#'   less than 1. Unit: proportion.
#' @param n Size of each group. A whole number, at least 1. Unit: observations.
#' @param sizes Size of each group. A list of whole numbers, each at least 1. Unit: observations.
#' @param total Sizes of all groups together. A whole number, at least 2. Unit: observations.
#' @param weights Allocation: relative sizes of the groups; equal unless given. A list of
#'   numbers, each greater than 0.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param interval Whose interval: the mean of a group (the smallest, where sizes differ) or the
#'   mean of all groups, weighted by their sizes. One of `"group-mean"`, `"grand-mean"`.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_anova` a data frame with a row for each design and the columns `f` (Cohen's
#'   f: spread of the group means over the standard deviation within groups); `eta2` (Eta
#'   squared: proportion of the variance that the groups explain); `rmsse` (Root mean square
#'   standardised effect: the root of the sum of the squared deviations of the means from their
#'   mean over k - 1, over the standard deviation).
#' @references
#' J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 8
#' @family tests
#' @examples
#' # Four groups, a medium effect f of 0.25 at 0.05, power 0.8
#' power_anova(f = 0.25, groups = 4)$sizes[1]  # 45
#' # Four groups of 15 with given means
#' power_anova(means = c(10, 12, 15, 11), sd = 5, n = 15)$power  # 0.6439398689
#' @name anova
NULL

#' @rdname anova
#' @export
power_anova <- function(means = NULL, sd = NULL, f = NULL, groups = NULL, eta2 = NULL, n = NULL, sizes = NULL,
    total = NULL, weights = NULL, alpha = 0.05, power = NULL, rule = "smallest", dropout = 0,
    max_n = 1e+07, unknown = NULL) {
  answer("anova", "power")
}

#' @rdname anova
#' @export
precision_anova <- function(sd = NULL, groups = NULL, n = NULL, sizes = NULL, total = NULL, weights = NULL, interval =
    "group-mean", confidence = 0.95, halfwidth = NULL, rule = "smallest", dropout = 0, max_n =
    1e+07, unknown = NULL) {
  answer("anova", "precision")
}

#' @rdname anova
#' @export
effect_anova <- function(means = NULL, sd = NULL, f = NULL, groups = NULL, eta2 = NULL, n = NULL, sizes = NULL,
    total = NULL, weights = NULL) {
  answer("anova", "effect")
}

#' A contrast of group means
#'
#' Two or more groups, a measurement each: does a weighted comparison of their means differ
#' from 0?
#'
#' n is the number in each group. psi, its half-width and d are on the scale of the
#' coefficients; the power does not depend on it.
#'
#' @param means Mean of each group. A list of numbers. Unit: units of the data.
#' @param sd Standard deviation within each group. Greater than 0. Unit: units of the data.
#' @param coefficients Contrast: a coefficient for each group, on any scale; they sum to 0. A
#'   list of numbers, each greater than -1e+100 and less than 1e+100.
#' @param psi Value of the contrast: the sum of coefficients times means. A number. Unit: units
#'   of the data.
#' @param d Standardised contrast: psi over the standard deviation within groups. A number. Unit:
#'   standard deviations.
#' @param n Size of each group. A whole number, at least 1. Unit: observations.
#' @param sizes Size of each group. A list of whole numbers, each at least 1. Unit: observations.
#' @param total Sizes of all groups together. A whole number, at least 2. Unit: observations.
#' @param weights Allocation: relative sizes of the groups; equal unless given. A list of
#'   numbers, each greater than 0.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_contrast` a data frame with a row for each design and the columns `d`
#'   (Standardised contrast: psi over the standard deviation within groups); `f` (Cohen's f of
#'   the contrast: noncentrality N f^2).
#' @references
#' S. E. Maxwell and H. D. Delaney, Designing Experiments and Analyzing Data, 2nd ed. (2004),
#' chapter 4
#' @family tests
#' @examples
#' # Does the first of four groups differ from the mean of the next two?
#' power_contrast(means = c(10, 12, 15, 11), coefficients = c(2, -1, -1, 0),
#'   sd = 5, n = 15)$power  # 0.5853539351
#' # A linear trend over four groups of 50
#' power_contrast(d = 0.6, coefficients = c(-3, -1, 1, 3), n = 50)$power  # 0.1566749878
#' @name contrast
NULL

#' @rdname contrast
#' @export
power_contrast <- function(means = NULL, sd = NULL, coefficients = NULL, psi = NULL, d = NULL, n = NULL, sizes =
    NULL, total = NULL, weights = NULL, alternative = "two-sided", alpha = 0.05, power = NULL,
    rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("contrast", "power")
}

#' @rdname contrast
#' @export
precision_contrast <- function(sd = NULL, coefficients = NULL, n = NULL, sizes = NULL, total = NULL, weights = NULL,
    confidence = 0.95, halfwidth = NULL, rule = "smallest", dropout = 0, max_n = 1e+07,
    unknown = NULL) {
  answer("contrast", "precision")
}

#' @rdname contrast
#' @export
effect_contrast <- function(means = NULL, sd = NULL, coefficients = NULL, psi = NULL, d = NULL, n = NULL, sizes =
    NULL, total = NULL, weights = NULL) {
  answer("contrast", "effect")
}

#' Pairwise comparisons of group means
#'
#' Two or more groups, a measurement each: do the means of two of them differ, tested with all
#' other pairs?
#'
#' n is the number in each group. first and second matter where the groups differ in size; the
#' spread is estimated from all groups.
#'
#' @param means Mean of each group. A list of numbers. Unit: units of the data.
#' @param sd Standard deviation within each group. Greater than 0. Unit: units of the data.
#' @param first First group compared, counted from 1. A whole number, at least 1.
#' @param second Second group compared, counted from 1. A whole number, at least 1.
#' @param diff Difference of the two means compared, first minus second. A number. Unit: units of
#'   the data.
#' @param groups Number of groups. A whole number, at least 2. Unit: groups.
#' @param d Cohen's d: difference over standard deviation. A number. Unit: standard deviations.
#' @param n Size of each group. A whole number, at least 1. Unit: observations.
#' @param sizes Size of each group. A list of whole numbers, each at least 1. Unit: observations.
#' @param total Sizes of all groups together. A whole number, at least 2. Unit: observations.
#' @param weights Allocation: relative sizes of the groups; equal unless given. A list of
#'   numbers, each greater than 0.
#' @param adjustment Adjustment of the level, or of the confidence, for all pairs of groups. One
#'   of `"bonferroni"`, `"sidak"`, `"none"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_pairwise` a data frame with a row for each design and the columns `d`
#'   (Cohen's d: difference over standard deviation).
#' @references
#' S. E. Maxwell and H. D. Delaney, Designing Experiments and Analyzing Data, 2nd ed. (2004),
#' chapter 5
#' @family tests
#' @examples
#' # Groups 1 and 3 of four groups of 15, Bonferroni's adjustment for 6 pairs
#' power_pairwise(means = c(10, 12, 15, 11), sd = 5, n = 15, first = 1,
#'   second = 3)$power  # 0.506115514
#' # Half-width of a difference between two of four groups of 15
#' precision_pairwise(sd = 5, groups = 4, n = 15)$halfwidth  # 4.993806572
#' @name pairwise
NULL

#' @rdname pairwise
#' @export
power_pairwise <- function(means = NULL, sd = NULL, first = NULL, second = NULL, diff = NULL, groups = NULL, d =
    NULL, n = NULL, sizes = NULL, total = NULL, weights = NULL, adjustment = "bonferroni",
    alpha = 0.05, power = NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("pairwise", "power")
}

#' @rdname pairwise
#' @export
precision_pairwise <- function(sd = NULL, first = 1, second = 2, groups = NULL, n = NULL, sizes = NULL, total = NULL,
    weights = NULL, adjustment = "bonferroni", confidence = 0.95, halfwidth = NULL, rule =
    "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("pairwise", "precision")
}

#' @rdname pairwise
#' @export
effect_pairwise <- function(means = NULL, sd = NULL, first = NULL, second = NULL, diff = NULL, groups = NULL, d =
    NULL, n = NULL, sizes = NULL, total = NULL, weights = NULL) {
  answer("pairwise", "effect")
}

#' One mean (t test)
#'
#' One group, a measurement each: does its mean differ from a given value?
#'
#' @param mean Mean expected. A number. Unit: units of the data.
#' @param sd Standard deviation. Greater than 0. Unit: units of the data.
#' @param null Mean under the null hypothesis. A number. Unit: units of the data.
#' @param d Cohen's d: difference over standard deviation. A number. Unit: standard deviations.
#' @param n Sample size. A whole number, at least 1. Unit: observations.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_t_one` a data frame with a row for each design and the columns `d` (Cohen's
#'   d: difference over standard deviation).
#' @references
#' J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 2
#' @family tests
#' @examples
#' # A medium effect of half a standard deviation, two-sided at 0.05, power 0.8
#' power_t_one(d = 0.5)$n  # 34
#' @name t_one
NULL

#' @rdname t_one
#' @export
power_t_one <- function(mean = NULL, sd = NULL, null = 0, d = NULL, n = NULL, alternative = "two-sided", alpha =
    0.05, power = NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("t_one", "power")
}

#' @rdname t_one
#' @export
precision_t_one <- function(sd = NULL, n = NULL, confidence = 0.95, halfwidth = NULL, rule = "smallest", dropout = 0,
    max_n = 1e+07, unknown = NULL) {
  answer("t_one", "precision")
}

#' @rdname t_one
#' @export
effect_t_one <- function(mean = NULL, sd = NULL, null = 0, d = NULL, n = NULL
    ) {
  answer("t_one", "effect")
}

#' Two paired means (t test)
#'
#' Pairs of measurements, as before and after: do their means differ?
#'
#' n is the number of pairs, each measured twice.
#'
#' @param diff Difference of the means, first minus second. A number. Unit: units of the data.
#' @param sd Standard deviation of the differences. Greater than 0. Unit: units of the data.
#' @param sd1 Standard deviation of the first measurement. Greater than 0. Unit: units of the
#'   data.
#' @param sd2 Standard deviation of the second measurement. Greater than 0. Unit: units of the
#'   data.
#' @param corr Correlation of the two measurements of a pair. Greater than -1 and less than 1.
#' @param dz Cohen's dz: mean difference over the standard deviation of the differences. A
#'   number. Unit: standard deviations.
#' @param d Cohen's d: difference over the root mean square of both standard deviations. A
#'   number. Unit: standard deviations.
#' @param n Number of pairs. A whole number, at least 2. Unit: pairs.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_t_paired` a data frame with a row for each design and the columns `dz`
#'   (Cohen's dz: mean difference over the standard deviation of the differences); `d` (Cohen's
#'   d: difference over the root mean square of both standard deviations).
#' @references
#' J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 2
#' @family tests
#' @examples
#' # Pairs that differ by half the standard deviation of their differences, two-sided at
#' # 0.05, power 0.8
#' power_t_paired(dz = 0.5)$n  # 34
#' # 40 pairs, a difference of 1.5 with a standard deviation of 4
#' power_t_paired(diff = 1.5, sd = 4, n = 40)$power  # 0.6379833337
#' @name t_paired
NULL

#' @rdname t_paired
#' @export
power_t_paired <- function(diff = NULL, sd = NULL, sd1 = NULL, sd2 = NULL, corr = NULL, dz = NULL, d = NULL, n =
    NULL, alternative = "two-sided", alpha = 0.05, power = NULL, rule = "smallest", dropout =
    0, max_n = 1e+07, unknown = NULL) {
  answer("t_paired", "power")
}

#' @rdname t_paired
#' @export
precision_t_paired <- function(sd = NULL, sd1 = NULL, sd2 = NULL, corr = NULL, n = NULL, confidence = 0.95, halfwidth =
    NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("t_paired", "precision")
}

#' @rdname t_paired
#' @export
effect_t_paired <- function(diff = NULL, sd = NULL, sd1 = NULL, sd2 = NULL, corr = NULL, dz = NULL, d = NULL, n = NULL
    ) {
  answer("t_paired", "effect")
}

#' Two independent means (t test)
#'
#' Two groups, a measurement each: do their means differ?
#'
#' n is the number in each group.
#'
#' @param diff Difference of the means, first minus second. A number. Unit: units of the data.
#' @param sd Standard deviation of each group. Greater than 0. Unit: units of the data.
#' @param sd1 Standard deviation of the first group. Greater than 0. Unit: units of the data.
#' @param sd2 Standard deviation of the second group. Greater than 0. Unit: units of the data.
#' @param d Cohen's d: difference over the standard deviation, the root mean square of both where
#'   they differ. A number. Unit: standard deviations.
#' @param n Size of each group. A whole number, at least 1. Unit: observations.
#' @param n1 Size of the first group. A whole number, at least 1. Unit: observations.
#' @param n2 Size of the second group. A whole number, at least 1. Unit: observations.
#' @param ratio Allocation: size of the second group over the first. Greater than 0.
#' @param total Sizes of all groups together. A whole number, at least 2. Unit: observations.
#' @param variance Variance of both groups together (pooled), or of each on its own (unpooled:
#'   Welch's test). One of `"pooled"`, `"unpooled"`.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_t_two` a data frame with a row for each design and the columns `d` (Cohen's
#'   d: difference over the standard deviation, the root mean square of both where they differ);
#'   `delta` (Glass's delta: difference over the standard deviation of the second group).
#' @references
#' J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 2
#'
#' B. L. Welch, Biometrika 34 (1947), 28-35; F. E. Satterthwaite, Biometrics Bulletin 2
#' (1946), 110-114
#' @family tests
#' @examples
#' # A medium effect of half a standard deviation, two-sided at 0.05, power 0.8
#' power_t_two(d = 0.5)$n1  # 64
#' # 20 in each group, means one standard deviation apart
#' power_t_two(diff = 1, sd = 1, n = 20)$power  # 0.8689530277
#' # 40 and 50 in groups with different standard deviations, Welch's test
#' power_t_two(diff = 5, sd1 = 8, sd2 = 12, n1 = 40, n2 = 50,
#'   variance = "unpooled")$power  # 0.6464371331
#' @name t_two
NULL

#' @rdname t_two
#' @export
power_t_two <- function(diff = NULL, sd = NULL, sd1 = NULL, sd2 = NULL, d = NULL, n = NULL, n1 = NULL, n2 = NULL,
    ratio = 1, total = NULL, variance = "pooled", alternative = "two-sided", alpha = 0.05,
    power = NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("t_two", "power")
}

#' @rdname t_two
#' @export
precision_t_two <- function(sd = NULL, sd1 = NULL, sd2 = NULL, n = NULL, n1 = NULL, n2 = NULL, ratio = 1, total =
    NULL, variance = "pooled", confidence = 0.95, halfwidth = NULL, rule = "smallest", dropout
    = 0, max_n = 1e+07, unknown = NULL) {
  answer("t_two", "precision")
}

#' @rdname t_two
#' @export
effect_t_two <- function(diff = NULL, sd = NULL, sd1 = NULL, sd2 = NULL, d = NULL, n = NULL, n1 = NULL, n2 = NULL,
    ratio = 1, total = NULL) {
  answer("t_two", "effect")
}

#' One mean, known standard deviation (z test)
#'
#' One group, a measurement each, with a standard deviation that is known: does its mean
#' differ from a given value?
#'
#' @param mean Mean expected. A number. Unit: units of the data.
#' @param sd Known standard deviation. Greater than 0. Unit: units of the data.
#' @param null Mean under the null hypothesis. A number. Unit: units of the data.
#' @param d Cohen's d: difference over standard deviation. A number. Unit: standard deviations.
#' @param n Sample size. A whole number, at least 1. Unit: observations.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_z_one` a data frame with a row for each design and the columns `d` (Cohen's
#'   d: difference over standard deviation).
#' @references
#' J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 2
#' @family tests
#' @examples
#' # A medium effect of half a standard deviation, two-sided at 0.05, power 0.8
#' power_z_one(d = 0.5)$n  # 32
#' # 50 observations, a mean of 105 against 100 with a standard deviation of 15
#' power_z_one(mean = 105, null = 100, sd = 15, n = 50)$power  # 0.6543457917
#' @name z_one
NULL

#' @rdname z_one
#' @export
power_z_one <- function(mean = NULL, sd = NULL, null = 0, d = NULL, n = NULL, alternative = "two-sided", alpha =
    0.05, power = NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("z_one", "power")
}

#' @rdname z_one
#' @export
precision_z_one <- function(sd = NULL, n = NULL, confidence = 0.95, halfwidth = NULL, rule = "smallest", dropout = 0,
    max_n = 1e+07, unknown = NULL) {
  answer("z_one", "precision")
}

#' @rdname z_one
#' @export
effect_z_one <- function(mean = NULL, sd = NULL, null = 0, d = NULL, n = NULL
    ) {
  answer("z_one", "effect")
}

#' One proportion
#'
#' One group, a yes or no each: does the proportion of yes differ from a given value?
#'
#' @param p1 Proportion expected. Greater than 0 and less than 1. Unit: probability.
#' @param p0 Proportion under the null hypothesis. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param risk_difference Risk difference, p1 - p0. Greater than -1 and less than 1.
#' @param risk_ratio Risk ratio, p1 / p0. Greater than 0.
#' @param odds_ratio Odds ratio, p1 / (1 - p1) over p0 / (1 - p0). Greater than 0.
#' @param h Cohen's h: difference of the arcsine-transformed proportions. A number.
#' @param n Sample size. A whole number, at least 1. Unit: observations.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param method Powers by a normal approximation or by the exact distribution. One of
#'   `"approximate"`, `"exact"`.
#' @param continuity Continuity correction. One of `"no"`, `"yes"`. Has an effect only with
#'   `method` approximate.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param interval Confidence interval of the proportion. One of `"wald"`, `"anscombe-logit"`,
#'   `"logit"`, `"clopper-pearson"`, `"jeffreys"`, `"wilson"`, `"agresti-coull"`.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_prop_one` a data frame with a row for each design and the columns
#'   `risk_difference` (Risk difference, p1 - p0); `risk_ratio` (Risk ratio, p1 / p0);
#'   `odds_ratio` (Odds ratio, p1 / (1 - p1) over p0 / (1 - p0)); `h` (Cohen's h: difference of
#'   the arcsine-transformed proportions).
#' @references
#' J. L. Fleiss, B. Levin, M. C. Paik, Statistical Methods for Rates and Proportions, 3rd ed.
#' (2003), chapter 2
#'
#' A. Agresti, Categorical Data Analysis, 3rd ed. (2013), section 1.4
#' @family tests
#' @examples
#' # A proportion of 0.95 against 0.9, exact, one-sided at 0.025, power 0.9
#' power_prop_one(p1 = 0.95, p0 = 0.9, method = "exact",
#'   alternative = "one-sided", alpha = 0.025, power = 0.9)$n  # 292
#' # Wilson's interval of a proportion of 0.3 from 100 observations
#' precision_prop_one(p1 = 0.3, n = 100)$halfwidth  # 0.08845
#' @name prop_one
NULL

#' @rdname prop_one
#' @export
power_prop_one <- function(p1 = NULL, p0 = NULL, risk_difference = NULL, risk_ratio = NULL, odds_ratio = NULL, h =
    NULL, n = NULL, alternative = "two-sided", method = "approximate", continuity = "no",
    alpha = 0.05, power = NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("prop_one", "power")
}

#' @rdname prop_one
#' @export
precision_prop_one <- function(p1 = NULL, n = NULL, interval = "wilson", continuity = "no", confidence = 0.95, halfwidth
    = NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("prop_one", "precision")
}

#' @rdname prop_one
#' @export
effect_prop_one <- function(p1 = NULL, p0 = NULL, risk_difference = NULL, risk_ratio = NULL, odds_ratio = NULL, h =
    NULL, n = NULL) {
  answer("prop_one", "effect")
}

#' Paired proportions (McNemar)
#'
#' Pairs of a yes or no, before and after or of matched subjects: do the proportions of yes
#' differ?
#'
#' n is the number of pairs, discordant or not.
#'
#' @param p10 Probability of a pair with a yes first and a no second. At least 0 and less than 1.
#'   Unit: probability.
#' @param p01 Probability of a pair with a no first and a yes second. At least 0 and less than 1.
#'   Unit: probability.
#' @param p1 Proportion of yes in the first response. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param p2 Proportion of yes in the second response. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param rho Correlation of the two responses of a pair. At least -1 and at most 1.
#' @param odds_ratio Odds ratio of the discordant pairs, p10 / p01. Greater than 0.
#' @param discordant Probability of a discordant pair, p10 + p01. Greater than 0 and less than 1.
#'   Unit: probability.
#' @param n Number of pairs. A whole number, at least 1. Unit: pairs.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param method Powers by a normal approximation or by the exact distribution. One of
#'   `"approximate"`, `"exact"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param interval Confidence interval of the difference of the proportions. One of `"wald"`,
#'   `"agresti-min"`, `"bonett-price"`.
#' @param continuity Continuity correction. One of `"no"`, `"yes"`. Has an effect only with
#'   `interval` wald.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_prop_paired` a data frame with a row for each design and the columns
#'   `risk_difference` (Risk difference, p1 - p2); `odds_ratio` (Odds ratio of the discordant
#'   pairs, p10 / p01); `discordant` (Probability of a discordant pair, p10 + p01).
#' @references
#' R. S. Connor, Biometrics 43 (1987) 207-211
#'
#' S. W. Duffy, Biometrics 40 (1984) 1005-1015
#'
#' A. Agresti, Y. Min, Statistics in Medicine 24 (2005) 729-740
#'
#' D. G. Bonett, R. M. Price, J. Educational and Behavioral Statistics 37 (2012) 479-488
#' @family tests
#' @examples
#' # Discordant pairs of probability 0.25 and 0.1, two-sided at 0.05, power 0.9
#' power_prop_paired(p10 = 0.25, p01 = 0.1, power = 0.9)$n  # 160
#' # The same by the exact test
#' power_prop_paired(p10 = 0.25, p01 = 0.1, power = 0.9, method = "exact")$n  # 168
#' @name prop_paired
NULL

#' @rdname prop_paired
#' @export
power_prop_paired <- function(p10 = NULL, p01 = NULL, p1 = NULL, p2 = NULL, rho = NULL, odds_ratio = NULL, discordant =
    NULL, n = NULL, alternative = "two-sided", method = "approximate", alpha = 0.05, power =
    NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("prop_paired", "power")
}

#' @rdname prop_paired
#' @export
precision_prop_paired <- function(p10 = NULL, p01 = NULL, p1 = NULL, p2 = NULL, rho = NULL, n = NULL, interval =
    "bonett-price", continuity = "no", confidence = 0.95, halfwidth = NULL, rule = "smallest",
    dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("prop_paired", "precision")
}

#' @rdname prop_paired
#' @export
effect_prop_paired <- function(p10 = NULL, p01 = NULL, p1 = NULL, p2 = NULL, rho = NULL, odds_ratio = NULL, discordant =
    NULL, n = NULL) {
  answer("prop_paired", "effect")
}

#' Two independent proportions
#'
#' Two groups, a yes or no each: do their proportions of yes differ?
#'
#' n is the number in each group.
#'
#' @param p1 Proportion expected in the first group. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param p2 Proportion expected in the second group. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param risk_difference Risk difference, p1 - p2. Greater than -1 and less than 1.
#' @param risk_ratio Risk ratio, p1 / p2. Greater than 0.
#' @param odds_ratio Odds ratio, p1 / (1 - p1) over p2 / (1 - p2). Greater than 0.
#' @param h Cohen's h: difference of the arcsine-transformed proportions. A number.
#' @param n Size of each group. A whole number, at least 1. Unit: observations.
#' @param n1 Size of the first group. A whole number, at least 1. Unit: observations.
#' @param n2 Size of the second group. A whole number, at least 1. Unit: observations.
#' @param ratio Allocation: size of the second group over the first. Greater than 0.
#' @param total Sizes of all groups together. A whole number, at least 2. Unit: observations.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param method Powers by a normal approximation or by the exact distribution. One of
#'   `"approximate"`, `"exact"`.
#' @param statistic Test statistic; chi-square is the z test, t that of the 0/1 outcomes;
#'   Fisher's approximately is the arcsine test with continuity correction. One of
#'   `"chi-square"`, `"t"`, `"likelihood-ratio"`, `"fisher"`.
#' @param variance Variance estimated from the groups together or each on its own. One of
#'   `"pooled"`, `"unpooled"`. Has an effect only with `statistic` chi-square or t.
#' @param continuity Continuity correction. One of `"no"`, `"yes"`. Has an effect only with
#'   `statistic` chi-square.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param interval Confidence interval of the difference p1 - p2. One of `"wald"`,
#'   `"agresti-caffo"`, `"uniform-prior"`, `"brown-li-jeffreys"`, `"hauck-anderson"`,
#'   `"newcombe"`.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_prop_two` a data frame with a row for each design and the columns
#'   `risk_difference` (Risk difference, p1 - p2); `risk_ratio` (Risk ratio, p1 / p2);
#'   `odds_ratio` (Odds ratio, p1 / (1 - p1) over p2 / (1 - p2)); `h` (Cohen's h: difference of
#'   the arcsine-transformed proportions).
#' @references
#' J. L. Fleiss, B. Levin, M. C. Paik, Statistical Methods for Rates and Proportions, 3rd ed.
#' (2003), chapters 3 and 4
#'
#' R. B. D'Agostino, W. Chase, A. Belanger, The American Statistician 42 (1988) 198-202 (t
#' test)
#'
#' R. G. Newcombe, Statistics in Medicine 17 (1998) 873-890 (intervals)
#' @family tests
#' @examples
#' # Proportions of 0.5 and 0.75, two-sided at 0.05, power 0.9
#' power_prop_two(p1 = 0.5, p2 = 0.75, power = 0.9)$n1  # 77
#' # The same by Fisher's exact test
#' power_prop_two(p1 = 0.5, p2 = 0.75, power = 0.9, statistic = "fisher",
#'   method = "exact")$n1  # 85
#' # Newcombe's interval of 56 of 70 against 48 of 80, 0.0524 to 0.3339
#' precision_prop_two(p1 = 0.8, p2 = 0.6, n1 = 70, n2 = 80)$halfwidth  # 0.14075
#' @name prop_two
NULL

#' @rdname prop_two
#' @export
power_prop_two <- function(p1 = NULL, p2 = NULL, risk_difference = NULL, risk_ratio = NULL, odds_ratio = NULL, h =
    NULL, n = NULL, n1 = NULL, n2 = NULL, ratio = 1, total = NULL, alternative = "two-sided",
    method = "approximate", statistic = "chi-square", variance = "pooled", continuity = "no",
    alpha = 0.05, power = NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("prop_two", "power")
}

#' @rdname prop_two
#' @export
precision_prop_two <- function(p1 = NULL, p2 = NULL, n = NULL, n1 = NULL, n2 = NULL, ratio = 1, total = NULL, interval =
    "newcombe", continuity = "no", confidence = 0.95, halfwidth = NULL, rule = "smallest",
    dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("prop_two", "precision")
}

#' @rdname prop_two
#' @export
effect_prop_two <- function(p1 = NULL, p2 = NULL, risk_difference = NULL, risk_ratio = NULL, odds_ratio = NULL, h =
    NULL, n = NULL, n1 = NULL, n2 = NULL, ratio = 1, total = NULL) {
  answer("prop_two", "effect")
}

#' Partial correlation
#'
#' One group, two measurements each, others held constant: does the correlation differ from 0,
#' or a given value?
#'
#' The test of Pearson's correlation with as many fewer observations as variables are
#' partialled out.
#'
#' @param r Partial correlation expected. Greater than -1 and less than 1.
#' @param r0 Correlation under the null hypothesis. Greater than -1 and less than 1.
#' @param q Cohen's q: difference of the Fisher-transformed correlations. A number.
#' @param n Sample size. A whole number, at least 1. Unit: observations.
#' @param partialled_out Number of variables partialled out. A whole number, at least 0. Unit:
#'   variables.
#' @param bias_correction Correct mean and variance of Fisher's z for small samples. One of
#'   `"no"`, `"yes"`.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_partial` a data frame with a row for each design and the columns `q` (Cohen's
#'   q: difference of the Fisher-transformed correlations).
#' @references
#' R. A. Fisher, Metron 3 (1924), 329-332
#'
#' H. Hotelling, J. R. Statist. Soc. B 15 (1953), 193-232
#' @family tests
#' @examples
#' # A partial correlation of 0.3, 4 variables partialled out: 4 more than 85
#' # observations
#' power_partial(r = 0.3, partialled_out = 4)$n  # 89
#' # One of 0.3 against 0.1, one-sided, 60 observations, 2 variables partialled out
#' power_partial(r = 0.3, r0 = 0.1, partialled_out = 2, n = 60,
#'   alternative = "one-sided")$power  # 0.4627525153
#' @name partial
NULL

#' @rdname partial
#' @export
power_partial <- function(r = NULL, r0 = 0, q = NULL, n = NULL, partialled_out = NULL, bias_correction = "no",
    alternative = "two-sided", alpha = 0.05, power = NULL, rule = "smallest", dropout = 0,
    max_n = 1e+07, unknown = NULL) {
  answer("partial", "power")
}

#' @rdname partial
#' @export
precision_partial <- function(r = NULL, n = NULL, partialled_out = NULL, bias_correction = "no", confidence = 0.95,
    halfwidth = NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("partial", "precision")
}

#' @rdname partial
#' @export
effect_partial <- function(r = NULL, r0 = 0, q = NULL, n = NULL
    ) {
  answer("partial", "effect")
}

#' Pearson's correlation
#'
#' One group, two measurements each: does their correlation differ from 0, or a given value?
#'
#' @param r Correlation expected. Greater than -1 and less than 1.
#' @param r0 Correlation under the null hypothesis. Greater than -1 and less than 1.
#' @param q Cohen's q: difference of the Fisher-transformed correlations. A number.
#' @param n Sample size. A whole number, at least 1. Unit: observations.
#' @param bias_correction Correct mean and variance of Fisher's z for small samples. One of
#'   `"no"`, `"yes"`.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_pearson` a data frame with a row for each design and the columns `q` (Cohen's
#'   q: difference of the Fisher-transformed correlations).
#' @references
#' R. A. Fisher, Metron 1 (1921), 3-32
#'
#' H. Hotelling, J. R. Statist. Soc. B 15 (1953), 193-232
#' @family tests
#' @examples
#' # A medium correlation of 0.3, two-sided at 0.05, power 0.8
#' power_pearson(r = 0.3)$n  # 85
#' # A correlation of 0.5 against one of 0.3, one-sided, 100 observations
#' power_pearson(r = 0.5, r0 = 0.3, n = 100, alternative = "one-sided")$power  # 0.7632419593
#' @name pearson
NULL

#' @rdname pearson
#' @export
power_pearson <- function(r = NULL, r0 = 0, q = NULL, n = NULL, bias_correction = "no", alternative = "two-sided",
    alpha = 0.05, power = NULL, rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("pearson", "power")
}

#' @rdname pearson
#' @export
precision_pearson <- function(r = NULL, n = NULL, bias_correction = "no", confidence = 0.95, halfwidth = NULL, rule =
    "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("pearson", "precision")
}

#' @rdname pearson
#' @export
effect_pearson <- function(r = NULL, r0 = 0, q = NULL, n = NULL
    ) {
  answer("pearson", "effect")
}

#' Spearman's rank correlation
#'
#' One group, two measurements each: does the correlation of their ranks differ from 0, or a
#' given value?
#'
#' The variance of z at the expected correlation serves the null hypothesis too.
#'
#' @param r Rank correlation expected. Greater than -1 and less than 1.
#' @param r0 Correlation under the null hypothesis. Greater than -1 and less than 1.
#' @param q Cohen's q: difference of the Fisher-transformed correlations. A number.
#' @param n Sample size. A whole number, at least 1. Unit: observations.
#' @param z_variance Variance of Fisher's z of a rank correlation, by its authors. One of
#'   `"bonett-wright"`, `"fieller"`, `"caruso-cliff"`.
#' @param alternative Alternative hypothesis; one-sided is the direction of the effect, greater
#'   and less say which. One of `"two-sided"`, `"one-sided"`, `"greater"`, `"less"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param confidence Confidence level of the interval. Greater than 0 and less than 1. Unit:
#'   probability.
#' @param halfwidth Half-width of the interval to reach. Greater than 0. Unit: as the estimate.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_spearman` a data frame with a row for each design and the columns `q`
#'   (Cohen's q: difference of the Fisher-transformed correlations).
#' @references
#' D. G. Bonett and T. A. Wright, Psychometrika 65 (2000), 23-28
#'
#' E. C. Fieller, H. O. Hartley and E. S. Pearson, Biometrika 44 (1957), 470-481
#'
#' J. C. Caruso and N. Cliff, Educ. Psychol. Meas. 57 (1997), 637-654
#' @family tests
#' @examples
#' # A rank correlation of 0.4 in 50 observations
#' power_spearman(r = 0.4, n = 50)$power  # 0.7980822563
#' # Half-width of its 95 % interval
#' precision_spearman(r = 0.4, n = 50)$halfwidth  # 0.2457522533
#' @name spearman
NULL

#' @rdname spearman
#' @export
power_spearman <- function(r = NULL, r0 = 0, q = NULL, n = NULL, z_variance = "bonett-wright", alternative =
    "two-sided", alpha = 0.05, power = NULL, rule = "smallest", dropout = 0, max_n = 1e+07,
    unknown = NULL) {
  answer("spearman", "power")
}

#' @rdname spearman
#' @export
precision_spearman <- function(r = NULL, n = NULL, z_variance = "bonett-wright", confidence = 0.95, halfwidth = NULL,
    rule = "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("spearman", "precision")
}

#' @rdname spearman
#' @export
effect_spearman <- function(r = NULL, r0 = 0, q = NULL, n = NULL
    ) {
  answer("spearman", "effect")
}

#' Multiple linear regression
#'
#' A measurement and its predictors: do all of them, or a set of them, explain any of it?
#'
#' r2, r2_reduced and partial_r2 are squares; the noncentrality for fixed predictors is n f2.
#'
#' @param r2 R squared of the model: proportion of the variance that all predictors explain. At
#'   least 0 and less than 1. Unit: proportion.
#' @param predictors Number of predictors of the model. A whole number, at least 1. Unit:
#'   predictors.
#' @param r2_reduced R squared of the model without the predictors tested. At least 0 and less
#'   than 1. Unit: proportion.
#' @param tested Number of predictors tested, all unless given. A whole number, at least 1. Unit:
#'   predictors.
#' @param f2 Cohen's f squared: explained over unexplained variance. At least 0.
#' @param partial_r2 Partial R squared: proportion that the predictors tested explain of what the
#'   others leave. At least 0 and less than 1. Unit: proportion.
#' @param n Sample size. A whole number, at least 1. Unit: observations.
#' @param model Predictors with fixed values, or random ones (jointly normal with the response).
#'   One of `"fixed"`, `"random"`.
#' @param intercept Has the model an intercept?. One of `"no"`, `"yes"`.
#' @param alpha Significance level. At least 1e-12 and less than 1. Unit: probability.
#' @param power Power to reach. Greater than 0 and less than 1. Unit: probability. 0.8 where
#'   sizes are searched, unless given.
#' @param rule Least size that reaches the target, or least from which every larger one does. One
#'   of `"smallest"`, `"guaranteed"`.
#' @param dropout Proportion that is expected to drop out; enrolled sizes are larger by it. At
#'   least 0 and less than 1. Unit: proportion.
#' @param max_n Largest size, all groups together, that a search may find. A whole number, at
#'   least 2 and at most 1000000000000. Unit: observations.
#' @param unknown Name of what is found, where what is left out leaves a doubt.
#' @return An answer, see [print.statpower()]: a list with what was found and everything that was
#'   asked. `effect_regression` a data frame with a row for each design and the columns `f2`
#'   (Cohen's f squared: explained over unexplained variance); `partial_r2` (Partial R squared:
#'   proportion that the predictors tested explain of what the others leave).
#' @references
#' J. Cohen, Statistical Power Analysis for the Behavioral Sciences, 2nd ed. (1988), chapter 9
#'
#' R. A. Fisher, Proc. R. Soc. A 121 (1928), 654-673 (random predictors)
#' @family tests
#' @examples
#' # Five predictors, all tested, that explain a tenth of the variance, 95 observations
#' power_regression(r2 = 0.1, predictors = 5, n = 95)$power  # 0.6735857709
#' # A medium effect f2 of 0.15 of five predictors, power 0.8
#' power_regression(f2 = 0.15, predictors = 5)$n  # 92
#' @name regression
NULL

#' @rdname regression
#' @export
power_regression <- function(r2 = NULL, predictors = NULL, r2_reduced = NULL, tested = NULL, f2 = NULL, partial_r2 =
    NULL, n = NULL, model = "fixed", intercept = "yes", alpha = 0.05, power = NULL, rule =
    "smallest", dropout = 0, max_n = 1e+07, unknown = NULL) {
  answer("regression", "power")
}

#' @rdname regression
#' @export
effect_regression <- function(r2 = NULL, predictors = NULL, r2_reduced = NULL, tested = NULL, f2 = NULL, partial_r2 =
    NULL, n = NULL) {
  answer("regression", "effect")
}
