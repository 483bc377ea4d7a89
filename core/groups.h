// Arrays of an exported function, as spans.
#pragma once

#include <cstddef>
#include <span>

namespace statpower {

/// The k values of an argument that the caller passed by pointer; none for k below 1.
template <class Number>
std::span<Number> groups(int k, Number* values) {
    return k < 1 ? std::span<Number>() : std::span(values, static_cast<std::size_t>(k));
}

}  // namespace statpower
