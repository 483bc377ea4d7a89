// The allocation functions of the program, which the library uses too: they count what a thread holds and refuse more than a
// limit.
#pragma once

#include <cstddef>

namespace fuzz::memory {

/// Counts what the thread allocates from here on.
class Watch {
  public:
    /// @param limit  bytes in use at once, beyond which an allocation fails
    explicit Watch(std::size_t limit);
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    std::size_t live() const;  ///< bytes in use
    std::size_t peak() const;  ///< the most that were in use at once
};

}  // namespace fuzz::memory
