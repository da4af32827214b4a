#include <gtest/gtest.h>

#include "support/keyer_fixture.h"

namespace vantrel::mainwindow {
namespace {

using testing::KeyerFixture;

class TextBoxChange : public KeyerFixture {};

TEST_F(TextBoxChange, NothingStartsBeforeStartUpHasFinished) {
  p.CWTextBox.SetText("CQ");  // the keyer has not been started
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_TRUE(TimesOf("keybox green").empty());
}

TEST_F(TextBoxChange, NothingStartsWithoutAKeyer) {
  StartWithChip("WinKey", "");  // ticked, the port open, but no chip answered
  p.CWTextBox.SetText("CQ");
  EXPECT_EQ(chip.written, std::string("\x00\x02", 2));
  EXPECT_FALSE(cw.Transmitting());
}

TEST_F(TextBoxChange, WinKeyRouteHandsOverOnlyWithThePortOpen) {
  StartWithChip("WinKey", "\x0A");
  p.cwControl.SetPortOpen(false);
  p.CWTextBox.SetText("CQ");
  EXPECT_FALSE(cw.Transmitting());
  p.CWTextBox.SetText("");
  p.cwControl.SetPortOpen(true);
  chip.written.clear();
  p.CWTextBox.SetText("CQ");
  EXPECT_TRUE(cw.Transmitting());
  EXPECT_EQ(chip.written, "\x02\x0F" "C");  // the speed, then one character
}

TEST_F(TextBoxChange, TypingDuringTheLastCharacterContinuesTheSameTransmission) {
  Start({{"PTT", "ON"}, {"Slow Typing", "OFF"}});
  At(0, [&] { Type("T"); });
  At(100, [&] { Type("T"); });  // handled inside the dash of the first T
  Run();
  EXPECT_EQ(TimesOf("keybox green").size(), 2u);
  EXPECT_EQ(TimesOf("pttbox green").size(), 1u);
  EXPECT_EQ(TimesOf("pttbox red").size(), 1u);
}

TEST_F(TextBoxChange, TypingAfterTheEndStartsANewTransmissionWithItsLeadDelay) {
  Start({{"PTT", "ON"}, {"Slow Typing", "OFF"}});
  At(0, [&] { Type("E"); });
  At(1000, [&] { Type("E"); });
  Run();
  const auto downs = TimesOf("keybox green");
  ASSERT_EQ(downs.size(), 2u);
  EXPECT_DOUBLE_EQ(downs[1], 1100);
  EXPECT_EQ(TimesOf("pttbox green").size(), 2u);
}

}  // namespace
}  // namespace vantrel::mainwindow
