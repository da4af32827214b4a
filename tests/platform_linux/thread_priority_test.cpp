// The raise and restore run on the real thread: each on a thread of its own, so
// that what it does to priority and capabilities ends with it.
#include <gtest/gtest.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <thread>

#include "platform/linux/linux_scheduler.h"

namespace vantrel::platform::linuxos {
namespace {

struct Priority {
  int policy, rtPriority, nice;
  bool operator==(const Priority&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Priority& p) {
  return out << "{policy " << p.policy << ", rt " << p.rtPriority << ", nice " << p.nice << "}";
}

Priority Current() {
  sched_param param{};
  sched_getparam(0, &param);
  errno = 0;
  const int nice = getpriority(PRIO_PROCESS, static_cast<id_t>(gettid()));
  EXPECT_EQ(errno, 0);
  return {sched_getscheduler(0), param.sched_priority, nice};
}

// Capabilities are per thread: this one loses CAP_SYS_NICE, the process keeps it.
bool DropSysNice() {
  __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
  __user_cap_data_struct data[2]{};
  if (syscall(SYS_capget, &header, data) != 0) return false;
  data[CAP_TO_INDEX(CAP_SYS_NICE)].effective &= ~CAP_TO_MASK(CAP_SYS_NICE);
  return syscall(SYS_capset, &header, data) == 0;
}

struct Trip {
  Priority before, raised;
  PriorityRaise raise;
};

// Whatever the user may do, every way back comes to the very state before the
// raise. `start` puts the thread in that state first, and says whether it could.
template <typename Start>
std::optional<Trip> RaiseAndRestore(Start start) {
  std::optional<Trip> trip;
  std::thread([&] {
    if (!start()) return;
    const Priority before = Current();
    {
      LinuxScheduler scheduler(WaitMode::Sleep);
      // Neither a restore without a raise nor any other request changes anything.
      scheduler.SetThreadPriority(kThreadPriorityNormal);
      scheduler.SetThreadPriority(2);
      scheduler.SetThreadPriority(-15);
      scheduler.SetPriorityClass(kRealtimePriorityClass);
      EXPECT_EQ(Current(), before);
      // A second raise must not save the raised state as the one to restore.
      scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
      scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
      trip = Trip{before, Current(), scheduler.raise()};
      scheduler.SetPriorityClass(kNormalPriorityClass);
      scheduler.SetThreadPriority(kThreadPriorityNormal);
      EXPECT_EQ(Current(), before);
      EXPECT_EQ(scheduler.raise(), PriorityRaise::None);
      scheduler.SetThreadPriority(kThreadPriorityTimeCritical);
    }
    EXPECT_EQ(Current(), before) << "destroying a raised scheduler restores";
  }).join();
  return trip;
}

// Soft limits for one trip on a thread without CAP_SYS_NICE, so that they alone
// decide; nothing when they cannot be set (past the hard limit, without
// CAP_SYS_RESOURCE).
std::optional<Trip> RaiseAndRestoreUnder(rlim_t rtprio, rlim_t nice) {
  const int resources[2]{RLIMIT_RTPRIO, RLIMIT_NICE};
  const rlim_t values[2]{rtprio, nice};
  rlimit saved[2]{};
  bool set = true;
  for (int i = 0; i < 2; ++i) {
    getrlimit(resources[i], &saved[i]);
    const rlimit wanted{values[i], std::max(saved[i].rlim_max, values[i])};
    set = set && setrlimit(resources[i], &wanted) == 0;
  }
  std::optional<Trip> trip;
  if (set) {
    trip = RaiseAndRestore([] {
      EXPECT_TRUE(DropSysNice());
      return true;
    });
  }
  for (int i = 0; i < 2; ++i) setrlimit(resources[i], &saved[i]);
  return trip;
}

// From a non-zero nice, which the restore must come back to; the raise never lowers.
TEST(ThreadPriorityTest, RaiseThenRestoreLeavesPolicyAndNiceAsTheyWere) {
  const auto trip = RaiseAndRestore(
      [] { return setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), 3) == 0; });
  ASSERT_TRUE(trip);
  if (trip->raise == PriorityRaise::Realtime) {
    EXPECT_EQ(trip->raised.policy, SCHED_FIFO);
    EXPECT_GT(trip->raised.rtPriority, 0);
  } else if (trip->raise == PriorityRaise::Nice) {
    EXPECT_EQ(trip->raised.policy, trip->before.policy);
    EXPECT_LT(trip->raised.nice, trip->before.nice);
  } else {
    EXPECT_EQ(trip->raised, trip->before);
  }
}

TEST(ThreadPriorityTest, AThreadAlreadyRealtimeIsLeftAsItIs) {
  const auto trip = RaiseAndRestore([] {
    sched_param rr{};
    rr.sched_priority = 10;
    return sched_setscheduler(0, SCHED_RR, &rr) == 0;
  });
  if (!trip) GTEST_SKIP() << "may not make real time";
  EXPECT_EQ(trip->raised, trip->before);
}

TEST(ThreadPriorityTest, TakesNoMoreRealtimePriorityThanTheLimitGrants) {
  const auto trip = RaiseAndRestoreUnder(7, 0);
  if (!trip) GTEST_SKIP() << "may not set RLIMIT_RTPRIO";
  EXPECT_EQ(trip->raise, PriorityRaise::Realtime);
  EXPECT_EQ(trip->raised, (Priority{SCHED_FIFO, 7, trip->before.nice}));
}

TEST(ThreadPriorityTest, FallsBackToTheLowestNiceTheLimitGrants) {
  const auto trip = RaiseAndRestoreUnder(0, 25);  // down to nice -5
  if (!trip) GTEST_SKIP() << "may not set RLIMIT_NICE";
  EXPECT_EQ(trip->raise, PriorityRaise::Nice);
  EXPECT_EQ(trip->raised, (Priority{trip->before.policy, trip->before.rtPriority, -5}));
}

TEST(ThreadPriorityTest, ChangesNothingWhenTheUserMayNotRaise) {
  const auto trip = RaiseAndRestoreUnder(0, 0);
  ASSERT_TRUE(trip);
  EXPECT_EQ(trip->raise, PriorityRaise::None);
  EXPECT_EQ(trip->raised, trip->before);
}

}  // namespace
}  // namespace vantrel::platform::linuxos
