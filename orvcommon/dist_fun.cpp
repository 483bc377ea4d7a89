// The exported edge: domains, limits at the ends, the missing value and the status. Everything behind it may
// rely on arguments inside the domain.
#include "orvcommon/dist_fun.h"

#include <cmath>
#include <limits>

#include "orvcommon/beta.h"
#include "orvcommon/discrete.h"
#include "orvcommon/mv.h"
#include "orvcommon/noncentral.h"
#include "orvcommon/normal_gamma.h"
#include "orvcommon/quantiles.h"

using OrvCommon_940::OrvMV;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr long kOutOfDomain = 1;

bool is_probability(double p) {
    return p >= 0 && p <= 1;
}

/// Trials and success probability of a binomial distribution.
bool is_binomial(double n, double p) {
    return n >= 0 && n < kInfinity && is_probability(p);
}

double out_of_domain(long& status) {
    status = kOutOfDomain;
    return OrvMV::Missing();
}

}  // namespace

namespace OrvMath_940 {

double OrvDistFun::CdfStdNorm(double x) noexcept {
    return std::isnan(x) ? OrvMV::Missing() : orvmath::normal_cdf(x);
}

double OrvDistFun::IdfStdNorm(double p) noexcept {
    if (!is_probability(p)) return OrvMV::Missing();
    if (p == 0) return -kInfinity;
    if (p == 1) return kInfinity;
    return orvmath::normal_quantile(p);
}

double OrvDistFun::vorndnlgam(const double& x) noexcept {
    return x > -kInfinity ? orvmath::log_gamma(x) : OrvMV::Missing();
}

double OrvDistFun::NonCentralCdfF(double x, double df1, double df2, double noncentrality, double) noexcept {
    if (std::isnan(x) || !(df1 > 0 && df2 > 0 && noncentrality >= 0 && noncentrality < kInfinity))
        return OrvMV::Missing();
    return orvmath::noncentral_f(x, df1, df2, noncentrality).lower;
}

double OrvDistFun::NonCentralCdfT(double x, double df, double noncentrality, double) noexcept {
    if (std::isnan(x) || !(df > 0 && std::isfinite(noncentrality))) return OrvMV::Missing();
    return orvmath::noncentral_t(x, df, noncentrality).lower;
}

double OrvDistFun::IdfF(double p, double df1, double df2) noexcept {
    if (!(is_probability(p) && df1 > 0 && df2 > 0)) return OrvMV::Missing();
    if (p == 0) return 0;
    if (p == 1) return kInfinity;
    return orvmath::f_quantile(p, df1, df2);
}

double OrvDistFun::IdfT(double p, double df, double, double) noexcept {
    if (!(is_probability(p) && df > 0)) return OrvMV::Missing();
    if (p == 0) return -kInfinity;
    if (p == 1) return kInfinity;
    return orvmath::t_quantile(p, df);
}

double OrvDistFun::CdfBin(double x, double n, double p, long& status) noexcept {
    if (std::isnan(x) || !is_binomial(n, p)) return out_of_domain(status);
    return orvmath::binomial_cdf(x, n, p);
}

double OrvDistFun::IdfBin(double probability, double n, double p, long& status) noexcept {
    if (!(is_probability(probability) && is_binomial(n, p))) return out_of_domain(status);
    return orvmath::binomial_quantile(probability, n, p);
}

double OrvDistFun::PdfBin(double x, double n, double p, long& status) noexcept {
    if (std::isnan(x) || !is_binomial(n, p)) return out_of_domain(status);
    return orvmath::binomial_probability(x, n, p);
}

double OrvDistFun::CdfBeta(double x, double a, double b) noexcept {
    if (std::isnan(x) || !(a > 0 && b > 0) || (std::isinf(a) && std::isinf(b))) return OrvMV::Missing();
    return orvmath::beta_cdf(x, a, b).lower;
}

double OrvDistFun::IdfBeta(const double& p, const double& a, const double& b) noexcept {
    const bool has_limit = (a > 0 || b > 0) && (a < kInfinity || b < kInfinity);
    if (!(is_probability(p) && a >= 0 && b >= 0 && has_limit)) return OrvMV::Missing();
    if (a == 0 || std::isinf(b)) return 0;
    if (b == 0 || std::isinf(a)) return 1;
    if (p == 0 || p == 1) return p;
    return orvmath::beta_quantile(p, a, b);
}

double OrvDistFun::PdfNegBin(double k, double r, double p, long& status) noexcept {
    if (std::isnan(k) || !(r > 0 && r < kInfinity && is_probability(p))) return out_of_domain(status);
    return orvmath::negative_binomial_probability(k, r, p);
}

}  // namespace OrvMath_940
