// Every operation on a grid of extreme arguments in every position: a defined result, and a bounded number of steps.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "orvcommon/mv.h"
#include "orvcommon/operations.h"
#include "orvcommon/step_count.h"

using OrvCommon_940::OrvMV;
using testing_support::Operation;
using testing_support::operations;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Steps are terms of a series, of a continued fraction or of a contour sum; the dearest take some 50 ns.
constexpr long kMostSteps = 1500;

const std::vector<double>& extremes() {
    using Limits = std::numeric_limits<double>;
    static const std::vector<double> all = {
        Limits::quiet_NaN(), -kInfinity, OrvMV::Missing(), -1e10, -1.0, -Limits::denorm_min(), -0.0, 0.0,
        Limits::denorm_min(), 1e-300, 1e-100, 1e-20, 1e-5, 0.05, 0.5, 0.999, 1 - 0x1p-53, 1.0, 1 + 0x1p-52, 2.0, 3.7,
        17.4, 62.0, 301.0, 1e4, 2e5, 1e8, 0x1p53, 1e17, 1e31, 1e100, 1e300, Limits::max(), kInfinity};
    return all;
}

std::string text(const Operation& operation, const std::vector<double>& arguments) {
    std::ostringstream s;
    s.precision(17);
    s << operation.name;
    for (double a : arguments) s << ' ' << a;
    return s.str();
}

/// Calls `visit` with every combination of extremes for the operation.
template <typename Visit>
void for_each_extreme(const Operation& operation, Visit visit) {
    std::vector<std::size_t> index(operation.arguments, 0);
    std::vector<double> arguments(operation.arguments);
    for (;;) {
        for (std::size_t i = 0; i < index.size(); ++i) arguments[i] = extremes()[index[i]];
        visit(arguments);
        std::size_t i = 0;
        while (i < index.size() && ++index[i] == extremes().size()) index[i++] = 0;
        if (i == index.size()) return;
    }
}

class Extremes : public testing::TestWithParam<Operation> {};

TEST_P(Extremes, GiveADefinedResultInBoundedSteps) {
    const Operation& operation = GetParam();
    const bool is_quantile = operation.name.starts_with("Idf"), is_unbounded = operation.name == "vorndnlgam";
    long most_steps = 0, failures = 0;
    std::string slowest, first_failure;
    for_each_extreme(operation, [&](const std::vector<double>& arguments) {
        orvmath::steps = 0;
        const double result = operation.call(arguments);
        if (orvmath::steps > most_steps) {
            most_steps = orvmath::steps;
            slowest = text(operation, arguments);
        }
        const bool in_range = is_quantile || is_unbounded || (result >= 0 && result <= 1);
        if ((std::isnan(result) || !in_range) && !OrvMV::IsMissing(result) && failures++ == 0)
            first_failure = text(operation, arguments) + " = " + std::to_string(result);
    });
    EXPECT_EQ(failures, 0) << first_failure;
    EXPECT_LE(most_steps, kMostSteps) << slowest;
    RecordProperty("most_steps", std::to_string(most_steps) + " in " + slowest);
}

INSTANTIATE_TEST_SUITE_P(Operations, Extremes, testing::ValuesIn(operations()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
