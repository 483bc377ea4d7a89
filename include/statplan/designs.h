// Whole tables of designs as text, for doors that read files.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "statplan/plan.h"

namespace statplan {

/// Words and what they are given as text; "test" and "question" are words, too.
using GivenWords = std::vector<std::pair<std::string, std::string>>;

/// A table of designs as CSV: each column a word, each row a design. A blank cell is not given. Answers stand behind
/// the columns of the designs, named as in a record, with found- before a name that is a column already; why a
/// row is refused stands in the last column, refusal.
///
/// Two passes: `see` every row, then `answer` them, on any number of threads.
class STATPLAN_API Designs {
  public:
    /// @param header     the first line
    /// @param otherwise  words for rows that do not give them
    /// @param kept       columns that are carried through unread
    static Outcome<Designs> read(std::string_view header, const GivenWords& otherwise = {},
                                 const std::vector<std::string_view>& kept = {});

    void see(std::string_view row);
    /// The first line of the answers, when all rows have been seen.
    std::string header() const;

    struct Line {
        std::string text;
        bool refused;
    };
    /// A row with its answers.
    /// @param digits  significant digits; 0: as many as it takes to read the same doubles back
    Line answer(std::string_view row, int digits = 0, Cancel* cancel = nullptr) const;

    ~Designs();
    Designs(Designs&&) noexcept;
    Designs& operator=(Designs&&) noexcept;

  private:
    struct Parts;
    explicit Designs(std::unique_ptr<Parts> parts);
    std::unique_ptr<Parts> parts_;
};

/// The rows of a file, one after another: of CSV, where line ends inside quotes do not count, or lines. Empty lines
/// are none.
class STATPLAN_API Rows {
  public:
    Rows(std::FILE* file, bool csv) : file_(file), csv_(csv) {}

    /// The next row, without its line end; false where there is none, or none that is shorter than a million
    /// bytes: then `too_long`.
    bool next(std::string& row);
    bool too_long() const { return too_long_; }
    /// Size of the rows read so far; a last one without a line end does not count.
    std::size_t bytes() const { return bytes_; }

  private:
    bool fill();

    std::FILE* file_;
    bool csv_, too_long_ = false;
    std::string text_;
    std::size_t begin_ = 0, at_ = 0, bytes_ = 0;
};

/// The answer to a request as JSON: a record, a table or a refusal, on one line.
STATPLAN_API Designs::Line answer_json(std::string_view request, const GivenWords& otherwise = {},
                                       Cancel* cancel = nullptr);

/// The answers of a file of designs, CSV as of `Designs` or a request as JSON on each line: by several threads, in
/// the order of the rows, in bounded memory.
class STATPLAN_API FileAnswers {
  public:
    struct Options {
        bool json = false;
        GivenWords otherwise = {};           // words for rows that do not give them
        std::vector<std::string> kept = {};  // columns that are carried through unread
        int digits = 0;                      // significant ones of CSV; 0: as of Designs::answer
        std::size_t jobs = 1;                // rows answered at the same time
    };

    /// @param designs  a file from its beginning; it must live as long as this
    static Outcome<FileAnswers> of(std::FILE* designs, Options options);

    /// The first line of the answers; empty of JSON.
    const std::string& header() const;
    /// How many rows there are; 0 where it is not known (JSON is read once).
    std::size_t rows() const;

    /// Leaves out as many designs as a file has whole rows of answers.
    /// @return the rows left out, and the size of the answers up to the end of the last whole one
    Outcome<std::pair<std::size_t, std::size_t>> skip_answered(std::FILE* answers);

    struct Block {
        std::string text = {};  // of some rows, each with its line end
        std::size_t rows = 0, refused = 0;
    };
    /// The next answers, some 20 ms of work for one thread; no rows behind the last.
    Outcome<Block> next();

    ~FileAnswers();
    FileAnswers(FileAnswers&&) noexcept;
    FileAnswers& operator=(FileAnswers&&) noexcept;

  private:
    struct Parts;
    explicit FileAnswers(std::unique_ptr<Parts> parts);
    std::unique_ptr<Parts> parts_;
};

}  // namespace statplan
