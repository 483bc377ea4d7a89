// Files of designs, answered on all cores.
#include <algorithm>
#include <chrono>
#include <deque>
#include <future>
#include <optional>
#include <semaphore>

#include "statplan/designs.h"

namespace statplan {

namespace {

struct Timed {
    FileAnswers::Block block = {};
    double seconds = 0;
};

/// A core for as long as it lives.
struct Core {
    explicit Core(std::counting_semaphore<>& of) : cores(of) { cores.acquire(); }
    ~Core() { cores.release(); }
    std::counting_semaphore<>& cores;
};

}  // namespace

struct FileAnswers::Parts {
    Parts(std::FILE* of, Options with)
        : options(std::move(with)),
          rows(of, !options.json),
          file(of),
          cores(static_cast<std::ptrdiff_t>(options.jobs)) {}

    Check unreadable() const {
        if (std::ferror(file))
            return Refusal{
                .kind = Refusal::no_answer, .argument = {}, .reason = "the designs cannot be read"};
        if (rows.too_long()) return Refusal{.argument = {}, .reason = "a row is longer than a million bytes"};
        return {};
    }

    /// Makes the designs a file that can be read twice.
    Check keep() {
        if (std::fseek(file, 0, SEEK_CUR) == 0) return {};
        copy.reset(std::tmpfile());
        char block[1 << 16];
        std::size_t read = 1;
        while (copy && (read = std::fread(block, 1, sizeof block, file)) > 0)
            if (std::fwrite(block, 1, read, copy.get()) != read) copy.reset();
        if (Check wrong = unreadable()) return wrong;
        if (!copy || std::fflush(copy.get()) != 0)
            return Refusal{.kind = Refusal::no_answer,
                           .argument = {},
                           .reason = "there is no room for a temporary file"};
        std::rewind(file = copy.get());
        rows = Rows(file, true);
        return {};
    }

    /// Reads all designs, which settles the columns of the answers.
    Check see() {
        if (Check wrong = keep()) return wrong;
        std::string row;
        const bool any = rows.next(row);
        if (Check wrong = unreadable()) return wrong;
        if (!any) return Refusal{.argument = {}, .reason = "the file of designs is empty"};
        auto read = Designs::read(row, options.otherwise, {options.kept.begin(), options.kept.end()});
        if (!read) return read.refusal();
        designs.emplace(std::move(*read));
        for (; rows.next(row); ++count) designs->see(row);
        if (Check wrong = unreadable()) return wrong;
        header = designs->header();
        std::rewind(file);
        rows = Rows(file, true);
        rows.next(row);
        return {};
    }

    Timed answers_to(const std::vector<std::string>& some) {
        const Core core(cores);
        const auto start = std::chrono::steady_clock::now();
        Timed timed;
        for (const std::string& row : some) {
            const auto line =
                designs ? designs->answer(row, options.digits) : answer_json(row, options.otherwise);
            timed.block.text += line.text + '\n';
            timed.block.refused += line.refused;
        }
        timed.block.rows = some.size();
        timed.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        return timed;
    }

    Options options;
    Rows rows;
    std::FILE* file;
    struct Close {
        void operator()(std::FILE* open) const { std::fclose(open); }
    };
    std::unique_ptr<std::FILE, Close> copy = {};
    std::counting_semaphore<> cores;
    std::optional<Designs> designs = {};  // of CSV
    std::string header = {};
    std::size_t count = 0, at_once = 1;  // rows: of the file, of a block
    std::deque<std::future<Timed>> ahead = {};
};

FileAnswers::FileAnswers(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
FileAnswers::~FileAnswers() = default;
FileAnswers::FileAnswers(FileAnswers&&) noexcept = default;
FileAnswers& FileAnswers::operator=(FileAnswers&&) noexcept = default;

Outcome<FileAnswers> FileAnswers::of(std::FILE* designs, Options options) {
    auto parts = std::make_unique<Parts>(designs, std::move(options));
    if (!parts->options.json)
        if (Check wrong = parts->see()) return *wrong;
    return FileAnswers(std::move(parts));
}

const std::string& FileAnswers::header() const {
    return parts_->header;
}
std::size_t FileAnswers::rows() const {
    return parts_->count;
}

Outcome<std::pair<std::size_t, std::size_t>> FileAnswers::skip_answered(std::FILE* answers) {
    const bool csv = !parts_->options.json;
    Rows answered(answers, csv);
    std::string row;
    if (csv && answered.next(row) && answered.bytes() > 0 && row != header())
        return Refusal{.argument = {}, .reason = "the answers are those of other designs"};
    std::size_t count = 0, whole = answered.bytes();
    for (; answered.next(row) && answered.bytes() > whole; whole = answered.bytes()) ++count;
    for (std::size_t i = 0; i < count && parts_->rows.next(row);) ++i;
    return std::pair(count, whole);
}

Outcome<FileAnswers::Block> FileAnswers::next() {
    Parts& p = *parts_;
    while (p.ahead.size() < 2 * p.options.jobs) {
        std::vector<std::string> some;
        for (std::string row; some.size() < p.at_once && p.rows.next(row);) some.push_back(row);
        if (some.empty()) break;
        p.ahead.push_back(
            std::async(std::launch::async, [&p, some = std::move(some)] { return p.answers_to(some); }));
    }
    if (p.ahead.empty()) {
        if (Check wrong = p.unreadable()) return *wrong;
        return Block{};
    }
    auto [block, seconds] = p.ahead.front().get();
    p.ahead.pop_front();
    const double fitting = 0.02 / std::max(seconds, 1e-9) * static_cast<double>(block.rows);
    p.at_once = static_cast<std::size_t>(std::clamp(fitting, 1.0, 4096.0));
    return std::move(block);
}

}  // namespace statplan
