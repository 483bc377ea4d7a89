// The cancellation object of the common library.
#pragma once

#include "orvcommon/visibility.h"

namespace OrvCommon_940 {

/// A caller's wish to stop a long computation. The caller derives from it, owns the object and passes it by
/// pointer; a null pointer means that the computation is never cancelled.
class ORVCOMMON_API OrvQueryCancel {
  public:
    virtual ~OrvQueryCancel();

    /// True when the computation that asks should stop. It is asked on the calling thread, often many
    /// thousand times a second, and should answer at once. (Third entry of the table of virtual operations:
    /// the destructor takes the first two.)
    virtual bool IsCancelRequested() = 0;
};

}  // namespace OrvCommon_940
