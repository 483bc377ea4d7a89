// What the planner knows: the arguments of people's questions, and the tests, each described once.
//
// Doors (the command, Python, R, the page) know no test by name: they carry values in and records out, and
// take names, meanings, ranges and defaults from here.
#pragma once

#include <array>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "orvcommon/query_cancel.h"
#include "statplan/visibility.h"

namespace statplan {

using Cancel = OrvCommon_940::OrvQueryCancel;

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNotGiven = std::numeric_limits<double>::quiet_NaN();

/// The numbers that an argument may have. Open ends are excluded; NaN is in no range.
struct Range {
    double low = -kInfinity, high = kInfinity;
    bool low_open = true, high_open = true;

    constexpr bool holds(double x) const {
        return (low_open ? x > low : x >= low) && (high_open ? x < high : x <= high);
    }
};

enum class Kind { number, whole, choice, list };

struct Argument;

/// An argument that only matters where a choice has one of some values.
struct Only {
    int place;                 // the choice's
    std::string_view name;     // the choice's
    std::vector<int> choices;  // positions of its words
};

/// Where an effect is none: a number, or the value of another argument. A search for the argument looks on
/// either side of it.
struct Null {
    double value = kNotGiven;
    std::string_view of = {};  // the other argument
    int place = -1;            // its place
};

/// One argument of a question. `--alpha`, `alpha=` and <input name="alpha"> are this value.
///
/// A copy for one test may say more (its own range or meaning) and keeps its place in Values.
struct STATPLAN_API Argument {
    std::string_view name;     // "sd"; words joined by "-"
    std::string_view meaning;  // "Standard deviation of each group"
    std::string_view unit = {};
    Range range = {};  // of each element of a list
    Kind kind = Kind::number;
    bool whole_elements = false;                 // of a list
    std::optional<double> otherwise = {};        // where it is not given; none: it must be
    std::vector<std::string_view> choices = {};  // in the order of their values 0, 1, ...
    std::optional<Null> null = {};               // of an effect
    std::vector<Only> only = {};                 // all of them must hold
    std::string_view phrase = {};                // in a sentence: "a standard deviation of {}"
    int place = next_place();                    // in Values: settled once for every word

    Argument means_in_words(std::string_view other) const;
    Argument within(Range other) const;
    Argument from(double low) const;  // at least `low`
    Argument by_default(double value) const;
    Argument needed() const;  // no default
    Argument null_at(double value) const;
    Argument null_at(const Argument& other) const;
    Argument measured_in(std::string_view other) const;  // another unit
    Argument only_with(const Argument& choice, std::initializer_list<int> values) const;
    Argument said(std::string_view other) const;  // another phrase

  private:
    static int next_place();
};

/// Most arguments that one vocabulary can have.
inline constexpr std::size_t kPlaces = 96;

/// Values of a question's arguments. Flat: each argument has its place.
class STATPLAN_API Values {
  public:
    Values() { numbers_.fill(kNotGiven); }

    /// A number, the position of a choice's word, or NaN where it was not given (a list never is a number).
    double operator[](const Argument& a) const { return numbers_[static_cast<std::size_t>(a.place)]; }
    bool has(const Argument& a) const { return !std::isnan((*this)[a]) || !list(a).empty(); }
    /// Is a choice this one of its words? False where it was not given.
    template <typename Word>
    bool is(const Argument& a, Word word) const {
        return (*this)[a] == static_cast<double>(word);
    }
    void set(const Argument& a, double value) { numbers_[static_cast<std::size_t>(a.place)] = value; }
    double at_place(int place) const { return numbers_[static_cast<std::size_t>(place)]; }

    /// The elements of a list; none where it was not given.
    std::span<const double> list(const Argument& a) const;
    /// Room for a list of `length`, to be filled.
    std::span<double> set_list(const Argument& a, std::size_t length);
    void set(const Argument& a, std::span<const double> elements);

    void clear(const Argument& a);

  private:
    std::array<double, kPlaces> numbers_;
    std::vector<std::pair<int, std::vector<double>>> lists_;  // few
};

/// Why a question is not answered.
struct STATPLAN_API Refusal {
    enum Kind { refused, no_answer, cancelled };

    Kind kind = refused;
    std::string argument;  // the one that is wrong; empty where it is none in particular
    std::string reason;    // what is wrong and what would do, without the name

    /// "sd: -1 is not greater than 0"
    std::string message() const;
};

/// A value or a refusal.
template <typename T>
class Outcome {
  public:
    Outcome(T value) : value_(std::move(value)) {}
    Outcome(Refusal refusal) : refusal_(std::move(refusal)) {}

    explicit operator bool() const { return value_.has_value(); }
    const T& operator*() const { return *value_; }
    T& operator*() { return *value_; }
    const T* operator->() const { return &*value_; }
    const Refusal& refusal() const { return refusal_; }

  private:
    std::optional<T> value_;
    Refusal refusal_;
};

using Check = std::optional<Refusal>;

/// One way to give what a kernel reads: arguments that belong together, and the raw values that follow from
/// them.
struct Way {
    std::vector<Argument> arguments;
    void (*complete)(Values&) = nullptr;
};

/// A quantity of a design that questions are about: its power or the half-width of its interval.
struct Measure {
    std::vector<Way> ways = {};                         // one of them is given
    std::vector<Argument> options = {};                 // always; with defaults or needed
    double (*value)(const Values&, Cancel*) = nullptr;  // NaN where there is none
    Check (*contradiction)(const Values&) = nullptr;    // rules that involve several arguments
};

/// Sample sizes: how they are given, and how a search spreads them over the groups.
struct Sizes {
    std::vector<Way> ways;                     // {n}; {n1, n2}; {total, ratio}
    std::vector<Argument> found;               // what a search finds: {n}; {n1, n2}; {sizes}
    std::vector<Argument> shares = {};         // the allocation: {ratio} or {weights}; may be left out
    double (*least)(const Values&) = nullptr;  // in each group
    std::vector<double> (*share)(const Values&) = nullptr;  // of a size, for each group: {1}, {1, ratio}, ...
    std::string_view note = {};                             // "n is the number in each group"
};

/// A standardised effect of a design, by its textbook name.
struct Effect {
    Argument argument;
    double (*value)(const Values&);  // NaN where the design has none
};

/// Size of each group.
using GroupSizes = std::vector<double>;

/// The powers of an exact test, which jump up and down as sizes grow, and how far. Keeps what it has computed, for
/// one design and one thread.
struct SawTooth {
    std::function<double(const GroupSizes&)> power;
    /// At most the power of these sizes and of all larger ones.
    std::function<double(const GroupSizes&)> least;
    /// At least the power of `sizes` and of all smaller ones down to `from`.
    std::function<double(const GroupSizes& sizes, const GroupSizes& from)> most;
    double observations = kInfinity;  // more than these, all groups together, are not computed: NaN
};

/// A worked example with its published or independently computed value, which help and pages print and tests
/// run.
struct Example {
    std::string_view study;    // what is planned, a sentence
    std::string_view command;  // behind "statpower ": "t-one size --d 0.5"
    std::string_view answer;   // name of the answer, "n"
    double value;
    double tolerance;  // absolute: the digits that the source gives
    std::string_view source;
};

/// In the order in which they are listed.
enum class Family { groups, means, proportions, correlations, regression };

struct Test {
    std::string_view name;   // "t-one"
    std::string_view title;  // "One mean (t test)"
    Family family;
    std::string_view study;   // "One group, a measurement each: does its mean differ from a given value?"
    std::string_view phrase;  // of a sentence: "one-sample t test"
    Sizes sizes;
    Measure power;
    double (*effect)(const Values&) = nullptr;   // signed; 0 under the null hypothesis
    bool (*saw_tooth)(const Values&) = nullptr;  // does the power jump up and down with the size?
    std::optional<SawTooth> (*exact_powers)(const Values&) = nullptr;  // where it does, with its bounds
    double (*level)(const Values&, Cancel*) = nullptr;                 // actual level of an exact test
    Measure precision = {};
    std::vector<Effect> effects = {};
    std::string (*method)(const Values&) = nullptr;     // "noncentral t distribution"
    std::string (*performed)(const Values&) = nullptr;  // `phrase` of a design, where choices change the test
    std::vector<std::string_view> notes = {};
    std::vector<std::string_view> sources = {};
    std::vector<Example> examples = {};
};

/// Enters a test in the catalogue. One at namespace scope in the test's file is all that a new test needs.
class STATPLAN_API Entry {
  public:
    explicit Entry(Test test);
};

/// All tests, by family, then by name.
STATPLAN_API const std::vector<const Test*>& catalogue();

/// The test of that name; null if there is none.
STATPLAN_API const Test* find_test(std::string_view name);

/// The description of all tests as JSON.
STATPLAN_API const std::string& catalogue_json();

}  // namespace statplan
