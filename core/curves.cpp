// The release functions of curves and surfaces.
#include "statpower/core.h"

void FreeMemXYPlot(XYPlot plot) {
    delete[] plot.x;
    delete[] plot.y;
}

void FreeMemXYZPlot(XYZPlot plot) {
    delete[] plot.x;
    delete[] plot.y;
    delete[] plot.z;
}
