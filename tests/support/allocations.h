// The allocation functions of a program that links allocations.cpp, and so of the libraries that it uses: they count what a
// thread holds, and fail when they are told to.
#pragma once

#include <cstddef>
#include <limits>

namespace testing_support {

/// Counts what the thread allocates while it lives. One at a time in a thread.
class Allocations {
  public:
    /// @param most_bytes  one allocation of more fails
    explicit Allocations(std::size_t most_bytes = std::numeric_limits<std::size_t>::max());
    ~Allocations();
    Allocations(const Allocations&) = delete;
    Allocations& operator=(const Allocations&) = delete;

    std::size_t live() const;  ///< bytes in use
    std::size_t peak() const;  ///< the most that were in use at once

    /// Lets so many allocations succeed and all others fail.
    void fail_after(long count);
    void fail_no_more();
};

/// Lets the first, the second, ... allocation of `call` fail until it ends without a failure.
/// @param call  called with the Allocations that count for it; says whether memory ran out
/// @return the number of failures
template <class Call>
int allocations_that_fail(Call call) {
    for (int failures = 0;; ++failures) {
        Allocations allocations;
        allocations.fail_after(failures);
        if (!call(allocations)) return failures;
    }
}

}  // namespace testing_support
