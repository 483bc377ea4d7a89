#include "orvcommon/mv.h"

#include <limits>

namespace OrvCommon_940 {

double OrvMV::Missing() noexcept {
    return std::numeric_limits<float>::lowest();
}

bool OrvMV::IsMissing(double value) noexcept {
    return value == Missing();
}

}  // namespace OrvCommon_940
