// The description of all tests as JSON.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "plan/text.h"
#include "statplan/plan.h"

namespace statplan {

namespace {

using Json = nlohmann::ordered_json;

std::string_view in_words(Kind kind) {
    switch (kind) {
        case Kind::number:
            return "number";
        case Kind::whole:
            return "whole";
        case Kind::choice:
            return "choice";
        case Kind::list:
            return "list";
    }
    return "";
}

std::string_view in_words(Family family) {
    switch (family) {
        case Family::groups:
            return "Groups";
        case Family::means:
            return "Means";
        case Family::proportions:
            return "Proportions";
        case Family::correlations:
            return "Correlations";
        case Family::regression:
            return "Regression";
    }
    return "";
}

Json described(const Argument& a, const std::vector<Argument>& options) {
    Json json{{"name", a.name}, {"meaning", a.meaning}, {"kind", in_words(a.kind)}, {"rule", rule_of(a)}};
    if (a.whole_elements) json["whole"] = true;
    if (!a.unit.empty()) json["unit"] = a.unit;
    const auto limit = [&](const char* name, double value, bool open) {
        if (std::isfinite(value)) json[name] = {{"value", value}, {"open", open}};
    };
    if (a.kind != Kind::choice) {
        limit("low", a.range.low, a.range.low_open);
        limit("high", a.range.high, a.range.high_open);
    }
    if (a.otherwise) {
        if (a.kind == Kind::choice)
            json["default"] = value_of(a, *a.otherwise);
        else
            json["default"] = *a.otherwise;
    }
    if (!a.choices.empty()) json["choices"] = a.choices;
    if (a.null) {
        if (a.null->of.empty())
            json["null"] = a.null->value;
        else
            json["null"] = a.null->of;
    }
    for (const Only& only : a.only) {
        Json words = Json::array();
        const auto choice =
            std::ranges::find_if(options, [&](const Argument& o) { return o.place == only.place; });
        for (const int position : only.choices)
            if (choice != options.end()) words.push_back(value_of(*choice, position));
        json["only"].push_back({{"argument", only.name}, {"choices", words}});
    }
    return json;
}

Json described(const std::vector<Argument>& arguments, const std::vector<Argument>& options) {
    Json json = Json::array();
    for (const Argument& a : arguments) json.push_back(described(a, options));
    return json;
}

Json described(const std::vector<Way>& ways, const std::vector<Argument>& options) {
    Json json = Json::array();
    for (const Way& way : ways) json.push_back(described(way.arguments, options));
    return json;
}

Json described(const Measure& measure, const Argument& target) {
    return {{"target", described(target, {})},
            {"ways", described(measure.ways, measure.options)},
            {"options", described(measure.options, measure.options)}};
}

Json described(const Test& test) {
    Json json{
        {"name", test.name}, {"title", test.title}, {"family", in_words(test.family)}, {"study", test.study}};
    json["sizes"] = {{"ways", described(test.sizes.ways, {})},
                     {"found", described(test.sizes.found, {})},
                     {"shares", described(test.sizes.shares, {})},
                     {"note", test.sizes.note}};
    json["power"] = described(test.power, common::power);
    if (test.precision.value) json["precision"] = described(test.precision, common::half_width);
    json["effects"] = Json::array();
    for (const Effect& effect : test.effects) json["effects"].push_back(described(effect.argument, {}));
    json["exact"] = test.level != nullptr;
    json["notes"] = test.notes;
    json["sources"] = test.sources;
    json["examples"] = Json::array();
    for (const Example& example : test.examples)
        json["examples"].push_back({{"study", example.study},
                                    {"command", example.command},
                                    {"answer", example.answer},
                                    {"value", example.value},
                                    {"tolerance", example.tolerance},
                                    {"source", example.source}});
    return json;
}

}  // namespace

const std::string& catalogue_json() {
    static const std::string text = [] {
        Json json{{"version", version()}};
        json["search"] = described(std::vector<Argument>{common::rule, common::dropout, common::max_n}, {});
        json["answers"] = described(std::vector<Argument>{common::level}, {});
        json["tests"] = Json::array();
        for (const Test* test : catalogue()) json["tests"].push_back(described(*test));
        return json.dump(1);
    }();
    return text;
}

}  // namespace statplan
