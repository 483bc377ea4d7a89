// The only place that asks a cancellation object.
#pragma once

#include "orvcommon/query_cancel.h"

namespace statpower {

inline bool stop_requested(OrvCommon_940::OrvQueryCancel* cancel) {
    return cancel != nullptr && cancel->IsCancelRequested();
}

}  // namespace statpower
