// The keyer's timing on Linux: CLOCK_MONOTONIC as the performance counter, a
// real-time or lower-nice thread while sending, and the final stretch of a
// wait either spun or slept to shortly before its end.
#pragma once

#include <sched.h>
#include <sys/types.h>

#include <cstdint>

#include "platform/linux/wake_margin.h"
#include "platform/scheduler.h"

namespace vantrel::platform::linuxos {

enum class WaitMode {
  // Gives the processor away only by sched_yield: the least jitter, a whole core.
  Spin,
  // Sleeps on absolute deadlines and spins only the last margin of a wait.
  Sleep,
};

// The clock and the sleep behind the scheduler; tests put in their own.
class WaitClock {
 public:
  virtual ~WaitClock() = default;
  virtual int64_t NowNs() = 0;
  // Sleeps to an absolute reading of NowNs. False when interrupted before it.
  virtual bool SleepUntilNs(int64_t deadlineNs) = 0;
};

// CLOCK_MONOTONIC and clock_nanosleep(TIMER_ABSTIME).
WaitClock& MonotonicClock();

enum class PriorityRaise { None, Realtime, Nice };

class LinuxScheduler final : public Scheduler {
 public:
  // Below the kernel's interrupt threads (50): the keyer has to come before
  // ordinary work, not before the devices it keys through.
  static constexpr int kRealtimePriority = 40;

  explicit LinuxScheduler(WaitMode mode, WaitClock& clock = MonotonicClock(),
                          const WakeMargin::Limits& limits = {});
  ~LinuxScheduler() override;
  LinuxScheduler(const LinuxScheduler&) = delete;
  LinuxScheduler& operator=(const LinuxScheduler&) = delete;

  int64_t QueryPerformanceCounter() override { return clock_.NowNs(); }
  int64_t QueryPerformanceFrequency() override { return 1'000'000'000; }
  bool IsWindowsNT() override { return true; }

  // A Linux process has no priority of its own apart from its threads', and
  // the keyer sends from one thread, which SetThreadPriority raises: nothing
  // is left for the class to do.
  void SetPriorityClass(int /*priorityClass*/) override {}
  // Time critical raises the calling thread as far as the user may; normal
  // puts back what was there before the raise. Other values are refused.
  void SetThreadPriority(int priority) override;

  void SwitchToThread(int64_t until) override;
  void IdleUntil(int64_t until) override;

  WaitMode mode() const { return mode_; }
  const WakeMargin& margin() const { return margin_; }
  PriorityRaise raise() const { return raise_; }

 private:
  void Raise();
  void Restore();
  // Sleeps to `deadline` and learns from how late it woke; false when it did
  // not sleep through.
  bool SleepTo(int64_t deadline);

  const WaitMode mode_;
  WaitClock& clock_;
  WakeMargin margin_;
  int savedTimerSlack_ = -1;
  // The deadline of the last final stretch that has had its sleep.
  int64_t sleptBefore_ = -1;

  PriorityRaise raise_ = PriorityRaise::None;
  pid_t raisedThread_ = 0;
  int savedPolicy_ = SCHED_OTHER;
  sched_param savedParam_{};
  int savedNice_ = 0;
};

}  // namespace vantrel::platform::linuxos
