#include "statplan/catalogue.h"

#include <algorithm>
#include <memory>
#include <tuple>

namespace statplan {

int Argument::next_place() {
    static int next = 0;  // only while the constants of the vocabulary are made
    return next++;
}

Argument Argument::means_in_words(std::string_view other) const {
    Argument copy = *this;
    copy.meaning = other;
    return copy;
}

Argument Argument::within(Range other) const {
    Argument copy = *this;
    copy.range = other;
    return copy;
}

Argument Argument::from(double low) const {
    return within({.low = low, .high = range.high, .low_open = false, .high_open = range.high_open});
}

Argument Argument::by_default(double value) const {
    Argument copy = *this;
    copy.otherwise = value;
    return copy;
}

Argument Argument::needed() const {
    Argument copy = *this;
    copy.otherwise.reset();
    return copy;
}

Argument Argument::null_at(double value) const {
    Argument copy = *this;
    copy.null = Null{.value = value};
    return copy;
}

Argument Argument::null_at(const Argument& other) const {
    Argument copy = *this;
    copy.null = Null{.of = other.name, .place = other.place};
    return copy;
}

Argument Argument::measured_in(std::string_view other) const {
    Argument copy = *this;
    copy.unit = other;
    return copy;
}

Argument Argument::only_with(const Argument& choice, std::initializer_list<int> values) const {
    Argument copy = *this;
    copy.only.push_back({choice.place, choice.name, values});
    return copy;
}

Argument Argument::said(std::string_view other) const {
    Argument copy = *this;
    copy.phrase = other;
    return copy;
}

std::span<const double> Values::list(const Argument& a) const {
    for (const auto& [place, elements] : lists_)
        if (place == a.place) return elements;
    return {};
}

std::span<double> Values::set_list(const Argument& a, std::size_t length) {
    for (auto& [place, elements] : lists_)
        if (place == a.place) {
            elements.resize(length);
            return elements;
        }
    return lists_.emplace_back(a.place, std::vector<double>(length)).second;
}

void Values::set(const Argument& a, std::span<const double> elements) {
    const std::vector<double> copy(elements.begin(), elements.end());  // they may be our own
    std::ranges::copy(copy, set_list(a, copy.size()).begin());
}

void Values::clear(const Argument& a) {
    set(a, kNotGiven);
    std::erase_if(lists_, [&](const auto& list) { return list.first == a.place; });
}

std::string Refusal::message() const {
    return argument.empty() ? reason : argument + ": " + reason;
}

namespace {

std::vector<const Test*>& entries() {
    static std::vector<const Test*> all;  // filled before main, then only read
    return all;
}

}  // namespace

Entry::Entry(Test test) {
    static std::vector<std::unique_ptr<const Test>> kept;
    kept.push_back(std::make_unique<const Test>(std::move(test)));
    auto& all = entries();
    const auto order = [](const Test* a, const Test* b) {
        return std::tie(a->family, a->name) < std::tie(b->family, b->name);
    };
    all.insert(std::upper_bound(all.begin(), all.end(), kept.back().get(), order), kept.back().get());
}

const std::vector<const Test*>& catalogue() {
    return entries();
}

const Test* find_test(std::string_view name) {
    for (const Test* test : catalogue())
        if (test->name == name) return test;
    return nullptr;
}

}  // namespace statplan
