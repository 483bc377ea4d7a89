#include "orvcommon/query_cancel.h"

namespace OrvCommon_940 {

// The first virtual function defined out of line: the table of virtual operations is emitted here, once.
OrvQueryCancel::~OrvQueryCancel() = default;

}  // namespace OrvCommon_940
