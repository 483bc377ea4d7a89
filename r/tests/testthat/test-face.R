printed <- function(x) capture.output(print(x))

test_that("the size is found where none is given, a design for each power", {
  r <- power_t_two(diff = 5, sd = 12, power = c(0.8, 0.9))
  expect_s3_class(r, c("statpower", "power.htest"), exact = TRUE)
  # R: ceiling(power.t.test(delta = 5, sd = 12, power = c(0.8, 0.9)[i])$n)
  expect_equal(r$n1, c(92, 123))
  expect_equal(r$n2, c(92, 123))
  expect_true(all(r$power >= c(0.8, 0.9)))
  expect_equal(as.data.frame(r)[c("n1", "n2", "diff", "sd", "alpha", "target")],
               data.frame(n1 = c(92, 123), n2 = c(92, 123), diff = 5, sd = 12, alpha = 0.05, target = c(0.8, 0.9)))
})

test_that("the missing number of the effect is found where sizes and a power are given", {
  r <- power_t_two(n1 = 60, n2 = 60, sd = 12, power = 0.8)
  expect_equal(r$diff, power.t.test(n = 60, sd = 12, power = 0.8, strict = TRUE, tol = 1e-12)$delta, tolerance = 1e-8)
  expect_equal(r$power, 0.8)
})

test_that("a default that is NULL is what is found", {
  expect_equal(power_t_two(n = 20, d = 0.8, power = 0.8, alpha = NULL)$alpha,
               power.t.test(n = 20, delta = 0.8, power = 0.8, sig.level = NULL, strict = TRUE, tol = 1e-12)$sig.level,
               tolerance = 1e-6)
  expect_equal(power_t_two(n1 = 40, n2 = NULL, d = 0.8, power = 0.8)$n2, 19)
  expect_equal(power_t_two(n = NULL, d = 0.5, diff = NULL)$n1, 64)
})

test_that("several numbers that are NULL are refused, and unknown says which one is meant", {
  expect_error(precision_t_two(n = 20, sd = 3, halfwidth = 2, confidence = NULL, ratio = NULL), class = "statpower_refusal")
  expect_equal(power_t_two(n = 20, d = 0.8, power = 0.8, unknown = "alpha"),
               power_t_two(n = 20, d = 0.8, power = 0.8, alpha = NULL))
  for (unknown in list("nonsense", c("d", "alpha"), NA, 3))
    expect_error(power_t_two(n = 20, d = 0.8, unknown = unknown), "unknown", class = "statpower_refusal")
})

test_that("answers print like those of R's own power functions", {
  expect_equal(printed(power_t_one(d = 0.5)), c(
    "",
    "     One mean (t test) ",
    "",
    "              n = 34",
    "              d = 0.5",
    "          alpha = 0.05",
    "          power = 0.8077775",
    "    alternative = two-sided",
    "",
    "NOTE: computation: noncentral t distribution",
    ""))
  table <- printed(power_t_two(d = c(0.5, 0.8), power = 0.9))
  expect_match(table[4], "n1 n2 +d +power")
  expect_match(table, "alternative = two-sided", all = FALSE)
})

test_that("a name that an answer does not have is a warning", {
  expect_warning(nothing <- power_t_two(d = 0.5)$n, "has no n; it has n1, n2")
  expect_null(nothing)
})

test_that("many designs are printed in part", {
  shown <- printed(power_t_one(n = 10:109, d = 0.5))
  expect_match(shown, "^... and 80 more designs", all = FALSE)
  expect_lt(length(shown), 40)
})

test_that("NA in, NA out", {
  expect_identical(power_t_one(n = NA, d = 0.5)$power, NA_real_)
  expect_identical(power_t_one(n = c(20, NA), d = 0.5)$power, c(power_t_one(n = 20, d = 0.5)$power, NA))
  expect_silent(power_t_one(n = c(20, NA), d = 0.5, alternative = c("two-sided", NA)))
  expect_identical(power_anova(means = list(c(1, 2, NA), c(1, 2, 3)), sd = 2, n = 9)$power,
                   c(NA, power_anova(means = c(1, 2, 3), sd = 2, n = 9)$power))
  expect_identical(report(power_t_one(n = NA, d = 0.5)), NA_character_)
  expect_output(print(power_t_one(n = NA, d = 0.5)), "power = NA")
})

test_that("vectors recycle, and lengths that do not are refused", {
  expect_equal(power_t_one(n = c(10, 20, 30, 40), d = c(0.3, 0.5))$power,
               mapply(function(n, d) power_t_one(n = n, d = d)$power, c(10, 20, 30, 40), c(0.3, 0.5)))
  expect_error(power_t_one(n = 1:3, d = c(0.3, 0.5)), "recycle", class = "statpower_refusal")
  expect_equal(nrow(as.data.frame(power_t_one(n = numeric(), d = 0.5))), 0)
})

test_that("choices recycle too", {
  expect_equal(power_t_one(n = 20, d = 0.5, alternative = c("two-sided", "greater"))$power,
               c(power_t_one(n = 20, d = 0.5)$power, power_t_one(n = 20, d = 0.5, alternative = "greater")$power))
  expect_equal(power_prop_one(n = 50, p0 = 0.3, p1 = 0.5, continuity = TRUE),
               power_prop_one(n = 50, p0 = 0.3, p1 = 0.5, continuity = "yes"))
})

test_that("lists are vectors of one design; rows of a matrix and lists of vectors are several", {
  first <- c(10, 12, 14)
  second <- c(10, 12, 13)
  one <- function(means) power_anova(means = means, sd = 4, n = 20)$power
  expect_equal(power_anova(means = rbind(first, second), sd = 4, n = 20)$power, c(one(first), one(second)))
  expect_equal(power_anova(means = list(first, second), sd = 4, n = 20)$power, c(one(first), one(second)))
  expect_equal(power_anova(means = rbind(first, second), sd = 4, n = 20:23)$power[4],
               power_anova(means = second, sd = 4, n = 23)$power)
  expect_error(power_anova(means = list(first, 1:2), sd = 4, n = 20), "means", class = "statpower_refusal")
  expect_equal(power_anova(means = first, sd = 4)$sizes, c(21, 21, 21))
})

test_that("a design that cannot be is an error that names the argument", {
  refused <- function(expression) tryCatch(expression, statpower_refusal = identity)
  wrong <- refused(power_t_two(diff = 5, sd = -1, n = 20))
  expect_equal(wrong$argument, "sd")
  expect_equal(conditionMessage(wrong), "sd: -1 is not greater than 0")
  expect_equal(wrong$call[[1]], quote(power_t_two))
  expect_equal(refused(power_prop_one(p0 = 0.5, p1 = 0.6, n = 20, alternative = "twosided"))$argument, "alternative")
  expect_equal(refused(power_regression(r2 = 2, predictors = 3))$argument, "r2")
  expect_equal(refused(power_t_one(d = "large"))$argument, "d")
  expect_equal(refused(power_t_one(d = Inf))$argument, "d")
  expect_equal(refused(power_t_one(d = 1i))$argument, "d")
  expect_equal(refused(power_t_one(d = factor(1)))$argument, "d")
  expect_equal(refused(power_t_one(d = 0.5, alternative = 1))$argument, "alternative")
  expect_equal(refused(power_t_one(d = 0.5, alternative = c("greater", "grater")))$argument, "alternative")
  expect_s3_class(refused(power_t_one(d = 0)), "statpower_no_answer")
  expect_match(conditionMessage(refused(power_partial(r = 0.3))), "partialled_out", fixed = TRUE)
})

test_that("among others a design that cannot be is NaN, with a warning; where all are it is an error", {
  expect_warning(r <- power_t_one(n = c(20, -1, 30), d = 0.5), "1 of 3 designs have no answer.*design 2: n: -1",
                 class = "statpower_warning")
  expect_equal(is.nan(r$power), c(FALSE, TRUE, FALSE))
  expect_error(power_t_one(n = c(20, 30), d = 0.5, alpha = 2), "alpha", class = "statpower_refusal")
})

test_that("dropouts are enrolled, in one design and in many", {
  one <- power_t_two(d = 0.5, dropout = 0.15)
  many <- power_t_two(d = 0.5, dropout = c(0, 0.15))
  expect_equal(one$enrolled_n1, 76)  # ceiling(64 / 0.85)
  expect_equal(many$enrolled_n1, c(64, 76))
  expect_false("enrolled_n1" %in% names(power_t_two(d = c(0.5, 0.6))))
  expect_equal(power_anova(f = 0.25, groups = 4, dropout = c(0.1, 0.1))$enrolled_total, c(200, 200))
})

test_that("an exact test says where every larger size reaches the power, too", {
  smallest <- power_prop_one(p0 = 0.5, p1 = 0.65, method = "exact")
  guaranteed <- power_prop_one(p0 = 0.5, p1 = 0.65, power = 0.8, method = "exact", rule = "guaranteed")
  expect_match(smallest$note, paste("from n =", guaranteed$n))
  # binom.test's own two-sided rejection region is another one; the tails of qbinom are this one's.
  power <- function(n) {
    low <- qbinom(0.025, n, 0.5) - 1
    high <- qbinom(0.025, n, 0.5, lower.tail = FALSE)
    pbinom(low, n, 0.65) + pbinom(high, n, 0.65, lower.tail = FALSE)
  }
  reach <- vapply(2:400, power, 0) >= 0.8
  expect_equal(smallest$n, which(reach)[1] + 1)
  expect_equal(guaranteed$n, max(which(!reach)) + 2)
  expect_equal(guaranteed$power, power(guaranteed$n))
})

test_that("precision finds half-widths, sizes, and the number that is left out", {
  expect_equal(precision_t_one(sd = 3, n = 25)$halfwidth, qt(0.975, 24) * 3 / 5)
  found <- precision_prop_two(p1 = 0.3, p2 = 0.5, halfwidth = 0.1, interval = "newcombe")
  expect_lte(found$halfwidth, 0.1)
  expect_gt(precision_prop_two(p1 = 0.3, p2 = 0.5, n = found$n1 - 1, interval = "newcombe")$halfwidth, 0.1)
  expect_equal(precision_t_one(n = 25, halfwidth = 1)$sd, 5 / qt(0.975, 24))
})

test_that("effects are a data frame of the standardised effects", {
  expect_equal(effect_t_two(diff = c(1, 2), sd = 4)$d, c(0.25, 0.5))
  expect_equal(effect_prop_two(p1 = 0.3, p2 = 0.5)$h, 2 * asin(sqrt(0.3)) - 2 * asin(sqrt(0.5)))
})

test_that("report and sources are texts", {
  r <- power_t_two(diff = 5, sd = 12, power = c(0.8, 0.9))
  expect_length(report(r), 2)
  expect_match(report(r), "^With .* in the first group")
  expect_match(report(power_t_one(d = 0.5)), "^With 34 observations")
  expect_match(sources(r), "\\(19|20", all = FALSE)
})

test_that("functions may be called from others", {
  of <- function(...) power_t_one(...)
  expect_equal(of(d = 0.5)$n, 34)
  later <- function(d, n) power_t_one(d = d, n = n)
  expect_equal(later(d = 0.5)$n, 34)  # an argument that was not given there is not given here
  expect_equal(do.call(power_t_one, list(d = 0.5))$n, 34)
  wanted <- function(power = 0.9) power_t_one(d = 0.5, power = power)
  expect_equal(wanted()$n, 44)  # power.t.test(delta = 0.5, power = 0.9, type = "one.sample")
})

test_that("the user's interrupt stops a long search", {
  skip_on_os("windows")
  long <- function() power_prop_two(p1 = 0.3, p2 = rep(0.32, 10000), method = "exact", statistic = "fisher")
  stopped <- tryCatch({
    system(sprintf("(sleep 0.3; kill -INT %d) &", Sys.getpid()))
    long()
    "answered"
  }, interrupt = function(condition) "interrupted")
  expect_equal(stopped, "interrupted")
  expect_equal(power_t_one(d = 0.5)$n, 34)  # and the next question is answered
})
