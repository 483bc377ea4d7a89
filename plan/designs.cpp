// Tables of designs: a plan for each combination of given words, prepared once, then rows of numbers.
#include "statplan/designs.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <nlohmann/json.hpp>

#include "plan/json.h"
#include "plan/text.h"

namespace statplan {

namespace {

/// The cells of a row, without quotes.
std::vector<std::string> cells_of(std::string_view row) {
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const char c = row[i];
        if (c == '"' && quoted && i + 1 < row.size() && row[i + 1] == '"')
            cells.back() += row[++i];
        else if (c == '"')
            quoted = !quoted;
        else if (c == ',' && !quoted)
            cells.emplace_back();
        else
            cells.back() += c;
    }
    return cells;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

/// Sets an argument from a cell.
Check give(Values& values, const Argument& a, const std::string& cell) {
    const bool digits = cell.find_first_not_of("0123456789.-eE") == cell.npos;
    if (digits && (a.kind == Kind::number || a.kind == Kind::whole)) {
        char* end = nullptr;  // strtod: not every standard library reads a double by from_chars
        const double number = std::strtod(cell.c_str(), &end);
        if (end == cell.c_str() + cell.size()) {
            values.set(a, number);
            return {};
        }
    }
    const auto one_value = [&] {
        return Refusal{.argument = std::string(a.name), .reason = "takes one value in a row"};
    };
    std::string text = cell;
    if (a.kind == Kind::list)
        std::ranges::replace(text, ' ', ',');
    else if (text.find(':') != text.npos)
        return one_value();  // before a range is filled in
    const auto several = read_values(a, text);
    if (!several) return several.refusal();
    if (a.kind != Kind::list && several->size() != 1) return one_value();
    if (a.kind == Kind::list)
        values.set(a, *several);
    else
        values.set(a, several->front());
    return {};
}

constexpr std::size_t kMostPatterns = 10000;  // kept; a file made by a program has a few

}  // namespace

struct Designs::Parts {
    /// What rows that give the same words share.
    struct Pattern {
        std::optional<Plan> plan;  // none: refused
        std::string refusal;
        std::vector<std::pair<std::size_t, const Argument*>> given;  // the word's place, and the argument
    };

    std::vector<std::string> words;      // the columns, then those that only `otherwise` has
    std::vector<std::string> otherwise;  // for each word
    std::vector<bool> kept;
    std::size_t columns = 0;
    std::size_t test = 0, question = 0, solve_for = 0;  // their places among the words
    std::vector<std::string> answers;                   // names of the answers, in their order
    std::map<std::string, Pattern, std::less<>> patterns;

    std::size_t place_of(const std::string& word) {
        const auto found = std::ranges::find(words, word);
        if (found != words.end()) return static_cast<std::size_t>(found - words.begin());
        words.push_back(word);
        return words.size() - 1;
    }

    /// What a row gives for every word.
    std::vector<std::string> given_in(std::string_view row) const {
        std::vector<std::string> cells = cells_of(row);
        cells.resize(std::max(cells.size(), words.size()));
        for (std::size_t i = 0; i < words.size(); ++i) {
            const std::string_view text = trimmed(cells[i]);
            if (text.empty())
                cells[i] = otherwise[i];
            else if (text.size() < cells[i].size())
                cells[i] = std::string(text);
        }
        return cells;
    }

    bool is_argument(std::size_t i) const { return !kept[i] && i != test && i != question && i != solve_for; }

    std::string key_of(const std::vector<std::string>& cells) const {
        std::string key = cells[test] + '\n' + cells[question] + '\n' + cells[solve_for] + '\n';
        for (std::size_t i = 0; i < words.size(); ++i)
            if (is_argument(i)) key += cells[i].empty() ? '-' : 'x';
        return key;
    }

    Pattern pattern_of(const std::vector<std::string>& cells) const {
        Pattern pattern;
        GivenWords question_words;
        if (!cells[solve_for].empty()) question_words.emplace_back("solve-for", cells[solve_for]);
        std::vector<std::string_view> names;
        std::vector<std::size_t> places;
        for (std::size_t i = 0; i < words.size(); ++i) {
            if (!is_argument(i) || cells[i].empty()) continue;
            names.push_back(words[i]);
            places.push_back(i);
            if (words[i] == common::half_width.name) question_words.emplace_back(words[i], "1");
        }
        const auto asked = read_question(cells[test], cells[question], question_words);
        auto plan = asked ? Plan::prepare(*asked->test, asked->unknown, names) : asked.refusal();
        if (plan && plan->question() == "effect")
            plan = Refusal{.argument = {}, .reason = "effect is no question of a table of designs"};
        if (!plan) {
            pattern.refusal = plan.refusal().message();
            return pattern;
        }
        for (std::size_t i = 0; i < places.size(); ++i)
            pattern.given.emplace_back(places[i], plan->given()[i]);
        pattern.plan.emplace(std::move(*plan));
        return pattern;
    }
};

Designs::Designs(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
Designs::~Designs() = default;
Designs::Designs(Designs&&) noexcept = default;
Designs& Designs::operator=(Designs&&) noexcept = default;

Outcome<Designs> Designs::read(std::string_view header, const GivenWords& otherwise,
                               const std::vector<std::string_view>& kept) {
    auto parts = std::make_unique<Parts>();
    Parts& p = *parts;
    if (header.starts_with("\xEF\xBB\xBF")) header.remove_prefix(3);  // a byte order mark
    for (const std::string& cell : cells_of(header)) p.words.emplace_back(trimmed(cell));
    p.columns = p.words.size();
    p.test = p.place_of("test"), p.question = p.place_of("question"), p.solve_for = p.place_of("solve-for");
    for (const auto& [word, text] : otherwise) p.place_of(word);
    std::vector<std::string_view> known{"test", "question", "solve-for"};
    for (const Test* test : catalogue())
        for (const Argument* a : arguments(*test)) known.push_back(a->name);
    for (const std::string& word : p.words) {
        p.kept.push_back(std::ranges::find(kept, word) != kept.end());
        if (std::ranges::count(p.words, word) > 1)
            return Refusal{.argument = {},
                           .reason = "the column " + statplan::quoted(word) + " is there twice"};
        if (p.kept.back() || std::ranges::find(known, word) != known.end()) continue;
        return Refusal{.argument = {},
                       .reason = "the column " + statplan::quoted(word) + " is no word of any test" +
                                 did_you_mean(word, known) + " (keep carries a column through unread)"};
    }
    p.otherwise.resize(p.words.size());
    for (const auto& [word, text] : otherwise) p.otherwise[p.place_of(word)] = text;
    return Designs(std::move(parts));
}

void Designs::see(std::string_view row) {
    const auto cells = parts_->given_in(row);
    std::string key = parts_->key_of(cells);
    if (parts_->patterns.contains(key) || parts_->patterns.size() >= kMostPatterns) return;
    auto pattern = parts_->pattern_of(cells);
    if (pattern.plan)
        for (const std::string_view name : pattern.plan->item_names())
            if (std::ranges::find(parts_->answers, name) == parts_->answers.end())
                parts_->answers.emplace_back(name);
    parts_->patterns.emplace(std::move(key), std::move(pattern));
}

std::string Designs::header() const {
    std::string line;
    for (std::size_t i = 0; i < parts_->columns; ++i) line += in_csv(parts_->words[i]) + ",";
    for (const std::string& name : parts_->answers) {
        const auto columns_end = parts_->words.begin() + static_cast<std::ptrdiff_t>(parts_->columns);
        line +=
            (std::find(parts_->words.begin(), columns_end, name) == columns_end ? "" : "found-") + name + ",";
    }
    return line + "refusal";
}

Designs::Line Designs::answer(std::string_view row, int digits, Cancel* cancel) const {
    const Parts& p = *parts_;
    Line line{std::string(row), true};
    const auto refused = [&](std::string_view why) {
        line.text += std::string(p.answers.size() + 1, ',') + in_csv(why);
        return line;
    };
    if (const auto cells = cells_of(row); cells.size() != p.columns) {
        line.text.clear();
        for (std::size_t i = 0; i < p.columns; ++i)
            line.text += (i ? "," : "") + in_csv(i < cells.size() ? std::string_view(cells[i]) : "");
        return refused("the row has " + number(static_cast<double>(cells.size())) + " cells, the header " +
                       number(static_cast<double>(p.columns)));
    }
    const auto cells = p.given_in(row);
    const auto known = p.patterns.find(p.key_of(cells));
    std::optional<Parts::Pattern> unseen;
    if (known == p.patterns.end()) unseen.emplace(p.pattern_of(cells));
    const Parts::Pattern& pattern = unseen ? *unseen : known->second;
    if (!pattern.plan) return refused(pattern.refusal);

    Values values = pattern.plan->blank();
    for (const auto& [place, argument] : pattern.given)
        if (const Check wrong = give(values, *argument, cells[place])) return refused(wrong->message());
    Plan::Answer answer;
    if (const Check wrong = pattern.plan->answer(values, answer, cancel)) return refused(wrong->message());
    const auto items = pattern.plan->items(values, answer, cancel);
    for (const std::string& name : p.answers) {
        line.text += ',';
        for (const Item& item : items)
            if (item.argument->name == name) line.text += in_csv(item, digits);
    }
    line.text += ',';
    line.refused = false;
    return line;
}

bool Rows::fill() {
    text_.erase(0, begin_);
    at_ -= begin_, begin_ = 0;
    too_long_ = text_.size() > (1 << 20);
    if (too_long_) return false;
    text_.resize(at_ + (1 << 16));
    text_.resize(at_ + std::fread(text_.data() + at_, 1, 1 << 16, file_));
    return text_.size() > at_;
}

bool Rows::next(std::string& row) {
    for (bool quoted = false; at_ < text_.size() || fill(); ++at_) {
        if (csv_ && text_[at_] == '"') quoted = !quoted;
        if (text_[at_] != '\n' || quoted) continue;
        row.assign(text_, begin_, at_ - begin_);
        if (row.ends_with('\r')) row.pop_back();
        bytes_ += at_ + 1 - begin_;
        begin_ = at_ + 1;
        if (!row.empty()) return ++at_, true;
    }
    row.assign(text_, begin_);
    begin_ = text_.size();
    return !row.empty() && !too_long_;
}

Designs::Line answer_json(std::string_view request, const GivenWords& otherwise, Cancel* cancel) {
    auto json = nlohmann::ordered_json::parse(request, nullptr, false);
    if (json.is_object())
        for (const auto& [word, text] : otherwise)
            if (!json.contains(word) || json[word].is_null()) json[word] = text;
    const auto question = question_from_json(
        json.is_object() ? json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) : "");
    if (!question) return {to_json(question.refusal()), true};
    if (is_table(*question)) {
        const auto table = ask_table(*question, cancel);
        return table ? Designs::Line{to_json(*table), !table->refusals.empty()}
                     : Designs::Line{to_json(table.refusal()), true};
    }
    const auto record = ask(*question, cancel);
    return record ? Designs::Line{to_json(*record), false} : Designs::Line{to_json(record.refusal()), true};
}

}  // namespace statplan
