// Design vectors: what a sample-size search hands to its objective, element 0 the target.
//
// A design vector is declared once, as a small struct whose fields() tie its members in the order of the
// vector; pack() and unpack() go from one to the other:
//
//     struct EffectSearch {
//         double target, es, alpha;
//         auto fields() { return std::tie(target, es, alpha); }
//     };
//
// Numbers stand as they are, integer codes as doubles, flags as 1 or 0, arrays element by element.
#pragma once

#include <limits>
#include <span>
#include <tuple>
#include <vector>

#include "core/integers.h"

namespace statpower {

/// An array in a design vector: `count`, which stands before it, elements.
struct DesignArray {
    const int& count;
    std::span<const double>& values;
};

/// The arrays of a design with `count` groups, for fields(): std::tuple_cat(std::tie(...), arrays(k, ...)).
template <class... Spans>
auto arrays(const int& count, Spans&... values) {
    return std::make_tuple(DesignArray{count, values}...);
}

namespace detail {

struct DesignWriter {
    std::vector<double> design;

    void operator()(double number) { design.push_back(number); }
    void operator()(DesignArray array) {
        for (double value : array.values) design.push_back(value);
    }
};

/// Front to back. Elements beyond the end read as NaN, and an array that does not fit as an empty one.
struct DesignReader {
    std::span<const double> rest;

    double next() {
        if (rest.empty()) return std::numeric_limits<double>::quiet_NaN();
        const double value = rest.front();
        rest = rest.subspan(1);
        return value;
    }

    void operator()(double& number) { number = next(); }
    void operator()(int& code) { code = to_int(next()); }
    void operator()(bool& flag) { flag = next() != 0; }
    void operator()(DesignArray array) {
        if (array.count < 0 || rest.size() < static_cast<std::size_t>(array.count)) {
            array.values = {};
            return;
        }
        array.values = rest.first(static_cast<std::size_t>(array.count));
        rest = rest.subspan(array.values.size());
    }
};

}  // namespace detail

/// The vector of a design.
template <class Design>
std::vector<double> pack(Design design) {
    detail::DesignWriter write;
    write.design.reserve(16);
    std::apply([&](const auto&... field) { (write(field), ...); }, design.fields());
    return std::move(write.design);
}

/// The design of a vector, whose arrays it refers to.
template <class Design>
Design unpack(std::span<const double> vector) {
    Design design{};
    detail::DesignReader read{vector};
    std::apply([&](auto&&... field) { (read(field), ...); }, design.fields());
    return design;
}

}  // namespace statpower
