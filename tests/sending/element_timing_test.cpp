#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "sending/morse_table.h"
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

// The routes the key line takes, and the trace event that is its key-up.
struct Route {
  const char* name;
  const char* portToUse;
  const char* keyUp;
};
constexpr Route kParallel{"Parallel", "Parallel", "lpt 0B"};
constexpr Route kSerial{"Serial", "Serial", "dtr off"};
// A shared line change is a request that waits for the logger's answer.
constexpr Route kShared{"SharedSerial", "Shared Serial", "send 303 0"};
void PrintTo(const Route& route, std::ostream* out) { *out << route.name; }

// The timeline: every wait of a transmission ends at an ideal edge, whatever
// runs between the waits and on whichever route, and a late wake is caught up
// or re-anchored.
class Timeline : public KeyerFixture, public ::testing::WithParamInterface<std::tuple<int, Route>> {
 protected:
  static constexpr const char* kText = "PARIS PARIS";

  void Key() {
    const auto& [wpm, route] = GetParam();
    p.linkChannel.loggerRunning = true;
    Start({{"WPM", std::to_string(wpm)},
           {"Slow Typing", "OFF"},
           {"SideTone", "ON"},
           {"Port to Use", route.portToUse},
           {"Dedicated Serial Port", "Comm3"}});
    At(0, [this] { p.CWTextBox.SetText(kText); });
  }

  // Where each edge begins, in ms: a key-down with its tone, a key-up with the
  // route's line change.
  std::vector<double> Edges() const {
    const std::string keyUp = std::get<Route>(GetParam()).keyUp;
    std::vector<double> edges;
    for (const std::string& line : p.trace.Lines()) {
      const size_t blank = line.find(' ');
      const std::string event = line.substr(blank + 1);
      if (event == "sound play 1" || event == keyUp) edges.push_back(std::stod(line.substr(0, blank)));
    }
    return edges;
  }

  // The ideal edges of kText from its first key-down, by the keyer's rules.
  std::vector<double> IdealEdges() const {
    const double dot = cw.DotTime;
    std::vector<double> edges;
    double t = 0;
    for (const char c : std::string(kText)) {
      const std::string code = CharToMorse(c, 1033);
      for (size_t i = 0; i < code.size(); ++i) {
        if (code[i] == '_') {
          t += (cw.WordSpace - 2 * cw.LetterSpace) * dot;
        } else {
          edges.push_back(t);
          t += code[i] == '-' ? cw.DashLength * dot : dot;
          edges.push_back(t);
        }
        if (i + 1 < code.size()) t += dot;
      }
      t += cw.LetterSpace * dot;
    }
    return edges;
  }

  // Each edge's lateness against the ideal, in ms, from the first edge.
  std::vector<double> Lateness() const {
    const std::vector<double> edges = Edges();
    const std::vector<double> ideal = IdealEdges();
    EXPECT_EQ(edges.size(), ideal.size());
    std::vector<double> late;
    for (size_t i = 0; i < std::min(edges.size(), ideal.size()); ++i) {
      late.push_back(edges[i] - edges[0] - ideal[i]);
    }
    return late;
  }

  // No element or gap is shorter than its ideal by more than a tenth of a dot.
  void ExpectNothingCutPastTheBound(const std::vector<double>& late) const {
    for (size_t i = 1; i < late.size(); ++i) {
      EXPECT_GE(late[i] - late[i - 1], -0.1 * cw.DotTime - 0.001) << "interval " << i;
    }
  }
};

TEST_P(Timeline, WhatRunsBetweenTheWaitsMovesNoEdge) {
  Key();
  // 300 us for every line write, indicator, tone call, marking step, poll
  // and request to the logger: a slow line call on every step.
  p.clock.SetActionCost(300'000);
  Run();
  for (const double late : Lateness()) EXPECT_NEAR(late, 0, 0.001);
}

TEST_P(Timeline, AWakeAQuarterDotLateIsCaughtUpWithoutDrift) {
  Key();
  const double dot = cw.DotTime;
  At(3 * dot, [this, dot] { p.clock.WakeLate(static_cast<int64_t>(dot / 4 * 1e6)); });
  Run();
  const std::vector<double> late = Lateness();
  ASSERT_FALSE(late.empty());
  EXPECT_NEAR(*std::max_element(late.begin(), late.end()), dot / 4, 0.001);
  ExpectNothingCutPastTheBound(late);
  // A tenth of a dot back per interval: on time again three edges on.
  const auto first = std::find_if(late.begin(), late.end(), [](double l) { return l > 0.001; });
  ASSERT_GE(late.end() - first, 4);
  for (auto it = first + 3; it != late.end(); ++it) EXPECT_NEAR(*it, 0, 0.001);
}

TEST_P(Timeline, AWakeThreeDotsLateStartsTheTimelineAgainThere) {
  Key();
  const double dot = cw.DotTime;
  At(3 * dot, [this, dot] { p.clock.WakeLate(static_cast<int64_t>(3 * dot * 1e6)); });
  Run();
  const std::vector<double> late = Lateness();
  ExpectNothingCutPastTheBound(late);
  const auto first = std::find_if(late.begin(), late.end(), [](double l) { return l > 0.001; });
  ASSERT_NE(first, late.end());
  // The late edge is the new origin: everything after keeps its ideal spacing from it.
  for (auto it = first; it != late.end(); ++it) EXPECT_NEAR(*it, 3 * dot, 0.001);
}

INSTANTIATE_TEST_SUITE_P(SpeedsAndRoutes, Timeline,
                         ::testing::Combine(::testing::Values(20, 40),
                                            ::testing::Values(kParallel, kSerial, kShared)),
                         [](const auto& info) {
                           return std::get<Route>(info.param).name +
                                  std::to_string(std::get<int>(info.param));
                         });

}  // namespace
}  // namespace vantrel::sending
