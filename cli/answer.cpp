#include "answer.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

#include "orvcommon/mv.h"

namespace cli {

namespace {

// A number to ten digits, as a person reads it; arrays separated by commas.
std::string to_text(const Report& value) {
    if (value.is_array()) {
        std::string joined;
        for (const auto& element : value) joined += (joined.empty() ? "" : ", ") + to_text(element);
        return joined;
    }
    if (!value.is_number_float()) return value.is_string() ? value.get<std::string>() : value.dump();
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.10g", value.get<double>());
    return digits;
}

void print_text(const Report& report) {
    std::size_t width = 0;
    for (const auto& [key, value] : report.items()) width = std::max(width, key.size());
    for (const auto& [key, value] : report.items()) {
        std::string label = key + ":";
        std::replace(label.begin(), label.end(), '_', ' ');
        label.resize(width + 2, ' ');
        std::cout << label << to_text(value) << '\n';
    }
}

// A missing point is null in JSON and an empty cell in CSV.
Report cell(double value) {
    return OrvCommon_940::OrvMV::IsMissing(value) ? Report() : Report(value);
}

void print_csv(const Table& table) {
    for (std::size_t i = 0; i < table.columns.size(); ++i) std::cout << (i ? "," : "") << table.columns[i];
    std::cout << '\n';
    for (const auto& row : table.rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const Report value = cell(row[i]);
            std::cout << (i ? "," : "") << (value.is_null() ? "" : value.dump());
        }
        std::cout << '\n';
    }
}

Report to_json(const Table& table) {
    Report points = Report::array();
    for (const auto& row : table.rows) {
        Report point;
        for (std::size_t i = 0; i < row.size(); ++i) point[table.columns[i]] = cell(row[i]);
        points.push_back(point);
    }
    return points;
}

void print_json(const Report& report) {
    std::cout << report.dump(2) << '\n';
}

}  // namespace

Table table_of(XYPlot plot, const std::string& x, const std::string& y) {
    Table table{{x, y}, {}};
    for (int i = 0; i < plot.count; ++i) table.rows.push_back({plot.x[i], plot.y[i]});
    FreeMemXYPlot(plot);
    return table;
}

Table table_of(XYZPlot plot, const std::string& x, const std::string& y, const std::string& z) {
    Table table{{x, y, z}, {}};
    for (int i = 0; i < plot.nx; ++i)
        for (int j = 0; j < plot.ny; ++j)
            table.rows.push_back({plot.x[i], plot.y[j],
                                  plot.z[static_cast<std::size_t>(i) * static_cast<std::size_t>(plot.ny) +
                                         static_cast<std::size_t>(j)]});
    FreeMemXYZPlot(plot);
    return table;
}

CLI::App* add_command(CLI::App& parent, const std::string& name, const std::string& description,
                      std::function<Report()> answer) {
    CLI::App* command = parent.add_subcommand(name, description);
    CLI::Option* json = command->add_flag("--json")->description("Print JSON");
    command->callback([=] { json->count() ? print_json(answer()) : print_text(answer()); });
    return command;
}

CLI::App* add_curve_command(CLI::App& parent, const std::string& name, const std::string& description,
                            std::function<Table()> answer) {
    CLI::App* command = parent.add_subcommand(name, description);
    CLI::Option* json = command->add_flag("--json")->description("Print JSON instead of CSV");
    command->callback([=] {
        const Table table = answer();
        if (table.rows.empty()) throw NoAnswer("the axis has no points");
        json->count() ? print_json(to_json(table)) : print_csv(table);
    });
    return command;
}

}  // namespace cli
