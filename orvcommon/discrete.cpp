#include "orvcommon/discrete.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>

#include "orvcommon/beta.h"
#include "orvcommon/normal_gamma.h"
#include "orvcommon/numeric.h"

namespace orvmath {
namespace {

__extension__ using DoubleWord = unsigned __int128;

constexpr int kMaxExactTrials = 62;  // every binomial coefficient fits one 64-bit word
constexpr int kExactWords = 8;
constexpr int kMaxExactBits = 64 * kExactWords;

/// An unsigned integer of up to 512 bits.
class WideInteger {
  public:
    explicit WideInteger(std::uint64_t value) { words_[0] = value; }

    void multiply(std::uint64_t factor) {
        if (factor == 1) return;
        DoubleWord carry = 0;
        for (int i = 0; i < size_; ++i) {
            carry += static_cast<DoubleWord>(words_[i]) * factor;
            words_[i] = static_cast<std::uint64_t>(carry);
            carry >>= 64;
        }
        if (carry != 0) words_[size_++] = static_cast<std::uint64_t>(carry);
    }

    void add(const WideInteger& other) {
        size_ = std::max(size_, other.size_);
        DoubleWord carry = 0;
        for (int i = 0; i < size_; ++i) {
            carry += static_cast<DoubleWord>(words_[i]) + other.words_[i];
            words_[i] = static_cast<std::uint64_t>(carry);
            carry >>= 64;
        }
        if (carry != 0) words_[size_++] = static_cast<std::uint64_t>(carry);
    }

    /// The value times 2^exponent, rounded once.
    double rounded(int exponent) const {
        std::uint64_t top = words_[size_ - 1];
        if (size_ == 1) return std::ldexp(static_cast<double>(top), exponent);
        const int shift = std::countl_zero(top);
        if (shift > 0) top = top << shift | words_[size_ - 2] >> (64 - shift);
        // What lies below the 64 leading bits matters only by being there.
        bool sticky = (words_[size_ - 2] << shift) != 0;
        for (int i = 0; i < size_ - 2; ++i) sticky = sticky || words_[i] != 0;
        return std::ldexp(static_cast<double>(top | (sticky ? 1 : 0)), exponent + 64 * (size_ - 1) - shift);
    }

  private:
    std::array<std::uint64_t, kExactWords> words_{};
    int size_ = 1;
};

/// P(X <= x) for 0 <= x < n and 0 < p < 1, rounded once, where exact arithmetic is affordable.
///
/// Critical values of exact tests sit on exact ties (a tail of exactly 1/20), where one last bit decides.
/// With p = u / 2^m the sum is a whole number over 2^(n m); where that has at most 512 bits it is formed
/// exactly and rounded once.
std::optional<double> exact_cdf(int x, double trials, double p) {
    const double scaled = std::ldexp(p, 63);
    if (trials != std::floor(trials) || scaled != std::floor(scaled)) return std::nullopt;
    const auto bits = static_cast<std::uint64_t>(scaled);
    const int n = static_cast<int>(trials), spare = std::countr_zero(bits), m = 63 - spare;
    if (n * m > kMaxExactBits) return std::nullopt;
    const std::uint64_t u = bits >> spare, v = (std::uint64_t{1} << m) - u;
    // By Horner's rule in v: sum over k <= x of C(n, k) u^k v^(x - k), then the remaining factors v.
    WideInteger sum(1), power(1);
    std::uint64_t coefficient = 1;
    for (int k = 1; k <= x; ++k) {
        count_step();
        coefficient = static_cast<std::uint64_t>(static_cast<DoubleWord>(coefficient) *
                                                 static_cast<unsigned>(n - k + 1) / static_cast<unsigned>(k));
        power.multiply(u);
        WideInteger term = power;
        term.multiply(coefficient);
        sum.multiply(v);
        sum.add(term);
    }
    for (int k = x; k < n; ++k) sum.multiply(v);
    return sum.rounded(-n * m);
}

/// How closely a distribution function is computed, and which distance from a probability then counts as a tie.
struct Precision {
    double slack;
    double tie;
};
constexpr Precision kRough{0x1p30, 1e-4}, kFull{1, 1e-12};

/// The quantile by one incomplete beta function near it and the probabilities beside, which its prefix gives; nothing
/// where a tie is near, or the guess too far away.
std::optional<double> quantile_near(double guess, double prob, double n, double p, Precision precision) {
    constexpr double kLargestCount = 1e9, kSmallest = 1e-200;
    constexpr int kSteps = 12;
    if (!(n < kLargestCount && prob > kSmallest)) return std::nullopt;
    const double q = 1 - p, odds = p / q;
    double k = std::clamp(guess, 0.0, std::ceil(n) - 1);
    const BetaPoint point = precision.slack > 1 ? BetaPoint{k + 1, n - k, p, q, (n + 1) * p - (k + 1)}
                                                : BetaPoint::at(p, k + 1, n - k);
    const double prefix = beta_prefix(point);
    double cdf = beta_tails(point, prefix, precision.slack).upper, largest = cdf;
    double next = prefix / q;  // P(X = k + 1)
    const bool upwards = cdf < prob;
    for (int i = 0; i < kSteps; ++i) {
        count_step();
        if (std::fabs(cdf - prob) <= precision.tie * largest) return std::nullopt;
        if (upwards) {
            if (cdf > prob) return k - 1;
            if (k + 1 >= n) return k;
            largest = cdf += next;
            k += 1;
            next *= (n - k) / (k + 1) * odds;
        } else {
            if (cdf < prob) return k;
            if (k == 0) return -1;
            next *= (k + 1) / (n - k) / odds;
            cdf -= next;
            k -= 1;
        }
    }
    return std::nullopt;
}

}  // namespace

double binomial_probability(double x, double n, double p) {
    if (x < 0 || x > n) return 0;
    if (p <= 0) return x == 0;
    if (p >= 1) return x == n;
    const double rest = n - x;
    if (x < kTinyParameter) return std::exp(n * std::log1p(-p));
    if (rest < kTinyParameter) return std::exp(n * (p < 0.5 ? std::log(p) : std::log1p(-(1 - p))));
    // C(n, x) p^x q^(n - x) is n / (n - x) times the prefix of the beta function at p for x and n - x.
    return std::min(1.0, beta_prefix({x, rest, p, 1 - p, std::fma(n, p, -x)}) * (n / rest));
}

double binomial_cdf(double x, double n, double p) {
    if (x < 0) return 0;
    if (x >= n) return 1;  // before x is floored: a fractional n reaches 1 as well
    x = std::floor(x);
    if (p <= 0) return 1;
    if (p >= 1) return 0;
    if (n <= kMaxExactTrials)
        if (const auto exact = exact_cdf(static_cast<int>(x), n, p)) return *exact;
    return beta_cdf(p, x + 1, n - x).upper;
}

double binomial_quantile(double prob, double n, double p) {
    double low = -1, high = std::ceil(n);  // P(X <= low) <= prob < P(X <= high), unless prob is 1
    if (prob >= 1) return high;
    if (p >= 1) return high - 1;
    if (prob <= 0 || p <= 0) return -1;
    // Cornish-Fisher start, then Newton steps on the distribution function inside the bracket.
    const double q = 1 - p, z = rough_normal_quantile(prob);
    double guess = std::floor(n * p + std::sqrt(n * p * q) * z + (q - p) * (z * z - 1) / 6 - 0.5);
    for (const Precision precision : {kRough, kFull})
        if (const auto near = quantile_near(guess, prob, n, p, precision)) return *near;
    for (int i = 0; i < 200 && high - low > 1; ++i) {
        count_step();
        if (!(guess > low)) guess = low + 1;
        if (!(guess < high)) guess = high - 1;
        if (i > 12 && i % 2 == 0) guess = std::floor(low + (high - low) / 2);
        if (!(guess > low && guess < high)) break;  // beyond 2^53 neighbouring doubles are all there is
        const double cdf = binomial_cdf(guess, n, p), density = binomial_probability(guess, n, p);
        const bool below = cdf <= prob;
        (below ? low : high) = guess;
        const double step = density > 0 ? std::floor((prob - cdf) / density) : 0;
        guess = below ? guess + std::max(1.0, step) : guess + std::min(-1.0, step);
    }
    return low;
}

double negative_binomial_probability(double k, double r, double p) {
    if (k < 0 || p <= 0) return 0;
    if (p >= 1) return k == 0;
    if (k < kTinyParameter) return std::exp(r * (p < 0.5 ? std::log(p) : std::log1p(-(1 - p))));
    if (k + r > kHugeParameter) return 0;  // no larger than 1e-30
    return std::min(1.0, beta_prefix({k, r, 1 - p, p, std::fma(-(k + r), p, r)}));
}

}  // namespace orvmath
