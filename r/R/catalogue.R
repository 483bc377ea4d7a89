# The planner's catalogue: which tests and arguments there are. No other file of this folder knows one by name,
# but tests.R, which is written from it.

the <- new.env(parent = emptyenv())

# A word of the planner as a name of R: odds-ratio is odds_ratio.
spelled <- function(word) gsub("-", "_", word, fixed = TRUE)

by_name <- function(items, names = vapply(items, `[[`, "", "name")) stats::setNames(items, names)

# The arguments of nested lists by their names, each as it is said first.
arguments_of <- function(...) {
  nested <- list(...)
  if (!is.null(names(nested))) nested <- list(nested)
  flat <- list()
  collect <- function(item) {
    if (!is.null(names(item))) flat[[length(flat) + 1]] <<- item else for (each in item) collect(each)
  }
  for (item in nested) collect(item)
  flat <- lapply(flat, function(argument) {
    argument$word <- argument$name
    argument$name <- spelled(argument$name)
    argument
  })
  flat <- by_name(flat)
  flat[!duplicated(names(flat))]
}

read_test <- function(described, search) {
  sizes <- described$sizes
  design <- function(measure, ...) arguments_of(measure$ways, sizes$ways, sizes$shares, ...)
  power <- described$power
  precision <- described$precision
  questions <- list(
    power = design(power, power$options, power$target, search),
    precision = if (!is.null(precision)) design(precision, precision$options, precision$target, search),
    effect = if (length(described$effects)) design(power))
  questions <- Filter(Negate(is.null), questions)
  found <- arguments_of(sizes$found)
  size_names <- union(names(arguments_of(sizes$ways)), names(found))
  targets <- list(power = spelled(power$target$name), precision = spelled(precision$target$name))
  # Where an argument stands in an answer: sizes, numbers, what is reached, choices.
  places <- lapply(names(questions), function(measure) {
    arguments <- questions[[measure]]
    names <- union(size_names, names(arguments))
    is_choice <- vapply(arguments, `[[`, "", "kind")[names] %in% "choice"
    group <- ifelse(names %in% size_names, 100, ifelse(names == c(targets[[measure]], "")[1], 400, ifelse(is_choice, 500, 200)))
    stats::setNames(group + seq_along(names) / 10, names)
  })
  list(word = described$name, name = spelled(described$name), title = described$title, family = described$family,
       study = described$study, notes = c(sizes$note, described$notes), sources = described$sources,
       examples = described$examples,
       questions = questions, places = stats::setNames(places, names(questions)),
       is_missing = lapply(questions, function(arguments) lapply(names(arguments), function(name)
         call("missing", as.name(name)))),
       sizes = size_names, found = found,
       shares = names(arguments_of(sizes$shares)),
       targets = targets,
       effects = arguments_of(described$effects))
}

# All tests, by their names.
catalogue <- function() {
  if (is.null(the$tests)) {
    read <- .Call(statpower_catalogue)
    tests <- lapply(read$tests, read_test, search = read$search)
    the$search <- spelled(vapply(read$search, `[[`, "", "name"))
    words <- unique(c(vapply(tests, `[[`, "", "word"),
                      unlist(lapply(tests, function(test) lapply(test$questions, lapply, `[[`, "word")))))
    the$hyphenated <- sort(grep("-", words, value = TRUE), decreasing = TRUE)
    the$tests <- by_name(tests)
  }
  the$tests
}

# A sentence of the planner with the names of tests and arguments as R spells them.
in_r <- function(text) {
  catalogue()
  for (word in the$hyphenated)
    if (any(grepl(word, text, fixed = TRUE))) text <- gsub(paste0("\\b", word, "\\b"), spelled(word), text)
  text
}
