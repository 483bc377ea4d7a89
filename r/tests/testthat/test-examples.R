# Written from the catalogue by generate.R: change nothing here, say `scripts/r-package --generate`.

test_that("Group means (one-way analysis of variance): J. Cohen, A power primer, Psychological Bulletin 112 (1992), table 2", {
  # Four groups, a medium effect f of 0.25 at 0.05, power 0.8
  expect_equal(power_anova(f = 0.25, groups = 4)$sizes[1], 45, tolerance = 2.22222e-14)
})

test_that("Group means (one-way analysis of variance): R: power.anova.test(4, 15, var(c(10, 12, 15, 11)), 25)", {
  # Four groups of 15 with given means
  expect_equal(power_anova(means = c(10, 12, 15, 11), sd = 5, n = 15)$power, 0.643939868866, tolerance = 1.55449e-09)
})

test_that("A contrast of group means: R: noncentral pt() with 56 degrees of freedom", {
  # Does the first of four groups differ from the mean of the next two?
  expect_equal(power_contrast(means = c(10, 12, 15, 11), coefficients = c(2, -1, -1, 0), sd = 5, n = 15)$power, 0.585353935125, tolerance = 1.71008e-09)
})

test_that("A contrast of group means: R: noncentral pt() with 196 degrees of freedom", {
  # A linear trend over four groups of 50
  expect_equal(power_contrast(d = 0.6, coefficients = c(-3, -1, 1, 3), n = 50)$power, 0.156674987795, tolerance = 6.38902e-09)
})

test_that("Pairwise comparisons of group means: R: noncentral pt() with 56 degrees of freedom at level 0.05 / 6", {
  # Groups 1 and 3 of four groups of 15, Bonferroni's adjustment for 6 pairs
  expect_equal(power_pairwise(means = c(10, 12, 15, 11), sd = 5, n = 15, first = 1, second = 3)$power, 0.506115514022, tolerance = 1.97781e-09)
})

test_that("Pairwise comparisons of group means: R: qt(1 - 0.025 / 6, 56) * 5 * sqrt(2 / 15)", {
  # Half-width of a difference between two of four groups of 15
  expect_equal(precision_pairwise(sd = 5, groups = 4, n = 15)$halfwidth, 4.9938065716, tolerance = 2.00448e-10)
})

test_that("One mean (t test): R: power.t.test(delta = 0.5, type = \"one.sample\", power = 0.8)", {
  # A medium effect of half a standard deviation, two-sided at 0.05, power 0.8
  expect_equal(power_t_one(d = 0.5)$n, 34, tolerance = 2.94118e-14)
})

test_that("Two paired means (t test): R: power.t.test(delta = 0.5, type = \"paired\", power = 0.8)", {
  # Pairs that differ by half the standard deviation of their differences, two-sided at 0.05, power 0.8
  expect_equal(power_t_paired(dz = 0.5)$n, 34, tolerance = 2.94118e-14)
})

test_that("Two paired means (t test): R: power.t.test(40, 1.5, 4, type = \"paired\", strict = TRUE)", {
  # 40 pairs, a difference of 1.5 with a standard deviation of 4
  expect_equal(power_t_paired(diff = 1.5, sd = 4, n = 40)$power, 0.637983333684, tolerance = 1.58311e-10)
})

test_that("Two independent means (t test): J. Cohen, A power primer, Psychological Bulletin 112 (1992), table 2", {
  # A medium effect of half a standard deviation, two-sided at 0.05, power 0.8
  expect_equal(power_t_two(d = 0.5)$n1, 64, tolerance = 1.5625e-14)
})

test_that("Two independent means (t test): R: power.t.test(20, delta = 1, sd = 1, strict = TRUE)", {
  # 20 in each group, means one standard deviation apart
  expect_equal(power_t_two(diff = 1, sd = 1, n = 20)$power, 0.868953027725, tolerance = 1.16232e-10)
})

test_that("Two independent means (t test): R: noncentral pt() with Welch-Satterthwaite degrees of freedom", {
  # 40 and 50 in groups with different standard deviations, Welch's test
  expect_equal(power_t_two(diff = 5, sd1 = 8, sd2 = 12, n1 = 40, n2 = 50, variance = "unpooled")$power, 0.646437133117, tolerance = 1.56241e-10)
})

test_that("One mean, known standard deviation (z test): ((1.959964 + 0.841621) / 0.5)^2 = 31.4, rounded up", {
  # A medium effect of half a standard deviation, two-sided at 0.05, power 0.8
  expect_equal(power_z_one(d = 0.5)$n, 32, tolerance = 3.125e-14)
})

test_that("One mean, known standard deviation (z test): R: pnorm(5 / 15 * sqrt(50) - 1.959964) and the other tail", {
  # 50 observations, a mean of 105 against 100 with a standard deviation of 15
  expect_equal(power_z_one(mean = 105, null = 100, sd = 15, n = 50)$power, 0.654345791737, tolerance = 1.54353e-10)
})

test_that("One proportion: R: the least n whose power by qbinom and pbinom is at least 0.9", {
  # A proportion of 0.95 against 0.9, exact, one-sided at 0.025, power 0.9
  expect_equal(power_prop_one(p1 = 0.95, p0 = 0.9, method = "exact", alternative = "one-sided", alpha = 0.025, power = 0.9)$n, 292, tolerance = 3.42466e-15)
})

test_that("One proportion: R: diff(prop.test(30, 100, correct = FALSE)$conf.int) / 2", {
  # Wilson's interval of a proportion of 0.3 from 100 observations
  expect_equal(precision_prop_one(p1 = 0.3, n = 100)$halfwidth, 0.08845, tolerance = 5.65291e-05)
})

test_that("Paired proportions (McNemar): R: Connor's formula by pnorm and qnorm", {
  # Discordant pairs of probability 0.25 and 0.1, two-sided at 0.05, power 0.9
  expect_equal(power_prop_paired(p10 = 0.25, p01 = 0.1, power = 0.9)$n, 160, tolerance = 6.25e-15)
})

test_that("Paired proportions (McNemar): R: the sum over dbinom of the discordant pairs of pbinom of the counts that qbinom rejects", {
  # The same by the exact test
  expect_equal(power_prop_paired(p10 = 0.25, p01 = 0.1, power = 0.9, method = "exact")$n, 168, tolerance = 5.95238e-15)
})

test_that("Two independent proportions: R: power.prop.test(p1 = 0.5, p2 = 0.75, power = 0.9)", {
  # Proportions of 0.5 and 0.75, two-sided at 0.05, power 0.9
  expect_equal(power_prop_two(p1 = 0.5, p2 = 0.75, power = 0.9)$n1, 77, tolerance = 1.2987e-14)
})

test_that("Two independent proportions: R: the least n of which dbinom over the tables that phyper rejects adds up to 0.9", {
  # The same by Fisher's exact test
  expect_equal(power_prop_two(p1 = 0.5, p2 = 0.75, power = 0.9, statistic = "fisher", method = "exact")$n1, 85, tolerance = 1.17647e-14)
})

test_that("Two independent proportions: R. G. Newcombe, Statistics in Medicine 17 (1998) 873-890, table II, method 10", {
  # Newcombe's interval of 56 of 70 against 48 of 80, 0.0524 to 0.3339
  expect_equal(precision_prop_two(p1 = 0.8, p2 = 0.6, n1 = 70, n2 = 80)$halfwidth, 0.14075, tolerance = 0.00071048)
})

test_that("Partial correlation: J. Cohen, A power primer, Psychological Bulletin 112 (1992), table 2", {
  # A partial correlation of 0.3, 4 variables partialled out: 4 more than 85 observations
  expect_equal(power_partial(r = 0.3, partialled_out = 4)$n, 89, tolerance = 1.1236e-14)
})

test_that("Partial correlation: R: pnorm((atanh(0.3) - atanh(0.1)) * sqrt(55) - qnorm(0.95))", {
  # One of 0.3 against 0.1, one-sided, 60 observations, 2 variables partialled out
  expect_equal(power_partial(r = 0.3, r0 = 0.1, partialled_out = 2, n = 60, alternative = "one-sided")$power, 0.462752515262, tolerance = 2.16314e-09)
})

test_that("Pearson's correlation: J. Cohen, A power primer, Psychological Bulletin 112 (1992), table 2", {
  # A medium correlation of 0.3, two-sided at 0.05, power 0.8
  expect_equal(power_pearson(r = 0.3)$n, 85, tolerance = 1.17647e-14)
})

test_that("Pearson's correlation: R: pnorm((atanh(0.5) - atanh(0.3)) * sqrt(97) - qnorm(0.95))", {
  # A correlation of 0.5 against one of 0.3, one-sided, 100 observations
  expect_equal(power_pearson(r = 0.5, r0 = 0.3, n = 100, alternative = "one-sided")$power, 0.763241959344, tolerance = 1.31151e-09)
})

test_that("Spearman's rank correlation: R: pnorm(atanh(0.4) * sqrt(47 / 1.08) - qnorm(0.975)) and the other tail", {
  # A rank correlation of 0.4 in 50 observations
  expect_equal(power_spearman(r = 0.4, n = 50)$power, 0.7980822563, tolerance = 1.25426e-09)
})

test_that("Spearman's rank correlation: R: tanh(atanh(0.4) +- qnorm(0.975) * sqrt(1.08 / 47))", {
  # Half-width of its 95 % interval
  expect_equal(precision_spearman(r = 0.4, n = 50)$halfwidth, 0.245752253305, tolerance = 4.07321e-09)
})

test_that("Multiple linear regression: R: noncentral pf() with 5 and 89 degrees of freedom", {
  # Five predictors, all tested, that explain a tenth of the variance, 95 observations
  expect_equal(power_regression(r2 = 0.1, predictors = 5, n = 95)$power, 0.673585770914, tolerance = 1.48608e-09)
})

test_that("Multiple linear regression: R: the least n whose noncentral pf() reaches 0.8 (0.804 at 92, 0.799 at 91)", {
  # A medium effect f2 of 0.15 of five predictors, power 0.8
  expect_equal(power_regression(f2 = 0.15, predictors = 5)$n, 92, tolerance = 1.08696e-14)
})
