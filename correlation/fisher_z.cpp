#include "correlation/fisher_z.h"

#include <cmath>
#include <limits>

#include "core/sums.h"
#include "statpower/core.h"

std::optional<double> statpower::spearman_variance(int method, double N, double r) {
    switch (method) {
        case 0:
            return (1 + square(r) / 2) / (N - 3);
        case 1:
            return 1.06 / (N - 3);
        case 2: {
            const double z = std::abs(r) == 1 ? std::numeric_limits<double>::max() : std::abs(InvTanh(r));
            return 1 / (N - 2) + z / (6 * N + 4 * std::sqrt(N));
        }
        default:
            return std::nullopt;
    }
}
