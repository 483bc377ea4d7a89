// A single pairwise comparison of two group means: a contrast of +1 and -1, tested two-sided at a level
// adjusted for the number of pairs.
#include <algorithm>
#include <cmath>
#include <optional>

#include "anova/contrast.h"
#include "core/checks.h"
#include "core/groups.h"
#include "statpower/anova.h"

using namespace statpower;
using OrvCommon_940::OrvMV;

namespace {

/// +1 for group i and -1 for group j, counted from 1. A number that no group has sets nothing.
std::vector<double> pair_contrast(int k, int i, int j) {
    std::vector<double> coefficients(static_cast<std::size_t>(std::max(k, 0)));
    const auto set = [&](int group, double value) {
        if (group >= 1 && group <= k) coefficients[static_cast<std::size_t>(group) - 1] = value;
    };
    set(i, 1);
    set(j, -1);
    return coefficients;
}

/// Level of one of the k (k - 1) / 2 comparisons; nothing for an unknown method code.
std::optional<double> adjusted_level(int method, double alpha, double k) {
    switch (method) {
        case STATPOWER_BONFERRONI:
            return (alpha + alpha) / k / (k - 1);
        case STATPOWER_SIDAK:
            return 1 - std::pow(1 - alpha, 2 / k / (k - 1));
        case STATPOWER_UNADJUSTED:
            return alpha;
        default:
            return std::nullopt;
    }
}

}  // namespace

double EffectSizePairwiseDiff(int k, const double* means, const double*, int i, int j, double sd) {
    if (!(k >= 2 && i > 0 && i < j && sd > 0)) return OrvMV::Missing();
    return EffectSizeSC(k, means, pair_contrast(k, i, j).data(), sd);
}

double PowerPairwiseDiff(int k, const double* means, const double* sizes, int i, int j, int method, double sd,
                         double alpha) {
    if (!(k >= 2 && i > 0 && i < j && sd > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    const auto level = adjusted_level(method, alpha, k);
    if (!level) return OrvMV::Missing();
    return PowerSC(k, means, sizes, pair_contrast(k, i, j).data(), STATPOWER_TWO_SIDED, sd, *level);
}

double PowerReversePairwiseDiff(int k, const double* means, const double* sizes, int i, int j,
                                std::vector<double>& groupSizes, int method, double sd, double power,
                                double alpha) {
    if (!(k >= 2 && i > 0 && i < j && sd > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    groupSizes.resize(static_cast<std::size_t>(k), OrvMV::Missing());
    const auto level = adjusted_level(method, alpha, k);
    if (!level) return OrvMV::Missing();
    return contrast_allocation(groups(k, means), groups(k, sizes), pair_contrast(k, i, j), groupSizes,
                               STATPOWER_TWO_SIDED, sd, power, *level);
}

double HalfCIPairwiseDiff(int k, const double* sizes, int i, int j, int method, double N, double sd,
                          double alpha) {
    const auto level = adjusted_level(method, alpha, k);
    if (!level) return OrvMV::Missing();
    return HalfCISCTest(k, sizes, pair_contrast(k, i, j).data(), N, sd, *level);
}

double PowerReversebyHalfCIPairwiseDiff(int k, const double* sizes, int i, int j,
                                        std::vector<double>& groupSizes, int method, double halfWidth,
                                        double sd, double alpha) {
    if (!(k >= 2 && sd > 0 && is_between_0_and_1(alpha))) return OrvMV::Missing();
    groupSizes.resize(static_cast<std::size_t>(k), OrvMV::Missing());
    const auto level = adjusted_level(method, alpha, k);
    if (!level) return OrvMV::Missing();
    return PowerReversebyHalfCISCTest(k, sizes, pair_contrast(k, i, j).data(), &groupSizes, halfWidth, sd,
                                      *level);
}
