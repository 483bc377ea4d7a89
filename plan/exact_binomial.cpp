#include "plan/exact_binomial.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "orvcommon/dist_fun.h"
#include "plan/binomial_counts.h"
#include "plan/largest.h"

namespace statplan {

using OrvMath_940::OrvDistFun;

namespace {

double at_most(double x, double n, double p) {
    long status = 0;
    const double probability = OrvDistFun::CdfBin(x, n, p, status);
    return status == 0 ? probability : kNotGiven;
}

double exactly(double x, double n, double p) {
    long status = 0;
    const double probability = OrvDistFun::PdfBin(x, n, p, status);
    return status == 0 ? probability : kNotGiven;
}

double largest_probability(double n, double p) {
    return exactly(std::min(std::floor((n + 1) * p), n), n, p);
}

constexpr double kRounding = 1e-12;
constexpr double kMostPairs = 2e6;  // what is known of each number of discordant pairs is kept

}  // namespace

BinomialTest::BinomialTest(double p0, double alpha, Tails tails)
    : p0_(p0), tail_((tails == Tails::both ? alpha / 2 : alpha) * (1 + kRounding)), tails_(tails) {}

/// The largest count of the lower tail, -1 where it is empty. The upper tail is the lower one of the failures.
double BinomialTest::last_small(double n, double p0) const {
    long status = 0;
    const double last = OrvDistFun::IdfBin(tail_, n, p0, status);
    return status == 0 ? last : kNotGiven;
}

double BinomialTest::power(double n, double p) const {
    return (rejects(Tails::small) ? at_most(last_small(n, p0_), n, p) : 0) +
           (rejects(Tails::large) ? at_most(last_small(n, 1 - p0_), n, 1 - p) : 0);
}

/// Power of the lower tail when the next count is rejected so often that the level is attained.
double BinomialTest::randomised(double n, double p0, double p) const {
    const double last = last_small(n, p0);
    const double next = exactly(last + 1, n, p0);
    const double share = next > 0 ? std::min((tail_ - at_most(last, n, p0)) / next, 1.0) : 1;
    return at_most(last, n, p) + share * exactly(last + 1, n, p);
}

BinomialTest::Bounds BinomialTest::bounds(double n, double p) const {
    const double small = rejects(Tails::small) ? randomised(n, p0_, p) : 0;
    const double large = rejects(Tails::large) ? randomised(n, 1 - p0_, 1 - p) : 0;
    const bool up = tails_ == Tails::both ? p > p0_ : tails_ == Tails::large;
    const double most = up ? large : small;
    return {.power = power(n, p),
            .least = std::max(most - largest_probability(n, p), 0.0),
            .most = most,
            .other = up ? small : large};
}

SawTooth powers(const BinomialTest& test, double p) {
    return {.power = [=](const GroupSizes& n) { return test.power(n[0], p); },
            .least = [=](const GroupSizes& n) { return test.bounds(n[0], p).least; },
            .most =
                [=](const GroupSizes& n, const GroupSizes& from) {
                    return test.bounds(n[0], p).most + test.bounds(from[0], p).other;
                }};
}

// ---- Pairs -----------------------------------------------------------------------------------------------

PairedTest::PairedTest(double p10, double p01, double alpha, Tails tails)
    : test_(0.5, alpha, tails), discordant_(p10 + p01), first_kind_(p10 / (p10 + p01)) {}

const BinomialTest::Bounds& PairedTest::given_discordant(int m) {
    const auto place = static_cast<std::size_t>(m);
    if (place >= known_.size()) known_.resize(2 * place + 1);
    auto& known = known_[place];
    if (!known) known = test_.bounds(m, first_kind_);
    return *known;
}

double PairedTest::power(double n) {
    if (!(n <= kMostPairs)) return kNotGiven;
    return BinomialCounts(n, discordant_).mean([&](int m) { return given_discordant(m).power; });
}

SawTooth PairedTest::powers() const {
    // The number of discordant pairs grows with n, so that means over it inherit the bounds.
    const auto test = std::make_shared<PairedTest>(*this);
    const auto mean = [test](const GroupSizes& n, double BinomialTest::Bounds::*bound) {
        if (!(n[0] <= kMostPairs)) return kNotGiven;
        return BinomialCounts(n[0], test->discordant_).mean([&](int m) {
            return test->given_discordant(m).*bound;
        });
    };
    return {.power = [=](const GroupSizes& n) { return mean(n, &BinomialTest::Bounds::power); },
            .least = [=](const GroupSizes& n) { return mean(n, &BinomialTest::Bounds::least); },
            .most =
                [=](const GroupSizes& n, const GroupSizes& from) {
                    return mean(n, &BinomialTest::Bounds::most) + mean(from, &BinomialTest::Bounds::other);
                },
            .observations = kMostPairs};
}

double PairedTest::level(double n, Cancel* cancel) {
    if (!(n <= kMostPairs)) return kNotGiven;
    std::vector<double> levels(static_cast<std::size_t>(n) + 1);
    for (std::size_t m = 1; m < levels.size(); ++m) levels[m] = test_.level(static_cast<double>(m));
    return largest_over_probabilities(n, cancel, [&](double discordant) {
        return BinomialCounts(n, discordant).mean([&](int m) { return levels[static_cast<std::size_t>(m)]; });
    });
}

}  // namespace statplan
