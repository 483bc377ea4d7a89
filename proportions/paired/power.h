// Paired proportions: the test of one design, and the objective of the sample-size searches.
#pragma once

#include <array>
#include <optional>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "proportions/paired/many_pairs.h"
#include "statpower/core.h"

namespace statpower {

/// Probabilities of the two kinds of discordant pairs.
struct DiscordantCells {
    double p1;
    double p2;
};

/// Design vector of the sample-size searches.
struct PairedProportionsSearch {
    double target, p1, p2;
    int sided, exact;
    double alpha;
    auto fields() { return std::tie(target, p1, p2, sided, exact, alpha); }
};

/// The cells that two marginal probabilities and a correlation give, 0 where below 1e-14 in absolute value.
DiscordantCells cells_from_margins(double pA, double pB, double rho);

/// The test that two paired proportions are equal. It keeps the critical counts of its exact form, which
/// depend on the number of discordant pairs only, so that a curve computes them once.
class PairedTest {
  public:
    PairedTest(int sided, int exact, double alpha);

    /// Power and failures as in PowerbyPRelSampBionm.
    double power(double N, double p1, double p2, OrvCommon_940::OrvQueryCancel* cancel = nullptr);

    /// Power and failures as in PowerbyMargPRelSampBionm.
    double power_from_margins(double N, double pA, double pB, double rho);

  private:
    enum Tail { kLower, kUpper, kBoth };

    /// The exact test with a given number of discordant pairs rejects when at most `lower` or more than
    /// `upper` of them are of the second kind.
    struct Region {
        std::optional<double> lower;
        std::optional<double> upper;
        bool failed;  ///< whether the distribution library failed
    };

    double exact_power(double N, double p1, double p2, OrvCommon_940::OrvQueryCancel* cancel);
    double sum_of_terms(DiscordantRange range, double part, double N, double p1, double p2,
                        OrvCommon_940::OrvQueryCancel* cancel);
    double normal_power(double N, double p1, double p2) const;
    Tail tail(double p1, double p2) const;
    const Region& region(Tail tail, double discordant);
    Region find_region(Tail tail, double discordant) const;

    int sided_;
    int exact_;
    double alpha_;
    std::array<std::unordered_map<double, Region>, 3>
        regions_;  // by tail, then by number of discordant pairs
};

}  // namespace statpower

namespace POWER_NAMESPACE {

/// Power at N minus the target. Design: PairedProportionsSearch.
STATPOWER_API double PRelSampBionmFunc(double N, std::vector<double> design,
                                       OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
