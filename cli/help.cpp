// Explanations, made from the catalogue: help, the manual page, completion.
#include <algorithm>

#include "cli.h"

namespace cli {

using statplan::Section;
using Page = std::vector<Section>;

namespace {

void add_options(Page& page, std::span<const Option> options) {
    page.push_back({"Output", {}});
    for (const auto& [name, value, meaning] : options)
        page.back().lines.push_back(
            {"--" + std::string(name) + (value.empty() ? "" : " ") + std::string(value),
             std::string(meaning)});
}

Page front_page() {
    Page page{
        {"statpower TEST QUESTION --word value...",
         {{"",
           "Several values of a number (--d 0.2,0.5) or a range (--n 20:200:10) make a table. Exit status: "
           "0 answered, 1 no answer or some rows refused, 2 refused, 130 stopped by Ctrl-C."}}}};
    std::ranges::copy(statplan::overview(), std::back_inserter(page));
    page.push_back({"More", {}});
    for (const auto& [name, meaning, act] : commands)
        if (!meaning.empty()) page.back().lines.push_back({std::string(name), std::string(meaning)});
    return page;
}

Page page_of_run() {
    Page page{
        {"A table of designs",
         {{"statpower run designs.csv -o answers.csv", ""},
          {"",
           "Each row is a design, each column a word: test, question, arguments. A blank cell is not given; "
           "words of the command line (--alpha 0.01) hold for rows that do not give them. The answers stand "
           "behind the columns of the designs, named as in a record, with found- before a name that is a "
           "column already. A row that is refused says why in the column refusal, and the exit status is 1. "
           "The file - is standard input."}}}};
    add_options(page, run_options);
    return page;
}

}  // namespace

int help(Arguments topic) {
    const bool markdown = !topic.empty() && topic.back() == "--markdown";  // for the pages of docs
    topic = topic.first(topic.size() - markdown);
    Page page = topic.empty() ? front_page() : topic[0] == "run" ? page_of_run() : Page();
    if (page.empty()) {
        const bool asks = topic.size() > 1;
        page = statplan::explained(test_asked(topic[0], asks ? topic[1] : "power"), asks ? topic[1] : "");
        if (topic.size() > 1) add_options(page, question_options);
    }
    return print(markdown ? to_markdown(page) : to_text(page));
}

int manual(Arguments) {
    const std::string version(statplan::version());
    Page output;
    add_options(output, question_options);
    std::string all =
        ".TH STATPOWER 1 \"\" \"statpower " + version +
        "\" \"User Commands\"\n.SH NAME\nstatpower \\- power, sample size, precision and effects of "
        "statistical tests\n.SH DESCRIPTION\n" +
        to_roff(front_page()) + to_roff(output) + to_roff(page_of_run());
    for (const statplan::Test* test : statplan::catalogue())
        all += ".SH " + std::string(test->name) + "\n" + to_roff(statplan::explained(*test));
    return print(all);
}

int complete(Arguments arguments) {
    std::string all;
    const auto offer = [&](std::string_view word, std::string_view meaning, const char* dashes = "") {
        all += dashes + std::string(word) + "\t" + std::string(meaning) + "\n";
    };
    const statplan::Test* test = arguments.empty() ? nullptr : statplan::find_test(arguments[0]);
    const bool runs = !arguments.empty() && arguments[0] == "run";
    if (arguments.empty()) {
        for (const statplan::Test* each : statplan::catalogue()) offer(each->name, each->title);
        for (const auto& [name, meaning, act] : commands)
            if (!meaning.empty()) offer(name, meaning);
    } else if (test && arguments.size() == 1) {
        for (const auto& [word, meaning] : statplan::questions(*test)) offer(word, meaning);
    } else if (test || runs) {
        const std::string& last = arguments.back();
        const auto* argument =
            test && last.starts_with("--") ? find_argument(*test, last.substr(2)) : nullptr;
        if (argument) {
            for (const std::string_view choice : argument->choices) offer(choice, "");
        } else {
            for (const auto& option : runs ? run_options : question_options)
                offer(option.name, option.meaning, "--");
            for (const auto* a : test ? statplan::arguments(*test) : std::vector<const statplan::Argument*>())
                offer(a->name, a->meaning, "--");
        }
    }
    return print(all);
}

}  // namespace cli
