// Tests of one correlation: the objectives of the sample-size searches and the default ranges of the
// surfaces.
#pragma once

#include <tuple>
#include <vector>

#include "statpower/core.h"

namespace statpower {

// ---- Design vectors of the sample-size searches ----------------------------------------------------------

struct PearsonSearch {
    double target, r, r0;
    int sided;
    bool bias;
    double alpha;
    auto fields() { return std::tie(target, r, r0, sided, bias, alpha); }
};

struct SpearmanSearch {
    double target, r, r0;
    int method, sided;
    double alpha;
    auto fields() { return std::tie(target, r, r0, method, sided, alpha); }
};

struct PartialSearch {
    double target, k, r, r0;
    int sided;
    double alpha;
    auto fields() { return std::tie(target, k, r, r0, sided, alpha); }
};

struct PearsonHalfWidthSearch {
    double target, r;
    bool bias;
    double alpha;
    auto fields() { return std::tie(target, r, bias, alpha); }
};

struct SpearmanHalfWidthSearch {
    double target, r;
    int method;
    double alpha;
    auto fields() { return std::tie(target, r, method, alpha); }
};

struct PartialHalfWidthSearch {
    double target, k, r, alpha;
    auto fields() { return std::tie(target, k, r, alpha); }
};

}  // namespace statpower

namespace POWER_NAMESPACE {

// ---- Power at N minus the target -------------------------------------------------------------------------

/// Design: PearsonSearch.
STATPOWER_API double PowerbyOneSampPearsonFunc(double N, std::vector<double> design,
                                               OrvCommon_940::OrvQueryCancel* cancel);

/// Design: SpearmanSearch.
STATPOWER_API double PowerbyOneSampSpearmanFunc(double N, std::vector<double> design,
                                                OrvCommon_940::OrvQueryCancel* cancel);

/// Design: PartialSearch.
STATPOWER_API double PowerbyOneSampPartialFunc(double N, std::vector<double> design,
                                               OrvCommon_940::OrvQueryCancel* cancel);

// ---- Target half-width minus the half-width at N ---------------------------------------------------------

/// Design: PearsonHalfWidthSearch.
STATPOWER_API double _SampleSizebyHalfCIOneSampPearson(double N, std::vector<double> design,
                                                       OrvCommon_940::OrvQueryCancel* cancel);

/// Design: SpearmanHalfWidthSearch.
STATPOWER_API double _SampleSizebyHalfCIOneSampSpearman(double N, std::vector<double> design,
                                                        OrvCommon_940::OrvQueryCancel* cancel);

/// Design: PartialHalfWidthSearch.
STATPOWER_API double _SampleSizebyHalfCIOneSampPartial(double N, std::vector<double> design,
                                                       OrvCommon_940::OrvQueryCancel* cancel);

// ---- Default ranges of the sample size -------------------------------------------------------------------

/// Partial correlation: from k + 4 to k + 5000, k truncated. The power at N is evaluated, as for the other
/// tests, but the range does not depend on it.
STATPOWER_API void _SetPlotRangeN(double N, double k, double r, double r0, int sided, double alpha, int& nMin,
                                  int& nMax);

/// Spearman: from (1 - P) N, but at least 4, to (2 - P) N, where P is the power at N.
STATPOWER_API void _SetPlotRangeN(double N, double r, double r0, int method, int sided, double alpha,
                                  int& nMin, int& nMax);

}  // namespace POWER_NAMESPACE
