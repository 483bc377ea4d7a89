// Objectives that record what a solver asks of them, and cancellation objects that count.
#pragma once

#include <functional>
#include <limits>
#include <vector>

#include "orvcommon/query_cancel.h"

namespace testing_support {

/// Counts how often it is asked and says stop from the `stop_at`-th query (1 for the first) onwards.
class CountingCancel : public OrvCommon_940::OrvQueryCancel {
  public:
    explicit CountingCancel(long stop_at = std::numeric_limits<long>::max()) : stop_at_(stop_at) {}
    bool IsCancelRequested() override { return ++queries >= stop_at_; }

    long queries = 0;

  private:
    long stop_at_;
};

/// Makes a plain function pointer of a std::function: what the solver passes is recorded, what `f` returns is
/// handed back. One at a time in each thread.
class RecordedObjective {
  public:
    explicit RecordedObjective(std::function<double(double)> f) : f_(std::move(f)) { current_ = this; }
    ~RecordedObjective() { current_ = nullptr; }
    RecordedObjective(const RecordedObjective&) = delete;
    RecordedObjective& operator=(const RecordedObjective&) = delete;

    static double call(double N, std::vector<double> design, OrvCommon_940::OrvQueryCancel* cancel) {
        current_->points.push_back(N);
        current_->designs.push_back(design);
        current_->cancels.push_back(cancel);
        design.assign(design.size(), -1);  // an objective may do what it likes with its copy
        return current_->f_(N);
    }

    std::vector<double> points;
    std::vector<std::vector<double>> designs;
    std::vector<OrvCommon_940::OrvQueryCancel*> cancels;

  private:
    std::function<double(double)> f_;
    inline static thread_local RecordedObjective* current_ = nullptr;
};

}  // namespace testing_support
