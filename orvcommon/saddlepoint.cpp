// The cumulant generating function of Q is
//     K(s) = -a log(1 - s) + h s / (1 - s) - b log(1 + c s),    -1/c < s < 1,
// and P(Q > 0) = 1/(2 pi i) times the integral of e^K(s) / s along a line to the right of 0, P(Q <= 0) the
// same to its left, sign reversed. Through the saddlepoint s0 (the real zero of K') a parabola follows the
// path of steepest descent:
//     s(t) = s0 + (i t + k t^2) / sigma,   sigma^2 = K''(s0),   k = K'''(s0) / (6 sigma^3).
// The trapezoidal rule on an analytic integrand converges geometrically, with a rate given by the distance of
// the nearest singularity; the error that the pole at s = 0 causes is known in closed form and added back.
// The trapezoidal rule: L. N. Trefethen and J. A. C. Weideman (2014), The exponentially convergent
// trapezoidal rule, SIAM Review 56, 385-458. Its use on a path through the saddlepoint: S. O. Rice (1980),
// Distribution of quadratic forms in normal random variables, SIAM J. Sci. Stat. Comput. 1, 438-448. The
// generating function: R. W. Butler (2007), Saddlepoint Approximations with Applications, Cambridge
// University Press.
#include "orvcommon/saddlepoint.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvmath {
namespace {

using std::numbers::pi;

struct Complex {  // std::complex without its care for infinities, which costs a call per product
    double re, im;
};
Complex operator*(Complex a, Complex b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
Complex operator/(Complex a, Complex b) {
    const double inverse = 1 / (b.re * b.re + b.im * b.im);
    return {(a.re * b.re + a.im * b.im) * inverse, (a.im * b.re - a.re * b.im) * inverse};
}

/// w - log(1 + w), as its real counterpart.
Complex log1p_deficit(Complex w) {
    const double size = w.re * w.re + w.im * w.im;
    if (size > 0.09) return {w.re - 0.5 * std::log1p(2 * w.re + size), w.im - std::atan2(w.im, 1 + w.re)};
    const Complex r = w / Complex{2 + w.re, w.im}, q = r * r;
    static constexpr double kOdd[] = {1.0 / 3,  1.0 / 5,  1.0 / 7,  1.0 / 9,  1.0 / 11, 1.0 / 13,
                                      1.0 / 15, 1.0 / 17, 1.0 / 19, 1.0 / 21, 1.0 / 23, 1.0 / 25};
    int k = size < 1e-10 ? 1 : size < 1e-5 ? 3 : size < 1e-3 ? 5 : size < 1e-2 ? 7 : 11;
    Complex sum = {kOdd[k], 0};
    while (k-- > 0) {
        sum = sum * q;
        sum.re += kOdd[k];
    }
    const Complex wr = w * r, t = r * q * sum;
    return {wr.re - 2 * t.re, wr.im - 2 * t.im};
}

/// The zero of K' for a shape b of Y: a quadratic equation, all its quantities over the largest and 1 + c.
double saddlepoint(const QuotientPoint& q, double b) {
    const double scale = std::max({q.a, b, q.h}), g = 1 / (1 + q.c), cg = q.c * g;
    const double an = q.a / scale, bn = b / scale, hn = q.h / scale;
    const double mean = (b == q.b ? q.mean / scale : an + hn - bn * q.c) * g;
    const double quadratic = (an + bn) * cg, linear = an * (cg - g) + hn * cg + 2 * bn * cg;
    const double root = std::sqrt(linear * linear + 4 * quadratic * mean);
    return linear > 0 ? -2 * mean / (linear + root) : (linear - root) / (2 * quadratic);
}

/// The path s(t) = s0 + (i t + k t^2) / sigma, and K there.
struct Path {
    double s0, sigma, k;
    double A, B;   // distances of the singularities 1 and -1/c from s0, in units of 1/sigma
    double slope;  // K'(s0) / sigma, not zero where the path does not cross at the saddlepoint itself
};

/// Step of the trapezoidal rule in t, from the distance of the nearest singularity.
double step_of(const Path& p) {
    const double left = 1 + 4 * p.k * p.B, right = 1 - 4 * p.k * p.A;
    const double distance = std::min(left > 0 ? 2 * p.B / (1 + std::sqrt(left)) : 0.5 / -p.k,
                                     right > 0 ? 2 * p.A / (1 + std::sqrt(right)) : 0.5 / p.k);
    return 2 * pi / (8.9 + 39 / distance);
}

/// The integral of e^(K(s) - K(s0)) / s over the path, divided by 2 pi i.
double integral_over(const Path& p, const QuotientPoint& q, double step) {
    const double h = q.h / (1 - p.s0), t0 = p.s0 * p.sigma;
    double sum = 0;
    for (int i = 0; i < 400; ++i) {
        count_step();
        const double t = (i + 0.5) * step, kt = p.k * t;
        const Complex d = {kt * t, t}, w = {d.re / p.A, d.im / p.A}, v = {d.re / p.B, d.im / p.B};
        const Complex dx = log1p_deficit(Complex{-w.re, -w.im}), dy = log1p_deficit(v);
        const Complex shift = w * w / Complex{1 - w.re, -w.im};
        const double exponent = q.a * dx.re + h * shift.re + q.b * dy.re + p.slope * d.re;
        const double phase = q.a * dx.im + h * shift.im + q.b * dy.im + p.slope * d.im;
        const double size = std::exp(exponent);
        const Complex direction = Complex{2 * kt, 1} / Complex{t0 + d.re, t};  // ds / s
        sum += size * (direction.re * std::sin(phase) + direction.im * std::cos(phase));
        if (size < 1e-18 || !(size < 1e18)) break;
    }
    return sum * step / pi;
}

/// What the pole at s = 0 adds to the trapezoidal rule.
double pole_error(const Path& p, double step) {
    const double t0 = p.s0 * p.sigma, discriminant = 1 + 4 * p.k * t0;
    if (!(discriminant > 0)) return 0;
    const double distance = 2 * std::fabs(t0) / (1 + std::sqrt(discriminant));
    if (!(distance * step < 2 * pi)) return 0;  // too far from the path to matter
    return (p.s0 < 0 ? -1 : 1) / (std::exp(2 * pi * distance / step) + 1);
}

Tails far_out(const QuotientPoint& q) {
    return q.mean > 0 ? Tails{0, 1} : Tails{1, 0};
}

}  // namespace

Tails saddlepoint_tails(const QuotientPoint& q) {
    const auto [a, b, h, c, mean] = q;
    // The path is laid for a shape of at least two: that keeps it off the singularity at -1/c.
    const double path_b = std::max(b, 2.0), zero = saddlepoint(q, path_b);
    // Not further left than -1: beyond, far in the lower tail, the integrand would die out too slowly.
    const double s0 = h > 0 ? std::max(zero, -1.0) : zero;
    if (!(1 - s0 > 0 && 1 + c * s0 > 0)) return far_out(q);

    // K(s0), its linear terms gathered in the mean except where b c s0 would swamp the rest.
    const double al = 1 / (1 - s0), bt = c / (1 + c * s0), u = c * s0;
    const double K0 = a * orvmath::log1p_deficit(-s0) + h * s0 * s0 * al +
                      (u < 1 ? s0 * mean + b * orvmath::log1p_deficit(u) : s0 * (a + h) - b * std::log1p(u));
    if (!(K0 >= -745)) return far_out(q);

    Path path;
    path.s0 = s0;
    path.sigma = std::sqrt(a * al * al + 2 * h * al * al * al + path_b * bt * bt);
    path.A = path.sigma / al;
    path.B = path.sigma / bt;
    path.k =
        ((2 * a + 6 * h * al) / (path.A * path.A * path.A) - 2 * path_b / (path.B * path.B * path.B)) / 6;
    path.slope = s0 != zero ? (a * al + h * al * al - b * bt) / path.sigma : (path_b - b) / path.B;

    const double step = step_of(path);
    const double integral = integral_over(path, q, step) * std::exp(K0) + pole_error(path, step);
    return s0 < 0 ? Tails::from_lower(std::max(-integral, 0.0)) : Tails::from_upper(std::max(integral, 0.0));
}

}  // namespace orvmath
