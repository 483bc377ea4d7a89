// The exact test of one proportion as its rules read: a walk over all counts. The reference for the library,
// which finds the same critical counts by bisection.
#pragma once

#include <cmath>

#include "orvcommon/dist_fun.h"
#include "orvcommon/mv.h"
#include "orvcommon/query_cancel.h"

namespace testing_support {

inline double one_sample_power_by_walk(double N, double p1, double p0, int sides, double alpha,
                                       OrvCommon_940::OrvQueryCancel* cancel = nullptr) {
    using OrvCommon_940::OrvMV;
    using OrvMath_940::OrvDistFun;
    const auto asks_to_stop = [&] { return cancel != nullptr && cancel->IsCancelRequested(); };
    if (!(alpha > 0) || p0 > 1 || p0 < 0 || p1 > 1 || N < 1 || p1 < 0 || !(alpha < 1)) return -1;

    if (sides == 0) {
        const double a = alpha / 2;
        double L = N;
        for (double x = -1; x <= N - 1; ++x) {
            if (asks_to_stop()) return OrvMV::Missing();
            long flag_a = 0, flag_b = 0;
            const double A = OrvDistFun::CdfBin(x, N, p0, flag_a);
            const double B = OrvDistFun::CdfBin(x + 1, N, p0, flag_b);
            if (flag_a == 0 && flag_b == 0 && A <= a && B > a) {
                L = x;
                break;
            }
        }
        double U = 0;
        for (double j = std::trunc(N); j >= 0; --j) {
            if (asks_to_stop()) return OrvMV::Missing();
            long flag_a = 0, flag_b = 0;
            const double A = OrvDistFun::CdfBin(j + 1, N, p0, flag_a);
            const double B = OrvDistFun::CdfBin(j, N, p0, flag_b);
            if (flag_a == 0 && flag_b == 0 && A >= 1 - a && B < 1 - a) {
                U = j + 1;
                break;
            }
        }
        long flag_upper = 0, flag_lower = 0;
        const double upper = OrvDistFun::CdfBin(U, N, p1, flag_upper);
        const double lower = OrvDistFun::CdfBin(L, N, p1, flag_lower);
        return flag_upper != 0 || flag_lower != 0 ? -2 : (1 - upper) + lower;
    }

    if (p1 <= p0) {
        double x = -1;
        for (double i = 0; x < N; ++i, x = i - 1) {
            if (asks_to_stop()) return OrvMV::Missing();
            long flag_a = 0, flag_b = 0;
            const double A = OrvDistFun::CdfBin(x, N, p0, flag_a);
            const double B = OrvDistFun::CdfBin(i, N, p0, flag_b);
            if (!(B <= alpha || A > alpha || flag_a != 0 || flag_b != 0)) break;
        }
        long flag = 0;
        const double power = OrvDistFun::CdfBin(x, N, p1, flag);
        return flag != 0 ? -2 : power;
    }

    double k = 0;
    for (double j = std::trunc(N); j >= 0; --j) {
        if (asks_to_stop()) return OrvMV::Missing();
        long flag_a = 0, flag_b = 0;
        const double A = OrvDistFun::CdfBin(j + 1, N, p0, flag_a);
        const double B = OrvDistFun::CdfBin(j, N, p0, flag_b);
        if (flag_a == 0 && flag_b == 0 && A >= 1 - alpha && B < 1 - alpha) {
            k = j + 1;
            break;
        }
    }
    long flag = 0;
    const double cumulative = OrvDistFun::CdfBin(k, N, p1, flag);
    return flag != 0 ? -2 : 1 - cumulative;
}

}  // namespace testing_support
