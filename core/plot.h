// Curves and surfaces: an axis is a vector of doubles made by one of the builders below, a result is
// curve(axis, power) or surface(xs, ys, power).
//
// Counts arrive as doubles, by the formula of the curve, and are checked before anything is converted: a
// count that is not a whole number from 1 to the largest int gives an empty axis, and an empty axis the empty
// result.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

#include "statpower/core.h"

namespace statpower {

using Axis = std::vector<double>;

/// `count` points, the i-th (from 0) at value(i).
template <class Value>
Axis axis(double count, Value value) {
    if (!(count >= 1 && count <= std::numeric_limits<int>::max() && count == std::trunc(count))) return {};
    Axis points(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < points.size(); ++i) points[i] = value(static_cast<double>(i));
    return points;
}

/// `count` points start, start + step, start + 2 step, ...
inline Axis multiples(double count, double start, double step) {
    return axis(count, [=](double i) { return start + i * step; });
}

/// As multiples, but the last of the `count` points is exactly `end`.
inline Axis multiples_to(double count, double start, double step, double end) {
    Axis points = multiples(count, start, step);
    if (!points.empty()) points.back() = end;
    return points;
}

/// Sample sizes first, first + step, ... up to the first one that reaches `last`, which a step above 1 may
/// overshoot.
inline Axis sample_sizes(double first, double last, double step = 1) {
    return multiples(std::ceil((last - first) / step) + 1, first, step);
}

/// A continuous axis divided into steps of `fraction` of its width, the last point exactly `high`. A width of
/// zero has no steps: the axis is empty.
inline Axis fractions(double low, double high, double fraction) {
    const double width = high - low;
    const double step = fraction * width;
    return multiples_to(std::ceil(width / step) + 1, low, step, high);
}

/// The power narrowed to single precision and widened back, as most curves store it.
inline double to_single(double power) {
    return static_cast<float>(power);
}

/// The curve of power(x), evaluated in the order of the axis.
template <class Power>
XYPlot curve(const Axis& xs, Power power) {
    if (xs.empty()) return {};
    auto x = std::make_unique_for_overwrite<double[]>(xs.size());
    auto y = std::make_unique_for_overwrite<double[]>(xs.size());
    for (std::size_t i = 0; i < xs.size(); ++i) {
        x[i] = xs[i];
        y[i] = power(xs[i]);
    }
    return {static_cast<int>(xs.size()), x.release(), y.release()};
}

/// The surface of power(x, y), evaluated row by row.
template <class Power>
XYZPlot surface(const Axis& xs, const Axis& ys, Power power) {
    if (xs.empty() || ys.empty()) return {};
    auto x = std::make_unique_for_overwrite<double[]>(xs.size());
    auto y = std::make_unique_for_overwrite<double[]>(ys.size());
    auto z = std::make_unique_for_overwrite<double[]>(xs.size() * ys.size());
    std::copy(xs.begin(), xs.end(), x.get());
    std::copy(ys.begin(), ys.end(), y.get());
    double* cell = z.get();
    for (double xi : xs)
        for (double yj : ys) *cell++ = power(xi, yj);
    return {static_cast<int>(xs.size()), static_cast<int>(ys.size()), x.release(), y.release(), z.release()};
}

/// The default range of the sample size around a design of size N with power P: from (1 - P) N, but at least
/// `lowest`, to (2 - P) N.
struct SampleSizeRange {
    int min;
    int max;
};
SampleSizeRange default_range(double power, double N, int lowest);

}  // namespace statpower
