#!/usr/bin/env Rscript
# Writes tests_of_means_and_correlations.csv beside itself: powers and half-widths of designs by R's own
# functions (power.t.test, power.anova.test, the noncentral distributions, good to 1e-9) and by closed forms,
# and the sizes of published tables. Lists are separated by semicolons.

here <- dirname(sub("^--file=", "", grep("^--file=", commandArgs(), value = TRUE)))
rows <- character()
comment <- function(text) rows <<- c(rows, paste("#", text))
row <- function(design, value, tolerance = 1e-9)
  rows <<- c(rows, sprintf("%.12g,%g,%s", value, tolerance, design))

t_power <- function(df, noncentrality, alpha = 0.05, sides = 2) {
  t <- qt(alpha / sides, df, lower.tail = FALSE)
  above <- pt(t, df, noncentrality, lower.tail = FALSE)
  if (sides == 1) above else above + pt(-t, df, noncentrality)
}
f_power <- function(df1, df2, noncentrality, alpha = 0.05)
  pf(qf(alpha, df1, df2, lower.tail = FALSE), df1, df2, noncentrality, lower.tail = FALSE)
t_margin <- function(df, confidence = 0.95) qt((1 + confidence) / 2, df)

comment("Paired t test")
row("t-paired power diff=1.5 sd=4 n=40",
    power.t.test(40, 1.5, 4, type = "paired", strict = TRUE)$power)
row("t-paired power diff=-1.5 sd=4 n=40 alternative=one-sided alpha=0.01",
    power.t.test(40, 1.5, 4, 0.01, type = "paired", alternative = "one.sided")$power)
sd_of_differences <- function(sd1, sd2, corr) sqrt(sd1^2 + sd2^2 - 2 * corr * sd1 * sd2)
row("t-paired power diff=2 sd1=5 sd2=6 corr=0.6 n=30", t_power(29, sqrt(30) * 2 / sd_of_differences(5, 6, 0.6)))
row("t-paired power diff=2 sd1=5 sd2=6 corr=0 n=30", t_power(29, sqrt(30) * 2 / sd_of_differences(5, 6, 0)))
row("t-paired power diff=2 sd1=5 sd2=6 corr=-0.3 n=30", t_power(29, sqrt(30) * 2 / sd_of_differences(5, 6, -0.3)))
row("t-paired power dz=0.5 n=34", t_power(33, sqrt(34) * 0.5))
row("t-paired power d=0.5 corr=0.7 n=20", t_power(19, sqrt(20) * 0.5 / sqrt(2 * 0.3)))
row("t-paired halfwidth sd=4 n=40 confidence=0.9", t_margin(39, 0.9) * 4 / sqrt(40))
row("t-paired halfwidth sd1=5 sd2=6 corr=0 n=30", t_margin(29) * sqrt(61) / sqrt(30))

comment("Two independent means: pooled and Welch's test")
row("t-two power diff=1 sd=1 n=20", power.t.test(20, 1, 1, strict = TRUE)$power)
row("t-two power diff=-1 sd=1 n=20", power.t.test(20, 1, 1, strict = TRUE)$power)
row("t-two power d=0.3 n=100 alternative=one-sided", power.t.test(100, 0.3, alternative = "one.sided")$power)
row("t-two power diff=5 sd=12 n1=40 n2=80", t_power(118, 5 / 12 * sqrt(40 * 80 / 120)))
row("t-two power diff=5 sd=12 n1=40 ratio=1.51 alpha=0.01", t_power(99, 5 / 12 * sqrt(40 * 61 / 101), 0.01))
row("t-two power diff=5 sd=12 total=90 ratio=2", t_power(88, 5 / 12 * sqrt(30 * 60 / 90)))
welch <- function(n1, sd1, n2, sd2, diff, ...) {
  q <- c(sd1^2 / n1, sd2^2 / n2)
  t_power(sum(q)^2 / sum(q^2 / (c(n1, n2) - 1)), diff / sqrt(sum(q)), ...)
}
row("t-two power diff=5 sd1=8 sd2=12 n1=40 n2=50 variance=unpooled", welch(40, 8, 50, 12, 5))
row("t-two power diff=5 sd1=8 sd2=12 n=40 variance=unpooled alternative=one-sided",
    welch(40, 8, 40, 12, 5, sides = 1))
row("t-two power diff=5 sd=12 n1=12 n2=60 variance=unpooled", welch(12, 12, 60, 12, 5))
row("t-two power diff=5 sd=12 n1=12 n2=60", t_power(70, 5 / 12 * sqrt(12 * 60 / 72)))
row("t-two power d=0.5 n=12 variance=unpooled", welch(12, 1, 12, 1, 0.5))
row("t-two halfwidth sd=12 n=64", t_margin(126) * 12 * sqrt(2 / 64))
row("t-two halfwidth sd=12 n1=12 n2=60 variance=unpooled confidence=0.9", {
  q <- 144 / c(12, 60)
  t_margin(sum(q)^2 / sum(q^2 / c(11, 59)), 0.9) * sqrt(sum(q))
})
comment("J. Cohen, A power primer, Psychological Bulletin 112 (1992), table 2: sizes for power 0.80,")
comment("good to an observation")
for (case in list(c(0.2, 393), c(0.5, 64), c(0.8, 26)))
  row(sprintf("t-two power d=%g n=%d", case[1], case[2]), 0.80, 0.02)

comment("One-way analysis of variance")
row("anova power f=0.25 groups=4 n=45", f_power(3, 176, 180 * 0.25^2))
row("anova power eta2=0.1 groups=3 n=20", f_power(2, 57, 60 * 0.1 / 0.9))
row("anova power f=0.4 sizes=10;20;30", f_power(2, 57, 60 * 0.16))
row("anova power f=0.3 groups=2 total=51", f_power(1, 49, 51 * 0.09))
row("anova power f=0.3 total=60 weights=1;2;3", f_power(2, 57, 60 * 0.09))
means <- c(10, 12, 15, 11)
row("anova power means=10;12;15;11 sd=5 n=15", power.anova.test(4, 15, var(means), 25)$power)
row("anova power means=10;12;15;11 sd=5 n=15 alpha=0.01",
    power.anova.test(4, 15, var(means), 25, sig.level = 0.01)$power)
unequal <- c(10, 20, 15, 30)
spread <- function(means, sizes) sum(sizes * (means - weighted.mean(means, sizes))^2) / sum(sizes)
row("anova power means=10;12;15;11 sd=5 sizes=10;20;15;30", f_power(3, 71, 75 * spread(means, unequal) / 25))
row("anova effect-f means=10;12;15;11 sd=5 n=15", sqrt(spread(means, c(1, 1, 1, 1)) / 25))
row("anova effect-f means=10;12;15;11 sd=5 sizes=10;20;15;30", sqrt(spread(means, unequal) / 25))
row("anova effect-eta2 means=10;12;15;11 sd=5 n=15", {
  f2 <- spread(means, c(1, 1, 1, 1)) / 25
  f2 / (1 + f2)
})
row("anova effect-rmsse means=10;12;15;11 sd=5 n=15", sd(means) / 5)
row("anova halfwidth groups=4 sd=5 n=15", t_margin(56) * 5 / sqrt(15))
row("anova halfwidth groups=4 sd=5 n=15 interval=grand-mean", t_margin(56) * 5 / sqrt(60))
row("anova halfwidth sd=5 sizes=10;20;15;30", t_margin(71) * 5 / sqrt(10))
row("anova halfwidth sd=5 sizes=10;20;15;30 interval=grand-mean", t_margin(71) * 5 / sqrt(75))
comment("Cohen (1992), table 2")
for (case in list(c(3, 0.1, 322), c(3, 0.25, 52), c(3, 0.4, 21), c(4, 0.25, 45), c(5, 0.25, 39), c(6, 0.1, 215)))
  row(sprintf("anova power f=%g groups=%d n=%d", case[2], case[1], case[3]), 0.80, 0.02)

comment("Contrasts of means: any scale of the coefficients")
q <- function(coefficients, sizes) sum(coefficients^2 / sizes)
halves <- c(1, -0.5, -0.5, 0)
psi <- sum(halves * means)
row("contrast power means=10;12;15;11 coefficients=1;-0.5;-0.5;0 sd=5 n=15",
    t_power(56, psi / 5 / sqrt(q(halves, 15))))
row("contrast power means=10;12;15;11 coefficients=2;-1;-1;0 sd=5 n=15",
    t_power(56, psi / 5 / sqrt(q(halves, 15))))
row("contrast power means=10;12;15;11 coefficients=2;-1;-1;0 sd=5 sizes=10;20;15;30 alternative=one-sided",
    t_power(71, abs(psi) / 5 / sqrt(q(halves, unequal)), sides = 1))
row("contrast power psi=3 coefficients=-1;0;1 sd=5 n=20", t_power(57, 3 / 5 / sqrt(q(c(-1, 0, 1), 20))))
row("contrast power d=0.6 coefficients=-3;-1;1;3 n=50", t_power(196, 0.6 / sqrt(q(c(-3, -1, 1, 3), 50))))
row("contrast effect-d means=10;12;15;11 coefficients=2;-1;-1;0 sd=5 n=15", 2 * psi / 5)
row("contrast effect-f means=10;12;15;11 coefficients=2;-1;-1;0 sd=5 n=15", abs(psi) / 5 / sqrt(60 * q(halves, 15)))
row("contrast halfwidth coefficients=2;-1;-1;0 sd=5 sizes=10;20;15;30",
    t_margin(71) * 2 * 5 * sqrt(q(halves, unequal)))

comment("Pairwise comparisons")
pair <- function(df, d, n1, n2, level) t_power(df, d / sqrt(1 / n1 + 1 / n2), level)
row("pairwise power means=10;12;15;11 sd=5 n=15 first=1 second=3", pair(56, 1, 15, 15, 0.05 / 6))
row("pairwise power means=10;12;15;11 sd=5 n=15 first=3 second=1", pair(56, 1, 15, 15, 0.05 / 6))
row("pairwise power means=10;12;15;11 sd=5 sizes=10;20;15;30 first=2 second=4 adjustment=none",
    pair(71, 0.2, 20, 30, 0.05))
row("pairwise power diff=4 sd=5 groups=5 n=20 adjustment=sidak", pair(95, 0.8, 20, 20, 1 - 0.95^(1 / 10)))
row("pairwise power d=0.8 groups=5 n=20", pair(95, 0.8, 20, 20, 0.005))
row("pairwise power d=-0.8 sizes=10;20;30 first=2 second=3", pair(57, 0.8, 20, 30, 0.05 / 3))
row("pairwise halfwidth sd=5 groups=4 n=15", qt(1 - 0.025 / 6, 56) * 5 * sqrt(2 / 15))
row("pairwise halfwidth sd=5 sizes=10;20;15;30 first=4 second=1 adjustment=none",
    t_margin(71) * 5 * sqrt(1 / 30 + 1 / 10))

comment("Pearson's correlation")
z_power <- function(distance, alpha = 0.05, sides = 2, ratio = 1) {
  z <- qnorm(alpha / sides, lower.tail = FALSE)
  above <- pnorm((distance - z) / ratio)
  if (sides == 1) above else above + pnorm(-(distance + z) / ratio)
}
row("pearson power r=0.3 n=85", z_power(atanh(0.3) * sqrt(82)))
row("pearson power r=0.5 r0=0.3 n=100 alternative=one-sided", z_power((atanh(0.5) - atanh(0.3)) * sqrt(97), sides = 1))
row("pearson power r=0.1 r0=0.3 n=100 alternative=one-sided", z_power((atanh(0.3) - atanh(0.1)) * sqrt(97), sides = 1))
row("pearson power q=0.2 r0=0.4 n=150 alpha=0.01", z_power(0.2 * sqrt(147), 0.01))
hotelling <- function(r, r0, n, ...) {  # mean and variance of z in small samples
  m <- n - 1
  mean <- atanh(r) + r / (2 * m) * (1 + (5 + r^2) / (4 * m) + (11 + 2 * r^2 + 3 * r^4) / (8 * m^2))
  variance <- (1 + (4 - r^2) / (2 * m) + (22 - 6 * r^2 - 3 * r^4) / (6 * m^2)) / m
  z_power((mean - atanh(r0) - r0 / (2 * m)) * sqrt(n - 3), ratio = sqrt(variance * (n - 3)), ...)
}
row("pearson power r=0.3 n=85 bias-correction=yes", hotelling(0.3, 0, 85))
row("pearson power r=0.6 r0=0.2 n=30 bias-correction=yes alternative=one-sided", hotelling(0.6, 0.2, 30, sides = 1))
row("pearson effect-q r=0.5 r0=0.3 n=10", atanh(0.5) - atanh(0.3))
half_width <- function(z, variance, confidence = 0.95) {
  margin <- qnorm((1 + confidence) / 2) * sqrt(variance)
  (tanh(z + margin) - tanh(z - margin)) / 2
}
row("pearson halfwidth r=0.3 n=85", half_width(atanh(0.3), 1 / 82))
row("pearson halfwidth r=0.3 n=85 bias-correction=yes confidence=0.9", half_width(atanh(0.3) - 0.3 / 168, 1 / 82, 0.9))
comment("Cohen (1992), table 2")
for (case in list(c(0.1, 783), c(0.3, 85), c(0.5, 28))) row(sprintf("pearson power r=%g n=%d", case[1], case[2]), 0.80, 0.02)

comment("Spearman's rank correlation: variances of Bonett and Wright, Fieller et al., Caruso and Cliff")
row("spearman power r=0.4 n=50", z_power(atanh(0.4) * sqrt(47 / 1.08)))
row("spearman power r=0.4 r0=0.1 n=50 z-variance=fieller", z_power((atanh(0.4) - atanh(0.1)) * sqrt(47 / 1.06)))
caruso <- function(r, n) 1 / (n - 2) + abs(atanh(r)) / (6 * n + 4 * sqrt(n))
row("spearman power r=0.4 n=50 z-variance=caruso-cliff alternative=one-sided", z_power(atanh(0.4) / sqrt(caruso(0.4, 50)), sides = 1))
row("spearman halfwidth r=0.4 n=50", half_width(atanh(0.4), 1.08 / 47))
row("spearman halfwidth r=0.4 n=50 z-variance=caruso-cliff", half_width(atanh(0.4), caruso(0.4, 50)))

comment("Partial correlation: that of n less the number of variables partialled out")
row("partial power r=0.3 partialled-out=4 n=89", z_power(atanh(0.3) * sqrt(82)))
row("partial power r=0.3 partialled-out=4 n=89 bias-correction=yes", hotelling(0.3, 0, 85))
row("partial power r=0.3 r0=0.1 partialled-out=2 n=60 alternative=one-sided", z_power((atanh(0.3) - atanh(0.1)) * sqrt(55), sides = 1))
row("partial halfwidth r=0.3 partialled-out=4 n=89", half_width(atanh(0.3), 1 / 82))

comment("Multiple regression, fixed predictors")
row("regression power f2=0.15 predictors=5 n=92", f_power(5, 86, 92 * 0.15))
row("regression power r2=0.1 predictors=5 n=95", f_power(5, 89, 95 * 0.1 / 0.9))
row("regression power r2=0.3 r2-reduced=0.2 predictors=5 tested=2 n=60", f_power(2, 54, 60 * 0.1 / 0.7))
row("regression power partial-r2=0.125 predictors=5 tested=2 n=60", f_power(2, 54, 60 / 7))
row("regression power f2=0.15 predictors=3 tested=1 n=55 intercept=no", f_power(1, 52, 55 * 0.15))
row("regression effect-f2 r2=0.3 r2-reduced=0.2 predictors=5 tested=2 n=60", 1 / 7)
row("regression effect-partial-r2 r2=0.3 r2-reduced=0.2 predictors=5 tested=2 n=60", 0.125)
comment("Multiple regression, random predictors: negative binomial mixture of beta distributions")
random_predictors <- function(e, n, p, q, alpha = 0.05) {
  df <- n - 1 - p
  F <- qf(alpha, q, df, lower.tail = FALSE)
  k <- 0:5000
  1 - sum(dnbinom(k, (n - 1 - (p - q)) / 2, 1 - e) * pbeta(q * F / (q * F + df), q / 2 + k, df / 2))
}
row("regression power r2=0.1 predictors=5 n=95 model=random", random_predictors(0.1, 95, 5, 5))
row("regression power partial-r2=0.125 predictors=5 tested=2 n=60 model=random", random_predictors(0.125, 60, 5, 2))
comment("Cohen (1992), table 2")
for (case in list(c(2, 0.15, 67), c(3, 0.15, 76), c(5, 0.15, 91), c(8, 0.35, 50)))
  row(sprintf("regression power f2=%g predictors=%d n=%d", case[2], case[1], case[3]), 0.80, 0.02)

comment("One mean with a known standard deviation")
row("z-one power mean=105 null=100 sd=15 n=50", z_power(5 / 15 * sqrt(50)))
row("z-one power d=-0.4 n=50 alternative=one-sided alpha=0.001", z_power(0.4 * sqrt(50), 0.001, 1))
row("z-one power d=0.5 n=1", z_power(0.5))
row("z-one halfwidth sd=15 n=50 confidence=0.99", qnorm(0.995) * 15 / sqrt(50))

writeLines(c("value,tolerance,design", rows), file.path(here, "tests_of_means_and_correlations.csv"))
