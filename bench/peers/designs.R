# Designs from R beside R's own power functions and pwr: processor time and ratios, in one run.
#
#   R_LIBS=LIBRARY Rscript bench/peers/designs.R [DESIGNS]     LIBRARY has statpower; pwr is installed

library(statpower)
arguments <- commandArgs(trailingOnly = TRUE)
designs <- if (length(arguments)) as.integer(arguments) else 100000
i <- seq_len(designs)
n <- 10 + i %% 190
d <- 0.2 + i %% 7 * 0.1

# Processor seconds of one call: the least of some rounds, each long enough to be measured.
seconds <- function(call, rounds = 7) {
  count <- 1
  taken_by <- function() sum(system.time(for (k in seq_len(count)) call())[1:2])
  while ((taken <- taken_by()) < 0.2) count <- count * 4
  min(taken, replicate(rounds, taken_by())) / count
}

# The peers' scalar functions are given fewer designs; their time is that of one times the number.
few <- i[seq_len(min(500, designs))]
one_by_one <- function(power) function() vapply(few, function(k) power(n[k], d[k]), 0)
whole <- function(scalar) designs / length(few) * scalar
quietly <- suppressWarnings

shown <- function(name, ours, ...) {
  peers <- c(...)
  cat(sprintf("%-34s %9.3g s", name, ours), sprintf("  %s %9.3g s (%.1f times)", names(peers), peers, peers / ours), "\n", sep = "")
}

check <- max(abs(power_t_two(n = n, d = d)$power[few] -
                 quietly(one_by_one(function(n, d) power.t.test(n, d, strict = TRUE)$power)())))
shown(sprintf("t power of %d designs", designs), seconds(function() power_t_two(n = n, d = d)),
      "power.t.test, a vector" = seconds(function() quietly(power.t.test(n, d, strict = TRUE)), 3),
      "power.t.test, one by one" = whole(seconds(one_by_one(function(n, d) quietly(power.t.test(n, d, strict = TRUE)$power)), 3)),
      "pwr.t.test, one by one" = whole(seconds(one_by_one(function(n, d) quietly(pwr::pwr.t.test(n = n, d = d)$power)), 3)))
shown("one size of a t test", seconds(function() power_t_two(d = 0.5)),
      "power.t.test" = seconds(function() power.t.test(delta = 0.5, power = 0.8, strict = TRUE)),
      "pwr.t.test" = seconds(function() pwr::pwr.t.test(d = 0.5, power = 0.8)))
shown("10000 sizes of t tests", seconds(function() power_t_two(d = rep_len(d, 10000))),
      "power.t.test, one by one" = 10000 * seconds(function() power.t.test(delta = 0.4, power = 0.8, strict = TRUE)),
      "pwr.t.test, one by one" = 10000 * seconds(function() pwr::pwr.t.test(d = 0.4, power = 0.8)))
cat(sprintf("largest difference of powers %.1g\n", check))
