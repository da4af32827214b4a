#include "platform/linux/linux_scheduler.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>

namespace vantrel::platform::linuxos {
namespace {

constexpr int64_t kNsPerSecond = 1'000'000'000;
constexpr int kStrongestNice = -20;

class Monotonic final : public WaitClock {
 public:
  int64_t NowNs() override {
    timespec ts{};
    clock_gettime(CLOCK_MONOTONIC, &ts);
    return static_cast<int64_t>(ts.tv_sec) * kNsPerSecond + ts.tv_nsec;
  }
  bool SleepUntilNs(int64_t deadlineNs) override {
    const timespec ts{static_cast<time_t>(deadlineNs / kNsPerSecond),
                      static_cast<long>(deadlineNs % kNsPerSecond)};
    return clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &ts, nullptr) == 0;
  }
};

bool IsRealtime(int policy) {
  const int base = policy & ~SCHED_RESET_ON_FORK;
  return base == SCHED_FIFO || base == SCHED_RR;
}

bool TryFifo(pid_t tid, int priority) {
  sched_param param{};
  param.sched_priority = priority;
  return sched_setscheduler(tid, SCHED_FIFO, &param) == 0;
}

}  // namespace

WaitClock& MonotonicClock() {
  static Monotonic clock;
  return clock;
}

LinuxScheduler::LinuxScheduler(WaitMode mode, WaitClock& clock, const WakeMargin::Limits& limits)
    : mode_(mode), clock_(clock), margin_(limits) {
  if (mode_ == WaitMode::Sleep) {
    // The default 50 us of slack would be added to every wake-up.
    savedTimerSlack_ = prctl(PR_GET_TIMERSLACK);
    prctl(PR_SET_TIMERSLACK, 1UL);
  }
}

LinuxScheduler::~LinuxScheduler() {
  Restore();
  if (savedTimerSlack_ > 0) prctl(PR_SET_TIMERSLACK, static_cast<unsigned long>(savedTimerSlack_));
}

void LinuxScheduler::SetThreadPriority(int priority) {
  if (priority == kThreadPriorityTimeCritical) {
    Raise();
  } else if (priority == kThreadPriorityNormal) {
    Restore();
  }
}

// Each step is simply tried: whether the user may is the kernel's to say
// (CAP_SYS_NICE, RLIMIT_RTPRIO, RLIMIT_NICE), and a refusal is no error.
void LinuxScheduler::Raise() {
  if (raise_ != PriorityRaise::None) return;
  const pid_t tid = gettid();
  const int policy = sched_getscheduler(tid);
  sched_param param{};
  if (policy < 0 || sched_getparam(tid, &param) != 0) return;
  errno = 0;
  const int nice = getpriority(PRIO_PROCESS, static_cast<id_t>(tid));
  if (errno != 0) return;
  // Started real-time by the user (chrt): already above anything we would ask.
  if (IsRealtime(policy)) return;

  raisedThread_ = tid;
  savedPolicy_ = policy;
  savedParam_ = param;
  savedNice_ = nice;

  rlimit limit{};
  const bool haveLimit = getrlimit(RLIMIT_RTPRIO, &limit) == 0;
  if (TryFifo(tid, kRealtimePriority) ||
      (haveLimit && limit.rlim_cur > 0 && limit.rlim_cur < static_cast<rlim_t>(kRealtimePriority) &&
       TryFifo(tid, static_cast<int>(limit.rlim_cur)))) {
    raise_ = PriorityRaise::Realtime;
    return;
  }
  if (setpriority(PRIO_PROCESS, static_cast<id_t>(tid), kStrongestNice) == 0) {
    raise_ = nice > kStrongestNice ? PriorityRaise::Nice : PriorityRaise::None;
    return;
  }
  // RLIMIT_NICE allows down to 20 - limit.
  if (getrlimit(RLIMIT_NICE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY &&
      limit.rlim_cur <= 40) {
    const int lowest = 20 - static_cast<int>(limit.rlim_cur);
    if (lowest < nice && setpriority(PRIO_PROCESS, static_cast<id_t>(tid), lowest) == 0) {
      raise_ = PriorityRaise::Nice;
    }
  }
}

void LinuxScheduler::Restore() {
  if (raise_ == PriorityRaise::None) return;
  if (raise_ == PriorityRaise::Realtime) {
    sched_setscheduler(raisedThread_, savedPolicy_, &savedParam_);
  }
  // Leaving FIFO keeps the nice value, but setting it back costs nothing.
  setpriority(PRIO_PROCESS, static_cast<id_t>(raisedThread_), savedNice_);
  raise_ = PriorityRaise::None;
}

bool LinuxScheduler::SleepTo(int64_t deadline) {
  if (clock_.NowNs() >= deadline) return false;
  if (!clock_.SleepUntilNs(deadline)) return false;
  margin_.Observe(clock_.NowNs() - deadline);
  return true;
}

void LinuxScheduler::SwitchToThread(int64_t until) {
  if (mode_ == WaitMode::Spin) {
    sched_yield();
    return;
  }
  SleepTo(until);
}

void LinuxScheduler::IdleUntil(int64_t until) {
  if (mode_ == WaitMode::Spin) return;
  // One sleep per wait: the margin learning from that very wake-up must not
  // send the rest of it back to sleep. The caller spins what is left.
  if (until == sleptBefore_) return;
  if (SleepTo(until - margin_.Ns())) sleptBefore_ = until;
}

}  // namespace vantrel::platform::linuxos
