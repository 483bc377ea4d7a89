// Every exported function, called with chosen arguments and watched.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/choices.h"

namespace fuzz {

/// What was seen of a call.
struct Observation {
    std::string call;                 ///< the function and its arguments
    std::vector<std::string> faults;  ///< what is wrong with it; empty: nothing
    std::uint64_t answer = 0;         ///< a digest of every bit of the answer
    double milliseconds = 0;          ///< of processor time
    std::size_t peak_bytes = 0;       ///< of memory in use at once
    bool refused_memory = false;      ///< whether more than the limit was asked for, and refused
    bool cancellable = false;         ///< whether a cancel object was passed: the answer may depend on time
};

/// The names of the functions that can be called, once for every overload.
const std::vector<std::string>& function_names();

/// Calls function number `index` of the names.
Observation call(std::size_t index, Manner manner, Choices& choices);

/// Calls a recorded call again: the text of an observation.
Observation call_again(const std::string& text);

/// The call that the thread is in, for reports of crashes; empty outside.
const char* current_call();

}  // namespace fuzz
