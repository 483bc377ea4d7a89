// The kinds of correlation of the tables in tests/data/correlation, behind one set of arguments.
#pragma once

#include "statpower/correlation.h"
#include "support/values.h"

namespace testing_support {

enum Kind { kPearson, kCorrectedPearson, kPartial, kSpearman0, kSpearman1, kSpearman2 };
constexpr Kind kAllKinds[] = {kPearson, kCorrectedPearson, kPartial, kSpearman0, kSpearman1, kSpearman2};

inline double power(Kind kind, int sided, double N, double k, double r, double r0, double alpha) {
    if (kind == kPartial) return PowerbyOneSampPartial(sided, N, k, r, r0, alpha);
    if (kind < kPartial) return PowerbyOneSampPearson(sided, kind == kCorrectedPearson, N, r, r0, alpha);
    return PowerbyOneSampSpearman(kind - kSpearman0, sided, N, r, r0, alpha);
}

inline double size_for_power(Kind kind, int sided, double target, double k, double r, double r0,
                             double alpha) {
    if (kind == kPartial) return PowerReversebyOneSampPartial(sided, target, k, r, r0, alpha);
    if (kind < kPartial)
        return PowerReversebyOneSampPearson(sided, kind == kCorrectedPearson, nullptr, target, r, r0, alpha);
    return PowerReversebyOneSampSpearman(kind - kSpearman0, sided, target, r, r0, alpha);
}

inline double half_width(Kind kind, double N, double k, double r, double alpha) {
    if (kind == kPartial) return HalfCIOneSampPartial(N, k, r, alpha);
    if (kind < kPartial) return HalfCIOneSampPearson(kind == kCorrectedPearson, N, r, alpha);
    return HalfCIOneSampSpearman(kind - kSpearman0, N, r, alpha);
}

inline double size_for_half_width(Kind kind, OrvCommon_940::OrvQueryCancel* cancel, double target, double k,
                                  double r, double alpha) {
    if (kind == kPartial) return PowerReversebyHalfCIOneSampPartial(cancel, target, k, r, alpha);
    if (kind < kPartial)
        return PowerReversebyHalfCIOneSampPearson(kind == kCorrectedPearson, cancel, target, r, alpha);
    return PowerReversebyHalfCIOneSampSpearman(kind - kSpearman0, cancel, target, r, alpha);
}

}  // namespace testing_support
