// Questions about designs, and their answers.
//
//     statplan::Question question{.test = statplan::find_test("t-two"), .unknown = "size"};
//     question.give("diff", 5), question.give("sd", 12), question.give("power", 0.9);
//     if (const auto record = statplan::ask(question)) std::puts(record->report.c_str());
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "statplan/catalogue.h"

namespace statplan {

STATPLAN_API std::string_view version();

/// Arguments of every question, whatever the test. `power` and `halfwidth` are what a design reaches and also
/// the target of a search.
namespace common {
STATPLAN_API extern const Argument power, half_width, rule, dropout, max_n;
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
    std::vector<Given> given;

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
    std::string question;          // power, size, precision, effect or solve
    std::string unknown;           // what was found: "power", "size", "diff"
    std::vector<Item> asked;       // every argument that matters, defaults too
    std::vector<Item> answer;      // what was found, and the power or half-width reached
    std::vector<Item> guaranteed;  // of a search for sizes: by the other rule, too
    std::vector<Item> enrolled;    // of a search for sizes with a dropout
    std::vector<Item> other;       // a second solution on the other side of the null hypothesis
    std::vector<Item> effects;     // the standardised effects of the design
    std::string method;
    std::vector<std::string> notes;
    std::vector<std::string_view> sources;
    std::string report;  // a sentence for a protocol or a paper
};

/// Answers a question about one design: a record, or why there is none.
/// @param cancel  asked often during long searches; may be null
STATPLAN_API Outcome<Record> ask(const Question& question, Cancel* cancel = nullptr);

/// A question that is ready for any number of designs: which arguments will be given is settled, their values
/// are not.
class STATPLAN_API Plan {
  public:
    /// @param unknown  as in Question
    /// @param given    names of the arguments that each design will give
    static Outcome<Plan> prepare(const Test& test, std::string_view unknown,
                                 const std::vector<std::string_view>& given);

    /// The arguments of `given`, in its order.
    const std::vector<const Argument*>& given() const;

    /// A design with the defaults, to be filled with the given arguments.
    const Values& blank() const;

    /// What one design is answered with.
    struct Answer {
        double power = kNotGiven, half_width = kNotGiven;
        double other = kNotGiven;  // the second solution of an argument
        bool complete = true;
    };

    /// Finds the unknown of a design and sets it in `values`; the raw values that follow are set, too.
    /// @return nothing when it was found, otherwise why not. Ranges are checked.
    Check answer(Values& values, Answer& answer, Rule rule = Rule::smallest, Cancel* cancel = nullptr) const;

    ~Plan();
    Plan(Plan&&) noexcept;
    Plan& operator=(Plan&&) noexcept;

  private:
    struct Parts;
    explicit Plan(std::unique_ptr<Parts> parts);
    std::unique_ptr<Parts> parts_;
};

}  // namespace statplan
