#include "plan/search.h"

#include <algorithm>
#include <boost/math/tools/toms748_solve.hpp>
#include <cstdint>

namespace statplan {

double narrowed(const Shortfall& shortfall, double a, double b,
                const std::function<bool(double, double)>& close) {
    using namespace boost::math::policies;
    using Quiet = policy<domain_error<errno_on_error>, evaluation_error<errno_on_error>,
                         pole_error<errno_on_error>, overflow_error<errno_on_error>>;
    // NaN would end the search early: it is only not reached.
    const auto number = [&](double x) {
        const double missing = shortfall(x);
        return std::isnan(missing) ? -1 : missing;
    };
    if (a > b) std::swap(a, b);
    const double fa = number(a), fb = number(b);
    if (fa >= 0 && fb >= 0) return a;
    std::uintmax_t steps = 200;
    const auto [low, high] = boost::math::tools::toms748_solve(number, a, b, fa, fb, close, steps, Quiet());
    return (fb >= 0) ? high : low;
}

double narrowed(const Shortfall& shortfall, double a, double b) {
    return narrowed(shortfall, a, b, [](double low, double high) {
        return high - low <= 2e-16 * std::max(std::abs(low), std::abs(high));
    });
}

namespace {

/// A point just inside an end of a range.
double inside(double end, bool open, double towards) {
    return open ? std::nextafter(end, towards) : end;
}

/// The farthest place towards `beyond` where there is a value, as there is at `valid`.
double last_with_value(const Shortfall& shortfall, double valid, double beyond) {
    if (!std::isnan(shortfall(beyond))) return beyond;
    for (int halvings = 0; halvings < 100; ++halvings) {
        const double middle = valid + (beyond - valid) / 2;
        (std::isnan(shortfall(middle)) ? beyond : valid) = middle;
    }
    return valid;
}

/// The place on one side of the null where the target begins to be reached.
std::optional<double> crossing_from(const Shortfall& shortfall, double null, double end, bool open) {
    const double sign = end > null ? 1 : -1;
    const auto reaches = [&](double x) { return shortfall(x) >= 0; };
    const auto up_to = [&](double valid, double beyond) -> std::optional<double> {
        const double far = last_with_value(shortfall, valid, beyond);
        if (far == valid || !reaches(far)) return {};
        return narrowed(shortfall, valid, far);
    };
    if (std::isfinite(end)) return up_to(null, inside(end, open, null));
    double step = 1;
    if (reaches(null + sign * step)) {
        while (step > 1e-300 && reaches(null + sign * step / 4)) step /= 4;
        return narrowed(shortfall, null + sign * step / 4, null + sign * step);
    }
    double before = null;
    for (; step < 1e15; step *= 4) {
        const double at = null + sign * step;
        const double missing = shortfall(at);
        if (missing >= 0 || std::isnan(missing)) return up_to(before, at);
        before = at;
    }
    return {};
}

/// Points that cover a range: even in it, and towards its ends by powers of ten.
std::vector<double> grid(const Range& range) {
    std::vector<double> points;
    const auto inside_range = [&](double x) { return range.holds(x); };
    const bool low = std::isfinite(range.low), high = std::isfinite(range.high);
    if (low && high) {
        const double width = range.high - range.low;
        for (int i = 1; i < 16; ++i) points.push_back(range.low + width * i / 16);
        for (double part = 1.0 / 32; part > 1e-15; part /= 8) {
            points.push_back(range.low + width * part);
            points.push_back(range.high - width * part);
        }
    } else {
        const double sign = high ? -1 : 1, end = low ? range.low : high ? range.high : 0;
        for (double step = 1e-30; step < 1e31; step *= 10) {
            points.push_back(end + sign * step);
            if (!low && !high) points.push_back(-step);
        }
    }
    if (!range.low_open) points.push_back(range.low);
    if (!range.high_open) points.push_back(range.high);
    std::erase_if(points, [&](double x) { return !inside_range(x); });
    std::ranges::sort(points);
    return points;
}

}  // namespace

std::vector<double> crossings(const Shortfall& shortfall, const Range& range, double null) {
    std::vector<double> found;
    if (!std::isnan(null)) {
        if (shortfall(null) >= 0) return found;  // no effect is enough
        if (range.high > null)
            if (const auto above = crossing_from(shortfall, null, range.high, range.high_open))
                found.push_back(*above);
        if (range.low < null)
            if (const auto below = crossing_from(shortfall, null, range.low, range.low_open))
                found.push_back(*below);
        return found;
    }
    const std::vector<double> points = grid(range);
    std::vector<double> missing;
    missing.reserve(points.size());
    for (const double x : points) missing.push_back(shortfall(x));
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        if (std::isnan(missing[i]) || std::isnan(missing[i + 1])) continue;  // the end of what is possible
        if ((missing[i] >= 0) != (missing[i + 1] >= 0))
            found.push_back(narrowed(shortfall, points[i], points[i + 1]));
    }
    return found;
}

namespace {

constexpr double kSlack = 1e-10;  // relative: a share of a size that is whole but for rounding is whole

}  // namespace

std::vector<double> Allocation::at(double size) const {
    std::vector<double> sizes;
    for (const double share : shares_) sizes.push_back(std::max(least_, rounded_up(share * size)));
    return sizes;
}

std::vector<double> Allocation::above(const std::vector<double>& sizes) const {
    double end = kInfinity;  // the largest real size that gives these
    for (std::size_t i = 0; i < sizes.size(); ++i) end = std::min(end, sizes[i] / shares_[i]);
    std::vector<double> next = sizes;
    for (std::size_t i = 0; i < sizes.size(); ++i)
        if (sizes[i] / shares_[i] <= end * (1 + 2 * kSlack)) ++next[i];
    return next;
}

std::optional<std::vector<double>> Allocation::below(const std::vector<double>& sizes) const {
    double begin = 0;  // the largest real size that gives smaller ones
    for (std::size_t i = 0; i < sizes.size(); ++i)
        if (sizes[i] > least_) begin = std::max(begin, (sizes[i] - 1) / shares_[i]);
    if (begin == 0) return {};
    std::vector<double> next = sizes;
    for (std::size_t i = 0; i < sizes.size(); ++i)
        if (sizes[i] > least_ && (sizes[i] - 1) / shares_[i] >= begin * (1 - 2 * kSlack)) --next[i];
    return next;
}

}  // namespace statplan
