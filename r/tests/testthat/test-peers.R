# The same designs by R's own power functions and by pwr, to what those are accurate to: R's noncentral distributions have
# errors up to 1e-9, roots are as good as their tolerance.

each <- function(designs, power) do.call(mapply, c(list(FUN = power), as.list(designs)))
designs <- function(...) expand.grid(..., KEEP.OUT.ATTRS = FALSE)
quietly <- suppressWarnings  # R's pt may warn of its last digits

t_designs <- designs(n = c(3, 5, 12, 30, 200), d = c(0.1, 0.5, 1.5), alpha = c(0.05, 0.01))

test_that("powers of t tests are those of power.t.test (90 designs)", {
  of <- function(type, alternative = "two.sided") quietly(each(t_designs, function(n, d, alpha) {
    power.t.test(n, d, sig.level = alpha, type = type, alternative = alternative, strict = TRUE)$power
  }))
  with(t_designs, {
    expect_equal(power_t_two(d = d, n = n, alpha = alpha)$power, of("two.sample"), tolerance = 1e-10)
    expect_equal(power_t_two(d = d, n = n, alpha = alpha, alternative = "greater")$power, of("two.sample", "one.sided"),
                 tolerance = 1e-10)
    expect_equal(power_t_one(d = d, n = n, alpha = alpha)$power, of("one.sample"), tolerance = 1e-10)
  })
})

size_designs <- designs(d = c(0.1, 0.2, 0.5, 0.8, 1.2), power = c(0.8, 0.9, 0.95), alpha = c(0.05, 0.01))

test_that("sizes of t tests are those of power.t.test, rounded up (60 designs)", {
  of <- function(type) ceiling(each(size_designs, function(d, power, alpha) {
    power.t.test(delta = d, power = power, sig.level = alpha, type = type, strict = TRUE, tol = 1e-9)$n
  }))
  with(size_designs, {
    expect_equal(power_t_two(d = d, power = power, alpha = alpha)$n1, of("two.sample"))
    expect_equal(power_t_paired(dz = d, power = power, alpha = alpha)$n, of("paired"))
  })
})

test_that("differences that a design detects are those of power.t.test (12 designs)", {
  grid <- designs(n = c(5, 20, 100), sd = c(1, 12), power = c(0.8, 0.9))
  expect_equal(with(grid, power_t_two(n = n, sd = sd, power = power)$diff), each(grid, function(n, sd, power) {
    power.t.test(n = n, sd = sd, power = power, strict = TRUE, tol = 1e-11)$delta
  }), tolerance = 1e-7)
})

test_that("powers of two proportions are those of power.prop.test (72 designs)", {
  grid <- designs(p1 = c(0.1, 0.25, 0.5, 0.8), p2 = c(0.15, 0.4, 0.6), n = c(20, 60, 300), alpha = c(0.05, 0.01))
  expect_equal(with(grid, power_prop_two(p1 = p1, p2 = p2, n = n, alpha = alpha)$power),
               each(grid, function(p1, p2, n, alpha) {
                 power.prop.test(n = n, p1 = p1, p2 = p2, sig.level = alpha, strict = TRUE)$power
               }), tolerance = 1e-13)
})

test_that("sizes of two proportions are those of power.prop.test, rounded up (16 designs)", {
  grid <- designs(p1 = c(0.1, 0.25), p2 = c(0.15, 0.4, 0.6, 0.9), power = c(0.8, 0.9))
  expect_equal(with(grid, power_prop_two(p1 = p1, p2 = p2, power = power)$n1), each(grid, function(p1, p2, power) {
    ceiling(power.prop.test(p1 = p1, p2 = p2, power = power, strict = TRUE, tol = 1e-9)$n)
  }))
})

anova_designs <- designs(groups = 3:6, n = c(3, 10, 40), f = c(0.1, 0.25, 0.8))

test_that("powers of groups are those of power.anova.test (36 designs)", {
  expect_equal(with(anova_designs, power_anova(f = f, groups = groups, n = n)$power),
               each(anova_designs, function(groups, n, f) {
                 power.anova.test(groups, n, between.var = f^2 * groups / (groups - 1), within.var = 1)$power
               }), tolerance = 1e-8)
})

test_that("sizes of groups are those of power.anova.test, rounded up (12 designs)", {
  grid <- designs(groups = 3:6, f = c(0.1, 0.25, 0.8))
  expect_equal(with(grid, power_anova(f = f, groups = groups)$total), each(grid, function(groups, f) {
    groups * ceiling(power.anova.test(groups, between.var = f^2 * groups / (groups - 1), within.var = 1, power = 0.8)$n)
  }))
})

test_that("powers and sizes are those of pwr where it asks the same question (166 designs)", {
  skip_if_not_installed("pwr")
  with(t_designs, expect_equal(power_t_two(d = d, n = n, alpha = alpha)$power, quietly(each(t_designs,
    function(n, d, alpha) pwr::pwr.t.test(n = n, d = d, sig.level = alpha)$power)), tolerance = 1e-10))
  with(size_designs, expect_equal(power_t_two(d = d, power = power, alpha = alpha)$n1, ceiling(each(size_designs,
    function(d, power, alpha) pwr::pwr.t.test(d = d, power = power, sig.level = alpha)$n))))
  grid <- designs(n1 = c(10, 30, 100), n2 = c(20, 55), d = c(-0.5, 0.2, 0.7))
  with(grid, expect_equal(power_t_two(n1 = n1, n2 = n2, d = d)$power, each(grid,
    function(n1, n2, d) pwr::pwr.t2n.test(n1 = n1, n2 = n2, d = d)$power), tolerance = 1e-10))
  grid <- designs(n = c(5, 20, 100), d = c(-0.3, 0.1, 0.5, 0.9))
  with(grid, expect_equal(power_z_one(n = n, d = d)$power, each(grid,
    function(n, d) pwr::pwr.norm.test(n = n, d = d)$power), tolerance = 1e-13))
  with(anova_designs, expect_equal(power_anova(f = f, groups = groups, n = n)$power, each(anova_designs,
    function(groups, n, f) pwr::pwr.anova.test(k = groups, n = n, f = f)$power), tolerance = 1e-8))
  # Where all predictors are tested; of a part of them see the vignette "Why another number?".
  grid <- designs(n = c(20, 50, 120, 400), predictors = c(1, 2, 3, 5, 8), f2 = c(0.02, 0.15))
  with(grid, expect_equal(power_regression(n = n, predictors = predictors, f2 = f2)$power, each(grid,
    function(n, predictors, f2) pwr::pwr.f2.test(u = predictors, v = n - predictors - 1, f2 = f2)$power), tolerance = 1e-8))
})
