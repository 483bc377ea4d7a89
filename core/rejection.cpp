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

double f_test_power(double alpha, double df1, double df2, double noncentrality, double tolerance) {
    const double critical = OrvDistFun::IdfF(1 - alpha, df1, df2);
    return upper_tail(OrvDistFun::NonCentralCdfF(critical, df1, df2, noncentrality, tolerance));
}

double t_test_power_one_sided(double alpha, double df, double noncentrality, QuantileAccuracy accuracy) {
    const double critical = t_critical(alpha, df, accuracy);
    return upper_tail(OrvDistFun::NonCentralCdfT(critical, df, noncentrality, kNoncentralTolerance));
}

double t_test_power_two_sided(double alpha, double df, double noncentrality, QuantileAccuracy accuracy) {
    const double critical = t_critical(alpha / 2, df, accuracy);
    return upper_tail(OrvDistFun::NonCentralCdfT(critical, df, noncentrality, kNoncentralTolerance)) +
           lower_tail(OrvDistFun::NonCentralCdfT(-critical, df, noncentrality, kNoncentralTolerance));
}

}  // namespace statpower
