// A file of designs, answered in its order by all cores in bounded memory.
#include <algorithm>
#include <atomic>
#include <cmath>
#include <filesystem>
#include <optional>
#include <sstream>

#include "cli.h"
#include "statplan/designs.h"

namespace cli {

namespace {

bool is_json(const std::string& name) {
    return name.ends_with(".ndjson") || name.ends_with(".jsonl");
}

/// "[##########          ] 20000 of 60000 rows, 4 s left"
std::string progress_line(double done, double all, double seconds) {
    if (all == 0) return statplan::number(done) + " rows";
    const double part = std::min(1.0, done / all);
    const auto bar = static_cast<std::size_t>(30 * part);
    const double left = part > 0 ? std::round(seconds * (1 / part - 1)) : 0;
    return "[" + std::string(bar, '#') + std::string(30 - bar, ' ') + "] " + statplan::number(done) + " of " +
           statplan::number(all) + " rows, " + statplan::number(left) + " s left";
}

}  // namespace

int run(Arguments arguments) {
    Names known;
    for (const statplan::Test* test : statplan::catalogue())
        std::ranges::copy(argument_names(*test), std::back_inserter(known));
    const Words words = read_words(arguments, run_options, known, "run", true);
    if (words.has("help")) return help(std::vector<std::string>{"run"});
    if (words.files.size() != 1)
        throw refused({}, "run: one file of designs is needed, or - for standard input");
    const std::string input_name = words.files[0], output_name = words["output"];
    const bool json = words.has("ndjson") || is_json(input_name) || is_json(output_name);
    for (const char* word : {"keep", "digits"})
        if (json && words.has(word)) throw refused(word, "has no effect on JSON");
    if (words.has("resume") && output_name.empty()) throw refused("resume", "needs --output");
    std::error_code none;
    if (std::filesystem::equivalent(input_name, output_name, none))
        throw refused("output", "is the file of the designs");
    statplan::FileAnswers::Options options{.json = json, .otherwise = words.given};
    options.digits = words.count("digits", 17, 0);
    const auto cores = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    options.jobs = static_cast<std::size_t>(words.count("jobs", 1024, cores));
    for (const char* word : {"test", "question"})
        if (words.has(word)) options.otherwise.emplace_back(word, words[word]);
    std::istringstream keep(words["keep"]);
    for (std::string name; std::getline(keep, name, ',');) options.kept.push_back(name);

    const File input = input_name == "-" ? File(fdopen(0, "rb")) : open(input_name, "rb");
    if (!input) throw failed("cannot read standard input: it is closed");
    std::atomic<std::size_t> done = 0, all = 0;  // rows; the progress reads them
    const Progress progress([&](double seconds) {
        return progress_line(static_cast<double>(done), static_cast<double>(all), seconds);
    });
    auto answers = checked(statplan::FileAnswers::of(input.get(), options));
    all = answers.rows();

    std::size_t before = 0;
    const bool resumes = words.has("resume") && std::filesystem::exists(output_name);
    if (resumes) {
        const auto answered = answers.skip_answered(open(output_name, "rb").get());
        if (!answered) throw refused("resume", answered.refusal().reason);
        done = answered->first, before = answered->second;
        std::filesystem::resize_file(output_name, before);  // a last row that is not whole is cut off
    }
    const File file = output_name.empty() ? File() : open(output_name, resumes ? "ab" : "wb");
    std::FILE* const output = file ? file.get() : stdout;
    const std::string shown = file ? output_name : "the answers";
    if (!json && before == 0) write(output, answers.header() + "\n", shown);

    std::size_t refused_rows = 0;
    for (;;) {
        const auto block = checked(answers.next());
        if (block.rows == 0) break;
        std::optional<Uninterrupted> whole;  // a pipe may keep us waiting for ever
        if (file) whole.emplace();
        write(output, block.text, shown);
        done += block.rows;
        refused_rows += block.refused;
    }
    if (refused_rows > 0)
        throw failed("rows refused: " + std::to_string(refused_rows) + "; their answers say why");
    return kAnswered;
}

}  // namespace cli
