#include "support/distribution_stand_in.h"

#include "orvcommon/dist_fun.h"

namespace testing_support {

DistributionCalls distribution_calls;

namespace {

double answer(std::vector<Arguments>& calls, const std::function<double(const Arguments&)>& value,
              Arguments arguments) {
    calls.push_back(std::move(arguments));
    return value(calls.back());
}

}  // namespace
}  // namespace testing_support

namespace OrvMath_940 {

using testing_support::answer;
using testing_support::distribution_calls;

double OrvDistFun::IdfF(double p, double df1, double df2) noexcept {
    return answer(distribution_calls.idf_f, distribution_calls.f_quantile, {p, df1, df2});
}

double OrvDistFun::IdfT(double p, double df, double accuracy1, double accuracy2) noexcept {
    return answer(distribution_calls.idf_t, distribution_calls.t_quantile, {p, df, accuracy1, accuracy2});
}

double OrvDistFun::NonCentralCdfF(double x, double df1, double df2, double noncentrality,
                                  double tolerance) noexcept {
    return answer(distribution_calls.noncentral_f, distribution_calls.f_cdf,
                  {x, df1, df2, noncentrality, tolerance});
}

double OrvDistFun::NonCentralCdfT(double x, double df, double noncentrality, double tolerance) noexcept {
    return answer(distribution_calls.noncentral_t, distribution_calls.t_cdf,
                  {x, df, noncentrality, tolerance});
}

}  // namespace OrvMath_940
