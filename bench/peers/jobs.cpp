// The standard jobs (bench/jobs.h) by this library. Prints for each job its answer and its processor time in microseconds.
#include <cstdio>
#include <ctime>

#include "bench/jobs.h"

namespace {

double processor_seconds() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

}  // namespace

int main() {
    for (const jobs::Job& job : jobs::kJobs) {
        volatile double answer = job.run();
        int count = 1;
        double taken = 0;
        while (taken < 0.05) {
            count *= 4;
            const double started = processor_seconds();
            for (int i = 0; i < count; ++i) answer = job.run();
            taken = processor_seconds() - started;
        }
        std::printf("%s\t%.12g\t%.6g\n", job.name, static_cast<double>(answer), 1e6 * taken / count);
    }
}
