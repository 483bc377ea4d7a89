// Curves and surfaces: an axis is described by one of the builders below, a result is curve(axis, power) or
// surface(xs, ys, power).
//
// Counts arrive as doubles, by the formula of the curve, and are checked before anything is converted: a
// count that is not a whole number from 1 to the largest int gives an empty axis, and an empty axis the empty
// result.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "core/integers.h"
#include "statpower/core.h"

namespace statpower {

/// The points of an axis. Only the result holds them: a grid that does not fit into memory is refused before
/// any of it has been computed.
class Axis {
  public:
    /// The empty axis.
    Axis() = default;

    /// `count` points, the i-th (from 0) at value(i).
    Axis(std::size_t count, std::function<double(double)> value) : size_(count), value_(std::move(value)) {}

    bool empty() const { return size_ == 0; }
    std::size_t size() const { return size_; }
    double operator[](std::size_t i) const { return value_(static_cast<double>(i)); }
    double back() const { return (*this)[size_ - 1]; }

  private:
    std::size_t size_ = 0;
    std::function<double(double)> value_;
};

/// `count` points, the i-th (from 0) at value(i).
inline Axis axis(double count, std::function<double(double)> value) {
    if (!(count >= 1 && count <= std::numeric_limits<int>::max() && count == std::trunc(count))) return {};
    return {static_cast<std::size_t>(count), std::move(value)};
}

/// A step that leads somewhere; a formula for a count may well give a number for any other.
inline bool is_step(double step) {
    return step > 0 && std::isfinite(step);
}

/// The step of a grid over a proportion or a correlation.
inline bool is_grid_step(double step) {
    return step > 0 && step <= 0.5;
}

/// `count` points start, start + step, start + 2 step, ...
inline Axis multiples(double count, double start, double step) {
    return axis(count, [=](double i) { return start + i * step; });
}

/// As multiples, but the last of the `count` points is exactly `end`.
inline Axis multiples_to(double count, double start, double step, double end) {
    return axis(count, [=](double i) { return i == count - 1 ? end : start + i * step; });
}

/// Sample sizes first, first + step, ... up to the first one that reaches `last`, which a step above 1 may
/// overshoot. Empty unless first <= last.
inline Axis sample_sizes(double first, double last, double step = 1) {
    if (!(first <= last)) return {};
    return multiples(std::ceil((last - first) / step) + 1, first, step);
}

/// The sample sizes of a surface: every one, or every second one from a width of 1000 upwards, which keeps
/// the number of evaluations bearable.
inline Axis surface_sample_sizes(double first, double last) {
    return sample_sizes(first, last, last - first < 1000 ? 1 : 2);
}

/// A range divided into steps of a fraction of its width; the last step may reach beyond the upper end.
struct Steps {
    double size;
    double count;  ///< whole; NaN unless width and step are positive and finite
};
inline Steps steps(double low, double high, double fraction) {
    const double width = high - low;
    const double size = fraction * width;
    return {size,
            width > 0 && is_step(size) ? std::ceil(width / size) : std::numeric_limits<double>::quiet_NaN()};
}

/// A continuous axis divided into steps of `fraction` of its width, the last point exactly `high`. A width of
/// zero has no steps: the axis is empty.
inline Axis fractions(double low, double high, double fraction) {
    const auto [size, count] = steps(low, high, fraction);
    return multiples_to(count + 1, low, size, high);
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
        y[i] = power(x[i]);
    }
    return {static_cast<int>(xs.size()), x.release(), y.release()};
}

namespace detail {

/// A surface that is still to be computed: both axes are there.
struct SurfaceArrays {
    SurfaceArrays(const Axis& xs, const Axis& ys)
        : nx(xs.size()),
          ny(ys.size()),
          z(std::make_unique_for_overwrite<double[]>(nx * ny)),
          x(std::make_unique_for_overwrite<double[]>(nx)),
          y(std::make_unique_for_overwrite<double[]>(ny)) {
        for (std::size_t i = 0; i < nx; ++i) x[i] = xs[i];
        for (std::size_t j = 0; j < ny; ++j) y[j] = ys[j];
    }
    XYZPlot release() {
        return {static_cast<int>(nx), static_cast<int>(ny), x.release(), y.release(), z.release()};
    }

    std::size_t nx, ny;
    std::unique_ptr<double[]> z, x, y;
};

}  // namespace detail

/// The surface of row(x)(y), evaluated row by row: what a row shares is computed once, by row(x).
template <class Row>
XYZPlot surface_by_rows(const Axis& xs, const Axis& ys, Row row) {
    if (xs.empty() || ys.empty()) return {};
    detail::SurfaceArrays a(xs, ys);
    for (std::size_t i = 0; i < a.nx; ++i) {
        auto power = row(a.x[i]);
        for (std::size_t j = 0; j < a.ny; ++j) a.z[i * a.ny + j] = power(a.y[j]);
    }
    return a.release();
}

/// The surface of column(y)(x), evaluated row by row: what a column shares is computed once, by column(y), before.
template <class Column>
XYZPlot surface_by_columns(const Axis& xs, const Axis& ys, Column column) {
    if (xs.empty() || ys.empty()) return {};
    detail::SurfaceArrays a(xs, ys);
    std::vector<decltype(column(0.0))> powers;
    powers.reserve(a.ny);
    for (std::size_t j = 0; j < a.ny; ++j) powers.push_back(column(a.y[j]));
    for (std::size_t i = 0; i < a.nx; ++i)
        for (std::size_t j = 0; j < a.ny; ++j) a.z[i * a.ny + j] = powers[j](a.x[i]);
    return a.release();
}

/// The surface of power(x, y), evaluated row by row.
template <class Power>
XYZPlot surface(const Axis& xs, const Axis& ys, Power power) {
    return surface_by_rows(xs, ys,
                           [&power](double x) { return [&power, x](double y) { return power(x, y); }; });
}

/// The default range of the sample size around a design of size N with power P: from (1 - P) N, but at least
/// `lowest`, to (2 - P) N.
struct SampleSizeRange {
    int min;
    int max;
};
inline SampleSizeRange default_range(double power, double N, int lowest) {
    return {std::max(lowest, to_int(std::floor((1 - power) * N))), to_int(std::ceil((2 - power) * N))};
}

}  // namespace statpower
