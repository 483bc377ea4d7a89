// How far an operation is from the values of a table.
#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <string>

#include "orvcommon/operations.h"
#include "support/table.h"

namespace testing_support {

/// Relative errors are counted for exact values above this; below, underflow of the parts takes its share.
inline constexpr double kSmallestRelative = 1e-30;

struct Errors {
    int points = 0;
    double absolute = 0, relative = 0;  // the largest; infinite for a NaN
    std::string worst;                  // the point of the largest relative error

    void add(const Row& row, std::size_t arguments, double value) {
        const double exact = row[arguments];
        ++points;
        if (value == exact) return;
        const double error = std::isnan(value) ? HUGE_VAL : std::fabs(value - exact);
        absolute = std::max(absolute, error);
        if (std::fabs(exact) <= kSmallestRelative || error / std::fabs(exact) <= relative) return;
        relative = error / std::fabs(exact);
        worst = "line " + std::to_string(row.line);
    }
};

/// Both tables of an operation: hand-picked and random points (where there are any).
inline std::vector<Row> table_of(const Operation& operation) {
    std::vector<Row> rows = read_table("distributions/" + operation.name + ".csv");
    if (operation.arguments > 1)
        for (Row& row : read_table("distributions/stress/" + operation.name + ".csv"))
            rows.push_back(std::move(row));
    return rows;
}

/// The region of a point for the noncentral t distribution: small tails are relatively accurate where t and
/// delta are positive, absolutely otherwise.
inline std::string region_of(const Operation& operation, const Row& row) {
    if (operation.name != "NonCentralCdfT") return row.label;
    return row.label + (row[0] > 0 && row[2] > 0 ? ", t > 0 and delta > 0" : ", otherwise");
}

inline std::map<std::string, Errors> errors_by_region(const Operation& operation) {
    std::map<std::string, Errors> errors;
    for (const Row& row : table_of(operation))
        errors[region_of(operation, row)].add(row, operation.arguments,
                                              operation.call({row.values.data(), operation.arguments}));
    return errors;
}

}  // namespace testing_support
