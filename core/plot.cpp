#include "core/plot.h"

#include <algorithm>

#include "core/integers.h"

void FreeMemXYPlot(XYPlot plot) {
    delete[] plot.x;
    delete[] plot.y;
}

void FreeMemXYZPlot(XYZPlot plot) {
    delete[] plot.x;
    delete[] plot.y;
    delete[] plot.z;
}

namespace statpower {

SampleSizeRange default_range(double power, double N, int lowest) {
    return {std::max(lowest, to_int(std::floor((1 - power) * N))), to_int(std::ceil((2 - power) * N))};
}

}  // namespace statpower
