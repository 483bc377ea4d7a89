#include "proportions/two/transcription.h"

#include <algorithm>
#include <cmath>

#include "orvcommon/dist_fun.h"
#include "statpower/core.h"

using OrvMath_940::OrvDistFun;

namespace transcription {

namespace {

double pdf(double x, double n, double p) {
    long status = 0;
    return OrvDistFun::PdfBin(x, n, p, status);
}

struct Table {
    double phat1;
    double phat2;
};

Table adjusted(const Design& d, int x1, int x2) {
    const double total = x1 + x2;
    if (total == 0) return {0.001 / d.n1, 0.001 / d.n2};
    if (total == d.n1 + d.n2) return {(d.n1 - 0.001) / d.n1, (d.n2 - 0.001) / d.n2};
    return {x1 / d.n1, x2 / d.n2};
}

/// The counts that are visited go one beyond a fractional size; no statistic is computed there.
bool is_beyond(const Design& d, double x1, double x2) {
    return x1 > d.n1 || x2 > d.n2;
}

double z_statistic(const Design& d, int x1, int x2) {
    if (is_beyond(d, x1, x2)) return -1;
    const auto [phat1, phat2] = adjusted(d, x1, x2);
    const double pbar = (d.n2 * phat2 + d.n1 * phat1) / (d.n1 + d.n2);
    const double S = std::sqrt(pbar * (1 - pbar) * (1 / d.n1 + 1 / d.n2));
    const double c = 0.5 * (1 / d.n1 + 1 / d.n2);
    if (d.sides == 0) {
        if (d.flag) return (std::abs(phat1 - phat2) - c) / S;
        return std::abs(phat1 - phat2) / S;
    }
    const double difference = d.p1 > d.p2 ? phat1 - phat2 : phat2 - phat1;
    if (d.flag) return (difference + c) / S;
    return difference / S;
}

double t_statistic(const Design& d, int x1, int x2) {
    if (is_beyond(d, x1, x2)) return -1;
    const auto [phat1, phat2] = adjusted(d, x1, x2);
    const double N = d.n1 + d.n2;
    const double Dp = std::sqrt((d.n2 * (phat2 * (1 - phat2)) + d.n1 * (phat1 * (1 - phat1))) * N / (N - 2));
    const double Ds = std::sqrt((d.n2 * (phat1 * (1 - phat1)) + d.n1 * (phat2 * (1 - phat2))) * N / (N - 2));
    double difference = std::abs(phat1 - phat2);
    if (d.sides != 0) difference = d.p1 > d.p2 ? phat1 - phat2 : phat2 - phat1;
    return std::sqrt(d.n1 * d.n2) * difference / (d.flag ? Dp : Ds);
}

double xlogx(double x) {
    if (x < 0) return -1;
    return x == 0 ? 0 : x * std::log(x);
}

double g_squared(const Design& d, double x1, double x2) {
    if (is_beyond(d, x1, x2)) return -1;
    return 2 * (xlogx(x1) + xlogx(d.n1 - x1) + xlogx(x2) + xlogx(d.n2 - x2) + xlogx(d.n1 + d.n2)) -
           2 * (xlogx(x1 + x2) + xlogx(d.n1 + d.n2 - x1 - x2) + xlogx(d.n1) + xlogx(d.n2));
}

template <class Rejects>
Result enumerate(const Design& d, Rejects rejects) {
    Result result;
    for (int x1 = 0; x1 < d.n1 + 1; ++x1)
        for (int x2 = 0; x2 < d.n2 + 1; ++x2)
            if (rejects(x1, x2)) {
                result.power += pdf(x1, d.n1, d.p1) * pdf(x2, d.n2, d.p2);
                ++result.rejected;
            }
    return result;
}

double level(const Design& d) {
    return d.sides == 0 ? d.alpha / 2 : d.alpha;
}

}  // namespace

Result chi_square(const Design& d) {
    const double z = OrvDistFun::IdfStdNorm(1 - level(d));
    return enumerate(d, [&](int x1, int x2) { return z_statistic(d, x1, x2) > z; });
}

Result t(const Design& d) {
    const double critical = OrvDistFun::IdfT(1 - level(d), d.n1 + d.n2 - 2, 1e-20, 1e-12);
    return enumerate(d, [&](int x1, int x2) { return t_statistic(d, x1, x2) > critical; });
}

Result likelihood_ratio(const Design& d) {
    const double z = OrvDistFun::IdfStdNorm(1 - level(d));
    return enumerate(d, [&](int x1, int x2) {
        const double G2 = g_squared(d, x1, x2);
        return G2 >= 0 && std::sqrt(G2) > z;
    });
}

Fisher::Fisher(const Design& design, bool from_scratch) : design_(design), from_scratch_(from_scratch) {}

double Fisher::combination(double n, double k) {
    if (from_scratch_) return Combination(n, k);
    const auto [entry, is_new] = combinations_.try_emplace({n, k});
    if (is_new) entry->second = Combination(n, k);
    return entry->second;
}

double Fisher::weight(double u, int t, double psi) {
    return combination(design_.n1, u) * combination(design_.n2, t - u) * std::pow(psi, u);
}

double Fisher::conditional_probability(double x, int t, double psi, double lo, double hi) {
    if (x < 0 || x > t) return 0;
    const auto denominator = [&] {
        double sum = 0;
        for (double u = lo; u <= hi; ++u) sum += weight(u, t, psi);
        return sum;
    };
    if (from_scratch_) return weight(x, t, psi) / denominator();
    const auto [entry, is_new] = denominators_.try_emplace({t, psi});
    if (is_new) entry->second = denominator();
    return weight(x, t, psi) / entry->second;
}

double Fisher::upper_critical_value(int t, double lo, double hi, double a) {
    double k = hi;
    for (; k >= lo; --k) {
        double S = 0;
        for (double u = k; u <= hi; ++u) S += conditional_probability(u, t, 1, lo, hi);
        if (S <= a && S + conditional_probability(k - 1, t, 1, lo, hi) > a) break;
    }
    return k;
}

double Fisher::lower_critical_value(int t, double lo, double hi, double a) {
    for (double k = lo; k <= hi; ++k) {
        double S = 0;
        for (double u = lo; u <= k; ++u) S += conditional_probability(u, t, 1, lo, hi);
        if (S <= a && S + conditional_probability(k + 1, t, 1, lo, hi) > a) return k;
    }
    return hi + 1;
}

double Fisher::probability_of_total(int t, double lo, double hi) const {
    double sum = 0;
    for (double x = std::trunc(lo); x <= std::trunc(hi); ++x)
        sum += pdf(x, design_.n1, design_.p1) * pdf(t - x, design_.n2, design_.p2);
    return sum;
}

double Fisher::power() {
    const auto [n1, n2, p1, p2, sides, alpha, flag] = design_;
    const double psi = (p1 / (1 - p1)) / (p2 / (1 - p2));
    double power = 0;
    for (int t = 0; t <= n1 + n2; ++t) {
        const double lo = std::max(0.0, t - n2);
        const double hi = std::min(1.0 * t, n1);
        double upper = 0;
        double lower = 0;
        if (sides == 0 || p1 > p2) {
            const double U = upper_critical_value(t, lo, hi, level(design_));
            if (lo <= U && U <= hi)
                for (double x = U; x <= n1; ++x) upper += conditional_probability(x, t, psi, lo, hi);
        }
        if (sides == 0 || !(p1 > p2)) {
            const double L = lower_critical_value(t, lo, hi, level(design_));
            if (lo <= L && L <= hi)
                for (double x = lo; x <= L; ++x) lower += conditional_probability(x, t, psi, lo, hi);
        }
        power += probability_of_total(t, lo, hi) * (upper + lower);
    }
    return power;
}

double fisher(const Design& design, bool from_scratch) {
    return Fisher(design, from_scratch).power();
}

}  // namespace transcription
