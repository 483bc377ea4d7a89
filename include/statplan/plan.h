// Questions about designs, and their answers.
//
//     statplan::Question question{.test = statplan::find_test("t-two"), .unknown = "size"};
//     question.give("diff", 5), question.give("sd", 12), question.give("power", 0.9);
//     if (const auto record = statplan::ask(question)) std::puts(record->report.c_str());
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "statplan/catalogue.h"

namespace statplan {

STATPLAN_API std::string_view version();

/// Arguments of every question, whatever the test. `power` and `halfwidth` are what a design reaches and also
/// the target of a search; `level` is only answered.
namespace common {
STATPLAN_API extern const Argument power, half_width, rule, dropout, max_n, level;
}

/// smallest: the least size that reaches the target. guaranteed: the least from which every larger one does,
/// too (the power of an exact test jumps up and down with the size).
enum class Rule { smallest, guaranteed };

/// A question of a test with some of its arguments. What is not given has its default.
struct STATPLAN_API Question {
    const Test* test = nullptr;
    std::string unknown =
        "power";  // power, halfwidth, size, effect, or the name of an argument; empty: the one
                  // number that is left out
    struct Given {
        std::string name;
        std::vector<double> values;  // a choice is the position of its word
    };
    std::vector<Given> given = {};

    void give(std::string_view name, double value) { given.push_back({std::string(name), {value}}); }
    void give(std::string_view name, std::vector<double> list) {
        given.push_back({std::string(name), std::move(list)});
    }
};

/// An argument and its value in an answer: one number, or a list. Of a choice, the position of its word.
struct Item {
    const Argument* argument;
    std::vector<double> values;
};

/// The answer of one design, with everything that was asked.
struct Record {
    const Test* test;
    std::string question = {};          // power, size, precision, effect or solve
    std::string unknown = {};           // what was found: "power", "size", "diff"
    std::vector<Item> asked = {};       // every argument that matters, defaults too
    std::vector<Item> answer = {};      // what was found, and the power or half-width reached
    std::vector<Item> guaranteed = {};  // of a search for sizes: by the other rule, too
    std::vector<Item> enrolled = {};    // of a search for sizes with a dropout
    std::vector<Item> other = {};       // a second solution on the other side of the null hypothesis
    std::vector<Item> effects = {};     // the standardised effects of the design
    std::string method = {};
    std::vector<std::string> notes = {};
    std::vector<std::string_view> sources = {};
    std::string report = {};  // a sentence for a protocol or a paper
};

/// Answers a question about one design: a record, or why there is none.
/// @param cancel  asked often during long searches; may be null
STATPLAN_API Outcome<Record> ask(const Question& question, Cancel* cancel = nullptr);

/// The answers of a grid of designs: every combination of the values of arguments that were given several.
struct Table {
    const Test* test;
    std::string question, unknown;
    std::vector<Item> asked = {};            // the same in all rows; choices among them
    std::vector<const Argument*> over = {};  // what varies, the slowest first
    struct Column {
        std::string name;
        const Argument* argument;
        std::vector<double> values;  // one a row; NaN where there is no answer
    };
    std::vector<Column> columns = {};  // what varies, then the answers
    std::vector<std::string> refusals =
        {};  // one a row, empty where it is answered; none at all where all are
};

/// Answers a question in which number arguments may have several values.
STATPLAN_API Outcome<Table> ask_table(const Question& question, Cancel* cancel = nullptr);

/// A question that can be asked of a test.
struct QuestionWord {
    std::string_view name;     // power, size, precision, effect or solve
    std::string_view meaning;  // "The power of a design"
};
STATPLAN_API std::vector<QuestionWord> questions(const Test& test);

/// Explanations, of which help, manual and reference pages are made.
struct Section {
    struct Line {
        std::string term;  // a word and what follows it; empty: a paragraph
        std::string text;  // what it means; empty: the term is a command to type
    };
    std::string title;  // may be empty
    std::vector<Line> lines;
};

/// A test explained: its arguments with their units, ranges and defaults, sources, and examples.
/// @param question  what the explanation is for; empty: all questions
STATPLAN_API std::vector<Section> explained(const Test& test, std::string_view question = {});

/// What there is: tests and questions.
STATPLAN_API std::vector<Section> overview();

/// Explanations as text for a terminal, as a part of a manual page, and as Markdown.
STATPLAN_API std::string to_text(const std::vector<Section>& explanation);
STATPLAN_API std::string to_roff(const std::vector<Section>& explanation);
STATPLAN_API std::string to_markdown(const std::vector<Section>& explanation);

/// The arguments that questions of a test may have.
STATPLAN_API std::vector<const Argument*> arguments(const Test& test);

/// The question that words ask: what each word is followed by is read as a number, a choice's word, a list
/// "10,12,14", or, where a number stands, several of them "0.2,0.5" or a range "20:200:10".
/// @param question  power, size, precision, effect or solve; solve may name its unknown by the word solve-for
STATPLAN_API Outcome<Question> read_question(std::string_view test, std::string_view question,
                                             const std::vector<std::pair<std::string, std::string>>& words);

/// Several values of an argument from a text, as read_question reads them.
STATPLAN_API Outcome<std::vector<double>> read_values(const Argument& argument, std::string_view text);

/// Does any number argument of the question have several values?
STATPLAN_API bool is_table(const Question& question);

/// The argument of that name in any question of the test; null if there is none.
STATPLAN_API const Argument* find_argument(const Test& test, std::string_view name);

/// A record, a table or a refusal as JSON, the same in every door.
STATPLAN_API std::string to_json(const Record& record);
STATPLAN_API std::string to_json(const Table& table);
STATPLAN_API std::string to_json(const Refusal& refusal);
/// A table as JSON, a line for each row.
STATPLAN_API std::string to_ndjson(const Table& table);

/// Answers as text for people.
/// @param digits  significant digits of numbers
STATPLAN_API std::string to_text(const Record& record, int digits = 6);
STATPLAN_API std::string to_text(const Table& table, int digits = 4);

/// Answers as CSV: a table's columns, or a record's answer as the table of one row.
/// @param digits  significant digits; 0: as many as it takes to read the same doubles back
STATPLAN_API std::string to_csv(const Record& record, int digits = 0);
STATPLAN_API std::string to_csv(const Table& table, int digits = 0);
/// A table as a chart: commands for gnuplot, which writes to its standard output. The longest list of numbers is the
/// x axis, each combination of the others a line; powers have a line at the usual target.
/// @param terminal  gnuplot's, with its options: "svg size 800,500"
STATPLAN_API Outcome<std::string> to_gnuplot(const Table& table, std::string_view terminal);
/// An item in a cell, nothing where there is no number, and a text, in quotes where it needs them.
STATPLAN_API std::string in_csv(const Item& item, int digits = 0);
STATPLAN_API std::string in_csv(std::string_view text);

/// A question that is ready for any number of designs: which arguments will be given is settled, their values
/// are not.
class STATPLAN_API Plan {
  public:
    /// @param unknown  as in Question
    /// @param given    names of the arguments that each design will give
    static Outcome<Plan> prepare(const Test& test, std::string_view unknown,
                                 const std::vector<std::string_view>& given);

    const Test& test() const;
    /// Is the question about the half-width of an interval, not about the power?
    bool is_precision() const;
    /// "power", "precision", "size" or "solve"
    std::string_view question() const;
    /// The argument that is found; null for a power, a half-width and sizes.
    const Argument* unknown() const;
    /// Are the sizes of the groups what is found?
    bool searches_sizes() const;
    /// What an answer of one number each has: what is found (of k groups, their total), then what it reaches.
    std::vector<const Argument*> answers() const;
    /// The arguments of `given`, in its order.
    const std::vector<const Argument*>& given() const;
    /// All arguments that matter in a design, in the order in which the test lists them.
    std::vector<const Argument*> used(const Values& values) const;

    /// A design with the defaults, to be filled with the given arguments.
    const Values& blank() const;

    /// What one design is answered with, besides its values.
    struct Answer {
        double reached = kNotGiven;         // the power, or the half-width
        double other = kNotGiven;           // a second solution of an argument
        std::vector<double> smallest = {};  // of a search for sizes, by either rule
        std::vector<double> guaranteed = {};
    };

    /// Finds the unknown of a design and sets it in `values`; the raw values that follow are set, too.
    /// @return nothing when it was found, otherwise why not: the given arguments are checked first
    Check answer(Values& values, Answer& answer, Cancel* cancel = nullptr) const;

    /// An answered design's answer: what was found, the power or half-width reached, and the actual level of an
    /// exact test.
    std::vector<Item> items(const Values& values, const Answer& answer, Cancel* cancel = nullptr) const;
    /// Names of all items that answers may have.
    std::vector<std::string_view> item_names() const;

    /// Are these arguments in their ranges, and do they matter?
    Check check(const Values& values, std::span<const Argument* const> arguments) const;

    /// As `answer`, for given arguments that are known to pass `check`.
    Check answer_checked(Values& values, Answer& answer, Cancel* cancel = nullptr) const;

    ~Plan();
    Plan(Plan&&) noexcept;
    Plan& operator=(Plan&&) noexcept;

  private:
    struct STATPLAN_HIDDEN Parts;
    explicit Plan(std::unique_ptr<Parts> parts);
    std::unique_ptr<Parts> parts_;
};

}  // namespace statplan
