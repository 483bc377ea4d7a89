#!/usr/bin/env Rscript
# Writes tests_of_proportions.csv beside itself: powers, levels and half-widths of designs by R's own functions
# (power.prop.test, binom.test, prop.test, the distributions) and by the definitions of the tests, table by table.

here <- dirname(sub("^--file=", "", grep("^--file=", commandArgs(), value = TRUE)))
rows <- character()
comment <- function(text) rows <<- c(rows, paste("#", text))
row <- function(design, value, tolerance = 1e-9)
  rows <<- c(rows, sprintf("%.12g,%g,%s", value, tolerance, design))

comment("One proportion: normal approximation")
z_one <- function(n, p, p0, alpha = 0.05, sides = 2, correction = 0) {
  d <- abs(p - p0) * sqrt(n); z <- qnorm(1 - alpha / sides) * sqrt(p0 * (1 - p0)); s <- sqrt(p * (1 - p))
  pnorm((d - z - correction) / s) + if (sides == 2) pnorm((-d - z - correction) / s) else 0
}
row("prop-one power p1=0.6 p0=0.5 n=100", z_one(100, 0.6, 0.5))
row("prop-one power p1=0.2 p0=0.3 n=80 alternative=one-sided alpha=0.01", z_one(80, 0.2, 0.3, 0.01, 1))
row("prop-one power p0=0.3 odds-ratio=2 n=50 continuity=yes",
    z_one(50, 0.6 / 1.3, 0.3, correction = 1 / (2 * sqrt(50))))
row("prop-one power p0=0.3 risk-ratio=1.5 n=60", z_one(60, 0.45, 0.3))
row("prop-one power p0=0.3 risk-difference=-0.1 n=60", z_one(60, 0.2, 0.3))
row("prop-one power p0=0.3 h=0.25 n=60", z_one(60, sin(asin(sqrt(0.3)) + 0.125)^2, 0.3))

comment("One proportion: exact, half of alpha in each tail")
rejected <- function(n, p0, alpha, sides, p)  # which counts of 0 to n
  (if (sides == 2 || p < p0) pbinom(0:n, n, p0) <= alpha / sides else FALSE) |
  (if (sides == 2 || p > p0) pbinom((0:n) - 1, n, p0, lower.tail = FALSE) <= alpha / sides else FALSE)
exact_one <- function(n, p, p0, alpha = 0.05, sides = 2, truth = p)
  sum(dbinom(0:n, n, truth)[rejected(n, p0, alpha, sides, p)])
row("prop-one power p1=0.95 p0=0.9 n=292 method=exact alternative=one-sided alpha=0.025",
    exact_one(292, 0.95, 0.9, 0.025, 1))
row("prop-one level p1=0.95 p0=0.9 n=292 method=exact alternative=one-sided alpha=0.025",
    exact_one(292, 0.95, 0.9, 0.025, 1, 0.9))
row("prop-one power p1=0.6 p0=0.5 n=100 method=exact", exact_one(100, 0.6, 0.5))
row("prop-one level p1=0.6 p0=0.5 n=100 method=exact", exact_one(100, 0.6, 0.5, truth = 0.5))
row("prop-one power p1=0.01 p0=0.05 n=150 method=exact", exact_one(150, 0.01, 0.05))

comment("One proportion: intervals")
half <- function(limits) diff(range(limits)) / 2
z <- qnorm(0.975)
row("prop-one halfwidth p1=0.3 n=100", half(prop.test(30, 100, correct = FALSE)$conf.int))
row("prop-one halfwidth p1=0.3 n=100 continuity=yes", half(prop.test(30, 100)$conf.int))
row("prop-one halfwidth p1=0.3 n=100 interval=clopper-pearson", half(binom.test(30, 100)$conf.int))
row("prop-one halfwidth p1=0.3 n=100 interval=jeffreys confidence=0.9", half(qbeta(c(0.05, 0.95), 30.5, 70.5)))
row("prop-one halfwidth p1=0.3 n=100 interval=wald", z * sqrt(0.21 / 100))
row("prop-one halfwidth p1=0.3 n=100 interval=logit", half(plogis(qlogis(0.3) + c(-z, z) / sqrt(21))))
n4 <- 100 + z^2; p4 <- (30 + z^2 / 2) / n4
row("prop-one halfwidth p1=0.3 n=100 interval=agresti-coull", z * sqrt(p4 * (1 - p4) / n4))

comment("Paired proportions: normal approximation and exact test of the discordant pairs")
connor <- function(n, p10, p01, alpha = 0.05, sides = 2) {
  psi <- p10 + p01; d <- abs(p10 - p01) * sqrt(n); q <- qnorm(1 - alpha / sides) * sqrt(psi)
  s <- sqrt(psi - (p10 - p01)^2)
  pnorm((d - q) / s) + if (sides == 2) pnorm((-d - q) / s) else 0
}
pairs <- function(n, p10, p01, alpha = 0.05, sides = 2, truth = p10 / (p10 + p01), psi = p10 + p01)
  sum(dbinom(1:n, n, psi) * sapply(1:n, function(m) {
    r <- (if (sides == 2 || p10 > p01) pbinom((0:m) - 1, m, 0.5, lower.tail = FALSE) <= alpha / sides else FALSE) |
      (if (sides == 2 || p10 < p01) pbinom(0:m, m, 0.5) <= alpha / sides else FALSE)
    sum(dbinom(0:m, m, truth)[r])
  }))
largest <- function(f, from = 0, to = 1) {  # of a function with many peaks
  x <- seq(from, to, length.out = 4001); y <- sapply(x, f); i <- order(-y)[1:20]
  max(y, sapply(i, function(k) optimize(f, c(x[max(k - 1, 1)], x[min(k + 1, 4001)]), maximum = TRUE, tol = 1e-10)$objective))
}
row("prop-paired power p10=0.25 p01=0.1 n=160", connor(160, 0.25, 0.1))
row("prop-paired power odds-ratio=2.5 discordant=0.35 n=160", connor(160, 0.25, 0.1))
row("prop-paired power p10=0.1 p01=0.2 n=90 alternative=one-sided", connor(90, 0.1, 0.2, sides = 1))
both <- 0.3 * 0.5 + 0.3 * sqrt(0.21 * 0.25)
row("prop-paired power p1=0.3 p2=0.5 rho=0.3 n=80", connor(80, 0.3 - both, 0.5 - both))
row("prop-paired power p10=0.25 p01=0.1 n=168 method=exact", pairs(168, 0.25, 0.1))
row("prop-paired power p10=0.1 p01=0.2 n=90 method=exact alternative=one-sided", pairs(90, 0.1, 0.2, sides = 1))
row("prop-paired level p10=0.1 p01=0.2 n=40 method=exact alternative=one-sided",
    largest(function(psi) pairs(40, 0.1, 0.2, sides = 1, truth = 0.5, psi = psi)), 1e-7)
row("prop-paired halfwidth p10=0.25 p01=0.1 n=100 interval=wald", z * sqrt((0.35 - 0.15^2) / 100))
row("prop-paired halfwidth p10=0.25 p01=0.1 n=100", z * sqrt((37 / 102 - (15 / 102)^2) / 102))
row("prop-paired halfwidth p10=0.25 p01=0.1 n=100 interval=agresti-min", z * sqrt((36 / 102 - (15 / 102)^2) / 102))

comment("Two proportions: normal approximation")
z_two <- function(n1, n2, p1, p2, alpha = 0.05, sides = 2, correct = FALSE, pooled = TRUE) {
  s1 <- sqrt(p1 * (1 - p1) / n1 + p2 * (1 - p2) / n2); p <- (n1 * p1 + n2 * p2) / (n1 + n2)
  s0 <- if (pooled) sqrt(p * (1 - p) * (1 / n1 + 1 / n2)) else s1
  d <- abs(p1 - p2); q <- qnorm(1 - alpha / sides) * s0 + if (correct) (1 / n1 + 1 / n2) / 2 else 0
  pnorm((d - q) / s1) + if (sides == 2) pnorm((-d - q) / s1) else 0
}
row("prop-two power p1=0.5 p2=0.75 n=77", power.prop.test(77, 0.5, 0.75, strict = TRUE)$power)
row("prop-two power p1=0.3 p2=0.5 n=100 alternative=one-sided",
    power.prop.test(100, 0.3, 0.5, alternative = "one.sided")$power)
row("prop-two power p1=0.3 p2=0.5 n1=63 n2=125 alternative=one-sided continuity=yes",
    z_two(63, 125, 0.3, 0.5, sides = 1, correct = TRUE))
row("prop-two power p1=0.3 p2=0.5 n1=60 ratio=1.5 variance=unpooled", z_two(60, 90, 0.3, 0.5, pooled = FALSE))
row("prop-two power p2=0.3 odds-ratio=2 n=120", z_two(120, 120, 0.6 / 1.3, 0.3))
row("prop-two power p1=0.3 odds-ratio=2 n=120", z_two(120, 120, 0.3, 3 / 17))
row("prop-two power p2=0.3 risk-ratio=1.5 n=120", z_two(120, 120, 0.45, 0.3))
row("prop-two power p2=0.3 risk-difference=0.2 n=120", z_two(120, 120, 0.5, 0.3))
row("prop-two power p2=0.3 h=0.4 n=120", z_two(120, 120, sin(asin(sqrt(0.3)) + 0.2)^2, 0.3))

comment("Two proportions: exact, each table by the definition of its test")
tables <- function(n1, n2, p1, p2, p_value, alpha = 0.05, sides = 2, truth = c(p1, p2)) {
  x <- expand.grid(x1 = 0:n1, x2 = 0:n2)
  up <- mapply(p_value, x$x1, n1, x$x2, n2); down <- mapply(p_value, n1 - x$x1, n1, n2 - x$x2, n2)
  level <- alpha / sides * (1 + 1e-11)
  r <- (if (sides == 2 || p1 > p2) up <= level else FALSE) | (if (sides == 2 || p1 < p2) down <= level else FALSE)
  function(q1 = truth[1], q2 = truth[2]) sum((dbinom(x$x1, n1, q1) * dbinom(x$x2, n2, q2))[r])
}
fisher <- function(x1, n1, x2, n2) phyper(x1 - 1, n1, n2, x1 + x2, lower.tail = FALSE)
chi_square <- function(correct = FALSE, pooled = TRUE) function(x1, n1, x2, n2) {
  p <- (x1 + x2) / (n1 + n2); q1 <- x1 / n1; q2 <- x2 / n2
  d <- q1 - q2 - if (correct) (1 / n1 + 1 / n2) / 2 else 0
  v <- if (pooled) p * (1 - p) * (1 / n1 + 1 / n2) else q1 * (1 - q1) / n1 + q2 * (1 - q2) / n2
  if (v == 0) as.numeric(d <= 0) else pnorm(-d / sqrt(v))
}
likelihood_ratio <- function(x1, n1, x2, n2) {
  l <- function(x, n, p) dbinom(x, n, p, log = TRUE)
  G2 <- 2 * (l(x1, n1, x1 / n1) + l(x2, n2, x2 / n2) - l(x1, n1, (x1 + x2) / (n1 + n2)) - l(x2, n2, (x1 + x2) / (n1 + n2)))
  pnorm(-sign(x1 / n1 - x2 / n2) * sqrt(max(G2, 0)))
}
t_test <- function(x1, n1, x2, n2) {
  v <- (x1 * (1 - x1 / n1) + x2 * (1 - x2 / n2)) / (n1 + n2 - 2) * (1 / n1 + 1 / n2); d <- x1 / n1 - x2 / n2
  if (v == 0) as.numeric(d <= 0) else pt(-d / sqrt(v), n1 + n2 - 2)
}
exact_two <- function(words, p_value, n1, n2, p1, p2, ...) {
  power <- tables(n1, n2, p1, p2, p_value, ...)
  design <- sprintf("p1=%g p2=%g n1=%d n2=%d method=exact %s", p1, p2, n1, n2, words)
  row(paste("prop-two power", design), power())
  row(paste("prop-two level", design), largest(function(p) power(p, p)), 1e-7)
}
exact_two("statistic=fisher", fisher, 30, 30, 0.5, 0.8)
exact_two("statistic=fisher alternative=one-sided", fisher, 20, 35, 0.7, 0.35, sides = 1)
exact_two("statistic=chi-square", chi_square(), 30, 24, 0.5, 0.8)
exact_two("statistic=chi-square variance=unpooled", chi_square(pooled = FALSE), 30, 24, 0.5, 0.8)
exact_two("statistic=chi-square continuity=yes alternative=one-sided", chi_square(TRUE), 25, 30, 0.4, 0.7, sides = 1)
exact_two("statistic=likelihood-ratio alternative=one-sided", likelihood_ratio, 25, 30, 0.4, 0.7, sides = 1)
exact_two("statistic=likelihood-ratio", likelihood_ratio, 25, 30, 0.1, 0.3)
exact_two("statistic=t alpha=0.1", t_test, 25, 30, 0.1, 0.3, alpha = 0.1)

comment("Two proportions: intervals. Newcombe's (1998) table II, method 10: 56 of 70 against 48 of 80, 0.0524 to 0.3339")
row("prop-two halfwidth p1=0.8 p2=0.6 n1=70 n2=80", (0.3339 - 0.0524) / 2, 0.0001)
row("prop-two halfwidth p1=0.8 p2=0.6 n1=70 n2=80 interval=wald",
    half(prop.test(c(56, 48), c(70, 80), correct = FALSE)$conf.int))
row("prop-two halfwidth p1=0.8 p2=0.6 n1=70 n2=80 interval=wald continuity=yes",
    half(prop.test(c(56, 48), c(70, 80))$conf.int))
ac <- c(57 / 72, 49 / 82)
row("prop-two halfwidth p1=0.8 p2=0.6 n1=70 n2=80 interval=agresti-caffo", z * sqrt(sum(ac * (1 - ac) / c(72, 82))))
row("prop-two halfwidth p1=0.8 p2=0.6 n1=70 n2=80 interval=hauck-anderson",
    z * sqrt(0.16 / 69 + 0.24 / 79) + 1 / 140)

writeLines(c("value,tolerance,design", rows), file.path(here, "tests_of_proportions.csv"))
