// Paired proportions: the exact power where the number of pairs is large.
#pragma once

#include <optional>

namespace statpower {

/// The tails of the binomial distribution in which a test rejects, each at `level`.
struct RejectedTails {
    bool lower;
    bool upper;
    double level;
};

/// Numbers of discordant pairs first..last, or none.
struct DiscordantRange {
    double first;
    double last;

    double count() const { return last - first + 1; }
};

/// The numbers of discordant pairs of N that have weight: within forty standard deviations of N psi, and some
/// more for distributions that are far from normal.
DiscordantRange likely_discordant(double N, double psi);

/// The sum over m discordant pairs of P(m) times the probability of rejection given m, for numbers `range` of
/// which the small ones do not matter.
///
/// Critical counts and probabilities are computed at the first m of a block and carried on from there by the
/// recurrences of the binomial distribution. A critical count too close to call is left to the distribution
/// function. From some 1e9 pairs on the blocks have gaps between them, so that their number stays bounded.
/// @return nothing where the distribution library fails, or has quantiles that do not bracket their level
std::optional<double> power_of_many_pairs(double N, double psi, double pc, RejectedTails tails,
                                          DiscordantRange range);

}  // namespace statpower
