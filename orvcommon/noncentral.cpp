// Both distributions are Poisson mixtures of incomplete beta functions (Johnson, Kotz and Balakrishnan 1995,
// Continuous Univariate Distributions 2, chapters 30 and 31). With w_j the Poisson weights of mean h, I_j =
// I_x(a + j, b) and g_j = I_j - I_(j+1), these are sums of positive terms:
//
//   lower = sum of w_j I_j = sum of (w_0 + ... + w_j) g_j, outwards from the mode of the weights. It needs no
//           incomplete beta function at all, but the g_j die out slowly where x is near 1. Then, according to
//           which tail is the smaller,
//   lower = sum of w_j I_j downwards from where the weights have died out, I_j = I_(j+1) + g_j, or
//   upper = sum of w_j (1 - I_j) outwards from the mode, 1 - I_(j+1) = (1 - I_j) + g_j.
//
// Starting at the mode, where no term carries a large exponent: D. Benton and K. Krishnamoorthy (2003),
// Computational Statistics and Data Analysis 43, 249-267. For Poisson means above kMaxMean the contour
// integral takes over.
#include "orvcommon/noncentral.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "orvcommon/beta.h"
#include "orvcommon/normal_gamma.h"
#include "orvcommon/saddlepoint.h"

namespace orvmath {
namespace {

using std::numbers::inv_sqrtpi, std::numbers::sqrt2;

constexpr double kMaxMean = 150;    // Poisson means that are summed; above, the contour integral is as fast
constexpr double kCentral = 1e-17;  // Poisson means below are as good as none
constexpr double kMaxMeanFromZero = 10;  // up to here the sums start at index 0
constexpr int kMaxTerms = 1500;  // never met: the sums end after some 12 standard deviations of the weights
constexpr double kSmallestT = 1e-99, kLargestT = 1e99;  // in between, t^2 neither overflows nor underflows
constexpr double kGammaLike = 1e30;  // Poisson mean from which the mixture is as good as one gamma variable

/// Two doubles that are computed with side by side, in one register where there is one.
using Pair = double __attribute__((vector_size(2 * sizeof(double))));

double first(double v) {
    return v;
}
double first(Pair v) {
    return v[0];
}
double last(double v) {
    return v;
}
double last(Pair v) {
    return v[1];
}
double total(double v) {
    return v;
}
double total(Pair v) {
    return v[0] + v[1];
}
double not_negative(double v) {
    return std::max(v, 0.0);
}
Pair not_negative(Pair v) {
    return v < 0.0 ? Pair{} : v;
}

/// The index of each mixture where the first one is at j.
void set_index(double& index, double j) {
    index = j;
}
void set_index(Pair& index, double j) {
    index = Pair{j, j + 0.5};
}

/// Mixtures that run side by side: number i has shape parameters a + j and Poisson weights of index j for
/// j = i/2, 1 + i/2, ... The noncentral F distribution is one of them (Numbers is double), the noncentral t has a
/// half of each parity (Pair).
template <class Numbers>
struct Mixture {
    double h;         // Poisson mean
    double a;         // smallest shape parameter
    int start;        // where the sums start: index j = start + i/2
    BetaPoint point;  // of the first mixture there
    Numbers w, g;     // weights and differences there
};

/// Where the terms of the mixtures stand.
template <class Numbers>
class Terms {
  public:
    Numbers w, g;  // weights and differences

    explicit Terms(const Mixture<Numbers>& m)
        : w(m.w),
          g(m.g),
          h_(m.h),
          inverse_h_(1 / m.h),
          x_(m.point.x),
          x_low_(m.point.x_low),
          n_(m.a + m.point.b),
          d_(m.a + 1) {
        set_index(j_, m.start);
    }

    /// One index up: w_(j+1) / w_j = h / (j + 1), g_(j+1) / g_j = x (a + b + j) / (a + 1 + j).
    void step_up() {
        const Numbers n = n_ + j_;
        ratio_g_ = (x_ * n + x_low_ * n) / (d_ + j_);  // x_low keeps a long product exact
        j_ += 1;
        ratio_w_ = h_ / j_;
        w *= ratio_w_;
        g *= ratio_g_;
    }

    void step_down() {
        w *= j_ * inverse_h_;
        j_ -= 1;
        const Numbers n = n_ + j_;
        g *= (d_ + j_) / (x_ * n + x_low_ * n);
    }

    /// Bounds of all ratios after a step up. Those of the weights fall, the first mixture's are the largest;
    /// those of the differences tend to x from either side.
    double ratio_w() const { return first(ratio_w_); }
    double ratio_g() const { return std::max(x_, std::max(first(ratio_g_), last(ratio_g_))); }

    /// Ratio of the next step down in the weights; the last mixture has the larger.
    double ratio_down() const { return last(j_) * inverse_h_; }

  private:
    double h_, inverse_h_, x_, x_low_, n_, d_;
    Numbers j_, ratio_w_{}, ratio_g_{};  // the ratios of the last step up
};

/// Whether terms of this size, falling at least by this ratio (a function) from one to the next, are nothing to the
/// sum.
template <class Numbers, class Ratio>
bool are_nothing(Numbers terms, Ratio ratio, Numbers sum) {
    const Numbers least = 1.1e-17 * sum;  // cheaper to look at first, and mostly exceeded
    if (first(terms) > first(least) && last(terms) > last(least)) return false;
    return total(terms) <= 1e-17 * total(sum) * (1 - ratio());
}

/// sum of w_j I_x(a + j, b) of each mixture.
template <class Numbers>
Numbers lower_sums(const Mixture<Numbers>& m) {
    Numbers sum{}, weights{}, tail{};  // tail: I_j as the sum of the g from j upwards
    Terms<Numbers> up(m), down(m);
    for (int n = 0; n < kMaxTerms; ++n) {
        count_step();
        weights += up.w;
        sum += weights * up.g;
        tail += up.g;
        up.step_up();
        if (are_nothing(
                up.g, [&] { return up.ratio_g(); }, sum))
            break;
    }
    for (int j = m.start; j > 0; --j) {
        count_step();
        down.step_down();
        tail += down.g;
        sum += down.w * tail;
        if (are_nothing(
                down.w, [&] { return down.ratio_down(); }, sum))
            break;
    }
    return sum;
}

/// The same downwards from the start, given I there: for a start beyond which the weights are negligible.
template <class Numbers>
Numbers lower_sums_from_above(const Mixture<Numbers>& m, Numbers top) {
    Terms<Numbers> down(m);
    Numbers tail = top, sum = down.w * tail;
    for (int j = m.start; j > 0; --j) {
        count_step();
        down.step_down();
        tail += down.g;
        sum += down.w * tail;
        if (are_nothing(
                down.w, [&] { return down.ratio_down(); }, sum))
            break;
    }
    return sum;
}

/// sum of w_j (1 - I_x(a + j, b)) of each mixture, given 1 - I at the first index.
template <class Numbers>
Numbers upper_sums(const Mixture<Numbers>& m, Numbers top) {
    Numbers sum{}, tail = top;
    Terms<Numbers> up(m), down(m);
    for (int n = 0; n < kMaxTerms; ++n) {
        count_step();
        sum += up.w * tail;
        tail += up.g;
        up.step_up();
        if (are_nothing(
                up.w, [&] { return up.ratio_w(); }, sum))
            break;
    }
    tail = top;
    for (int j = m.start; j > 0; --j) {
        count_step();
        down.step_down();
        tail = not_negative(tail - down.g);
        sum += down.w * tail;
        if (are_nothing(
                down.w, [&] { return down.ratio_down(); }, sum))
            break;
    }
    return sum;
}

/// The index at which sums start outwards: the mode of the weights, or 0 where that is near or where the
/// differences fall from the first one on, so fast that the one at the mode might underflow.
int start_index(const BetaPoint& p, double h) {
    return h > kMaxMeanFromZero && p.x * (p.a + p.b) > 1 ? static_cast<int>(h) : 0;
}

/// An index at which the weights have died out to 1e-18 of the largest, but not underflowed.
int top_index(double h) {
    if (h < 0.01) return 1 + static_cast<int>(-41.4 / std::log(h));  // h^j / j! < 1e-18
    return static_cast<int>(h + 8.9 * std::sqrt(h) + 20);
}

/// Whether the differences die out about as soon as the Poisson weights do.
template <class Numbers>
bool differences_die_out(const Mixture<Numbers>& m) {
    return beta_series_is_short(m.point, 70 + m.h - m.start + 8.9 * std::sqrt(m.h));
}

/// The point of the parameters (a + by, b).
BetaPoint raised(const BetaPoint& p, double by) {
    BetaPoint q = p;
    q.a += by;
    q.deviation -= by * p.y;
    return q;
}

/// Whether the point p of (a, b) lies two standard deviations or more below the mean of the mixture, so that
/// the lower tail is the one to compute. (The quotient's mean and variance: see saddlepoint.h, c = x / y.)
bool is_far_below(const BetaPoint& p, double h) {
    const double c = p.x / p.y, mean = h - p.deviation / p.y, variance = p.a + 2 * h + p.b * c * c;
    return mean > 0 && mean * mean > 4 * variance;
}

/// Above kGammaLike the numerator is as good as a gamma variable of the same mean and variance; x is the
/// ratio of the quotient to its mean.
Tails gamma_like(double x, double mean, double h, double b) {
    const double shape = std::min(mean / (1 + h / mean), kHugeParameter);
    const double r = std::clamp(x * shape, kSmallestRatio, kLargestRatio);
    return beta_tails(BetaPoint::at_ratio({r, 0}, shape, b));
}

/// The quotient of a gamma variable of shape a + Poisson(h) and one of shape b at r / b, for h above
/// kMaxMean.
Tails large_mean(TwoDoubles r, double a, double b, TwoDoubles h) {
    const TwoDoubles s = two_sum(a, h.high), t = two_sum(s.high, -r.high);
    return saddlepoint_tails({a, b, h.high, r.high / b, t.high + (s.low + t.low + h.low - r.low)});
}

Mixture<double> f_mixture(const BetaPoint& origin, double h, int start) {
    const BetaPoint point = raised(origin, start);
    return {h, origin.a, start, point, {poisson_weight(start, h)}, {beta_prefix(point)}};
}

/// The two halves of the noncentral t distribution, from the point of the parameters (1/2, b).
Mixture<Pair> t_mixture(const BetaPoint& origin, double h, int start) {
    const BetaPoint p = raised(origin, start);
    const double w = poisson_weight(start, h), g = beta_prefix(p);
    return {h,
            origin.a,
            start,
            p,
            Pair{w, w * std::sqrt(h) / gamma_half_ratio(start + 1.0)},
            Pair{g, g * std::sqrt(p.x) * gamma_half_ratio(p.a + p.b) / gamma_half_ratio(p.a + 1)}};
}

/// The same from index 0, where all is elementary; y_to_b is y^b.
Mixture<Pair> t_mixture_from_zero(const BetaPoint& p, double delta, double y_to_b) {
    const double h = 0.5 * delta * delta, h_low = 0.5 * std::fma(delta, delta, -(delta * delta));
    const double w = std::exp(-h) * (1 - h_low), g = y_to_b * (2 * inv_sqrtpi);
    return {h,
            p.a,
            0,
            p,
            Pair{w, w * std::fabs(delta) * (sqrt2 * inv_sqrtpi)},
            Pair{g * std::sqrt(p.x) * gamma_half_ratio(p.b), (p.x * p.b + p.x_low * p.b) * y_to_b}};
}

/// The noncentral F distribution at r = a x; parameters and r in their ranges.
Tails noncentral_f_at(TwoDoubles r, double a, double b, double h) {
    if (h > kMaxMean) return large_mean(r, a, b, {h, 0});
    const BetaPoint p = BetaPoint::at_ratio(r, a, b);
    if (h < kCentral) return beta_tails(p);
    const Mixture<double> m = f_mixture(p, h, start_index(p, h));
    if (differences_die_out(m)) return Tails::from_lower(lower_sums(m));
    if (is_far_below(p, h)) {
        const Mixture<double> top = f_mixture(p, h, top_index(h));
        return Tails::from_lower(lower_sums_from_above(top, beta_tails(top.point, top.g).lower));
    }
    return Tails::from_upper(upper_sums(m, beta_tails(m.point, m.g).upper));
}

TwoDoubles half(TwoDoubles v) {
    return {0.5 * v.high, 0.5 * v.low};
}

/// The noncentral t distribution at t from kSmallestT to kLargestT.
Tails noncentral_t_at(double t, double df, double delta) {
    const double b = 0.5 * df, h = 0.5 * delta * delta;
    const TwoDoubles r = half(two_product(t, t));
    if (h > kMaxMean) {
        // P(Z <= -|delta|) is below 1e-66: T has the sign of delta, and T^2 is noncentral F.
        if (delta < 0) return {1, 0};
        if (h > kGammaLike) {
            const double mean = std::min(h, 1e300);
            return gamma_like((t / delta) * (t / delta), mean, mean, b);
        }
        return large_mean(r, 0.5, b, half(two_product(delta, delta)));
    }
    const BetaPoint p = BetaPoint::at_ratio(r, 0.5, b);
    const int start = start_index(p, h);
    const double y_to_b = start == 0 ? std::exp(-b * std::log1p(r.high / b)) : 0;
    const Mixture<Pair> m = start == 0 ? t_mixture_from_zero(p, delta, y_to_b) : t_mixture(p, h, start);
    // P(T <= t) = Phi(-delta) + half of the sum of both halves, the odd one with the sign of delta.
    const auto half_of = [delta](Pair sums) {
        return std::max(0.0, 0.5 * (sums[0] + std::copysign(sums[1], delta)));
    };
    if (differences_die_out(m)) {
        const double between = half_of(lower_sums(m));  // P(0 < T <= t)
        return delta > 0 ? Tails::from_lower(normal_cdf(-delta) + between)
                         : Tails::from_upper(std::max(0.0, normal_cdf(delta) - between));
    }
    if (delta > 1 && is_far_below(p, h)) {  // else the lower tail is not small
        const Mixture<Pair> top = t_mixture(p, h, top_index(h));
        const Pair sums = lower_sums_from_above(
            top,
            Pair{beta_tails(top.point, top.g[0]).lower, beta_tails(raised(top.point, 0.5), top.g[1]).lower});
        return Tails::from_lower(normal_cdf(-delta) + half_of(sums));
    }
    const double odd = start == 0 ? y_to_b : beta_tails(raised(m.point, 0.5), m.g[1]).upper;
    return Tails::from_upper(half_of(upper_sums(m, Pair{beta_tails(m.point, m.g[0]).upper, odd})));
}

}  // namespace

Tails noncentral_f(double x, double df1, double df2, double noncentrality) {
    if (!(x > 0)) return {0, 1};
    if (std::isinf(x)) return {1, 0};
    double a = 0.5 * df1, h = 0.5 * noncentrality;
    const double b = std::clamp(0.5 * df2, kTinyParameter, kHugeParameter), largest = std::max(a, h);
    if (largest > kHugeParameter) {  // at this size only their ratio matters
        a = std::isinf(a) ? kHugeParameter : a / largest * kHugeParameter;
        h = std::isinf(df1) ? 0 : h / largest * kHugeParameter;
    }
    if (h > kGammaLike) return gamma_like(x * (a / (a + h)), a + h, h, b);
    const double r = a * x;
    const TwoDoubles exact_r = x < 0x1p996 ? two_product(a, x) : TwoDoubles{r, 0};
    a = std::max(a, kTinyParameter);
    if (r > kLargestRatio) {
        const Tails end = noncentral_f_at({kLargestRatio, 0}, a, b, h);
        return Tails::from_upper(end.upper * std::pow(kLargestRatio / a / x, b));
    }
    if (r < kSmallestRatio) {
        const Tails end = noncentral_f_at({kSmallestRatio, 0}, a, b, h);
        return Tails::from_lower(end.lower * std::pow(r / kSmallestRatio, a));
    }
    return noncentral_f_at(exact_r, a, b, h);
}

Tails noncentral_t(double t, double df, double delta) {
    if (t < 0) return noncentral_t(-t, df, -delta).mirrored();
    if (std::isinf(t)) return {1, 0};
    if (t < kSmallestT) return {normal_cdf(-delta), normal_cdf(delta)};
    df = std::clamp(df, kTinyParameter, kHugeParameter);
    if (t <= kLargestT) return noncentral_t_at(t, df, delta);
    return Tails::from_upper(noncentral_t_at(kLargestT, df, delta).upper * std::pow(kLargestT / t, df));
}

}  // namespace orvmath
