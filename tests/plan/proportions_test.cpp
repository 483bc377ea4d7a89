// The tests of proportions: published values and R's, and the textbook's answers where the C interface differs.
#include <gmock/gmock.h>

#include <cmath>
#include <set>

#include "plan/asked.h"
#include "plan/design.h"
#include "statpower/independent_binomial.h"

using namespace statplan;
using namespace testing_support;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace {

std::vector<double> sizes_of(const std::string& command, bool guaranteed = false) {
    const auto record = asked(command);
    std::vector<double> sizes;
    if (!record) return sizes;
    for (const Item& item : guaranteed ? record->guaranteed : record->answer)
        if (item.argument->name == "n" || item.argument->name == "n1" || item.argument->name == "n2")
            sizes.push_back(item.values.front());
    return sizes;
}

TEST(Proportions, HaveThePowersLevelsAndIntervalsOfRAndOfPublishedTables) {
    std::set<std::string> tests;
    for (const Row& row : read_table("plan/tests_of_proportions.csv")) {
        const Design design(row.label);
        EXPECT_NEAR(design.answer(), row[0], row[1]) << row.label;
        EXPECT_FALSE(design.contradiction) << row.label;
        tests.emplace(design.test().name);
    }
    EXPECT_EQ(tests.size(), 3u);
}

TEST(Proportions, ExactSizesAreTheLeastAndTheLeastThatStays) {
    const std::string design =
        "prop-one size --p0 0.9 --p1 0.95 --alternative one-sided --alpha 0.025 --power 0.9 "
        "--method exact";
    EXPECT_EQ(sizes_of(design), std::vector<double>{292});
    EXPECT_EQ(sizes_of(design, true), std::vector<double>{316});
    EXPECT_EQ(sizes_of(design + " --rule guaranteed"), std::vector<double>{316});
}

TEST(Proportions, ASmallestSizeWithoutAGuaranteedOneBelowMaxNSaysSo) {
    const std::string one =
        "prop-one size --p0 0.9 --p1 0.95 --alternative one-sided --alpha 0.025 --power 0.9 "
        "--method exact --max-n 300";
    const std::string two =
        "prop-two size --p1 0.3 --p2 0.6 --method exact --statistic fisher --max-n 96 --power 0.8";
    for (const std::string& design : {one, two}) {
        const auto record = asked(design);
        ASSERT_TRUE(record) << record.refusal().message();
        EXPECT_THAT(record->guaranteed, IsEmpty());
        EXPECT_THAT(record->notes, testing::Contains(HasSubstr("no guaranteed size")));
        EXPECT_THAT(to_text(*record), HasSubstr("no guaranteed size"));
        EXPECT_FALSE(asked(design + " --rule guaranteed"));
    }
}

TEST(Proportions, AnAllocationStaysOneWithContinuityAndPooledVarianceOneSided) {
    EXPECT_EQ(sizes_of("prop-two size --p1 0.3 --p2 0.5 --ratio 2 --alternative one-sided --continuity yes"),
              (std::vector<double>{63, 125}));
}

TEST(Proportions, TheDefaultOfTwoIsThePooledZTest) {
    // R: power.prop.test(n = 100, p1 = 0.3, p2 = 0.5, strict = TRUE)
    EXPECT_NEAR(answer_to("prop-two power --p1 0.3 --p2 0.5 --n 100", "power"), 0.828109772, 1e-9);
}

TEST(Proportions, AnExactOneSidedLikelihoodRatioTestHasOneSide) {
    const std::string design =
        "prop-two power --p1 0.4 --p2 0.7 --n 30 --method exact --statistic likelihood-ratio "
        "--alternative ";
    EXPECT_EQ(answer_to(design + "one-sided", "power"), answer_to(design + "less", "power"));
    EXPECT_GT(answer_to(design + "one-sided", "power"), answer_to(design + "two-sided", "power"));
    // That of the library is larger still: it rejects on both sides.
    EXPECT_LT(answer_to(design + "one-sided --alpha 0.4", "power"),
              PowerIndSampBinom(30, 30, 0.4, 0.7, 0.4, 1, 2, 1, false, true, nullptr));
}

TEST(Proportions, AnExactAnswerCarriesItsLevelAndSaysWhenItIsAboveAlpha) {
    const auto liberal =
        asked("prop-two power --p1 0.3 --p2 0.5 --n 80 --method exact --statistic likelihood-ratio");
    ASSERT_TRUE(liberal);
    EXPECT_GT(answer_of(*liberal, "level"), 0.09);
    EXPECT_THAT(liberal->notes, testing::Contains(HasSubstr("above alpha")));
    const auto fisher = asked("prop-two power --p1 0.3 --p2 0.5 --n 80 --method exact --statistic fisher");
    ASSERT_TRUE(fisher);
    EXPECT_LT(answer_of(*fisher, "level"), 0.05);
    EXPECT_THAT(fisher->notes, IsEmpty());
    EXPECT_TRUE(std::isnan(answer_to("prop-two power --p1 0.3 --p2 0.5 --n 80", "level")));
}

TEST(Proportions, RefuseWhatNoTableHas) {
    EXPECT_THAT(
        refusal_of("prop-paired power --p1 0.3 --p2 0.5 --rho 0.9 --n 80"),
        HasSubstr("rho: no pairs with these proportions have it; from -0.654654 to 0.654654 would do"));
    EXPECT_THAT(refusal_of("prop-paired power --p1 0.3 --p2 0.5 --rho 0.654 --n 80"), IsEmpty());
    EXPECT_THAT(refusal_of("prop-paired power --p10 0.6 --p01 0.5 --n 80"), HasSubstr("p10 + p01 exceeds 1"));
    EXPECT_THAT(refusal_of("prop-paired power --p10 0 --p01 0 --n 80"), HasSubstr("no pair is discordant"));
    EXPECT_THAT(refusal_of("prop-two power --p1 0.3 --risk-ratio 0.2 --n 80"), HasSubstr("leaves no p2"));
    EXPECT_THAT(refusal_of("prop-two power --p2 0.3 --h 3 --n 80"), HasSubstr("h: leaves no p1"));
    EXPECT_THAT(refusal_of("prop-one power --p0 0.3 --risk-difference 0.8 --n 80"),
                HasSubstr("leaves no p1"));
}

TEST(Proportions, RefuseOptionsWithoutEffectAndTestsThatAreNotTheTextbooks) {
    const std::string two = "prop-two power --p1 0.3 --p2 0.5 --n 80 ";
    EXPECT_THAT(refusal_of(two + "--statistic fisher --continuity yes"),
                HasSubstr("only with statistic chi-square"));
    EXPECT_THAT(refusal_of(two + "--statistic likelihood-ratio --variance pooled"), HasSubstr("variance: "));
    EXPECT_THAT(refusal_of(two + "--statistic t --variance unpooled --method exact"),
                HasSubstr("chi-square has an exact one with unpooled variance"));
    EXPECT_THAT(refusal_of(two + "--alternative greater"), HasSubstr("less"));
    EXPECT_THAT(refusal_of("prop-one power --p1 0.3 --p0 0.5 --n 80 --method exact --continuity yes"),
                HasSubstr("only with method approximate"));
    EXPECT_THAT(refusal_of("prop-paired precision --p10 0.3 --p01 0.1 --n 80 --continuity yes"),
                HasSubstr("only with interval wald"));
}

TEST(Proportions, FailuresOfTheLibraryAreNoAnswers) {
    EXPECT_THAT(
        refusal_of("prop-two power --p1 0.02 --p2 0.01 --n 10 --statistic fisher --alternative one-sided"),
        IsEmpty());  // the correction exceeds the difference: no power beyond alpha
    EXPECT_THAT(refusal_of("prop-two power --p1 0.7 --p2 0.01 --n1 2 --n2 2 --statistic fisher"), IsEmpty());
    EXPECT_THAT(refusal_of("prop-two power --p1 0.95 --p2 0.1 --n1 2 --n2 8 --statistic fisher"), IsEmpty());
}

TEST(Proportions, BothSidesOfAHeldProportionAreFound) {
    const auto found = [](const std::string& effect, const std::string& held) {
        const auto record =
            asked("prop-two solve --solve-for " + effect + " --" + held + " --n 100 --power 0.8");
        return record && !record->other.empty()
                   ? std::pair(answer_of(*record, effect), record->other.front().values.front())
                   : std::pair(kNotGiven, kNotGiven);
    };
    // p1 that are found beside p2 = 0.3, in other words
    const auto p = found("p1", "p2 0.3");
    EXPECT_NEAR(found("risk-ratio", "p2 0.3").first, p.first / 0.3, 1e-9);
    EXPECT_NEAR(found("risk-ratio", "p2 0.3").second, p.second / 0.3, 1e-9);
    EXPECT_NEAR(found("odds-ratio", "p2 0.3").first, p.first / (1 - p.first) * 7 / 3, 1e-9);
    EXPECT_NEAR(found("odds-ratio", "p2 0.3").second, p.second / (1 - p.second) * 7 / 3, 1e-9);
    EXPECT_NEAR(found("risk-difference", "p2 0.3").second, p.second - 0.3, 1e-9);
    EXPECT_NEAR(found("h", "p2 0.3").first, 2 * (std::asin(std::sqrt(p.first)) - std::asin(std::sqrt(0.3))),
                1e-9);
    // Beside 0.5 the risk ratio ends at 2, the answer below.
    EXPECT_NEAR(found("risk-ratio", "p2 0.5").first, 1.3864500015, 1e-9);
}

TEST(Proportions, OneGroupAloneIsFoundOrCannotReachThePower) {
    const std::string design = "prop-two solve --p1 0.3 --p2 0.5 --method exact --power 0.8 --n1 ";
    const double n2 = answer_to(design + "60 --solve-for n2", "n2");
    const std::string power = "prop-two power --p1 0.3 --p2 0.5 --method exact --n1 60 --n2 ";
    EXPECT_GE(answer_to(power + std::to_string(static_cast<int>(n2)), "power"), 0.8);
    for (int smaller = 2; smaller < n2; ++smaller)
        EXPECT_LT(answer_to(power + std::to_string(smaller), "power"), 0.8);
    // Beside endless others 10 are a test of p = 0.5, which rejects 0 and 1: pbinom(1, 10, 0.3) is 0.149.
    EXPECT_THAT(refusal_of(design + "10 --solve-for n2 --statistic fisher"), HasSubstr("tends to 0.149 "));
    EXPECT_EQ(
        answer_to("prop-two solve --p1 0.3 --p2 0.5 --method exact --power 0.8 --solve-for total", "total"),
        185);
}

TEST(Proportions, AnEndOfWhatIsPossibleIsNoSolution) {
    const auto record = asked("prop-paired solve --solve-for rho --p1 0.3 --p2 0.5 --n 60 --power 0.8");
    ASSERT_TRUE(record);
    EXPECT_TRUE(record->other.empty());
}

}  // namespace
