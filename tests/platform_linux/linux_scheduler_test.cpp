#include "platform/linux/linux_scheduler.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <time.h>

#include <deque>
#include <vector>

namespace vantrel::platform::linuxos {
namespace {

constexpr int64_t kUs = 1000;
constexpr int64_t kMs = 1000 * kUs;

// Time that moves only when something sleeps; each sleep wakes as late as the
// test says.
class FakeClock : public WaitClock {
 public:
  int64_t NowNs() override { return now; }
  bool SleepUntilNs(int64_t deadline) override {
    sleeps.push_back(deadline);
    if (interrupted) return false;
    int64_t late = 0;
    if (!lateness.empty()) {
      late = lateness.front();
      lateness.pop_front();
    }
    if (deadline + late > now) now = deadline + late;
    return true;
  }

  int64_t now = 5'000 * kMs;
  std::deque<int64_t> lateness;
  std::vector<int64_t> sleeps;
  bool interrupted = false;
};

WakeMargin::Limits TestLimits() {
  WakeMargin::Limits limits;
  limits.floorNs = 100 * kUs;
  limits.ceilingNs = 4 * kMs;
  limits.headroomNs = 100 * kUs;
  limits.initialNs = 1 * kMs;
  return limits;
}

// The final stretch of a wait as the sending core runs it: idle, read, again.
int64_t FinalStretch(LinuxScheduler& scheduler, FakeClock& clock, int64_t until) {
  int turns = 0;
  while (scheduler.QueryPerformanceCounter() < until) {
    scheduler.IdleUntil(until);
    clock.now += 40;  // one counter reading
    if (++turns > 1'000'000) {
      ADD_FAILURE() << "the stretch never ended";
      break;
    }
  }
  return clock.now;
}

TEST(LinuxSchedulerTest, SpinNeverSleeps) {
  FakeClock clock;
  LinuxScheduler scheduler(WaitMode::Spin, clock, TestLimits());
  scheduler.SwitchToThread(clock.now + 500 * kMs);
  scheduler.IdleUntil(clock.now + 10 * kMs);
  EXPECT_TRUE(clock.sleeps.empty());
  EXPECT_EQ(clock.now, 5'000 * kMs);
}

TEST(LinuxSchedulerTest, SwitchToThreadSleepsToTheStartOfTheFinalStretchAndLearnsFromIt) {
  FakeClock clock;
  LinuxScheduler scheduler(WaitMode::Sleep, clock, TestLimits());
  const int64_t until = clock.now + 300 * kMs;
  clock.lateness = {3 * kMs};
  scheduler.SwitchToThread(until);
  EXPECT_EQ(clock.sleeps, std::vector<int64_t>{until});
  EXPECT_EQ(scheduler.margin().Ns(), 3100 * kUs);
}

TEST(LinuxSchedulerTest, IdleSleepsToTheMarginBeforeTheEndAndThenLetsTheCallerSpin) {
  FakeClock clock;
  LinuxScheduler scheduler(WaitMode::Sleep, clock, TestLimits());
  const int64_t until = clock.now + 20 * kMs;
  const int64_t end = FinalStretch(scheduler, clock, until);
  EXPECT_EQ(clock.sleeps, std::vector<int64_t>{until - 1 * kMs});
  // Ended on the first reading at or after the deadline.
  EXPECT_GE(end, until);
  EXPECT_LT(end, until + 40);
}

// The wake-up that ends the sleep can push the window past an old late one;
// the margin then narrows, and the rest of the stretch must still be spun.
TEST(LinuxSchedulerTest, AMarginNarrowedByTheWakeUpItselfDoesNotSleepAgain) {
  FakeClock clock;
  LinuxScheduler scheduler(WaitMode::Sleep, clock, TestLimits());
  for (int i = 0; i < WakeMargin::kBuckets * WakeMargin::kPerBucket; ++i) {
    scheduler.SwitchToThread(clock.now + 1 * kMs);
  }
  ASSERT_EQ(scheduler.margin().Ns(), 1 * kMs);
  clock.sleeps.clear();
  const int64_t until = clock.now + 20 * kMs;
  FinalStretch(scheduler, clock, until);
  EXPECT_LT(scheduler.margin().Ns(), 1 * kMs);
  EXPECT_EQ(clock.sleeps, std::vector<int64_t>{until - 1 * kMs});
}

TEST(LinuxSchedulerTest, IdleNeverSleepsWithinTheMarginOrPastTheDeadline) {
  FakeClock clock;
  LinuxScheduler scheduler(WaitMode::Sleep, clock, TestLimits());
  scheduler.IdleUntil(clock.now + 1 * kMs);
  scheduler.IdleUntil(clock.now + 10 * kUs);
  scheduler.IdleUntil(clock.now);
  scheduler.IdleUntil(clock.now - 30 * kMs);
  scheduler.SwitchToThread(clock.now - 1);
  EXPECT_TRUE(clock.sleeps.empty());
}

TEST(LinuxSchedulerTest, AWakeUpLaterThanTheMarginWidensItForTheNextWait) {
  FakeClock clock;
  LinuxScheduler scheduler(WaitMode::Sleep, clock, TestLimits());
  clock.lateness = {2500 * kUs};
  const int64_t first = clock.now + 15 * kMs;
  const int64_t firstEnd = FinalStretch(scheduler, clock, first);
  // That wake-up came after the deadline: the edge is late by what the margin
  // did not cover.
  EXPECT_GE(firstEnd, first + 1500 * kUs);

  const int64_t second = clock.now + 15 * kMs;
  clock.lateness = {2500 * kUs};
  const int64_t secondEnd = FinalStretch(scheduler, clock, second);
  EXPECT_EQ(clock.sleeps.back(), second - 2600 * kUs);
  EXPECT_LT(secondEnd, second + 40);
}

TEST(LinuxSchedulerTest, AnInterruptedSleepTeachesNothingAndIsSleptAgain) {
  FakeClock clock;
  LinuxScheduler scheduler(WaitMode::Sleep, clock, TestLimits());
  const int64_t until = clock.now + 10 * kMs;
  clock.interrupted = true;
  scheduler.IdleUntil(until);
  EXPECT_EQ(scheduler.margin().Ns(), 1 * kMs);
  clock.interrupted = false;
  scheduler.IdleUntil(until);
  EXPECT_EQ(clock.sleeps, (std::vector<int64_t>{until - 1 * kMs, until - 1 * kMs}));
}

int64_t MonotonicNs() {
  timespec ts{};
  clock_gettime(CLOCK_MONOTONIC, &ts);
  return static_cast<int64_t>(ts.tv_sec) * 1'000'000'000 + ts.tv_nsec;
}

TEST(LinuxSchedulerRealClockTest, TheCounterIsCLOCK_MONOTONICInNanoseconds) {
  LinuxScheduler scheduler(WaitMode::Spin);
  ASSERT_EQ(scheduler.QueryPerformanceFrequency(), 1'000'000'000);
  const int64_t before = MonotonicNs();
  const int64_t reading = scheduler.QueryPerformanceCounter();
  const int64_t after = MonotonicNs();
  EXPECT_LE(before, reading);
  EXPECT_LE(reading, after);
  int64_t last = reading;
  for (int i = 0; i < 100'000; ++i) {
    const int64_t next = scheduler.QueryPerformanceCounter();
    ASSERT_GE(next, last);
    last = next;
  }
}

TEST(LinuxSchedulerRealClockTest, IdleWakesNoEarlierThanTheMarginAllows) {
  LinuxScheduler scheduler(WaitMode::Sleep);
  const int64_t margin = scheduler.margin().Ns();
  const int64_t until = scheduler.QueryPerformanceCounter() + 30 * kMs;
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
  }
  {
    LinuxScheduler sleep(WaitMode::Sleep);
    EXPECT_EQ(prctl(PR_GET_TIMERSLACK), 1);
  }
  EXPECT_EQ(prctl(PR_GET_TIMERSLACK), before);
}

}  // namespace
}  // namespace vantrel::platform::linuxos
