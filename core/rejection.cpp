#include "core/rejection.h"

#include "orvcommon/mv.h"

namespace statpower {

using OrvCommon_940::OrvMV;
using OrvMath_940::OrvDistFun;

double upper_tail(double cumulative) {
    return OrvMV::IsMissing(cumulative) ? 1 : 1 - cumulative;
}

double lower_tail(double cumulative) {
    return OrvMV::IsMissing(cumulative) ? 0 : cumulative;
}

double t_critical(double tail, double df, QuantileAccuracy accuracy) {
    return OrvDistFun::IdfT(1 - tail, df, accuracy.first, accuracy.second);
}

FTest::FTest(double alpha, double df1, double df2, double tolerance)
    : df1_(df1), df2_(df2), tolerance_(tolerance), critical_(OrvDistFun::IdfF(1 - alpha, df1, df2)) {}

double FTest::power(double noncentrality) const {
    return upper_tail(OrvDistFun::NonCentralCdfF(critical_, df1_, df2_, noncentrality, tolerance_));
}

TTest::TTest(double tail, double df, QuantileAccuracy accuracy)
    : df_(df), critical_(t_critical(tail, df, accuracy)) {}

double TTest::power_one_sided(double noncentrality) const {
    return upper_tail(OrvDistFun::NonCentralCdfT(critical_, df_, noncentrality, kNoncentralTolerance));
}

double TTest::power_two_sided(double noncentrality) const {
    return power_one_sided(noncentrality) +
           lower_tail(OrvDistFun::NonCentralCdfT(-critical_, df_, noncentrality, kNoncentralTolerance));
}

}  // namespace statpower
