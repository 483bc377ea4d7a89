// Tables of designs, row by row.
#include "statplan/designs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace statplan {
namespace {

TEST(Designs, ARowTakesOneValueOfAWord) {
    auto read = Designs::read("d,n", {{"test", "t-one"}, {"question", "power"}});
    ASSERT_TRUE(read);
    for (const char* row : {"0.5,\"10,20\"", "0.5,10:20", "0.5,1:1e300:1"}) {
        (*read).see(row);
        const auto line = read->answer(row);
        EXPECT_TRUE(line.refused) << row;
        EXPECT_THAT(line.text, testing::HasSubstr("n: takes one value in a row")) << row;
    }
}

}  // namespace
}  // namespace statplan
