// What help, manual and reference pages say about a test.
#include <algorithm>

#include "plan/text.h"
#include "statplan/plan.h"

namespace statplan {

std::vector<QuestionWord> questions(const Test& test) {
    std::vector<QuestionWord> all{{"power", "The power of a design"},
                                  {"size", "The sizes that reach a power"}};
    if (test.precision.value)
        all.push_back({"precision", "The half-width of an interval, or the sizes that reach one"});
    if (!test.effects.empty()) all.push_back({"effect", "The standardised effects of a design"});
    all.push_back({"solve", "The number that is left out, or the one that solve-for names"});
    return all;
}

namespace {

std::string in_words(const std::vector<Way>& ways) {
    std::vector<std::string> each;
    for (const Way& way : ways) {
        std::vector<std::string> names;
        for (const Argument& a : way.arguments)
            names.push_back(a.otherwise ? "(" + std::string(a.name) + ")" : std::string(a.name));
        if (!names.empty()) each.push_back(joined(names));
    }
    return joined(each, ", or ");
}

std::vector<Argument> together(const std::vector<Way>& ways) {
    std::vector<Argument> all;
    for (const Way& way : ways)
        for (const Argument& a : way.arguments)
            if (std::ranges::find(all, a.place, &Argument::place) == all.end()) all.push_back(a);
    return all;
}

Section::Line described(const Argument& a, const std::vector<Argument>& options) {
    std::string text = std::string(a.meaning) + " (" + (a.unit.empty() ? "" : std::string(a.unit) + "; ") +
                       rule_of(a) + (a.otherwise ? "; " + value_of(a, *a.otherwise) + " unless given" : "") +
                       ")";
    for (const Only& only : a.only) {
        const auto choice = std::ranges::find(options, only.place, &Argument::place);
        std::vector<std::string> words;
        for (const int position : only.choices)
            if (choice != options.end()) words.push_back(value_of(*choice, position));
        text += ", only with " + std::string(only.name) + " " + joined(words, " or ");
    }
    return {"--" + std::string(a.name), text};
}

/// The arguments of a question, under headings.
std::vector<Section> words_of(const Test& test, std::string_view question) {
    const bool all = question.empty(), precision = question == "precision", size = question == "size",
               solve = question == "solve", effect = question == "effect";
    std::vector<Section> sections;
    const auto add = [&](const std::string& title, const std::vector<Argument>& arguments,
                         const std::vector<Argument>& options = {}) {
        if (arguments.empty()) return;
        sections.push_back({title, {}});
        for (const Argument& a : arguments) sections.back().lines.push_back(described(a, options));
    };
    const auto add_measure = [&](const std::string& title, const Measure& measure) {
        add(title + ": " + in_words(measure.ways), together(measure.ways), measure.options);
    };
    if (!precision) add_measure("The effect", test.power);
    if (precision || (all && test.precision.value)) add_measure("For an interval", test.precision);
    if (size || effect) add("The allocation", test.sizes.shares);
    if (size && test.sizes.found.size() > 1) add("One of these finds the other", test.sizes.found);
    if (!size && !effect) add("The sizes: " + in_words(test.sizes.ways), together(test.sizes.ways));
    if (!precision && !effect) add("Options", test.power.options, test.power.options);
    if (precision || (all && test.precision.value))
        add("Options of the interval", test.precision.options, test.precision.options);
    if (size || solve || all) add("The target of a search", {common::power});
    if (precision || (all && test.precision.value))
        add("The target of a search for an interval", {common::half_width});
    if (size || precision || all) add("A search for sizes", {common::rule, common::dropout, common::max_n});
    return sections;
}

/// The examples of a question; all where it is none in particular or has none.
Section examples_of(const Test& test, std::string_view question) {
    Section section{"Examples", {}};
    const std::string begin = std::string(test.name) + " " + std::string(question) + " ";
    const auto fits = [&](const Example& example) { return example.command.starts_with(begin); };
    const bool any = std::ranges::any_of(test.examples, fits);
    for (const Example& example : test.examples) {
        if (any && !fits(example)) continue;
        section.lines.push_back({"", std::string(example.study) + ":"});
        section.lines.push_back({"statpower " + std::string(example.command), ""});
        section.lines.push_back({"", "answers " + std::string(example.answer) + " " +
                                         number(example.value, 10) + " (" + std::string(example.source) +
                                         ")"});
    }
    return section;
}

}  // namespace

std::vector<Section> overview() {
    std::vector<Section> sections{{"Tests", {}}, {"Questions", {}}};
    for (const Test* test : catalogue()) {
        sections[0].lines.push_back({std::string(test->name), std::string(test->title)});
        for (const auto& [word, meaning] : questions(*test))
            if (auto& all = sections[1].lines;
                std::ranges::find(all, word, &Section::Line::term) == all.end())
                all.push_back({std::string(word), std::string(meaning)});
    }
    return sections;
}

std::vector<Section> explained(const Test& test, std::string_view question) {
    std::vector<Section> sections{{std::string(test.title), {{"", std::string(test.study)}}},
                                  {"Questions", {}}};
    for (const auto& [word, meaning] : questions(test))
        if (question.empty() || word == question)
            sections.back().lines.push_back(
                {"statpower " + std::string(test.name) + " " + std::string(word), std::string(meaning)});
    for (Section& section : words_of(test, question)) sections.push_back(std::move(section));
    if (question == "solve")
        sections.push_back(
            {"What is found", {{"--solve-for", "The number to find, where more than one is left out"}}});
    sections.push_back(examples_of(test, question));
    const auto listed = [&](const char* title, const std::vector<std::string_view>& lines) {
        if (lines.empty()) return;
        sections.push_back({title, {}});
        for (const std::string_view line : lines) sections.back().lines.push_back({"", std::string(line)});
    };
    listed("Notes", test.notes);
    listed("Sources", test.sources);
    return sections;
}

namespace {

/// A text in lines of at most 96 columns that begin at `column`, where the first one is already.
std::string wrapped(std::string_view text, std::size_t column) {
    std::string all;
    for (std::size_t at = column; !text.empty();) {
        const std::string_view word = text.substr(0, text.find(' '));
        if (at > column && at + 1 + word.size() > 96)
            all += '\n' + std::string(at = column, ' ');
        else if (!all.empty())
            all += ' ', ++at;
        all += word, at += word.size();
        text.remove_prefix(std::min(word.size() + 1, text.size()));
    }
    return all + '\n';
}

}  // namespace

std::string to_text(const std::vector<Section>& page) {
    std::string all;
    for (const auto& [title, lines] : page) {
        all += (all.empty() ? "" : "\n") + (title.empty() ? "" : wrapped(title, 0));
        std::size_t width = 0;
        for (const auto& [term, text] : lines)
            if (!text.empty()) width = std::max(width, term.size());
        for (const auto& [term, text] : lines)
            all += text.empty() ? "    " + term + '\n'
                   : term.empty()
                       ? "  " + wrapped(text, 2)
                       : "  " + term + std::string(2 + width - term.size(), ' ') + wrapped(text, width + 4);
    }
    return all;
}

std::string to_roff(const std::vector<Section>& page) {
    const auto safe = [](std::string_view text) {
        std::string all(text.starts_with('.') || text.starts_with('\'') ? "\\&" : "");
        for (const char c : text) all += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
        return all + '\n';
    };
    std::string all;
    for (const auto& [title, lines] : page) {
        if (!title.empty()) all += ".SS " + safe(title);
        for (const auto& [term, text] : lines)
            all += text.empty()   ? ".PP\n.RS\n.B " + safe(term) + ".RE\n"
                   : term.empty() ? ".PP\n" + safe(text)
                                  : ".TP\n.B " + safe(term) + safe(text);
    }
    return all;
}

std::string to_markdown(const std::vector<Section>& page) {
    std::string all;
    for (const auto& [title, lines] : page) {
        if (!title.empty()) all += (all.empty() ? "# " : "\n## ") + title + '\n';
        bool table = false;
        for (const auto& [term, text] : lines) {
            const bool row = !term.empty() && !text.empty();
            if (row && !table) all += "\n| | |\n|---|---|\n";
            table = row;
            if (text.empty())
                all.append("\n    ").append(term).append("\n");
            else if (row)
                all.append("| `").append(term).append("` | ").append(text).append(" |\n");
            else
                all.append("\n").append(text).append("\n");
        }
    }
    return all;
}

}  // namespace statplan
