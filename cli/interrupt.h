// Ctrl-C during a long search: the search is asked to stop through the library's cancellation object.
#pragma once

#include <stdexcept>

#include "elapsed_time.h"
#include "orvcommon/query_cancel.h"

namespace cli {

/// The search was stopped by Ctrl-C (exit status 130).
struct Interrupted : std::runtime_error {
    Interrupted() : std::runtime_error("interrupted: the search was stopped before it found an answer") {}
};

/// While it lives, the first Ctrl-C does not end the program but makes the object say stop; a second one ends
/// the program after all. One at a time.
class Interrupt : public OrvCommon_940::OrvQueryCancel {
  public:
    Interrupt();
    ~Interrupt() override;
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    bool IsCancelRequested() override;

  private:
    void (*previous_)(int);
};

/// The answer of search(cancel), a search that asks `cancel` while it runs, with the elapsed time shown while
/// it runs long. Throws Interrupted after Ctrl-C.
template <class Search>
auto interruptible(Search search) {
    Interrupt interrupt;
    const ElapsedTime elapsed_time;
    auto answer = search(&interrupt);
    if (interrupt.IsCancelRequested()) throw Interrupted();
    return answer;
}

}  // namespace cli
