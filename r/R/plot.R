# Figures: a measure over one argument, a line for each design.

# Okabe and Ito's colours, which people with any colour vision tell apart; lines differ in their dashes, too.
colours <- c("#0072B2", "#D55E00", "#009E73", "#CC79A7", "#56B4E9", "#E69F00", "#000000")
dashes <- c("solid", "longdash", "dotdash", "dotted", "twodash", "dashed")

label_of <- function(argument) {
  about <- sub(";.*", "", in_r(argument$meaning))
  if (is.null(argument$unit)) about else paste0(about, " (", argument$unit, ")")
}

# Values of an argument that show where a design stands, or that reach beyond the largest size.
values_around <- function(argument, at, is_size, call) {
  at <- at[is.finite(at)]
  within <- function(values) {
    low <- argument$low
    high <- argument$high
    if (!is.null(low)) values <- values[if (low$open) values > low$value else values >= low$value]
    if (!is.null(high)) values <- values[if (high$open) values < high$value else values <= high$value]
    values
  }
  if (is_size) return(within(unique(round(seq(1, max(4, 1.3 * at), length.out = 500)))))
  if (!length(at) || all(at == 0))
    stop(refusal("over", sprintf("needs its values, for example list(%s = c(1, 2, 3))", argument$name), call))
  values <- within(seq(min(0.5 * at, 1.5 * at), max(0.5 * at, 1.5 * at), length.out = 200))
  if (argument$kind == "whole") unique(round(values)) else values
}

# Does the planner find the measure of a design with these arguments?
is_design <- function(test, measure, names) {
  is.null(.Call(statpower_answers, test$word, test$targets[[measure]], in_words(test, measure, names))$refusal)
}

# The arguments of a design where `over` takes several values: what was given stays, sizes that were found keep their
# allocation, and a number that was found is given.
along <- function(x, row, over, values) {
  design <- attr(x, "design")
  test <- catalogue()[[design$test]]
  given <- design_of(design$given, row)
  given <- given[setdiff(names(given), c(over, the$search, test$targets[[design$measure]]))]
  at <- function(name) x[[name]][[(row - 1) %% length(x[[name]]) + 1]]
  unknown <- spelled(design$unknown)
  if (unknown %in% names(test$questions[[design$measure]]) && !unknown %in% c(over, test$targets[[design$measure]]))
    given[[unknown]] <- at(unknown)
  if (over %in% test$sizes && !over %in% names(design$given))
    given <- given[setdiff(names(given), setdiff(test$sizes, test$shares))]
  found <- setdiff(intersect(names(test$found), names(x)), names(design$given))
  given[[over]] <- values
  if (!length(found) || is_design(test, design$measure, names(given))) return(given)
  given <- given[setdiff(names(given), test$shares)]
  for (name in setdiff(found, over)) {
    size <- if (test$found[[name]]$kind == "list" && !is.list(x[[name]])) x[[name]] else at(name)
    given[[name]] <- if (over %in% found) round(size / at(over) * values) else size
  }
  given
}

# The lines of a figure: a data frame with a row for each point, what the axes mean, targets, and the designs' own points.
curves <- function(x, over, call) {
  design <- attr(x, "design")
  test <- catalogue()[[design$test]]
  measure <- target_of(x)
  arguments <- test$questions[[design$measure]]
  rows <- count_designs(x)
  table <- as.data.frame(x)
  values <- NULL
  named <- is.list(over) && length(over) == 1 && !is.null(names(over))
  if (!is.null(over) && !named && !(is.character(over) && length(over) == 1))
    stop(refusal("over", "is neither a name nor a list like list(name = values)", call))
  if (named) {
    values <- over[[1]]
    over <- names(over)
  }
  if (is.null(over)) {
    sizes <- Filter(function(name) arguments[[name]]$kind == "whole", intersect(test$sizes, names(arguments)))
    sizes <- union(intersect(sizes, names(table)), sizes)
    over <- Find(function(name) is_design(test, design$measure, names(along(x, 1, name, 2))), sizes)
  }
  argument <- arguments[[over]]
  if (is.null(argument) || argument$kind %in% c("choice", "list") || over == measure)
    stop(refusal("over", sprintf("'%s' is no number argument of %s", over, test$name), call))
  is_size <- over %in% setdiff(test$sizes, test$shares)
  if (is.null(values)) {
    sizes <- intersect(names(table), names(test$found))
    at <- if (over %in% names(table)) table[[over]]
          else if (is_size) unlist(table[if (length(sizes)) sizes else intersect(names(table), test$sizes)])
    values <- values_around(argument, at, is_size, call)
  }
  by <- names(table)[vapply(table, function(column) length(unique(column)) > 1, NA)]
  by <- intersect(setdiff(by, c(over, measure, the$search)), names(design$given))
  lines <- lapply(seq_len(rows), function(row) {
    given <- along(x, row, over, values)
    given <- Map(values_of, arguments[names(given)], given, list(call))
    columns <- answered(ask_rows(test, design$measure, measure, given, measure, length(values)), call)
    label <- paste(by, vapply(table[row, by, drop = FALSE], function(value) toString(format(unlist(value))), ""),
                   sep = " = ", collapse = ", ")
    data.frame(over = values, reached = columns[[1]], line = label)
  })
  lines <- do.call(rbind, lines[!duplicated(lapply(lines, `[`, c("over", "reached")))])
  lines <- lines[is.finite(lines$reached), , drop = FALSE]
  if (nrow(lines) == 0) stop(refusal("x", "has no answer that could be drawn", call))
  lines$line <- factor(lines$line, unique(lines$line))
  targets <- if (measure %in% names(design$given)) unique(design$given[[measure]])
             else if (!is.null(table$target)) unique(table$target)
  list(lines = lines, targets = targets[is.finite(targets)],
       points = if (over %in% names(table) && rows <= 20) data.frame(over = table[[over]], reached = table[[measure]]),
       across = label_of(argument), title = test$title,
       up = if (design$measure == "power") "Power" else "Half-width of the interval")
}

#' Figures of an answer
#'
#' How the power of a design varies, or the half-width of its interval, over one argument: a line for each design, the
#' designs themselves as points, and the targets of a search.
#'
#' Sizes that were found keep their allocation when one of them varies; what was given stays.
#'
#' @param x,object An answer, see [print.statpower()].
#' @param over Name of the argument along the horizontal axis, or a list with its values: `"n"`, or
#'   `list(n = 10:200)`. Sizes unless given.
#' @param ... Of `plot` graphical parameters for [graphics::plot.default()]; of `autoplot` unused.
#' @return `plot` a data frame with the points of the lines (`over`, `reached`, `line`), invisibly; `autoplot` a plot of
#'   ggplot2, which has to be installed.
#' @examples
#' r <- power_t_two(diff = c(5, 6), sd = 12, power = 0.8)
#' plot(r, over = "n1")
#' if (requireNamespace("ggplot2", quietly = TRUE)) ggplot2::autoplot(r)
#' @export
plot.statpower <- function(x, over = NULL, ...) {
  drawn <- curves(x, over, sys.call())
  lines <- drawn$lines
  is_power <- drawn$up == "Power"
  labels <- levels(lines$line)
  colour <- rep_len(colours, length(labels))
  dash <- rep_len(dashes, length(labels))
  settings <- utils::modifyList(list(
    x = range(lines$over), y = if (is_power) c(0, 1) else c(0, max(lines$reached, drawn$targets)), type = "n",
    xlab = drawn$across, ylab = drawn$up, main = drawn$title, las = 1, bty = "l"), list(...))
  do.call(graphics::plot.default, settings)
  graphics::grid(col = "grey92", lty = "solid")
  if (length(drawn$targets)) graphics::abline(h = drawn$targets, col = "grey45", lty = "dotted")
  for (i in seq_along(labels)) {
    line <- lines[lines$line == labels[i], ]
    graphics::lines(line$over, line$reached, col = colour[i], lty = dash[i], lwd = 2)
  }
  if (!is.null(drawn$points)) graphics::points(drawn$points$over, drawn$points$reached, pch = 19)
  if (length(labels) > 1)
    graphics::legend(if (is_power) "bottomright" else "topright", labels, col = colour, lty = dash, lwd = 2, bty = "n")
  invisible(lines)
}

#' @rdname plot.statpower
#' @exportS3Method ggplot2::autoplot
autoplot.statpower <- function(object, over = NULL, ...) {
  drawn <- curves(object, over, sys.call())
  .data <- ggplot2::.data
  several <- nlevels(drawn$lines$line) > 1
  mapping <- if (several) ggplot2::aes(.data[["over"]], .data[["reached"]], colour = .data[["line"]],
                                       linetype = .data[["line"]])
             else ggplot2::aes(.data[["over"]], .data[["reached"]])
  figure <- ggplot2::ggplot(drawn$lines, mapping) +
    ggplot2::geom_hline(yintercept = drawn$targets, colour = "grey45", linetype = "dotted") +
    ggplot2::labs(x = drawn$across, y = drawn$up, title = drawn$title, colour = NULL, linetype = NULL) +
    ggplot2::theme_minimal() +
    ggplot2::theme(legend.position = "bottom")
  figure <- figure + if (several) ggplot2::geom_line(linewidth = 0.8) else
    ggplot2::geom_line(linewidth = 0.8, colour = colours[1])
  if (several) {
    count <- nlevels(drawn$lines$line)
    figure <- figure + ggplot2::scale_colour_manual(values = rep_len(colours, count)) +
      ggplot2::scale_linetype_manual(values = rep_len(dashes, count))
  }
  if (drawn$up == "Power") figure <- figure + ggplot2::scale_y_continuous(limits = c(0, 1))
  if (!is.null(drawn$points))
    figure <- figure + ggplot2::geom_point(data = drawn$points, ggplot2::aes(.data[["over"]], .data[["reached"]]),
                                           inherit.aes = FALSE)
  figure
}
