// statpower: plans studies from the command line.
//
// Exit status: 0 answered, 1 the question has no answer, 2 an argument is wrong.
#include <CLI/CLI.hpp>
#include <iostream>

#include "answer.h"
#include "commands.h"

int main(int argc, char** argv) {
    CLI::App app("Power, sample size and precision of statistical tests.", "statpower");
    app.require_subcommand(1);
    cli::add_anova(app);
    try {
        app.parse(argc, argv);
        return 0;
    } catch (const CLI::Success& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        std::cerr << "statpower: " << error.what() << '\n';
        return 2;
    } catch (const cli::NoAnswer& error) {
        std::cerr << "statpower: " << error.what() << '\n';
        return 1;
    }
}
