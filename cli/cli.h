// What the files of the command share.
#pragma once

#include <cstdio>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "statplan/plan.h"
#include "statplan/text.h"

namespace cli {

using Arguments = std::span<const std::string>;
using Names = std::vector<std::string_view>;

// ---- Endings ---------------------------------------------------------------------------------------------

inline constexpr int kAnswered = 0, kNoAnswer = 1, kRefused = 2, kInterrupted = 130;

/// Ends the program with a message and an exit status.
struct Failure {
    int status;
    statplan::Refusal refusal;
};
Failure refused(std::string_view word, std::string reason);
Failure failed(std::string reason);

/// What an outcome holds; a refusal ends the program.
template <typename T>
T&& checked(statplan::Outcome<T>&& outcome) {
    if (outcome) return std::move(*outcome);
    throw Failure{outcome.refusal().kind == statplan::Refusal::refused ? kRefused : kNoAnswer,
                  outcome.refusal()};
}

// ---- Words (words.cpp) -----------------------------------------------------------------------------------

/// A word of the command itself; those of questions are the catalogue's.
struct Option {
    std::string_view name, value, meaning;  // no value: a flag
};
extern const std::vector<Option> question_options, run_options;

struct Words {
    std::vector<std::pair<std::string, std::string>> given;  // of questions, in their order
    std::map<std::string, std::string, std::less<>> options;
    std::vector<std::string> files;  // what stands without a word

    bool has(std::string_view option) const { return options.contains(option); }
    /// What an option is given; empty where it is not.
    std::string operator[](std::string_view option) const;
    /// A whole number from 1 to `high`.
    int count(std::string_view option, int high, int otherwise) const;
};

/// Reads "--word value", "--word=value" and flags.
/// @param known  words of questions
/// @param where  what the words belong to, for messages
/// @param files  may anything stand without a word?
Words read_words(Arguments arguments, std::span<const Option> options, const Names& known,
                 const std::string& where, bool files);

Names argument_names(const statplan::Test& test);

// ---- The system (process.cpp) ----------------------------------------------------------------------------

/// A standard file that is closed fails when it is used; the next file that is opened does not take its place.
void keep_standard_files();
/// From now on Ctrl-C ends the program at once, with one line.
void end_on_interrupt();

/// While it lives Ctrl-C waits, for what must stay whole.
struct Uninterrupted {
    Uninterrupted();
    ~Uninterrupted();
};

/// While it lives, once a second has passed, a line on the terminal that standard error is says how it goes.
class Progress {
  public:
    explicit Progress(std::function<std::string(double seconds)> line);

  private:
    std::jthread display_;
};

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;
File open(const std::string& name, const char* mode);

/// Writes all of a text; a failure says why not.
void write(std::FILE* file, std::string_view text, const std::string& name);
/// The same to standard output. @return kAnswered
int print(std::string_view text);

/// Runs another program.
/// @param input, output  its standard input and output; null: ours
/// @return its exit status; 127 where there is no such program
int run_program(std::vector<std::string> command, std::FILE* input, std::FILE* output);

// ---- What it does ----------------------------------------------------------------------------------------

/// The commands beside the tests; those without a meaning are not listed.
struct Command {
    std::string_view name, meaning;
    int (*act)(Arguments);
};
extern const std::vector<Command> commands;

/// The test of a question.
const statplan::Test& test_asked(const std::string& test, const std::string& question);

int help(Arguments topic);
int manual(Arguments);
/// The words that may stand next behind those of a command line, each with its meaning, for shells.
int complete(Arguments arguments);

/// Answers a file of designs.
int run(Arguments arguments);

/// Draws a table with gnuplot: in the terminal, or as a file of a kind, svg or png.
void draw(const statplan::Table& table, const std::string& kind, const std::string& file = "");

}  // namespace cli
