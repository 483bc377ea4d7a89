// The sample-size searches for powers that grow with N take a short way; the answers are those of PowerReverse.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "anova/anova.h"
#include "means/one.h"
#include "means/two.h"
#include "regression/regression.h"
#include "statpower/anova.h"
#include "statpower/means.h"
#include "statpower/regression.h"

using namespace POWER_NAMESPACE;

namespace {

constexpr int kDesigns = 2000;

class Designs {
  public:
    double between(double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(engine_);
    }
    /// From everyday values to the ends of the range.
    double target() { return between(0, 1) < 0.8 ? between(0.02, 0.999) : 1 - std::exp(between(-35, 0)); }
    double alpha() { return between(0, 1) < 0.8 ? between(0.001, 0.2) : std::exp(between(-40, 0)); }
    double effect() { return between(0, 1) < 0.8 ? between(-1.5, 1.5) : std::exp(between(-12, 3)); }

  private:
    std::mt19937_64 engine_{7};
};

TEST(SteadySearch, OfOneMeanIsThePlainOne) {
    Designs d;
    for (int i = 0; i < kDesigns; ++i) {
        const double target = d.target(), es = d.effect(), alpha = d.alpha();
        EXPECT_EQ(PowerReverseOneSampleNondirectionalES(target, es, alpha),
                  PowerReverse({target, es, alpha}, NondirectionalFunc, nullptr, 2, 400, 1e-9))
            << target << ' ' << es << ' ' << alpha;
        EXPECT_EQ(PowerReverseOneSampleDirectionalES(target, es, alpha),
                  PowerReverse({target, es, alpha}, DirectionalFunc, nullptr, 2, 400, 1e-9))
            << target << ' ' << es << ' ' << alpha;
    }
}

TEST(SteadySearch, OfTwoMeansIsThePlainOneRoundedUp) {
    Designs d;
    for (int i = 0; i < kDesigns; ++i) {
        const double ratio = d.between(0.1, 5), diff = d.effect();
        const double sd1 = d.between(0.5, 2), sd2 = i % 2 == 0 ? sd1 : d.between(0.5, 2);
        const std::vector<double> design = {d.target(), ratio, diff, sd1, 0, sd2, d.alpha()};
        const double plain = PowerReverse(design, PowerIndependentNondirectionalFunc, nullptr, 2, 400, 1e-9);
        std::vector<double> sizes;
        PowerReverseIndependentNondirectional(design[0], ratio, diff, sd1, 0, sd2, design[6], sizes);
        EXPECT_EQ(sizes[0], std::ceil(plain))
            << design[0] << ' ' << ratio << ' ' << diff << ' ' << sd1 << ' ' << sd2 << ' ' << design[6];
    }
}

TEST(SteadySearch, OfAnEffectOnGroupMeansIsThePlainOneRoundedUp) {
    Designs d;
    for (int i = 0; i < kDesigns; ++i) {
        const int k = 2 + i % 6;
        const double target = d.target(), es = std::abs(d.effect()), alpha = d.alpha();
        const double N = PowerReverse({target, static_cast<double>(k), es, 0, alpha}, OverallTestwESFunc,
                                      nullptr, 2.0 * k, 2.0 * k + 400, 1e-6);
        const std::vector<double> equal(static_cast<std::size_t>(k), 1);
        std::vector<double> sizes;
        PowerReverseOverallTestwES(k, 0, equal.data(), &sizes, es, target, alpha);
        EXPECT_EQ(sizes[0], std::max(2.0, std::ceil(1.0 / k * N))) << target << ' ' << es << ' ' << alpha;
    }
}

TEST(SteadySearch, OfARegressionIsThePlainOne) {
    Designs d;
    for (int i = 0; i < kDesigns; ++i) {
        const int random = i % 4 == 0;
        const double p = 1 + i % 9, q = 1 + i % static_cast<int>(p);
        const double target = d.target(), f2 = d.between(0.01, 0.6), alpha = d.alpha();
        EXPECT_EQ(PowerReversebymlrwES(random, true, target, p, q, f2, alpha),
                  PowerReverse({target, p, q, f2, static_cast<double>(random), 1, alpha}, PowerbymlrwESFunc,
                               nullptr, p + 2, p + 400, 1e-9))
            << random << ' ' << target << ' ' << p << ' ' << q << ' ' << f2 << ' ' << alpha;
    }
}

}  // namespace
