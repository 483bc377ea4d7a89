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

# The worked examples that search sizes, as calls.
searches <- function(test) {
  size <- Filter(function(example) grepl("^[^ ]+ size ", example$command), test$examples)
  lapply(size, function(example) {
    words <- strsplit(example$command, " +")[[1]][-(1:2)]
    given <- lapply(strsplit(words[c(FALSE, TRUE)], ","), utils::type.convert, as.is = TRUE)
    names(given) <- gsub("-", "_", sub("^--", "", words[c(TRUE, FALSE)]))
    list(command = example$command, ask = get(paste0("power_", test$name)), given = given)
  })
}
searches <- unlist(lapply(unname(tests), searches), recursive = FALSE)

test_that("a size is the same alone and among others", {
  expect_gt(length(searches), 5)
  for (search in searches) {
    given <- several <- search$given
    number <- Find(function(name) length(given[[name]]) == 1 && is.numeric(given[[name]]), names(given))
    several[[number]] <- rep(given[[number]], 3)
    one <- do.call(search$ask, given)
    many <- do.call(search$ask, several)
    found <- setdiff(intersect(names(one), names(many)), c(names(given), "note"))
    for (name in Filter(function(name) is.numeric(many[[name]]), found))
      expect_equal(many[[name]], rep(one[[name]], length(many[[name]])), info = paste(search$command, name),
                   tolerance = 1e-13)
  }
})

test_that("figures have lines within their bounds, up to the target and beyond", {
  grDevices::pdf(NULL)
  on.exit(grDevices::dev.off())
  for (search in searches) {
    answer <- do.call(search$ask, search$given)
    lines <- plot(answer)
    expect_true(all(lines$reached >= 0 & lines$reached <= 1), info = search$command)
    expect_gt(nrow(lines), 3)
    expect_gt(max(lines$reached), answer$power)
  }
})
