drawn <- function(...) {
  grDevices::pdf(NULL)
  on.exit(grDevices::dev.off())
  plot(...)
}

test_that("a line goes through the design that was found", {
  r <- power_t_two(diff = 5, sd = 12, power = 0.8)
  lines <- drawn(r, over = "n1")
  expect_equal(lines$reached[lines$over == r$n1], r$power)
})

test_that("sizes that were found keep their allocation, sizes that were given stay", {
  found <- power_t_two(d = 0.5, ratio = 2)
  at <- function(x, ...) drawn(x, list(...))$reached
  expect_equal(at(found, n1 = 30), power_t_two(d = 0.5, n1 = 30, n2 = 60)$power)
  expect_equal(at(found, n2 = 60), power_t_two(d = 0.5, n1 = 30, n2 = 60)$power)
  expect_equal(at(power_t_two(d = 0.5, n1 = 40, n2 = 50), n1 = 30), power_t_two(d = 0.5, n1 = 30, n2 = 50)$power)
})

test_that("other arguments are drawn over, too, at what was found", {
  r <- power_t_two(d = 0.5)
  expect_equal(drawn(r, list(d = 0.4))$reached, power_t_two(d = 0.4, n = r$n1)$power)
  r <- power_t_two(n = 60, sd = 12, power = 0.8)
  expect_equal(drawn(r, list(sd = 15))$reached, power_t_two(diff = r$diff, sd = 15, n = 60)$power)
})

test_that("designs are lines, and those that differ only in their target are one", {
  expect_equal(levels(drawn(power_t_two(diff = c(5, 6), sd = 12))$line), c("diff = 5", "diff = 6"))
  expect_equal(nlevels(drawn(power_t_two(diff = 5, sd = 12, power = c(0.8, 0.9)))$line), 1)
})

test_that("what cannot be drawn over is refused", {
  expect_error(drawn(power_t_one(d = 0.5), over = "alternative"), "alternative", class = "statpower_refusal")
  expect_error(drawn(power_t_one(d = 0.5), over = "mu"), "mu", class = "statpower_refusal")
  for (over in list(3, list(10), list(n = 1:3, d = 1), c("n", "d")))
    expect_error(drawn(power_t_one(d = 0.5), over), "over", class = "statpower_refusal")
  expect_error(drawn(power_t_one(d = NA, n = 20)), "no answer", class = "statpower_refusal")
})

test_that("autoplot makes the same figure with ggplot2", {
  skip_if_not_installed("ggplot2")
  r <- power_t_two(diff = c(5, 6), sd = 12)
  figure <- ggplot2::autoplot(r, over = "n1")
  expect_equal(figure$data, drawn(r, over = "n1"))
  expect_s3_class(ggplot2::ggplot_build(figure), "ggplot_built")
})
