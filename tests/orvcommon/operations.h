// The operations by name, for tests that are driven by tables.
#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "orvcommon/dist_fun.h"

namespace testing_support {

struct Operation {
    std::string name;
    std::size_t arguments;  // without tolerances and status
    double (*call)(std::span<const double> a);
};

inline const std::vector<Operation>& operations() {
    using D = OrvMath_940::OrvDistFun;
    using Arguments = std::span<const double>;
    static const std::vector<Operation> all = {
        {"CdfStdNorm", 1, [](Arguments a) { return D::CdfStdNorm(a[0]); }},
        {"IdfStdNorm", 1, [](Arguments a) { return D::IdfStdNorm(a[0]); }},
        {"vorndnlgam", 1, [](Arguments a) { return D::vorndnlgam(a[0]); }},
        {"NonCentralCdfF", 4, [](Arguments a) { return D::NonCentralCdfF(a[0], a[1], a[2], a[3], 1e-12); }},
        {"NonCentralCdfT", 3, [](Arguments a) { return D::NonCentralCdfT(a[0], a[1], a[2], 1e-12); }},
        {"IdfF", 3, [](Arguments a) { return D::IdfF(a[0], a[1], a[2]); }},
        {"IdfT", 2, [](Arguments a) { return D::IdfT(a[0], a[1], 1e-40, 1e-30); }},
        {"CdfBin", 3,
         [](Arguments a) {
             long status = 0;
             return D::CdfBin(a[0], a[1], a[2], status);
         }},
        {"IdfBin", 3,
         [](Arguments a) {
             long status = 0;
             return D::IdfBin(a[0], a[1], a[2], status);
         }},
        {"PdfBin", 3,
         [](Arguments a) {
             long status = 0;
             return D::PdfBin(a[0], a[1], a[2], status);
         }},
        {"CdfBeta", 3, [](Arguments a) { return D::CdfBeta(a[0], a[1], a[2]); }},
        {"IdfBeta", 3, [](Arguments a) { return D::IdfBeta(a[0], a[1], a[2]); }},
        {"PdfNegBin", 3,
         [](Arguments a) {
             long status = 0;
             return D::PdfNegBin(a[0], a[1], a[2], status);
         }},
    };
    return all;
}

inline const Operation& operation(const std::string& name) {
    for (const Operation& candidate : operations())
        if (candidate.name == name) return candidate;
    throw std::runtime_error("no operation " + name);
}

}  // namespace testing_support
