// Records, tables and refusals as JSON; requests from it.
#include <nlohmann/json.hpp>

#include "plan/json.h"
#include "plan/text.h"

namespace statplan {

namespace {

using Json = nlohmann::ordered_json;

/// Whole numbers without a fraction, NaN as null.
Json in_json(double x) {
    if (std::isnan(x)) return nullptr;
    if (x == std::trunc(x) && std::abs(x) < 9e15) return static_cast<std::int64_t>(x);
    return x;
}

Json in_json(const Argument& a, double x) {
    return a.kind == Kind::choice ? Json(value_of(a, x)) : in_json(x);
}

Json in_json(const Item& item) {
    if (item.argument->kind != Kind::list) return in_json(*item.argument, item.values.front());
    Json list = Json::array();
    for (const double x : item.values) list.push_back(in_json(x));
    return list;
}

Json in_json(const std::vector<Item>& items) {
    Json json = Json::object();
    for (const Item& item : items) json[std::string(item.argument->name)] = in_json(item);
    return json;
}

template <typename Answered>
Json head(const Answered& answered) {
    return {{"statpower", version()},
            {"test", answered.test->name},
            {"title", answered.test->title},
            {"question", answered.question},
            {"asked", in_json(answered.asked)}};
}

/// Text that is no UTF-8 is replaced, not thrown at.
std::string text_of(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

}  // namespace

std::string to_json(const Record& record) {
    Json json = head(record);
    json["unknown"] = record.unknown;
    json["answer"] = in_json(record.answer);
    const auto where_any = [&](const char* name, const std::vector<Item>& items) {
        if (!items.empty()) json[name] = in_json(items);
    };
    where_any("guaranteed", record.guaranteed);
    where_any("enrolled", record.enrolled);
    where_any("other", record.other);
    where_any("effects", record.effects);
    if (!record.method.empty()) json["method"] = record.method;
    json["notes"] = record.notes;
    json["sources"] = record.sources;
    if (!record.report.empty()) json["report"] = record.report;
    return text_of(json);
}

std::string to_json(const Table& table) {
    Json json = head(table);
    json["over"] = Json::array();
    for (const Argument* a : table.over) json["over"].push_back(a->name);
    json["columns"] = Json::object();
    for (const auto& column : table.columns) {
        Json values = Json::array();
        for (const double x : column.values) values.push_back(in_json(*column.argument, x));
        json["columns"][column.name] = values;
    }
    if (!table.refusals.empty()) {
        json["refusals"] = Json::array();
        for (const std::string& refusal : table.refusals)
            json["refusals"].push_back(refusal.empty() ? Json(nullptr) : Json(refusal));
    }
    json["sources"] = table.test->sources;
    return text_of(json);
}

std::string answers_json(const Plan& plan) {
    Json json{{"question", plan.question()}, {"answers", Json::array()}};
    for (const Argument* a : plan.answers()) json["answers"].push_back(a->name);
    return text_of(json);
}

std::string to_json(const Refusal& refusal) {
    constexpr const char* kinds[] = {"refused", "no-answer", "cancelled"};
    Json json{{"kind", kinds[refusal.kind]}};
    if (!refusal.argument.empty()) json["argument"] = refusal.argument;
    json["reason"] = refusal.reason;
    json["message"] = refusal.message();
    return text_of(Json{{"statpower", version()}, {"refusal", json}});
}

Outcome<Question> question_from_json(std::string_view text) {
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object()) return Refusal{.argument = {}, .reason = "the request is no JSON object"};
    const auto word = [&](const char* key) {
        const auto found = json.find(key);
        return found != json.end() && found->is_string() ? found->get<std::string>() : std::string();
    };
    std::vector<std::pair<std::string, std::string>> words;
    for (const auto& [key, value] : json.items()) {
        if (key == "test" || key == "question") continue;
        const auto written = [&](const Json& element) {
            return element.is_number()    ? exactly(element.get<double>())
                   : element.is_string()  ? element.get<std::string>()
                   : element.is_boolean() ? std::string(element.get<bool>() ? "yes" : "no")
                                          : std::string("{nested}");
        };
        if (value.is_null()) continue;  // left out
        std::string several;
        if (value.is_array())
            for (const Json& element : value) several += (several.empty() ? "" : ",") + written(element);
        words.emplace_back(key, value.is_array() ? several : written(value));
    }
    return read_question(word("test"), word("question"), words);
}

}  // namespace statplan
