// The operations from several threads at once.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "orvcommon/distribution_errors.h"

using testing_support::operations;
using testing_support::read_table;

namespace {

/// The results of all operations over their hand-picked tables.
std::vector<double> all_results() {
    std::vector<double> results;
    for (const auto& operation : operations())
        for (const auto& row : read_table("distributions/" + operation.name + ".csv"))
            results.push_back(operation.call({row.values.data(), operation.arguments}));
    return results;
}

TEST(Threads, GetTheSameResultsAsOneAlone) {
    const std::vector<double> alone = all_results();
    std::vector<std::vector<double>> results(4);
    {
        std::vector<std::jthread> threads;
        for (auto& mine : results) threads.emplace_back([&mine] { mine = all_results(); });
    }
    for (const auto& mine : results) EXPECT_EQ(mine, alone);
}

}  // namespace
