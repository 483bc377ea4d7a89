// Every exported function, called with random arguments: writes all answers to a file, or compares them with a file
// that another build has written. An optimisation that claims to change no answer is checked by this.
//
//   recorded_calls write FILE
//   recorded_calls compare FILE    lists the functions whose answers differ; non-zero when any does
//
// The arguments depend on nothing but the order of the calls below: both builds must come from the same list. The
// same program with another library is: LD_LIBRARY_PATH=DIRECTORY recorded_calls ...
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <deque>
#include <fstream>
#include <functional>
#include <iostream>
#include <limits>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "anova/anova.h"
#include "anova/contrast.h"
#include "anova/plot_range.h"
#include "correlation/correlation.h"
#include "means/one.h"
#include "means/paired.h"
#include "means/two.h"
#include "orvcommon/dist_fun.h"
#include "proportions/one/curves.h"
#include "proportions/one/half_width.h"
#include "proportions/one/power.h"
#include "proportions/paired/half_width.h"
#include "proportions/paired/power.h"
#include "proportions/two/fisher.h"
#include "proportions/two/normal.h"
#include "proportions/two/power.h"
#include "proportions/two/unconditional.h"
#include "regression/regression.h"
#include "statpower/statpower.h"

using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;
using OrvMath_940::OrvDistFun;
using namespace POWER_NAMESPACE;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Counts how often it is asked and stops what goes on for too long, or at a random time.
class Cancel : public OrvQueryCancel {
  public:
    void restart(int patience) {
        asked_ = 0;
        patience_ = patience;
    }
    bool IsCancelRequested() override { return ++asked_ > patience_; }
    int asked() const { return asked_; }

  private:
    int asked_ = 0;
    int patience_ = 0;
};

// ---- Arguments -------------------------------------------------------------------------------------------

/// A source of random arguments, and the memory of those that are passed by pointer or reference.
class Source {
  public:
    /// Forgets the arguments of the last call.
    void restart() {
        arrays.clear();
        vectors.clear();
        integers.clear();
        numbers.clear();
        cancel.restart(chance(0.1) ? whole(0, 20) : 1000);
    }

    double between(double from, double to) {
        return from + (to - from) * (static_cast<double>(engine_() >> 11) * 0x1p-53);
    }
    int whole(int smallest, int largest) {
        return smallest + static_cast<int>(engine_() % static_cast<unsigned>(largest - smallest + 1));
    }
    bool chance(double p) { return between(0, 1) < p; }
    double one_of(std::initializer_list<double> values) {
        return values.begin()[static_cast<std::size_t>(whole(0, static_cast<int>(values.size()) - 1))];
    }

    std::vector<double>& array(std::size_t size, const std::function<double(Source&)>& element) {
        auto& values = arrays.emplace_back(size);
        for (double& value : values) value = element(*this);
        return values;
    }

    int k = 2;    // number of groups of this call
    int low = 0;  // lower end of the range of this call
    Cancel cancel;
    std::deque<std::vector<double>> arrays, vectors;
    std::deque<int> integers;
    std::deque<double> numbers;

  private:
    std::mt19937_64 engine_{20};
};

double strange(Source& s) {
    return s.one_of({0, -0.0, 1, -1, 2, 0.5, kNaN, kInfinity, -kInfinity, 1e-300, 1e300, 1e10, -3.5,
                     -3.4028234663852886e38});
}
/// `draw`, and now and then something strange.
template <class Draw>
auto mostly(Draw draw) {
    return [draw](Source& s) { return s.chance(0.02) ? strange(s) : static_cast<double>(draw(s)); };
}

const auto size = mostly([](Source& s) {
    const double n = s.chance(0.1) ? s.between(0, 5) : 1 + std::exp(s.between(0.5, s.chance(0.05) ? 14 : 6));
    return s.chance(0.6) ? std::round(n) : n;
});
const auto effect = mostly([](Source& s) { return s.chance(0.1) ? s.between(-6, 6) : s.between(-1.2, 1.2); });
const auto positive_effect =
    mostly([](Source& s) { return s.chance(0.1) ? s.between(0, 6) : s.between(0, 0.6); });
const auto mean = mostly([](Source& s) { return s.chance(0.3) ? s.whole(-3, 3) : s.between(-3, 3); });
const auto deviation = mostly([](Source& s) { return s.chance(0.4) ? s.whole(1, 3) : s.between(0.2, 4); });
const auto level = mostly([](Source& s) {
    return s.chance(0.5)   ? s.one_of({0.05, 0.01, 0.1, 0.025, 0.001})
           : s.chance(0.2) ? std::exp(s.between(-30, 0))
                           : s.between(0, 1);
});
const auto target = mostly([](Source& s) {
    return s.chance(0.5)   ? s.one_of({0.8, 0.9, 0.95, 0.5, 0.99})
           : s.chance(0.1) ? 1 - std::exp(s.between(-36, 0))
                           : s.between(0, 1);
});
const auto half_width = mostly([](Source& s) { return std::exp(s.between(-4, 1)); });
const auto correlation =
    mostly([](Source& s) { return s.chance(0.2) ? s.whole(-10, 10) / 10.0 : s.between(-1, 1); });
const auto probability =
    mostly([](Source& s) { return s.chance(0.4) ? s.whole(0, 20) / 20.0 : s.between(0, 1); });
const auto ratio =
    mostly([](Source& s) { return s.chance(0.5) ? s.whole(1, 4) : std::exp(s.between(-2, 2)); });
const auto predictors = mostly([](Source& s) { return s.whole(2, 9); });
const auto tested = mostly([](Source& s) { return s.whole(1, 3); });
const auto fit = mostly([](Source& s) { return s.chance(0.3) ? 0 : s.between(0, 0.7); });
const auto degrees =
    mostly([](Source& s) { return s.chance(0.5) ? s.whole(1, 60) : std::exp(s.between(-3, 12)); });
const auto step = mostly([](Source& s) {
    return s.chance(0.7) ? s.one_of({0.05, 0.1, 0.2, 0.25}) : s.between(0.05, 0.6);
});
const auto coarse_step = mostly([](Source& s) {
    return s.chance(0.5) ? s.one_of({0.1, 0.2}) : s.between(0.1, 0.4);
});
/// The lower or upper end of a range that may be left open.
template <class Draw>
auto end_of(Draw draw) {
    return [draw](Source& s) -> double { return s.chance(0.2) ? 0.0 : draw(s); };
}
const auto es_low = end_of([](Source& s) { return s.chance(0.2) ? -5 : s.between(-1, 1); });
const auto es_high = end_of([](Source& s) { return s.between(0, 3); });
const auto ratio_low = end_of([](Source& s) { return s.between(0.1, 1); });
const auto ratio_high = end_of([](Source& s) { return s.between(1, 5); });

/// Sizes that an enumeration takes no time for.
const auto few = [](Source& s) -> double {
    if (s.chance(0.03)) return s.one_of({0, 1, -1, 2, 2.5, kNaN});
    const double n = std::exp(s.between(0.7, 4.5));
    return s.chance(0.7) ? std::round(n) : n;
};
const auto up_to_400 = [](Source& s) -> double {
    if (s.chance(0.03)) return s.one_of({0, 1, -1, 2, 2.5, kNaN});
    const double n = s.between(2, 400);
    return s.chance(0.7) ? std::round(n) : n;
};
/// Targets that a search reaches soon.
const auto distant = [](Source& s) -> double { return s.whole(1, 7) / 20.0; };
const auto near_one = [](Source& s) -> double { return s.whole(12, 19) / 20.0; };

const auto flag = [](Source& s) -> int { return s.whole(0, 1); };
const auto code = [](Source& s) -> int { return s.chance(0.03) ? s.whole(-2, 9) : s.whole(0, 3); };
const auto interval_code = [](Source& s) -> int { return s.whole(0, 7); };
const auto groups = [](Source& s) -> int { return s.k = s.whole(2, 6); };
const auto lower_group = [](Source& s) -> int { return s.whole(1, 2); };
const auto upper_group = [](Source& s) -> int { return s.whole(2, s.k); };
const auto first_size = [](Source& s) -> int {
    return s.low = s.chance(0.1) ? s.whole(-1, 1) : s.whole(2, 60);
};
const auto last_size = [](Source& s) -> int { return s.chance(0.05) ? 0 : s.low + s.whole(-1, 30); };
const auto last_of_few = [](Source& s) -> int { return s.low + s.whole(0, 8); };
const auto first_of_group = [](Source& s) -> int { return s.low = s.whole(2, 12); };
const auto of_total = [](Source& s) -> int { return s.low = 2 * s.k + s.whole(0, 40); };

const auto means_of = [](Source& s) { return s.array(static_cast<std::size_t>(s.k), mean).data(); };
const auto sizes_of = [](Source& s) {
    return s.array(static_cast<std::size_t>(s.k), [](Source& t) -> double { return t.whole(2, 30); }).data();
};
const auto contrast_of = [](Source& s) {
    auto& c = s.array(static_cast<std::size_t>(s.k), [](Source&) -> double { return 0; });
    if (s.chance(0.3)) {
        for (double& value : c) value = s.between(-0.4, 0.4);
    } else {
        c.front() = 1;
        c.back() = -1;
    }
    return c.data();
};
const auto result = [](Source& s) -> std::vector<double>& { return s.vectors.emplace_back(); };
const auto result_pointer = [](Source& s) { return &s.vectors.emplace_back(); };
const auto integer_out = [](Source& s) -> int& { return s.integers.emplace_back(0); };
const auto number_out = [](Source& s) -> double& { return s.numbers.emplace_back(0); };
const auto cancel = [](Source& s) -> OrvQueryCancel* { return &s.cancel; };
const auto no_cancel = [](Source&) -> OrvQueryCancel* { return nullptr; };

/// A design vector of these elements.
template <class... Elements>
auto design(Elements... elements) {
    return [=](Source& s) { return std::vector<double>{static_cast<double>(elements(s))...}; };
}
/// The same, followed by means, proportions or coefficients of the groups.
template <class Head, class... Arrays>
auto with_arrays(Head head, Arrays... arrays) {
    return [=](Source& s) {
        auto values = head(s);
        ([&](const double* array) { values.insert(values.end(), array, array + s.k); }(arrays(s)), ...);
        return values;
    };
}

// ---- Answers ---------------------------------------------------------------------------------------------

/// The answers of one call as a list of numbers.
using Answer = std::vector<double>;

void append(Answer& answer, double value) {
    answer.push_back(std::isnan(value) ? kNaN : value);  // one NaN is as good as another
}
void append(Answer& answer, const std::pair<double, double>& value) {
    append(answer, value.first);
    append(answer, value.second);
}
void append(Answer& answer, const double* values, int count) {
    for (int i = 0; i < count; ++i) append(answer, values[i]);
}
void append(Answer& answer, XYPlot plot) {
    append(answer, plot.count);
    append(answer, plot.x, plot.count);
    append(answer, plot.y, plot.count);
    FreeMemXYPlot(plot);
}
void append(Answer& answer, XYZPlot plot) {
    append(answer, plot.nx);
    append(answer, plot.ny);
    append(answer, plot.x, plot.nx);
    append(answer, plot.y, plot.ny);
    append(answer, plot.z, plot.nx * plot.ny);
    FreeMemXYZPlot(plot);
}

/// What the call wrote into its arguments.
void append_written(Answer& answer, const Source& s) {
    for (const auto* list : {&s.arrays, &s.vectors}) {
        for (const auto& values : *list) {
            append(answer, static_cast<double>(values.size()));
            append(answer, values.data(), static_cast<int>(values.size()));
        }
    }
    for (int value : s.integers) append(answer, value);
    for (double value : s.numbers) append(answer, value);
    append(answer, s.cancel.asked());
}

bool same_bits(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

// ---- The recording ---------------------------------------------------------------------------------------

class Recording {
  public:
    Recording(const std::string& file, bool compares)
        : compares_(compares), file_(file, std::ios::binary | (compares ? std::ios::in : std::ios::out)) {
        if (!file_) throw std::runtime_error("cannot open " + file);
    }

    /// `count` calls of `function` with arguments from `draws`.
    template <class Result, class... Arguments, class... Draws>
    void operator()(int count, const char* name, Result (*function)(Arguments...), Draws... draws) {
        begin(name);
        for (int i = 0; i < count; ++i) {
            source_.restart();
            std::tuple<Arguments...> arguments{draws(source_)...};  // braces: from left to right
            Answer answer;
            if constexpr (std::is_void_v<Result>)
                std::apply(function, arguments);
            else
                append(answer, std::apply(function, arguments));
            append_written(answer, source_);
            add(answer);
        }
        end(name);
    }

    bool all_same() const { return different_ == 0; }

    void report() const {
        std::printf("%ld calls, %ld numbers; ", calls_, numbers_);
        if (compares_)
            std::printf("%ld calls differ\n", different_);
        else
            std::printf("written\n");
    }

  private:
    void begin(const char*) {
        different_here_ = 0;
        largest_ = 0;
        first_.clear();
    }

    void add(const Answer& answer) {
        ++calls_;
        numbers_ += static_cast<long>(answer.size());
        if (!compares_) {
            const auto length = static_cast<std::uint32_t>(answer.size());
            file_.write(reinterpret_cast<const char*>(&length), sizeof length);
            file_.write(reinterpret_cast<const char*>(answer.data()), length * sizeof(double));
            return;
        }
        std::uint32_t length = 0;
        file_.read(reinterpret_cast<char*>(&length), sizeof length);
        Answer recorded(file_ ? length : 0);
        file_.read(reinterpret_cast<char*>(recorded.data()),
                   static_cast<std::streamsize>(recorded.size() * sizeof(double)));
        if (!file_) throw std::runtime_error("the recording ends too early");
        bool same = recorded.size() == answer.size();
        for (std::size_t i = 0; i < answer.size() && i < recorded.size(); ++i) {
            if (same_bits(recorded[i], answer[i])) continue;
            same = false;
            const double scale = std::fabs(recorded[i]);
            largest_ = std::fmax(largest_, std::fabs(answer[i] - recorded[i]) / (scale > 0 ? scale : 1));
            if (first_.empty()) {
                std::array<char, 100> text;
                std::snprintf(text.data(), text.size(), "number %zu of one was %.17g, is %.17g", i,
                              recorded[i], answer[i]);
                first_ = text.data();
            }
        }
        if (!same) ++different_here_;
    }

    void end(const char* name) {
        different_ += different_here_;
        if (different_here_ > 0)
            std::printf("%-44s %6ld differ, largest relative difference %.2g; %s\n", name, different_here_,
                        largest_, first_.empty() ? "lengths differ" : first_.c_str());
    }

    bool compares_;
    std::fstream file_;
    Source source_;
    long calls_ = 0, numbers_ = 0, different_ = 0, different_here_ = 0;
    double largest_ = 0;
    std::string first_;
};

// ---- The calls -------------------------------------------------------------------------------------------

double cdf_bin(double x, double n, double p) {
    long status = 0;
    return OrvDistFun::CdfBin(x, n, p, status) + 2 * static_cast<double>(status);
}
double idf_bin(double probability_, double n, double p) {
    long status = 0;
    return OrvDistFun::IdfBin(probability_, n, p, status) + 2 * static_cast<double>(status);
}
double pdf_bin(double x, double n, double p) {
    long status = 0;
    return OrvDistFun::PdfBin(x, n, p, status) + 2 * static_cast<double>(status);
}
double pdf_neg_bin(double k, double r, double p) {
    long status = 0;
    return OrvDistFun::PdfNegBin(k, r, p, status) + 2 * static_cast<double>(status);
}
double idf_beta(double p, double a, double b) {
    return OrvDistFun::IdfBeta(p, a, b);
}
double log_gamma(double x) {
    return OrvDistFun::vorndnlgam(x);
}

/// A host's objective: the root of N at the third element, and where it was asked.
double hosts_objective(double N, std::vector<double> d, OrvQueryCancel* c) {
    if (c != nullptr) c->IsCancelRequested();
    return std::sqrt(std::fabs(N)) * d[1] - d[0] + (d[2] > 0.5 ? 0.01 * std::sin(20 * N) : 0);
}
double search(std::vector<double> d, OrvQueryCancel* c, double low, double high, double tolerance) {
    return PowerReverse(d, hosts_objective, c, low, high, tolerance);
}
double search_binomial(std::vector<double> d, OrvQueryCancel* c, double low, double high) {
    return PowerReverse_Binom(d, hosts_objective, c, low, high);
}
double search_smallest(double n, std::vector<double> d, OrvQueryCancel* c) {
    OptimizeRtbBionm(&n, std::move(d), hosts_objective, c);
    return n;
}
/// The searches of the library's own objectives, as a host may ask for them.
template <Objective objective>
double search_own(std::vector<double> d, OrvQueryCancel* c, double low, double high, double tolerance) {
    return PowerReverse(d, objective, c, low, high, tolerance);
}

constexpr int kMany = 3000, kSearches = 1200, kCurves = 150, kSurfaces = 40, kSlow = 300;

#define NAMED(function) #function, function
#define OPERATION(function) #function, OrvDistFun::function

void call_operations(Recording& record) {
    const auto quantile_argument =
        mostly([](Source& s) { return s.chance(0.3) ? std::exp(s.between(-60, 0)) : s.between(-9, 9); });
    const auto shape = mostly([](Source& s) { return std::exp(s.between(-3, s.chance(0.1) ? 18 : 6)); });
    const auto trials =
        mostly([](Source& s) { return s.chance(0.7) ? s.whole(0, 400) : std::exp(s.between(0, 15)); });
    const auto count = mostly([](Source& s) { return s.chance(0.9) ? s.whole(0, 200) : s.between(0, 200); });
    const auto noncentrality =
        mostly([](Source& s) { return s.chance(0.8) ? s.between(0, 30) : std::exp(s.between(-9, 12)); });
    const auto signed_noncentrality = mostly([](Source& s) { return s.between(-10, 10); });
    const auto x = mostly([](Source& s) { return s.between(0, 12); });
    const auto accuracy = [](Source&) -> double { return 1e-12; };
    record(kMany, OPERATION(CdfStdNorm), quantile_argument);
    record(kMany, OPERATION(IdfStdNorm), level);
    record(kMany, NAMED(log_gamma), quantile_argument);
    record(kMany, OPERATION(NonCentralCdfF), x, degrees, degrees, noncentrality, accuracy);
    record(kMany, OPERATION(NonCentralCdfT), quantile_argument, degrees, signed_noncentrality, accuracy);
    record(kMany, OPERATION(IdfF), level, degrees, degrees);
    record(kMany, OPERATION(IdfT), level, degrees, accuracy, accuracy);
    record(kMany, NAMED(cdf_bin), count, trials, probability);
    record(4 * kMany, NAMED(idf_bin), level, trials, probability);
    record(kMany, NAMED(pdf_bin), count, trials, probability);
    record(kMany, NAMED(pdf_neg_bin), count, shape, probability);
    record(kMany, OPERATION(CdfBeta), probability, shape, shape);
    record(kMany, NAMED(idf_beta), level, shape, shape);
}

void call_core(Recording& record) {
    const auto any = mostly([](Source& s) { return s.between(-5, 600); });
    const auto slope = mostly([](Source& s) { return s.between(0.05, 2); });
    const auto wanted = mostly([](Source& s) { return s.between(0, 60); });
    const auto low = [](Source& s) -> double { return s.whole(1, 5); };
    const auto high = [](Source& s) -> double {
        return s.chance(0.05) ? s.one_of({0, kNaN, -5}) : s.whole(6, 500);
    };
    const auto tolerance = [](Source& s) -> double { return s.one_of({1e-6, 1e-9}); };
    record(kMany, NAMED(SampleSizeTotal), groups, sizes_of);
    record(kMany, NAMED(_MeanAverage), groups, means_of, sizes_of);
    record(kMany, NAMED(Combination), any, any);
    record(kMany, NAMED(InvTanh), correlation);
    record(kSearches, NAMED(search), design(wanted, slope, probability), cancel, low, high, tolerance);
    record(kSearches, NAMED(search_binomial), design(wanted, slope, probability), cancel, low, high);
    record(kSearches, NAMED(search_smallest), high, design(wanted, slope, probability), cancel);
}

void call_anova(Recording& record) {
    const auto es_kind = flag;
    const auto total = mostly([](Source& s) { return s.between(s.k, 40.0 * s.k); });
    const auto power_design = with_arrays(design(target, groups, deviation, level), means_of, sizes_of);
    const auto contrast_design =
        with_arrays(design(target, groups, deviation, level, flag), means_of, sizes_of, contrast_of);
    record(kMany, NAMED(PowerOverallTest), groups, means_of, sizes_of, deviation, level);
    record(kMany, NAMED(PowerOverallTestwES), groups, es_kind, sizes_of, positive_effect, level);
    record(kMany, NAMED(RMSSEOverallTest), groups, means_of, sizes_of, deviation, level);
    record(kSearches, NAMED(PowerReverseOverallTest), groups, means_of, sizes_of, result_pointer, deviation,
           target, level);
    record(kSearches, NAMED(PowerReverseOverallTestwES), groups, es_kind, sizes_of, result_pointer,
           positive_effect, target, level);
    record(kMany, NAMED(HalfCIOverallTest), groups, total, deviation, level);
    record(kSearches, NAMED(PowerReversebyHalfCIOverallTest), groups, sizes_of, result_pointer, half_width,
           deviation, level);
    record(kMany, NAMED(_PowerOverallTestwithN), groups, means_of, deviation, sizes_of, total, level);
    record(kMany, NAMED(_PowerOverallTestwithES), groups, positive_effect, es_kind, total, level);
    record(kMany, NAMED(OverallTestFunc), total, power_design, no_cancel);
    record(kMany, NAMED(OverallTestwESFunc), total, design(target, groups, positive_effect, es_kind, level),
           no_cancel);
    record(kMany, NAMED(_SampleSizebyHalfCIOverallTestFunc), total,
           design(half_width, groups, deviation, level), no_cancel);
    record(kCurves, NAMED(PlotNOverallTest), groups, means_of, sizes_of, of_total, last_size, deviation,
           level);
    record(kCurves, NAMED(PlotNOverallTestFES), groups, es_kind, sizes_of, of_total, last_size,
           positive_effect, level);
    record(kCurves, NAMED(PlotESOverallTest), groups, es_kind, sizes_of, end_of(positive_effect),
           end_of(positive_effect), level, step);
    record(kCurves, NAMED(PlotSDOverallTest), groups, means_of, sizes_of, deviation, end_of(deviation),
           end_of(deviation), level, step);
    record(kSurfaces, NAMED(PlotNaSDOverallTest), groups, means_of, sizes_of, of_total, last_size, deviation,
           end_of(deviation), end_of(deviation), level, step);
    record(kSurfaces, NAMED(PlotNaESOverallTest), groups, es_kind, sizes_of, of_total, last_size,
           positive_effect, end_of(positive_effect), end_of(positive_effect), level, step);

    record(kMany, NAMED(EffectSizeSC), groups, means_of, contrast_of, deviation);
    record(kMany, NAMED(PowerSC), groups, means_of, sizes_of, contrast_of, flag, deviation, level);
    record(kMany, NAMED(PowerSCwES), groups, sizes_of, contrast_of, flag, effect, level);
    record(kSearches, NAMED(PowerReverseSC), groups, means_of, sizes_of, contrast_of, result_pointer, flag,
           deviation, target, level);
    record(kSearches, NAMED(PowerReverseSCwES), groups, sizes_of, contrast_of, result_pointer, flag, effect,
           target, level);
    record(kMany, NAMED(HalfCISCTest), groups, sizes_of, contrast_of, total, deviation, level);
    record(kSearches, NAMED(PowerReversebyHalfCISCTest), groups, sizes_of, contrast_of, result_pointer,
           half_width, deviation, level);
    record(kMany, NAMED(_PowerSCwithN), groups, means_of, deviation, sizes_of, total, contrast_of, flag,
           level);
    record(kMany, NAMED(_PowerSCwithES), groups, effect, sizes_of, total, contrast_of, flag, level);
    record(kMany, NAMED(SCFunc), total, contrast_design, no_cancel);
    record(kMany, NAMED(SCwESFunc), total,
           with_arrays(design(target, groups, effect, level, flag), sizes_of, contrast_of), no_cancel);
    record(kMany, NAMED(_SampleSizebyHalfCISCTestFunc), total,
           design(half_width, groups, deviation, level, size, positive_effect), no_cancel);
    record(kCurves, NAMED(PlotNSC), groups, means_of, sizes_of, contrast_of, of_total, last_size, flag,
           deviation, level);
    record(kCurves, NAMED(PlotNSCFES), groups, sizes_of, contrast_of, of_total, last_size, flag, effect,
           level);
    record(kCurves, NAMED(PlotSDSC), groups, means_of, sizes_of, contrast_of, flag, deviation,
           end_of(deviation), end_of(deviation), level, step);
    record(kSurfaces, NAMED(PlotNaSDSC), groups, means_of, sizes_of, contrast_of, of_total, last_size, flag,
           deviation, end_of(deviation), end_of(deviation), level, step);

    const auto unused = [](Source&) -> const double* { return nullptr; };
    record(kMany, NAMED(EffectSizePairwiseDiff), groups, means_of, unused, lower_group, upper_group,
           deviation);
    record(kMany, NAMED(PowerPairwiseDiff), groups, means_of, sizes_of, lower_group, upper_group, code,
           deviation, level);
    record(kSearches, NAMED(PowerReversePairwiseDiff), groups, means_of, sizes_of, lower_group, upper_group,
           result, code, deviation, target, level);
    record(kMany, NAMED(HalfCIPairwiseDiff), groups, sizes_of, lower_group, upper_group, code, total,
           deviation, level);
    record(kSearches, NAMED(PowerReversebyHalfCIPairwiseDiff), groups, sizes_of, lower_group, upper_group,
           result, code, half_width, deviation, level);

    record(kMany, NAMED(_MinMaxNR), groups, sizes_of, integer_out, integer_out);
    record(kMany, "_SetPlotRangeN of means",
           static_cast<void (*)(int, double*, double, double*, int&, int&, double)>(_SetPlotRangeN), groups,
           means_of, deviation, sizes_of, integer_out, integer_out, level);
    record(kMany, "_SetPlotRangeN of an effect",
           static_cast<void (*)(int, double, int, double*, int&, int&, double)>(_SetPlotRangeN), groups,
           positive_effect, es_kind, sizes_of, integer_out, integer_out, level);
    record(kMany, "_SetPlotRangeN of a contrast",
           static_cast<void (*)(int, double*, double, double*, int&, int&, double*, int, double)>(
               _SetPlotRangeN),
           groups, means_of, deviation, sizes_of, integer_out, integer_out, contrast_of, flag, level);
    record(kMany, NAMED(_SetPlotRangeSD), groups, means_of, sizes_of, number_out, number_out);
}

void call_means(Recording& record) {
    const auto t_design = design(target, effect, level);
    const auto independent = design(target, ratio, mean, deviation, mean, deviation, level);
    const auto independent_es = design(target, ratio, effect, level);
    record(kMany, NAMED(EffectSizeOneSample), mean, deviation, mean);
    record(kMany, NAMED(PowerOneSampleNondirectionalES), size, effect, level);
    record(kMany, NAMED(PowerOneSampleDirectionalES), size, effect, level);
    record(kMany, NAMED(PowerOneSampleNondirectional), size, mean, deviation, mean, level);
    record(kMany, NAMED(PowerOneSampleDirectional), size, mean, deviation, mean, level);
    record(kMany, NAMED(PowerReverseOneSampleNondirectionalES), target, effect, level);
    record(kMany, NAMED(PowerReverseOneSampleDirectionalES), target, effect, level);
    record(kSearches, NAMED(PowerReverseOneSampleNondirectional), target, mean, deviation, mean, level);
    record(kSearches, NAMED(PowerReverseOneSampleDirectional), target, mean, deviation, mean, level);
    record(kSearches, NAMED(PowerReversebyHalfCIOneSampleMeans), half_width, deviation, level);
    record(kMany, NAMED(HalfCIOneSampleMeans), size, deviation, level);
    record(kMany, NAMED(NondirectionalFunc), size, t_design, no_cancel);
    record(kMany, NAMED(DirectionalFunc), size, t_design, no_cancel);
    record(kMany, NAMED(_SampleSizebyHalfWidthCIOneSampleFunc), size, design(half_width, deviation, level),
           no_cancel);
    record(kMany, "_SetPlotRangeN of one sample",
           static_cast<void (*)(double, double, double, int&, int&, int, double, double)>(_SetPlotRangeN),
           size, mean, deviation, integer_out, integer_out, flag, mean, level);
    record(
        kSearches, NAMED(search_own<NondirectionalFunc>), t_design, cancel,
        [](Source& s) -> double { return s.whole(1, 5); },
        [](Source& s) -> double { return s.whole(6, 500); }, [](Source&) -> double { return 1e-9; });

    record(kMany, NAMED(EffectSizeRelated), mean, deviation, mean, deviation, correlation);
    record(kMany, NAMED(PowerRelatedNondirectionalES), size, effect, level);
    record(kMany, NAMED(PowerRelatedDirectionalES), size, effect, level);
    record(kMany, NAMED(PowerRelatedNondirectional), size, mean, deviation, mean, deviation, correlation,
           level);
    record(kMany, NAMED(PowerRelatedDirectional), size, mean, deviation, mean, deviation, correlation, level);
    record(kSearches, NAMED(PowerReverseRelatedNondirectionalES), target, effect, level);
    record(kSearches, NAMED(PowerReverseRelatedDirectionalES), target, effect, level);
    record(kSearches, NAMED(PowerReverseRelatedNondirectional), target, mean, deviation, mean, deviation,
           correlation, level);
    record(kSearches, NAMED(PowerReverseRelatedDirectional), target, mean, deviation, mean, deviation,
           correlation, level);
    record(kSearches, NAMED(PowerReversebyHalfCIRelatedMeans), half_width, deviation, deviation, correlation,
           level);
    record(kMany, NAMED(HalfCIRelatedMeans), size, deviation, deviation, correlation, level);
    record(kMany, NAMED(RelatedNondirectionalFunc), size, t_design, no_cancel);
    record(kMany, NAMED(RelatedDirectionalFunc), size, t_design, no_cancel);
    record(kMany, NAMED(_SampleSizebyHalfWidthCIRelatedFunc), size,
           design(half_width, deviation, deviation, correlation, level), no_cancel);

    record(kMany, NAMED(EffectSizeIndependent), mean, mean, deviation);
    record(kMany, NAMED(PowerIndependentNondirectional), size, mean, deviation, size, mean, deviation, level);
    record(kMany, NAMED(PowerIndependentDirectional), size, mean, deviation, size, mean, deviation, level);
    record(kMany, NAMED(PowerIndependentNondirectionalES), size, size, effect, level);
    record(kMany, NAMED(PowerIndependentDirectionalES), size, size, effect, level);
    record(kSearches, NAMED(PowerReverseIndependentNondirectional), target, ratio, mean, deviation, mean,
           deviation, level, result);
    record(kSearches, NAMED(PowerReverseIndependentNondirectionalES), target, ratio, effect, level, result);
    record(kSearches, NAMED(PowerReverseIndependentDirectional), target, ratio, mean, deviation, mean,
           deviation, level, result);
    record(kSearches, NAMED(PowerReverseIndependentDirectionalES), target, ratio, effect, level, result);
    record(kSearches, NAMED(PowerReversebyHalfCIIndependentMeans), half_width, ratio, deviation, deviation,
           level, result);
    record(kMany, NAMED(HalfCIIndependentMeans), size, deviation, size, deviation, level);
    record(kMany, NAMED(_PowerIndependentNondirectional), size, ratio, mean, deviation, deviation, level);
    record(kMany, NAMED(_PowerIndependentDirectional), size, ratio, mean, deviation, deviation, level);
    record(kMany, NAMED(PowerIndependentNondirectionalFunc), size, independent, no_cancel);
    record(kMany, NAMED(IndependentDirectionalFunc), size, independent, no_cancel);
    record(kMany, NAMED(IndependentNondirectionalESFunc), size, independent_es, no_cancel);
    record(kMany, NAMED(IndependentDirectionalESFunc), size, independent_es, no_cancel);
    record(kMany, NAMED(_SampleSizebyHalfWidthCIIndependentFunc), size,
           design(half_width, ratio, deviation, deviation, level), no_cancel);

    record(kCurves, NAMED(PlotNOneSample), first_size, last_size, flag, size, mean, deviation, mean, level);
    record(kCurves, NAMED(PlotNOneSampleFES), first_size, last_size, flag, effect, level);
    record(kCurves, NAMED(PlotESOneSample), flag, size, es_low, es_high, level, step);
    record(kSurfaces, NAMED(PlotNaESOneSample), first_size, last_size, flag, es_low, es_high, level, step);
    record(kCurves, NAMED(PlotNRelated), first_size, last_size, flag, size, mean, deviation, mean, deviation,
           correlation, level);
    record(kCurves, NAMED(PlotNRelatedFES), first_size, last_size, flag, effect, level);
    record(kCurves, NAMED(PlotESRelated), flag, size, es_low, es_high, level, step);
    record(kSurfaces, NAMED(PlotNaESRelated), first_size, last_size, flag, es_low, es_high, level, step);
    record(kCurves, NAMED(PlotESIndepended), flag, size, size, es_low, es_high, level, step);
    record(kCurves, NAMED(PlotMeanDiffIndepended), flag, size, mean, deviation, size, mean, deviation, mean,
           mean, level, step);
    record(kCurves, NAMED(PlotRatioIndependent), flag, size, mean, deviation, mean, deviation, ratio_low,
           ratio_high, level, step);
    record(kCurves, NAMED(PlotRatioIndependentFES), flag, size, effect, ratio_low, ratio_high, level, step);
    record(kSurfaces, NAMED(PlotRatioaESIndependent), flag, size, ratio_low, ratio_high, es_low, es_high,
           level, step);
    record(kSurfaces, NAMED(PlotRatioaMeanDiffIndependent), flag, size, mean, deviation, mean, deviation,
           ratio_low, ratio_high, mean, mean, level, step);
}

void call_one_proportion(Recording& record) {
    const auto normal_method = [](Source& s) -> int { return s.whole(1, 4); };
    record(kMany, "PowerOneSampBinom, small", PowerOneSampBinom, few, probability, probability, level, code,
           code, flag, cancel);
    record(kMany, NAMED(PowerOneSampBinom), up_to_400, probability, probability, level, code, code, flag,
           no_cancel);
    record(kSlow, NAMED(PowerReverseOneSampBinom), target, distant, near_one, level, code, code, flag,
           cancel);
    record(kSlow, "PowerReverseOneSampBinom, near", PowerReverseOneSampBinom, target, probability,
           probability, level, code, code, flag, cancel);
    record(kMany, NAMED(HalfCIOneSampBinom), size, probability, level, interval_code, flag);
    record(kSearches, NAMED(PowerReversebyHalfCIOneSampBinom), half_width, probability, level, interval_code,
           flag, cancel);
    record(kMany, NAMED(_ConCorrValue), size, probability, probability);
    record(kMany, NAMED(_POSBNormalAppro), size, probability, probability, code, code, level, flag);
    record(kMany, NAMED(_POSBBinEnum), up_to_400, probability, probability, code, code, level, cancel);
    record(kMany, NAMED(_POSBNormalApproFunc), size,
           design(target, probability, probability, code, code, level, flag), no_cancel);
    record(kMany, NAMED(_POSBBinEnumFunc), few, design(target, probability, probability, code, code, level),
           cancel);
    record(kSearches, NAMED(_POSBReverseNormalAppro), target, probability, probability, normal_method, code,
           level, flag);
    record(kSlow, NAMED(_POSBReverseBinEnum), target, distant, near_one, code, code, level, cancel);
    record(kMany, NAMED(_SampleSizebyHalfCIOneSampBinom), size,
           design(half_width, probability, interval_code, level, flag), no_cancel);
    record(kMany, "_SetPlotRangeN of one proportion",
           static_cast<void (*)(double, double, double, int, int, double, int&, int&, bool)>(_SetPlotRangeN),
           few, probability, probability, code, code, level, integer_out, integer_out, flag);
    record(kCurves, NAMED(PlotNOneSampBinom), code, code, first_size, last_size, flag, few, probability,
           probability, level);
    record(kCurves, NAMED(PlotNullOneSampBinom), code, code, flag, few, probability, level, step);
    record(kCurves, NAMED(PlotAlterOneSampBinom), code, code, flag, few, probability, level, step);
    record(kCurves, NAMED(PlotRiskDiffOneSampBionm), code, code, flag, few, probability, level, step);
    record(kSurfaces, NAMED(PlotNRiskDiffOneSampBinom), code, code, first_size, last_of_few, flag, few,
           probability, probability, level, step);
    record(kSurfaces, NAMED(PlotNNullOneSampBinom), code, code, first_size, last_of_few, flag, few,
           probability, probability, level, step);
    record(kSurfaces, NAMED(PlotNAlterOneSampBinom), code, code, first_size, last_of_few, flag, few,
           probability, probability, level, step);
    record(kSurfaces, NAMED(PlotNullAlterOneSampBinom), code, code, flag, few, level, step);
}

void call_independent_proportions(Recording& record) {
    const auto exact = [](Source&) -> int { return 1; };
    const auto approximate = [](Source& s) -> int { return s.chance(0.05) ? 2 : 0; };
    const auto fisher_count = [](Source& s) -> int { return s.whole(-1, 40); };
    const auto first_count = [](Source& s) -> double { return s.whole(1, 40); };
    const auto end = [](Source& s) -> double { return s.whole(0, 30); };
    const auto odds = [](Source& s) -> double { return std::exp(s.between(-2, 2)); };
    record(kSearches, "PowerIndSampBinom, exact", PowerIndSampBinom, few, few, probability, probability,
           level, exact, code, code, flag, flag, cancel);
    record(kMany, "PowerIndSampBinom, approximate", PowerIndSampBinom, size, size, probability, probability,
           level, approximate, code, code, flag, flag, cancel);
    record(kSlow, "PowerReverseIndSampBinom, exact", PowerReverseIndSampBinom, target, distant, near_one,
           ratio, level, result, exact, code, code, flag, flag, cancel);
    record(kSearches, "PowerReverseIndSampBinom, approximate", PowerReverseIndSampBinom, target, probability,
           probability, ratio, level, result, approximate, code, code, flag, flag, cancel);
    record(kMany, NAMED(HalfCIIndSampBinom), size, size, probability, probability, level, interval_code,
           flag);
    record(kSearches, NAMED(PowerReversebyHalfCIIndSampBinom), half_width, probability, probability, ratio,
           level, result, interval_code, flag, cancel);
    record(kMany, NAMED(IndSampBinomFunc), few,
           design(target, probability, probability, ratio, level, flag, code, code, flag, flag), cancel);
    record(kMany, NAMED(_SampleSizebyHalfCIIndSampBinom), size,
           design(half_width, probability, probability, ratio, interval_code, level, flag), no_cancel);
    record(kSearches, NAMED(_CondDisProb), first_count, first_count, end, end, odds, end, end, cancel);
    record(kSearches, NAMED(_ProbTotalSucc), first_count, first_count, probability, probability, fisher_count,
           end, end, cancel);
    record(kSearches, NAMED(_quantileDescending), first_count, first_count, fisher_count, end, end, odds,
           probability, cancel);
    record(kSearches, NAMED(_quantileAscending), first_count, first_count, fisher_count, end, end, odds,
           probability, cancel);
    record(kSlow, NAMED(_PowerIndSamBinBinEnumFisher), up_to_400, few, probability, probability, code, level,
           cancel);
    record(kSlow, "_PowerIndSamBinBinEnumFisher, without a cancel object", _PowerIndSamBinBinEnumFisher,
           up_to_400, up_to_400, probability, probability, code, level, no_cancel);
    record(kMany, NAMED(_PowerIndSamBinNormalApproxChisq), size, size, probability, probability, code, level,
           flag, flag);
    record(kMany, NAMED(_PowerIndSamBinNormalApproxT), size, size, probability, probability, code, level,
           flag);
    record(kMany, NAMED(_PowerIndSamBinNormalApproxLRT), size, size, probability, probability, code, level);
    record(kMany, NAMED(_PowerIndSamBinNormalApproxFisher), size, size, probability, probability, code,
           level);
    record(kMany, NAMED(_BinEnumChisqTestStatsZ), first_count, first_count, probability, probability,
           fisher_count, fisher_count, code, flag);
    record(kMany, NAMED(_BinEnumTTestStatsT), first_count, first_count, probability, probability,
           fisher_count, fisher_count, code, flag);
    record(kMany, NAMED(_logLRT), size);
    record(kMany, NAMED(_BinEnumLRTTestStatsL), first_count, first_count, end, end);
    record(kSlow, NAMED(_PowerIndSamBinBinEnumChisq), few, few, probability, probability, code, level, flag,
           cancel);
    record(kSlow, NAMED(_PowerIndSamBinBinEnumT), few, few, probability, probability, code, level, flag,
           cancel);
    record(kSlow, NAMED(_PowerIndSamBinBinEnumLRT), few, few, probability, probability, code, level, cancel);
    record(kCurves, NAMED(PlotPropIndSampBinom), approximate, code, code, flag, flag, few, few, probability,
           probability, level, coarse_step);
    record(kCurves, NAMED(PlotRiskDiffIndSampBinom), flag, code, code, flag, flag, few, few, probability,
           level, step);
    record(kCurves, NAMED(PlotRiskRatioIndSampBinom), flag, code, code, flag, flag, few, few, probability,
           level, end_of(odds), end_of(odds), step);
    record(kCurves, NAMED(PlotOddsRatioIndSampBinom), flag, code, code, flag, flag, few, few, probability,
           level, end_of(odds), end_of(odds), step);
    record(kCurves, NAMED(PlotNRatioIndSampBinom), flag, code, code, flag, flag, few, probability,
           probability, level, end_of(odds), end_of(odds), step);
    record(kSurfaces, NAMED(PlotNIndSampBinom), flag, code, code, flag, flag, first_of_group, last_of_few,
           first_of_group, last_of_few, few, few, probability, probability, level);
}

void call_paired_proportions(Recording& record) {
    const auto cell = [](Source& s) -> double { return s.chance(0.03) ? strange(s) : s.between(0, 0.5); };
    const auto count = [](Source& s) -> double { return s.chance(0.03) ? strange(s) : s.whole(0, 40); };
    const auto coarse = coarse_step;
    record(kMany, NAMED(PowerbyPRelSampBionm), flag, flag, cancel, up_to_400, cell, cell, level);
    record(kMany, NAMED(PowerbyCRelSampBionm), flag, flag, few, count, count, level);
    record(kMany, NAMED(PowerbyMargPRelSampBionm), flag, flag, few, probability, probability, correlation,
           level);
    record(kMany, NAMED(PowerbyMargCRelSampBionm), flag, flag, few, count, count, correlation, level);
    record(kSlow, NAMED(PowerReversebyPRelSampBionm), flag, flag, cancel, target, cell, cell, level);
    record(kSlow, NAMED(PowerReversebyMargPRelSampBionm), flag, flag, cancel, target, distant, near_one,
           correlation, level);
    record(kMany, NAMED(HalfCIRelSampBinom), code, flag, size, cell, cell, level);
    record(kSearches, NAMED(PowerReversebyHalfCIRelSampBinom), code, flag, cancel, half_width, cell, cell,
           level);
    record(kMany, NAMED(PRelSampBionmFunc), few, design(target, cell, cell, flag, flag, level), cancel);
    record(kMany, NAMED(_SampleSizebyHalfCIRelSampBinom), size,
           design(half_width, cell, cell, code, level, flag), no_cancel);
    record(kCurves, NAMED(PlotNRelSampBionm), first_size, last_size, flag, flag, few, cell, cell, level);
    record(kCurves, NAMED(PlotRiskDiffRelSampBionm), flag, flag, few, cell, level, step);
    record(kCurves, NAMED(PlotRiskRatioRelSampBionm), flag, flag, few, cell, cell, ratio_low, ratio_high,
           level, step);
    record(kCurves, NAMED(PlotOddsRatioRelSampBionm), flag, flag, few, cell, ratio_low, ratio_high, level,
           step);
    record(kCurves, NAMED(PlotCorrRelSampBionm), flag, flag, few, probability, probability, level, step);
    record(kSurfaces, NAMED(PlotPropRelSampBionm), flag, flag, few, level, coarse);
    record(kSurfaces, NAMED(PlotMargPropRelSampBionm), flag, flag, few, correlation, level, coarse);
}

void call_correlation(Recording& record) {
    const auto held = [](Source& s) -> double { return s.whole(0, 4); };
    record(kMany, NAMED(PowerbyOneSampPearson), code, flag, size, correlation, correlation, level);
    record(kMany, NAMED(PowerbyOneSampSpearman), code, code, size, correlation, correlation, level);
    record(kMany, NAMED(PowerbyOneSampPartial), code, size, held, correlation, correlation, level);
    record(kSearches, NAMED(PowerReversebyOneSampPearson), code, flag, cancel, target, correlation,
           correlation, level);
    record(kSearches, NAMED(PowerReversebyOneSampSpearman), code, code, target, correlation, correlation,
           level);
    record(kSearches, NAMED(PowerReversebyOneSampPartial), code, target, held, correlation, correlation,
           level);
    record(kMany, NAMED(HalfCIOneSampPearson), flag, size, correlation, level);
    record(kMany, NAMED(HalfCIOneSampSpearman), code, size, correlation, level);
    record(kMany, NAMED(HalfCIOneSampPartial), size, held, correlation, level);
    record(kSearches, NAMED(PowerReversebyHalfCIOneSampPearson), flag, cancel, half_width, correlation,
           level);
    record(kSearches, NAMED(PowerReversebyHalfCIOneSampSpearman), code, cancel, half_width, correlation,
           level);
    record(kSearches, NAMED(PowerReversebyHalfCIOneSampPartial), cancel, half_width, held, correlation,
           level);
    record(kMany, NAMED(PowerbyOneSampPearsonFunc), size,
           design(target, correlation, correlation, code, flag, level), no_cancel);
    record(kMany, NAMED(PowerbyOneSampSpearmanFunc), size,
           design(target, correlation, correlation, code, code, level), no_cancel);
    record(kMany, NAMED(PowerbyOneSampPartialFunc), size,
           design(target, held, correlation, correlation, code, level), no_cancel);
    record(kMany, NAMED(_SampleSizebyHalfCIOneSampPearson), size,
           design(half_width, correlation, flag, level), no_cancel);
    record(kMany, NAMED(_SampleSizebyHalfCIOneSampSpearman), size,
           design(half_width, correlation, code, level), no_cancel);
    record(kMany, NAMED(_SampleSizebyHalfCIOneSampPartial), size,
           design(half_width, held, correlation, level), no_cancel);
    record(kMany, "_SetPlotRangeN of a partial correlation",
           static_cast<void (*)(double, double, double, double, int, double, int&, int&)>(_SetPlotRangeN),
           size, held, correlation, correlation, code, level, integer_out, integer_out);
    record(kMany, "_SetPlotRangeN of a correlation",
           static_cast<void (*)(double, double, double, int, int, double, int&, int&)>(_SetPlotRangeN), size,
           correlation, correlation, code, code, level, integer_out, integer_out);

    record(kCurves, NAMED(PlotNOneSampPearson), code, flag, first_size, last_size, size, correlation,
           correlation, level);
    record(kCurves, NAMED(PlotNullOneSampPearson), code, flag, size, correlation, level, step);
    record(kCurves, NAMED(PlotAlterOneSampPearson), code, flag, size, correlation, level, step);
    record(kCurves, NAMED(PlotRiskDiffOneSampPearson), code, flag, size, correlation, level, step);
    record(kSurfaces, NAMED(PlotNRiskDiffOneSampPearson), code, flag, first_size, last_size, size,
           correlation, correlation, level, step);
    record(kSurfaces, NAMED(PlotNNullOneSampPearson), code, flag, first_size, last_size, size, correlation,
           correlation, level, step);
    record(kSurfaces, NAMED(PlotNAlterOneSampPearson), code, flag, first_size, last_size, size, correlation,
           correlation, level, step);
    record(kSurfaces, NAMED(PlotNullAlterOneSampPearson), code, flag, size, level, step);
    record(kCurves, NAMED(PlotNOneSampSpearman), code, code, first_size, last_size, size, correlation,
           correlation, level);
    record(kCurves, NAMED(PlotNullOneSampSpearman), code, code, size, correlation, level, step);
    record(kCurves, NAMED(PlotAlterOneSampSpearman), code, code, size, correlation, level, step);
    record(kCurves, NAMED(PlotRiskDiffOneSampSpearman), code, code, size, correlation, level, step);
    record(kSurfaces, NAMED(PlotNRiskDiffOneSampSpearman), code, code, first_size, last_size, size,
           correlation, correlation, level, step);
    record(kSurfaces, NAMED(PlotNNullOneSampSpearman), code, code, first_size, last_size, size, correlation,
           correlation, level, step);
    record(kSurfaces, NAMED(PlotNAlterOneSampSpearman), code, code, first_size, last_size, size, correlation,
           correlation, level, step);
    record(kSurfaces, NAMED(PlotNullAlterOneSampSpearman), code, code, size, level, step);
    record(kCurves, NAMED(PlotNOneSampPartial), code, first_size, last_size, size, held, correlation,
           correlation, level);
    record(kCurves, NAMED(PlotNPartialoutOneSampPartial), code, few, correlation, correlation, level);
    record(kCurves, NAMED(PlotNullOneSampPartial), code, size, held, correlation, level, step);
    record(kCurves, NAMED(PlotAlterOneSampPartial), code, size, held, correlation, level, step);
    record(kCurves, NAMED(PlotRiskDiffOneSampPartial), code, size, held, correlation, level, step);
    record(kSurfaces, NAMED(PlotNRiskDiffOneSampPartial), code, first_size, last_size, size, held,
           correlation, correlation, level, step);
    record(kSurfaces, NAMED(PlotNNullOneSampPartial), code, first_size, last_size, size, held, correlation,
           correlation, level, step);
    record(kSurfaces, NAMED(PlotNAlterOneSampPartial), code, first_size, last_size, size, held, correlation,
           correlation, level, step);
    record(kSurfaces, NAMED(PlotNullAlterOneSampPartial), code, size, held, level, step);
}

void call_regression(Recording& record) {
    const auto random_design = design(target, predictors, tested, fit, fit, flag, flag, level);
    const auto effect_design = design(target, predictors, tested, positive_effect, flag, flag, level);
    const auto terms = [](Source& s) -> double { return s.between(0, 40); };
    const auto first = [](Source& s) -> int { return s.low = s.whole(8, 40); };
    record(kMany, NAMED(Powerbymlr), flag, flag, size, predictors, tested, fit, fit, level);
    record(kMany, NAMED(PowerbymlrwES), flag, flag, size, predictors, tested, positive_effect, level);
    record(kSearches, NAMED(PowerReversebymlr), flag, flag, target, predictors, tested, fit, fit, level);
    record(kSearches, NAMED(PowerReversebymlrwES), flag, flag, target, predictors, tested, positive_effect,
           level);
    record(kMany, NAMED(_EstCseriesRoutine), probability, probability, predictors, degrees, degrees,
           probability);
    record(kMany, NAMED(_LogCk), terms, probability, predictors, degrees, degrees, probability);
    record(kMany, NAMED(_Logt), size, terms);
    record(kMany, NAMED(PowerbymlrFunc), size, random_design, no_cancel);
    record(kMany, NAMED(PowerbymlrwESFunc), size, effect_design, no_cancel);
    record(kMany, "_SetPlotRangeN of a regression",
           static_cast<void (*)(double, bool, int&, int&)>(_SetPlotRangeN), predictors, flag, integer_out,
           integer_out);
    record(kMany, "_SetRandomPlotRangeN of a fit",
           static_cast<void (*)(double, double, double, double, double, int, bool, double, int&, int&)>(
               _SetRandomPlotRangeN),
           size, predictors, tested, fit, fit, flag, flag, level, integer_out, integer_out);
    record(kMany, "_SetRandomPlotRangeN of an effect",
           static_cast<void (*)(double, double, double, double, int, bool, double, int&, int&)>(
               _SetRandomPlotRangeN),
           size, predictors, tested, positive_effect, flag, flag, level, integer_out, integer_out);
    record(kCurves, NAMED(PlotNmlr), flag, flag, first, last_size, predictors, tested, fit, fit, level);
    record(kCurves, NAMED(PlotNmlrFES), flag, flag, first, last_size, predictors, tested, positive_effect,
           level);
    record(kCurves, NAMED(PlotCorrmlr), flag, flag, size, predictors, tested, level, step);
    record(kCurves, NAMED(PlotESmlr), flag, flag, size, predictors, tested, level, step);
    record(kSurfaces, NAMED(PlotNaCorrmlr), flag, flag, first, last_of_few, size, predictors, tested, fit,
           fit, level, step);
    record(kSurfaces, NAMED(PlotNaESmlr), flag, flag, first, last_of_few, size, predictors, tested,
           positive_effect, level, step);
}

}  // namespace

int main(int argc, char** argv) {
    const std::string command = argc == 3 ? argv[1] : "";
    if (command != "write" && command != "compare") {
        std::cerr << "usage: recorded_calls write|compare FILE\n";
        return 2;
    }
    try {
        Recording record(argv[2], command == "compare");
        call_operations(record);
        call_core(record);
        call_anova(record);
        call_means(record);
        call_one_proportion(record);
        call_independent_proportions(record);
        call_paired_proportions(record);
        call_correlation(record);
        call_regression(record);
        record.report();
        return record.all_same() ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "recorded_calls: " << error.what() << '\n';
        return 2;
    }
}
