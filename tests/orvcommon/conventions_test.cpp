// The missing value and the cancellation object.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "orvcommon/mv.h"
#include "orvcommon/query_cancel.h"

using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;

namespace {

TEST(MissingValue, IsTheMostNegativeFiniteSinglePrecisionNumber) {
    EXPECT_EQ(OrvMV::Missing(), -3.4028234663852886e38);
}

TEST(MissingValue, IsRecognisedAndNothingElseIs) {
    EXPECT_TRUE(OrvMV::IsMissing(OrvMV::Missing()));
    for (double other :
         {0.0, -1.0, 1.0, std::nextafter(OrvMV::Missing(), 0.0), std::numeric_limits<double>::lowest(),
          -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
        EXPECT_FALSE(OrvMV::IsMissing(other)) << other;
}

TEST(MissingValue, SurvivesNarrowingToSinglePrecisionAndACeiling) {
    const double narrowed = static_cast<float>(OrvMV::Missing());
    EXPECT_TRUE(OrvMV::IsMissing(narrowed));
    EXPECT_TRUE(OrvMV::IsMissing(std::ceil(OrvMV::Missing())));
}

class Answer : public OrvQueryCancel {
  public:
    explicit Answer(bool answer) : answer_(answer) {}
    bool IsCancelRequested() override { return answer_; }

  private:
    bool answer_;
};

TEST(CancellationObject, TheQueryIsTheThirdEntryOfTheTableOfVirtualOperations) {
    for (bool answer : {false, true}) {
        Answer object(answer);
        using Query = bool (*)(OrvQueryCancel*);
        void* const* table = *reinterpret_cast<void* const* const*>(&object);
        EXPECT_EQ(reinterpret_cast<Query>(table[2])(&object), answer);
    }
}

}  // namespace
