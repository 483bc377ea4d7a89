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
///   0: (1 + r^2 / 2) / (N - 3)                       Bonett and Wright (2000)
///   1: 1.06 / (N - 3)                                Fieller, Hartley and Pearson (1957)
///   2: 1 / (N - 2) + |z| / (6 N + 4 sqrt(N))         Caruso and Cliff (1997)
std::optional<double> spearman_variance(int method, double N, double r);

}  // namespace statpower
