#include "plan/text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <numeric>

namespace statplan {

std::string number(double x, int digits) {
    if (std::isnan(x)) return "not a number";
    if (std::isinf(x)) return x > 0 ? "infinity" : "-infinity";
    char text[32];
    // Whole numbers are written out: 1000000 people, not 1e+06.
    if (x == std::trunc(x) && std::abs(x) < 1e15)
        std::snprintf(text, sizeof text, "%.0f", x == 0 ? 0.0 : x);
    else
        std::snprintf(text, sizeof text, "%.*g", digits, x);
    return text;
}

std::string exactly(double x) {
    if (!std::isfinite(x) || x == std::trunc(x)) return number(x, 17);
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, x).ptr};
}

std::string joined(const std::vector<std::string>& words, std::string_view last) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += i + 1 == words.size() ? last : ", ";
        text += words[i];
    }
    return text;
}

namespace {

/// Letters to insert, remove or replace, to make one word of the other (V. I. Levenshtein, 1966).
std::size_t edits(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({row[j] + 1, row[j + 1] + 1, replaced});
        }
    }
    return row.back();
}

}  // namespace

std::string_view nearest(std::string_view word, const std::vector<std::string_view>& known) {
    word = word.substr(0, 40);
    std::string_view best;
    std::size_t least = std::max<std::size_t>(2, word.size() / 3) + 1;
    for (const std::string_view candidate : known)
        if (const std::size_t distance = edits(word, candidate); distance < least)
            least = distance, best = candidate;
    return best;
}

std::string did_you_mean(std::string_view word, const std::vector<std::string_view>& known,
                         std::string_view dashes) {
    const std::string_view near = nearest(word, known);
    if (near.empty()) return "";
    return "; did you mean " + std::string(dashes) + std::string(near) + "?";
}

std::string escaped(std::string_view given) {
    std::string text;
    for (std::size_t i = 0; i < given.size();) {
        if (text.size() > 60) return text + "...";
        const auto byte = static_cast<unsigned char>(given[i]);
        // Length of a UTF-8 sequence by its first byte; 0: none starts here.
        const std::size_t length = byte < 0x80   ? 1
                                   : byte < 0xC2 ? 0
                                   : byte < 0xE0 ? 2
                                   : byte < 0xF0 ? 3
                                   : byte < 0xF5 ? 4
                                                 : 0;
        bool valid = length > 0 && i + length <= given.size() && byte >= 0x20 && byte != 0x7F;
        for (std::size_t j = 1; valid && j < length; ++j)
            valid = (static_cast<unsigned char>(given[i + j]) & 0xC0) == 0x80;
        if (valid) {
            text += given.substr(i, length);
            i += length;
        } else {
            char code[8];
            std::snprintf(code, sizeof code, "\\x%02x", byte);
            text += code;
            ++i;
        }
    }
    return text;
}

std::string quoted(std::string_view given) {
    std::string text = "'";
    text += escaped(given);
    text += '\'';
    return text;
}

std::string rule_of(const Argument& a) {
    if (a.kind == Kind::choice) {
        std::vector<std::string> words(a.choices.begin(), a.choices.end());
        return "one of " + joined(words, " or ");
    }
    std::vector<std::string> limits;
    const auto& [low, high, low_open, high_open] = a.range;
    if (low > -kInfinity) limits.push_back((low_open ? "greater than " : "at least ") + number(low));
    if (high < kInfinity) limits.push_back((high_open ? "less than " : "at most ") + number(high));
    const std::string limit = joined(limits);
    if (a.kind == Kind::list) {
        const std::string numbers = a.whole_elements ? "a list of whole numbers" : "a list of numbers";
        return limits.empty() ? numbers : numbers + ", each " + limit;
    }
    if (a.kind == Kind::whole) return limits.empty() ? "a whole number" : "a whole number, " + limit;
    return limits.empty() ? "a number" : limit;
}

std::string value_of(const Argument& a, double value, int digits) {
    if (a.kind != Kind::choice || !(value >= 0 && value < static_cast<double>(a.choices.size())))
        return number(value, digits);
    return std::string(a.choices[static_cast<std::size_t>(value)]);
}

}  // namespace statplan
