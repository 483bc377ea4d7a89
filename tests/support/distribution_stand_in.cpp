#include "support/distribution_stand_in.h"

#include <dlfcn.h>

#include <utility>

#include "orvcommon/dist_fun.h"

namespace testing_support {

thread_local DistributionCalls distribution_calls;

namespace {

thread_local std::function<bool(const BinomialCall&)> fails_now;
thread_local double value_of_failures;
thread_local double quantile_shift = 0;

/// The common library's operation of the same name as `own`.
template <class Operation>
Operation real(Operation own) {
    Dl_info info;
    dladdr(reinterpret_cast<void*>(own), &info);
    return reinterpret_cast<Operation>(dlsym(RTLD_NEXT, info.dli_sname));
}

using Answer = std::function<double(const Arguments&)>;

template <class Operation, class... Numbers>
double answer(std::vector<Arguments>& calls, const Answer& value, Operation next, Numbers... arguments) {
    calls.push_back({arguments...});
    return value ? value(calls.back()) : next(arguments...);
}

template <class Real>
double binomial(Operation operation, Real next, double argument, double n, double p, long& status) {
    if (!fails_now || !fails_now({operation, argument, n, p}))
        return next(argument, n, p, status) + (operation == Operation::kIdf ? quantile_shift : 0);
    status = 7;
    return value_of_failures;
}

}  // namespace

FailingCalls::FailingCalls(std::function<bool(const BinomialCall&)> fails, double value) {
    fails_now = std::move(fails);
    value_of_failures = value;
}

FailingCalls::~FailingCalls() {
    fails_now = nullptr;
}

ShiftedQuantiles::ShiftedQuantiles(double counts) {
    quantile_shift = counts;
}

ShiftedQuantiles::~ShiftedQuantiles() {
    quantile_shift = 0;
}

}  // namespace testing_support

namespace OrvMath_940 {

using testing_support::answer;
using testing_support::binomial;
using testing_support::distribution_calls;
using testing_support::Operation;
using testing_support::real;

double OrvDistFun::IdfStdNorm(double p) noexcept {
    static const auto next = real(&OrvDistFun::IdfStdNorm);
    return answer(distribution_calls.idf_std_norm, nullptr, next, p);
}

double OrvDistFun::IdfF(double p, double df1, double df2) noexcept {
    static const auto next = real(&OrvDistFun::IdfF);
    return answer(distribution_calls.idf_f, distribution_calls.f_quantile, next, p, df1, df2);
}

double OrvDistFun::IdfT(double p, double df, double accuracy1, double accuracy2) noexcept {
    static const auto next = real(&OrvDistFun::IdfT);
    return answer(distribution_calls.idf_t, distribution_calls.t_quantile, next, p, df, accuracy1, accuracy2);
}

double OrvDistFun::NonCentralCdfF(double x, double df1, double df2, double noncentrality,
                                  double tolerance) noexcept {
    static const auto next = real(&OrvDistFun::NonCentralCdfF);
    return answer(distribution_calls.noncentral_f, distribution_calls.f_cdf, next, x, df1, df2, noncentrality,
                  tolerance);
}

double OrvDistFun::NonCentralCdfT(double x, double df, double noncentrality, double tolerance) noexcept {
    static const auto next = real(&OrvDistFun::NonCentralCdfT);
    return answer(distribution_calls.noncentral_t, distribution_calls.t_cdf, next, x, df, noncentrality,
                  tolerance);
}

double OrvDistFun::CdfBin(double x, double n, double p, long& status) noexcept {
    static const auto next = real(&OrvDistFun::CdfBin);
    return binomial(Operation::kCdf, next, x, n, p, status);
}

double OrvDistFun::IdfBin(double probability, double n, double p, long& status) noexcept {
    static const auto next = real(&OrvDistFun::IdfBin);
    return binomial(Operation::kIdf, next, probability, n, p, status);
}

double OrvDistFun::PdfBin(double x, double n, double p, long& status) noexcept {
    static const auto next = real(&OrvDistFun::PdfBin);
    return binomial(Operation::kPdf, next, x, n, p, status);
}

}  // namespace OrvMath_940
