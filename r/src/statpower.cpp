// The package's compiled part: questions as lists, and columns of designs as vectors.
//
// No test and no argument is known here by name.
#include <R_ext/Rdynload.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cpp11.hpp>
#include <cpp11/declarations.hpp>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "statplan/ask.h"

namespace {

using Json = nlohmann::ordered_json;
namespace writable = cpp11::writable;

struct Release {
    void operator()(char* text) const { statplan_free(text); }
    void operator()(statplan_plan* plan) const { statplan_release(plan); }
};
using Text = std::unique_ptr<char, Release>;

/// Lets R see its user's interrupt while the planner works. R leaves by a jump, which is kept until the planner has
/// stopped and everything of it is released.
class Interrupt {
  public:
    static int is_pending(void* self) { return static_cast<Interrupt*>(self)->look(); }

    /// Goes on with R's jump, if there was one.
    void resume() const {
        if (jump_) throw cpp11::unwind_exception(jump_);
    }

  private:
    using Clock = std::chrono::steady_clock;

    int look() {
        if (jump_ || ++asked_ % 8) return jump_ != nullptr;  // the clock is slower than a design
        const auto now = Clock::now();
        if (now - last_ < std::chrono::milliseconds(50)) return 0;
        last_ = now;
        try {
            cpp11::check_user_interrupt();
        } catch (const cpp11::unwind_exception& jump) {
            jump_ = jump.token;
        }
        return jump_ != nullptr;
    }

    unsigned asked_ = 0;
    Clock::time_point last_ = Clock::now();
    SEXP jump_ = nullptr;
};

// ---- Lists as JSON and back --------------------------------------------------------------------------------

Json element_of(SEXP vector, R_xlen_t i) {
    if (TYPEOF(vector) == STRSXP) return std::string(cpp11::r_string(STRING_ELT(vector, i)));
    const double x = REAL(vector)[i];
    if (std::isfinite(x)) return x;
    return x > 0 ? "inf" : "-inf";  // JSON has no name for them; the planner refuses these
}

/// A named list of numbers, words and vectors of them. What is not of length one is an array.
Json to_json(const cpp11::list& request) {
    Json json = Json::object();
    const cpp11::strings names(request.names());
    for (R_xlen_t i = 0; i < request.size(); ++i) {
        SEXP value = request[i];
        const R_xlen_t length = Rf_xlength(value);
        Json& entry = json[std::string(names[i])];
        if (length == 1) {
            entry = element_of(value, 0);
            continue;
        }
        entry = Json::array();
        for (R_xlen_t j = 0; j < length; ++j) entry.push_back(element_of(value, j));
    }
    return json;
}

/// Objects are named lists; arrays of numbers or of texts are vectors.
SEXP to_r(const Json& json) {
    const auto all = [&](auto is) { return std::all_of(json.begin(), json.end(), is); };
    const auto is_number = [](const Json& x) { return x.is_number() || x.is_null(); };
    if (json.is_string()) return writable::strings({cpp11::r_string(json.get<std::string>())});
    if (json.is_boolean()) return cpp11::as_sexp(json.get<bool>());
    if (is_number(json)) return cpp11::as_sexp(json.is_null() ? NA_REAL : json.get<double>());
    const auto size = static_cast<R_xlen_t>(json.size());
    if (json.is_array() && all(is_number)) {
        writable::doubles numbers(size);
        for (R_xlen_t i = 0; const Json& x : json) numbers[i++] = x.is_null() ? NA_REAL : x.get<double>();
        return numbers;
    }
    if (json.is_array() && all([](const Json& x) { return x.is_string(); })) {
        writable::strings texts(size);
        for (R_xlen_t i = 0; const Json& x : json) texts[i++] = x.get<std::string>();
        return texts;
    }
    writable::list list(size);
    for (R_xlen_t i = 0; const Json& x : json) list[i++] = to_r(x);
    if (json.is_object()) {
        writable::strings names(size);
        for (R_xlen_t i = 0; const auto& [name, value] : json.items()) names[i++] = name;
        list.names() = names;
    }
    return list;
}

SEXP read(const char* text) {
    if (!text) throw std::bad_alloc();
    return to_r(Json::parse(text));
}

std::vector<std::string> texts_of(const cpp11::strings& strings) {
    return {strings.begin(), strings.end()};
}

std::vector<const char*> pointers(const std::vector<std::string>& texts) {
    std::vector<const char*> all;
    all.reserve(texts.size());
    for (const std::string& text : texts) all.push_back(text.c_str());
    return all;
}

// ---- What R calls ------------------------------------------------------------------------------------------

/// A column of designs: a vector with one value for all rows or one a row; of lists a matrix with a row for each
/// design, or one row for all.
statplan_column column_of(SEXP values) {
    constexpr std::ptrdiff_t size = sizeof(double);
    const bool is_matrix = Rf_isMatrix(values);
    const R_xlen_t rows = is_matrix ? Rf_nrows(values) : Rf_xlength(values);
    return {REAL(values), rows == 1 ? 0 : size, is_matrix ? static_cast<std::size_t>(Rf_ncols(values)) : 1,
            rows * size};
}

SEXP run(const std::string& test, const std::string& unknown, const cpp11::list& columns,
         const cpp11::strings& outputs, std::size_t rows) {
    const auto given = texts_of(cpp11::strings(columns.names())), asked = texts_of(outputs);
    char* why = nullptr;
    Interrupt interrupt;
    writable::list answers(outputs.size());
    {
        const auto given_names = pointers(given), asked_names = pointers(asked);
        std::unique_ptr<statplan_plan, Release> plan(
            statplan_prepare(test.c_str(), unknown.c_str(), given_names.data(), given_names.size(),
                             asked_names.data(), asked_names.size(), &why));
        const Text refusal(why);
        if (!plan) return read(why);
        std::vector<statplan_column> inputs;
        for (SEXP column : columns) inputs.push_back(column_of(column));
        std::vector<statplan_output> rooms;
        for (R_xlen_t i = 0; i < outputs.size(); ++i) {
            answers[i] = cpp11::safe[Rf_allocVector](REALSXP, static_cast<R_xlen_t>(rows));
            rooms.push_back({REAL(answers[i]), sizeof(double), 1, 0});
        }
        statplan_run(plan.get(), rows, inputs.data(), rooms.data(), Interrupt::is_pending, &interrupt);
    }
    interrupt.resume();
    answers.names() = outputs;
    return answers;
}

SEXP ask(const cpp11::list& request) {
    Interrupt interrupt;
    const std::string text = to_json(request).dump(-1, ' ', false, Json::error_handler_t::replace);
    const Text answer(statplan_ask(text.c_str(), Interrupt::is_pending, &interrupt));
    interrupt.resume();
    return read(answer.get());
}

extern "C" {

SEXP statpower_catalogue() {
    BEGIN_CPP11
    return read(statplan_catalogue());
    END_CPP11
}

SEXP statpower_ask(SEXP request) {
    BEGIN_CPP11
    return ask(cpp11::list(request));
    END_CPP11
}

SEXP statpower_answers(SEXP test, SEXP unknown, SEXP given) {
    BEGIN_CPP11
    const auto names = texts_of(cpp11::strings(given));
    const auto known = pointers(names);
    const Text found(statplan_answers(cpp11::as_cpp<std::string>(test).c_str(),
                                      cpp11::as_cpp<std::string>(unknown).c_str(), known.data(),
                                      known.size()));
    return read(found.get());
    END_CPP11
}

SEXP statpower_run(SEXP test, SEXP unknown, SEXP columns, SEXP outputs, SEXP rows) {
    BEGIN_CPP11
    return run(cpp11::as_cpp<std::string>(test), cpp11::as_cpp<std::string>(unknown), cpp11::list(columns),
               cpp11::strings(outputs), static_cast<std::size_t>(cpp11::as_cpp<double>(rows)));
    END_CPP11
}

}  // extern "C"

/// The address of a function as R keeps it.
template <typename Function>
DL_FUNC called(Function* function) {
    return reinterpret_cast<DL_FUNC>(reinterpret_cast<void (*)()>(function));
}

const R_CallMethodDef kCalls[] = {{"statpower_catalogue", called(statpower_catalogue), 0},
                                  {"statpower_ask", called(statpower_ask), 1},
                                  {"statpower_answers", called(statpower_answers), 3},
                                  {"statpower_run", called(statpower_run), 5},
                                  {nullptr, nullptr, 0}};

}  // namespace

extern "C" __attribute__((visibility("default"))) void R_init_statpower(DllInfo* library) {
    R_registerRoutines(library, nullptr, kCalls, nullptr, nullptr);
    R_useDynamicSymbols(library, FALSE);
    R_forceSymbols(library, TRUE);
}
