// Searched sizes are those that the library's own searches find, rounded up.
#include <gmock/gmock.h>

#include <cmath>
#include <numeric>
#include <random>

#include "statplan/plan.h"
#include "statpower/anova.h"
#include "statpower/correlation.h"
#include "statpower/independent_binomial.h"
#include "statpower/means.h"
#include "statpower/one_sample_binomial.h"
#include "statpower/regression.h"
#include "statpower/related_binomial.h"

namespace statplan {
namespace {

using List = std::vector<double>;

constexpr int kDesigns = 1000;

/// Random designs whose sizes are between a few and some thousands.
class Random {
  public:
    double between(double low, double high) { return std::uniform_real_distribution(low, high)(engine_); }
    double whole(int low, int high) { return std::uniform_int_distribution(low, high)(engine_); }
    bool coin() { return whole(0, 1) == 1; }
    double power() { return between(0.3, 0.99); }
    double alpha() { return std::exp(between(std::log(1e-4), std::log(0.2))); }
    /// Away from 0, of either sign.
    double effect(double low, double high) { return (coin() ? 1 : -1) * between(low, high); }
    List list(std::size_t length, double low, double high) {
        List values(length);
        for (double& x : values) x = between(low, high);
        return values;
    }

  private:
    std::mt19937_64 engine_{20260511};
};

struct Searched {
    Question question;  // what the planner is asked
    List expected;      // the sizes of the library
};

Question size_of(std::string_view test, std::vector<Question::Given> given) {
    return {.test = find_test(test), .unknown = "size", .given = std::move(given)};
}

List sizes_in(const Record& record) {
    List sizes;
    const auto& found = record.test->sizes.found;
    for (const Item& item : record.answer)
        if (std::ranges::find(found, item.argument->name, &Argument::name) != found.end())
            sizes.insert(sizes.end(), item.values.begin(), item.values.end());
    return sizes;
}

double total_of(const List& sizes) {
    return std::accumulate(sizes.begin(), sizes.end(), 0.0);
}

/// Asks for the sizes of many designs.
void expect_sizes_of_the_library(Searched (*draw)(Random&)) {
    Random random;
    for (int i = 0; i < kDesigns; ++i) {
        const auto [question, expected] = draw(random);
        const auto record = ask(question);
        ASSERT_TRUE(record) << record.refusal().message();
        EXPECT_EQ(sizes_in(*record), expected) << to_json(*record);
    }
}

/// The power of the library's sizes, for the same design.
double power_at(Question question, const List& sizes) {
    std::erase_if(question.given, [](const auto& given) {
        return given.name == "power" || given.name == "ratio" || given.name == "weights";
    });
    question.unknown = "power";
    const auto& found = question.test->sizes.found;
    if (found.size() == sizes.size())
        for (std::size_t i = 0; i < sizes.size(); ++i) question.give(found[i].name, sizes[i]);
    else
        question.give(found.front().name, sizes);
    return ask(question)->answer.front().values.front();
}

/// The same for groups with different shares, where the library rounds each of them up at one real total. The
/// planner goes on to smaller allocations that reach the power, and further where the library's do not reach
/// it: a larger group can cost power (degrees of freedom of Welch's test, a mean that is nearer to the others).
void expect_no_more_than_the_library(Searched (*draw)(Random&)) {
    Random random;
    int missed = 0;
    for (int i = 0; i < kDesigns; ++i) {
        const auto [question, expected] = draw(random);
        const auto record = ask(question);
        ASSERT_TRUE(record) << record.refusal().message();
        const auto target =
            std::ranges::find(question.given, "power", &Question::Given::name)->values.front();
        EXPECT_GE(power_at(question, sizes_in(*record)), target) << to_json(*record);
        if (power_at(question, expected) < target)
            ++missed;
        else
            EXPECT_LE(total_of(sizes_in(*record)), total_of(expected)) << to_json(*record);
    }
    EXPECT_LE(missed, kDesigns / 100);
}

List rounded_up(double size) {
    return {std::ceil(size)};
}

TEST(LibrarySizes, OfPairedMeans) {
    expect_sizes_of_the_library([](Random& r) -> Searched {
        const double dz = r.effect(0.05, 2), power = r.power(), alpha = r.alpha();
        const bool one_sided = r.coin();
        const auto search =
            one_sided ? PowerReverseRelatedDirectionalES : PowerReverseRelatedNondirectionalES;
        return {
            size_of(
                "t-paired",
                {{"dz", {dz}}, {"power", {power}}, {"alpha", {alpha}}, {"alternative", {1.0 * one_sided}}}),
            rounded_up(search(power, dz, alpha))};
    });
}

Searched two_means(Random& r, double ratio) {
    const double diff = r.effect(0.1, 2), sd1 = r.between(0.5, 2), power = r.power(), alpha = r.alpha();
    const bool one_sided = r.coin(), welch = r.coin();
    const double sd2 = welch ? r.between(0.5, 2) : sd1;
    List sizes;
    (one_sided ? PowerReverseIndependentDirectional : PowerReverseIndependentNondirectional)(
        power, ratio, diff, sd1, 0, sd2, alpha, sizes);
    return {size_of("t-two", {{"diff", {diff}},
                              {"sd1", {sd1}},
                              {"sd2", {sd2}},
                              {"ratio", {ratio}},
                              {"variance", {1.0 * welch}},
                              {"power", {power}},
                              {"alpha", {alpha}},
                              {"alternative", {1.0 * one_sided}}}),
            sizes};
}

TEST(LibrarySizes, OfTwoMeans) {
    expect_sizes_of_the_library([](Random& r) { return two_means(r, 1); });
}

TEST(LibrarySizes, OfTwoMeansWithAnAllocation) {
    expect_no_more_than_the_library([](Random& r) { return two_means(r, r.between(0.2, 5)); });
}

Searched analysis_of_variance(Random& r, bool weighted) {
    const auto k = static_cast<std::size_t>(r.whole(2, 7));
    List means = r.list(k, 0, 3), sizes;
    means[0] = 5;  // apart from the others
    const List weights = weighted ? r.list(k, 1, 3) : List(k, 1);
    const double sd = r.between(1, 3), power = r.power(), alpha = r.alpha();
    PowerReverseOverallTest(static_cast<int>(k), means.data(), weights.data(), &sizes, sd, power, alpha);
    return {
        size_of(
            "anova",
            {{"means", means}, {"sd", {sd}}, {"weights", weights}, {"power", {power}}, {"alpha", {alpha}}}),
        sizes};
}

TEST(LibrarySizes, OfGroupMeans) {
    expect_sizes_of_the_library([](Random& r) { return analysis_of_variance(r, false); });
}

TEST(LibrarySizes, OfGroupMeansWithAnAllocation) {
    expect_no_more_than_the_library([](Random& r) { return analysis_of_variance(r, true); });
}

TEST(LibrarySizes, OfContrasts) {
    expect_sizes_of_the_library([](Random& r) -> Searched {
        const auto k = static_cast<std::size_t>(r.whole(2, 7));
        List coefficients(k, 0), sizes;
        for (std::size_t i = 0; i < k; ++i) {
            const double step = r.whole(-8, 8) / 64;
            coefficients[i] += step, coefficients[(i + 1) % k] -= step;
        }
        coefficients[0] += 0.25, coefficients[1] -= 0.25;
        if (std::ranges::all_of(coefficients, [](double c) { return c == 0; }))
            coefficients[0] = 1, coefficients[1] = -1;
        const double d = r.effect(0.1, 1), power = r.power(), alpha = r.alpha();
        const bool one_sided = r.coin();
        const List equal(k, 1);
        PowerReverseSCwES(static_cast<int>(k), equal.data(), coefficients.data(), &sizes, one_sided, d, power,
                          alpha);
        return {size_of("contrast", {{"d", {d}},
                                     {"coefficients", coefficients},
                                     {"power", {power}},
                                     {"alpha", {alpha}},
                                     {"alternative", {1.0 * one_sided}}}),
                sizes};
    });
}

TEST(LibrarySizes, OfPairwiseComparisons) {
    expect_sizes_of_the_library([](Random& r) -> Searched {
        const auto k = static_cast<std::size_t>(r.whole(2, 7));
        const List equal(k, 1);
        List means(k), sizes;
        means[0] = r.effect(0.3, 2);
        const double sd = r.between(1, 2), power = r.power(), alpha = r.alpha(), adjustment = r.whole(0, 2);
        PowerReversePairwiseDiff(static_cast<int>(k), means.data(), equal.data(), 1, 2, sizes,
                                 static_cast<int>(adjustment), sd, power, alpha);
        return {size_of("pairwise", {{"means", means},
                                     {"sd", {sd}},
                                     {"first", {2}},
                                     {"second", {1}},
                                     {"adjustment", {adjustment}},
                                     {"power", {power}},
                                     {"alpha", {alpha}}}),
                sizes};
    });
}

/// A correlation and a null one that is not near it.
std::pair<double, double> correlations(Random& r) {
    const double r0 = r.coin() ? 0 : r.between(-0.9, 0.9);
    const double step = r.effect(0.05, 0.5);
    return {std::tanh(std::atanh(r0) + step), r0};
}

TEST(LibrarySizes, OfPearsonsCorrelation) {
    expect_sizes_of_the_library([](Random& random) -> Searched {
        const auto [r, r0] = correlations(random);
        const double power = random.power(), alpha = random.alpha();
        const bool one_sided = random.coin(), bias = random.coin();
        return {size_of("pearson", {{"r", {r}},
                                    {"r0", {r0}},
                                    {"bias-correction", {1.0 * bias}},
                                    {"power", {power}},
                                    {"alpha", {alpha}},
                                    {"alternative", {1.0 * one_sided}}}),
                rounded_up(PowerReversebyOneSampPearson(one_sided, bias, nullptr, power, r, r0, alpha))};
    });
}

TEST(LibrarySizes, OfSpearmansCorrelation) {
    expect_sizes_of_the_library([](Random& random) -> Searched {
        const auto [r, r0] = correlations(random);
        const double power = random.power(), alpha = random.alpha(), variance = random.whole(0, 2);
        const bool one_sided = random.coin();
        return {size_of("spearman", {{"r", {r}},
                                     {"r0", {r0}},
                                     {"z-variance", {variance}},
                                     {"power", {power}},
                                     {"alpha", {alpha}},
                                     {"alternative", {1.0 * one_sided}}}),
                rounded_up(PowerReversebyOneSampSpearman(static_cast<int>(variance), one_sided, power, r, r0,
                                                         alpha))};
    });
}

TEST(LibrarySizes, OfPartialCorrelationsWithTheSmallSampleCorrection) {
    expect_sizes_of_the_library([](Random& random) -> Searched {
        const auto [r, r0] = correlations(random);
        const double power = random.power(), alpha = random.alpha(), k = random.whole(0, 9);
        const bool one_sided = random.coin();
        return {size_of("partial", {{"r", {r}},
                                    {"r0", {r0}},
                                    {"partialled-out", {k}},
                                    {"bias-correction", {1}},
                                    {"power", {power}},
                                    {"alpha", {alpha}},
                                    {"alternative", {1.0 * one_sided}}}),
                rounded_up(PowerReversebyOneSampPartial(one_sided, power, k, r, r0, alpha))};
    });
}

TEST(LibrarySizes, OfRegression) {
    expect_sizes_of_the_library([](Random& r) -> Searched {
        const double predictors = r.whole(1, 12), tested = r.whole(1, static_cast<int>(predictors));
        const double f2 = r.between(0.02, 1), power = r.power(), alpha = r.alpha();
        const bool random_predictors = r.coin(), intercept = r.coin();
        return {size_of("regression", {{"f2", {f2}},
                                       {"predictors", {predictors}},
                                       {"tested", {tested}},
                                       {"model", {1.0 * random_predictors}},
                                       {"intercept", {1.0 * intercept}},
                                       {"power", {power}},
                                       {"alpha", {alpha}}}),
                rounded_up(PowerReversebymlrwES(random_predictors, intercept, power, predictors, tested, f2,
                                                alpha))};
    });
}

// ---- Proportions: normal approximations. ------------------------------------------------------------------

/// Two proportions that are not too close.
std::pair<double, double> proportions(Random& r) {
    const double p = r.between(0.05, 0.95);
    double q = p;
    while (std::abs(q - p) < 0.03) q = r.between(0.05, 0.95);
    return {p, q};
}

TEST(LibrarySizes, OfOneProportion) {
    expect_sizes_of_the_library([](Random& r) -> Searched {
        const auto [p, null] = proportions(r);
        const double power = r.power(), alpha = r.alpha();
        const bool sided = r.coin(), corrected = r.coin();
        return {size_of("prop-one", {{"p1", {p}},
                                     {"p0", {null}},
                                     {"power", {power}},
                                     {"alpha", {alpha}},
                                     {"alternative", {1.0 * sided}},
                                     {"continuity", {1.0 * corrected}}}),
                rounded_up(PowerReverseOneSampBinom(power, p, null, alpha, 0, sided, corrected, nullptr))};
    });
}

TEST(LibrarySizes, OfPairedProportions) {
    expect_sizes_of_the_library([](Random& r) -> Searched {
        const auto [p, q] = proportions(r);
        const double p10 = p / 2, p01 = q / 2, power = r.power(), alpha = r.alpha();
        const bool sided = r.coin();
        const double size = PowerReversebyPRelSampBionm(sided, 0, nullptr, power, p10, p01, alpha);
        return {size_of("prop-paired", {{"p10", {p10}},
                                        {"p01", {p01}},
                                        {"power", {power}},
                                        {"alpha", {alpha}},
                                        {"alternative", {1.0 * sided}}}),
                {std::max(2.0, std::ceil(size))}};
    });
}

Searched two_proportions(Random& r, double allocation) {
    const auto [p, q] = proportions(r);
    const double power = r.power(), alpha = r.alpha();
    const int statistic = static_cast<int>(r.whole(0, 3));
    const bool sided = r.coin(), is_pooled = r.coin();
    // One-sided with both, the library takes the square of the size into the second group.
    const bool corrected = statistic == 0 && r.coin() && !(sided && is_pooled);
    List expected;
    PowerReverseIndSampBinom(power, p, q, allocation, alpha, expected, 0, statistic, sided, corrected,
                             is_pooled, nullptr);
    // Fisher's corrections, half an observation each, turn the difference around in groups so small.
    if (statistic == 3 && 0.5 / expected[0] + 0.5 / expected[1] > std::abs(p - q))
        return two_proportions(r, allocation);
    Question question = size_of("prop-two", {{"p1", {p}},
                                             {"p2", {q}},
                                             {"ratio", {allocation}},
                                             {"power", {power}},
                                             {"alpha", {alpha}},
                                             {"statistic", {1.0 * statistic}},
                                             {"alternative", {1.0 * sided}}});
    if (statistic == 0) question.give("continuity", corrected);
    if (statistic <= 1) question.give("variance", !is_pooled);
    return {question, expected};
}

TEST(LibrarySizes, OfTwoProportions) {
    expect_sizes_of_the_library([](Random& r) { return two_proportions(r, 1); });
}

TEST(LibrarySizes, OfTwoProportionsWithAnAllocation) {
    expect_no_more_than_the_library([](Random& r) { return two_proportions(r, r.between(0.3, 3)); });
}

}  // namespace
}  // namespace statplan
