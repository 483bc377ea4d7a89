// Design vectors: packed by pack_design and read back in the same order by DesignReader.
#pragma once

#include <array>
#include <concepts>
#include <limits>
#include <span>
#include <vector>

#include "core/integers.h"

namespace statpower {

namespace detail {
inline void append(std::vector<double>& design, std::convertible_to<double> auto value) {
    design.push_back(static_cast<double>(value));
}
inline void append(std::vector<double>& design, std::span<const double> values) {
    design.insert(design.end(), values.begin(), values.end());
}
}  // namespace detail

/// The elements in order: numbers as they are, integer codes as doubles, flags as 1 or 0, arrays element by
/// element.
template <class... Elements>
std::vector<double> pack_design(const Elements&... elements) {
    std::vector<double> design;
    (detail::append(design, elements), ...);
    return design;
}

/// Reads a design vector front to back. Elements beyond its end read as NaN, and an array that does not fit
/// as an empty one.
class DesignReader {
  public:
    explicit DesignReader(std::span<const double> design) : rest_(design) {}

    double number() {
        if (rest_.empty()) return std::numeric_limits<double>::quiet_NaN();
        const double value = rest_.front();
        rest_ = rest_.subspan(1);
        return value;
    }

    /// The next `count` numbers, for a structured binding: auto [target, es, alpha] = d.numbers<3>().
    template <std::size_t count>
    std::array<double, count> numbers() {
        std::array<double, count> values;
        for (double& value : values) value = number();
        return values;
    }

    /// An integer code, by truncation towards zero.
    int integer() { return to_int(number()); }

    /// A flag: true when not equal to 0.
    bool flag() { return number() != 0; }

    /// The next `count` elements.
    std::span<const double> array(int count) {
        if (count < 0 || rest_.size() < static_cast<std::size_t>(count)) return {};
        const auto values = rest_.first(static_cast<std::size_t>(count));
        rest_ = rest_.subspan(values.size());
        return values;
    }

  private:
    std::span<const double> rest_;
};

}  // namespace statpower
