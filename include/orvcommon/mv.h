// The missing value of the common library.
#pragma once

#include "orvcommon/visibility.h"

namespace OrvCommon_940 {

/// The double that stands for an absent result: the most negative finite single-precision number
/// (-3.4028234663852886e38). It survives narrowing to single precision, equals itself, is whole (a ceiling
/// keeps it) and is negative (an objective that is missing reads "the sample is still too small").
class ORVCOMMON_API OrvMV {
  public:
    /// The missing value itself.
    static double Missing() noexcept;

    /// True for exactly the missing value; false for every other number and for NaN.
    static bool IsMissing(double value) noexcept;
};

}  // namespace OrvCommon_940
