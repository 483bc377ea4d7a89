// Both distributions are Poisson mixtures of incomplete beta functions (Johnson, Kotz and Balakrishnan 1995,
// Continuous Univariate Distributions 2, chapters 30 and 31). With w_j the Poisson weights of mean h, I_j =
// I_x(a + j, b) and g_j = I_j - I_(j+1),
//     lower = sum of w_j I_j       = sum of (w_0 + ... + w_j) g_j,   which needs no incomplete beta function
//     at all, upper = sum of w_j (1 - I_j),  1 - I_(j+1) = (1 - I_j) + g_j,  where the g_j die out slowly (x
//     near 1).
// Both start at the mode of the Poisson weights, where no term carries a large exponent, and sum positive
// terms outwards (Benton and Krishnamoorthy 2003, Computational Statistics and Data Analysis 43, 249-267).
// For Poisson means above kMaxMean the contour integral takes over.
#include "orvcommon/noncentral.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "orvcommon/beta.h"
#include "orvcommon/normal_gamma.h"
#include "orvcommon/saddlepoint.h"

namespace orvmath {
namespace {

using std::numbers::sqrt2;

constexpr double kMaxMean = 150;  // Poisson means that are summed; above, the contour integral is as fast
constexpr double kMaxMeanFromZero = 10;  // up to here the sums start at index 0
constexpr int kMaxTerms = 1500;  // never met: the sums end after some 12 standard deviations of the weights
constexpr double kGammaLike = 1e30;  // Poisson mean from which the mixture is as good as one gamma variable
constexpr double kHugeOdds = 1e180, kLargestOdds = 1e290, kSmallestOdds = 1e-290;

/// K mixtures that run side by side: number i has shape parameters a + j + i/2 and Poisson weights of index j
/// + i/2. The noncentral F distribution is one of them, the noncentral t has a half of each parity.
template <std::size_t K>
struct Mixture {
    double h;                    // Poisson mean
    int start;                   // index j of the first term
    BetaPoint point;             // at that index: its a is a + j
    std::array<double, K> w, g;  // weights and differences there
};

/// Where the terms of one mixture stand: index j, weight w_j and difference g_j.
struct Term {
    double j, w, g, n, d;  // g_(j+1) / g_j = x n / d
};

template <std::size_t K>
std::array<Term, K> first_terms(const Mixture<K>& m) {
    std::array<Term, K> terms;
    for (std::size_t i = 0; i < K; ++i) {
        const double shift = 0.5 * static_cast<double>(i), a = m.point.a + shift;
        terms[i] = {m.start + shift, m.w[i], m.g[i], a + m.point.b, a + 1};
    }
    return terms;
}

/// One index up. The two ratios share a division; x_low keeps a long product exact.
template <std::size_t K>
void step_up(const Mixture<K>& m, Term& t, double& ratio_w, double& ratio_g) {
    t.j += 1;
    const double inverse = 1 / (t.d * t.j);
    ratio_g = (m.point.x * t.n + m.point.x_low * t.n) * (t.j * inverse);
    ratio_w = m.h * t.d * inverse;
    t.g *= ratio_g;
    t.w *= ratio_w;
    t.n += 1;
    t.d += 1;
}

template <std::size_t K>
void step_down(const Mixture<K>& m, Term& t, double inverse_h) {
    t.n -= 1;
    t.d -= 1;
    t.w *= t.j * inverse_h;
    t.g *= t.d / (m.point.x * t.n + m.point.x_low * t.n);
    t.j -= 1;
}

template <std::size_t K>
double total(const std::array<double, K>& v) {
    double sum = 0;
    for (double value : v) sum += value;
    return sum;
}

/// sum of w_j I_x(a + j, b) of each mixture.
template <std::size_t K>
std::array<double, K> lower_sums(const Mixture<K>& m) {
    std::array<double, K> sum{}, weights{}, tail{};  // tail: I_j as the sum of the g from j upwards
    auto terms = first_terms(m);
    for (int n = 0; n < kMaxTerms; ++n) {
        count_step();
        double largest_ratio = 0, remaining = 0;
        for (std::size_t i = 0; i < K; ++i) {
            double ratio_w, ratio_g;
            weights[i] += terms[i].w;
            sum[i] += weights[i] * terms[i].g;
            tail[i] += terms[i].g;
            step_up(m, terms[i], ratio_w, ratio_g);
            largest_ratio = std::max(largest_ratio, ratio_g);
            remaining += terms[i].g;
        }
        if (largest_ratio < 1 && remaining <= 1e-17 * total(sum) * (1 - largest_ratio)) break;
    }
    terms = first_terms(m);
    const double inverse_h = 1 / m.h;
    for (int j = m.start; j > 0; --j) {
        count_step();
        double remaining = 0;
        for (std::size_t i = 0; i < K; ++i) {
            step_down(m, terms[i], inverse_h);
            tail[i] += terms[i].g;
            sum[i] += terms[i].w * tail[i];
            remaining += terms[i].w;
        }
        if (remaining <= 1e-17 * total(sum) * (1 - j * inverse_h)) break;
    }
    return sum;
}

/// sum of w_j (1 - I_x(a + j, b)) of each mixture, given 1 - I at the first index.
template <std::size_t K>
std::array<double, K> upper_sums(const Mixture<K>& m, const std::array<double, K>& first) {
    std::array<double, K> sum{}, tail = first;
    auto terms = first_terms(m);
    for (int n = 0; n < kMaxTerms; ++n) {
        count_step();
        double largest_ratio = 0, remaining = 0;
        for (std::size_t i = 0; i < K; ++i) {
            double ratio_w, ratio_g;
            sum[i] += terms[i].w * tail[i];
            tail[i] += terms[i].g;
            step_up(m, terms[i], ratio_w, ratio_g);
            largest_ratio = std::max(largest_ratio, ratio_w);
            remaining += terms[i].w;
        }
        if (largest_ratio < 1 && remaining <= 1e-17 * total(sum) * (1 - largest_ratio)) break;
    }
    terms = first_terms(m);
    tail = first;
    const double inverse_h = 1 / m.h;
    for (int j = m.start; j > 0; --j) {
        count_step();
        double remaining = 0;
        for (std::size_t i = 0; i < K; ++i) {
            step_down(m, terms[i], inverse_h);
            tail[i] = std::max(tail[i] - terms[i].g, 0.0);
            sum[i] += terms[i].w * tail[i];
            remaining += terms[i].w;
        }
        if (remaining <= 1e-17 * total(sum) * (1 - j * inverse_h)) break;
    }
    return sum;
}

int first_index(double h) {
    return h > kMaxMeanFromZero ? static_cast<int>(h) : 0;
}

/// Whether the differences die out before the Poisson weights do.
template <std::size_t K>
bool lower_is_shorter(const Mixture<K>& m) {
    const double weights = 8.9 * std::sqrt(m.h) + 20 + (m.start > 0 ? 0 : m.h);
    return beta_series_terms(m.point) < weights + 50;
}

/// The point at which the sums start: a is raised by `start`, the deviation with it.
BetaPoint raised(const BetaPoint& p, double by) {
    BetaPoint q = p;
    q.a += by;
    q.deviation -= by * p.y;
    return q;
}

/// Above kGammaLike the numerator is as good as a gamma variable of the same mean and variance.
Tails gamma_like(double f_over_mean, double mean, double h, double b) {
    const double shape = std::min(mean / (1 + h / mean), kHugeParameter);
    return beta_tails(BetaPoint::at_f(std::min(f_over_mean, kHugeOdds), shape, b));
}

Tails large_mean(const QuotientPoint& q) {
    if (!(q.c < kLargestOdds)) return {1, 0};
    if (!(q.c > kSmallestOdds)) return {0, 1};
    return saddlepoint_tails(q);
}

/// P(0 < T <= t) and P(T > t) for t > 0 and delta^2 / 2 <= kMaxMean.
Tails noncentral_t_sum(double t, double df, double delta) {
    if (t < 1e-100) return {normal_cdf(-delta), normal_cdf(delta)};
    const bool far = t > 1e100;
    if (far) {  // only t^2 / df and df enter: keep t^2 in range
        const double k = 1e100 / t;
        t = 1e100;
        df = std::max(df * k * k, 1e-290);
    }
    const double b = 0.5 * df, h = 0.5 * delta * delta, size = std::fabs(delta);
    // x = t^2 / (df + t^2) = x + x_low
    const TwoDoubles tt = two_product(t, t), sum = two_sum(df, tt.high);
    const double sum_low = sum.low + tt.low;
    const double x = tt.high / sum.high, y = df / sum.high, ratio = tt.high / df;
    const double x_low = (std::fma(-x, sum.high, tt.high) + tt.low - x * sum_low) / sum.high;

    Mixture<2> m;
    m.h = h;
    m.start = first_index(h);
    const double a = 0.5 + m.start;
    m.point = {a, b, x, y, far ? x * b - y * a : y * ((0.5 * tt.high - a) + 0.5 * tt.low), x_low};
    double y_to_b = 0;
    if (m.start == 0) {
        y_to_b = std::exp(-b * std::log1p(ratio));
        const double h_low = 0.5 * std::fma(delta, delta, -(delta * delta));
        m.w[0] = std::exp(-h) * (1 - h_low);
        m.w[1] = m.w[0] * size * (sqrt2 * std::numbers::inv_sqrtpi);
        m.g[0] = 2 * std::numbers::inv_sqrtpi * gamma_half_ratio(b) * std::sqrt(x) * y_to_b;
        m.g[1] = (x * b + x_low * b) * y_to_b;
    } else {
        m.w[0] = poisson_weight(m.start, h);
        m.w[1] = m.w[0] * (size / sqrt2) / gamma_half_ratio(m.start + 1.0);
        m.g[0] = beta_prefix(m.point);
        m.g[1] = m.g[0] * std::sqrt(x) * gamma_half_ratio(a + b) / gamma_half_ratio(a + 1);
    }
    if (lower_is_shorter(m)) {
        const auto sums = lower_sums(m);
        const double half = 0.5 * (sums[0] + std::copysign(sums[1], delta));
        return {std::min(1.0, normal_cdf(-delta) + half), std::max(0.0, normal_cdf(delta) - half)};
    }
    const double even = beta_tails(m.point, m.g[0]).upper;
    const double odd = m.start == 0 ? y_to_b : beta_tails(raised(m.point, 0.5), m.g[1]).upper;
    const auto sums = upper_sums(m, {even, odd});
    return Tails::from_upper(std::max(0.0, 0.5 * (sums[0] + std::copysign(sums[1], delta))));
}

Tails noncentral_t_positive(double t, double df, double delta) {
    const double h = std::min(0.5 * delta * delta, kLargestOdds), b = 0.5 * df;
    if (!(h > kMaxMean)) return noncentral_t_sum(t, df, delta);
    // Here P(Z <= -|delta|) is below 1e-66: T has the sign of delta, and T^2 is noncentral F.
    if (delta < 0) return {1, 0};
    if (h > kGammaLike) {
        const double ratio = t / delta;
        return gamma_like(ratio * ratio, h, h, b);
    }
    return large_mean({0.5, b, h, t / df * t, 0.5 + 0.5 * (delta - t) * (delta + t)});
}

}  // namespace

Tails noncentral_f(double x, double df1, double df2, double noncentrality) {
    if (!(x > 0)) return {0, 1};
    if (std::isinf(x)) return {1, 0};
    const double largest = std::max(df1, noncentrality);
    if (largest > 2 * kHugeParameter) {  // at this size only their ratio matters
        df1 *= 2 * kHugeParameter / largest;
        noncentrality *= 2 * kHugeParameter / largest;
    }
    const double a = std::max(df1, 1e-300) / 2, b = std::min(df2 / 2, kHugeParameter), h = noncentrality / 2;
    if (h > kGammaLike) return gamma_like(x * (a / (a + h)), a + h, h, b);
    const BetaPoint p = BetaPoint::at_f(std::min(x, kHugeOdds), a, b);
    if (h == 0) return beta_tails(p);
    if (h > kMaxMean) {
        const TwoDoubles af = two_product(a, std::min(x, kHugeOdds));
        const TwoDoubles s = two_sum(a, h), t = two_sum(s.high, -af.high);  // a + h - a x
        return large_mean({a, b, h, a / b * x, t.high + (s.low + t.low - af.low)});
    }
    Mixture<1> m;
    m.h = h;
    m.start = first_index(h);
    m.point = raised(p, m.start);
    m.w = {poisson_weight(m.start, h)};
    m.g = {beta_prefix(m.point)};
    if (lower_is_shorter(m)) return Tails::from_lower(lower_sums(m)[0]);
    return Tails::from_upper(upper_sums(m, {beta_tails(m.point, m.g[0]).upper})[0]);
}

Tails noncentral_t(double t, double df, double delta) {
    if (std::isinf(t)) return t > 0 ? Tails{1, 0} : Tails{0, 1};
    df = std::min(df, kHugeParameter);
    if (t == 0) return {normal_cdf(-delta), normal_cdf(delta)};
    if (t > 0) return noncentral_t_positive(t, df, delta);
    return noncentral_t_positive(-t, df, -delta).mirrored();
}

}  // namespace orvmath
