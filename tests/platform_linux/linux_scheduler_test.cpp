#include "platform/linux/linux_scheduler.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <time.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace vantrel::platform::linuxos {
namespace {

constexpr int64_t kUs = 1000;
constexpr int64_t kMs = 1000 * kUs;
constexpr WakeMargin::Limits kLimits{
    .floorNs = 100 * kUs, .ceilingNs = 4 * kMs, .headroomNs = 100 * kUs, .initialNs = 1 * kMs};

// Time that moves only when something sleeps; the next sleep wakes `late` after its deadline.
struct FakeClock : WaitClock {
  int64_t NowNs() override { return now; }
  bool SleepUntilNs(int64_t deadline) override {
    sleeps.push_back(deadline);
    if (interrupted) return false;
    now = std::max(now, deadline + std::exchange(late, 0));
    return true;
  }
  int64_t now = 5'000 * kMs;
  int64_t late = 0;
  std::vector<int64_t> sleeps;
  bool interrupted = false;
};

class LinuxSchedulerTest : public ::testing::Test {
 protected:
  // The final stretch of a wait as the sending core runs it: idle, read, again.
  int64_t FinalStretch(int64_t until) {
    while (scheduler.QueryPerformanceCounter() < until) {
      scheduler.IdleUntil(until);
      clock.now += 40;  // one counter reading
    }
    return clock.now;
  }

  FakeClock clock;
  LinuxScheduler scheduler{WaitMode::Sleep, clock, kLimits};
};

TEST_F(LinuxSchedulerTest, NeverSleepsWhenSpinningOrWithinTheMarginOrPastTheDeadline) {
  LinuxScheduler spin(WaitMode::Spin, clock, kLimits);
  spin.SwitchToThread(clock.now + 500 * kMs);
  spin.IdleUntil(clock.now + 10 * kMs);
  scheduler.IdleUntil(clock.now + 1 * kMs);
  scheduler.IdleUntil(clock.now - 30 * kMs);
  scheduler.SwitchToThread(clock.now - 1);
  EXPECT_TRUE(clock.sleeps.empty());
  EXPECT_EQ(clock.now, 5'000 * kMs);
}

TEST_F(LinuxSchedulerTest, SwitchToThreadSleepsToTheStartOfTheFinalStretchAndLearnsFromIt) {
  const int64_t until = clock.now + 300 * kMs;
  clock.late = 3 * kMs;
  scheduler.SwitchToThread(until);
  EXPECT_EQ(clock.sleeps, std::vector<int64_t>{until});
  EXPECT_EQ(scheduler.margin().Ns(), 3100 * kUs);
}

// Lateness counts from the deadline slept to, not from the end of the wait.
TEST_F(LinuxSchedulerTest, IdleSleepsToTheMarginBeforeTheEndAndLearnsHowLateItWoke) {
  const int64_t first = clock.now + 15 * kMs;
  clock.late = 2500 * kUs;
  FinalStretch(first);
  EXPECT_EQ(clock.sleeps, std::vector<int64_t>{first - 1 * kMs});

  const int64_t second = clock.now + 15 * kMs;
  clock.late = 2500 * kUs;
  // Covered now: the caller spins to the first reading at or after the end.
  EXPECT_LT(FinalStretch(second), second + 40);
  EXPECT_EQ(clock.sleeps.back(), second - 2600 * kUs);
}

// The wake-up that ends the sleep can push the window past an old late one;
// the margin then narrows, and the rest of the stretch must still be spun.
TEST_F(LinuxSchedulerTest, AMarginNarrowedByTheWakeUpItselfDoesNotSleepAgain) {
  for (int i = 0; i < WakeMargin::kBuckets * WakeMargin::kPerBucket; ++i) {
    scheduler.SwitchToThread(clock.now + 1 * kMs);
  }
  ASSERT_EQ(scheduler.margin().Ns(), 1 * kMs);
  clock.sleeps.clear();
  const int64_t until = clock.now + 20 * kMs;
  FinalStretch(until);
  EXPECT_LT(scheduler.margin().Ns(), 1 * kMs);
  EXPECT_EQ(clock.sleeps, std::vector<int64_t>{until - 1 * kMs});
}

TEST_F(LinuxSchedulerTest, AnInterruptedSleepTeachesNothingAndIsSleptAgain) {
  const int64_t until = clock.now + 10 * kMs;
  clock.interrupted = true;
  scheduler.IdleUntil(until);
  EXPECT_EQ(scheduler.margin().Ns(), 1 * kMs);
  clock.interrupted = false;
  scheduler.IdleUntil(until);
  EXPECT_EQ(clock.sleeps, (std::vector<int64_t>{until - 1 * kMs, until - 1 * kMs}));
}

TEST(LinuxSchedulerRealClockTest, CountsAndSleepsOnCLOCK_MONOTONICInNanoseconds) {
  LinuxScheduler scheduler(WaitMode::Sleep);
  ASSERT_EQ(scheduler.QueryPerformanceFrequency(), 1'000'000'000);
  timespec before{}, after{};
  clock_gettime(CLOCK_MONOTONIC, &before);
  const int64_t reading = scheduler.QueryPerformanceCounter();
  clock_gettime(CLOCK_MONOTONIC, &after);
  EXPECT_LE(before.tv_sec * 1'000'000'000 + before.tv_nsec, reading);
  EXPECT_LE(reading, after.tv_sec * 1'000'000'000 + after.tv_nsec);

  const int64_t margin = scheduler.margin().Ns();
  const int64_t until = reading + 30 * kMs;
  scheduler.IdleUntil(until);
  const int64_t woke = scheduler.QueryPerformanceCounter();
  EXPECT_GE(woke, until - margin);
  // Generous: only a sleep gone wrong takes a whole second.
  EXPECT_LT(woke, until + 1000 * kMs);
}

TEST(LinuxSchedulerRealClockTest, SleepModeHoldsATimerSlackOfOneNanosecondWhileItLives) {
  const int before = prctl(PR_GET_TIMERSLACK);
  ASSERT_GT(before, 1) << "the test needs a thread with the default slack";
  {
    LinuxScheduler spin(WaitMode::Spin);
    EXPECT_EQ(prctl(PR_GET_TIMERSLACK), before);
    LinuxScheduler sleep(WaitMode::Sleep);
    EXPECT_EQ(prctl(PR_GET_TIMERSLACK), 1);
  }
  EXPECT_EQ(prctl(PR_GET_TIMERSLACK), before);
}

}  // namespace
}  // namespace vantrel::platform::linuxos
