#include "proportions/failing_binomial.h"

#include <cmath>
#include <utility>

#include "orvcommon/dist_fun.h"
#include "orvcommon/mv.h"

namespace {

std::function<bool(const testing_support::BinomialCall&)> fails_now;

bool fails(const testing_support::BinomialCall& call, long& status) {
    if (!fails_now || !fails_now(call)) return false;
    status = 7;
    return true;
}

double probability(double x, double n, double p) {
    if (x < 0 || x > n) return 0;
    double result = std::pow(p, x) * std::pow(1 - p, n - x);
    for (double k = 1; k <= x; ++k) result *= (n - x + k) / k;
    return result;
}

double cumulative(double x, double n, double p) {
    if (x >= n) return 1;
    double sum = 0;
    for (double k = 0; k <= x; ++k) sum += probability(k, n, p);
    return sum;
}

}  // namespace

namespace testing_support {

FailingCalls::FailingCalls(std::function<bool(const BinomialCall&)> fails) {
    fails_now = std::move(fails);
}

FailingCalls::~FailingCalls() {
    fails_now = nullptr;
}

}  // namespace testing_support

namespace OrvMath_940 {

using OrvCommon_940::OrvMV;
using testing_support::Operation;

double OrvDistFun::CdfBin(double x, double n, double p, long& status) noexcept {
    return fails({Operation::kCdf, x, n, p}, status) ? OrvMV::Missing() : cumulative(x, n, p);
}

double OrvDistFun::IdfBin(double level, double n, double p, long& status) noexcept {
    if (fails({Operation::kIdf, level, n, p}, status)) return OrvMV::Missing();
    double k = -1;
    while (k < n && cumulative(k + 1, n, p) <= level) ++k;
    return k;
}

double OrvDistFun::PdfBin(double x, double n, double p, long& status) noexcept {
    return fails({Operation::kPdf, x, n, p}, status) ? OrvMV::Missing() : probability(x, n, p);
}

}  // namespace OrvMath_940
