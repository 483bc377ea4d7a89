/* The planner for every language: questions as JSON, and whole columns of designs. Usable from C99.

   All functions are reentrant and may be called from any number of threads; there is no global state. Text is
   UTF-8. The words (names of tests, questions, arguments and choices), ranges and defaults are those of
   statplan_catalogue(). No function throws. */
#ifndef STATPLAN_ASK_H
#define STATPLAN_ASK_H

#include <stddef.h>

#include "statplan/visibility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Asked often, on the calling thread, during long searches: nonzero stops them. A null function: never. */
typedef int (*statplan_cancel)(void* context);

/* Version of the planner, "0.1.0". Static. */
STATPLAN_API const char* statplan_version(void);

/* The description of all tests as one JSON object, from which forms, help, bindings and reference pages are
   made. Static. */
STATPLAN_API const char* statplan_catalogue(void);

/* Answers one question.
   request   a JSON object: "test" and "question" (power, size, precision, effect or solve), each argument by
             its name with a number, a choice's word, an array for a list ("means": [10, 12]), and where a
             number stands also an array or a range "20:200:10" of them, which makes a table.
   returns   a record, a table, or {"refusal": {...}}, as JSON, to be released by statplan_free. Null only when
             memory runs out. */
STATPLAN_API char* statplan_ask(const char* request, statplan_cancel cancel, void* context);

/* Releases a text that a function of this header returned. Null is allowed. */
STATPLAN_API void statplan_free(char* text);

/* One argument for many designs. */
typedef struct statplan_column {
    const double* values; /* a choice is the position of its word, from 0; NaN makes the row's answers NaN */
    ptrdiff_t stride;     /* bytes from row to row; 0: the same for all rows */
    size_t length;        /* elements of a list; 1 for anything else */
    ptrdiff_t inner;      /* bytes from element to element of a list */
} statplan_column;

/* Room for one answer of many designs, laid out alike. A list shorter than its room is filled up with NaN. */
typedef struct statplan_output {
    double* values;
    ptrdiff_t stride;
    size_t length;
    ptrdiff_t inner;
} statplan_output;

/* A question that is ready for any number of designs. */
typedef struct statplan_plan statplan_plan;

/* Prepares a question.
   test      name of a test
   unknown   what is to be found: "power", "halfwidth", "size", "effect", or the name of any number argument
   given     names of the arguments that will be given, `count` of them; the others have their defaults
   outputs   names of the answers that will be asked for, `output_count` of them: any argument, "power",
             "halfwidth", "level", any effect of the test, "total" of sizes that are found, for sizes by the
             guaranteed rule the name of a size with "guaranteed-" before it, and for those that are enrolled
             with a dropout that of a size, or total, with "enrolled-" before it
   refusal   where not null and the result is null: the refusal as JSON, to be released by statplan_free; null
             when memory runs out
   returns   the plan, to be released by statplan_release; null when refused */
STATPLAN_API statplan_plan* statplan_prepare(const char* test, const char* unknown, const char* const* given,
                                             size_t count, const char* const* outputs, size_t output_count,
                                             char** refusal);

/* What a question finds, without asking it: {"question", "answers"} as JSON, the latter an array of the
   names of outputs: what is found (of k groups, "total"), then what it reaches. "" as `unknown` finds the number
   that is left out. Or {"refusal": {...}}. To be released by statplan_free; null only when memory runs out. */
STATPLAN_API char* statplan_answers(const char* test, const char* unknown, const char* const* given,
                                    size_t count);

/* Answers a prepared question for `rows` designs: columns and outputs stand in the order of statplan_prepare.
   A row that is refused or has no answer gets NaN in every output (statplan_ask says why).
   returns   the number of rows answered before cancel said stop or memory ran out: `rows` unless one did */
STATPLAN_API size_t statplan_run(const statplan_plan* plan, size_t rows, const statplan_column* columns,
                                 const statplan_output* outputs, statplan_cancel cancel, void* context);

STATPLAN_API void statplan_release(statplan_plan* plan);

/* Prepares, runs and releases in one call, for one answer; 0 on success, 1 when refused (see statplan_prepare), 2
   when cancelled or out of memory. */
STATPLAN_API int statplan_columns(const char* test, const char* unknown, const char* const* given,
                                  const statplan_column* columns, size_t count, size_t rows,
                                  const char* output, double* values, statplan_cancel cancel, void* context,
                                  char** refusal);

#ifdef __cplusplus
}
#endif

#endif
