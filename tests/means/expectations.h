// What the tests of the t tests share.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "support/table.h"
#include "support/values.h"

using namespace testing_support;

/// Student's t for one and for two degrees of freedom, where the quantile has a closed form.
inline double t_quantile_1(double p) {
    return std::tan(std::acos(-1.0) * (p - 0.5));
}
inline double t_quantile_2(double p) {
    return (2 * p - 1) * std::sqrt(2 / (1 - (2 * p - 1) * (2 * p - 1)));
}
