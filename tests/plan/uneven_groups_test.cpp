// Groups of uneven sizes: rounding them apart lets the power of an allocation fall below that of a smaller one.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "plan/asked.h"

namespace statplan {
namespace {

std::vector<double> sizes_of(const std::vector<Item>& items) {
    std::vector<double> found;
    for (const Item& item : items)
        if (item.argument->name == "n1" || item.argument->name == "n2") found.push_back(item.values.front());
    return found;
}

TEST(UnevenGroups, TheLeastSizeAndTheGuaranteedOneHoldForEveryAllocationOfWelchsTest) {
    std::mt19937 engine(7);
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution(low, high)(engine);
    };
    int apart = 0;
    for (int design = 0; design < 300; ++design) {
        const double ratio = between(0.2, 5), target = between(0.4, 0.95);
        Question size{.test = find_test("t-two"), .unknown = "size"};
        size.give("diff", between(0.6, 3)), size.give("sd1", between(0.5, 2)),
            size.give("sd2", between(0.5, 2));
        size.give("variance", 1), size.give("ratio", ratio), size.give("power", target);
        const auto record = ask(size);
        ASSERT_TRUE(record) << record.refusal().message();
        const auto smallest = sizes_of(record->answer), guaranteed = sizes_of(record->guaranteed);
        // Every allocation from the smallest possible one to far beyond: one ends where either group is whole.
        std::vector<double> ends;
        for (double whole = 1; whole < 3 * guaranteed[0] + 40; ++whole) ends.push_back(whole);
        for (double whole = 1; whole / ratio < 3 * guaranteed[0] + 40; ++whole) ends.push_back(whole / ratio);
        std::ranges::sort(ends);
        std::vector<double> first, last_short, previous;
        for (const double real : ends) {
            const std::vector<double> at{std::max(2.0, std::ceil(real - 1e-9)),
                                         std::max(2.0, std::ceil(ratio * real - 1e-9))};
            if (at == previous) continue;
            previous = at;
            Question power = size;
            power.unknown = "power";
            std::erase_if(power.given,
                          [](const auto& given) { return given.name == "ratio" || given.name == "power"; });
            power.give("n1", at[0]), power.give("n2", at[1]);
            if (answer_of(*ask(power), "power") >= target) {
                if (first.empty()) first = at;
            } else {
                last_short = at;
            }
        }
        EXPECT_EQ(smallest, first) << design;
        const double beyond = last_short.empty() ? 0 : last_short[0] + last_short[1];
        EXPECT_GT(guaranteed[0] + guaranteed[1], beyond) << design;
        apart += smallest != guaranteed;
    }
    EXPECT_GT(apart, 0);  // it does happen
}

}  // namespace
}  // namespace statplan
