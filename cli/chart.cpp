// Pictures of tables, drawn by gnuplot.
#include <filesystem>

#include "cli.h"

namespace cli {

void draw(const statplan::Table& table, const std::string& kind, const std::string& file) {
    const bool chart = file.empty();
    const auto commands =
        to_gnuplot(table, chart           ? "dumb nofeed noenhanced size 79,24"
                          : kind == "svg" ? "svg noenhanced size 800,500 font 'sans,14' background 'white'"
                                          : "pngcairo noenhanced size 800,500 font 'sans,11'");
    if (!commands) throw Failure(kRefused, "--" + kind + ": " + message(commands.refusal()));
    const File script = temporary();
    write(script.get(), *commands, "a temporary file");
    std::rewind(script.get());
    const File output = chart ? File() : open(file, "wb");
    const int status = run_program({"gnuplot"}, script.get(), output.get());
    if (status == 0) return;
    if (!chart) std::filesystem::remove(file);
    throw Failure(kNoAnswer, status == 127 ? "gnuplot draws the charts and is not there: install gnuplot-nox"
                                           : "gnuplot could not draw the chart");
}

}  // namespace cli
