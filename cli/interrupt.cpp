#include "interrupt.h"

#include <csignal>

namespace cli {

namespace {

volatile std::sig_atomic_t requested = 0;

extern "C" void note_interrupt(int signal) {
    requested = 1;
    std::signal(signal, SIG_DFL);
}

}  // namespace

Interrupt::Interrupt() {
    requested = 0;
    previous_ = std::signal(SIGINT, note_interrupt);
}

Interrupt::~Interrupt() {
    std::signal(SIGINT, previous_);
}

bool Interrupt::IsCancelRequested() {
    return requested != 0;
}

}  // namespace cli
