// Specified contrasts of group means in a one-way design: kernels and objectives.
#pragma once

#include <span>
#include <vector>

#include "core/design.h"
#include "statpower/core.h"

namespace statpower {

/// Standardised contrast psi / sigma, psi = sum of coefficients[i] means[i]. Coefficients that do not sum to
/// zero get a new last one that makes them do so; the missing value when that one lies outside [-1, 1], when
/// sigma is not positive, or when there are no groups.
double contrast_effect(std::span<const double> means, std::span<double> coefficients, double sigma);

/// Power for one mean, one allocation weight and one coefficient a group and a total N, through
/// contrast_effect, which may repair the last coefficient. An effect that is missing is used as it comes.
/// The missing value, with the coefficients left alone, unless there are at least two groups, alpha > 0,
/// sigma > 0, N >= k and alpha < 1.
double contrast_power(std::span<const double> means, double sigma, std::span<const double> weights, double N,
                      std::span<double> coefficients, bool directional, double alpha);

/// Power for an effect size es = psi / sigma: noncentrality lambda = (N / W) es^2 / Q, with W the sum of the
/// weights and Q the sum of coefficients[i]^2 / weights[i]. Directional: t test with noncentrality
/// sqrt(lambda), so always in the direction of the effect; otherwise F test with one numerator degree of
/// freedom. The missing value unless there are at least two groups, alpha > 0, N >= k and alpha < 1.
double contrast_power_of_effect(double es, std::span<const double> weights, double N,
                                std::span<const double> coefficients, bool directional, double alpha);

/// Searches the allocation that reaches a target power, with weights given by `sizes`, and writes it into
/// groupSizes, which has one element a group already. No argument is checked.
/// @return the sum of the group sizes
double contrast_allocation(std::span<const double> means, std::span<const double> sizes,
                           std::span<const double> coefficients, std::vector<double>& groupSizes,
                           int directional, double sigma, double power, double alpha);

// ---- Design vectors of the sample-size searches ----------------------------------------------------------

struct ContrastSearch {
    double target;
    int k;
    double sigma, alpha;
    int directional;
    std::span<const double> means, weights, coefficients;
    auto fields() {
        return std::tuple_cat(std::tie(target, k, sigma, alpha, directional),
                              arrays(k, means, weights, coefficients));
    }
};

struct ContrastEffectSearch {
    double target;
    int k;
    double es, alpha;
    int directional;
    std::span<const double> weights, coefficients;
    auto fields() {
        return std::tuple_cat(std::tie(target, k, es, alpha, directional), arrays(k, weights, coefficients));
    }
};

/// total_weight: W, the sum of the weights; unit_variance: Q.
struct ContrastHalfWidthSearch {
    double target;
    int k;
    double sigma, alpha, total_weight, unit_variance;
    auto fields() { return std::tie(target, k, sigma, alpha, total_weight, unit_variance); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

/// contrast_power for k means, k allocation weights and k coefficients.
STATPOWER_API double _PowerSCwithN(int k, double* means, double sigma, double* sizes, double N,
                                   double* coefficients, int directional, double alpha);

/// contrast_power_of_effect for k allocation weights and k coefficients.
STATPOWER_API double _PowerSCwithES(int k, double es, double* sizes, double N, double* coefficients,
                                    int directional, double alpha);

/// Power at N minus the target. Design: ContrastSearch.
STATPOWER_API double SCFunc(double N, std::vector<double> design, OrvCommon_940::OrvQueryCancel* cancel);

/// Power at N minus the target. Design: ContrastEffectSearch.
STATPOWER_API double SCwESFunc(double N, std::vector<double> design, OrvCommon_940::OrvQueryCancel* cancel);

/// N halfWidth^2 / (sigma^2 W) - t^2 Q, negative while the half-width at N exceeds the target.
/// Design: ContrastHalfWidthSearch.
STATPOWER_API double _SampleSizebyHalfCISCTestFunc(double N, std::vector<double> design,
                                                   OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
