// Requests of the planner: questions as JSON, tables of designs as CSV, columns of numbers; from the words of the catalogue and
// any bytes, answered and watched.
#pragma once

#include <string>
#include <vector>

#include "fuzz/choices.h"

namespace fuzz {

/// Through which door a text goes in.
enum class Door { ask, rows, columns };

/// A text and when it is told to stop.
struct Request {
    Door door;
    double stop_at_query,
        stop_after;  // the query and the millisecond of processor time from which on it says stop
    std::string text;
};

/// What was seen of an answer.
struct Reply {
    std::vector<std::string> faults;  ///< empty: none
    double milliseconds = 0;          ///< of processor time
    bool answered = false;            ///< not refused
};

Request draw_request(Choices& choices);
Reply answer(const Request& request);

/// A request on one line of text, and back.
std::string written(const Request& request);
Request read_request(const std::string& line);

}  // namespace fuzz
