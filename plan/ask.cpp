// The C interface: questions as JSON, and columns of designs.
#include "statplan/ask.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <stdexcept>

#include "plan/json.h"
#include "plan/search.h"
#include "plan/text.h"
#include "plan/vocabulary.h"

namespace {

using namespace statplan;

/// A C function as the library's cancellation object.
class Callback : public Cancel {
  public:
    Callback(statplan_cancel function, void* context) : function_(function), context_(context) {}
    bool IsCancelRequested() override { return function_ && function_(context_) != 0; }
    Cancel* or_null() { return function_ ? this : nullptr; }

  private:
    statplan_cancel function_;
    void* context_;
};

/// What `work` gives; `failed` where memory runs out, since no exception may leave the C interface.
template <typename Result, typename Work>
Result unless_memory_runs_out([[maybe_unused]] Result failed, Work work) {
#ifdef __cpp_exceptions
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return failed;
    } catch (const std::length_error&) {
        return failed;
    }
#else
    return work();  // without exceptions, as in a browser, such a failure ends the program
#endif
}

/// A copy that statplan_free releases; null when there is no memory.
char* copied(const std::string& text) {
    char* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy) std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

double element(const double* values, ptrdiff_t offset) {
    double x;  // strides of other languages need not be aligned
    std::memcpy(&x, reinterpret_cast<const char*>(values) + offset, sizeof x);
    return x;
}

void put(double* values, ptrdiff_t offset, double x) {
    std::memcpy(reinterpret_cast<char*>(values) + offset, &x, sizeof x);
}

constexpr std::string_view kGuaranteed = "guaranteed-", kEnrolled = "enrolled-";

/// One answer that is asked for: where it is found.
struct Output {
    enum { reached, other, level, effect, argument, found_total, guaranteed, enrolled, enrolled_total } what;
    const Argument* named = nullptr;
    double (*value)(const Values&) = nullptr;
    std::size_t position = 0;  // of a guaranteed size among the sizes found
};

Outcome<Output> output_of(const Plan& plan, std::string_view name) {
    const Test& test = plan.test();
    const Argument& reached = plan.is_precision() ? common::half_width : common::power;
    if (name == reached.name) return Output{.what = Output::reached};
    if (name == "other") return Output{.what = Output::other};
    const bool has_power = !plan.is_precision() && plan.question() != "effect";
    if (name == common::level.name && test.level && has_power) return Output{.what = Output::level};
    if (name.starts_with(kGuaranteed)) {
        const auto& found = test.sizes.found;
        for (std::size_t i = 0; i < found.size(); ++i)
            if (found[i].name == name.substr(kGuaranteed.size()))
                return Output{
                    .what = Output::guaranteed, .named = &found[i], .value = nullptr, .position = i};
    }
    if (name.starts_with(kEnrolled) && plan.searches_sizes()) {
        const std::string_view size = name.substr(kEnrolled.size());
        if (size == total.name) return Output{.what = Output::enrolled_total};
        for (const Argument& a : test.sizes.found)
            if (a.name == size) return Output{.what = Output::enrolled, .named = &a};
    }
    for (const Effect& effect : test.effects)
        if (name == effect.argument.name && !(plan.unknown() && plan.unknown()->name == name))
            return Output{.what = Output::effect, .named = &effect.argument, .value = effect.value};
    if (name == total.name && plan.searches_sizes()) return Output{.what = Output::found_total};
    if (const Argument* a = find_argument(test, name)) return Output{.what = Output::argument, .named = a};
    return Refusal{.argument = escaped(name), .reason = "is no answer of " + std::string(test.name)};
}

}  // namespace

struct statplan_plan {
    Plan plan;
    std::vector<Output> outputs;
};

namespace {

void write(const Output& output, const statplan_output& room, ptrdiff_t row, const Plan& plan,
           const Values& values, const Plan::Answer& answer, Cancel* cancel) {
    const auto one = [&](double x) { put(room.values, row * room.stride, x); };
    const auto list = [&](std::span<const double> elements) {
        for (std::size_t j = 0; j < room.length; ++j)
            put(room.values, row * room.stride + static_cast<ptrdiff_t>(j) * room.inner,
                j < elements.size() ? elements[j] : kNotGiven);
    };
    const auto to_enrol = [&](double size) { return enrolled(size, values[common::dropout]); };
    const auto sum_of_found = [&](auto of) {
        double sum = 0;
        for (const Argument& a : plan.test().sizes.found) {
            if (a.kind != Kind::list) sum += of(values[a]);
            for (const double size : values.list(a)) sum += of(size);
        }
        return sum;
    };
    switch (output.what) {
        case Output::reached:
            return one(answer.reached);
        case Output::other:
            return one(answer.other);
        case Output::level:
            return one(plan.test().level(values, cancel));
        case Output::effect:
            return one(output.value(values));
        case Output::argument:
            return output.named->kind == Kind::list ? list(values.list(*output.named))
                                                    : one(values[*output.named]);
        case Output::found_total:
            return one(sum_of_found([](double size) { return size; }));
        case Output::enrolled: {
            if (output.named->kind != Kind::list) return one(to_enrol(values[*output.named]));
            std::vector<double> sizes;
            for (const double size : values.list(*output.named)) sizes.push_back(to_enrol(size));
            return list(sizes);
        }
        case Output::enrolled_total:
            return one(sum_of_found(to_enrol));
        case Output::guaranteed:
            if (output.named->kind == Kind::list) return list(answer.guaranteed);
            return one(output.position < answer.guaranteed.size() ? answer.guaranteed[output.position]
                                                                  : kNotGiven);
    }
}

Outcome<Plan> prepared(const char* test, const char* unknown, const char* const* given, size_t count) {
    const Test* known = find_test(test ? test : "");
    if (!known) return Refusal{.argument = "test", .reason = "there is no test " + quoted(test ? test : "")};
    return Plan::prepare(*known, unknown ? unknown : "", {given, given + count});
}

void write_none(const statplan_output& room, ptrdiff_t row) {
    for (std::size_t j = 0; j < room.length; ++j)
        put(room.values, row * room.stride + static_cast<ptrdiff_t>(j) * room.inner, kNotGiven);
}

/// Answers row by row; `answered` counts them.
void run(const statplan_plan& prepared, size_t rows, const statplan_column* columns,
         const statplan_output* outputs, statplan_cancel cancel, void* context, size_t& answered) {
    const Plan& plan = prepared.plan;
    const auto& given = plan.given();
    Callback callback(cancel, context);
    Values values = plan.blank();
    const auto read = [&](size_t i, ptrdiff_t row) {
        const statplan_column& column = columns[i];
        if (given[i]->kind != Kind::list) {
            values.set(*given[i], element(column.values, row * column.stride));
            return;
        }
        const auto list = values.set_list(*given[i], column.length);
        for (size_t j = 0; j < column.length; ++j)
            list[j] = element(column.values, row * column.stride + static_cast<ptrdiff_t>(j) * column.inner);
    };
    // What is the same in all rows is read and checked once (with what depends on a choice, which may vary).
    std::vector<size_t> varying;
    std::vector<const Argument*> same, checked;
    for (size_t i = 0; i < given.size(); ++i) {
        const bool varies = columns[i].stride != 0;
        if (varies)
            varying.push_back(i);
        else
            read(i, 0);
        (varies || !given[i]->only.empty() ? checked : same).push_back(given[i]);
    }
    const bool same_wrong = plan.check(values, same).has_value();
    // Nothing of a row is left for the next: the sizes that it found, say. What only evaluates numbers writes the same
    // places in every row.
    const Values given_to_all = values;
    const bool leaves = plan.searches_sizes() || plan.unknown() || plan.question() == "effect" ||
                        plan.test().sizes.found.front().kind == Kind::list;
    Plan::Answer answer;
    for (size_t& row = answered; row < rows; ++row) {
        const auto r = static_cast<ptrdiff_t>(row);
        if (leaves) values = given_to_all, answer = {};
        for (const size_t i : varying) read(i, r);
        const bool has_answer = !same_wrong && !plan.check(values, checked) &&
                                !plan.answer_checked(values, answer, callback.or_null());
        if (cancel && callback.IsCancelRequested()) return;
        for (size_t i = 0; i < prepared.outputs.size(); ++i)
            if (has_answer)
                write(prepared.outputs[i], outputs[i], r, plan, values, answer, callback.or_null());
            else
                write_none(outputs[i], r);
    }
}

}  // namespace

extern "C" {

const char* statplan_version(void) {
    return STATPLAN_VERSION;
}

const char* statplan_catalogue(void) {
    return catalogue_json().c_str();
}

char* statplan_ask(const char* request, statplan_cancel cancel, void* context) {
    return unless_memory_runs_out<char*>(nullptr, [&] {
        Callback callback(cancel, context);
        const auto question = question_from_json(request ? request : "");
        if (!question) return copied(to_json(question.refusal()));
        if (is_table(*question)) {
            const auto table = ask_table(*question, callback.or_null());
            return copied(table ? to_json(*table) : to_json(table.refusal()));
        }
        const auto record = ask(*question, callback.or_null());
        return copied(record ? to_json(*record) : to_json(record.refusal()));
    });
}

void statplan_free(char* text) {
    std::free(text);
}

char* statplan_answers(const char* test, const char* unknown, const char* const* given, size_t count) {
    return unless_memory_runs_out<char*>(nullptr, [&] {
        const auto plan = prepared(test, unknown, given, count);
        return copied(plan ? answers_json(*plan) : to_json(plan.refusal()));
    });
}

statplan_plan* statplan_prepare(const char* test, const char* unknown, const char* const* given, size_t count,
                                const char* const* outputs, size_t output_count, char** refusal) {
    if (refusal) *refusal = nullptr;
    return unless_memory_runs_out<statplan_plan*>(nullptr, [&]() -> statplan_plan* {
        const auto refused = [&](const Refusal& why) {
            if (refusal) *refusal = copied(to_json(why));
            return nullptr;
        };
        auto plan = prepared(test, unknown, given, count);
        if (!plan) return refused(plan.refusal());
        std::vector<Output> answers;
        for (size_t i = 0; i < output_count; ++i) {
            const auto output = output_of(*plan, outputs[i]);
            if (!output) return refused(output.refusal());
            answers.push_back(*output);
        }
        return new statplan_plan{std::move(*plan), std::move(answers)};
    });
}

size_t statplan_run(const statplan_plan* prepared, size_t rows, const statplan_column* columns,
                    const statplan_output* outputs, statplan_cancel cancel, void* context) {
    size_t answered = 0;
    unless_memory_runs_out(false, [&] {
        run(*prepared, rows, columns, outputs, cancel, context, answered);
        return true;
    });
    return answered;
}

void statplan_release(statplan_plan* plan) {
    delete plan;
}

int statplan_columns(const char* test, const char* unknown, const char* const* given,
                     const statplan_column* columns, size_t count, size_t rows, const char* output,
                     double* values, statplan_cancel cancel, void* context, char** refusal) {
    statplan_plan* plan = statplan_prepare(test, unknown, given, count, &output, 1, refusal);
    if (!plan) return 1;
    const statplan_output room{values, static_cast<ptrdiff_t>(sizeof(double)), 1, 0};
    const bool whole = statplan_run(plan, rows, columns, &room, cancel, context) == rows;
    statplan_release(plan);
    return whole ? 0 : 2;
}
}
