#include "platform/linux/wake_margin.h"

#include <gtest/gtest.h>

namespace vantrel::platform::linuxos {
namespace {

constexpr int64_t kUs = 1000;
constexpr int kWindow = WakeMargin::kBuckets * WakeMargin::kPerBucket;

WakeMargin::Limits TestLimits() {
  WakeMargin::Limits limits;
  limits.floorNs = 100 * kUs;
  limits.ceilingNs = 4000 * kUs;
  limits.headroomNs = 100 * kUs;
  limits.initialNs = 1000 * kUs;
  return limits;
}

void ObserveOnTime(WakeMargin& margin, int times, int64_t lateness = 0) {
  for (int i = 0; i < times; ++i) margin.Observe(lateness);
}

TEST(WakeMarginTest, StartsAtTheInitialMarginHeldWithinTheLimits) {
  EXPECT_EQ(WakeMargin(TestLimits()).Ns(), 1000 * kUs);
  WakeMargin::Limits high = TestLimits();
  high.initialNs = 50'000 * kUs;
  EXPECT_EQ(WakeMargin(high).Ns(), high.ceilingNs);
  WakeMargin::Limits low = TestLimits();
  low.initialNs = 0;
  EXPECT_EQ(WakeMargin(low).Ns(), low.floorNs);
}

TEST(WakeMarginTest, KeepsTheInitialMarginUntilAWholeWindowHasBeenSeen) {
  WakeMargin margin(TestLimits());
  ObserveOnTime(margin, kWindow, 150 * kUs);
  EXPECT_EQ(margin.Ns(), 1000 * kUs);
  margin.Observe(150 * kUs);
  EXPECT_EQ(margin.Ns(), 250 * kUs);
}

TEST(WakeMarginTest, ALateWakeUpIsCoveredAtOnceAndForTheWholeWindow) {
  WakeMargin margin(TestLimits());
  margin.Observe(2500 * kUs);
  EXPECT_EQ(margin.Ns(), 2600 * kUs);
  // Prompt wake-ups after it do not narrow it while it is remembered...
  ObserveOnTime(margin, kWindow - WakeMargin::kPerBucket - 1, 50 * kUs);
  EXPECT_EQ(margin.Ns(), 2600 * kUs);
  // ...and once it has been forgotten, the margin is what they need.
  ObserveOnTime(margin, WakeMargin::kPerBucket + 1, 50 * kUs);
  EXPECT_EQ(margin.Ns(), 150 * kUs);
}

TEST(WakeMarginTest, CoversTheWorstOfTheRecentWakeUps) {
  WakeMargin margin(TestLimits());
  ObserveOnTime(margin, kWindow);
  for (int i = 0; i < 40; ++i) margin.Observe(i % 10 == 0 ? 700 * kUs : 120 * kUs);
  EXPECT_EQ(margin.Ns(), 800 * kUs);
}

TEST(WakeMarginTest, AnOutlierRaisesItOnlyToTheCeiling) {
  WakeMargin margin(TestLimits());
  margin.Observe(30'000 * kUs);
  EXPECT_EQ(margin.Ns(), 4000 * kUs);
}

TEST(WakeMarginTest, PromptOrEarlyWakeUpsBringItToTheFloorAndNoLower) {
  WakeMargin margin(TestLimits());
  ObserveOnTime(margin, kWindow + 1, -5000 * kUs);
  EXPECT_EQ(margin.Ns(), 100 * kUs);
}

}  // namespace
}  // namespace vantrel::platform::linuxos
