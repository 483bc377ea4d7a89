// statpower: plans studies from the command line.
//
// Exit status: 0 answered, 1 the question has no answer (or memory ran out), 2 an argument is wrong, 130
// stopped by Ctrl-C.
#include <CLI/CLI.hpp>
#include <iostream>

#include "answer.h"
#include "commands.h"
#include "interrupt.h"

namespace {

int run(int argc, char** argv) {
    CLI::App app("Power, sample size and precision of statistical tests.", "statpower");
    app.require_subcommand(1);
    cli::add_anova(app);
    cli::add_contrast(app);
    cli::add_pairwise(app);
    cli::add_means(app);
    cli::add_one_sample_binomial(app);
    cli::add_related_binomial(app);
    cli::add_correlations(app);
    cli::add_regression(app);
    cli::add_prop_two(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& help) {
        return app.exit(help);
    }
    return 0;
}

int fail(int status, const std::exception& error) {
    std::cerr << "statpower: " << error.what() << '\n';
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const CLI::ParseError& error) {
        return fail(2, error);
    } catch (const cli::Interrupted& error) {
        return fail(130, error);
    } catch (const std::exception& error) {
        return fail(1, error);
    }
}
