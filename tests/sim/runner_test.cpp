#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "runner.h"
#include "script.h"

namespace vantrel::sim {
namespace {

using ::testing::Contains;
using ::testing::Not;

std::vector<std::string> RunScript(const std::string& script, RunOptions options = {}) {
  std::istringstream in(script);
  const auto events = ParseScript(in);
  std::vector<std::string> lines;
  Run(options, events, [&](const std::string& line) { lines.push_back(line); });
  return lines;
}

long CountOf(const std::vector<std::string>& lines, const std::string& line) {
  return std::count(lines.begin(), lines.end(), line);
}

TEST(Runner, OneLetterWithPtt) {
  RunOptions options;
  options.settings = {{"PTT", "ON"}, {"Slow Typing", "OFF"}};
  EXPECT_EQ(RunScript("0 send E\n", options),
            (std::vector<std::string>{
                "0.000 menu mnuTX disabled",
                "0.000 menu mnuAbort disabled",
                "0.000 menu mnuSoftwareKeyer checked",
                "0.000 menu mnuVOX checked",
                "0.000 status \" Keying speed = 20 WPM\"",
                "0.000 text \"E\"",
                "0.000 mark 1",
                "0.000 menu mnuConfig disabled",
                "0.000 menu mnuTX disabled",
                "0.000 menu mnuAbort enabled",
                "0.000 menu mnuView disabled",
                "0.000 menu mnuKeying disabled",
                "0.000 post 900 1",
                "0.000 ptt on",
                "100.000 key down",
                "160.000 key up",
                "160.000 text \"\"",
                "160.000 menu mnuTX enabled",
                "160.000 menu mnuAbort disabled",
                "160.000 menu mnuConfig enabled",
                "160.000 menu mnuView enabled",
                "160.000 menu mnuKeying enabled",
                "160.000 status \" Keying speed = 20 WPM\"",
                "160.000 post 900 0",
                "160.000 ptt off",
            }));
}

TEST(Runner, NothingAfterUntilIsPrintedOrRun) {
  RunOptions options;
  options.settings = {{"PTT", "ON"}};
  options.untilNs = 120'000'000;  // inside the dot of the E
  const auto lines = RunScript("0 send E\n1000 send T\n", options);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "100.000 key down");
  EXPECT_THAT(lines, Not(Contains("1000.000 text \"T\"")));
}

TEST(Runner, KeyerSectionSettingsLandInTheKeyerSection) {
  RunOptions options;
  options.settings = {{"Keyer to Use", "WinKey"},
                      {"winkey hold radio polling", "True"},
                      {"WinKey Analog Speed", "True"}};
  const auto lines = RunScript("0 menu mnuabort\n", options);
  EXPECT_EQ(CountOf(lines, "0.000 post 150 0"), 1);  // the hold is released
  // With the speed on the chip's knob, the Abort writes no speed to it.
  EXPECT_FALSE(std::any_of(lines.begin(), lines.end(),
                           [](const std::string& line) { return line.find("winkey") != std::string::npos; }));
}

TEST(Runner, AppendDuringATransmissionGoesOutInIt) {
  RunOptions options;
  options.settings = {{"Slow Typing", "OFF"}};
  const auto lines = RunScript("0 send E\n30 append T\n", options);
  EXPECT_EQ(CountOf(lines, "0.000 post 900 1"), 1);
  EXPECT_EQ(CountOf(lines, "100.000 text \"ET\""), 1);
  EXPECT_EQ(CountOf(lines, "340.000 key down"), 1);  // T, one letter gap after the E
  EXPECT_EQ(CountOf(lines, "520.000 key up"), 1);
  EXPECT_EQ(lines.back(), "520.000 post 900 0");
}

TEST(Runner, AbortEndsAHold) {
  RunOptions options;
  options.settings = {{"PTT", "ON"}};
  const auto lines = RunScript("0 send E\n1000 menu mnuabort\n", options);
  const auto ended = std::find(lines.begin(), lines.end(), "1000.000 post 900 0");
  ASSERT_NE(ended, lines.end());
  EXPECT_EQ(std::count(lines.begin(), ended, "160.000 post 900 0"), 0);  // held, not ended, by the slow typing
  EXPECT_EQ(CountOf(lines, "1000.000 ptt off"), 1);
  EXPECT_EQ(CountOf(lines, "1000.000 text \"\""), 1);
}

}  // namespace
}  // namespace vantrel::sim
