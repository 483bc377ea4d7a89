// Records and tables as text for people and as CSV for programs.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "plan/text.h"
#include "statplan/plan.h"

namespace statplan {

namespace {

constexpr int kAsGiven = 15;  // digits of what somebody wrote

std::string values_of(const Item& item, int digits, const char* separator) {
    std::string text;
    for (const double x : item.values)
        text += (text.empty() ? "" : separator) + value_of(*item.argument, x, digits);
    return text;
}

std::string in_a_line(const std::vector<Item>& items, int digits) {
    std::string line;
    for (const Item& item : items)
        line += (line.empty() ? "" : ", ") + std::string(item.argument->name) + " " +
                values_of(item, digits, " ");
    return line;
}

using Line = std::pair<std::string_view, std::string>;

/// Names and what they say, aligned; what says nothing is left out.
std::string aligned(const std::vector<Line>& lines) {
    std::size_t width = 0;
    for (const auto& [name, text] : lines)
        if (!text.empty()) width = std::max(width, name.size());
    std::string all;
    for (const auto& [name, text] : lines)
        if (!text.empty())
            all += "  " + std::string(name) + std::string(width - name.size(), ' ') + "  " + text + "\n";
    return all;
}

/// The cells of a column below its name: as many decimals as its numbers need, no more than there are digits.
std::vector<std::string> cells_of(const Table::Column& column, int digits) {
    std::size_t decimals = 0;
    bool plain = column.argument->kind != Kind::choice;
    for (const double x : column.values) {
        if (std::isnan(x)) continue;
        const std::string text = number(x, digits);
        plain = plain && text.find('e') == text.npos && std::isfinite(x);
        if (const auto point = text.find('.'); point != text.npos)
            decimals = std::max(decimals, text.size() - point - 1);
    }
    decimals = std::min(decimals, static_cast<std::size_t>(digits));
    std::vector<std::string> cells{column.name};
    for (const double x : column.values) {
        char fixed[400];
        std::snprintf(fixed, sizeof fixed, "%.*f", static_cast<int>(decimals), x);
        cells.push_back(std::isnan(x) ? "-" : plain ? fixed : value_of(*column.argument, x, digits));
    }
    return cells;
}

}  // namespace

std::string to_text(const Record& record, int digits) {
    std::vector<Line> answer, rest;
    for (const Item& item : record.answer) {
        const bool counts = item.argument->kind == Kind::whole && !item.argument->unit.empty();
        answer.emplace_back(item.argument->name, values_of(item, digits, ", ") +
                                                     (counts ? " " + std::string(item.argument->unit) : ""));
    }
    rest.emplace_back("asked", in_a_line(record.asked, kAsGiven));
    const std::string guaranteed = in_a_line(record.guaranteed, digits);
    if (!in_a_line(record.answer, digits).starts_with(guaranteed))
        rest.emplace_back("guaranteed", guaranteed);
    rest.emplace_back("enrolled", in_a_line(record.enrolled, digits));
    rest.emplace_back("also", in_a_line(record.other, digits));
    if (record.question != "effect") rest.emplace_back("effects", in_a_line(record.effects, digits));
    rest.emplace_back("method", record.method);
    for (const std::string& note : record.notes)
        rest.emplace_back(&note == &record.notes.front() ? "notes" : "", note);
    return std::string(record.test->title) + ": " + record.question + "\n\n" + aligned(answer) + "\n" +
           aligned(rest);
}

std::string to_text(const Table& table, int digits) {
    std::vector<std::vector<std::string>> columns;
    for (const auto& column : table.columns)
        columns.push_back(cells_of(column, columns.size() < table.over.size() ? kAsGiven : digits));
    std::string all = std::string(table.test->title) + ": " + table.question + "\n\n";
    for (std::size_t row = 0; row < columns.front().size(); ++row) {
        for (const auto& cells : columns) {
            const std::size_t width = std::ranges::max(cells, {}, &std::string::size).size();
            all += std::string(2 + width - cells[row].size(), ' ') + cells[row];
        }
        if (row > 0 && !table.refusals.empty() && !table.refusals[row - 1].empty())
            all += "  " + table.refusals[row - 1];
        all += '\n';
    }
    return all + "\n" + aligned({{"asked", in_a_line(table.asked, kAsGiven)}});
}

std::string in_csv(const Item& item, int digits) {
    std::string cell;
    for (const double x : item.values) {
        const bool word = digits > 0 || item.argument->kind == Kind::choice;
        if (!cell.empty()) cell += ' ';
        if (!std::isnan(x)) cell += word ? value_of(*item.argument, x, digits) : exactly(x);
    }
    return cell;
}

std::string in_csv(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == text.npos) return std::string(text);
    std::string cell = "\"";
    for (const char c : text) cell += c == '"' ? "\"\"" : std::string(1, c);
    return cell + '"';
}

std::string to_csv(const Record& record, int digits) {
    std::string names, cells;
    for (const Item& item : record.answer) {
        const char* comma = names.empty() ? "" : ",";
        names += comma + std::string(item.argument->name);
        cells += comma + in_csv(item, digits);
    }
    return names + "\n" + cells + "\n";
}

std::string to_csv(const Table& table, int digits) {
    std::string all;
    for (const auto& column : table.columns) all += (all.empty() ? "" : ",") + column.name;
    all += table.refusals.empty() ? "\n" : ",refusal\n";
    for (std::size_t row = 0; row < table.columns.front().values.size(); ++row) {
        for (const auto& column : table.columns)
            all += (&column == &table.columns.front() ? "" : ",") +
                   in_csv({column.argument, {column.values[row]}}, digits);
        all += (table.refusals.empty() ? "" : "," + in_csv(table.refusals[row])) + "\n";
    }
    return all;
}

std::string to_ndjson(const Table& table) {
    using Json = nlohmann::ordered_json;
    const Json json = Json::parse(to_json(table));
    std::string all;
    for (std::size_t row = 0; row < table.columns.front().values.size(); ++row) {
        Json line;
        for (const auto& [name, values] : json["columns"].items()) line[name] = values[row];
        if (!table.refusals.empty()) line["refusal"] = json["refusals"][row];
        all += line.dump() + "\n";
    }
    return all;
}

}  // namespace statplan
