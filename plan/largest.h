// The largest value over an unknown probability: levels of tests whose null hypothesis leaves one open.
#pragma once

#include <functional>

#include "statplan/catalogue.h"

namespace statplan {

/// The largest value on [0, 1] of the probability of some outcomes of n trials (in one group or several, all with
/// success probability p), as a function of p.
///
/// On the scale of the angle asin(sqrt(p)) counts have the same spread 1 / (2 sqrt(n)) for every p, and the
/// function, a mean over counts, cannot change faster than that: its second derivative is at most 2 n, so that
/// between points 1 / (32 sqrt(n)) apart it rises at most 2.5e-4 above them. Every place that comes within that of
/// the largest point is refined to the last digits by Brent's method. NaN when cancelled.
double largest_over_probabilities(double n, Cancel* cancel, const std::function<double(double)>& probability);

}  // namespace statplan
