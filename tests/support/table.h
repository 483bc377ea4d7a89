// Tables of reference values in tests/data.
#pragma once

#include <string>
#include <vector>

namespace testing_support {

/// One row of a table: numbers by the order of the columns, and the text of the last column where that is no
/// number (the region of a distribution table, the name of a case).
struct Row {
    std::vector<double> values;
    std::string label;
    int line = 0;

    double operator[](std::size_t column) const { return values.at(column); }
};

/// The lists of numbers in a text such as "1 2 3;4 5 6": separated by semicolons, each by spaces.
std::vector<std::vector<double>> lists_in(const std::string& text);

/// Reads `name` from tests/data: comma-separated, one heading line, lines that start with '#' skipped. Throws
/// when the file is missing or holds no row: a test over an empty table would assert nothing.
std::vector<Row> read_table(const std::string& name);

}  // namespace testing_support
