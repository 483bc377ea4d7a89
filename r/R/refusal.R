# What cannot be answered: conditions that name the argument.

refusal <- function(argument, reason, call, kind = "refused") {
  argument <- spelled(argument)
  reason <- in_r(reason)
  structure(
    class = c(if (kind == "no-answer") "statpower_no_answer", "statpower_refusal", "error", "condition"),
    list(message = if (nzchar(argument)) paste0(argument, ": ", reason) else reason,
         call = call, argument = argument, reason = reason))
}

# Stops where the planner refused.
answered <- function(answer, call) {
  why <- answer$refusal
  if (!is.null(why)) stop(refusal(if (is.null(why$argument)) "" else why$argument, why$reason, call, why$kind))
  answer
}

# Some designs of a table have no answer: a warning with the reason of the first.
warn_of_missing <- function(missing, reason, call) {
  text <- sprintf("%d of %d designs have no answer; the first, design %d: %s", sum(missing), length(missing),
                  which(missing)[1], conditionMessage(reason))
  warning(structure(class = c("statpower_warning", "warning", "condition"), list(message = text, call = call)))
}
