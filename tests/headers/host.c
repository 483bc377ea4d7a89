/* A host in C: codes by name, curves, the missing value and the failure codes. */
#include <math.h>
#include <stdbool.h>
#include <stdio.h>

#include "statpower/statpower.h"

static int failures = 0;

static void expect(bool holds, const char* what) {
    if (holds) return;
    printf("failed: %s\n", what);
    ++failures;
}

int main(void) {
    /* With one trial and p0 = 0.5 no count is rejected at 0.05; with five, all of them successes, at 1/32. */
    expect(PowerOneSampBinom(1, 0.9, 0.5, 0.05, STATPOWER_EXACT, STATPOWER_ONE_SIDED, false, NULL) == 0,
           "one trial rejects nothing");
    const double power =
        PowerOneSampBinom(5, 0.9, 0.5, 0.05, STATPOWER_EXACT, STATPOWER_ONE_SIDED, false, NULL);
    expect(fabs(power - pow(0.9, 5)) < 1e-14, "five successes of five reject");
    expect(PowerOneSampBinom(0, 0.9, 0.5, 0.05, STATPOWER_EXACT, STATPOWER_ONE_SIDED, false, NULL) ==
               STATPOWER_REFUSED,
           "no trials are refused");
    expect(PowerOneSampleNondirectionalES(1, 0.5, 0.05) == STATPOWER_MISSING, "one observation has no power");

    XYPlot curve = PlotNOneSampleFES(2, 11, STATPOWER_TWO_SIDED, 0.5, 0.05);
    expect(curve.count == 10 && curve.x[9] == 11, "a curve over ten sample sizes");
    FreeMemXYPlot(curve);
    return failures;
}
