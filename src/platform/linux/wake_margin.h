// How long before a deadline a sleep has to end so that its wake-up, as late as
// this machine makes it, still comes before the deadline. The rest of the wait
// is spun, so the margin is both the precision bought and the processor spent.
#pragma once

#include <cstdint>

namespace vantrel::platform::linuxos {

class WakeMargin {
 public:
  struct Limits {
    // Below this the spin no longer covers the return path of a prompt wake-up.
    int64_t floorNs = 100'000;
    // A wake-up later than this is an outlier (the host took the processor
    // away); covering it for long would cost more than it saves.
    int64_t ceilingNs = 4'000'000;
    // Added to each wake-up's lateness: the jitter between two neighbours.
    int64_t headroomNs = 100'000;
    // Before the first wake-up has been seen.
    int64_t initialNs = 1'000'000;
    // The margin sinks by 1/2^decayShift of its distance to the newest
    // wake-up's need on each wake-up: slowly, so a burst of late wake-ups is
    // still covered when the next one comes.
    int decayShift = 6;
  };

  WakeMargin() : WakeMargin(Limits{}) {}
  explicit WakeMargin(const Limits& limits);

  int64_t Ns() const { return marginNs_; }
  const Limits& limits() const { return limits_; }

  // One completed sleep: how long after its deadline it woke.
  void Observe(int64_t latenessNs);

 private:
  Limits limits_;
  int64_t marginNs_;
};

}  // namespace vantrel::platform::linuxos
