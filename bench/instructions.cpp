// Counts the instructions of the twelve standard jobs, under valgrind --tool=callgrind --instr-atstart=no: each job is
// run once before it is counted, and its counters are dumped under its name. scripts/bench --instructions runs it.
//
// On its own it says what the jobs answer.
#include <valgrind/callgrind.h>

#include <cstdio>

#include "bench/jobs.h"

int main() {
    for (const jobs::Job& job : jobs::kJobs) {
        job.run();
        CALLGRIND_START_INSTRUMENTATION;
        CALLGRIND_ZERO_STATS;
        const double answer = job.run();
        CALLGRIND_DUMP_STATS_AT(job.name);
        CALLGRIND_STOP_INSTRUMENTATION;
        std::printf("%-26s %.17g\n", job.name, answer);
    }
}
