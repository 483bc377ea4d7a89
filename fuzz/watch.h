// What a call is watched for: processor time, memory, and how soon it hears that it shall stop.
#pragma once

#include <time.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>

#include "orvcommon/query_cancel.h"

namespace fuzz {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(FUZZ_SANITIZED)
inline constexpr double kSlowdown = 8;
#else
inline constexpr double kSlowdown = 1;
#endif
inline constexpr double kLongestCall = 1000 * kSlowdown;  // milliseconds, without a cancel object
inline constexpr double kLatestAnswer = 50 * kSlowdown;   // after it said stop
inline constexpr std::size_t kMostMemory = 200u << 20;

/// Of the thread, so that a busy machine finds nothing that is not there.
inline double processor_milliseconds() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return 1e3 * static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_nsec);
}

/// Says stop from a query or from a moment on.
class WatchedCancel : public OrvCommon_940::OrvQueryCancel {
  public:
    WatchedCancel(double stop_at_query, double stop_after)
        : stop_at_(stop_at_query), stop_after_(stop_after) {}

    bool IsCancelRequested() override {
        ++queries_;
        if (said_stop_at_) return true;
        const bool looks = static_cast<std::uint64_t>(queries_) % 64 == 0 || queries_ < 64;
        if (queries_ >= stop_at_ || (looks && processor_milliseconds() >= deadline_))
            said_stop_at_ = processor_milliseconds();
        return said_stop_at_.has_value();
    }
    void start() { deadline_ = processor_milliseconds() + stop_after_; }

    /// Milliseconds from when it would have said stop to now; nothing as long as it would not.
    std::optional<double> overdue() const {
        const double now = processor_milliseconds();
        if (said_stop_at_) return now - *said_stop_at_;
        return now >= deadline_ ? std::optional(now - deadline_) : std::nullopt;
    }

  private:
    double stop_at_, stop_after_;
    double queries_ = 0;
    double deadline_ = std::numeric_limits<double>::infinity();
    std::optional<double> said_stop_at_;
};

}  // namespace fuzz
