// Questions as a person types them.
#pragma once

#include <sstream>
#include <string>

#include "statplan/plan.h"

namespace statplan {

/// "t-one size --d 0.5 --power 0.9", read as the doors read it.
inline Outcome<Question> question_of(const std::string& command) {
    std::istringstream text(command);
    std::string test, question, word;
    text >> test >> question;
    std::vector<std::pair<std::string, std::string>> words;
    while (text >> word) {
        std::string value;
        text >> value;
        words.emplace_back(word.substr(2), value);
    }
    return read_question(test, question, words);
}

inline Outcome<Record> asked(const std::string& command, Cancel* cancel = nullptr) {
    const auto question = question_of(command);
    if (!question) return question.refusal();
    return ask(*question, cancel);
}

/// The answer of that name; every element of a list alike, or NaN.
inline double answer_of(const Record& record, std::string_view name) {
    for (const auto* items : {&record.answer, &record.effects})
        for (const Item& item : *items)
            if (item.argument->name == name) {
                for (const double x : item.values)
                    if (x != item.values.front()) return kNotGiven;
                return item.values.front();
            }
    return kNotGiven;
}

/// The answer of a question that has one.
inline double answer_to(const std::string& command, std::string_view name) {
    const auto record = asked(command);
    return record ? answer_of(*record, name) : kNotGiven;
}

/// What is said where there is no answer; empty where there is one.
inline std::string refusal_of(const std::string& command) {
    const auto record = asked(command);
    return record ? std::string() : record.refusal().message();
}

}  // namespace statplan
