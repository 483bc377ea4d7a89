// The extension module: questions as JSON, and NumPy ufuncs over the planner's columns.
//
// Everything that a person sees of it is made in Python from the catalogue; no test is known here by name.
#define PY_SSIZE_T_CLEAN
#include <Python.h>
#define NPY_NO_DEPRECATED_API NPY_1_22_API_VERSION
#include <numpy/arrayobject.h>
#include <numpy/ufuncobject.h>

#include <cfenv>
#include <chrono>
#include <cmath>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "statplan/ask.h"

namespace {

/// Releases what it holds when it goes.
struct Release {
    void operator()(PyObject* object) const { Py_DECREF(object); }
    void operator()(char* text) const { statplan_free(text); }
    void operator()(statplan_plan* plan) const { statplan_release(plan); }
};
using Object = std::unique_ptr<PyObject, Release>;
using Text = std::unique_ptr<char, Release>;

/// Milliseconds of a clock that is read often: to some milliseconds where that is cheaper.
long long milliseconds() {
#ifdef CLOCK_MONOTONIC_COARSE
    timespec now;
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
#else
    using namespace std::chrono;
    return duration_cast<std::chrono::milliseconds>(steady_clock::now().time_since_epoch()).count();
#endif
}

/// Lets Python handle its signals while the planner works without the interpreter's lock.
class Watch {
  public:
    static int is_over(void* watch) { return static_cast<Watch*>(watch)->look(); }
    bool raised() const { return raised_; }

  private:
    int look() {
        if (raised_) return 1;
        const long long now = milliseconds();  // each time: the next design may be a slow one
        if (now - last_ < 20) return 0;
        last_ = now;
        const PyGILState_STATE state = PyGILState_Ensure();
        raised_ = PyErr_CheckSignals() != 0;
        PyGILState_Release(state);
        return raised_;
    }

    long long last_ = milliseconds();
    bool raised_ = false;
};

/// Runs `work` without the interpreter's lock, whether or not the caller had it.
template <typename Work>
void without_lock(Work work) {
    const PyGILState_STATE state = PyGILState_Ensure();
    PyThreadState* thread = PyEval_SaveThread();
    work();
    PyEval_RestoreThread(thread);
    PyGILState_Release(state);
}

// ---- Kernels ---------------------------------------------------------------------------------------------

constexpr std::size_t kMost = 32;  // arguments of a ufunc: what every NumPy allows

/// A prepared question as the data of a ufunc.
struct Kernel {
    std::unique_ptr<statplan_plan, Release> plan;
    std::size_t inputs = 0, outputs = 0;
    std::vector<char> is_list;  // of each input, then of each output
    std::vector<Object> words;  // of each input: a dict from a choice's word to its position, or None
    std::string name, signature, about;  // NumPy keeps pointers to them
    std::vector<char> types;
    PyUFuncGenericFunction loop = nullptr;
    void* data = nullptr;
};

constexpr const char* kCapsule = "statpower.kernel";

Kernel* kernel_in(PyObject* capsule) {
    return static_cast<Kernel*>(PyCapsule_GetPointer(capsule, kCapsule));
}

/// An exception that waits in a thread: NumPy calls the loop again, for the next rows, and these need no answer.
thread_local bool is_waiting = false;

/// Raises an exception where Python is next able to: NumPy does not ask a loop of numbers for one. Signals, and what
/// is pending, are the main thread's.
void raise_later() {
    struct Raised {
        PyObject *type, *value, *traceback;
    };
    auto* raised = new Raised;
    PyErr_Fetch(&raised->type, &raised->value, &raised->traceback);
    const auto raise = [](void* pending) {
        const std::unique_ptr<Raised> owned(static_cast<Raised*>(pending));
        is_waiting = false;
        PyErr_Restore(owned->type, owned->value, owned->traceback);
        return -1;
    };
    is_waiting = true;
    if (Py_AddPendingCall(raise, raised) != 0) {  // too many are waiting: a signal's second is dropped
        raise(raised);
        PyErr_Clear();
    }
}

/// The loop of every ufunc: rows as NumPy lays them out, in `steps` bytes, lists along one core dimension.
void loop_over_rows(char** arrays, const npy_intp* dimensions, const npy_intp* steps, void* data) {
    if (is_waiting) return;
    const Kernel& kernel = *static_cast<const Kernel*>(data);
    statplan_column columns[kMost];
    statplan_output outputs[kMost];
    const npy_intp* inner = steps + kernel.inputs + kernel.outputs;
    for (std::size_t i = 0; i < kernel.inputs + kernel.outputs; ++i) {
        auto* values = reinterpret_cast<double*>(arrays[i]);
        const std::size_t length = kernel.is_list[i] ? static_cast<std::size_t>(dimensions[1]) : 1;
        const npy_intp between = kernel.is_list[i] ? *inner++ : 0;
        if (i < kernel.inputs)
            columns[i] = {values, steps[i], length, between};
        else
            outputs[i - kernel.inputs] = {values, steps[i], length, between};
    }
    Watch watch;
    without_lock([&] {
        statplan_run(kernel.plan.get(), static_cast<std::size_t>(dimensions[0]), columns, outputs,
                     Watch::is_over, &watch);
    });
    if (watch.raised()) {
        const PyGILState_STATE state = PyGILState_Ensure();
        raise_later();
        PyGILState_Release(state);
    }
    std::feclearexcept(FE_ALL_EXCEPT);  // the formulas' inner overflows are no news of the answers
}

/// A number, or the position of a choice's word; nothing where it is neither.
std::optional<double> number_of(PyObject* value, PyObject* words) {
    if (words != Py_None) {
        if (!PyUnicode_CheckExact(value) && !PyBool_Check(value)) return {};
        value = PyDict_GetItemWithError(words, value);  // borrowed
        if (!value) return {};
    } else if (PyFloat_Check(value)) {
        return PyFloat_AsDouble(value);
    } else if (!PyLong_CheckExact(value)) {
        return {};
    }
    const double x = PyLong_AsDouble(value);
    if (x == -1 && PyErr_Occurred()) return {};
    return x;
}

/// one(value, ...): the answer of one design of plain numbers and words, a float or a tuple of floats, without
/// the ufunc's detour through arrays. None where the values are anything else, or there is no answer.
PyObject* one(PyObject* capsule, PyObject* const* values, Py_ssize_t count) {
    const Kernel& kernel = *kernel_in(capsule);
    if (static_cast<std::size_t>(count) != kernel.inputs) Py_RETURN_NONE;
    double given[kMost], answers[kMost];
    statplan_column columns[kMost];
    statplan_output outputs[kMost];
    for (std::size_t i = 0; i < kernel.inputs; ++i) {
        const auto x = number_of(values[i], kernel.words[i].get());
        if (!x || kernel.is_list[i]) {
            PyErr_Clear();
            Py_RETURN_NONE;
        }
        given[i] = *x;
        columns[i] = {&given[i], 0, 1, 0};
    }
    for (std::size_t i = 0; i < kernel.outputs; ++i) {
        if (kernel.is_list[kernel.inputs + i]) Py_RETURN_NONE;
        outputs[i] = {&answers[i], 0, 1, 0};
    }
    Watch watch;
    PyThreadState* thread = PyEval_SaveThread();
    statplan_run(kernel.plan.get(), 1, columns, outputs, Watch::is_over, &watch);
    PyEval_RestoreThread(thread);
    if (watch.raised()) return nullptr;
    for (std::size_t i = 0; i < kernel.outputs; ++i)
        if (std::isnan(answers[i])) Py_RETURN_NONE;
    if (kernel.outputs == 1) return PyFloat_FromDouble(answers[0]);
    PyObject* all = PyTuple_New(static_cast<Py_ssize_t>(kernel.outputs));
    for (std::size_t i = 0; all && i < kernel.outputs; ++i)
        PyTuple_SetItem(all, static_cast<Py_ssize_t>(i), PyFloat_FromDouble(answers[i]));
    return all;
}

PyMethodDef one_definition = {"one", reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(one)),
                              METH_FASTCALL,
                              "one(*values)\n--\n\nThe answer of one design of plain numbers and words; None "
                              "where they are not plain."};

/// Texts of a Python sequence, alive as long as it.
std::vector<const char*> texts(PyObject* sequence) {
    std::vector<const char*> all;
    for (Py_ssize_t i = 0; i < PyTuple_Size(sequence); ++i)
        all.push_back(PyUnicode_AsUTF8AndSize(PyTuple_GetItem(sequence, i), nullptr));
    return all;
}

PyObject* refused(const char* refusal) {
    Object json(Py_BuildValue("s", refusal));
    if (json) PyErr_SetObject(PyExc_ValueError, json.get());
    return nullptr;
}

PyObject* kernel(PyObject*, PyObject* arguments) {
    const char *test, *unknown, *name, *signature, *about;
    PyObject *given, *answers, *words, *lists;
    if (!PyArg_ParseTuple(arguments, "ssO!O!O!O!sss", &test, &unknown, &PyTuple_Type, &given, &PyTuple_Type,
                          &answers, &PyTuple_Type, &words, &PyTuple_Type, &lists, &name, &signature, &about))
        return nullptr;
    const auto inputs = texts(given), outputs = texts(answers);
    if (PyErr_Occurred()) return nullptr;
    const std::size_t count = inputs.size() + outputs.size();
    if (count > kMost) {
        PyErr_SetString(PyExc_ValueError, "a ufunc has at most 32 arguments");
        return nullptr;
    }
    auto made = std::make_unique<Kernel>();
    char* refusal = nullptr;
    made->plan.reset(statplan_prepare(test, unknown, inputs.data(), inputs.size(), outputs.data(),
                                      outputs.size(), &refusal));
    const Text why(refusal);
    if (!made->plan) return refusal ? refused(refusal) : PyErr_NoMemory();
    made->inputs = inputs.size();
    made->outputs = outputs.size();
    for (std::size_t i = 0; i < count; ++i)
        made->is_list.push_back(PyObject_IsTrue(PyTuple_GetItem(lists, static_cast<Py_ssize_t>(i))) == 1);
    for (std::size_t i = 0; i < made->inputs; ++i) {
        PyObject* of_input = PyTuple_GetItem(words, static_cast<Py_ssize_t>(i));
        Py_INCREF(of_input);
        made->words.emplace_back(of_input);
    }
    made->name = name, made->signature = signature, made->about = about;
    made->types.assign(count, NPY_DOUBLE);
    made->loop = loop_over_rows;
    made->data = made.get();
    Kernel* raw = made.get();
    Object capsule(PyCapsule_New(raw, kCapsule, [](PyObject* held) { delete kernel_in(held); }));
    if (!capsule) return nullptr;
    static_cast<void>(made.release());  // it is the capsule's
    Object ufunc(PyUFunc_FromFuncAndDataAndSignature(
        &raw->loop, &raw->data, raw->types.data(), 1, static_cast<int>(raw->inputs),
        static_cast<int>(raw->outputs), PyUFunc_None, raw->name.c_str(), raw->about.c_str(), 0,
        raw->signature.empty() ? nullptr : raw->signature.c_str()));
    if (!ufunc) return nullptr;
    Py_INCREF(capsule.get());
    reinterpret_cast<PyUFuncObject*>(ufunc.get())->obj = capsule.get();  // lives as long as the ufunc
    Object front(PyCFunction_New(&one_definition, capsule.get()));
    if (!front) return nullptr;
    return Py_BuildValue("OO", ufunc.get(), front.get());
}

// ---- Questions -------------------------------------------------------------------------------------------

PyObject* ask(PyObject*, PyObject* request) {
    const char* text = PyUnicode_AsUTF8AndSize(request, nullptr);
    if (!text) return nullptr;
    Watch watch;
    PyThreadState* thread = PyEval_SaveThread();
    const Text answer(statplan_ask(text, Watch::is_over, &watch));
    PyEval_RestoreThread(thread);
    if (watch.raised()) return nullptr;
    if (!answer) return PyErr_NoMemory();
    return PyUnicode_FromString(answer.get());
}

PyObject* answers(PyObject*, PyObject* arguments) {
    const char *test, *unknown;
    PyObject* given;
    if (!PyArg_ParseTuple(arguments, "ssO!", &test, &unknown, &PyTuple_Type, &given)) return nullptr;
    const auto names = texts(given);
    if (PyErr_Occurred()) return nullptr;
    const Text json(statplan_answers(test, unknown, names.data(), names.size()));
    return json ? PyUnicode_FromString(json.get()) : PyErr_NoMemory();
}

PyObject* catalogue(PyObject*, PyObject*) {
    return PyUnicode_FromString(statplan_catalogue());
}

PyMethodDef functions[] = {
    {"ask", ask, METH_O, "ask(request: str) -> str\n--\n\nThe answer of a question, both as JSON."},
    {"answers", answers, METH_VARARGS,
     "answers(test, unknown, given) -> str\n--\n\nWhich question that is and what it finds, as JSON."},
    {"catalogue", catalogue, METH_NOARGS, "catalogue() -> str\n--\n\nThe description of all tests, as JSON."},
    {"kernel", kernel, METH_VARARGS,
     "kernel(test, unknown, given, answers, words, lists, name, signature, doc) -> (ufunc, one)\n--\n\n"
     "A prepared question as a ufunc, and as a function of plain numbers. ValueError: the refusal as JSON."},
    {nullptr, nullptr, 0, nullptr}};

PyModuleDef module_definition = {PyModuleDef_HEAD_INIT,
                                 "_core",
                                 "The planner's C interface.",
                                 -1,
                                 functions,
                                 nullptr,
                                 nullptr,
                                 nullptr,
                                 nullptr};

}  // namespace

PyMODINIT_FUNC PyInit__core() {
    import_array();
    import_umath();
    Object module(PyModule_Create(&module_definition));
    if (!module) return nullptr;
    if (PyModule_AddStringConstant(module.get(), "version", statplan_version()) != 0) return nullptr;
    return module.release();
}
