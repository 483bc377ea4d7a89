// The number of passes through the loops of one call. Counted only in builds made for the test that bounds
// it; the library itself keeps no such count.
#pragma once

namespace orvmath {

#ifdef ORVMATH_COUNT_STEPS
inline thread_local long steps = 0;
inline void count_step() {
    ++steps;
}
#else
inline void count_step() {}
#endif

}  // namespace orvmath
