// Entry of a coverage-guided fuzzer: the bytes choose the function and its arguments.
#include <cstdio>
#include <cstdlib>

#include "fuzz/calls.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::ByteChoices choices({data, size});
    const std::size_t index = choices.below(fuzz::function_names().size());
    const auto manner = choices.one_in(2) ? fuzz::Manner::kOrdinary : fuzz::Manner::kMixed;
    const fuzz::Observation seen = fuzz::call(index, manner, choices);
    for (const std::string& fault : seen.faults)
        std::fprintf(stderr, "FOUND: %s: %s\n", fault.c_str(), seen.call.c_str());
    if (!seen.faults.empty()) std::abort();
    return 0;
}
