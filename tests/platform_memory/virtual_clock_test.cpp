#include <gtest/gtest.h>

#include "platform/memory/virtual_clock.h"

namespace vantrel::platform::memory {
namespace {

TEST(VirtualClock, TimeOnlyMovesOnAndEachCounterReadingCostsItsReadCost) {
  VirtualClock clock;
  EXPECT_EQ(clock.QueryPerformanceCounter(), 0);  // free by default
  EXPECT_EQ(clock.QueryPerformanceCounter(), 0);
  clock.AdvanceTo(1'500'000);
  clock.AdvanceTo(1'000'000);
  clock.IdleUntil(-5);
  clock.SwitchToThread(0);
  EXPECT_EQ(clock.NowNs(), 1'500'000);
  EXPECT_DOUBLE_EQ(clock.NowMs(), 1.5);
  clock.SwitchToThread(2'000'000);
  clock.IdleUntil(2'000'001);
  clock.SetReadCost(250);
  EXPECT_EQ(clock.QueryPerformanceCounter(), 2'000'001);  // the time before its cost
  EXPECT_EQ(clock.QueryPerformanceCounter(), 2'000'251);
  EXPECT_EQ(clock.NowNs(), 2'000'501);
}

}  // namespace
}  // namespace vantrel::platform::memory
