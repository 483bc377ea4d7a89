tests <- statpower:::catalogue()

test_that("every question of every test is a function with its arguments", {
  prefixes <- c(power = "power_", precision = "precision_", effect = "effect_")
  functions <- unlist(lapply(tests, function(test) paste0(prefixes[names(test$questions)], test$name)))
  expect_setequal(setdiff(getNamespaceExports("statpower"), c("report", "sources")), functions)
  for (test in tests)
    for (measure in names(test$questions))
      expect_setequal(setdiff(names(formals(get(paste0(prefixes[[measure]], test$name)))), "unknown"),
                      names(test$questions[[measure]]))
})

test_that("every size that a worked example finds is the same alone and among others", {
  for (test in tests) for (example in test$examples) {
    words <- strsplit(example$command, " +")[[1]]
    if (words[2] != "size" || length(words) < 4) next
    options <- words[-(1:2)]
    given <- lapply(strsplit(options[c(FALSE, TRUE)], ","), utils::type.convert, as.is = TRUE)
    names(given) <- gsub("-", "_", sub("^--", "", options[c(TRUE, FALSE)]))
    ask <- get(paste0("power_", test$name))
    several <- given
    number <- Find(function(name) length(given[[name]]) == 1 && is.numeric(given[[name]]), names(given))
    several[[number]] <- rep(given[[number]], 3)
    one <- do.call(ask, given)
    many <- do.call(ask, several)
    for (name in setdiff(intersect(names(one), names(many)), c(names(given), "note")))
      expect_equal(many[[name]], if (is.numeric(many[[name]])) rep(one[[name]], length(many[[name]])) else one[[name]],
                   info = paste(example$command, name), tolerance = 1e-13)
  }
})

test_that("figures of every test have lines within their bounds", {
  grDevices::pdf(NULL)
  on.exit(grDevices::dev.off())
  for (test in tests) for (example in test$examples) {
    words <- strsplit(example$command, " +")[[1]]
    if (words[2] != "size") next
    options <- words[-(1:2)]
    given <- lapply(strsplit(options[c(FALSE, TRUE)], ","), utils::type.convert, as.is = TRUE)
    names(given) <- gsub("-", "_", sub("^--", "", options[c(TRUE, FALSE)]))
    answer <- do.call(get(paste0("power_", test$name)), given)
    lines <- plot(answer)
    expect_true(all(lines$reached >= 0 & lines$reached <= 1), info = example$command)
    expect_gt(nrow(lines), 3)
    expect_gt(max(lines$reached), answer$power)
  }
})
