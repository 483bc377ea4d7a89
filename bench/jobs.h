// The twelve standard jobs whose speed is followed: what people ask most, from one power to a surface.
#pragma once

#include <vector>

#include "statpower/statpower.h"

namespace jobs {

inline constexpr double kMeans[] = {10, 11, 12.5, 11.5};
inline constexpr double kSizes[] = {20, 20, 20, 20};

inline double t_power() {
    return PowerOneSampleNondirectionalES(34, 0.5, 0.05);
}
inline double t_size() {
    return PowerReverseOneSampleNondirectionalES(0.8, 0.5, 0.05);
}
inline double t_curve() {  // 100 sizes
    const XYPlot plot = PlotNOneSampleFES(10, 109, 0, 0.3, 0.05);
    const double last = plot.y[plot.count - 1];
    FreeMemXYPlot(plot);
    return last;
}
inline double t_surface() {  // 50 effects, 50 sizes
    const XYZPlot plot = PlotNaESOneSample(11, 60, 0, 0.1, 0.9, 0.05, 1.0 / 49);
    const double last = plot.z[plot.nx * plot.ny - 1];
    FreeMemXYZPlot(plot);
    return last;
}
inline double f_power() {
    return PowerOverallTest(4, kMeans, kSizes, 3, 0.05);
}
inline double f_size() {
    std::vector<double> sizes;
    return PowerReverseOverallTest(4, kMeans, kSizes, &sizes, 3, 0.8, 0.05);
}
inline double f_surface() {  // 500 sizes, 20 effects
    const XYZPlot plot = PlotNaESOverallTest(4, 0, kSizes, 20, 519, 0.25, 0.05, 1, 0.05, 1.0 / 19);
    const double last = plot.z[plot.nx * plot.ny - 1];
    FreeMemXYZPlot(plot);
    return last;
}
inline double fixed_regression_size() {
    return PowerReversebymlrwES(0, true, 0.8, 5, 3, 0.15, 0.05);
}
inline double random_regression_size() {
    return PowerReversebymlrwES(1, true, 0.8, 5, 3, 0.15, 0.05);
}
inline double binomial_power() {
    return PowerOneSampBinom(400, 0.57, 0.5, 0.05, 1, 0, false, nullptr);
}
inline double fisher_50() {
    return PowerIndSampBinom(50, 50, 0.3, 0.55, 0.05, 1, 3, 0, false, false, nullptr);
}
inline double fisher_100() {
    return PowerIndSampBinom(100, 100, 0.3, 0.5, 0.05, 1, 3, 0, false, false, nullptr);
}

struct Job {
    const char* name;
    double (*run)();
};

inline constexpr Job kJobs[] = {
    {"t power", t_power},
    {"t size", t_size},
    {"t curve, 100 sizes", t_curve},
    {"t surface, 50 x 50", t_surface},
    {"F power", f_power},
    {"F size", f_size},
    {"F surface, 500 x 20", f_surface},
    {"size, fixed predictors", fixed_regression_size},
    {"size, random predictors", random_regression_size},
    {"binomial power, N = 400", binomial_power},
    {"Fisher power, 50 and 50", fisher_50},
    {"Fisher power, 100 and 100", fisher_100},
};

}  // namespace jobs
