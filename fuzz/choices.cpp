#include "fuzz/choices.h"

#include <bit>
#include <set>

#include "orvcommon/mv.h"

namespace fuzz {

namespace {

bool is_any(const std::string& role, const std::set<std::string>& roles) {
    return roles.contains(role);
}

const std::set<std::string> kCodes = {"method", "test", "sides",  "sided",     "exact", "directional",
                                      "esType", "bias", "random", "intercept", "pooled"};
const std::set<std::string> kSizes = {"N", "N1", "N2", "n1", "n2", "n", "Ntotal"};
const std::set<std::string> kEnds = {"nMin", "nMax", "nLow", "nHigh", "nMin1", "nMax1", "nMin2", "nMax2"};
const std::set<std::string> kSteps = {"step", "stepFraction", "diffStep"};
const std::set<std::string> kSpreads = {"sigma", "sd",       "sd1",       "sd2",       "sdMin", "sdMax",
                                        "rMin",  "rMax",     "ratioLow",  "ratioHigh", "ratio", "esHigh",
                                        "esMax", "diffHigh", "halfWidth", "f2",        "psi",   "dfe"};
const std::set<std::string> kCorrelations = {"corr", "rho", "r0", "R2full", "R2red"};
const std::set<std::string> kProportions = {"p1",          "p2",    "p0", "pA", "pB",
                                            "probability", "power", "a",  "r",  "e"};

}  // namespace

double ordinary(const std::string& role, Choices& choices) {
    if (role == "alpha") return choices.one_in(2) ? 0.05 : choices.uniform(0.001, 0.3);
    if (role == "power") return choices.one_in(2) ? 0.8 : choices.uniform(0.05, 0.99);
    if (role == "k") return 2 + static_cast<double>(choices.below(6));
    if (role == "i" || role == "j") return static_cast<double>(choices.below(2));
    if (role == "q") return 1;
    if (role == "p") return 1 + static_cast<double>(choices.below(6));
    if (is_any(role, kCodes)) return static_cast<double>(choices.below(4));
    if (is_any(role, kSizes)) return std::floor(choices.log_uniform(10, 300));
    if (is_any(role, kEnds)) return choices.one_in(4) ? 0 : std::floor(choices.log_uniform(8, 120));
    if (is_any(role, kSteps)) return choices.one_of({0.05, 0.1, 0.2, 0.25, 0.5});
    if (is_any(role, kCorrelations)) return choices.uniform(0.01, 0.95);
    if (is_any(role, kProportions)) return choices.uniform(0.01, 0.99);
    if (is_any(role, kSpreads)) return choices.log_uniform(0.2, 5);
    return choices.uniform(-3, 3);
}

double boundary(const std::string& role, Choices& choices) {
    if (is_any(role, kSteps)) return choices.one_of({0.0, 1.0, 0.5, 0.75, 2.0, -0.1, 0x1p-60});
    return choices.one_of({0.0,   -0.0,      1.0,       -1.0,           0.5,   2.0,    3.0,  1.5,
                           1e-15, 1 - 1e-16, 1 + 1e-15, 1e-300,         100.5, 4096.0, -0.5, 0.999999,
                           1e-6,  400.0,     5000.0,    0.9999999999995});
}

double hostile(const std::string& role, Choices& choices) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    switch (choices.below(4)) {
        case 0:
            return choices.one_of({std::numeric_limits<double>::quiet_NaN(), kInfinity, -kInfinity});
        case 1:
            return choices.one_of({1e308, -1e308, 0x1p53, -0x1p53, 1e18, 2147483647.0, 2147483648.0,
                                   -2147483648.0, 4294967296.0, 0x1p1023});
        case 2:
            return choices.one_of({OrvCommon_940::OrvMV::Missing(), std::numeric_limits<double>::denorm_min(),
                                   std::numeric_limits<double>::min(), 1e9, 6e9, -17.0, 0x1p-1074});
        default: {
            // A step of 1e-5 would be a long but honest computation.
            const double any =
                std::bit_cast<double>(choices.below(1ull << 32) << 32 | choices.below(1ull << 32));
            return is_any(role, kSteps) && std::abs(any) < 0.01 ? 0x1p-60 : any;
        }
    }
}

}  // namespace fuzz
