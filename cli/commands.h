// The commands of the program: each adds itself, with its subcommands and options, to the application.
#pragma once

#include <CLI/CLI.hpp>

namespace cli {

void add_anova(CLI::App& app);
void add_contrast(CLI::App& app);
void add_pairwise(CLI::App& app);
void add_means(CLI::App& app);
void add_one_sample_binomial(CLI::App& app);
void add_related_binomial(CLI::App& app);
void add_correlations(CLI::App& app);
void add_regression(CLI::App& app);
void add_prop_two(CLI::App& app);

}  // namespace cli
