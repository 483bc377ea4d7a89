// Confidence intervals of proportions.
#pragma once

#include "orvcommon/dist_fun.h"

namespace statpower {

/// The normal quantile of a two-sided 100 (1 - alpha) % interval.
inline double z_quantile(double alpha) {
    return OrvMath_940::OrvDistFun::IdfStdNorm(1 - alpha / 2);
}

}  // namespace statpower
