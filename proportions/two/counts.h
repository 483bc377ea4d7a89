// Counts of successes and their binomial probabilities, as the exact tests of two proportions need them.
#pragma once

#include <algorithm>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace statpower {

/// Binomial probabilities below this count as 0: far less than a power, a sum of such probabilities, can
/// show.
inline constexpr double kNegligible = 1e-100;

/// Values of a function of a count, 0 outside a stretch of counts.
class CountFunction {
  public:
    CountFunction() = default;
    CountFunction(int first, std::vector<double> values) : first_(first), values_(std::move(values)) {}

    int first() const { return first_; }
    int last() const { return first_ + static_cast<int>(values_.size()) - 1; }
    double operator[](int x) const {
        return x < first() || x > last() ? 0 : values_[static_cast<std::size_t>(x - first_)];
    }

    /// Whether no value is NaN.
    bool is_known() const {
        return std::none_of(values_.begin(), values_.end(), [](double v) { return v != v; });
    }

    /// The values at first..last, which lie within the stretch.
    std::span<const double> values(int first, int last) const {
        return std::span(values_).subspan(static_cast<std::size_t>(first - first_),
                                          static_cast<std::size_t>(last - first + 1));
    }

  private:
    int first_ = 0;
    std::vector<double> values_;
};

/// The values of a function on lowest..highest that falls off on both sides of its mode, outwards from there
/// until they are below `negligible` (a NaN is not).
/// @param below  value at x - 1, given x and the value there
/// @param above  value at x + 1, likewise
template <class Below, class Above>
CountFunction around_mode(int mode, double value_at_mode, int lowest, int highest, double negligible,
                          Below below, Above above) {
    std::vector<double> values{value_at_mode};
    double value = value_at_mode;
    int first = mode;
    for (; first > lowest; --first) {
        value = below(first, value);
        if (value < negligible) break;
        values.push_back(value);
    }
    std::reverse(values.begin(), values.end());
    value = value_at_mode;
    for (int x = mode; x < highest; ++x) {
        value = above(x, value);
        if (value < negligible) break;
        values.push_back(value);
    }
    return {first, std::move(values)};
}

/// A group of n trials with success probability p: the probabilities of 0, 1, ... successes up to the
/// truncated n. A probability that cannot be computed is NaN.
class BinomialGroup {
  public:
    BinomialGroup(double n, double p);

    /// Truncated number of trials.
    int trials() const { return trials_; }
    const CountFunction& probability() const { return probability_; }

  private:
    int trials_;
    CountFunction probability_;
};

/// Probabilities of fewer than x and of at least x successes in a group.
class Tails {
  public:
    explicit Tails(const BinomialGroup& group);

    double below(int x) const { return below_[index(x)]; }
    double from(int x) const { return from_[index(x)]; }

  private:
    std::size_t index(int x) const {
        return static_cast<std::size_t>(std::clamp(x - first_, 0, static_cast<int>(below_.size()) - 1));
    }

    int first_;
    std::vector<double> below_;
    std::vector<double> from_;
};

/// Whether the exact tests can count the outcomes of two groups: counts and totals are ints.
inline bool are_countable(double n1, double n2) {
    return n1 + n2 < std::numeric_limits<int>::max();
}

}  // namespace statpower
