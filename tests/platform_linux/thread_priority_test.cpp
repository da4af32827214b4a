// The raise and restore run on the real thread: each case on a thread of its
// own, so that what it does to priority and capabilities ends with it.
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

#include "platform/linux/linux_scheduler.h"

namespace vantrel::platform::linuxos {
namespace {

struct Priority {
  int policy = 0;
  int rtPriority = 0;
  int nice = 0;
  bool operator==(const Priority&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Priority& p) {
  return out << "{policy " << p.policy << ", rt " << p.rtPriority << ", nice " << p.nice << "}";
}

Priority Current() {
  Priority p;
  p.policy = sched_getscheduler(0);
  sched_param param{};
  sched_getparam(0, &param);
  p.rtPriority = param.sched_priority;
  errno = 0;
  p.nice = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
  EXPECT_EQ(errno, 0);
  return p;
}

template <typename Body>
void OnOwnThread(Body body) {
  std::thread thread(body);
  thread.join();
}

// Lowering the nice value's priority is always allowed; the raise must come back to it.
void NiceTo(int nice) {
  ASSERT_EQ(setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), nice), 0);
}

// Capabilities are per thread: this one loses CAP_SYS_NICE, the process keeps it.
bool DropSysNice() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct data[2]{};
  if (syscall(SYS_capget, &header, data) != 0) return false;
  data[CAP_TO_INDEX(CAP_SYS_NICE)].effective &= ~CAP_TO_MASK(CAP_SYS_NICE);
  return syscall(SYS_capset, &header, data) == 0;
}

// A soft limit for the length of a case; raising past the hard limit needs
// CAP_SYS_RESOURCE, so a case checks ok() and skips without it.
class Limit {
 public:
  Limit(int resource, rlim_t value) : resource_(resource) {
    if (getrlimit(resource_, &saved_) != 0) return;
    rlimit wanted = saved_;
    wanted.rlim_cur = value;
    if (wanted.rlim_max != RLIM_INFINITY && wanted.rlim_max < value) wanted.rlim_max = value;
    ok_ = setrlimit(resource_, &wanted) == 0;
  }
  ~Limit() {
    if (ok_) setrlimit(resource_, &saved_);
  }
  bool ok() const { return ok_; }

 private:
  int resource_;
  rlimit saved_{};
  bool ok_ = false;
};

// Whatever this user may do, the raise never lowers and the restore comes back
// to the very state before, a non-zero nice included.
TEST(ThreadPriorityTest, RaiseThenRestoreLeavesPolicyAndNiceAsTheyWere) {
  OnOwnThread([] {
    NiceTo(3);
    LinuxScheduler scheduler(WaitMode::Sleep);
    const Priority before = Current();
    scheduler.SetPriorityClass(kRealtimePriorityClass);
    scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
    const Priority raised = Current();
    switch (scheduler.raise()) {
      case PriorityRaise::Realtime:
        EXPECT_EQ(raised.policy, SCHED_FIFO);
        EXPECT_GT(raised.rtPriority, 0);
        break;
      case PriorityRaise::Nice:
        EXPECT_EQ(raised.policy, before.policy);
        EXPECT_LT(raised.nice, before.nice);
        break;
      case PriorityRaise::None:
        EXPECT_EQ(raised, before);
        break;
    }
    scheduler.SetPriorityClass(kNormalPriorityClass);
    scheduler.SetThreadPriority(kThreadPriorityNormal);
    EXPECT_EQ(Current(), before);
    EXPECT_EQ(scheduler.raise(), PriorityRaise::None);
  });
}

TEST(ThreadPriorityTest, RaisingTwiceThenRestoringOnceRestores) {
  OnOwnThread([] {
    NiceTo(2);
    LinuxScheduler scheduler(WaitMode::Spin);
    const Priority before = Current();
    scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
    scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
    scheduler.SetThreadPriority(kThreadPriorityNormal);
    EXPECT_EQ(Current(), before);
  });
}

TEST(ThreadPriorityTest, RestoringWithoutARaiseAndOtherRequestsChangeNothing) {
  OnOwnThread([] {
    NiceTo(5);
    LinuxScheduler scheduler(WaitMode::Spin);
    const Priority before = Current();
    scheduler.SetThreadPriority(kThreadPriorityNormal);
    scheduler.SetThreadPriority(2);
    scheduler.SetThreadPriority(-15);
    scheduler.SetPriorityClass(kRealtimePriorityClass);
    EXPECT_EQ(Current(), before);
    EXPECT_EQ(scheduler.raise(), PriorityRaise::None);
  });
}

TEST(ThreadPriorityTest, DestroyingARaisedSchedulerRestores) {
  OnOwnThread([] {
    NiceTo(1);
    const Priority before = Current();
    {
      LinuxScheduler scheduler(WaitMode::Sleep);
      scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
    }
    EXPECT_EQ(Current(), before);
  });
}

TEST(ThreadPriorityTest, AThreadAlreadyRealtimeIsLeftAsItIs) {
  OnOwnThread([] {
    sched_param param{};
    param.sched_priority = 10;
    if (sched_setscheduler(0, SCHED_RR, &param) != 0) GTEST_SKIP() << "may not make real time";
    LinuxScheduler scheduler(WaitMode::Sleep);
    const Priority before = Current();
    scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
    EXPECT_EQ(Current(), before);
    scheduler.SetThreadPriority(kThreadPriorityNormal);
    EXPECT_EQ(Current(), before);
  });
}

TEST(ThreadPriorityTest, TakesNoMoreRealtimePriorityThanTheLimitGrants) {
  Limit rtprio(RLIMIT_RTPRIO, 7);
  if (!rtprio.ok()) GTEST_SKIP() << "may not set RLIMIT_RTPRIO";
  OnOwnThread([] {
    ASSERT_TRUE(DropSysNice());
    LinuxScheduler scheduler(WaitMode::Sleep);
    const Priority before = Current();
    scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
    EXPECT_EQ(scheduler.raise(), PriorityRaise::Realtime);
    EXPECT_EQ(Current(), (Priority{SCHED_FIFO, 7, before.nice}));
    scheduler.SetThreadPriority(kThreadPriorityNormal);
    EXPECT_EQ(Current(), before);
  });
}

TEST(ThreadPriorityTest, FallsBackToTheLowestNiceTheLimitGrants) {
  Limit rtprio(RLIMIT_RTPRIO, 0);
  Limit nice(RLIMIT_NICE, 25);  // down to nice -5
  if (!rtprio.ok() || !nice.ok()) GTEST_SKIP() << "may not set RLIMIT_NICE";
  OnOwnThread([] {
    ASSERT_TRUE(DropSysNice());
    LinuxScheduler scheduler(WaitMode::Sleep);
    const Priority before = Current();
    scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
    EXPECT_EQ(scheduler.raise(), PriorityRaise::Nice);
    EXPECT_EQ(Current(), (Priority{before.policy, before.rtPriority, -5}));
    scheduler.SetThreadPriority(kThreadPriorityNormal);
    EXPECT_EQ(Current(), before);
  });
}

TEST(ThreadPriorityTest, ChangesNothingWhenTheUserMayNotRaise) {
  Limit rtprio(RLIMIT_RTPRIO, 0);
  Limit nice(RLIMIT_NICE, 0);
  ASSERT_TRUE(rtprio.ok() && nice.ok());
  OnOwnThread([] {
    ASSERT_TRUE(DropSysNice());
    LinuxScheduler scheduler(WaitMode::Sleep);
    const Priority before = Current();
    scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
    EXPECT_EQ(scheduler.raise(), PriorityRaise::None);
    EXPECT_EQ(Current(), before);
    scheduler.SetThreadPriority(kThreadPriorityNormal);
    EXPECT_EQ(Current(), before);
  });
}

}  // namespace
}  // namespace vantrel::platform::linuxos
