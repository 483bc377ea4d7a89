// Pictures of tables, drawn by gnuplot.
#include <filesystem>

#include "cli.h"

namespace cli {

void draw(const statplan::Table& table, const std::string& kind, const std::string& file) {
    const bool chart = file.empty();
    auto drawing =
        to_gnuplot(table, chart           ? "dumb nofeed noenhanced size 79,24"
                          : kind == "svg" ? "svg noenhanced size 800,500 font 'sans,14' background 'white'"
                                          : "pngcairo noenhanced size 800,500 font 'sans,11'");
    if (!drawing) throw refused(kind, drawing.refusal().message());
    const File script(std::tmpfile());
    if (!script) throw failed("there is no room for a temporary file");
    write(script.get(), *drawing, "a temporary file");
    std::rewind(script.get());
    const File output = chart ? File() : open(file, "wb");
    const int status = run_program({"gnuplot"}, script.get(), output.get());
    if (status == 0) return;
    if (!chart) std::filesystem::remove(file);
    throw failed(status == 127 ? "gnuplot draws the charts and is not there: install gnuplot-nox"
                               : "gnuplot could not draw the chart");
}

}  // namespace cli
