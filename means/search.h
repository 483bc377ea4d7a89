// What the sample-size searches of all t tests share.
#pragma once

#include <vector>

#include "core/design.h"
#include "statpower/core.h"

namespace statpower {

/// Sample size of a t test (of group 1, where there are two): searched from 2 upwards to within 1e-9.
inline double search_size(const std::vector<double>& design, POWER_NAMESPACE::Objective objective) {
    return PowerReverse(design, objective, nullptr, 2, 400, 1e-9);
}

/// The power of a design with one effect size, as the objective of its search: power at N minus the target.
/// Design: target power, es, alpha.
inline double power_above_target(double (*power)(double N, double es, double alpha), double N,
                                 const std::vector<double>& design) {
    const auto [target, es, alpha] = DesignReader(design).numbers<3>();
    return power(N, es, alpha) - target;
}

}  // namespace statpower
