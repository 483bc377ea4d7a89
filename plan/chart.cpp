// Tables as charts, drawn by gnuplot.
#include <algorithm>
#include <cctype>
#include <cmath>

#include "plan/text.h"
#include "plan/vocabulary.h"
#include "statplan/plan.h"

namespace statplan {

namespace {

constexpr std::size_t kMostLines = 12;

/// In gnuplot's quotes.
std::string in_quotes(std::string_view text) {
    std::string all = "'";
    for (const char c : text) all += std::string(c == '\'' ? 2 : 1, c);
    return all + '\'';
}

/// What an axis shows: a number's meaning, without its explanation, and unit; a power or half-width by its name.
std::string label(const Argument& a, bool measured) {
    std::string text(measured ? a.name : a.meaning.substr(0, a.meaning.find_first_of(":;")));
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return in_quotes(text + (a.unit.empty() || measured ? "" : " (" + std::string(a.unit) + ")"));
}

Refusal no_chart(std::string why) {
    return {.kind = Refusal::refused, .argument = {}, .reason = std::move(why)};
}

}  // namespace

Outcome<std::string> to_gnuplot(const Table& table, std::string_view terminal) {
    const auto& columns = table.columns;
    std::size_t x = columns.size(), most = 1;
    for (std::size_t i = 0; i < table.over.size(); ++i) {
        auto values = columns[i].values;
        std::ranges::sort(values);
        values.erase(std::unique(values.begin(), values.end()), values.end());
        if (table.over[i]->kind != Kind::choice && values.size() > most) x = i, most = values.size();
    }
    if (x == columns.size())
        return no_chart("a chart needs several values of a number, for example 20:200:10");
    // Sizes of several groups are drawn together, anything else as it is found.
    const std::size_t first = table.over.size(), last = std::max(first + 1, columns.size() - 1);
    const bool measured = columns.size() == first + 1;
    std::vector<std::pair<std::string, std::string>> lines;  // title and points
    for (std::size_t row = 0; row < columns[x].values.size(); ++row) {
        std::string title;
        double y = 0;
        for (std::size_t i = 0; i < first; ++i)
            if (i != x)
                title += (title.empty() ? "" : ", ") + std::string(table.over[i]->name) + " " +
                         value_of(*table.over[i], columns[i].values[row], 15);
        for (std::size_t i = first; i < last; ++i) y += columns[i].values[row];
        auto line = std::ranges::find(lines, title, &decltype(lines)::value_type::first);
        if (line == lines.end()) line = lines.insert(lines.end(), {title, ""});
        line->second +=
            exactly(columns[x].values[row]) + " " + (std::isfinite(y) ? exactly(y) : "NaN") + "\n";
    }
    if (lines.size() > kMostLines)
        return no_chart("a chart of " + std::to_string(lines.size()) +
                        " lines cannot be read; the most are " + std::to_string(kMostLines));
    const bool power = table.question == "power";
    const double target = *common::power.otherwise;
    std::string text = "set terminal " + std::string(terminal) + "\nset xlabel " +
                       label(*table.over[x], false) + "\nset ylabel " +
                       label(last > first + 1 ? total : *columns[first].argument, measured) + "\nset title " +
                       in_quotes(table.test->title) +
                       "\nset key outside top center horizontal\nset border 3\nset tics nomirror out\n" +
                       (power ? "set yrange [0:1]\n" : "set yrange [0:*]\n") + "plot ";
    for (const auto& [title, points] : lines)
        text += "'-' with linespoints linewidth 2 pointsize 0.6 " +
                (title.empty() ? "notitle" : "title " + in_quotes(title)) + ", ";
    if (power)
        text +=
            number(target) + " with lines dashtype 2 linecolor 'gray40' title 'power " + number(target) + "'";
    text += "\n";
    for (const auto& [title, points] : lines) text += points + "e\n";
    return text;
}

}  // namespace statplan
