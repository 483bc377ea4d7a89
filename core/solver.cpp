// The two sample-size solvers: one for monotone objectives, one for saw-toothed ones.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <optional>
#include <utility>

#include "core/cancel.h"
#include "core/rejection.h"
#include "core/search.h"
#include "orvcommon/dist_fun.h"
#include "statpower/core.h"

using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;
using OrvMath_940::OrvDistFun;
using POWER_NAMESPACE::Objective;
using statpower::SteadyStart;
using statpower::stop_requested;

namespace {

// 8.988465674311579e+307, half the largest double: the highest upper end that can still be doubled.
constexpr double kUpperEndCeiling = std::numeric_limits<double>::max() / 2;

bool is_hit(double value) {
    return std::abs(value) < 1e-14;
}

/// An interval whose lower end falls short of the target and whose upper end does not; or the answer, where
/// the search for the interval has already met it.
struct Bracket {
    double low = 0;
    double high = 0;
    std::optional<double> answer;

    double width() const { return high - low; }
};

/// The upper end is evaluated first, then the lower one (PowerReverse.ReturnsTheUpperEndAtOnceWhenItHitsTheTarget);
/// then the interval moves up by doubling.
template <class F>
Bracket bracket_root(const F& f, OrvQueryCancel* cancel, double low, double high) {
    double at_high = f(high);
    if (is_hit(at_high)) return {.answer = high};
    const double at_low = f(low);
    if (at_low >= 0) return {.answer = low};

    for (double at_lower = at_low; at_lower * at_high > 0;) {
        const double doubled = 2 * high;
        // Written so that NaN, and zero, which doubling does not move, end the search too.
        const bool can_grow = std::abs(high) <= kUpperEndCeiling && doubled != high;
        if (!can_grow || stop_requested(cancel)) return {.answer = OrvMV::Missing()};
        low = high;
        high = doubled;
        at_lower = at_high;
        at_high = f(high);
        if (is_hit(at_high)) return {.answer = high};
    }
    return {low, high, std::nullopt};
}

/// Half of a bracket's width. Nothing for a width that halving does not shrink: zero, infinite or NaN.
std::optional<double> halve(double width) {
    const double half = width / 2;
    return std::abs(half) < std::abs(width) ? std::optional(half) : std::nullopt;
}

/// Where a bisection has ended: its answer, and how far above it the upper end of the last bracket lies.
struct Cell {
    double answer;
    double width = 0;
};

/// The search of PowerReverse.
template <class F>
Cell search(const F& f, OrvQueryCancel* cancel, double low, double high, double tolerance) {
    const Bracket bracket = bracket_root(f, cancel, low, high);
    if (bracket.answer) return {*bracket.answer};

    double left = bracket.low;
    for (double width = bracket.width();;) {
        if (stop_requested(cancel)) return {OrvMV::Missing()};
        const auto half = halve(width);
        if (!half) return {left};
        width = *half;
        const double middle = left + width;
        const double value = f(middle);
        if (value <= 0) left = middle;
        if (std::abs(width) < tolerance || is_hit(value)) return {left, width};
    }
}

/// A value beyond it, the error that the noncentral distributions are asked for, tells the sign of all values
/// further out.
constexpr double kClear = statpower::kNoncentralTolerance;

/// An objective that grows with N: where its sign is known from a value elsewhere, it is not evaluated.
class SteadyObjective {
  public:
    SteadyObjective(const std::vector<double>& design, Objective objective)
        : design_(design), objective_(objective) {}

    /// The value at N; any number of its sign where that is known and no hit is possible.
    double operator()(double N) {
        if (N <= below_) return -1;
        if (N >= above_) return 1;
        for (const auto& [known_N, value] : known_)
            if (known_N == N) return value;
        const double value = objective_(N, design_, nullptr);
        if (value < -kClear) below_ = std::max(below_, N);
        if (value > kClear) above_ = std::min(above_, N);
        known_.emplace_back(N, value);
        return value;
    }

  private:
    const std::vector<double>& design_;
    Objective objective_;
    double below_ = -std::numeric_limits<double>::infinity();
    double above_ = std::numeric_limits<double>::infinity();
    std::vector<std::pair<double, double>> known_;
};

/// Points of a curve that is nearly a straight line, for the place where it is 0: by inverse interpolation through
/// all of them (Neville's scheme).
class NearlyStraight {
  public:
    bool is_first() const { return count_ == 1; }
    bool is_full() const { return count_ == kPoints; }
    void add(double x, double y) {
        x_[count_] = x;
        y_[count_++] = y;
    }
    double zero() const {
        std::array<double, kPoints> x = x_;
        for (std::size_t n = 1; n < count_; ++n)
            for (std::size_t i = 0; i + n < count_; ++i)
                x[i] = (y_[i + n] * x[i] - y_[i] * x[i + 1]) / (y_[i + n] - y_[i]);
        return x[0];
    }

  private:
    static constexpr std::size_t kPoints = 6;
    std::array<double, kPoints> x_{}, y_{};
    std::size_t count_ = 0;
};

/// Where a power reaches its target, as far as a few evaluations tell. The normal quantile of a power is nearly
/// linear in the square root of N.
double approach(SteadyObjective& f, double target, const SteadyStart& start, double tolerance) {
    NearlyStraight curve;
    const double z = OrvDistFun::IdfStdNorm(target);
    double root = std::sqrt(start.size);
    while (!curve.is_full()) {
        const double power = f(root * root) + target;
        if (!(power > 0 && power < 1)) break;
        const double y = OrvDistFun::IdfStdNorm(power) - z;
        curve.add(root, y);
        const double next = curve.is_first() ? root - y / start.slope : curve.zero();
        const double moved = std::abs(next * next - root * root);
        if (!(next > 0 && moved < root * root)) break;
        root = next;
        // What is left is about the square of the last correction over N.
        if (moved * moved < 0.1 * tolerance * root * root) break;
    }
    return root * root;
}

}  // namespace

double PowerReverse(const std::vector<double>& design, Objective objective, OrvQueryCancel* cancel,
                    double low, double high, double tolerance) {
    const auto f = [&](double n) { return objective(n, design, cancel); };
    return search(f, cancel, low, high, tolerance).answer;
}

double statpower::search_steady(const std::vector<double>& design, Objective objective, double low,
                                double high, double tolerance, const SteadyStart& start) {
    constexpr double kLargest = 1e12;
    if (!(start.size > low / 2 && start.size < kLargest && start.slope > 0))
        return PowerReverse(design, objective, nullptr, low, high, tolerance);
    SteadyObjective f(design, objective);
    const double root = approach(f, design.front(), {std::max(start.size, low), start.slope}, tolerance);
    // The ends of the bracket that the bisection would end with decide about all others, where their values are
    // clear. The slope of the power: that of its normal quantile times the normal density.
    const Cell cell =
        search([root](double N) { return N <= root ? -1.0 : 1.0; }, nullptr, low, high, tolerance);
    const double z = OrvDistFun::IdfStdNorm(design.front());
    const double slope =
        start.slope / (2 * std::sqrt(root)) * std::exp(-z * z / 2) / std::sqrt(2 * std::numbers::pi);
    const double margin = 1.5 * kClear / slope;
    f(std::min(cell.answer, root - margin));
    f(std::max(cell.answer + cell.width, root + margin));
    return search([&f](double N) { return f(N); }, nullptr, low, high, tolerance).answer;
}

double PowerReverse_Binom(const std::vector<double>& design, Objective objective, OrvQueryCancel* cancel,
                          double low, double high) {
    const auto f = [&](double n) { return objective(n, design, cancel); };
    const Bracket bracket = bracket_root(f, cancel, low, high);
    if (bracket.answer) return *bracket.answer;

    double base = bracket.low;
    double value;
    double width = bracket.width();
    do {
        if (stop_requested(cancel)) return OrvMV::Missing();
        const auto half = halve(width);
        if (!half) return base;
        width = *half;
        const double middle = base + std::floor(width);
        value = f(middle);
        if (value <= 0) base = middle;
        if (is_hit(value)) return base;
    } while (std::abs(width) >= 1);

    while (value < 0) {
        if (stop_requested(cancel) || base + 1 == base) return OrvMV::Missing();
        ++base;
        value = f(base);
    }
    return base;
}

void OptimizeRtbBionm(double* n, std::vector<double> design, Objective objective, OrvQueryCancel* cancel) {
    double smallest = *n;
    for (;;) {
        if (stop_requested(cancel)) return;
        const double next = PowerReverse_Binom(design, objective, cancel, 1, smallest);
        if (!(next < smallest) || next == OrvMV::Missing()) break;
        smallest = next;
    }
    *n = smallest;
}
