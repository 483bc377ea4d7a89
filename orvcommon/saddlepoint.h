// Distribution functions of the noncentral F family for large parameters, by a contour integral.
#pragma once

#include "orvcommon/numeric.h"

namespace orvmath {

/// Q = X - c Y, where Y is a gamma variable of shape b and X one of shape a + J, J a Poisson variable of
/// mean h (half a noncentral chi-square variable; h = 0: the beta family).
struct QuotientPoint {
    double a, b, h, c;
    double mean;  // of Q: a + h - b c, free of cancellation
};

/// P(Q <= 0) and P(Q > 0). The cost does not depend on the parameters.
Tails saddlepoint_tails(const QuotientPoint& q);

}  // namespace orvmath
