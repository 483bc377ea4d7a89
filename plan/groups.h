// What the tests of group means in a one-way design share.
#pragma once

#include <numeric>

#include "plan/vocabulary.h"

namespace statplan {

inline const Argument sd_within = sd.means_in_words("Standard deviation within each group");

/// Sizes of all groups together.
inline double total_size(const Values& v) {
    return std::accumulate(v.list(sizes).begin(), v.list(sizes).end(), 0.0);
}

/// Is the spread within groups known from any degree of freedom? Without, the library answers 1.
inline bool has_error_df(const Values& v) {
    return total_size(v) > static_cast<double>(v.list(sizes).size());
}

}  // namespace statplan
