// Records: an answer with everything that was asked, and the sentence for a protocol.
#include <algorithm>
#include <numeric>

#include "plan/search.h"
#include "plan/text.h"
#include "plan/vocabulary.h"
#include "statplan/plan.h"

namespace statplan {

namespace {

Item item(const Argument& a, const Values& values) {
    if (a.kind != Kind::list) return {&a, {values[a]}};
    const auto list = values.list(a);
    return {&a, {list.begin(), list.end()}};
}

/// The sizes that a search found, by their names; all together where there are several groups.
std::vector<Item> size_items(const Test& test, const std::vector<double>& found) {
    std::vector<Item> items;
    const auto& names = test.sizes.found;
    if (names.front().kind == Kind::list)
        items.push_back({&names.front(), found});
    else
        for (std::size_t i = 0; i < names.size(); ++i) items.push_back({&names[i], {found[i]}});
    if (found.size() > 1) items.push_back({&total, {std::accumulate(found.begin(), found.end(), 0.0)}});
    return items;
}

std::string spoken(const Item& item) {
    std::vector<std::string> words;
    for (const double x : item.values) words.push_back(value_of(*item.argument, x, 4));
    std::string text(item.argument->phrase.empty() ? "{}" : item.argument->phrase);
    if (const auto hole = text.find("{}"); hole != std::string::npos) text.replace(hole, 2, joined(words));
    return text;
}

std::string percent(double share) {
    // No power is 100 % or 0 %: what rounds to them is more or less than the digits show.
    if (share > 0.9995 && share < 1) return "more than 99.9 %";
    if (share < 0.0005 && share > 0) return "less than 0.1 %";
    return number(std::round(share * 1000) / 10, 4) + " %";
}

std::string report_of(const Plan& plan, const Record& record, const Values& values) {
    const Test& test = plan.test();
    const auto is_size = [&](const Argument& a) {
        const auto same = [&](const Argument& other) { return other.place == a.place; };
        return std::ranges::any_of(
                   test.sizes.ways,
                   [&](const Way& way) { return std::ranges::any_of(way.arguments, same); }) ||
               std::ranges::any_of(test.sizes.found, same);
    };
    std::vector<std::string> size_words, effect_words, given_words;  // what the effect is seen against
    for (const auto* items : {&record.answer, &record.asked})
        for (const Item& each : *items) {
            const Argument& a = *each.argument;
            if (a.place == n.place) size_words = {spoken(each)};  // one for all groups
            if (a.phrase.empty() || is_size(a) || a.place == common::half_width.place) continue;
            const bool effect = a.null || a.place == means.place;
            (effect ? effect_words : given_words).push_back(spoken(each));
        }
    if (size_words.empty())
        for (const Argument& a : test.sizes.found) size_words.push_back(spoken(item(a, values)));
    std::string text;
    if (plan.is_precision()) {
        double reached = kNotGiven;
        for (const Item& each : record.answer)
            if (each.argument->place == common::half_width.place) reached = each.values.front();
        text = "With " + joined(size_words) + ", the " + number(100 * values[confidence], 4) +
               " % confidence interval has a half-width of " + number(reached, 4);
        effect_words.insert(effect_words.end(), given_words.begin(), given_words.end());
        if (!effect_words.empty()) text += " for " + joined(effect_words);
        return text + ".";
    }
    double reached = kNotGiven;
    for (const Item& each : record.answer)
        if (each.argument->place == common::power.place) reached = each.values.front();
    const std::string sides = std::isnan(values[alternative])     ? ""
                              : values.is(alternative, two_sided) ? "two-sided "
                                                                  : "one-sided ";
    text = "With " + joined(size_words) + ", a " + sides +
           (test.performed ? test.performed(values) : std::string(test.phrase)) +
           " at a significance level of " + number(values[alpha], 4) + " has a power of " + percent(reached);
    if (!effect_words.empty()) text += " to detect " + joined(effect_words);
    if (!given_words.empty()) text += (effect_words.empty() ? " given " : ", given ") + joined(given_words);
    if (!record.enrolled.empty()) {
        std::vector<std::string> words;
        for (const Item& each : record.enrolled)
            if (each.argument->place != total.place) words.push_back(spoken(each));
        text += "; to allow for a dropout of " + percent(values[common::dropout]) + ", " + joined(words) +
                " are enrolled";
    }
    return text + ".";
}

void add_effects(Record& record, const Test& test, const Values& values) {
    for (const Effect& effect : test.effects)
        if (const double value = effect.value(values); std::isfinite(value))
            record.effects.push_back({&effect.argument, {value}});
}

Refusal wrong_kind(const Question::Given& given) {
    return {.argument = given.name, .reason = "takes one number here"};
}

Check fill(const Plan& plan, const std::vector<Question::Given>& given, Values& values) {
    for (std::size_t i = 0; i < given.size(); ++i) {
        const Argument& a = *plan.given()[i];
        if (a.kind == Kind::list)
            values.set(a, given[i].values);
        else if (given[i].values.size() == 1)
            values.set(a, given[i].values.front());
        else
            return wrong_kind(given[i]);
    }
    return {};
}

}  // namespace

std::vector<Item> Plan::items(const Values& values, const Answer& answer, Cancel* cancel) const {
    std::vector<Item> items;
    if (unknown()) {
        items.push_back(item(*unknown(), values));
    } else if (searches_sizes()) {
        const bool by_guaranteed = values.is(common::rule, Rule::guaranteed);
        items = size_items(test(), by_guaranteed ? answer.guaranteed : answer.smallest);
    }
    items.push_back({is_precision() ? &common::half_width : &common::power, {answer.reached}});
    if (!is_precision() && test().level)
        if (const double level = test().level(values, cancel); !std::isnan(level))
            items.push_back({&common::level, {level}});
    return items;
}

std::vector<std::string_view> Plan::item_names() const {
    std::vector<std::string_view> names;
    if (unknown()) {
        names.push_back(unknown()->name);
    } else if (searches_sizes()) {
        for (const Argument& a : test().sizes.found) names.push_back(a.name);
        if (test().sizes.found.size() > 1 || test().sizes.found.front().kind == Kind::list)
            names.push_back(total.name);
    }
    names.push_back(is_precision() ? common::half_width.name : common::power.name);
    if (!is_precision() && test().level) names.push_back(common::level.name);
    return names;
}

Outcome<Record> ask(const Question& question, Cancel* cancel) {
    if (!question.test) return Refusal{.argument = "test", .reason = "is needed"};
    const Test& test = *question.test;
    std::vector<std::string_view> names;
    for (const auto& given : question.given) names.push_back(given.name);
    const auto plan = Plan::prepare(test, question.unknown, names);
    if (!plan) return plan.refusal();
    Values values = plan->blank();
    if (Check wrong = fill(*plan, question.given, values)) return *wrong;
    Plan::Answer answer;
    if (Check wrong = plan->answer(values, answer, cancel)) return *wrong;

    Record record{.test = &test, .question = std::string(plan->question())};
    for (const Argument* a : plan->used(values)) record.asked.push_back(item(*a, values));
    record.sources = test.sources;
    if (!plan->is_precision()) add_effects(record, test, values);
    if (record.question == "effect") {
        record.unknown = "effect";
        record.answer = record.effects;
        return record;
    }
    record.answer = plan->items(values, answer, cancel);
    if (plan->unknown()) {
        record.unknown = plan->unknown()->name;
        if (!std::isnan(answer.other)) record.other.push_back({plan->unknown(), {answer.other}});
    } else if (plan->searches_sizes()) {
        record.unknown = "size";
        if (answer.guaranteed.empty())
            record.notes.push_back("no guaranteed size was found up to max-n");
        else
            record.guaranteed = size_items(test, answer.guaranteed);
        if (values[common::dropout] > 0) {
            const bool by_guaranteed = values.is(common::rule, Rule::guaranteed);
            GroupSizes enrolling = by_guaranteed ? answer.guaranteed : answer.smallest;
            for (double& size : enrolling) size = enrolled(size, values[common::dropout]);
            record.enrolled = size_items(test, enrolling);
        }
    } else {
        record.unknown = plan->is_precision() ? common::half_width.name : common::power.name;
    }
    if (record.answer.back().argument == &common::level)
        if (const double level = record.answer.back().values.front(); level > values[alpha] * (1 + 1e-9))
            record.notes.push_back("the actual level of this test, " + number(level, 4) + ", is above alpha");
    if (cancel && cancel->IsCancelRequested())
        return Refusal{.kind = Refusal::cancelled, .argument = {}, .reason = "stopped"};
    if (test.method) record.method = plan->is_precision() ? "" : test.method(values);
    if (!test.sizes.note.empty() && record.unknown == "size") record.notes.emplace_back(test.sizes.note);
    for (const std::string_view note : test.notes) record.notes.emplace_back(note);
    record.report = report_of(*plan, record, values);
    return record;
}

}  // namespace statplan
