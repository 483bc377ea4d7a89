// Random designs of the exact tests, the same in every run.
#pragma once

#include <algorithm>
#include <cmath>
#include <ostream>
#include <random>

#include "plan/exact_two_proportions.h"

namespace testing_support {

class Random {
  public:
    explicit Random(unsigned seed) : engine_(seed) {}

    double between(double low, double high) {
        return low + (high - low) * std::generate_canonical<double, 53>(engine_);
    }
    int whole(int low, int high) { return static_cast<int>(between(low, high + 1)); }
    bool chance(double p) { return between(0, 1) < p; }
    /// Between 0 and 1, one in three near an end.
    double proportion() {
        if (chance(2.0 / 3)) return between(0.02, 0.98);
        const double small = std::pow(10, between(-2.5, -1));
        return chance(0.5) ? small : 1 - small;
    }
    double alpha() { return chance(0.6) ? 0.05 : chance(0.5) ? 0.025 : std::pow(10, between(-5, -0.5)); }

  private:
    std::mt19937 engine_;
};

struct TwoGroups {
    statplan::TwoProportions test;
    double p1, p2, ratio, target;

    TwoGroups(Random& random, statplan::TwoProportions::Statistic statistic) {
        using enum statplan::TwoProportions::Statistic;
        p1 = random.proportion(), p2 = random.proportion();
        ratio = random.chance(0.4) ? 1 : std::exp(random.between(-1.5, 1.5));
        target = random.chance(0.5) ? 0.8 : random.between(0.3, 0.97);
        test = {.statistic = statistic,
                .pooled = statistic != chi_square || random.chance(0.7),
                .continuity = statistic == chi_square && random.chance(0.3),
                .tails = random.chance(0.5) ? statplan::Tails::both
                         : p1 > p2          ? statplan::Tails::large
                                            : statplan::Tails::small,
                .alpha = random.alpha()};
    }

    /// About the size of the first group that the target needs.
    double size() const {
        const double spread = std::sqrt(p1 * (1 - p1) + p2 * (1 - p2) / ratio);
        return 9 * std::pow(spread / (p1 - p2), 2) * (1 - 0.2 * std::log10(test.alpha / 0.05) * 2);
    }

    friend std::ostream& operator<<(std::ostream& out, const TwoGroups& d) {
        return out << "statistic " << d.test.statistic << (d.test.pooled ? " pooled" : " unpooled")
                   << (d.test.continuity ? " continuity" : "") << " tails " << static_cast<int>(d.test.tails)
                   << " alpha " << d.test.alpha << " p1 " << d.p1 << " p2 " << d.p2 << " ratio " << d.ratio
                   << " target " << d.target;
    }
};

}  // namespace testing_support
