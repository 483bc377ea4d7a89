#include <algorithm>
#include <charconv>

#include "cli.h"

namespace cli {

const std::vector<Option> question_options{{"csv", "", "Print CSV"},
                                           {"json", "", "Print JSON"},
                                           {"ndjson", "", "Print JSON, a line for each row"},
                                           {"digits", "COUNT", "Significant digits, 1 to 17"},
                                           {"report", "", "Print a sentence for a protocol or a paper"},
                                           {"chart", "", "Draw the table in the terminal (needs gnuplot)"},
                                           {"svg", "FILE", "Draw the table to a file (needs gnuplot)"},
                                           {"png", "FILE", "Draw the table to a file (needs gnuplot)"},
                                           {"help", "", "Explain the question"}};

const std::vector<Option> run_options{

    {"output", "FILE", "Where the answers go, also -o FILE; standard output unless given"},
    {"test", "NAME", "The test of rows that name none"},
    {"question", "NAME", "The question of rows that name none"},
    {"keep", "NAMES", "Columns that are carried through unread: id,comment"},
    {"ndjson", "", "Designs and answers are JSON, a line each; so, too, where FILE ends in .ndjson"},
    {"digits", "COUNT", "Significant digits, 1 to 17; all unless given"},
    {"jobs", "COUNT", "Designs answered at the same time; as many as there are cores unless given"},
    {"resume", "", "Continue behind the answers that FILE has"},
    {"help", "", "Explain"}};

std::string Words::operator[](std::string_view option) const {
    const auto found = options.find(option);
    return found == options.end() ? "" : found->second;
}

int Words::count(std::string_view option, int high, int otherwise) const {
    if (!has(option)) return otherwise;
    const std::string text = (*this)[option];
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc() && end == text.data() + text.size() && value >= 1 && value <= high) return value;
    throw refused(
        option, "'" + statplan::escaped(text) + "' is not a whole number from 1 to " + std::to_string(high));
}

Failure refused(std::string_view word, std::string reason) {
    return {kRefused, {.argument = statplan::escaped(word), .reason = std::move(reason)}};
}

Failure failed(std::string reason) {
    return {kNoAnswer, {.kind = statplan::Refusal::no_answer, .argument = {}, .reason = std::move(reason)}};
}

Words read_words(Arguments arguments, std::span<const Option> options, const Names& known,
                 const std::string& where, bool files) {
    Names all = known;
    for (const Option& option : options) all.push_back(option.name);
    Words words;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string_view word = arguments[i];
        if (word == "-h") word = "--help";
        if (word == "-o" && files) word = "--output";
        if (files && !word.empty() && !word.starts_with("--")) {
            words.files.emplace_back(word);
            continue;
        }
        if (!word.starts_with("--"))
            throw refused(
                {}, "'" + statplan::escaped(word) + "' stands alone: words are given as --word value" +
                        (word.empty() ? "" : statplan::did_you_mean(word.substr(word[0] == '-'), all, "--")));
        const std::size_t equals = std::min(word.find('='), word.size());
        const std::string name(word.substr(2, equals - 2));
        const auto option = std::ranges::find(options, name, &Option::name);
        if (std::ranges::find(all, name) == all.end())
            throw refused(name, "no word of " + where + statplan::did_you_mean(name, all, "--"));
        const bool flag = option != options.end() && option->value.empty(), has_value = equals < word.size();
        if (flag && has_value) throw refused(name, "takes no value");
        if (!flag && !has_value && (++i == arguments.size() || arguments[i].starts_with("--")))
            throw refused(name, "a value is needed");
        const std::string value = flag ? "" : has_value ? std::string(word.substr(equals + 1)) : arguments[i];
        const auto given = std::ranges::find(words.given, name, &std::pair<std::string, std::string>::first);
        if (given != words.given.end() || words.has(name)) throw refused(name, "is given twice");
        if (option == options.end())
            words.given.emplace_back(name, value);
        else
            words.options.emplace(name, value);
    }
    return words;
}

Names argument_names(const statplan::Test& test) {
    Names names{"solve-for"};
    for (const statplan::Argument* a : statplan::arguments(test)) names.push_back(a->name);
    return names;
}

}  // namespace cli
