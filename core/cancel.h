// The only place that asks a cancellation object.
#pragma once

#include <algorithm>
#include <cstdint>

#include "orvcommon/query_cancel.h"

namespace statpower {

inline bool stop_requested(OrvCommon_940::OrvQueryCancel* cancel) {
    return cancel != nullptr && cancel->IsCancelRequested();
}

/// The same asked `times` times, until the first yes: for a stretch of work that is done in one step where
/// the rules ask once for each of its parts.
inline bool stop_requested(OrvCommon_940::OrvQueryCancel* cancel, std::int64_t times) {
    if (cancel == nullptr) return false;
    while (times-- > 0)
        if (cancel->IsCancelRequested()) return true;
    return false;
}

/// Asks a cancellation object as often as the rules ask it, some of it ahead: before work that comes first
/// and cannot be stopped on the way.
class Questions {
  public:
    explicit Questions(OrvCommon_940::OrvQueryCancel* cancel) : cancel_(cancel) {}

    bool any() const { return cancel_ != nullptr; }

    /// Asks now the question that would come next.
    bool stop_ahead() {
        ++ahead_;
        return stop_requested(cancel_);
    }

    /// Asks `times` questions, or what is left of them.
    bool stop(std::int64_t times = 1) {
        const std::int64_t asked = std::min(ahead_, times);
        ahead_ -= asked;
        return stop_requested(cancel_, times - asked);
    }

  private:
    OrvCommon_940::OrvQueryCancel* cancel_;
    std::int64_t ahead_ = 0;
};

}  // namespace statpower
