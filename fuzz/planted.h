// Functions with one defect each, to see that the rig finds it.
#pragma once

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "orvcommon/query_cancel.h"

namespace fuzz::planted {

inline double sink;  // shared by all threads, without care
inline std::vector<double*> kept;

inline double grow(double N) {
    return N > 0 && std::isfinite(N) ? N / (N + 50) : -1;
}
inline double PowerPlantedNothing(double N) {
    return grow(N);
}
inline double PowerPlantedLeak(double N) {
    auto* lost = new double[16]{N};
    return grow(N) + 0 * lost[0];
}
inline double PowerPlantedOverrun(int k, const double* means) {
    double sum = 0;
    for (int i = 0; i <= k; ++i) sum += means[i];
    return 0.5 + 0 * sum;
}
inline double PowerPlantedUnderrun(int, double* means) {
    volatile double* before = means;
    before[-1] = 1;
    return 0.5;
}
inline double PowerPlantedRace(double N) {
    for (int i = 0; i < 100; ++i) sink = sink + N;
    return grow(N);
}
inline double PowerPlantedSharedAnswer(double N) {
    static volatile double last;
    last = N;
    double sum = 0;
    for (double i = 1; i < 20000; ++i) sum += 1 / (i * i);
    if (sum < 0) return sum;
    return grow(last);
}
inline double PowerPlantedDeaf(OrvCommon_940::OrvQueryCancel* cancel, double N) {
    cancel->IsCancelRequested();
    double sum = 0;
    for (double i = 1; i < 3e8; ++i) sum += 1 / (i * i);
    return grow(N) + 0 * sum;
}
inline double PowerPlantedTooSure(double N) {
    return N > 0 ? 1 + N : -1;
}
inline double PowerPlantedFalling(double N) {
    return 1 - grow(N);
}
inline double PowerPlantedNaN(double N) {
    return std::sqrt(-N);
}
inline double PowerPlantedSlow(double N) {
    double sum = 0;
    for (double i = 1; i < 1.2e9; ++i) sum += 1 / (i * i);
    return grow(N) + 0 * sum;
}
inline double PowerPlantedHungry(double N) {
    std::vector<std::vector<double>> all(30);
    for (auto& one : all) one.assign(1 << 20, N);
    return grow(N);
}

}  // namespace fuzz::planted
