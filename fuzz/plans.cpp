#include "fuzz/plans.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

#include "fuzz/watch.h"
#include "statplan/ask.h"
#include "statplan/designs.h"
#include "statplan/text.h"
#include "support/allocations.h"

namespace fuzz {

namespace {

using nlohmann::json;
using statplan::Argument;
using statplan::Kind;

constexpr std::size_t kLongestMessage = 1000;

template <class Container>
const auto& any_of(const Container& container, Choices& choices) {
    return container[choices.below(std::size(container))];
}

// ---- Words -------------------------------------------------------------------------------------------------------------

std::string ordinary_number(const Argument& a, Choices& choices) {
    const auto& [low, high, low_open, high_open] = a.range;
    double x = low >= 0 && high == statplan::kInfinity ? choices.log_uniform(0.5, 200)
               : high - low < 1e6                      ? choices.uniform(low, high)
                                                       : choices.uniform(-3, 3);
    if (a.kind == Kind::whole || a.whole_elements) x = std::floor(std::max(x, 2.0));
    return statplan::number(x, 4);
}

std::string hostile_text(Choices& choices) {
    static const std::string texts[] = {"",
                                        "nan",
                                        "inf",
                                        "-inf",
                                        "1e999",
                                        "1e-400",
                                        "0x10",
                                        "--3",
                                        "+1",
                                        "1.",
                                        ".",
                                        "e",
                                        "1,,2",
                                        ",",
                                        ":",
                                        "::",
                                        "1:2:0",
                                        "2:1",
                                        "1:1e9:1e-9",
                                        "1:1e300",
                                        "-1e308:1e308:1e303",
                                        "0:0:0",
                                        "1:3:0.5",
                                        "20:200:10",
                                        "1e308",
                                        "-1e308",
                                        "4294967296",
                                        "9007199254740993",
                                        "1e18",
                                        "-0",
                                        "0",
                                        "1",
                                        "-1",
                                        "0.5",
                                        "1e-300",
                                        "1e-12",
                                        "0.9999999999999999",
                                        "\xff\xfe",
                                        "\xc3",
                                        "\x1b[31m",
                                        "\xef\xbc\x91",
                                        "a b",
                                        "{}",
                                        "[1]",
                                        "null",
                                        "true",
                                        "\\",
                                        "\"",
                                        "'",
                                        "\t",
                                        std::string(1, '\0'),
                                        std::string(5000, '9'),
                                        std::string(5000, 'z'),
                                        "1e9",
                                        "6e9"};
    return any_of(texts, choices);
}

/// The text of a value: an ordinary one, or any.
std::string value_text(const Argument& a, bool ordinary, Choices& choices) {
    if (!ordinary && choices.one_in(5)) return hostile_text(choices);
    if (a.kind == Kind::choice) return std::string(any_of(a.choices, choices));
    std::string text = ordinary_number(a, choices);
    const std::uint64_t more = a.kind == Kind::list ? 1 + choices.below(4) : choices.one_in(12) ? 1 : 0;
    for (std::uint64_t i = 0; i < more; ++i) text += "," + ordinary_number(a, choices);
    return text;
}

struct Words {
    std::string test, question;
    std::vector<std::pair<const Argument*, std::string>> given;
};

/// A question of the catalogue with what it needs, and some of what it may have; not ordinary: with wrong values and
/// words too.
Words draw_words(bool ordinary, Choices& choices) {
    static const std::string questions[] = {"power", "size", "precision", "effect", "solve"};
    const statplan::Test& test = *any_of(statplan::catalogue(), choices);
    Words words{std::string(test.name), any_of(questions, choices), {}};
    const auto give = [&](const Argument& a) {
        const auto is = [&](const auto& given) { return given.first->name == a.name; };
        if (std::ranges::none_of(words.given, is))
            words.given.emplace_back(&a, value_text(a, ordinary, choices));
    };
    const bool precision = words.question == "precision" && !test.precision.ways.empty();
    const statplan::Measure& measure = precision ? test.precision : test.power;
    const bool sizes_given = words.question == "power" || choices.one_in(3);
    for (const Argument& a : any_of(measure.ways, choices).arguments)
        if (words.question != "solve" || !choices.one_in(4)) give(a);
    if (sizes_given)
        for (const Argument& a : any_of(test.sizes.ways, choices).arguments) give(a);
    else if (choices.one_in(2))
        give(precision ? statplan::common::half_width : statplan::common::power);
    for (const Argument& a : measure.options)
        if (!a.otherwise || choices.one_in(4)) give(a);
    for (const Argument& a : test.sizes.shares)
        if (choices.one_in(4)) give(a);
    if (!ordinary && choices.one_in(3)) {
        const auto all = statplan::arguments(test);
        give(*any_of(all, choices));
    }
    if (!ordinary && choices.one_in(15)) words.test = hostile_text(choices);
    if (!ordinary && choices.one_in(15)) words.question = hostile_text(choices);
    return words;
}

/// Changes, removes, doubles and inserts some bytes.
void mutate(std::string& text, Choices& choices) {
    for (std::uint64_t i = 0, count = 1 + choices.below(4); i < count && !text.empty(); ++i) {
        const std::size_t at = choices.below(text.size()), length = 1 + choices.below(8);
        switch (choices.below(4)) {
            case 0:
                text[at] = static_cast<char>(choices.below(256));
                break;
            case 1:
                text.erase(at, length);
                break;
            case 2:
                text.insert(at, text.substr(at, length));
                break;
            default:
                text.insert(at, hostile_text(choices));
        }
    }
}

// ---- Questions as JSON -------------------------------------------------------------------------------------------------

/// In quotes; what is no UTF-8 stays as it is.
std::string in_quotes(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

std::string draw_json(bool ordinary, Choices& choices) {
    const Words words = draw_words(ordinary, choices);
    std::string text = "{\"test\": " + in_quotes(words.test);
    if (!choices.one_in(10)) text += ", \"question\": " + in_quotes(words.question);
    for (const auto& [argument, value] : words.given) {
        const bool is_bare = argument->kind != Kind::choice && choices.one_in(2);
        const bool is_list = argument->kind == Kind::list || value.find(',') != value.npos;
        text += ", " + in_quotes(std::string(argument->name)) + ": ";
        text += !is_bare ? in_quotes(value) : is_list ? "[" + value + "]" : value;
    }
    text += "}";
    if (!ordinary && choices.one_in(3)) mutate(text, choices);
    return text;
}

void check_message(const std::string& message, Reply& reply) {
    const auto is_control = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; };
    if (message.empty()) reply.faults.emplace_back("a refusal without a reason");
    if (message.size() > kLongestMessage) reply.faults.emplace_back("a message of any length");
    if (std::ranges::any_of(message, is_control))
        reply.faults.emplace_back("control characters in a message");
}

void check_number(const std::string& name, double x, Reply& reply) {
    if (!std::isfinite(x)) reply.faults.push_back("no number for " + name);
    if ((name == "power" || name == "level") && !(x >= 0 && x <= 1 + 1e-9))
        reply.faults.push_back("a " + name + " of " + statplan::exactly(x));
}

double number_of(const json& element) {
    return element.is_number() ? element.get<double>() : std::nan("");
}

void check_items(const json& items, Reply& reply) {
    for (const auto& [name, value] : items.items()) {
        if (value.is_string()) continue;
        for (const json& element : value.is_array() ? value : json::array({value}))
            check_number(name, number_of(element), reply);
    }
}

void check_json(const std::string& text, Reply& reply) {
    const json answer = json::parse(text, nullptr, false);
    if (!answer.is_object()) {
        reply.faults.emplace_back("the answer is no JSON object");
    } else if (answer.contains("refusal")) {
        check_message(answer["refusal"]["message"].get<std::string>(), reply);
    } else if (answer.contains("columns")) {
        reply.answered = true;
        const json refusals = answer.value("refusals", json::array());
        for (const auto& [name, values] : answer["columns"].items())
            for (std::size_t row = 0; row < values.size(); ++row) {
                const bool is_refused = row < refusals.size() && !refusals[row].is_null();
                if (!is_refused && !values[row].is_string())
                    check_number(name, number_of(values[row]), reply);
            }
        for (const json& refusal : refusals)
            if (!refusal.is_null()) check_message(refusal.get<std::string>(), reply);
    } else {
        reply.answered = true;
        for (const char* part : {"answer", "guaranteed", "enrolled", "other"})
            if (answer.contains(part)) check_items(answer[part], reply);
        check_items(answer["answer"], reply);
    }
}

extern "C" int asked_to_stop(void* context) {
    return static_cast<WatchedCancel*>(context)->IsCancelRequested() ? 1 : 0;
}

Reply ask(const Request& request, WatchedCancel& cancel) {
    Reply reply;
    char* text = statplan_ask(request.text.c_str(), asked_to_stop, &cancel);
    if (const auto late = cancel.overdue(); late && *late > kLatestAnswer)
        reply.faults.push_back("answers " + std::to_string(*late) + " ms after it was told to stop");
    if (text)
        check_json(text, reply);
    else
        reply.faults.emplace_back("no answer");
    statplan_free(text);
    return reply;
}

// ---- Tables of designs as CSV ------------------------------------------------------------------------------------------

/// The first line: the test and the question of rows that name none.
std::string draw_csv(bool ordinary, Choices& choices) {
    const Words first = draw_words(ordinary, choices);
    const bool is_in_rows = choices.one_in(2);
    std::string text = is_in_rows ? "\n" : first.test + " " + first.question + "\n";
    const auto add_cell = [&](const std::string& cell) {
        const bool needs_quotes = cell.find_first_of(",\"\n") != cell.npos;
        if (text.back() != '\n') text += ',';
        text += needs_quotes && !choices.one_in(20) ? in_quotes(cell) : cell;
    };
    if (is_in_rows)
        for (const char* word : {"test", "question"}) add_cell(word);
    for (const auto& [argument, value] : first.given) add_cell(std::string(argument->name));
    for (std::uint64_t row = 0, rows = 1 + choices.below(6); row < rows; ++row) {
        text += choices.one_in(10) ? "\r\n" : "\n";
        if (is_in_rows)
            for (const std::string& word : {first.test, first.question})
                add_cell(!ordinary && choices.one_in(20) ? hostile_text(choices) : word);
        for (const auto& [argument, value] : first.given)
            add_cell(choices.one_in(10) ? "" : value_text(*argument, ordinary, choices));
    }
    if (!ordinary && choices.one_in(2)) mutate(text, choices);
    return text;
}

/// The cells of a row of CSV, as a reader of its own takes them.
std::vector<std::string> cells_of(const std::string& row) {
    std::vector<std::string> cells(1);
    bool is_quoted = false;
    for (const char c : row) {
        if (c == '"') is_quoted = !is_quoted;
        if (c == ',' && !is_quoted)
            cells.emplace_back();
        else
            cells.back() += c;
    }
    return cells;
}

Reply answer_rows(const Request& request, WatchedCancel& cancel) {
    Reply reply;
    const std::size_t line_end = std::min(request.text.find('\n'), request.text.size());
    std::istringstream first(request.text.substr(0, line_end));
    std::string test, question, csv = request.text.substr(std::min(line_end + 1, request.text.size()));
    first >> test >> question;
    statplan::GivenWords words;
    if (!test.empty()) words.emplace_back("test", test);
    if (!question.empty()) words.emplace_back("question", question);
    if (csv.empty()) return reply;

    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(fmemopen(csv.data(), csv.size(), "rb"),
                                                               std::fclose);
    std::string row;
    statplan::Rows rows(file.get(), true);
    if (!rows.next(row)) return reply;
    auto read = statplan::Designs::read(row, words);
    if (!read) {
        check_message(read.refusal().message(), reply);
        return reply;
    }
    statplan::Designs& designs = *read;
    while (rows.next(row)) designs.see(row);
    const std::size_t columns = cells_of(designs.header()).size();
    std::rewind(file.get());
    rows = statplan::Rows(file.get(), true);
    rows.next(row);
    while (rows.next(row) && !cancel.IsCancelRequested()) {
        const auto line = designs.answer(row, 0, &cancel);
        if (const auto late = cancel.overdue(); late && *late > kLatestAnswer)
            reply.faults.push_back("answers " + std::to_string(*late) + " ms after it was told to stop");
        const auto cells = cells_of(line.text);
        // A quote that is never closed takes the rest with it.
        if (std::ranges::count(line.text, '"') % 2 == 0 && cells.size() != columns)
            reply.faults.push_back("a row of " + std::to_string(cells.size()) + " cells under " +
                                   std::to_string(columns));
        if (cells.size() != columns) continue;
        if (line.refused != !cells.back().empty())
            reply.faults.emplace_back("a refusal without a reason, or a reason without one");
        if (line.refused)
            check_message(cells.back(), reply);
        else
            reply.answered = true;
    }
    return reply;
}

// ---- Columns of numbers ------------------------------------------------------------------------------------------------

std::string digits(double x) {
    std::array<char, 32> text;
    std::snprintf(text.data(), text.size(), "%.17g", x);
    return text.data();
}

/// "test unknown name name...|number number..." row by row; a list has three elements.
std::string draw_columns(bool ordinary, Choices& choices) {
    const Words words = draw_words(ordinary, choices);
    const auto* test = statplan::find_test(words.test);
    const auto all = test ? statplan::arguments(*test) : std::vector<const Argument*>{};
    std::string unknown = words.question == "precision" ? "halfwidth" : words.question;
    if (words.question == "solve") unknown = all.empty() ? "d" : std::string(any_of(all, choices)->name);
    std::string text = words.test + " " + (unknown.empty() ? "power" : unknown);
    for (const auto& [argument, value] : words.given) text += " " + std::string(argument->name);
    text += " |";
    for (std::uint64_t row = 0, rows = 1 + choices.below(5); row < rows; ++row)
        for (const auto& [argument, value] : words.given)
            for (int i = 0; i < (argument->kind == Kind::list ? 3 : 1); ++i) {
                if (argument->kind == Kind::choice)
                    text +=
                        " " + std::to_string(choices.below(argument->choices.size() + (ordinary ? 0 : 1)));
                else if (ordinary || !choices.one_in(5))
                    text += " " + ordinary_number(*argument, choices);
                else
                    text += " " + digits(hostile(std::string(argument->name), choices));
            }
    return text;
}

Reply answer_columns(const Request& request, WatchedCancel& cancel) {
    Reply reply;
    const std::size_t bar = std::min(request.text.find('|'), request.text.size());
    std::istringstream head(request.text.substr(0, bar)),
        tail(request.text.substr(std::min(bar + 1, request.text.size())));
    std::string test, unknown;
    head >> test >> unknown;
    std::vector<std::string> names;
    for (std::string name; head >> name;) names.push_back(name);
    std::vector<double> numbers;
    for (std::string word; tail >> word;) numbers.push_back(std::strtod(word.c_str(), nullptr));
    const auto* known = statplan::find_test(test);
    std::vector<const char*> given;
    std::vector<std::size_t> lengths;
    std::size_t width = 0;
    for (const std::string& name : names) {
        const Argument* a = known ? statplan::find_argument(*known, name) : nullptr;
        given.push_back(name.c_str());
        lengths.push_back(a && a->kind == Kind::list ? 3 : 1);
        width += lengths.back();
    }
    const std::size_t rows = width == 0 ? 0 : numbers.size() / width;
    const std::array<std::string, 7> asked = {unknown, "power", "halfwidth",   "level",
                                              "total", "n",     "guaranteed-n"};
    for (const std::string& output : asked) {
        if (cancel.IsCancelRequested()) break;
        const char* const outputs[] = {output.c_str()};
        char* refusal = nullptr;
        statplan_plan* plan =
            statplan_prepare(test.c_str(), unknown.c_str(), given.data(), given.size(), outputs, 1, &refusal);
        if (!plan) {
            if (refusal) check_json(refusal, reply);
            if (!refusal) reply.faults.emplace_back("no plan and no refusal");
            statplan_free(refusal);
            continue;
        }
        std::vector<statplan_column> columns;
        std::size_t at = 0;
        for (const std::size_t length : lengths) {
            columns.push_back({numbers.data() + at, static_cast<ptrdiff_t>(width * sizeof(double)), length,
                               sizeof(double)});
            at += length;
        }
        std::vector<double> together(rows, -7), alone(1);
        const statplan_output room{together.data(), sizeof(double), 1, 0}, one{alone.data(), 0, 1, 0};
        const std::size_t answered =
            rows == 0 ? 0 : statplan_run(plan, rows, columns.data(), &room, asked_to_stop, &cancel);
        if (const auto late = cancel.overdue(); late && *late > kLatestAnswer)
            reply.faults.push_back("answers " + std::to_string(*late) + " ms after it was told to stop");
        for (std::size_t row = 0; row < rows && answered == rows && !cancel.IsCancelRequested(); ++row) {
            statplan_run(plan, 1, columns.data(), &one, asked_to_stop, &cancel);
            if (!cancel.IsCancelRequested() &&
                std::bit_cast<std::uint64_t>(alone[0]) != std::bit_cast<std::uint64_t>(together[row]))
                reply.faults.push_back("row " + std::to_string(row) + " alone is another answer: " + output);
            if (!std::isnan(together[row])) {
                check_number(output, together[row], reply);
                reply.answered = true;
            }
            for (statplan_column& column : columns) column.values += width;
        }
        statplan_release(plan);
    }
    return reply;
}

constexpr const char* kDoors[] = {"ask", "rows", "columns"};

}  // namespace

Request draw_request(Choices& choices) {
    const auto door = static_cast<Door>(choices.below(3));
    const double query = choices.one_in(4) ? static_cast<double>(1 + choices.below(50)) : 1e300;
    const double after = choices.uniform(0, 100);
    const bool ordinary = choices.one_in(2);
    return {door, query, after,
            door == Door::ask    ? draw_json(ordinary, choices)
            : door == Door::rows ? draw_csv(ordinary, choices)
                                 : draw_columns(ordinary, choices)};
}

Reply answer(const Request& request) {
    WatchedCancel cancel(request.stop_at_query, request.stop_after);
    const testing_support::Allocations allocations(4 * kMostMemory);
    const double begun = processor_milliseconds();
    cancel.start();
    Reply reply = request.door == Door::ask    ? ask(request, cancel)
                  : request.door == Door::rows ? answer_rows(request, cancel)
                                               : answer_columns(request, cancel);
    reply.milliseconds = processor_milliseconds() - begun;
    if (allocations.peak() > kMostMemory)
        reply.faults.push_back("takes " + std::to_string(allocations.peak() >> 20) + " MB");
    return reply;
}

std::string written(const Request& request) {
    std::ostringstream line;
    line << kDoors[static_cast<int>(request.door)] << ' ' << request.stop_at_query << ' '
         << request.stop_after << ' ';
    for (const char c : request.text) {
        const auto byte = static_cast<unsigned char>(c);
        char code[8];
        std::snprintf(code, sizeof code, "\\x%02x", byte);
        if (byte < 0x20 || byte >= 0x7f || c == '\\')
            line << code;
        else
            line << c;
    }
    return line.str();
}

Request read_request(const std::string& line) {
    std::istringstream in(line);
    std::string door, rest;
    Request request{Door::ask, 0, 0, {}};
    in >> door >> request.stop_at_query >> request.stop_after;
    const auto known = std::ranges::find(kDoors, door);
    if (!in || known == std::end(kDoors)) throw std::runtime_error("no request: " + line);
    request.door = static_cast<Door>(known - kDoors);
    in.get();
    std::getline(in, rest);
    for (std::size_t i = 0; i < rest.size(); ++i) {
        const bool is_code = rest[i] == '\\' && i + 3 < rest.size() && rest[i + 1] == 'x';
        request.text += is_code ? static_cast<char>(std::stoi(rest.substr(i + 2, 2), nullptr, 16)) : rest[i];
        if (is_code) i += 3;
    }
    return request;
}

}  // namespace fuzz
