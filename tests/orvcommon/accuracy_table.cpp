// Prints the largest errors by operation and region as the rows of a Markdown table: see scripts/accuracy.
#include <cstdio>

#include "orvcommon/distribution_errors.h"

int main() {
    std::puts("| operation | region | points | largest absolute error | largest relative error |");
    std::puts("|---|---|---:|---:|---:|");
    for (const auto& operation : testing_support::operations())
        for (const auto& [region, errors] : testing_support::errors_by_region(operation))
            std::printf("| `%s` | %s | %d | %.1e | %.1e |\n", operation.name.c_str(), region.c_str(),
                        errors.points, errors.absolute, errors.relative);
}
