#include <gtest/gtest.h>

#include "sending/software_keyer.h"
#include "support/keyer_fixture.h"

namespace vantrel::sending {
namespace {

using testing::KeyerFixture;

TEST(ComputeDotLength, FollowsTheStandardWordAtDefaultProportions) {
  const std::pair<int16_t, int32_t> table[] = {{5, 247}, {10, 122}, {15, 81}, {20, 60}, {25, 48},
                                               {30, 40}, {40, 30},  {50, 24}, {60, 20}, {80, 15}};
  for (const auto& [wpm, dot] : table) EXPECT_EQ(ComputeDotLength(wpm, 3, 3, 7), dot) << wpm;
}

TEST(ComputeDotLength, NeverGoesBelowTwelve) {
  // 0 and -5 WPM give a negative dot; 0, 0, 0, 0 a zero divisor.
  for (const int16_t wpm : {99, 32767, 0, -5}) EXPECT_EQ(ComputeDotLength(wpm, 3, 3, 7), 12) << wpm;
  EXPECT_EQ(ComputeDotLength(0, 0, 0, 0), 12);
}

TEST(ComputeDotLength, AChangedProportionChangesTheDot) {
  EXPECT_EQ(ComputeDotLength(20, 3.5, 3, 7), 58);  // P = 52
}

TEST(ComputeDotLength, RoundsTiesToEven) {
  // A dash of 15.25 makes the standard word 80 dots: 750 / wpm ms.
  EXPECT_EQ(ComputeDotLength(12, 15.25, 0, 0), 62);  // 62.5
  EXPECT_EQ(ComputeDotLength(20, 15.25, 0, 0), 38);  // 37.5
}

class ElementTiming : public KeyerFixture {};

TEST_F(ElementTiming, DashWaitsThreeDotsAndWordTakesSevenInAll) {
  Start({{"Slow Typing", "OFF"}});
  At(0, [&] { p.CWTextBox.SetText("T E"); });
  Run();
  const auto downs = TimesOf("keybox green");
  const auto ups = TimesOf("keybox red");
  ASSERT_EQ(downs.size(), 2u);
  EXPECT_DOUBLE_EQ(downs[0], 100);           // after the PTT lead delay
  EXPECT_DOUBLE_EQ(ups[0] - downs[0], 180);  // the dash
  EXPECT_DOUBLE_EQ(downs[1] - ups[0], 420);  // letter gap, the space, letter gap
}

TEST_F(ElementTiming, ElementGapIsOneDotAndNoneFollowsTheLastElement) {
  Start({{"Slow Typing", "OFF"}, {"WPM", "40"}});
  At(0, [&] { p.CWTextBox.SetText("IE"); });
  Run();
  const auto downs = TimesOf("keybox green");
  const auto ups = TimesOf("keybox red");
  ASSERT_EQ(downs.size(), 3u);
  EXPECT_DOUBLE_EQ(downs[1] - ups[0], 30);  // element gap
  EXPECT_DOUBLE_EQ(downs[2] - ups[1], 90);  // letter gap alone: no element gap before it
}

TEST_F(ElementTiming, WordSpaceBelowTwoLetterSpacesCostsTwoLetterGaps) {
  Start({{"Slow Typing", "OFF"}, {"Word Space", "5"}});  // 5 < 2 x 3: the "_" wait is negative
  At(0, [&] { p.CWTextBox.SetText("E E"); });
  Run();
  const auto downs = TimesOf("keybox green");
  const auto ups = TimesOf("keybox red");
  ASSERT_EQ(downs.size(), 2u);
  const double dot = cw.DotTime;
  EXPECT_DOUBLE_EQ(downs[1] - ups[0], 6 * dot);
}

TEST_F(ElementTiming, OverheadLargerThanTheGapSkipsItWithoutWaiting) {
  Start({{"Slow Typing", "OFF"}});
  p.clock.SetReadCost(100'000'000);  // every counter reading costs 100 ms, more than a dot
  At(0, [&] { p.CWTextBox.SetText("I"); });
  Run();
  const auto downs = TimesOf("keybox green");
  const auto ups = TimesOf("keybox red");
  ASSERT_EQ(downs.size(), 2u);
  // Only the two readings around the tone's stop lie between: the gap itself is skipped.
  EXPECT_DOUBLE_EQ(downs[1] - ups[0], 200);
  EXPECT_EQ(cw.SidetoneOverhead, FixedMs::FromMs(100));
}

TEST_F(ElementTiming, SidetoneOffMeasuresItselfEvenWhenTheToneIsOff) {
  Start();
  p.clock.SetReadCost(3'000);  // 3 us a reading
  software.SidetoneOff();
  EXPECT_EQ(cw.SidetoneOverhead.units, 30);  // 0.003 ms
  EXPECT_TRUE(EventsStartingWith({"sound"}).empty());
}

TEST_F(ElementTiming, ToneStartsBeforeTheKeyClosesAndStopsAfterItOpens) {
  Start({{"Slow Typing", "OFF"}, {"SideTone", "ON"}});
  At(0, [&] { p.CWTextBox.SetText("E"); });
  Run();
  EXPECT_EQ(EventsStartingWith({"sound", "key"}),
            (std::vector<std::string>{"sound play 1", "sound volume 0", "keybox green",
                                      "keybox red", "sound volume -10000", "sound stop",
                                      "sound position 0"}));
}

TEST_F(ElementTiming, WaitsOfTwentyMsOrLessNeverPumpEvents) {
  Start();
  bool handled = false;
  At(0, [&] { handled = true; });
  software.TimedWait(20.0);
  EXPECT_FALSE(handled);
  EXPECT_DOUBLE_EQ(p.clock.NowMs(), 20);
  software.TimedWait(20.5);
  EXPECT_TRUE(handled);
  EXPECT_DOUBLE_EQ(p.clock.NowMs(), 40.5);
}

TEST_F(ElementTiming, AnEventDuringAWaitWaitsForTheNextPump) {
  Start();
  double handledAt = -1;
  At(10, [&] { handledAt = p.clock.NowMs(); });
  software.TimedWait(60.0);  // pumps at 0 only
  EXPECT_LT(handledAt, 0);
  software.TimedWait(30.0);  // pumps at 60
  EXPECT_DOUBLE_EQ(handledAt, 60);
}

TEST_F(ElementTiming, StopSendingEndsAWaitAtOnce) {
  Start();
  At(0, [&] { cw.Tx = sending::TxState::Stopping; });
  software.TimedWait(500.0);
  EXPECT_DOUBLE_EQ(p.clock.NowMs(), 0);
}

TEST_F(ElementTiming, WithoutTheYieldingBranchEventsArePumpedThroughoutAWait) {
  p.clock.SetWindowsNT(false);
  Start();
  p.clock.SetReadCost(1'000'000);  // time moves by the readings alone
  double handledAt = -1;
  At(10, [&] { handledAt = p.clock.NowMs(); });
  software.TimedWait(100.0);
  EXPECT_GE(handledAt, 10);
  EXPECT_LE(handledAt, 12);
}

TEST_F(ElementTiming, PriorityIsRaisedForTheWholeTransmission) {
  Start({{"Slow Typing", "OFF"}});
  int priorityWhileKeying = -1;
  At(0, [&] { p.CWTextBox.SetText("T"); });
  At(100, [&] { priorityWhileKeying = p.clock.ThreadPriority(); });  // the dash's wait pumps
  Run();
  EXPECT_EQ(priorityWhileKeying, platform::kThreadPriorityTimeCritical);
  EXPECT_EQ(p.clock.ThreadPriority(), platform::kThreadPriorityNormal);
  EXPECT_EQ(p.clock.PriorityClass(), platform::kNormalPriorityClass);
}

}  // namespace
}  // namespace vantrel::sending
