// The real clock under the runner's event queue: events wait for their time
// instead of jumping to it, and the trace counts from the start of the run.
#pragma once

#include <time.h>

#include <cerrno>

#include <cstdint>

#include "platform/memory/event_queue.h"

namespace vantrel::sim {

class RealQueueTime : public platform::memory::QueueTime {
 public:
  RealQueueTime() : originNs_(MonotonicNs()) {}

  int64_t NowNs() const override { return MonotonicNs() - originNs_; }
  void AdvanceTo(int64_t ns) override {
    const int64_t deadline = originNs_ + ns;
    timespec at{static_cast<time_t>(deadline / 1'000'000'000), static_cast<long>(deadline % 1'000'000'000)};
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &at, nullptr) == EINTR) {
    }
  }

 private:
  static int64_t MonotonicNs() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
  }
  int64_t originNs_;
};

}  // namespace vantrel::sim
