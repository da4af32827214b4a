// Time that moves only when something waits, or when a counter reading is
// given a cost. Waits end exactly at their deadline, so tests can assert
// whole milliseconds.
#pragma once

#include <cstdint>
#include <utility>

#include "platform/memory/event_queue.h"
#include "platform/scheduler.h"

namespace vantrel::platform::memory {

class VirtualClock : public Scheduler, public QueueTime {
 public:
  static constexpr int64_t kFrequency = 1'000'000'000;  // counts are nanoseconds

  int64_t NowNs() const override { return now_; }
  double NowMs() const { return static_cast<double>(now_) / 1e6; }
  void AdvanceTo(int64_t ns) override {
    if (ns > now_) now_ = ns;
  }
  // Each counter reading takes this long: the overhead a real reading has.
  void SetReadCost(int64_t ns) { readCost_ = ns; }
  // Each action of the keyer (a line write, an indicator, a tone call, a
  // marking step, a poll) takes this long: the time between two waits.
  void SetActionCost(int64_t ns) { actionCost_ = ns; }
  void ChargeAction() { now_ += actionCost_; }
  // The next wait ends this much after its deadline, as a late wake does.
  void WakeLate(int64_t ns) { lateWake_ = ns; }
  void SetWindowsNT(bool nt) { nt_ = nt; }

  int PriorityClass() const { return priorityClass_; }
  int ThreadPriority() const { return threadPriority_; }

  int64_t QueryPerformanceCounter() override {
    const int64_t reading = now_;
    now_ += readCost_;
    return reading;
  }
  int64_t QueryPerformanceFrequency() override { return kFrequency; }
  bool IsWindowsNT() override { return nt_; }
  void SetPriorityClass(int priorityClass) override { priorityClass_ = priorityClass; }
  void SetThreadPriority(int priority) override { threadPriority_ = priority; }
  void SwitchToThread(int64_t until) override { AdvanceTo(until); }
  void IdleUntil(int64_t until) override { AdvanceTo(until + std::exchange(lateWake_, 0)); }

 private:
  int64_t now_ = 0;
  int64_t readCost_ = 0;
  int64_t actionCost_ = 0;
  int64_t lateWake_ = 0;
  bool nt_ = true;
  int priorityClass_ = kNormalPriorityClass;
  int threadPriority_ = kThreadPriorityNormal;
};

}  // namespace vantrel::platform::memory
