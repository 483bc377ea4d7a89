// The exact test of paired proportions as its rules read: every number of discordant pairs, every term. The
// reference for the library, which leaves out the terms that cannot change the sum.
#pragma once

#include <cmath>

#include "orvcommon/dist_fun.h"
#include "orvcommon/mv.h"
#include "orvcommon/query_cancel.h"

namespace testing_support {

inline double related_power_by_sum(int sided, double N, double p1, double p2, double alpha,
                                   OrvCommon_940::OrvQueryCancel* cancel = nullptr) {
    using OrvMath_940::OrvDistFun;
    const double psi = p1 + p2, pc = p2 / psi;
    const auto nearest = [](double x) { return std::trunc(x + 0.5); };
    long code = 0;
    double power = 0;
    for (double m = 1; m <= N; ++m) {
        if (cancel != nullptr && cancel->IsCancelRequested()) return OrvCommon_940::OrvMV::Missing();
        const auto null = [&](double x) { return OrvDistFun::CdfBin(x, m, 0.5, code); };
        const auto alternative = [&](double x) { return OrvDistFun::CdfBin(x, m, pc, code); };
        double term = 0;
        if (sided == 0) {
            const double kl = nearest(OrvDistFun::IdfBin(alpha / 2, m, 0.5, code));
            const double ku0 = nearest(OrvDistFun::IdfBin(1 - alpha / 2, m, 0.5, code));
            const double ku = ku0 + 1;
            const double at_kl = null(kl), above_kl = null(kl + 1), at_ku0 = null(ku0), at_ku = null(ku);
            if (!(at_kl <= alpha / 2 && alpha / 2 < above_kl && at_ku0 <= 1 - alpha / 2 &&
                  1 - alpha / 2 <= at_ku))
                continue;
            term = OrvDistFun::PdfBin(m, N, psi, code) * (alternative(kl) + 1 - alternative(ku));
        } else if (p2 > p1) {
            const double ku0 = nearest(OrvDistFun::IdfBin(1 - alpha, m, 0.5, code));
            const double ku = ku0 + 1;
            const double at_ku0 = null(ku0), at_ku = null(ku);
            if (!(at_ku0 <= 1 - alpha && 1 - alpha <= at_ku)) continue;
            term = OrvDistFun::PdfBin(m, N, psi, code) * (1 - alternative(ku));
        } else {
            const double kl = nearest(OrvDistFun::IdfBin(alpha, m, 0.5, code));
            const double at_kl = null(kl), above_kl = null(kl + 1);
            if (!(at_kl <= alpha && alpha < above_kl)) continue;
            term = OrvDistFun::PdfBin(m, N, psi, code) * alternative(kl);
        }
        if (code != 0) return -2;
        power += term;
    }
    return power;
}

}  // namespace testing_support
