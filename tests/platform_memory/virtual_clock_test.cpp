#include <gtest/gtest.h>

#include "platform/memory/virtual_clock.h"

namespace vantrel::platform::memory {
namespace {

TEST(VirtualClock, EachCounterReadingCostsItsReadCost) {
  VirtualClock clock;
  EXPECT_EQ(clock.QueryPerformanceFrequency(), 1'000'000'000);
  EXPECT_EQ(clock.QueryPerformanceCounter(), 0);  // free by default
  EXPECT_EQ(clock.QueryPerformanceCounter(), 0);
  clock.SetReadCost(250);
  EXPECT_EQ(clock.QueryPerformanceCounter(), 0);  // a reading shows the time before its cost
  EXPECT_EQ(clock.QueryPerformanceCounter(), 250);
  EXPECT_EQ(clock.NowNs(), 500);
}

TEST(VirtualClock, TimeNeverGoesBack) {
  VirtualClock clock;
  clock.AdvanceTo(1'500'000);
  clock.AdvanceTo(1'000'000);
  clock.IdleUntil(-5);
  clock.SwitchToThread(0);
  EXPECT_EQ(clock.NowNs(), 1'500'000);
  EXPECT_DOUBLE_EQ(clock.NowMs(), 1.5);
  clock.SwitchToThread(2'000'000);
  clock.IdleUntil(2'000'001);
  EXPECT_EQ(clock.NowNs(), 2'000'001);
}

}  // namespace
}  // namespace vantrel::platform::memory
