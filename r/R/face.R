#' Answers
#'
#' What `power_*` and `precision_*` return: a list with what was found and everything that was asked, which prints like the
#' answers of R's own power functions, and is a data frame with a row for each design.
#'
#' @param x An answer.
#' @param digits Significant digits.
#' @param rows Most rows of a table that are printed.
#' @param row.names,optional,... As in [as.data.frame()]; of the other functions unused.
#' @return `print` its argument, invisibly. `as.data.frame` a data frame: sizes, numbers, what is reached, choices, and
#'   of a search the `target`. `report` a sentence for a protocol or a paper for each design, and `sources` where the
#'   formulas are from, as character vectors.
#' @examples
#' r <- power_t_two(diff = 5, sd = 12, power = c(0.8, 0.9))
#' r
#' as.data.frame(r)
#' report(r)
#' sources(r)
#' @export
print.statpower <- function(x, digits = getOption("digits"), rows = 20, ...) {
  design <- attr(x, "design")
  cat("\n    ", catalogue()[[design$test]]$title, "\n\n")
  shown <- values_in(x)
  if (count_designs(x) == 1) {
    print_values(shown, digits)
  } else {
    table <- as.data.frame(x)
    varies <- vapply(names(table), function(name) {
      length(x[[name]]) > 1 || name == "target" && length(design$given[[target_of(x)]]) > 1 || name %in% spelled(answers_of(x))
    }, NA)
    print(utils::head(table[varies], rows), digits = digits)
    if (nrow(table) > rows) cat(sprintf("... and %d more designs\n", nrow(table) - rows))
    cat("\n")
    print_values(shown[intersect(names(shown), names(table)[!varies])], digits)
  }
  if (!is.null(x$note)) cat("\nNOTE: ", x$note, "\n", sep = "")
  cat("\n")
  invisible(x)
}

print_values <- function(values, digits) {
  if (length(values))
    cat(paste(format(names(values), width = 15, justify = "right"),
              vapply(values, function(value) toString(trimws(format(unlist(value), digits = digits))), ""), sep = " = "),
        sep = "\n")
}

# A name that an answer does not have is no silent NULL.
#' @export
`$.statpower` <- function(x, name) {
  values <- unclass(x)
  if (!name %in% c(names(values), "note", "method"))
    warning(sprintf("this answer has no %s; it has %s", name, toString(setdiff(names(values), "note"))), call. = FALSE)
  values[[name, exact = TRUE]]
}

values_in <- function(x) unclass(x)[setdiff(names(x), "note")]

count_designs <- function(x) {
  given <- attr(x, "design")$given
  counts <- vapply(given, designs_in, 0)
  if (any(counts == 0)) 0 else max(1, counts)
}

target_of <- function(x) {
  design <- attr(x, "design")
  catalogue()[[design$test]]$targets[[design$measure]]
}

# The words of what was found.
answers_of <- function(x) {
  design <- attr(x, "design")
  test <- catalogue()[[design$test]]
  .Call(statpower_answers, test$word, design$unknown, in_words(test, design$measure, names(design$given)))$answers
}

#' @rdname print.statpower
#' @export
as.data.frame.statpower <- function(x, row.names = NULL, optional = FALSE, ...) {
  rows <- count_designs(x)
  columns <- lapply(values_in(x), function(value) {
    if (is.list(value)) I(rep_len(value, rows))
    else if (length(value) > 1 && length(value) != rows || rows == 1 && length(value) > 1) I(rep_len(list(value), rows))
    else rep_len(value, rows)
  })
  design <- attr(x, "design")
  target <- target_of(x)
  goal <- design$given[[target]]
  if (is.null(goal) && !is.null(design$record)) goal <- in_names(design$record$asked)[[target]]
  if (!is.null(goal)) columns$target <- rep_len(goal, rows)
  frame <- structure(columns, class = "data.frame", row.names = .set_row_names(rows))
  if (!is.null(row.names)) row.names(frame) <- row.names
  frame
}

#' @rdname print.statpower
#' @export
report <- function(x, ...) UseMethod("report")

#' @export
report.statpower <- function(x, ...) {
  design <- attr(x, "design")
  test <- catalogue()[[design$test]]
  rows <- count_designs(x)
  if (rows == 1) return(if (is.null(design$record)) NA_character_ else design$record$report)
  missing <- Reduce(`|`, lapply(design$given, has_na, rows), logical(rows))
  vapply(seq_len(rows), function(row) {
    record <- if (!missing[row]) ask_one(test, design$measure, design$unknown, design_of(design$given, row))
    if (is.null(record$report)) NA_character_ else record$report
  }, "")
}

#' @rdname print.statpower
#' @export
sources <- function(x, ...) UseMethod("sources")

#' @export
sources.statpower <- function(x, ...) catalogue()[[attr(x, "design")$test]]$sources
