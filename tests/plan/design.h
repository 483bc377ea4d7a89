// Designs of the planner's tests, completed as a question completes them, for tests of the descriptions alone.
#pragma once

#include <algorithm>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "statplan/catalogue.h"
#include "support/table.h"

namespace testing_support {

using statplan::Argument;
using statplan::Kind;
using statplan::Measure;
using statplan::Test;
using statplan::Values;
using statplan::Way;

/// A design such as "t-two power diff=5 sd=12 n1=40 n2=50 variance=unpooled": a test, a quantity ("power",
/// "level", "halfwidth", or "effect-" and the name of an effect) and arguments, lists separated by semicolons.
class Design {
  public:
    explicit Design(const std::string& text) {
        std::istringstream words(text);
        std::string name;
        words >> name >> quantity_;
        test_ = statplan::find_test(name);
        if (!test_) throw std::runtime_error("no test " + name);
        for (std::string word; words >> word;) {
            const auto equals = word.find('=');
            given_[word.substr(0, equals)] = word.substr(equals + 1);
        }
        const Measure& measure = quantity_ == "halfwidth" ? test_->precision : test_->power;
        const Way &size = way(test_->sizes.ways), &effect = way(measure.ways);
        for (const auto* arguments : {&size.arguments, &effect.arguments, &measure.options})
            for (const Argument& a : *arguments) set(a);
        if (!given_.empty())
            throw std::runtime_error("no place for " + given_.begin()->first + " in " + text);
        for (const Way* used : {&effect, &size})
            if (used->complete) used->complete(values);
        contradiction = measure.contradiction ? measure.contradiction(values) : std::nullopt;
    }

    double answer() const {
        if (quantity_ == "power") return test_->power.value(values, nullptr);
        if (quantity_ == "halfwidth") return test_->precision.value(values, nullptr);
        if (quantity_ == "level") return test_->level(values, nullptr);
        for (const auto& [argument, value] : test_->effects)
            if (quantity_ == "effect-" + std::string(argument.name)) return value(values);
        throw std::runtime_error("no quantity " + quantity_);
    }
    const Test& test() const { return *test_; }

    Values values;
    statplan::Check contradiction;

  private:
    /// The way of which most is given and nothing lacks.
    const Way& way(const std::vector<Way>& ways) const {
        const Way* best = nullptr;
        std::size_t most = 0;
        for (const Way& candidate : ways) {
            std::size_t given = 0, lacking = 0;
            for (const Argument& a : candidate.arguments)
                if (is_given(a))
                    ++given;
                else if (!a.otherwise && !is_share(a))
                    ++lacking;
            if (lacking == 0 && (!best || given > most)) best = &candidate, most = given;
        }
        if (!best) throw std::runtime_error("nothing fits in " + std::string(test_->name));
        return *best;
    }
    bool is_share(const Argument& a) const {
        return std::ranges::any_of(test_->sizes.shares,
                                   [&](const Argument& b) { return a.place == b.place; });
    }
    bool is_given(const Argument& a) const { return given_.contains(std::string(a.name)); }

    void set(const Argument& a) {
        const auto word = given_.find(std::string(a.name));
        if (word == given_.end()) {
            if (a.otherwise && !values.has(a)) values.set(a, *a.otherwise);
            return;
        }
        const std::string text = word->second;
        given_.erase(word);
        if (a.kind == Kind::list) {
            std::vector<double> elements;
            for (const auto& one : lists_in(text)) elements.push_back(one.at(0));
            values.set(a, elements);
        } else if (a.kind == Kind::choice) {
            const auto choice = std::ranges::find(a.choices, std::string_view(text));
            if (choice == a.choices.end()) throw std::runtime_error("no choice " + text);
            values.set(a, static_cast<double>(choice - a.choices.begin()));
        } else {
            values.set(a, std::stod(text));
        }
    }

    const Test* test_;
    std::string quantity_;
    std::map<std::string, std::string> given_;
};

}  // namespace testing_support
