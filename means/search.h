// What the sample-size searches of all t tests share.
#pragma once

#include <tuple>
#include <vector>

#include "core/search.h"

namespace statpower {

/// Sample size of a t test (of group 1, where there are two): searched from 2 upwards.
template <class Design>
double search_size(const Design& design, POWER_NAMESPACE::Objective objective) {
    return search_size(design, objective, nullptr, 2, kFirstReach);
}

/// The same for a power that grows with the size.
template <class Design>
double search_size(const Design& design, POWER_NAMESPACE::Objective objective, const SteadyStart& start) {
    return search_size(design, objective, start, 2, kFirstReach);
}

/// Design vector of the search for the power of one effect size.
struct EffectSearch {
    double target, es, alpha;
    auto fields() { return std::tie(target, es, alpha); }
};

/// Its objective: power at N minus the target.
inline double power_above_target(double (*power)(double N, double es, double alpha), double N,
                                 const std::vector<double>& design) {
    const auto d = unpack<EffectSearch>(design);
    return power(N, d.es, d.alpha) - d.target;
}

}  // namespace statpower
