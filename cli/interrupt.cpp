#include "interrupt.h"

#include <atomic>
#include <csignal>

namespace cli {

namespace {

std::atomic<bool> requested = false;
static_assert(std::atomic<bool>::is_always_lock_free);  // what a signal handler may touch

extern "C" void note_interrupt(int signal) {
    requested = true;
    std::signal(signal, SIG_DFL);
}

}  // namespace

Interrupt::Interrupt() {
    requested = false;
    previous_ = std::signal(SIGINT, note_interrupt);
    if (previous_ == SIG_IGN) std::signal(SIGINT, SIG_IGN);  // a job in the background of a script
}

Interrupt::~Interrupt() {
    std::signal(SIGINT, previous_);
}

bool Interrupt::IsCancelRequested() {
    return requested;
}

}  // namespace cli
