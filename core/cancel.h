// The only place that asks a cancellation object.
#pragma once

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

}  // namespace statpower
