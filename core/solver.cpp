// The two sample-size solvers: one for monotone objectives, one for saw-toothed ones.
#include <cmath>
#include <limits>
#include <optional>

#include "core/cancel.h"
#include "statpower/core.h"

using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;
using POWER_NAMESPACE::Objective;
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

/// The upper end is evaluated first, then the lower one; then the interval moves up by doubling.
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

}  // namespace

double PowerReverse(const std::vector<double>& design, Objective objective, OrvQueryCancel* cancel,
                    double low, double high, double tolerance) {
    const auto f = [&](double n) { return objective(n, design, cancel); };
    const Bracket bracket = bracket_root(f, cancel, low, high);
    if (bracket.answer) return *bracket.answer;

    double left = bracket.low;
    for (double width = bracket.width();;) {
        if (stop_requested(cancel)) return OrvMV::Missing();
        const auto half = halve(width);
        if (!half) return left;
        width = *half;
        const double middle = left + width;
        const double value = f(middle);
        if (value <= 0) left = middle;
        if (std::abs(width) < tolerance || is_hit(value)) return left;
    }
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
