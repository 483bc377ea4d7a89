#' Statistical power analysis
#'
#' One function a test: `power_*` finds the power, the sample sizes or any other number that a design leaves out,
#' `precision_*` does so with the half-width of a confidence interval, and `effect_*` says which standardised effects a
#' design represents.
#'
#' Leave out what is to be found, or give it as `NULL`: without sizes they are what is found; with sizes and a power
#' (or a half-width) the missing number of the effect; with both the power. Defaults count as given: `alpha = NULL` asks
#' for the level. `unknown` names what is found where that leaves a doubt.
#'
#' Arguments may be vectors, which recycle to a table of designs. A design with an `NA` has the answer `NA`. A design
#' that cannot be, or has no answer, is an error of class `statpower_refusal`, whose `argument` and `reason` say
#' what is wrong; among other designs of a table it is `NaN`, with a warning. Arguments that are lists (means of
#' groups, weights) are a vector for one design; several designs are the rows of a matrix, or a list of vectors.
#'
#' Long searches stop at the user's interrupt.
#'
#' @seealso [print.statpower()], [plot.statpower()], [report()]; `vignette("planning", "statpower")`.
#' @keywords internal
#' @useDynLib statpower, .registration = TRUE
"_PACKAGE"
