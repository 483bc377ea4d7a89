#include "statplan/plan.h"

#include <algorithm>
#include <numeric>

#include "plan/saw_tooth.h"
#include "plan/search.h"
#include "plan/text.h"
#include "plan/vocabulary.h"

namespace statplan {

std::string_view version() {
    return STATPLAN_VERSION;
}

namespace common {

const Argument power{.name = "power",
                     .meaning = "Power to reach",
                     .unit = "probability",
                     .range = kInside01,
                     .otherwise = 0.8};
const Argument half_width{.name = "halfwidth",
                          .meaning = "Half-width of the interval to reach",
                          .unit = "as the estimate",
                          .range = kPositive,
                          .phrase = "a half-width of {}"};
const Argument rule{
    .name = "rule",
    .meaning = "Least size that reaches the target, or least from which every larger one does",
    .kind = Kind::choice,
    .otherwise = 0,
    .choices = {"smallest", "guaranteed"}};
const Argument dropout{.name = "dropout",
                       .meaning = "Proportion that is expected to drop out; enrolled sizes are larger by it",
                       .unit = "proportion",
                       .range = {.low = 0, .high = 1, .low_open = false},
                       .otherwise = 0};
const Argument max_n{.name = "max-n",
                     .meaning = "Largest size, all groups together, that a search may find",
                     .unit = "observations",
                     .range = {.low = 2, .high = 1e12, .low_open = false, .high_open = false},
                     .kind = Kind::whole,
                     .otherwise = 1e7};

const Argument level{.name = "level",
                     .meaning =
                         "Actual level of an exact test: the largest probability of rejecting a true "
                         "null hypothesis",
                     .unit = "probability",
                     .range = {.low = 0, .high = 1, .low_open = false, .high_open = false}};

}  // namespace common

namespace {

using Names = std::vector<std::string_view>;

bool contains(const Names& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

const Argument* find(const std::vector<Argument>& arguments, std::string_view name) {
    const auto found = std::ranges::find(arguments, name, &Argument::name);
    return found == arguments.end() ? nullptr : &*found;
}

std::string in_words(const Way& way) {
    std::vector<std::string> words;
    for (const Argument& a : way.arguments) words.emplace_back(a.name);
    return joined(words);
}

std::string in_words(const std::vector<Way>& ways) {
    std::vector<std::string> words;
    words.reserve(ways.size());
    for (const Way& way : ways) words.push_back(in_words(way));
    return joined(words, ", or ");
}

/// What a way still needs: no default, not given, not sought.
std::vector<const Argument*> missing(const Way& way, const Names& given, std::string_view unknown) {
    std::vector<const Argument*> open;
    for (const Argument& a : way.arguments)
        if (!a.otherwise && a.name != unknown && !contains(given, a.name)) open.push_back(&a);
    return open;
}

/// The way that somebody who gives these arguments means: one that has all of them, and of these the one that
/// lacks least. Null where the ways exclude each other.
const Way* chosen(const std::vector<Way>& ways, const Names& given, std::string_view unknown) {
    Names named;  // arguments of any of the ways
    for (const Way& way : ways)
        for (const Argument& a : way.arguments)
            if ((contains(given, a.name) || a.name == unknown) && !contains(named, a.name))
                named.push_back(a.name);
    const Way* best = nullptr;
    for (const Way& way : ways) {
        const auto has = [&](std::string_view name) { return find(way.arguments, name) != nullptr; };
        if (!std::ranges::all_of(named, has)) continue;
        if (!best || missing(way, given, unknown).size() < missing(*best, given, unknown).size()) best = &way;
    }
    return best;
}

/// The arguments of any of the ways that are given.
Names given_of(const std::vector<Way>& ways, const Names& given) {
    Names found;
    for (const Way& way : ways)
        for (const Argument& a : way.arguments)
            if (contains(given, a.name) && !contains(found, a.name)) found.push_back(a.name);
    return found;
}

Refusal refusal(std::string_view argument, std::string reason) {
    return {.kind = Refusal::refused, .argument = std::string(argument), .reason = std::move(reason)};
}

Refusal no_answer(std::string reason) {
    return {.kind = Refusal::no_answer, .argument = {}, .reason = std::move(reason)};
}

Refusal groups_unknown() {
    return refusal(groups.name, "is needed, or the sizes or weights of the groups");
}

double together(std::span<const double> sizes_of_groups) {
    return std::accumulate(sizes_of_groups.begin(), sizes_of_groups.end(), 0.0);
}

const Refusal kCancelled{.kind = Refusal::cancelled, .argument = {}, .reason = "stopped"};

bool stopped(Cancel* cancel) {
    return cancel && cancel->IsCancelRequested();
}

}  // namespace

struct Plan::Parts {
    const Test* test;
    bool precision;
    const Measure* measure;
    const Way* way = nullptr;       // how the effect is given; null where there is none
    const Way* size_way = nullptr;  // how the sizes are given; null where they are sought
    const Argument* unknown = nullptr;
    bool evaluates = false;    // the unknown is the measure itself
    bool effect_only = false;  // the standardised effects are asked for: sizes matter for their shares only
    std::vector<const Argument*> given;
    Values blank;

    const Argument& target() const { return precision ? common::half_width : common::power; }
    bool sizes_sought() const { return !size_way && !effect_only; }

    void complete(Values& values) const {
        if (way && way->complete) way->complete(values);
        if (size_way && size_way->complete) size_way->complete(values);
    }

    double measured(Values& values, Cancel* cancel) const {
        complete(values);
        return measure->value(values, cancel);
    }

    /// Negative while the target is not reached.
    double shortfall(double value, const Values& values) const {
        return precision ? values[target()] - value : value - values[target()];
    }

    void set_sizes(Values& values, const std::vector<double>& found) const {
        const auto& names = test->sizes.found;
        if (names.size() == found.size() && names.front().kind != Kind::list)
            for (std::size_t i = 0; i < found.size(); ++i) values.set(names[i], found[i]);
        else
            values.set(names.front(), found);
    }

    bool names_direction(const Values& values) const {
        return !precision && test->effect &&
               (values.is(alternative, greater) || values.is(alternative, less));
    }
    Check check_direction(const Values& values) const;
    /// Does the measure jump up and down as sizes grow?
    bool jumps(const Values& values) const {
        if (precision) return false;
        return (test->saw_tooth && test->saw_tooth(values)) || exact_powers(values);
    }
    std::optional<SawTooth> exact_powers(const Values& values) const {
        return !precision && test->exact_powers ? test->exact_powers(values) : std::nullopt;
    }

    Check find_sizes(Values& values, Answer& answer, Cancel* cancel) const;
    Check find_exact_sizes(const SawTooth& powers, const Allocation& allocation, double largest,
                           Values& values, Answer& answer, Cancel* cancel) const;
    Check find_argument(Values& values, Answer& answer, Cancel* cancel) const;
    Check find_whole(Values& values, Answer& answer, Cancel* cancel) const;
    Refusal unreachable(double reached, double largest, const Values& values) const;
};

// ---- Which question is it? -------------------------------------------------------------------------------

namespace {

/// All arguments of a test that questions about a measure may have.
std::vector<const Argument*> arguments_of(const Test& test, const Measure& measure) {
    std::vector<const Argument*> all;
    const auto add = [&](const Argument& a) {
        if (std::ranges::find(all, a.place, &Argument::place) == all.end()) all.push_back(&a);
    };
    for (const Way& way : measure.ways) std::ranges::for_each(way.arguments, add);
    for (const Way& way : test.sizes.ways) std::ranges::for_each(way.arguments, add);
    std::ranges::for_each(test.sizes.shares, add);
    std::ranges::for_each(measure.options, add);
    for (const Argument* a :
         {&common::power, &common::half_width, &common::rule, &common::dropout, &common::max_n})
        add(*a);
    return all;
}

const Argument* find(const std::vector<const Argument*>& arguments, std::string_view name) {
    const auto found = std::ranges::find(arguments, name, &Argument::name);
    return found == arguments.end() ? nullptr : *found;
}

/// Only questions about intervals have this argument.
bool only_in_precision(const Test& test, std::string_view name) {
    return name == common::half_width.name ||
           (find(arguments_of(test, test.precision), name) && !find(arguments_of(test, test.power), name));
}

}  // namespace

std::vector<const Argument*> arguments(const Test& test) {
    auto all = arguments_of(test, test.power);
    for (const Argument* a : arguments_of(test, test.precision))
        if (!find(all, a->name)) all.push_back(a);
    return all;
}

const Argument* find_argument(const Test& test, std::string_view name) {
    return find(arguments(test), name);
}

namespace {

Refusal unknown_word(const Test& test, std::string_view name) {
    Names words{"power", "halfwidth", "size", "effect"};
    std::erase(words, name);  // a question, but no argument
    for (const Measure* measure : {&test.power, &test.precision})
        for (const Argument* a : arguments_of(test, *measure)) words.push_back(a->name);
    const std::string near = did_you_mean(name, words);
    std::vector<std::string> known;
    for (const Argument* a : arguments(test)) known.emplace_back(a->name);
    return refusal(escaped(name), std::string(test.name) + " has no such argument" +
                                      (near.empty() ? "; it has " + joined(known) : near));
}

}  // namespace

Outcome<Plan> Plan::prepare(const Test& test, std::string_view unknown, const Names& given) {
    auto parts = std::make_unique<Parts>();
    Parts& p = *parts;
    p.test = &test;

    const bool has_precision = test.precision.value != nullptr;
    const bool asks_interval =
        std::ranges::any_of(given, [&](auto name) { return only_in_precision(test, name); });
    p.precision = unknown == "halfwidth" || (unknown != "power" && asks_interval);
    if (p.precision && !has_precision)
        return refusal("halfwidth", "there is no interval for " + std::string(test.title));
    p.measure = p.precision ? &test.precision : &test.power;
    const Argument& target = p.target();

    const auto known = arguments_of(test, *p.measure);
    for (const std::string_view name : given) {
        if (std::ranges::count(given, name) > 1) return refusal(name, "is given twice");
        if (find(known, name)) continue;
        if (find(arguments_of(test, p.precision ? test.power : test.precision), name))
            return refusal(name,
                           p.precision ? "has no effect on the half-width" : "has no effect on the power");
        return unknown_word(test, name);
    }

    // The effect, and how the sizes are given.
    const Names effect_given = given_of(p.measure->ways, given),
                sizes_given = given_of(test.sizes.ways, given);
    const auto is_share = [&](std::string_view name) { return find(test.sizes.shares, name) != nullptr; };
    const bool no_size = std::ranges::all_of(sizes_given, is_share);
    p.way = chosen(p.measure->ways, given, unknown);
    if (!p.way && !p.measure->ways.empty())
        return refusal(effect_given.empty() ? unknown : effect_given.back(),
                       "cannot stand beside " +
                           (effect_given.size() > 1 ? std::string(effect_given.front()) : "it") + "; give " +
                           in_words(p.measure->ways));
    const bool unknown_is_size = std::ranges::any_of(
        test.sizes.ways, [&](const Way& way) { return find(way.arguments, unknown) != nullptr; });
    const Way* size_way = chosen(test.sizes.ways, given, unknown_is_size ? unknown : "");
    if (!size_way)
        return refusal(sizes_given.back(), "cannot stand beside " + std::string(sizes_given.front()) +
                                               "; give " + in_words(test.sizes.ways));

    // What is left out?
    std::string_view sought = unknown;
    const auto open = p.way ? missing(*p.way, given, sought) : std::vector<const Argument*>{};
    if (sought.empty()) {
        if (no_size)
            sought = "size";
        else if (!open.empty() && contains(given, target.name))
            sought = open.front()->name;
        else if (!contains(given, target.name))
            sought = target.name;
        else
            return refusal({}, "nothing is left out: leave out what is to be found, " +
                                   std::string(target.name) + " or any other number");
    }
    if (sought == "size" && !no_size) {
        // One group's size is given: the other's is found.
        const Way* both = nullptr;
        for (const Way& way : test.sizes.ways)
            if (way.arguments.size() == test.sizes.found.size() && missing(way, given, {}).size() == 1 &&
                std::ranges::all_of(sizes_given,
                                    [&](auto name) { return find(way.arguments, name) != nullptr; }))
                both = &way;
        if (!both)
            return refusal(*std::ranges::find_if_not(sizes_given, is_share),
                           "is what size finds; leave it out");
        sought = missing(*both, given, {}).front()->name;
        size_way = both;
    }
    p.effect_only = sought == "effect";
    p.evaluates = sought == target.name || p.effect_only;
    if (p.evaluates && contains(given, target.name))
        return refusal(target.name, "is what is found; leave it out");
    if (sought != "size" && !(p.effect_only && no_size)) {
        p.size_way = size_way;
        if (const auto lacks = missing(*size_way, given, sought); !lacks.empty()) {
            if (no_size)
                return refusal(test.sizes.found.front().name, "is needed; give " + in_words(test.sizes.ways));
            return refusal(lacks.front()->name, "is needed");
        }
        if (!p.evaluates) {
            // As the way says it that has it: with its range.
            if (p.way) p.unknown = find(p.way->arguments, sought);
            if (!p.unknown) p.unknown = find(size_way->arguments, sought);
            if (!p.unknown) p.unknown = find(known, sought);
            if (!p.unknown) return unknown_word(test, sought);
            if (contains(given, sought)) return refusal(sought, "is what is found; leave it out");
        }
    }
    if (p.way) {
        const auto lacks = missing(*p.way, given, sought);
        if (!lacks.empty()) {
            if (effect_given.empty())
                return refusal(lacks.front()->name, "is needed; give " + in_words(p.measure->ways));
            return refusal(lacks.front()->name, "is needed beside " + std::string(effect_given.front()));
        }
    }
    if (p.unknown) {
        const bool size = find(size_way->arguments, sought) != nullptr;
        if (p.unknown->kind == Kind::choice || p.unknown->kind == Kind::list ||
            (p.unknown->kind == Kind::whole && !size) || p.unknown == &common::dropout ||
            p.unknown == &common::max_n)
            return refusal(sought, "cannot be found by a search: give it");
    }
    if (!p.evaluates && !target.otherwise && !contains(given, target.name))
        return refusal(target.name, "is needed: the target of the search");
    for (const Argument& a : p.measure->options)
        if (!p.effect_only && !a.otherwise && a.only.empty() && a.name != sought && !contains(given, a.name))
            return refusal(a.name, "is needed");

    // Every given argument matters.
    for (const std::string_view name : given) {
        const Argument* a = find(known, name);
        const bool in_way = p.way && find(p.way->arguments, name);
        const bool in_sizes = p.size_way ? find(p.size_way->arguments, name) != nullptr : is_share(name);
        const bool searches = !p.evaluates && (a == &target || a == &common::max_n);
        const bool of_sizes = p.sizes_sought() && (a == &common::rule || a == &common::dropout);
        if (const bool option = find(p.measure->options, name) != nullptr;
            !(in_way || in_sizes || option || searches || of_sizes))
            return refusal(name, a == &common::rule || a == &common::dropout
                                     ? "has no effect where no sizes are sought"
                                     : "has no effect beside " +
                                           (p.size_way ? in_words(*p.size_way) : std::string("the rest")));
        p.given.push_back(
            in_way     ? find(p.way->arguments, name)
            : in_sizes ? (p.size_way ? find(p.size_way->arguments, name) : find(test.sizes.shares, name))
                       : a);
    }

    // Defaults of all that matters and is not given.
    const auto default_of = [&](const Argument& a) {
        if (a.otherwise && !contains(given, a.name) && &a != p.unknown) p.blank.set(a, *a.otherwise);
    };
    if (p.way) std::ranges::for_each(p.way->arguments, default_of);
    std::ranges::for_each(p.size_way ? p.size_way->arguments : test.sizes.shares, default_of);
    std::ranges::for_each(p.measure->options, default_of);
    if (!p.evaluates) default_of(target), default_of(common::max_n);
    if (p.sizes_sought()) default_of(common::rule), default_of(common::dropout);
    return Plan(std::move(parts));
}

Plan::Plan(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
Plan::~Plan() = default;
Plan::Plan(Plan&&) noexcept = default;
Plan& Plan::operator=(Plan&&) noexcept = default;

const Test& Plan::test() const {
    return *parts_->test;
}
bool Plan::is_precision() const {
    return parts_->precision;
}
const Argument* Plan::unknown() const {
    return parts_->unknown;
}
std::vector<const Argument*> Plan::answers() const {
    std::vector<const Argument*> found;
    if (parts_->effect_only) {
        for (const Effect& effect : test().effects) found.push_back(&effect.argument);
        return found;
    }
    if (unknown()) found.push_back(unknown());
    if (searches_sizes())
        for (const Argument& a : test().sizes.found) found.push_back(a.kind == Kind::list ? &total : &a);
    found.push_back(&parts_->target());
    return found;
}
const std::vector<const Argument*>& Plan::given() const {
    return parts_->given;
}
const Values& Plan::blank() const {
    return parts_->blank;
}

bool Plan::searches_sizes() const {
    return parts_->sizes_sought();
}

std::string_view Plan::question() const {
    if (parts_->effect_only) return "effect";
    if (parts_->evaluates) return parts_->precision ? "precision" : "power";
    return parts_->sizes_sought() ? (parts_->precision ? "precision" : "size") : "solve";
}

namespace {

bool applies(const Argument& a, const Values& values) {
    return std::ranges::all_of(a.only, [&](const Only& only) {
        const double choice = values.at_place(only.place);
        return std::ranges::any_of(only.choices, [&](int allowed) { return choice == allowed; });
    });
}

}  // namespace

std::vector<const Argument*> Plan::used(const Values& values) const {
    const Parts& p = *parts_;
    std::vector<const Argument*> all;
    const auto add = [&](const Argument& a) {
        if (applies(a, values) && values.has(a) && &a != p.unknown) all.push_back(&a);
    };
    if (p.way) std::ranges::for_each(p.way->arguments, add);
    std::ranges::for_each(p.size_way ? p.size_way->arguments : p.test->sizes.shares, add);
    if (p.effect_only) return all;
    if (!p.evaluates) add(p.target());
    std::ranges::for_each(p.measure->options, add);
    if (p.sizes_sought()) {
        if (p.jumps(values)) add(common::rule);
        if (values[common::dropout] > 0) add(common::dropout);
    }
    return all;
}

// ---- One design ------------------------------------------------------------------------------------------

namespace {

/// Whole numbers are those that a 64-bit integer keeps (a conversion, where std::trunc may be a call).
bool is_whole(double x) {
    return std::abs(x) < 9e18 && x == static_cast<double>(static_cast<long long>(x));
}

inline bool allows(const Argument& a, double x) {
    if (a.kind == Kind::number) return a.range.holds(x);
    if (a.kind == Kind::choice) return x >= 0 && x < static_cast<double>(a.choices.size()) && is_whole(x);
    return a.range.holds(x) && (!(a.kind == Kind::whole || a.whole_elements) || is_whole(x));
}

Refusal not_allowed(const Argument& a, double x) {
    return refusal(a.name, std::isnan(x) ? "is not a number" : exactly(x) + " is not " + rule_of(a));
}

/// "continuity: has an effect only with statistic chi-square"
Refusal has_no_effect(const Argument& a, const std::vector<const Argument*>& known) {
    std::string where;
    for (const Only& only : a.only) {
        std::vector<std::string> words;
        for (const int position : only.choices) words.push_back(value_of(*find(known, only.name), position));
        where += (where.empty() ? "" : " and ") + std::string(only.name) + " " + joined(words, " or ");
    }
    return refusal(a.name, "has an effect only with " + where);
}

}  // namespace

Check Plan::check(const Values& values, std::span<const Argument* const> arguments) const {
    for (const Argument* a : arguments) {
        if (a->kind == Kind::list) {
            if (values.list(*a).size() < 2)
                return refusal(a->name, "needs a number for each of two or more groups");
            for (const double x : values.list(*a))
                if (!allows(*a, x)) return not_allowed(*a, x);
        } else if (!allows(*a, values[*a])) {
            return not_allowed(*a, values[*a]);
        }
        if (!a->only.empty() && !applies(*a, values))
            return has_no_effect(*a, arguments_of(*parts_->test, *parts_->measure));
    }
    return {};
}

Check Plan::Parts::check_direction(const Values& values) const {
    if (!names_direction(values)) return {};
    const double effect = test->effect(values);
    const bool wrong =
        (values.is(alternative, greater) && effect < 0) || (values.is(alternative, less) && effect > 0);
    if (!wrong) return {};
    return refusal(alternative.name, value_of(alternative, values[alternative]) + ", but the effect is " +
                                         (effect < 0 ? "negative: less" : "positive: greater") +
                                         ", or one-sided, which is the direction of the effect, would do");
}

Refusal Plan::Parts::unreachable(double reached, double largest, const Values& values) const {
    if (!precision && test->effect && test->effect(values) == 0)
        return no_answer("there is no effect, so that no size reaches a power of " +
                         number(values[target()]));
    return no_answer(std::string(precision ? "the half-width tends to " : "the power tends to ") +
                     number(reached, 3) + " and does not reach " + number(values[target()]) + " with " +
                     number(largest) + " observations" +
                     (precision ? "" : "; a larger effect or alpha, or a lower power, would do"));
}

Check Plan::Parts::find_sizes(Values& values, Answer& answer, Cancel* cancel) const {
    const std::vector<double> shares = test->sizes.share(values);
    if (shares.empty()) return groups_unknown();
    if (shares.size() > 100000) return refusal(test->sizes.found.front().name, "of more than 100000 groups");
    const Allocation allocation(shares, test->sizes.least(values));
    const double largest = values[common::max_n] / together(shares);
    bool cancelled = false;
    const auto missing_at = [&](const std::vector<double>& found) {
        if (stopped(cancel)) cancelled = true;
        if (cancelled) return kNotGiven;
        set_sizes(values, found);
        return shortfall(measured(values, cancel), values);
    };
    std::vector<double> found = allocation.at(0);
    if (!precision && test->effect) {
        set_sizes(values, found);
        complete(values);
        if (test->effect(values) == 0 && values[target()] > values[alpha])
            return unreachable(values[alpha], 0, values);
    }

    if (const auto powers = exact_powers(values))
        return find_exact_sizes(*powers, allocation, largest, values, answer, cancel);

    // Real sizes first: the measure is smooth in them, and its root tells where to look among whole ones.
    if (!(missing_at(found) >= 0)) {
        std::vector<double> real(shares.size());
        const Shortfall at_real = [&](double root) {
            for (std::size_t i = 0; i < shares.size(); ++i)
                real[i] = std::max(allocation.least(), shares[i] * root * root);
            return missing_at(real);
        };
        double low = std::sqrt(allocation.least() / *std::ranges::max_element(shares)), high = 2 * low;
        const double last = std::sqrt(largest);
        while (high < last && !(at_real(high) >= 0) && !cancelled) low = high, high *= 2;
        if (high >= last) {
            high = last;
            if (!cancelled && !(at_real(high) >= 0)) {
                const double reached = measured(values, cancel);
                return unreachable(reached, values[common::max_n], values);
            }
        }
        const double step = 0.5 / *std::ranges::max_element(shares);
        const double size = cancelled ? 0 : narrowed(at_real, low, high, [&](double a, double b) {
            return b * b - a * a < std::max(step, 1e-12 * b * b);
        });
        found = allocation.at(size * size);
        while (!cancelled && !(missing_at(found) >= 0)) {
            found = allocation.above(found);
            if (together(found) > values[common::max_n])
                return unreachable(measured(values, cancel), values[common::max_n], values);
        }
        for (auto smaller = allocation.below(found); !cancelled && smaller && missing_at(*smaller) >= 0;
             smaller = allocation.below(found))
            found = *smaller;
    }
    answer.smallest = answer.guaranteed = found;
    if (jumps(values)) {
        // Groups that are rounded apart move the measure by what a few observations are worth: the allocations
        // around tell which is the least that reaches the target, and from which on all do.
        const std::size_t around = 16 * shares.size();
        std::optional<std::vector<double>> below = found;
        for (std::size_t i = 0; i < around && !cancelled && (below = allocation.below(*below)); ++i)
            if (missing_at(*below) >= 0) answer.smallest = *below;
        bool reached = true;
        std::vector<double> above = answer.smallest;
        for (std::size_t i = 0; i < 2 * around && !cancelled; ++i, above = allocation.above(above)) {
            const bool reaches = missing_at(above) >= 0;
            if (reaches && !reached) answer.guaranteed = above;
            if (i == 0) answer.guaranteed = above;
            reached = reaches;
        }
    }
    if (cancelled) return kCancelled;
    const auto& by_rule = values.is(common::rule, Rule::guaranteed) ? answer.guaranteed : answer.smallest;
    if (const double least = together(by_rule); least > values[common::max_n])
        return no_answer("the least size is " + number(least, 15) + " observations, more than max-n");
    set_sizes(values, by_rule);
    answer.reached = measured(values, cancel);
    return {};
}

Check Plan::Parts::find_exact_sizes(const SawTooth& powers, const Allocation& allocation, double largest,
                                    Values& values, Answer& answer, Cancel* cancel) const {
    const Chain chain{.at = [&](double size) { return allocation.at(size); },
                      .above = [&](const GroupSizes& before) { return allocation.above(before); }};
    // Each group is rounded up.
    const double most = std::min(values[common::max_n],
                                 powers.observations - static_cast<double>(allocation.shares().size()));
    largest *= most / values[common::max_n];
    const FoundSizes found = statplan::find_sizes(powers, chain, values[target()], largest, cancel);
    if (found.cancelled) return kCancelled;
    if (found.smallest.empty()) return unreachable(powers.power(allocation.at(largest)), most, values);
    answer.smallest = found.smallest, answer.guaranteed = found.guaranteed;
    const bool guaranteed = values.is(common::rule, Rule::guaranteed);
    if (guaranteed && found.guaranteed.empty())
        return no_answer("the power does not stay above " + number(values[target()]) + " before " +
                         number(most) + " observations");
    set_sizes(values, guaranteed ? found.guaranteed : found.smallest);
    answer.reached = measured(values, cancel);
    return {};
}

Check Plan::Parts::find_argument(Values& values, Answer& answer, Cancel* cancel) const {
    const Argument& x = *unknown;
    bool cancelled = false;
    const Shortfall shortfall_at = [&](double at) {
        if (stopped(cancel)) cancelled = true;
        if (cancelled) return kNotGiven;
        values.set(x, at);
        const double value = measured(values, cancel);
        if (check_direction(values)) return kNotGiven;
        if (measure->contradiction && measure->contradiction(values)) return kNotGiven;
        return shortfall(value, values);
    };
    double null = kNotGiven;
    if (x.null) null = x.null->place >= 0 ? values.at_place(x.null->place) : x.null->value;
    std::vector<double> found = crossings(shortfall_at, x.range, null);
    if (cancelled) return kCancelled;
    if (found.empty()) {
        if (!precision && !std::isnan(null) && values[target()] <= values[alpha])
            return no_answer("any " + std::string(x.name) + " reaches a power of " +
                             number(values[target()]) + ", which is at most alpha");
        return no_answer("no " + std::string(x.name) + " " + rule_of(x) + " reaches a " +
                         (precision ? "half-width of " : "power of ") + number(values[target()]));
    }
    // Of two solutions the one nearer to the default, where there is one, as it asks less of the design.
    if (found.size() > 1 && x.otherwise && std::isnan(null))
        std::ranges::sort(found, {}, [&](double at) { return std::abs(std::log(at / *x.otherwise)); });
    if (found.size() > 1) answer.other = found[1];
    values.set(x, found.front());
    answer.reached = measured(values, cancel);
    if (x.place == ratio.place) values.set(x, values[n2] / values[n1]);  // that of the whole sizes
    return {};
}

Check Plan::Parts::find_whole(Values& values, Answer& answer, Cancel* cancel) const {
    const Argument& x = *unknown;
    bool cancelled = false;
    const auto reaches = [&](double at) {
        if (stopped(cancel)) cancelled = true;
        if (cancelled) return false;
        values.set(x, at);
        return shortfall(measured(values, cancel), values) >= 0;
    };
    const auto sizes_at = [&](double at) {
        values.set(x, at);
        complete(values);
        GroupSizes sizes_of_groups;
        for (const Argument& a : test->sizes.found) {
            const auto list = values.list(a);
            sizes_of_groups.insert(sizes_of_groups.end(), list.begin(), list.end());
            if (a.kind != Kind::list) sizes_of_groups.push_back(values[a]);
        }
        return sizes_of_groups;
    };
    const double least = std::max(
        x.range.low, x.place == total.place ? 2 * test->sizes.least(values) : test->sizes.least(values));
    if (!(together(sizes_at(least)) <= values[common::max_n]))
        return refusal(common::max_n.name, "is less than the sizes that are given");
    // The largest with which all groups together are no more than that.
    const auto last_of = [&](double most) {
        double last = least, beyond = most + 1;
        while (beyond - last > 1) {
            const double middle = std::floor((last + beyond) / 2);
            (together(sizes_at(middle)) <= most ? last : beyond) = middle;
        }
        return last;
    };
    const auto unreachable_at = [&](double last) {
        values.set(x, last);
        answer.reached = measured(values, cancel);
        return unreachable(answer.reached, together(sizes_at(last)), values);
    };
    if (const auto powers = exact_powers(values)) {
        const auto value_at = [&](const GroupSizes& found) {
            if (x.place == total.place) return together(found);
            return x.place == test->sizes.found.back().place ? found.back() : found.front();
        };
        const Chain chain{.at = [&](double size) { return sizes_at(std::max(least, std::ceil(size))); },
                          .above = [&](const GroupSizes& before) { return sizes_at(value_at(before) + 1); }};
        const double last = last_of(std::min(values[common::max_n], powers->observations));
        const FoundSizes found = find_smallest(*powers, chain, values[target()], last, cancel);
        if (found.cancelled) return kCancelled;
        if (found.smallest.empty()) return unreachable_at(last);
        values.set(x, value_at(found.smallest));
        answer.reached = measured(values, cancel);
        return {};
    }
    // In doubling steps; where the power jumps every size, up to where one more moves it no further.
    const double last = last_of(values[common::max_n]), each = jumps(values) ? 1e5 : 0;
    double low = least - 1, high = least;
    while (!reaches(high) && !cancelled) {
        if (high >= last) return unreachable_at(last);
        low = high;
        high = std::min(high < each ? high + 1 : 2 * high, last);
    }
    while (high - low > 1 && !cancelled) {
        const double middle = std::floor((low + high) / 2);
        (reaches(middle) ? high : low) = middle;
    }
    if (cancelled) return kCancelled;
    values.set(x, high);
    answer.reached = measured(values, cancel);
    return {};
}

Check Plan::answer(Values& values, Answer& answer, Cancel* cancel) const {
    if (Check wrong = check(values, parts_->given)) return wrong;
    return answer_checked(values, answer, cancel);
}

Check Plan::answer_checked(Values& values, Answer& answer, Cancel* cancel) const {
    const Parts& p = *parts_;
    if (p.effect_only && !p.size_way) p.set_sizes(values, p.test->sizes.share(values));
    p.complete(values);
    if (p.measure->contradiction)
        if (Check wrong = p.measure->contradiction(values)) return wrong;
    if (p.size_way) {
        const double least = p.test->sizes.least(values);
        for (const Argument& a : p.test->sizes.found) {
            const auto too_small = [&](double size) { return size < least; };
            const Argument& named = p.size_way->arguments.front();
            if (a.kind == Kind::list && values.list(a).empty()) return groups_unknown();
            if (a.kind == Kind::list ? std::ranges::any_of(values.list(a), too_small) : too_small(values[a]))
                return refusal(named.name, "leaves a group of fewer than " + number(least) + " observations");
        }
    }
    if (p.effect_only) return {};
    if (p.unknown) {
        const bool whole = p.unknown->kind == Kind::whole;
        return whole ? p.find_whole(values, answer, cancel) : p.find_argument(values, answer, cancel);
    }
    if (p.names_direction(values))
        if (Check wrong = p.check_direction(values)) return wrong;
    if (p.sizes_sought()) return p.find_sizes(values, answer, cancel);
    answer.reached = p.measure->value(values, cancel);
    if (stopped(cancel) && std::isnan(answer.reached)) return kCancelled;
    if (std::isnan(answer.reached))
        return no_answer(p.precision ? "there is no such interval for this design"
                                     : "the power of this design cannot be computed");
    return {};
}

}  // namespace statplan
