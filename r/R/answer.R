# From the arguments of a call to its answer.

is_list_of_designs <- function(argument, value) argument$kind == "list" && (is.list(value) || is.matrix(value))

# An argument's values as the planner reads them: doubles, words, or of lists a matrix with a row for each design.
values_of <- function(argument, value, call) {
  refuse <- function(reason) stop(refusal(argument$name, reason, call))
  if (argument$kind == "choice") {
    if (is.logical(value) && setequal(argument$choices, c("no", "yes"))) value <- ifelse(value, "yes", "no")
    if (is.factor(value) || all(is.na(value))) value <- as.character(value)
    if (!is.character(value)) refuse(paste("is not", argument$rule))
    unknown <- setdiff(value, c(argument$choices, NA))
    if (length(value) > 1 && length(unknown)) refuse(sprintf("'%s' is not %s", unknown[1], argument$rule))
    return(as.vector(value))
  }
  if (argument$kind == "list") {
    if (is.data.frame(value)) value <- as.matrix(value)
    if (is.list(value)) {
      if (length(unique(lengths(value))) > 1) refuse("has lists of different lengths; ask for one length at a time")
      if (!all(vapply(value, is.numeric, NA))) refuse(paste("is not", argument$rule))
      value <- do.call(rbind, value)
    } else if (!is.matrix(value)) {
      value <- matrix(value, nrow = 1)
    }
  }
  if (!is.numeric(value) && !all(is.na(value)) || is.factor(value)) refuse(paste("is not", argument$rule))
  storage.mode(value) <- "double"
  if (argument$kind == "list") unname(value) else as.vector(value)
}

designs_in <- function(value) if (is.matrix(value)) nrow(value) else length(value)

row_of <- function(value, row) {
  if (is.matrix(value)) value[(row - 1) %% nrow(value) + 1, ] else value[(row - 1) %% length(value) + 1]
}

design_of <- function(given, row) lapply(given, row_of, row)

in_words <- function(test, measure, names) {
  arguments <- test$questions[[measure]]
  vapply(names, function(name) if (name %in% names(arguments)) arguments[[name]]$word else name, "", USE.NAMES = FALSE)
}

# The record of one design, or the refusal.
ask_one <- function(test, measure, unknown, design) {
  names(design) <- in_words(test, measure, names(design))
  request <- c(list(test = test$word, question = "solve"), if (nzchar(unknown)) list("solve-for" = unknown), design)
  .Call(statpower_ask, request)
}

# Answers for rows of designs: a list of columns by the answers' words, or the refusal.
ask_rows <- function(test, measure, unknown, given, answers, rows) {
  arguments <- test$questions[[measure]]
  columns <- Map(function(name, value) {
    choices <- arguments[[name]]$choices
    if (!is.null(choices)) value <- as.double(match(value, choices) - 1)
    count <- designs_in(value)
    if (count == 1 || count == rows) value
    else if (is.matrix(value)) value[rep_len(seq_len(count), rows), , drop = FALSE]
    else rep_len(value, rows)
  }, names(given), given)
  names(columns) <- in_words(test, measure, names(given))
  .Call(statpower_run, test$word, unknown, columns, answers, as.double(rows))
}

has_na <- function(value, rows) {
  missing <- if (is.matrix(value)) rowSums(is.na(value)) > 0 else is.na(value)
  rep_len(missing, rows)
}

# What is to be found, in the planner's word: what `unknown` says, or a default that is NULL; "" where the planner sees what
# is left out. `left` are arguments that were given as NULL.
unknown_of <- function(test, measure, unknown, given, left, call) {
  arguments <- test$questions[[measure]]
  target <- test$targets[[measure]]
  if (!is.null(unknown)) {
    known <- c(names(arguments), "size")
    if (!is.character(unknown) || length(unknown) != 1 || !unknown %in% known)
      stop(refusal("unknown", paste("is not one of", toString(known)), call))
    return(in_words(test, measure, unknown))
  }
  by_default <- Filter(function(name) {
    argument <- arguments[[name]]
    argument$kind != "choice" && !is.null(argument$default) && !(name %in% test$shares && !any(test$sizes %in% names(given)))
  }, left)
  if (length(by_default) > 1)
    stop(refusal(by_default[2], paste("is NULL beside", by_default[1], "= NULL: one number can be found"), call))
  if (length(by_default)) in_words(test, measure, by_default)
  else if (measure == "effect") "effect"
  else if (measure == "precision" && !target %in% names(given)) target
  else ""
}

# Which question that is, and the names of its answers.
settle <- function(test, measure, unknown, given, left, call) {
  words <- in_words(test, measure, names(given))
  found <- .Call(statpower_answers, test$word, unknown, words)
  one_size <- intersect(left, test$sizes)
  if (!is.null(found$refusal) && unknown == "" && length(one_size) == 1) {  # n2 = NULL beside n1
    unknown <- in_words(test, measure, one_size)
    found <- .Call(statpower_answers, test$word, unknown, words)
  }
  found <- answered(found, call)
  if (found$question == "solve") unknown <- found$answers[1]
  list(unknown = unknown, question = found$question, answers = found$answers)
}

# Answers a call of one of the functions of tests.R, whose frame holds the arguments.
answer <- function(test, measure, frame = parent.frame(), call = sys.call(-1)) {
  test <- catalogue()[[test]]
  arguments <- test$questions[[measure]]
  is_missing <- vapply(test$is_missing[[measure]], eval, NA, frame)
  given <- mget(names(arguments)[!is_missing], envir = frame)
  is_left <- vapply(given, is.null, NA)
  left <- setdiff(names(given)[is_left], c(test$targets[[measure]], the$search))
  given <- given[!is_left]
  for (name in names(given)) given[[name]] <- values_of(arguments[[name]], given[[name]], call)
  unknown <- unknown_of(test, measure, if (measure != "effect") frame$unknown, given, left, call)

  counts <- vapply(given, designs_in, 0)
  rows <- if (any(counts == 0)) 0 else max(1, counts)
  for (name in names(given))
    if (counts[[name]] && rows %% counts[[name]])
      stop(refusal(name, sprintf("has %d values, which do not recycle to %d designs", counts[[name]], rows), call))
  missing <- Reduce(`|`, lapply(given, has_na, rows), logical(rows))

  if (rows == 1 && !missing && measure != "effect") {
    record <- ask_one(test, measure, unknown, given)
    if (is.null(record$refusal)) return(one_found(test, measure, unknown, given, record))
  }
  settled <- settle(test, measure, unknown, given, left, call)
  if (measure == "effect") effects_found(test, settled, given, rows, missing, call)
  else if (rows == 1 && !missing)
    one_found(test, measure, settled$unknown, given, answered(ask_one(test, measure, settled$unknown, given), call))
  else table_found(test, measure, settled, given, rows, missing, call)
}

# Columns of answers; what is missing without an NA is a warning, or an error where no design has an answer.
columns_found <- function(test, measure, settled, given, answers, rows, missing, call) {
  columns <- answered(ask_rows(test, measure, settled$unknown, given, answers, rows), call)
  names(columns) <- spelled(answers)
  columns <- lapply(columns, function(column) replace(column, missing, NA))
  wrong <- Reduce(`&`, lapply(columns, is.na), rep(TRUE, rows)) & !missing
  if (any(wrong)) {
    reason <- tryCatch({
      answered(ask_one(test, measure, settled$unknown, design_of(given, which(wrong)[1])), call)
      refusal("", "has no answer", call, "no-answer")
    }, statpower_refusal = identity)
    if (all(wrong)) stop(reason)
    warn_of_missing(wrong, reason, call)
  }
  columns
}

effects_found <- function(test, settled, given, rows, missing, call) {
  as.data.frame(columns_found(test, "effect", settled, given, settled$answers, rows, missing, call))
}

# Items of a record by their names in R.
in_names <- function(items, prefix = "") {
  if (length(items)) stats::setNames(items, paste0(prefix, spelled(names(items)))) else list()
}

one_found <- function(test, measure, unknown, given, record) {
  answer <- in_names(record$answer)
  enrolled <- in_names(record$enrolled, "enrolled_")
  asked <- in_names(record$asked)
  x <- c(answer, enrolled, asked[setdiff(names(asked), names(answer))])
  statpower(x, test, measure, if (record$question == "solve") record$unknown else unknown, given, record)
}

table_found <- function(test, measure, settled, given, rows, missing, call) {
  answers <- settled$answers
  enrolled <- if (settled$unknown == "" && any(spelled(answers) %in% test$sizes))
    paste0("enrolled-", answers[spelled(answers) %in% test$sizes])
  columns <- columns_found(test, measure, settled, given, c(answers, enrolled), rows, missing, call)
  for (size in spelled(enrolled))  # the same where nobody drops out
    if (identical(columns[[size]], columns[[sub("enrolled_", "", size)]])) columns[[size]] <- NULL
  first <- which(!is.na(columns[[1]]))[1]
  record <- if (!is.na(first)) ask_one(test, measure, settled$unknown, design_of(given, first))
  asked <- in_names(record$asked)
  x <- c(columns, given[setdiff(names(given), names(columns))])
  x <- c(x, asked[setdiff(names(asked), names(x))])
  x <- lapply(x, function(value) if (is.matrix(value)) lapply(seq_len(nrow(value)), function(i) value[i, ]) else value)
  statpower(x, test, measure, settled$unknown, given, record)
}

# An answer: what was found and what was asked, as the lists that R's own power functions return: sizes first, then
# numbers, what is reached, and choices.
statpower <- function(x, test, measure, unknown, given, record) {
  is_enrolled <- startsWith(names(x), "enrolled_")
  place <- test$places[[measure]][sub("^enrolled_", "", names(x))]
  place[is.na(place)] <- 300  # an answer that is no argument
  x <- x[order(place + is_enrolled * 50)]
  structure(c(x, list(note = notes_of(record))),
            class = c("statpower", "power.htest"),
            design = list(test = test$name, measure = measure, unknown = unknown, given = given, record = record))
}

notes_of <- function(record) {
  listed <- function(items) paste(spelled(names(items)), vapply(items, function(item) toString(format(item)), ""),
                                  sep = " = ", collapse = ", ")
  shared <- intersect(names(record$guaranteed), names(record$answer))
  further <- length(shared) && !identical(record$guaranteed[shared], record$answer[shared])
  notes <- c(in_r(record$notes),
             if (length(record$other)) paste("on the other side of the null hypothesis", listed(record$other)),
             if (further) paste0("not every larger size reaches the target; from ", listed(record$guaranteed[shared]),
                                 " on all do (rule = \"guaranteed\")"),
             if (!is.null(record$method)) paste("computation:", record$method))
  if (length(notes)) paste(notes, collapse = "\n      ")
}
