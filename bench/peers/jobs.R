# The standard jobs (bench/jobs.h) in R, as its users write them: its own power functions where it has one, else its
# vectorised distribution functions. Prints for each job its answer and its processor time in microseconds.

t_power <- function(n, es, alpha) {
  critical <- qt(1 - alpha / 2, n - 1)
  pt(critical, n - 1, sqrt(n) * es, lower.tail = FALSE) + pt(-critical, n - 1, sqrt(n) * es)
}

f_power <- function(N, k, f, alpha)
  pf(qf(alpha, k - 1, N - k, lower.tail = FALSE), k - 1, N - k, N * f^2, lower.tail = FALSE)

regression_power <- function(N, p, q, f2, alpha)
  pf(qf(alpha, q, N - p - 1, lower.tail = FALSE), q, N - p - 1, N * f2, lower.tail = FALSE)

random_regression_power <- function(N, p, q, f2, alpha) {
  e <- f2 / (1 + f2)
  error <- N - p - 1
  x <- 1 / (1 + error / q / qf(alpha, q, error, lower.tail = FALSE))
  k <- 0:qnbinom(1e-15, (error + q) / 2, 1 - e, lower.tail = FALSE)
  1 - sum(dnbinom(k, (error + q) / 2, 1 - e) * pbeta(x, q / 2 + k, error / 2))
}

size <- function(power, from)
  uniroot(function(N) power(N) - 0.8, c(from, 400), tol = 1e-9)$root

binomial_power <- function(N, p1, p0, alpha) {
  lower <- qbinom(alpha / 2, N, p0) - 1
  upper <- qbinom(alpha / 2, N, p0, lower.tail = FALSE)
  pbinom(lower, N, p1) + pbinom(upper, N, p1, lower.tail = FALSE)
}

# For each count of the second group, the first counts of the first group that reject on either side.
fisher_power <- function(n, p1, p2, alpha) {
  x <- 0:n
  tables <- expand.grid(x1 = x, x2 = x)
  total <- tables$x1 + tables$x2
  rejected <- phyper(tables$x1, n, n, total) <= alpha / 2 |
    phyper(tables$x1 - 1, n, n, total, lower.tail = FALSE) <= alpha / 2
  sum((dbinom(tables$x1, n, p1) * dbinom(tables$x2, n, p2))[rejected])
}

means <- c(10, 11, 12.5, 11.5)
jobs <- list(
  "t power" = function()
    power.t.test(34, 0.5, 1, 0.05, type = "one.sample", strict = TRUE)$power,
  "t size" = function()
    power.t.test(NULL, 0.5, 1, 0.05, 0.8, type = "one.sample", strict = TRUE, tol = 1e-9)$n,
  "t curve, 100 sizes" = function() t_power(10:109, 0.3, 0.05)[100],
  "t surface, 50 x 50" = function() {
    grid <- expand.grid(n = 11:60, es = seq(0.1, 0.9, length.out = 50))
    t_power(grid$n, grid$es, 0.05)[2500]
  },
  "F power" = function() power.anova.test(4, 20, var(means), 9, 0.05)$power,
  "F size" = function() 4 * ceiling(power.anova.test(4, NULL, var(means), 9, 0.05, 0.8)$n),
  "F surface, 500 x 20" = function() {
    grid <- expand.grid(f = seq(0.05, 1, length.out = 20), N = 20:519)
    f_power(grid$N, 4, grid$f, 0.05)[10000]
  },
  "size, fixed predictors" = function() size(function(N) regression_power(N, 5, 3, 0.15, 0.05), 7),
  "size, random predictors" = function() size(function(N) random_regression_power(N, 5, 3, 0.15, 0.05), 7),
  "binomial power, N = 400" = function() binomial_power(400, 0.57, 0.5, 0.05),
  "Fisher power, 50 and 50" = function() fisher_power(50, 0.3, 0.55, 0.05),
  "Fisher power, 100 and 100" = function() fisher_power(100, 0.3, 0.5, 0.05)
)

for (name in names(jobs)) {
  job <- jobs[[name]]
  answer <- job()
  count <- 1
  repeat {
    started <- proc.time()[["user.self"]]
    for (i in seq_len(count)) job()
    taken <- proc.time()[["user.self"]] - started
    if (taken > 0.1) break
    count <- count * 4
  }
  cat(sprintf("%s\t%.12g\t%.6g\n", name, answer, 1e6 * taken / count))
}
