// Where a measure of a design reaches its target.
#pragma once

#include <cmath>
#include <functional>
#include <optional>
#include <vector>

#include "statplan/catalogue.h"

namespace statplan {

/// What is still missing to the target at x: negative while it is not reached. NaN counts as not reached.
using Shortfall = std::function<double(double x)>;

/// Narrows a bracket of which exactly one end reaches the target until `close` says so (by TOMS algorithm
/// 748).
/// @return the end that reaches it
double narrowed(const Shortfall& shortfall, double a, double b,
                const std::function<bool(double, double)>& close);

/// The same to the last digits of x.
double narrowed(const Shortfall& shortfall, double a, double b);

/// Every place inside a range where the target begins to be reached, on either side of `null` where there is one,
/// first those above it. None where it is reached at `null` itself.
std::vector<double> crossings(const Shortfall& shortfall, const Range& range, double null);

/// The whole size that a real one needs; one that is whole but for rounding, as 100 * 1.1, is whole.
inline double rounded_up(double size) {
    constexpr double kRounding = 1e-10;
    return std::ceil(size * (1 - kRounding));
}

/// How many are enrolled so that `size` are left of them.
inline double enrolled(double size, double dropout) {
    return rounded_up(size / (1 - dropout));
}

/// Whole sizes for growing real sizes: group i has the ceiling of its share, but at least `least`. The steps
/// are the distinct allocations, smallest first.
class Allocation {
  public:
    Allocation(std::vector<double> shares, double least) : shares_(std::move(shares)), least_(least) {}

    std::vector<double> at(double size) const;
    /// The next larger allocation; the next smaller one, or none.
    std::vector<double> above(const std::vector<double>& sizes) const;
    std::optional<std::vector<double>> below(const std::vector<double>& sizes) const;

    const std::vector<double>& shares() const { return shares_; }
    double least() const { return least_; }

  private:
    std::vector<double> shares_;
    double least_;
};

}  // namespace statplan
