// statpower: plans studies from the command line. A loop over the planner's catalogue; no test is known here.
//
// Exit status: 0 answered, 1 the question has no answer, some rows were refused or the output failed, 2 refused,
// 130 stopped by Ctrl-C.
#include <algorithm>
#include <filesystem>

#include "cli.h"

namespace cli {

const statplan::Test& test_asked(const std::string& test, const std::string& question) {
    return *checked(statplan::read_question(test, question, {})).test;
}

namespace {

/// Of options that exclude each other, the one that is given.
std::string only_one(const Words& words, std::initializer_list<const char*> options) {
    std::string found;
    for (const char* option : options) {
        if (words.has(option) && !found.empty()) throw refused(option, "cannot stand beside --" + found);
        if (words.has(option)) found = option;
    }
    return found;
}

int answer(Arguments arguments) {
    const bool bare = arguments.size() < 2 || arguments[1] == "--help" || arguments[1] == "-h";
    const statplan::Test& test = test_asked(arguments[0], bare ? "power" : arguments[1]);
    if (arguments.size() < 2) throw refused({}, "which question? statpower help " + arguments[0]);
    if (bare) return help(arguments.first(1));
    const Words words = read_words(arguments.subspan(2), question_options, argument_names(test),
                                   arguments[0] + " " + arguments[1], false);
    if (words.has("help")) return help(arguments.first(2));
    const std::string form = only_one(words, {"csv", "json", "ndjson", "report", "chart"});
    if (words.has("digits") && !form.empty() && form != "csv")
        throw refused("digits", "has no effect beside --" + form);
    const int digits = words.count("digits", 17, 0);

    const auto asked = checked(statplan::read_question(test.name, arguments[1], words.given));
    const Progress progress(
        [](double seconds) { return std::to_string(static_cast<int>(seconds)) + " s (Ctrl-C stops)"; });
    if (!is_table(asked)) {
        for (const char* picture : {"chart", "svg", "png"})
            if (words.has(picture))
                throw refused(picture,
                              "has no effect on one design; several values of a number, for example "
                              "20:200:10, make a table");
        const auto record = checked(statplan::ask(asked));
        return print(form == "report"                     ? record.report + "\n"
                     : form == "csv"                      ? to_csv(record, digits)
                     : form == "json" || form == "ndjson" ? to_json(record) + "\n"
                                                          : to_text(record, digits ? digits : 6));
    }
    if (form == "report") throw refused("report", "has no effect on a table");
    const auto table = checked(statplan::ask_table(asked));
    for (const char* picture : {"svg", "png"})
        if (words.has(picture)) draw(table, picture, words[picture]);
    if (form == "chart")
        draw(table, form);
    else
        print(form == "csv"      ? to_csv(table, digits)
              : form == "json"   ? to_json(table) + "\n"
              : form == "ndjson" ? to_ndjson(table)
                                 : to_text(table, digits ? digits : 4));
    return table.refusals.empty() ? kAnswered : kNoAnswer;
}

int open_page(Arguments) {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    const std::string page = program.parent_path().parent_path() / "share/statpower/statpower.html";
    if (!std::filesystem::exists(page))
        throw failed("there is no page at " + page + ": install statpower with its page");
    if (run_program({"xdg-open", page}, nullptr, nullptr) != 0)
        throw failed("no browser was started (xdg-open, package xdg-utils): open " + page);
    return kAnswered;
}

int command(Arguments arguments) {
    if (arguments.empty()) throw refused({}, "which test? statpower help lists them");
    const auto command = std::ranges::find(commands, arguments[0], &Command::name);
    return command == commands.end() ? answer(arguments) : command->act(arguments.subspan(1));
}

/// Says on standard error, and to a program that asks for JSON as JSON, why there is no answer.
int end(const Failure& failure, Arguments arguments) {
    const statplan::Refusal& refusal = failure.refusal;
    const bool word = !refusal.argument.empty() && refusal.argument != "test";
    const auto is_json = [](const std::string& form) { return form == "--json" || form == "--ndjson"; };
    if (std::ranges::any_of(arguments, is_json) && arguments.front() != "run")
        std::puts(to_json(refusal).c_str());
    std::fprintf(stderr, "statpower: %s\n",
                 word ? ("--" + refusal.message()).c_str() : refusal.reason.c_str());
    return failure.status;
}

}  // namespace

const std::vector<Command> commands{
    {"run", "Answer a table of designs: run designs.csv -o answers.csv", run},
    {"page", "Open the planner's page in a browser", open_page},
    {"help", "Explain: help, help TEST, help TEST QUESTION, help run", help},
    {"man", "Print the manual page", manual},
    {"--catalogue", "Print the description of all tests as JSON",
     [](Arguments) { return print(statplan::catalogue_json() + "\n"); }},
    {"--version", "Print the version",
     [](Arguments) { return print("statpower " + std::string(statplan::version()) + "\n"); }},
    {"--help", "", help},
    {"-h", "", help},
    {"complete", "", complete}};

}  // namespace cli

int main(int argc, char** argv) {
    cli::keep_standard_files();
    cli::end_on_interrupt();
    const std::vector<std::string> arguments(argv + 1, argv + std::max(argc, 1));
    try {
        return cli::command(arguments);
    } catch (const cli::Failure& failure) {
        return cli::end(failure, arguments);
    } catch (const std::bad_alloc&) {
        return cli::end(cli::failed("there is not enough memory"), arguments);
    } catch (const std::exception& error) {
        return cli::end(cli::failed(error.what()), arguments);
    }
}
