// The elapsed time of long work, on a terminal.
#pragma once

#include <thread>

namespace cli {

/// While it lives, and once a second has passed, the elapsed seconds are shown in the last line of the
/// terminal that standard error is; without a terminal nothing is. The line is cleared at the end.
class ElapsedTime {
  public:
    ElapsedTime();

  private:
    std::jthread display_;
};

}  // namespace cli
