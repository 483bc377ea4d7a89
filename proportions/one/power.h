// One proportion: powers by normal approximation and by exact test, their objectives and searches.
//
// `method` says which of the two a design asks for; the functions here are one or the other and do not read
// it.
#pragma once

#include <tuple>
#include <vector>

#include "statpower/core.h"

namespace statpower {

// ---- Design vectors of the sample-size searches ----------------------------------------------------------

struct OneProportionNormalSearch {
    double target, p1, p0;
    int method, sides;
    double alpha;
    bool continuity_correction;
    auto fields() { return std::tie(target, p1, p0, method, sides, alpha, continuity_correction); }
};

struct OneProportionExactSearch {
    double target, p1, p0;
    int method, sides;
    double alpha;
    auto fields() { return std::tie(target, p1, p0, method, sides, alpha); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

/// Continuity correction 1 / (2 sqrt(N)); -1.0 for N below 1. The other two arguments are not used.
STATPOWER_API double _ConCorrValue(double N, double, double);

/// Power by normal approximation. Failures as in PowerOneSampBinom.
STATPOWER_API double _POSBNormalAppro(double N, double p1, double p0, int method, int sides, double alpha,
                                      bool continuityCorrection);

/// Power of the exact test. Failures as in PowerOneSampBinom.
STATPOWER_API double _POSBBinEnum(double N, double p1, double p0, int method, int sides, double alpha,
                                  OrvCommon_940::OrvQueryCancel* cancel);

/// Power at N minus the target. Design: OneProportionNormalSearch.
STATPOWER_API double _POSBNormalApproFunc(double N, std::vector<double> design,
                                          OrvCommon_940::OrvQueryCancel* cancel);

/// Power at N minus the target. Design: OneProportionExactSearch.
STATPOWER_API double _POSBBinEnumFunc(double N, std::vector<double> design,
                                      OrvCommon_940::OrvQueryCancel* cancel);

/// Sample sizes as in PowerReverseOneSampBinom, without its checks.
STATPOWER_API double _POSBReverseNormalAppro(double power, double p1, double p0, int method, int sides,
                                             double alpha, bool continuityCorrection);
STATPOWER_API double _POSBReverseBinEnum(double power, double p1, double p0, int method, int sides,
                                         double alpha, OrvCommon_940::OrvQueryCancel* cancel);

}  // namespace POWER_NAMESPACE
