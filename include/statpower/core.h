// Shared conventions of the library: codes, small helpers, the sample-size solvers and the results of curves.
//
// Conventions of every header
// - Counts, codes and flags are `int` (a few flags `bool`), everything else is `double`. An array argument
//   points to as many doubles as its description says; arrays that a function only reads are `const`.
// - Sample sizes are doubles. Significance levels and powers lie strictly between 0 and 1.
// - Failures are values, never exceptions of the library's own. The missing value (a page says "missing") is
//   OrvCommon_940::OrvMV::Missing(); test for it with OrvCommon_940::OrvMV::IsMissing(), in C by comparing
//   with STATPOWER_MISSING.
// - An argument is "in range" when it is as its page, the head of its section or the list of recurring
//   arguments on top of its header says.
// - Where a power is one minus a cumulative probability, a probability that the distribution library cannot
//   compute (that comes back missing) counts as a power of exactly 1.
// - Every function is reentrant; the library has no mutable global state. Cancellation objects are asked on
//   the calling thread only, and a null one means that the computation is never cancelled.
// - The headers can be read as C99 and as C++17. Functions that take a std::vector exist in C++ only.
#pragma once

#ifdef __cplusplus
#include <vector>

#include "orvcommon/mv.h"
#include "orvcommon/query_cancel.h"
#else
#include <stdbool.h>
#endif
#include "statpower/visibility.h"

/// Version of this interface, by semantic versioning, and one number of it that grows with every release.
#define STATPOWER_VERSION_MAJOR 0
#define STATPOWER_VERSION_MINOR 1
#define STATPOWER_VERSION_PATCH 0
#define STATPOWER_VERSION \
    (10000 * STATPOWER_VERSION_MAJOR + 100 * STATPOWER_VERSION_MINOR + STATPOWER_VERSION_PATCH)

/// The missing value for C, which does not see OrvMV.
#define STATPOWER_MISSING (-3.4028234663852886e38)

#ifdef __cplusplus

/// A wish to stop a long computation.
typedef OrvCommon_940::OrvQueryCancel StatpowerCancel;

namespace POWER_NAMESPACE {

/// Tolerance that the multiple-regression powers hand to the noncentral F distribution (1e-10).
extern STATPOWER_API const double tol;

/// What a sample-size search asks of a family: a value that is negative while N is too small and not negative
/// once it is large enough (a power objective: the power at N minus the target).
/// @param N       sample size to evaluate
/// @param design  design vector, a fresh copy for each evaluation; element 0 is the target, the rest is the
///                family's own layout
/// @param cancel  the pointer that the solver received; may be null
using Objective = double (*)(double N, std::vector<double> design, StatpowerCancel* cancel);

/// Weighted mean of k values: the sum of weights[i] * values[i] divided by the sum of the weights.
/// For k below 1 it is 0 / 0, a NaN. Both arrays hold k doubles and are only read.
STATPOWER_API double _MeanAverage(int k, double* values, double* weights);

}  // namespace POWER_NAMESPACE

extern "C" {
#else

/// A wish to stop a long computation. Only C++ can make one: C passes a null pointer.
typedef struct StatpowerCancel StatpowerCancel;
#endif

// ---- Codes that several tests share ----------------------------------------------------------------------

/// Direction of a test (sides, sided, directional). Any value other than 0 is one-sided.
enum StatpowerSides { STATPOWER_TWO_SIDED = 0, STATPOWER_ONE_SIDED = 1 };

/// How the power of a test of proportions is computed (method, exact). Any value other than 0 is exact.
enum StatpowerMethod { STATPOWER_NORMAL_APPROXIMATION = 0, STATPOWER_EXACT = 1 };

/// Powers of proportions, correlations and regressions that are none: an argument is out of its range, a
/// binomial operation of the distribution library failed. Powers of means are missing instead.
#define STATPOWER_REFUSED (-1.0)
#define STATPOWER_DISTRIBUTION_FAILED (-2.0)

/// Slack of the two-proportion functions (1e-12): a group size is valid from 1 - tol1 upwards.
extern STATPOWER_API const double tol1;

// ---- Small helpers ---------------------------------------------------------------------------------------

/// Sum of k group sizes; 0 for k below 1, and then the array is not read.
STATPOWER_API double SampleSizeTotal(int k, const double* sizes);

/// Binomial coefficient n over k, through sums of logarithms:
/// with m = min(n - k, k), exp(|sum of ln 1..m - sum of ln (n - m + 1)..n|).
///
/// Exactly 1 for k = 0 (whatever n is) and k = n, and never below 1. Arguments are not validated: fractional
/// ones go through the same steps (the second sum starts at n - m + 1 truncated). From m = 520 upwards, and
/// for an infinite n, the result is infinity, which is what the sums would give; a NaN gives NaN.
STATPOWER_API double Combination(double n, double k);

/// Inverse hyperbolic tangent, Fisher's z of a correlation r: (ln(1 + r) - ln(1 - r)) / 2.
/// -1 when |r| > 1 (a sentinel); r itself when |r| < 1e-12; plus or minus infinity at r = 1 and -1.
STATPOWER_API double InvTanh(double r);

// ---- Sample-size solvers ---------------------------------------------------------------------------------

#ifdef __cplusplus

/// Sample size at which an increasing objective changes its sign: doubling the upper end until the interval
/// brackets the root, then bisection.
///
/// The objective is evaluated at `high` first and at `low` second. A value below 1e-14 in absolute value is a
/// hit and ends the search, at `high` before `low` is looked at; at `low` only zero and positive values do.
/// The cancel object is asked once before every doubling and once before every halving.
/// @param design     design vector, copied for every evaluation and never changed
/// @param objective  the family's objective
/// @param cancel     asked as said; may be null
/// @param low,high   starting interval, low < high
/// @param tolerance  the bisection ends when the bracket is narrower than this; greater than 0
/// @return the left end of the final bracket, not rounded: the objective is zero or negative there, or a hit.
///         `low` where the objective is already non-negative at `low`. The missing value when cancelled, or
///         when the target cannot be reached: the upper end has grown beyond half the largest double
///         (8.988465674311579e+307) in absolute value, or cannot grow (0 or NaN). A NaN objective counts as
///         positive inside the bracket; at either end it leads to bisection of [low, high]. A tolerance that
///         is never met ends the bisection when the width can no longer be halved.
STATPOWER_API double PowerReverse(const std::vector<double>& design, POWER_NAMESPACE::Objective objective,
                                  StatpowerCancel* cancel, double low, double high, double tolerance);

/// Whole sample size at which a saw-toothed objective (the power of an exact test) is not negative: as
/// PowerReverse, but bisecting in whole numbers down to a width of one and then walking up in steps of one.
///
/// The cancel object is asked before every doubling, every halving and every step of the walk.
/// @param low,high  starting interval; with whole ends every point that is evaluated is whole
/// @return the first whole number above the last base of the bisection at which the objective is not negative
///         (a NaN counts as not negative); otherwise as PowerReverse. A walk that has passed 2^53, where
///         steps of one no longer move a double, gives the missing value.
STATPOWER_API double PowerReverse_Binom(const std::vector<double>& design,
                                        POWER_NAMESPACE::Objective objective, StatpowerCancel* cancel,
                                        double low, double high);

/// Repeats PowerReverse_Binom on [1, last answer] until it finds nothing smaller, so that a smaller sample
/// size on an earlier tooth of the saw is not missed.
/// @param[in,out] n  a sample size that reaches the target (the result of PowerReverse_Binom); on return the
///                   smallest one found. Left as it is when the cancel object, asked before every round, says
///                   stop; a round that is itself cancelled ends the search with the smallest one so far.
STATPOWER_API void OptimizeRtbBionm(double* n, std::vector<double> design,
                                    POWER_NAMESPACE::Objective objective, StatpowerCancel* cancel);
#endif

// ---- Results of curves -----------------------------------------------------------------------------------

/// A power curve. Both arrays belong to the caller, who hands them back through FreeMemXYPlot.
typedef struct XYPlot {
    int count;  ///< number of points; 0 in the empty result, whose pointers are null
    double* x;  ///< count abscissae
    double* y;  ///< count powers
} XYPlot;

/// A power surface. The arrays belong to the caller, who hands them back through FreeMemXYZPlot.
typedef struct XYZPlot {
    int nx;     ///< number of values of the first axis; 0 in the empty result, whose pointers are null
    int ny;     ///< number of values of the second axis
    double* x;  ///< nx values of the first axis
    double* y;  ///< ny values of the second axis
    double* z;  ///< nx * ny powers, row by row: the power at x[i] and y[j] is z[i * ny + j]
} XYZPlot;

/// Releases the arrays of a curve. The caller's own copy keeps its pointers, which are then dangling: a
/// result is released once. Releasing the empty result does nothing.
STATPOWER_API void FreeMemXYPlot(XYPlot plot);

/// Releases the arrays of a surface, as FreeMemXYPlot does those of a curve.
STATPOWER_API void FreeMemXYZPlot(XYZPlot plot);

#ifdef __cplusplus
}
#endif

// What all curve functions have in common
// - Invalid arguments give the empty result: counts 0, pointers null. So does a grid whose number of points
//   is not a whole number from 1 to the largest int: a step of zero, negative, infinite or NaN, a reversed
//   or overflowing range, an axis of zero width that is divided into steps.
// - A point whose power is missing holds the missing value. Where a curve stores its powers in single
//   precision (said in its description) the missing value survives the narrowing: IsMissing recognises it.
// - When memory runs out, the standard allocation exception leaves the function and nothing leaks.
