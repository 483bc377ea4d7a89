// What every test of two independent proportions checks first.
#pragma once

#include "proportions/proportion.h"
#include "statpower/core.h"

namespace statpower {

inline bool is_group_size(double n) {
    return n >= 1 - tol1;
}

inline bool are_two_samples(double n1, double n2, double p1, double p2) {
    return is_group_size(n1) && is_group_size(n2) && is_between_0_and_1(p1) && is_between_0_and_1(p2);
}

}  // namespace statpower
