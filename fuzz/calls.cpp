#include "fuzz/calls.h"

#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <bit>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <tuple>
#include <type_traits>
#include <utility>

#include "fuzz/functions.inc"
#include "fuzz/planted.h"
#include "fuzz/watch.h"
#include "orvcommon/mv.h"
#include "orvcommon/query_cancel.h"
#include "support/allocations.h"

namespace fuzz {

namespace {

using OrvCommon_940::OrvMV;
using OrvCommon_940::OrvQueryCancel;

// ---- Arguments ---------------------------------------------------------------------------------------------------------

/// Numbers that end where memory ends: reading or writing beyond is a crash; what lies before must not change.
class GuardedArray {
  public:
    explicit GuardedArray(std::size_t count) : count_(count) {
        const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        bytes_ = (count * sizeof(double) / page + 2) * page;
        base_ = static_cast<char*>(
            mmap(nullptr, bytes_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
        if (base_ == MAP_FAILED) throw std::bad_alloc();
        mprotect(base_ + bytes_ - page, page, PROT_NONE);
        data_ = reinterpret_cast<double*>(base_ + bytes_ - page) - count;
        std::memset(base_, 0x5a, before());
    }
    ~GuardedArray() { munmap(base_, bytes_); }
    GuardedArray(const GuardedArray&) = delete;
    GuardedArray& operator=(const GuardedArray&) = delete;

    double* data() const { return data_; }
    std::size_t size() const { return count_; }
    bool is_intact() const {
        for (std::size_t i = 0; i < before(); ++i)
            if (base_[i] != 0x5a) return false;
        return true;
    }

  private:
    std::size_t before() const { return static_cast<std::size_t>(reinterpret_cast<char*>(data_) - base_); }

    std::size_t count_;
    std::size_t bytes_;
    char* base_;
    double* data_;
};

/// The numbers behind the arguments of one call, drawn or read back, and written down.
class Drawing {
  public:
    Drawing(std::string name, Manner manner, Choices& choices)
        : name_(std::move(name)), manner_(manner), choices_(&choices) {}
    Drawing(std::string name, std::istream& recorded)
        : name_(std::move(name)), manner_(Manner::kMixed), recorded_(&recorded) {
        std::string manner;
        recorded >> manner;
        if (manner == "ordinary") manner_ = Manner::kOrdinary;
    }

    const std::string& name() const { return name_; }
    bool is_ordinary() const { return manner_ == Manner::kOrdinary; }
    bool is_drawn() const { return recorded_ == nullptr; }
    int k = 3;           // length of arrays, once it is drawn
    double alpha = 0.5;  // significance level, likewise
    bool are_finite = true;

    double number(const std::string& role) {
        const double value = recorded_ != nullptr ? read() : draw(meaning(role));
        are_finite = are_finite && std::isfinite(value);
        if (role == "alpha") alpha = value;
        write(value);
        return value;
    }
    Choices& choices() { return *choices_; }
    double read() {
        std::string word;
        if (!(*recorded_ >> word)) throw std::runtime_error("a recorded call of " + name_ + " is too short");
        return std::stod(word);
    }
    void write(double value) {
        std::array<char, 40> text;
        std::snprintf(text.data(), text.size(), " %.17g", value);
        text_ += text.data();
    }
    std::string text() const { return name_ + (is_ordinary() ? " ordinary" : " mixed") + text_; }

  private:
    /// The role by the name of an argument, which is not always the same: p are predictors in a regression, a proportion or
    /// a probability elsewhere.
    std::string meaning(const std::string& role) const {
        const bool is_regression =
            name_.find("mlr") != std::string::npos || name_.find("PlotRange") != std::string::npos;
        const bool is_series = name_ == "_EstCseriesRoutine" || name_ == "_LogCk";
        return (role == "p" && !is_regression) || (role[0] == 'x' && is_series) ? "p1" : role;
    }

    double draw(const std::string& role) {
        double value = ordinary(role, *choices_);
        if (manner_ == Manner::kMixed) switch (choices_->below(6)) {
                case 0:
                    value = boundary(role, *choices_);
                    break;
                case 1:
                    value = hostile(role, *choices_);
                    break;
                default:
                    break;
            }
        return affordable(role, value);
    }

    /// Without a cancel object some honest computations take their time: curves of exact tests and curves over all sizes
    /// up to N. They are asked for sizes that are moderate, or far beyond any computation.
    double affordable(const std::string& role, double value) const {
        const bool is_size =
            role == "N" || role == "n1" || role == "n2" || role == "Ntotal" || role[0] == 'n';
        const bool is_curve = name_.starts_with("Plot") || name_.starts_with("_SetPlotRange");
        if (is_curve && is_size && value > 300 && value < 1e10) return std::fmod(value, 300);
        return value;
    }

    std::string name_;
    Manner manner_;
    Choices* choices_ = nullptr;
    std::istream* recorded_ = nullptr;
    std::string text_;
};

int to_int(double value) {
    if (!(value > -2147483648.0)) return std::isnan(value) ? 0 : std::numeric_limits<int>::min();
    return value < 2147483647.0 ? static_cast<int>(value) : std::numeric_limits<int>::max();
}

/// One argument of type T: drawn, passed by get(), checked afterwards.
template <class T>
struct Argument;

template <>
struct Argument<double> {
    Argument(const std::string& role, Drawing& d) : value(d.number(role)) {}
    double get() { return value; }
    double value;
};
template <>
struct Argument<const double&> : Argument<double> {
    using Argument<double>::Argument;
    const double& get() { return value; }
};
template <>
struct Argument<double&> : Argument<double> {
    using Argument<double>::Argument;
    double& get() { return value; }
};
template <>
struct Argument<int> {
    Argument(const std::string& role, Drawing& d) {
        value = to_int(d.number(role));
        // Arrays have k elements: a k beyond them is the caller's own overrun.
        if (role == "k") d.k = value = std::min(value, 40);
        if (role == "i" || role == "j") value = std::min(value, std::max(d.k, 0) - 1);
    }
    int get() { return value; }
    int value;
};
template <>
struct Argument<int&> : Argument<int> {
    using Argument<int>::Argument;
    int& get() { return value; }
};
template <>
struct Argument<bool> {
    Argument(const std::string& role, Drawing& d) : value(d.number(role) >= 1) {}
    bool get() { return value; }
    bool value;
};
template <>
struct Argument<long&> {
    Argument(const std::string&, Drawing&) {}
    long& get() { return value; }
    long value = 0;
};
template <>
struct Argument<double*> {
    Argument(const std::string& role, Drawing& d) {
        const bool single = role == "n";
        array = std::make_unique<GuardedArray>(single ? 1 : static_cast<std::size_t>(std::max(d.k, 0)));
        double sum = 0;
        for (std::size_t i = 0; i < array->size(); ++i) {
            double& value = array->data()[i];
            value = d.number(role == "sizes" || role == "weights" ? "N" : role);
            // A contrast sums to zero.
            if (role == "coefficients" && d.is_drawn() && d.is_ordinary())
                value = i + 1 == array->size() ? -sum : value / 10;
            sum += value;
        }
    }
    double* get() { return array->data(); }
    std::unique_ptr<GuardedArray> array;
};
template <>
struct Argument<const double*> : Argument<double*> {
    using Argument<double*>::Argument;
};
template <>
struct Argument<std::vector<double>> {
    Argument(const std::string& role, Drawing& d) {
        if (role == "result" || role == "sizes" || role == "groupSizes") {
            if (d.is_ordinary() || d.number("count") > 0) return;
            value = {1};
            return;
        }
        // A design vector; not checked for its length, so it has room for every family's.
        const double count = 4 * d.k + 12;
        static const char* const roles[] = {"power", "k", "sigma",  "alpha", "p1",
                                            "p2",    "r", "method", "test",  "sides"};
        for (double i = 0; i < std::min(count, 60.0); ++i)
            value.push_back(d.number(roles[static_cast<int>(i) % 10]));
        if (value.size() > 1 && std::abs(value[1]) > 4) value[1] = 4;
    }
    std::vector<double> get() { return value; }
    std::vector<double> value;
};
template <>
struct Argument<const std::vector<double>&> : Argument<std::vector<double>> {
    using Argument<std::vector<double>>::Argument;
    const std::vector<double>& get() { return value; }
};
template <>
struct Argument<std::vector<double>&> : Argument<std::vector<double>> {
    using Argument<std::vector<double>>::Argument;
    std::vector<double>& get() { return value; }
};
template <>
struct Argument<std::vector<double>*> : Argument<std::vector<double>> {
    using Argument<std::vector<double>>::Argument;
    std::vector<double>* get() { return &value; }
};
double shifted_root(double N, std::vector<double> design, OrvQueryCancel*) {
    return 1 - (design.empty() ? 20 : 20 + std::abs(design[0])) / N;
}
template <>
struct Argument<POWER_NAMESPACE::Objective> {
    Argument(const std::string&, Drawing&) {}
    POWER_NAMESPACE::Objective get() { return shifted_root; }
};
template <>
struct Argument<OrvQueryCancel*> {
    /// Two numbers: the query and the millisecond from which on it says stop.
    Argument(const std::string&, Drawing& d) {
        if (d.is_drawn()) {
            const double query =
                d.choices().one_in(4) ? static_cast<double>(1 + d.choices().below(50)) : 1e300;
            const double after = d.choices().one_in(3) ? 0 : d.choices().uniform(0, 20);
            d.write(query);
            d.write(after);
            cancel.emplace(query, after);
        } else {
            const double query = d.read();
            const double after = d.read();
            d.write(query);
            d.write(after);
            cancel.emplace(query, after);
        }
    }
    OrvQueryCancel* get() { return &*cancel; }
    std::optional<WatchedCancel> cancel;
};
template <>
struct Argument<XYPlot> {
    Argument(const std::string&, Drawing&) {}
    XYPlot get() { return {2, new double[2]{1, 2}, new double[2]{3, 4}}; }
};
template <>
struct Argument<XYZPlot> {
    Argument(const std::string&, Drawing&) {}
    XYZPlot get() { return {1, 1, new double[1]{1}, new double[1]{2}, new double[1]{3}}; }
};

// ---- Answers -----------------------------------------------------------------------------------------------------------

class Digest {
  public:
    void add(double value) {
        hash_ = (hash_ ^ std::bit_cast<std::uint64_t>(value)) * 0x100000001b3 + (hash_ >> 29);
    }
    std::uint64_t value() const { return hash_; }

  private:
    std::uint64_t hash_ = 0xcbf29ce484222325;
};

struct Answer {
    std::vector<double> numbers;
    Digest digest;
    void add(double value) {
        if (numbers.size() < 64) numbers.push_back(value);
        digest.add(value);
    }
};

void take(double value, Answer& answer) {
    answer.add(value);
}
void take(bool value, Answer& answer) {
    answer.add(value ? 1 : 0);
}
void take(std::pair<double, double> value, Answer& answer) {
    answer.add(value.first);
}
void take(XYPlot plot, Answer& answer) {
    for (int i = 0; i < plot.count; ++i) answer.digest.add(plot.x[i]);
    for (int i = 0; i < plot.count; ++i) answer.add(plot.y[i]);
    FreeMemXYPlot(plot);
}
void take(XYZPlot plot, Answer& answer) {
    for (int i = 0; i < plot.nx; ++i) answer.digest.add(plot.x[i]);
    for (int j = 0; j < plot.ny; ++j) answer.digest.add(plot.y[j]);
    for (std::size_t i = 0; i < static_cast<std::size_t>(plot.nx) * static_cast<std::size_t>(plot.ny); ++i)
        answer.add(plot.z[i]);
    FreeMemXYZPlot(plot);
}

thread_local std::string current;

/// Whether the answer is a power: 0 to 1, or one of the codes.
bool is_power(const std::string& name) {
    const bool named = name.starts_with("Power") || name.starts_with("_Power") || name == "_POSBBinEnum" ||
                       name == "_POSBNormalAppro";
    return named && name.find("Reverse") == std::string::npos && !name.ends_with("Func") &&
           name.find("Width") == std::string::npos;
}

/// Fisher's power at a fractional size only steers a search, and may exceed 1.
bool may_exceed_one(const std::string& name, double n1, double n2) {
    return (name == "PowerIndSampBinom" || name == "_PowerIndSamBinBinEnumFisher") &&
           (n1 != std::floor(n1) || n2 != std::floor(n2));
}

/// Powers of F and t tests, which grow with the sample size.
bool must_grow(const std::string& name) {
    static const char* const tests[] = {"OverallTest", "PowerSC",    "OneSample", "Related",
                                        "Independent", "Powerbymlr", "Planted"};
    for (const char* test : tests)
        if (is_power(name) && name.find(test) != std::string::npos) return true;
    return false;
}

std::vector<std::string> words(const char* text) {
    std::istringstream in(text);
    std::vector<std::string> result;
    for (std::string word; in >> word;) result.push_back(word);
    return result;
}

template <class T>
void grow(Argument<T>& argument, const std::string& role) {
    const bool is_size = role == "N" || role == "N1" || role == "N2" || role == "Ntotal" || role == "sizes";
    if (!is_size) return;
    if constexpr (std::is_same_v<T, double>) argument.value *= 2;
    if constexpr (std::is_same_v<T, double*> || std::is_same_v<T, const double*>)
        for (std::size_t i = 0; i < argument.array->size(); ++i) argument.array->data()[i] *= 2;
}

template <class T>
void check_after(Argument<T>& argument, Observation& seen) {
    if constexpr (std::is_same_v<T, double*> || std::is_same_v<T, const double*>)
        if (!argument.array->is_intact()) seen.faults.push_back("writes before the start of an array");
    if constexpr (std::is_same_v<T, OrvQueryCancel*>) {
        seen.cancellable = true;
        if (const auto overdue = argument.cancel->overdue(); overdue && *overdue > kLatestAnswer)
            seen.faults.push_back("answers " + std::to_string(*overdue) + " ms after it was told to stop");
    }
}

template <auto function>
struct Caller;

template <class Result, class... Types, Result (*function)(Types...)>
struct Caller<function> {
    static Observation run(Drawing& drawing, const char* role_names) {
        const std::vector<std::string> roles = words(role_names);
        return run(drawing, roles, std::index_sequence_for<Types...>());
    }

    template <std::size_t... i>
    static Observation run(Drawing& drawing, const std::vector<std::string>& roles,
                           std::index_sequence<i...>) {
        // Braces: the arguments are drawn from the first to the last.
        std::tuple<Argument<Types>...> arguments{Argument<Types>(roles[i], drawing)...};
        Observation seen;
        seen.call = current = drawing.text();
        (start(std::get<i>(arguments)), ...);
        const auto invoke = [&](Answer& answer) {
            if constexpr (std::is_void_v<Result>)
                function(std::get<i>(arguments).get()...);
            else
                take(function(std::get<i>(arguments).get()...), answer);
            (add_results(std::get<i>(arguments), answer), ...);
        };
        Answer answer;
        answer.numbers.reserve(64);
        const testing_support::Allocations allocations(kMostMemory);
        const double begun = processor_milliseconds();
        try {
            invoke(answer);
        } catch (const std::bad_alloc&) {
            seen.refused_memory = true;
        } catch (const std::length_error&) {
            seen.refused_memory = true;
        } catch (const std::out_of_range&) {
            if (drawing.name() != "PowerReverseU4Binom") throw;
        }
        seen.milliseconds = processor_milliseconds() - begun;
        seen.peak_bytes = allocations.peak();
        // What the caller's vectors hold is the caller's.
        const std::size_t live = allocations.live();
        const std::size_t kept = (std::size_t{0} + ... + kept_bytes(std::get<i>(arguments)));
        seen.answer = answer.digest.value();
        (check_after(std::get<i>(arguments), seen), ...);
        if (live > kept) seen.faults.push_back("leaks " + std::to_string(live - kept) + " bytes");
        if (!seen.cancellable && seen.milliseconds > kLongestCall)
            seen.faults.push_back("takes " + std::to_string(seen.milliseconds) +
                                  " ms without a cancel object");
        if (seen.peak_bytes > kMostMemory) seen.faults.push_back("takes more than 200 MB");
        if (seen.refused_memory || seen.cancellable) return seen;

        if (drawing.is_ordinary())
            for (double number : answer.numbers)
                if (std::isnan(number)) {
                    seen.faults.push_back("NaN for valid arguments");
                    break;
                }
        if constexpr (std::is_same_v<Result, double>) {
            const double power = answer.numbers.empty() ? 0 : answer.numbers[0];
            // Some functions do not check the level, and say so; with infinite numbers a distribution may be missing.
            const bool is_judged = drawing.alpha > 0 && drawing.alpha < 1 && drawing.are_finite;
            const bool is_code = power == -1 || power == -2 || OrvMV::IsMissing(power) || std::isnan(power);
            if (is_power(drawing.name()) && is_judged && !is_code &&
                !(power >= -1e-12 && power <= 1 + 1e-9) &&
                !fractional_fisher(drawing.name(), std::get<i>(arguments)...))
                seen.faults.push_back("a power of " + std::to_string(power));
            if (drawing.is_ordinary() && must_grow(drawing.name()) && !is_code) {
                (grow(std::get<i>(arguments), roles[i]), ...);
                Answer larger;
                invoke(larger);
                if (larger.numbers[0] < power - 1e-12)
                    seen.faults.push_back("the power falls from " + std::to_string(power) + " to " +
                                          std::to_string(larger.numbers[0]) + " with twice the size");
            }
        }
        return seen;
    }

    template <class T>
    static void start(Argument<T>& argument) {
        if constexpr (std::is_same_v<T, OrvQueryCancel*>) argument.cancel->start();
    }
    template <class T>
    static void add_results(Argument<T>& argument, Answer& answer) {
        if constexpr (std::is_same_v<T, std::vector<double>&> || std::is_same_v<T, std::vector<double>*>)
            for (double number : argument.value) answer.add(number);
        if constexpr (std::is_same_v<T, int&>) answer.add(argument.value);
    }
    template <class T>
    static std::size_t kept_bytes(Argument<T>& argument) {
        if constexpr (std::is_same_v<T, std::vector<double>&> || std::is_same_v<T, std::vector<double>*>)
            return malloc_usable_size(argument.value.data());
        return 0;
    }
    template <class First, class Second, class... Rest>
    static bool fractional_fisher(const std::string& name, First& first, Second& second, Rest&...) {
        if constexpr (std::is_same_v<First, Argument<double>> && std::is_same_v<Second, Argument<double>>)
            return may_exceed_one(name, first.value, second.value);
        return false;
    }
    template <class... Other>
    static bool fractional_fisher(const std::string&, Other&...) {
        return false;
    }
};

struct Function {
    const char* name;
    Observation (*run)(Drawing&, const char*);
    const char* roles;
};

const Function kFunctions[] = {
#define FUNCTION(name, pointer, roles) {name, Caller<pointer>::run, roles},
#include "fuzz/functions.inc"
#include "fuzz/planted.inc"
#undef FUNCTION
};

}  // namespace

const std::vector<std::string>& function_names() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> result;
        for (const Function& f : kFunctions) result.push_back(f.name);
        return result;
    }();
    return names;
}

Observation call(std::size_t index, Manner manner, Choices& choices) {
    const Function& f = kFunctions[index];
    // Overloads are told apart by their place.
    Drawing drawing(f.name, manner, choices);
    Observation seen = f.run(drawing, f.roles);
    seen.call += " #" + std::to_string(words(f.roles).size());
    current.clear();
    return seen;
}

Observation call_again(const std::string& text) {
    std::istringstream in(text);
    std::string name;
    in >> name;
    const auto mark = text.rfind('#');
    const std::size_t count = mark == std::string::npos ? 0 : std::stoul(text.substr(mark + 1));
    for (const Function& f : kFunctions)
        if (name == f.name && (count == 0 || words(f.roles).size() == count)) {
            Drawing drawing(f.name, in);
            Observation seen = f.run(drawing, f.roles);
            current.clear();
            return seen;
        }
    throw std::runtime_error("no function " + name);
}

const char* current_call() {
    return current.c_str();
}

}  // namespace fuzz
