// The performance counter and the processor: what the keyer's timing needs of
// the operating system.
#pragma once

#include <cstdint>

namespace vantrel::platform {

// Priority values as the keyer asks for them.
inline constexpr int kRealtimePriorityClass = 256;
inline constexpr int kNormalPriorityClass = 32;
inline constexpr int kThreadPriorityTimeCritical = 15;
inline constexpr int kThreadPriorityNormal = 0;

class Scheduler {
 public:
  virtual ~Scheduler() = default;

  virtual int64_t QueryPerformanceCounter() = 0;
  virtual int64_t QueryPerformanceFrequency() = 0;
  // True selects the yielding branch of a wait.
  virtual bool IsWindowsNT() = 0;

  // Requests that may be refused; a refusal leaves the priority as it was.
  virtual void SetPriorityClass(int priorityClass) = 0;
  virtual void SetThreadPriority(int priority) = 0;

  // Gives the processor away while more than the final stretch of a wait is
  // left. `until` is the counter reading at which the final stretch begins.
  virtual void SwitchToThread(int64_t until) = 0;
  // Called on every turn of the final stretch, which never pumps events.
  // A pure spin returns at once; a platform may sleep to shortly before `until`,
  // the counter reading at which the wait ends.
  virtual void IdleUntil(int64_t until) = 0;
};

}  // namespace vantrel::platform
