// What a command answers: a report (named results) or a table (the points of a curve), and how it is printed.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "statpower/core.h"

namespace cli {

/// Named results in the order in which they are printed; keys are words joined by underscores.
using Report = nlohmann::ordered_json;

/// The points of a curve or surface, one row a point.
struct Table {
    std::vector<std::string> columns;
    std::vector<std::vector<double>> rows;
};

/// The points of a curve or a surface as a table; the library's arrays are released.
Table table_of(XYPlot plot, const std::string& x, const std::string& y);
Table table_of(XYZPlot plot, const std::string& x, const std::string& y, const std::string& z);

/// The design is valid, but the question has no answer (exit status 1).
struct NoAnswer : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Adds the subcommand `name` that prints a report, as text or with --json as JSON. Its options are added to
/// the command that is returned.
CLI::App* add_command(CLI::App& parent, const std::string& name, const std::string& description,
                      std::function<Report()> answer);

/// Adds the subcommand `name` that prints a table, as CSV or with --json as JSON.
CLI::App* add_curve_command(CLI::App& parent, const std::string& name, const std::string& description,
                            std::function<Table()> answer);

}  // namespace cli
