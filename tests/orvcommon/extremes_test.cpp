// Every operation on a grid of extreme arguments in every position: a defined result, and a bounded number
// of steps.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "orvcommon/mv.h"
#include "orvcommon/operations.h"
#include "orvcommon/step_count.h"
#include "support/values.h"

using OrvCommon_940::OrvMV;
using testing_support::kInfinity;
using testing_support::Operation;
using testing_support::operations;

namespace {

/// Steps are terms of a series, of a continued fraction or of a contour sum: 2 to 60 ns each, the dearest
/// fewer.
constexpr long kMostSteps = 2000;

const std::vector<double>& extremes() {
    using Limits = std::numeric_limits<double>;
    static const std::vector<double> all = {Limits::quiet_NaN(),
                                            -kInfinity,
                                            OrvMV::Missing(),
                                            -1e10,
                                            -1.0,
                                            -Limits::denorm_min(),
                                            -0.0,
                                            0.0,
                                            Limits::denorm_min(),
                                            1e-300,
                                            1e-100,
                                            1e-20,
                                            1e-5,
                                            0.05,
                                            0.5,
                                            0.999,
                                            1 - 0x1p-53,
                                            1.0,
                                            1 + 0x1p-52,
                                            2.0,
                                            3.7,
                                            17.4,
                                            62.0,
                                            301.0,
                                            1e4,
                                            2e5,
                                            1e8,
                                            0x1p53,
                                            1e17,
                                            1e31,
                                            1e100,
                                            1e300,
                                            Limits::max(),
                                            kInfinity};
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

/// Collects what goes wrong in many calls of one operation, and the call with the most steps.
class Sweep {
  public:
    explicit Sweep(const Operation& operation) : operation_(operation) {}

    void call(const std::vector<double>& arguments) {
        orvmath::steps = 0;
        const double result = operation_.call(arguments);
        if (orvmath::steps > most_steps_) {
            most_steps_ = orvmath::steps;
            slowest_ = text(operation_, arguments);
        }
        const bool unbounded = operation_.name.starts_with("Idf") || operation_.name == "vorndnlgam";
        const bool defined = unbounded ? !std::isnan(result) : result >= 0 && result <= 1;
        if (!defined && !OrvMV::IsMissing(result) && failures_++ == 0)
            first_failure_ = text(operation_, arguments) + " = " + std::to_string(result);
    }

    void expect_defined_in_bounded_steps() const {
        EXPECT_EQ(failures_, 0) << first_failure_;
        EXPECT_LE(most_steps_, kMostSteps) << slowest_;
        testing::Test::RecordProperty("most_steps", std::to_string(most_steps_) + " in " + slowest_);
    }

  private:
    const Operation& operation_;
    long most_steps_ = 0, failures_ = 0;
    std::string slowest_, first_failure_;
};

class Extremes : public testing::TestWithParam<Operation> {};

TEST_P(Extremes, OnAGridGiveADefinedResultInBoundedSteps) {
    Sweep sweep(GetParam());
    for_each_extreme(GetParam(), [&](const std::vector<double>& arguments) { sweep.call(arguments); });
    sweep.expect_defined_in_bounded_steps();
}

TEST_P(Extremes, AtRandomGiveADefinedResultInBoundedSteps) {
    Sweep sweep(GetParam());
    std::mt19937_64 engine(940);
    const auto uniform = [&engine](double low, double high) {
        return low + (high - low) * static_cast<double>(engine() >> 11) * 0x1p-53;
    };
    const double exponents[] = {1, 3, 10, 30, 100, 300};
    std::vector<double> arguments(GetParam().arguments);
    for (int i = 0; i < 100000; ++i) {
        for (double& argument : arguments) {
            const double range = exponents[engine() % std::size(exponents)];
            argument = std::pow(10, uniform(-range, range));
            // Every third number is a probability, at either end as near as doubles go.
            if (engine() % 3 == 0) argument = std::min(argument, 1 / argument);
            if (engine() % 6 == 0) argument = 1 - std::pow(10, uniform(-16, 0));
        }
        sweep.call(arguments);
    }
    sweep.expect_defined_in_bounded_steps();
}

INSTANTIATE_TEST_SUITE_P(Operations, Extremes, testing::ValuesIn(operations()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
