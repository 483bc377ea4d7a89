// Entry of a coverage-guided fuzzer for the planner: the first byte chooses the door, the others are the request.
#include <cstdio>
#include <cstdlib>

#include "fuzz/plans.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const fuzz::Request request{static_cast<fuzz::Door>(data[0] % 3), 1e300, 50,
                                std::string(reinterpret_cast<const char*>(data) + 1, size - 1)};
    const fuzz::Reply reply = answer(request);
    for (const std::string& fault : reply.faults)
        std::fprintf(stderr, "FOUND: %s: %s\n", fault.c_str(), written(request).c_str());
    if (!reply.faults.empty()) std::abort();
    return 0;
}
