# Writes the functions of the tests, their examples as tests, and all pages, from the catalogue.
#
#   Rscript r/generate.R LIBRARY [DIRECTORY]
#
# LIBRARY has the package statpower, of whatever state, with the catalogue of today; DIRECTORY is the package's source,
# the folder of this script unless given. scripts/r-package --generate does both.

arguments <- commandArgs(trailingOnly = TRUE)
library_path <- normalizePath(arguments[1])
directory <- if (length(arguments) > 1) arguments[2] else
  dirname(sub("^--file=", "", grep("^--file=", commandArgs(), value = TRUE)))
.libPaths(c(library_path, .libPaths()))
catalogue <- statpower:::catalogue()
spelled <- statpower:::spelled
in_r <- statpower:::in_r

width <- 95
prefixes <- list(power = "power_", precision = "precision_", effect = "effect_")

page <- function(...) strwrap(paste0(...), width, prefix = "#' ")
# A sentence that begins with a capital, unless it does with the name of an argument.
sentence <- function(text, names = NULL) {
  if (!sub("\\W.*", "", text) %in% names) text <- paste0(toupper(substr(text, 1, 1)), substring(text, 2))
  sub("\\.*$", ".", in_r(text))
}
in_code <- function(value) if (is.character(value)) encodeString(value, quote = "\"") else format(value, digits = 15)
indented <- function(tag, text) {
  lines <- strwrap(paste(tag, text), width, exdent = 2)
  paste0("#' ", lines)
}

parameter <- function(argument, targets) {
  about <- sentence(argument$meaning)
  about <- paste(about, if (argument$kind == "choice")
    paste0("One of ", paste0("`\"", argument$choices, "\"`", collapse = ", "), ".")
    else sentence(argument$rule))
  if (!is.null(argument$unit)) about <- paste0(about, " Unit: ", argument$unit, ".")
  for (only in argument$only)
    about <- paste0(about, " Has an effect only with `", spelled(only$argument), "` ",
                    paste(only$choices, collapse = " or "), ".")
  if (argument$name %in% targets && !is.null(argument$default))
    about <- paste0(about, " ", argument$default, " where sizes are searched, unless given.")
  indented(paste("@param", argument$name), about)
}

default_of <- function(argument, targets) {
  if (is.null(argument$default) || argument$name %in% targets) "NULL" else in_code(argument$default)
}

definition <- function(test, measure) {
  given <- vapply(test$questions[[measure]], function(argument)
    paste(argument$name, "=", default_of(argument, unlist(test$targets))), "")
  if (measure != "effect") given <- c(given, "unknown = NULL")
  head <- paste0(prefixes[[measure]], test$name, " <- function(")
  lines <- strwrap(paste(given, collapse = ", "), width - 4)
  c("", paste0("#' @rdname ", test$name), "#' @export", paste0(head, trimws(lines[1])), paste0("    ", lines[-1])) -> all
  all[length(all)] <- paste0(all[length(all)], ") {")
  c(all, sprintf("  answer(\"%s\", \"%s\")", test$name, measure), "}")
}

# A worked example of the command as a call: t-one size --d 0.5 is power_t_one(d = 0.5).
call_of <- function(command) {
  words <- strsplit(command, " +")[[1]]
  test <- catalogue[[spelled(words[1])]]
  options <- sub("^--", "", words[c(TRUE, FALSE)][-1])
  values <- words[c(FALSE, TRUE)][-1]
  named <- spelled(options)
  is_precision <- words[2] == "precision" || any(named == test$targets$precision)
  measure <- if (words[2] == "effect") "effect" else if (is_precision) "precision" else "power"
  shown <- vapply(values, function(value) {
    each <- strsplit(value, ",")[[1]]
    numbers <- suppressWarnings(as.double(each))
    each <- ifelse(is.na(numbers), encodeString(each, quote = "\""), each)
    if (length(each) == 1) each else paste0("c(", paste(each, collapse = ", "), ")")
  }, "")
  shown[named == "solve_for"] <- encodeString(spelled(values[named == "solve_for"]), quote = "\"")
  named[named == "solve_for"] <- "unknown"
  paste0(prefixes[[measure]], test$name, "(", paste(named, "=", shown, collapse = ", "), ")")
}

# The number that a worked example is about.
answer_of <- function(test, example) {
  name <- spelled(example$answer)
  paste0(call_of(example$command), "$", name, if (identical(test$found[[name]]$kind, "list")) "[1]")
}

example_of <- function(test, example) {
  code <- gsub(" = ", "\u00a0=\u00a0", answer_of(test, example), fixed = TRUE)  # lines end between arguments
  code <- gsub("\u00a0", " ", strwrap(code, width - 20, exdent = 2), fixed = TRUE)
  code[length(code)] <- paste0(code[length(code)], "  # ", format(example$value, digits = 10))
  c(strwrap(example$study, width - 5, prefix = "#' # "), paste("#'", code))
}

documentation <- function(test) {
  all <- do.call(c, unname(test$questions))
  all <- all[!duplicated(vapply(all, `[[`, "", "name"))]
  words <- vapply(all, `[[`, "", "word")
  notes <- test$notes[nzchar(test$notes)]
  effects <- vapply(test$effects, function(effect) paste0("`", effect$name, "` (", in_r(effect$meaning), ")"), "")
  measures <- names(test$questions)
  c(paste0("#' ", test$title), "#'", page(test$study), "#'",
    if (length(notes)) c(page(paste(vapply(notes, sentence, "", words), collapse = " ")), "#'"),
    unlist(lapply(all, parameter, unlist(test$targets)), use.names = FALSE),
    indented("@param unknown", "Name of what is found, where what is left out leaves a doubt."),
    indented("@return", paste0(
      "An answer, see [print.statpower()]: a list with what was found and everything that was asked.",
      if ("effect" %in% measures) paste0(
        " `effect_", test$name, "` a data frame with a row for each design and the columns ",
        paste(effects, collapse = "; "), "."))),
    "#' @references", head(unlist(lapply(test$sources, function(source) c(page(source), "#'"))), -1),
    "#' @family tests",
    "#' @examples", unlist(lapply(test$examples, example_of, test = test)),
    paste0("#' @name ", test$name), "NULL")
}

written <- "# Written from the catalogue by generate.R: change nothing here, say `scripts/r-package --generate`."

writeLines(c(written, unlist(lapply(catalogue, function(test)
  c("", documentation(test), unlist(lapply(names(test$questions), definition, test = test)))))),
  file.path(directory, "R", "tests.R"))

expectation <- function(test, example) {
  c("", sprintf("test_that(%s, {", encodeString(paste0(test$title, ": ", example$source), quote = "\"")),
    sprintf("  # %s", example$study),
    sprintf("  expect_equal(%s, %s, tolerance = %s)", answer_of(test, example),
            format(example$value, digits = 15),
            format((example$tolerance + 1e-12) / abs(example$value), digits = 6)),
    "})")
}

writeLines(c(written, unlist(lapply(catalogue, function(test) lapply(test$examples, expectation, test = test)))),
           file.path(directory, "tests", "testthat", "test-examples.R"))

suppressMessages(roxygen2::roxygenise(directory, load_code = roxygen2::load_source))
