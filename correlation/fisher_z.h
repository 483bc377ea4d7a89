// Fisher's z, the inverse hyperbolic tangent of a correlation, and its spread: what power and half-width of
// every kind of correlation share.
#pragma once

#include <optional>

namespace statpower {

inline bool is_correlation(double r) {
    return r >= -1 && r <= 1;
}

/// Variance of z for Spearman's rank correlation, z that of the correlation r. The largest finite double
/// stands for |z| at r = 1 and -1. Nothing for an unknown method.
/// @param method  a StatpowerSpearmanVariance
std::optional<double> spearman_variance(int method, double N, double r);

}  // namespace statpower
