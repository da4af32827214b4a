// How long before a deadline a sleep has to end so that its wake-up, as late as
// this machine makes it, still comes before the deadline. The rest of the wait
// is spun, so the margin is both the precision bought and the processor spent.
//
// It is the worst lateness of the last few hundred wake-ups plus headroom:
// a late wake-up widens it at once, and only a long run of prompt ones narrows
// it again. Lateness comes in spells (a busy neighbour on a shared host holds
// the processor for its whole time slice), so the worst of the recent past
// predicts the next wake-up better than any average.
#pragma once

#include <array>
#include <cstdint>

namespace vantrel::platform::linuxos {

class WakeMargin {
 public:
  struct Limits {
    // The timing bench's sweep of fixed margins on a 2-core virtual machine:
    // at 100 us the wake-ups' own lateness showed in p99 (55 to 135 us), from
    // 250 us on only the machine's stalls did.
    int64_t floorNs = 250'000;
    // A wake-up later than this is the processor given to another task, not
    // timer latency: a longer spin is itself preempted and wins nothing back,
    // while it costs a core's time at every edge for the whole window.
    int64_t ceilingNs = 1'000'000;
    // Added to the worst lateness seen: a new worst is seldom much worse.
    int64_t headroomNs = 100'000;
    // Counted as already seen, until the window has forgotten it.
    int64_t initialNs = 500'000;
  };

  // The window slides by buckets: it remembers the last 224 to 256 wake-ups.
  static constexpr int kBuckets = 8;
  static constexpr int kPerBucket = 32;

  WakeMargin() : WakeMargin(Limits{}) {}
  explicit WakeMargin(const Limits& limits);

  int64_t Ns() const { return marginNs_; }

  // One completed sleep: how long after its deadline it woke.
  void Observe(int64_t latenessNs);

 private:
  void Update();

  Limits limits_;
  std::array<int64_t, kBuckets> worst_{};
  int bucket_ = 0;
  int inBucket_ = 0;
  int64_t marginNs_ = 0;
};

}  // namespace vantrel::platform::linuxos
