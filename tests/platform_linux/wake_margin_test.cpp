#include "platform/linux/wake_margin.h"

#include <gtest/gtest.h>

namespace vantrel::platform::linuxos {
namespace {

constexpr int64_t kUs = 1000;
constexpr int kWindow = WakeMargin::kBuckets * WakeMargin::kPerBucket;
constexpr WakeMargin::Limits kLimits{.floorNs = 100 * kUs,
                                     .ceilingNs = 4000 * kUs,
                                     .headroomNs = 100 * kUs,
                                     .initialNs = 1000 * kUs};

void Observe(WakeMargin& margin, int times, int64_t lateness) {
  for (int i = 0; i < times; ++i) margin.Observe(lateness);
}

// The floor sits above the headroom here, so that it is what holds the margin up.
TEST(WakeMarginTest, IsHeldBetweenTheFloorAndTheCeiling) {
  WakeMargin::Limits limits = kLimits;
  limits.floorNs = 300 * kUs;
  limits.initialNs = 50'000 * kUs;
  EXPECT_EQ(WakeMargin(limits).Ns(), 4000 * kUs);
  limits.initialNs = 0;
  WakeMargin margin(limits);
  EXPECT_EQ(margin.Ns(), 300 * kUs);
  margin.Observe(30'000 * kUs);
  EXPECT_EQ(margin.Ns(), 4000 * kUs);
  Observe(margin, kWindow, -5000 * kUs);  // early counts as prompt
  EXPECT_EQ(margin.Ns(), 300 * kUs);
}

TEST(WakeMarginTest, ALateWakeUpIsCoveredAtOnceAndForTheWholeWindow) {
  WakeMargin margin(kLimits);
  margin.Observe(2500 * kUs);
  EXPECT_EQ(margin.Ns(), 2600 * kUs);
  // Prompt wake-ups after it do not narrow it while it is remembered...
  Observe(margin, kWindow - WakeMargin::kPerBucket - 1, 50 * kUs);
  EXPECT_EQ(margin.Ns(), 2600 * kUs);
  // ...and once it has been forgotten, the margin is what they need.
  Observe(margin, WakeMargin::kPerBucket + 1, 50 * kUs);
  EXPECT_EQ(margin.Ns(), 150 * kUs);
}

}  // namespace
}  // namespace vantrel::platform::linuxos
