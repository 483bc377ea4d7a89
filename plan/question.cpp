// Questions in words: how a person writes numbers, lists, ranges and choices.
#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "plan/text.h"
#include "statplan/plan.h"

namespace statplan {

namespace {

constexpr double kMostValues = 1e6;  // of one argument

/// A whole text as one number; locale-independent, no "nan", "inf" or hexadecimal forms.
std::optional<double> read_number(std::string_view text) {
    const bool plain = !text.empty() && std::ranges::all_of(text, [](char c) {
        return std::isdigit(static_cast<unsigned char>(c)) || c == '.' || c == '-' || c == '+' || c == 'e' ||
               c == 'E';
    });
    if (!plain) return {};
    const std::string copy(text);
    char* end = nullptr;
    const double x = std::strtod(copy.c_str(), &end);
    if (end != copy.c_str() + copy.size()) return {};
    return x;
}

std::vector<std::string_view> split(std::string_view text, char at) {
    std::vector<std::string_view> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(at, start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

Refusal refused(const Argument& a, std::string_view text, const std::string& what) {
    return {.kind = Refusal::refused,
            .argument = std::string(a.name),
            .reason = text.empty() ? "is empty: " + what : quoted(text) + " is not " + what};
}

/// "20:200:10": from, to and step (1 unless given).
Outcome<std::vector<double>> read_range(const Argument& a, std::string_view text) {
    const auto parts = split(text, ':');
    std::vector<double> ends;
    for (const auto part : parts) {
        const auto x = read_number(part);
        if (!x) return refused(a, text, "a range, for example 20:200:10");
        ends.push_back(*x);
    }
    if (ends.size() > 3) return refused(a, text, "a range, for example 20:200:10");
    const double step = ends.size() == 3 ? ends[2] : 1,
                 count = std::floor((ends[1] - ends[0]) / step * (1 + 1e-12) + 1e-9);
    if (!(count >= 0)) return refused(a, text, "a range that its step leads through");
    if (!(count < kMostValues)) return refused(a, text, "a range of at most a million values");
    std::vector<double> values;
    for (double i = 0; i <= count; ++i) {  // 0.1 + 2 * 0.1 is meant to be 0.3, and -0.3 + 3 * 0.1 to be 0
        const double x = ends[0] + i * step;
        const bool rounding = std::abs(x) < 1e-9 * std::abs(step);
        values.push_back(rounding ? 0 : std::strtod(number(x, 13).c_str(), nullptr));
    }
    return values;
}

}  // namespace

Outcome<std::vector<double>> read_values(const Argument& a, std::string_view text) {
    std::vector<double> values;
    for (const std::string_view part : split(text, ',')) {
        if (a.kind == Kind::choice) {
            const auto word = std::ranges::find(a.choices, part);
            if (word == a.choices.end()) {
                return refused(a, part, rule_of(a) + did_you_mean(part, a.choices));
            }
            values.push_back(static_cast<double>(word - a.choices.begin()));
        } else if (part.find(':') != std::string_view::npos && a.kind != Kind::list) {
            auto range = read_range(a, part);
            if (!range) return range;
            values.insert(values.end(), range->begin(), range->end());
        } else if (const auto x = read_number(part)) {
            values.push_back(*x);
        } else {
            return refused(a, part, rule_of(a));
        }
        if (static_cast<double>(values.size()) > kMostValues)
            return Refusal{.argument = std::string(a.name), .reason = "has more than a million values"};
    }
    return values;
}

bool is_table(const Question& question) {
    return question.test && std::ranges::any_of(question.given, [&](const Question::Given& given) {
               const Argument* a = find_argument(*question.test, given.name);
               return a && a->kind != Kind::list && given.values.size() != 1;
           });
}

namespace {

/// What a question leaves to be found.
Outcome<std::string> unknown_of(std::string_view question, bool has_target, const std::string& solve_for) {
    if (question == "solve" || question.empty()) return solve_for;
    if (!solve_for.empty())
        return Refusal{.argument = "solve-for", .reason = "belongs to the question solve"};
    if (question == "precision") return std::string(has_target ? "" : "halfwidth");
    if (question == "power" || question == "size" || question == "effect") return std::string(question);
    return Refusal{.argument = {},
                   .reason = quoted(question) +
                             " is no question; it is one of power, size, precision, effect or solve" +
                             did_you_mean(question, {"power", "size", "precision", "effect", "solve"})};
}

}  // namespace

Outcome<Question> read_question(std::string_view test, std::string_view question,
                                const std::vector<std::pair<std::string, std::string>>& words) {
    Question read{.test = find_test(test)};
    if (!read.test) {
        std::vector<std::string_view> names;
        for (const Test* known : catalogue()) names.push_back(known->name);
        return Refusal{.argument = "test",
                       .reason = "there is no test " + quoted(test) + did_you_mean(test, names)};
    }
    std::string solve_for;
    bool has_target = false;
    for (const auto& [word, text] : words) {
        if (word == "solve-for") {
            solve_for = text;
            continue;
        }
        has_target = has_target || word == common::half_width.name;
        const Argument* a = find_argument(*read.test, word);
        if (!a) {  // Plan::prepare says so, with the nearest word
            read.give(word, kNotGiven);
            continue;
        }
        auto values = read_values(*a, text);
        if (!values) return values.refusal();
        read.give(word, std::move(*values));
    }
    auto unknown = unknown_of(question, has_target, solve_for);
    if (!unknown) return unknown.refusal();
    read.unknown = *unknown;
    return read;
}

}  // namespace statplan
