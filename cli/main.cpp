// statpower: plans studies from the command line. A loop over the planner's catalogue; no test is known here.
//
// Exit status: 0 answered, 1 the question has no answer, some rows were refused or the output failed, 2 refused,
// 130 stopped by Ctrl-C.
#include <algorithm>
#include <filesystem>

#include "cli.h"

namespace cli {

const statplan::Test& test_asked(const std::string& test, const std::string& question) {
    const auto asked = statplan::read_question(test, question, {});
    if (!asked) throw Failure(kRefused, message(asked.refusal()));
    return *asked->test;
}

namespace {

/// Of options that exclude each other, the one that is given.
std::string only_one(const Words& words, std::initializer_list<const char*> options) {
    std::string found;
    for (const char* option : options) {
        if (words.has(option) && !found.empty())
            throw Failure(kRefused, "--" + std::string(option) + ": cannot stand beside --" + found);
        if (words.has(option)) found = option;
    }
    return found;
}

int answer(Arguments arguments) {
    const bool bare = arguments.size() < 2 || arguments[1] == "--help" || arguments[1] == "-h";
    const statplan::Test& test = test_asked(arguments[0], bare ? "power" : arguments[1]);
    if (arguments.size() < 2) throw Failure(kRefused, "which question? statpower help " + arguments[0]);
    if (bare) return help(arguments.first(1));
    const Words words = read_words(arguments.subspan(2), question_options(), argument_names(test),
                                   arguments[0] + " " + arguments[1], false);
    if (words.has("help")) return help(arguments.first(2));
    const std::string form = only_one(words, {"csv", "json", "ndjson", "report", "chart"});
    const bool json = form == "json" || form == "ndjson";
    if (words.has("digits") && !form.empty() && form != "csv")
        throw Failure(kRefused, "--digits: has no effect beside --" + form);
    const int digits = words.count("digits", 17, 0);
    const auto checked = [&](const auto& outcome) {
        if (outcome) return;
        const statplan::Refusal& refusal = outcome.refusal();
        if (json) print(to_json(refusal) + "\n");
        throw Failure(refusal.kind == statplan::Refusal::refused ? kRefused : kNoAnswer, message(refusal));
    };

    const auto asked = statplan::read_question(test.name, arguments[1], words.given);
    checked(asked);
    const Progress progress(
        [](double seconds) { return std::to_string(static_cast<int>(seconds)) + " s (Ctrl-C stops)"; });
    if (!is_table(*asked)) {
        for (const char* picture : {"chart", "svg", "png"})
            if (words.has(picture))
                throw Failure(kRefused, "--" + std::string(picture) +
                                            ": has no effect on one design; several values of a number, for "
                                            "example 20:200:10, make a table");
        const auto record = statplan::ask(*asked);
        checked(record);
        return print(form == "report" ? record->report + "\n"
                     : form == "csv"  ? to_csv(*record, digits)
                     : json           ? to_json(*record) + "\n"
                                      : to_text(*record, digits ? digits : 6));
    }
    if (form == "report") throw Failure(kRefused, "--report: has no effect on a table");
    const auto table = statplan::ask_table(*asked);
    checked(table);
    for (const char* picture : {"svg", "png"})
        if (words.has(picture)) draw(*table, picture, words[picture]);
    if (form == "chart")
        draw(*table, form);
    else
        print(form == "csv"      ? to_csv(*table, digits)
              : form == "json"   ? to_json(*table) + "\n"
              : form == "ndjson" ? to_ndjson(*table)
                                 : to_text(*table, digits ? digits : 4));
    return table->refusals.empty() ? kAnswered : kNoAnswer;
}

int open_page() {
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    const std::string page = program.parent_path().parent_path() / "share/statpower/statpower.html";
    if (!std::filesystem::exists(page))
        throw Failure(kNoAnswer, "there is no page at " + page + ": install statpower with its page");
    if (run_program({"xdg-open", page}, nullptr, nullptr) != 0)
        throw Failure(kNoAnswer, "no browser was started (xdg-open, package xdg-utils): open " + page);
    return kAnswered;
}

int command(Arguments arguments) {
    if (arguments.empty()) throw Failure(kRefused, "which test? statpower help lists them");
    const std::pair<std::string_view, std::function<int(Arguments)>> commands[] = {
        {"run", run},
        {"help", help},
        {"--help", help},
        {"-h", help},
        {"complete", complete},
        {"page", [](Arguments) { return open_page(); }},
        {"man", [](Arguments) { return manual(); }},
        {"--catalogue", [](Arguments) { return print(statplan::catalogue_json() + "\n"); }},
        {"--version",
         [](Arguments) { return print("statpower " + std::string(statplan::version()) + "\n"); }}};
    for (const auto& [name, function] : commands)
        if (arguments[0] == name) return function(arguments.subspan(1));
    return answer(arguments);
}

int fail(int status, const char* message) {
    std::fprintf(stderr, "statpower: %s\n", message);
    return status;
}

}  // namespace

}  // namespace cli

int main(int argc, char** argv) {
    cli::keep_standard_files();
    cli::end_on_interrupt();
    try {
        return cli::command(std::vector<std::string>(argv + 1, argv + std::max(argc, 1)));
    } catch (const cli::Failure& failure) {
        return cli::fail(failure.status, failure.what());
    } catch (const std::bad_alloc&) {
        return cli::fail(cli::kNoAnswer, "there is not enough memory");
    } catch (const std::exception& error) {
        return cli::fail(cli::kNoAnswer, error.what());
    }
}
