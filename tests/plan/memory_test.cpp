// Memory that runs out: no exception leaves the C interface, and nothing is left behind.
#include <gtest/gtest.h>

#include "statplan/ask.h"
#include "support/allocations.h"

namespace {

using testing_support::Allocations;
using testing_support::allocations_that_fail;

/// Lets each allocation of `call` fail in turn. `call` says whether it had its answer.
template <class Call>
int failures_of(Call call) {
    return allocations_that_fail([&](Allocations& allocations) {
        const bool answered = call();
        allocations.fail_no_more();
        EXPECT_EQ(allocations.live(), 0u);
        return !answered;
    });
}

/// What is made once for all questions is there before memory runs out.
class Memory : public testing::Test {
  protected:
    Memory() { statplan_free(statplan_ask(R"({"test": "t-one", "d": 0.5})", nullptr, nullptr)); }
};

TEST_F(Memory, OfATableThatRunsOutGivesNull) {
    // Not each allocation in turn: the JSON library allocates where it releases.
    for (const std::size_t most_bytes : {100'000, 1'000'000, 4'000'000}) {
        const Allocations allocations(most_bytes);
        EXPECT_EQ(statplan_ask(R"({"test": "t-one", "d": 0.5, "n": "2:300000"})", nullptr, nullptr), nullptr);
        EXPECT_EQ(allocations.live(), 0u);
    }
}

TEST_F(Memory, OfAPreparationThatRunsOutGivesNullWithoutARefusal) {
    const char* const given[] = {"means", "sd"};
    const char* const outputs[] = {"total"};
    const auto prepare = [&] {
        char* refusal = nullptr;
        statplan_plan* plan = statplan_prepare("anova", "size", given, 2, outputs, 1, &refusal);
        EXPECT_EQ(refusal, nullptr);
        statplan_release(plan);
        return plan != nullptr;
    };
    EXPECT_GT(failures_of(prepare), 3);
}

TEST_F(Memory, ThatRunsOutEndsARunOfColumns) {
    const char* const given[] = {"means", "sd"};
    const char* const outputs[] = {"total"};
    const double means[] = {10, 12, 15}, sd = 5;
    const statplan_column columns[] = {{means, 0, 3, sizeof(double)}, {&sd, 0, 1, 0}};
    statplan_plan* plan = statplan_prepare("anova", "size", given, 2, outputs, 1, nullptr);
    ASSERT_NE(plan, nullptr);
    double total[2];
    const statplan_output room{total, sizeof(double), 1, 0};
    EXPECT_GT(failures_of([&] { return statplan_run(plan, 2, columns, &room, nullptr, nullptr) == 2; }), 3);
    statplan_release(plan);
}

}  // namespace
