#include "correlation/fisher_z.h"

#include <cmath>
#include <limits>

#include "core/sums.h"
#include "statpower/correlation.h"

std::optional<double> statpower::spearman_variance(int method, double N, double r) {
    switch (method) {
        case STATPOWER_BONETT_WRIGHT:
            return (1 + square(r) / 2) / (N - 3);
        case STATPOWER_FIELLER_HARTLEY_PEARSON:
            return 1.06 / (N - 3);
        case STATPOWER_CARUSO_CLIFF: {
            const double z = std::abs(r) == 1 ? std::numeric_limits<double>::max() : std::abs(InvTanh(r));
            return 1 / (N - 2) + z / (6 * N + 4 * std::sqrt(N));
        }
        default:
            return std::nullopt;
    }
}
