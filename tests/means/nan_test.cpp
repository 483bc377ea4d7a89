// What NaN gives, argument by argument: checks are written so that NaN fails them where the rule says so, and passes where it
// does not. Behind the checks a tail that cannot be computed counts as certain rejection: both tails where the level is NaN.
#include <functional>
#include <string>

#include "means/expectations.h"
#include "means/two.h"
#include "statpower/means.h"
#include "support/curves.h"

namespace {

using Arguments = std::vector<double>;

struct Power {
    std::string name;
    std::function<double(const Arguments&)> of;
    Arguments arguments;
    std::string with_nan;  // for each argument in its order: m missing, 1 and 2 that number
};

const Power kPowers[] = {
    {"one sample, two-sided, effect size",
     [](const Arguments& a) { return PowerOneSampleNondirectionalES(a[0], a[1], a[2]); },
     {20, 0.5, 0.05},
     "112"},
    {"one sample, one-sided, effect size",
     [](const Arguments& a) { return PowerOneSampleDirectionalES(a[0], a[1], a[2]); },
     {20, 0.5, 0.05},
     "m1m"},
    {"one sample, two-sided",
     [](const Arguments& a) { return PowerOneSampleNondirectional(a[0], a[1], a[2], a[3], a[4]); },
     {20, 0.5, 1, 0, 0.05},
     "m1m1m"},
    {"one sample, one-sided",
     [](const Arguments& a) { return PowerOneSampleDirectional(a[0], a[1], a[2], a[3], a[4]); },
     {20, 0.5, 1, 0, 0.05},
     "m1m1m"},
    {"pairs, two-sided, effect size",
     [](const Arguments& a) { return PowerRelatedNondirectionalES(a[0], a[1], a[2]); },
     {20, 0.5, 0.05},
     "m1m"},
    {"pairs, one-sided, effect size",
     [](const Arguments& a) { return PowerRelatedDirectionalES(a[0], a[1], a[2]); },
     {20, 0.5, 0.05},
     "m1m"},
    {"pairs, two-sided",
     [](const Arguments& a) { return PowerRelatedNondirectional(a[0], a[1], a[2], a[3], a[4], a[5], a[6]); },
     {20, 0.5, 1, 0, 2, 0.5, 0.05},
     "m11111m"},
    {"pairs, one-sided",
     [](const Arguments& a) { return PowerRelatedDirectional(a[0], a[1], a[2], a[3], a[4], a[5], a[6]); },
     {20, 0.5, 1, 0, 2, 0.5, 0.05},
     "m11111m"},
    {"two samples, two-sided",
     [](const Arguments& a) {
         return PowerIndependentNondirectional(a[0], a[1], a[2], a[3], a[4], a[5], a[6]);
     },
     {20, 0.5, 1, 30, 0, 2, 0.05},
     "m1mm1mm"},
    {"two samples, one-sided",
     [](const Arguments& a) { return PowerIndependentDirectional(a[0], a[1], a[2], a[3], a[4], a[5], a[6]); },
     {20, 0.5, 1, 30, 0, 2, 0.05},
     "m1mm1mm"},
    {"two samples, two-sided, effect size",
     [](const Arguments& a) { return PowerIndependentNondirectionalES(a[0], a[1], a[2], a[3]); },
     {20, 30, 0.5, 0.05},
     "1112"},
    {"two samples, one-sided, effect size",
     [](const Arguments& a) { return PowerIndependentDirectionalES(a[0], a[1], a[2], a[3]); },
     {20, 30, 0.5, 0.05},
     "mm1m"},
    {"two samples by total and ratio, two-sided",
     [](const Arguments& a) {
         return POWER_NAMESPACE::_PowerIndependentNondirectional(a[0], a[1], a[2], a[3], a[4], a[5]);
     },
     {50, 1.5, 0.5, 1, 2, 0.05},
     "111112"},
    {"two samples by total and ratio, one-sided",
     [](const Arguments& a) {
         return POWER_NAMESPACE::_PowerIndependentDirectional(a[0], a[1], a[2], a[3], a[4], a[5]);
     },
     {50, 1.5, 0.5, 1, 2, 0.05},
     "111111"}};

TEST(NaN, OfAPowerIsMissingWhereTheArgumentIsCheckedAndElseCertainRejection) {
    for (const Power& power : kPowers) {
        ASSERT_EQ(power.with_nan.size(), power.arguments.size()) << power.name;
        EXPECT_GT(power.of(power.arguments), 0) << power.name;
        EXPECT_LT(power.of(power.arguments), 1) << power.name;
        for (std::size_t i = 0; i < power.arguments.size(); ++i) {
            Arguments arguments = power.arguments;
            arguments[i] = kNaN;
            if (power.with_nan[i] == 'm')
                EXPECT_MISSING(power.of(arguments)) << power.name << ", argument " << i;
            else
                EXPECT_EQ(power.of(arguments), power.with_nan[i] - '0') << power.name << ", argument " << i;
        }
    }
}

// ---- Curves and surfaces -----------------------------------------------------------------------------------------------

struct Drawn {
    std::string name;
    std::function<std::vector<double>(const Arguments&)> powers_of;
    Arguments arguments;
    // For each argument: e nothing is drawn; m, 1 and 2 the first and the last power are that; p they are as they were; M and F the
    // first is missing or 1, and the last as it was.
    std::string with_nan;
};

std::vector<double> powers(XYPlot plot) {
    return Curve(plot).y;
}
std::vector<double> powers(XYZPlot plot) {
    return Surface(plot).z;
}

constexpr int kTwoSided = 0, kOneSided = 1;

const Drawn kDrawn[] = {
    {"sizes, one sample, two-sided",
     [](const Arguments& a) { return powers(PlotNOneSample(10, 12, kTwoSided, 0, a[0], a[1], a[2], a[3])); },
     {0.5, 1, 0, 0.05},
     "1m1m"},
    {"sizes, one sample, one-sided",
     [](const Arguments& a) { return powers(PlotNOneSample(10, 12, kOneSided, 0, a[0], a[1], a[2], a[3])); },
     {0.5, 1, 0, 0.05},
     "1m1m"},
    {"sizes, one sample, effect size, two-sided",
     [](const Arguments& a) { return powers(PlotNOneSampleFES(10, 12, kTwoSided, a[0], a[1])); },
     {0.5, 0.05},
     "12"},
    {"sizes, one sample, effect size, one-sided",
     [](const Arguments& a) { return powers(PlotNOneSampleFES(10, 12, kOneSided, a[0], a[1])); },
     {0.5, 0.05},
     "1m"},
    {"effects, one sample, two-sided",
     [](const Arguments& a) { return powers(PlotESOneSample(kTwoSided, a[0], a[1], a[2], a[3], a[4])); },
     {20, 0.1, 0.9, 0.05, 0.5},
     "1ee2e"},
    {"effects, one sample, one-sided",
     [](const Arguments& a) { return powers(PlotESOneSample(kOneSided, a[0], a[1], a[2], a[3], a[4])); },
     {20, 0.1, 0.9, 0.05, 0.5},
     "meeme"},
    {"sizes and effects, one sample, two-sided",
     [](const Arguments& a) { return powers(PlotNaESOneSample(10, 12, kTwoSided, a[0], a[1], a[2], a[3])); },
     {0.1, 0.9, 0.05, 0.5},
     "ee2e"},
    {"sizes and effects, one sample, one-sided",
     [](const Arguments& a) { return powers(PlotNaESOneSample(10, 12, kOneSided, a[0], a[1], a[2], a[3])); },
     {0.1, 0.9, 0.05, 0.5},
     "eeme"},
    {"sizes, pairs, two-sided",
     [](const Arguments& a) {
         return powers(PlotNRelated(10, 12, kTwoSided, 0, a[0], a[1], a[2], a[3], a[4], a[5]));
     },
     {0.5, 1, 0, 2, 0.5, 0.05},
     "11111m"},
    {"sizes, pairs, one-sided",
     [](const Arguments& a) {
         return powers(PlotNRelated(10, 12, kOneSided, 0, a[0], a[1], a[2], a[3], a[4], a[5]));
     },
     {0.5, 1, 0, 2, 0.5, 0.05},
     "11111m"},
    {"sizes, pairs, effect size, two-sided",
     [](const Arguments& a) { return powers(PlotNRelatedFES(10, 12, kTwoSided, a[0], a[1])); },
     {0.5, 0.05},
     "1m"},
    {"sizes, pairs, effect size, one-sided",
     [](const Arguments& a) { return powers(PlotNRelatedFES(10, 12, kOneSided, a[0], a[1])); },
     {0.5, 0.05},
     "1m"},
    {"effects, pairs, two-sided",
     [](const Arguments& a) { return powers(PlotESRelated(kTwoSided, a[0], a[1], a[2], a[3], a[4])); },
     {20, 0.1, 0.9, 0.05, 0.5},
     "meeme"},
    {"effects, pairs, one-sided",
     [](const Arguments& a) { return powers(PlotESRelated(kOneSided, a[0], a[1], a[2], a[3], a[4])); },
     {20, 0.1, 0.9, 0.05, 0.5},
     "meeme"},
    {"sizes and effects, pairs, two-sided",
     [](const Arguments& a) { return powers(PlotNaESRelated(10, 12, kTwoSided, a[0], a[1], a[2], a[3])); },
     {0.1, 0.9, 0.05, 0.5},
     "ee2e"},
    {"sizes and effects, pairs, one-sided",
     [](const Arguments& a) { return powers(PlotNaESRelated(10, 12, kOneSided, a[0], a[1], a[2], a[3])); },
     {0.1, 0.9, 0.05, 0.5},
     "eeme"},
    {"ratios, two-sided",
     [](const Arguments& a) {
         return powers(PlotRatioIndependent(kTwoSided, a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8]));
     },
     {50, 0.5, 1, 0, 2, 0.5, 2, 0.05, 0.5},
     "e1e1eeeee"},
    {"ratios, one-sided",
     [](const Arguments& a) {
         return powers(PlotRatioIndependent(kOneSided, a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8]));
     },
     {50, 0.5, 1, 0, 2, 0.5, 2, 0.05, 0.5},
     "e1e1eeeee"},
    {"ratios, effect size, two-sided",
     [](const Arguments& a) {
         return powers(PlotRatioIndependentFES(kTwoSided, a[0], a[1], a[2], a[3], a[4], a[5]));
     },
     {50, 0.5, 0.5, 2, 0.05, 0.5},
     "11F12e"},
    {"ratios, effect size, one-sided",
     [](const Arguments& a) {
         return powers(PlotRatioIndependentFES(kOneSided, a[0], a[1], a[2], a[3], a[4], a[5]));
     },
     {50, 0.5, 0.5, 2, 0.05, 0.5},
     "m1Mmme"},
    {"effects, two samples, two-sided",
     [](const Arguments& a) {
         return powers(PlotESIndepended(kTwoSided, a[0], a[1], a[2], a[3], a[4], a[5]));
     },
     {20, 30, 0.1, 0.9, 0.05, 0.5},
     "11ee2e"},
    {"effects, two samples, one-sided",
     [](const Arguments& a) {
         return powers(PlotESIndepended(kOneSided, a[0], a[1], a[2], a[3], a[4], a[5]));
     },
     {20, 30, 0.1, 0.9, 0.05, 0.5},
     "mmeeme"},
    {"differences, two-sided",
     [](const Arguments& a) {
         return powers(
             PlotMeanDiffIndepended(kTwoSided, a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9]));
     },
     {20, 0.5, 1, 30, 0, 2, -1, 1, 0.05, 0.5},
     "epeepeeeee"},
    {"differences, one-sided",
     [](const Arguments& a) {
         return powers(
             PlotMeanDiffIndepended(kOneSided, a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7], a[8], a[9]));
     },
     {20, 0.5, 1, 30, 0, 2, -1, 1, 0.05, 0.5},
     "epeepeeeee"},
    {"ratios and effects, two-sided",
     [](const Arguments& a) {
         return powers(PlotRatioaESIndependent(kTwoSided, a[0], a[1], a[2], a[3], a[4], a[5], a[6]));
     },
     {50, 0.5, 2, 0.1, 0.9, 0.05, 0.5},
     "1F1F12e"},
    {"ratios and effects, one-sided",
     [](const Arguments& a) {
         return powers(PlotRatioaESIndependent(kOneSided, a[0], a[1], a[2], a[3], a[4], a[5], a[6]));
     },
     {50, 0.5, 2, 0.1, 0.9, 0.05, 0.5},
     "mMmF1me"},
    {"ratios and differences, two-sided",
     [](const Arguments& a) {
         return powers(PlotRatioaMeanDiffIndependent(kTwoSided, a[0], a[1], a[2], a[3], a[4], a[5], a[6],
                                                     a[7], a[8], a[9], a[10]));
     },
     {50, 0.5, 1, 0, 2, 0.5, 2, -1, 1, 0.05, 0.5},
     "epepeeeeeee"},
    {"ratios and differences, one-sided",
     [](const Arguments& a) {
         return powers(PlotRatioaMeanDiffIndependent(kOneSided, a[0], a[1], a[2], a[3], a[4], a[5], a[6],
                                                     a[7], a[8], a[9], a[10]));
     },
     {50, 0.5, 1, 0, 2, 0.5, 2, -1, 1, 0.05, 0.5},
     "epepeeeeeee"},
};

TEST(NaN, OfACurveLeavesItEmptyOrItsPowersMissingOrCertain) {
    for (const Drawn& drawn : kDrawn) {
        const std::vector<double> ordinary = drawn.powers_of(drawn.arguments);
        ASSERT_EQ(drawn.with_nan.size(), drawn.arguments.size()) << drawn.name;
        ASSERT_FALSE(ordinary.empty()) << drawn.name;
        EXPECT_THAT(ordinary, testing::Each(testing::AllOf(testing::Gt(0), testing::Lt(1)))) << drawn.name;
        for (std::size_t i = 0; i < drawn.arguments.size(); ++i) {
            Arguments arguments = drawn.arguments;
            arguments[i] = kNaN;
            const std::vector<double> seen = drawn.powers_of(arguments);
            const char rule = drawn.with_nan[i];
            EXPECT_EQ(seen.empty(), rule == 'e') << drawn.name << ", argument " << i;
            if (seen.empty()) continue;
            const bool ends_as_before = rule == 'p' || rule == 'M' || rule == 'F';
            const double first = rule == 'p'                  ? ordinary.front()
                                 : rule == 'm' || rule == 'M' ? narrowed(kMissing)
                                 : rule == '2'                ? 2
                                                              : 1;
            EXPECT_EQ(seen.front(), first) << drawn.name << ", argument " << i;
            EXPECT_EQ(seen.back(), ends_as_before ? ordinary.back() : first)
                << drawn.name << ", argument " << i;
        }
    }
}

}  // namespace
