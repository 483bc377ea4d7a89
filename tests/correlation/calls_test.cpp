// Calls of the common library whose value is not used, as a program that stands in for it sees them.
#include <gtest/gtest.h>

#include <vector>

#include "correlation/correlation.h"
#include "correlation/kinds.h"
#include "support/distribution_stand_in.h"

using namespace testing_support;

namespace {

TEST(CorrelationCalls, TheHalfWidthSearchesAskForTheQuantileAndDiscardIt) {
    for (Kind kind : kAllKinds) {
        // The search itself evaluates the half-width twice, at both ends, and is then done.
        distribution_calls = {};
        EXPECT_EQ(size_for_half_width(kind, nullptr, 1.5, 0, 0.3, 0.1), 4);
        EXPECT_EQ(distribution_calls.idf_std_norm, std::vector<Arguments>(3, {1 - 0.1 / 2}));
    }
}

TEST(CorrelationCalls, ThePartialDefaultRangeEvaluatesThePowerAndDiscardsIt) {
    distribution_calls = {};
    int nMin = -1, nMax = -1;
    POWER_NAMESPACE::_SetPlotRangeN(20, 2, 0.3, 0.0, 1, 0.1, nMin, nMax);
    EXPECT_EQ(distribution_calls.idf_std_norm, std::vector<Arguments>(1, {1 - 0.1}));
    EXPECT_EQ(nMin, 6);
    EXPECT_EQ(nMax, 5002);
}

}  // namespace
