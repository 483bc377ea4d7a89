#include "elapsed_time.h"

#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <iostream>
#include <mutex>

namespace cli {

namespace {

void show_until(std::stop_token stop) {
    std::mutex mutex;
    std::unique_lock lock(mutex);
    std::condition_variable_any end;
    int seconds = 0;
    while (!end.wait_for(lock, stop, std::chrono::seconds(1), [&] { return stop.stop_requested(); }))
        std::cerr << '\r' << ++seconds << " s (Ctrl-C stops)" << std::flush;
    if (seconds > 0) std::cerr << "\r\033[K" << std::flush;
}

}  // namespace

ElapsedTime::ElapsedTime() {
    if (isatty(STDERR_FILENO) == 1) display_ = std::jthread(show_until);
}

}  // namespace cli
