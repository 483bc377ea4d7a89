#include "support/table.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace testing_support {

std::vector<std::vector<double>> lists_in(const std::string& text) {
    std::vector<std::vector<double>> lists;
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ';');) {
        std::istringstream numbers(part);
        lists.emplace_back(std::istream_iterator<double>(numbers), std::istream_iterator<double>());
    }
    return lists;
}

std::vector<Row> read_table(const std::string& name) {
    std::ifstream file(std::string(TEST_DATA_DIR "/") + name);
    if (!file) throw std::runtime_error("no table " + name);
    std::vector<Row> rows;
    std::string line;
    bool heading = true;
    for (int number = 1; std::getline(file, line); ++number) {
        if (line.empty() || line.front() == '#') continue;
        if (std::exchange(heading, false)) continue;
        Row row;
        row.line = number;
        std::istringstream cells(line);
        for (std::string cell; std::getline(cells, cell, ',');) {
            char* end = nullptr;
            const double value = std::strtod(cell.c_str(), &end);
            if (end != cell.c_str() && *end == '\0')
                row.values.push_back(value);
            else
                row.label = cell;
        }
        rows.push_back(std::move(row));
    }
    if (rows.empty()) throw std::runtime_error("no rows in table " + name);
    return rows;
}

}  // namespace testing_support
