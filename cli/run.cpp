// A file of designs, answered in its order by all cores in bounded memory.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstring>
#include <deque>
#include <filesystem>
#include <future>
#include <optional>
#include <semaphore>
#include <sstream>

#include "cli.h"
#include "statplan/designs.h"

namespace cli {

namespace {

struct Answers {
    std::string text;
    std::size_t rows = 0, refused = 0;
    double seconds = 0;
};

using AnswerRow = std::function<statplan::Designs::Line(const std::string&)>;

Answers answers_to(const std::vector<std::string>& rows, const AnswerRow& answer) {
    const auto start = std::chrono::steady_clock::now();
    Answers answers;
    answers.rows = rows.size();
    for (const std::string& row : rows) {
        const auto line = answer(row);
        answers.text += line.text + '\n';
        answers.refused += line.refused;
    }
    answers.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return answers;
}

/// A file that can be read twice.
File opened(const std::string& name, bool twice) {
    if (name != "-") return open(name, "rb");
    File input(fdopen(0, "rb"));
    if (!input) throw Failure(kNoAnswer, "cannot read standard input: it is closed");
    if (!twice) return input;
    File copy = temporary();
    char block[1 << 16];
    for (std::size_t count; (count = std::fread(block, 1, sizeof block, input.get())) > 0;)
        write(copy.get(), {block, count}, "a temporary file");
    std::rewind(copy.get());
    return copy;
}

/// How many answers a file has, without a last one that is not whole, which is cut off.
std::size_t answers_in(const std::string& name, const std::string& header, bool csv) {
    const File file = open(name, "rb");
    statplan::Rows rows(file.get(), csv);
    std::string row;
    std::size_t count = 0, whole = 0;
    if (csv && rows.next(row) && rows.bytes() > 0 && row != header)
        throw Failure(kRefused,
                      "--resume: " + statplan::escaped(name) + " has not the answers of these designs");
    for (whole = rows.bytes(); rows.next(row) && rows.bytes() > whole; whole = rows.bytes()) ++count;
    std::filesystem::resize_file(name, whole);
    return count;
}

bool is_json(const std::string& name) {
    return name.ends_with(".ndjson") || name.ends_with(".jsonl");
}

}  // namespace

int run(Arguments arguments) {
    Names known;
    for (const statplan::Test* test : statplan::catalogue())
        std::ranges::copy(argument_names(*test), std::back_inserter(known));
    Words words = read_words(arguments, run_options(), known, "run", true);
    if (words.has("help")) return help(std::vector<std::string>{"run"});
    if (words.files.size() != 1)
        throw Failure(kRefused, "run: one file of designs is needed, or - for standard input");
    const std::string input_name = words.files[0], output_name = words["output"];
    const bool json = words.has("ndjson") || is_json(input_name) || is_json(output_name);
    for (const char* word : {"keep", "digits"})
        if (json && words.has(word))
            throw Failure(kRefused, "--" + std::string(word) + ": has no effect on JSON");
    if (words.has("resume") && output_name.empty()) throw Failure(kRefused, "--resume: needs --output");
    std::error_code none;
    if (std::filesystem::equivalent(input_name, output_name, none))
        throw Failure(kRefused, "--output: is the file of the designs");
    const int digits = words.count("digits", 17, 0);
    const auto jobs = static_cast<std::size_t>(
        words.count("jobs", 1024, static_cast<int>(std::max(1U, std::thread::hardware_concurrency()))));
    for (const char* word : {"test", "question"})
        if (words.has(word)) words.given.emplace_back(word, words[word]);

    const File input = opened(input_name, !json);
    statplan::Rows rows(input.get(), !json);
    std::string row, header;
    std::optional<statplan::Designs> designs;
    AnswerRow answer = [&](const std::string& request) {
        return statplan::answer_json(request, words.given);
    };
    std::atomic<std::size_t> done = 0, all = 0;  // rows; the progress reads them
    std::size_t refused = 0;
    const Progress progress([&](double seconds) {
        const auto rows_done = static_cast<double>(done),
                   part = rows_done / std::max(1.0, static_cast<double>(all));
        const auto bar = static_cast<std::size_t>(30 * std::min(1.0, part));
        const long left = part > 0 ? std::lround(seconds * (1 / part - 1)) : 0;
        return all == 0
                   ? std::to_string(done) + " rows"
                   : "[" + std::string(bar, '#') + std::string(30 - bar, ' ') + "] " + std::to_string(done) +
                         " of " + std::to_string(all) + " rows, " + std::to_string(left) + " s left";
    });
    const auto check_input = [&] {
        if (std::ferror(input.get()))
            throw Failure(kNoAnswer, "cannot read " + statplan::escaped(input_name));
        if (rows.too_long()) throw Failure(kRefused, "a row is longer than a million bytes");
    };
    if (!json) {
        const bool any = rows.next(row);
        check_input();
        if (!any) throw Failure(kRefused, "the file of designs is empty");
        std::istringstream keep(words["keep"]);
        std::vector<std::string> kept;
        for (std::string name; std::getline(keep, name, ',');) kept.push_back(name);
        auto read = statplan::Designs::read(row, words.given, {kept.begin(), kept.end()});
        if (!read) throw Failure(kRefused, message(read.refusal()));
        designs.emplace(std::move(*read));
        std::size_t count = 0;
        for (; rows.next(row); ++count) designs->see(row);
        check_input();
        all = count;
        header = designs->header();
        answer = [&](const std::string& each) { return designs->answer(each, digits); };
        std::rewind(input.get());
        rows = statplan::Rows(input.get(), true);
        rows.next(row);
    }

    const bool resumes = words.has("resume") && std::filesystem::exists(output_name);
    std::size_t skip = resumes ? answers_in(output_name, header, !json) : 0;
    done = skip;
    for (; skip > 0 && rows.next(row);) --skip;
    const File file = output_name.empty() ? File() : open(output_name, resumes ? "ab" : "wb");
    std::FILE* const output = file ? file.get() : stdout;
    const std::string shown = file ? output_name : "the answers";
    if (!json && (!resumes || std::filesystem::file_size(output_name) == 0))
        write(output, header + "\n", shown);

    std::counting_semaphore<> cores(static_cast<std::ptrdiff_t>(jobs));
    std::deque<std::future<Answers>> ahead;
    std::size_t at_once = 1;  // rows for one thread: some 20 ms of work
    for (;;) {
        while (ahead.size() < 2 * jobs) {
            std::vector<std::string> block;
            while (block.size() < at_once && rows.next(row)) block.push_back(row);
            if (block.empty()) break;
            const Uninterrupted inherited;
            ahead.push_back(std::async(std::launch::async, [&, block = std::move(block)] {
                cores.acquire();
                Answers answers = answers_to(block, answer);
                cores.release();
                return answers;
            }));
        }
        if (ahead.empty()) break;
        const Answers answers = ahead.front().get();
        ahead.pop_front();
        std::optional<Uninterrupted> whole;  // a pipe may keep us waiting for ever
        if (file) whole.emplace();
        write(output, answers.text, shown);
        done += answers.rows;
        refused += answers.refused;
        const double fitting = 0.02 / std::max(answers.seconds, 1e-9) * static_cast<double>(answers.rows);
        at_once = static_cast<std::size_t>(std::clamp(fitting, 1.0, 4096.0));
    }
    check_input();
    if (refused > 0)
        throw Failure(kNoAnswer, "rows refused: " + std::to_string(refused) + "; their answers say why");
    return kAnswered;
}

}  // namespace cli
