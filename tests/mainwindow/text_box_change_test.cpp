#include <gtest/gtest.h>

#include "support/keyer_fixture.h"

namespace vantrel::mainwindow {
namespace {

using testing::KeyerFixture;

class TextBoxChange : public KeyerFixture {};

TEST_F(TextBoxChange, NothingStartsBeforeStartUpHasFinished) {
  p.CWTextBox.SetText("CQ");  // the keyer has not been started
  EXPECT_FALSE(cw.Transmitting);
  EXPECT_TRUE(TimesOf("keybox green").empty());
}

TEST_F(TextBoxChange, NothingStartsWithoutAKeyer) {
  Start({{"Keyer to Use", "WinKey"}});  // ticked, but no chip is open
  p.winkey.portOpen = true;
  p.CWTextBox.SetText("CQ");
  EXPECT_EQ(p.winkey.runsStarted, 0);
  EXPECT_FALSE(cw.Transmitting);
}

TEST_F(TextBoxChange, WinKeyRouteHandsOverOnlyWithThePortOpen) {
  Start({{"Keyer to Use", "WinKey"}});
  p.winkey.open = true;
  p.CWTextBox.SetText("CQ");
  EXPECT_EQ(p.winkey.runsStarted, 0);
  p.CWTextBox.SetText("");
  p.winkey.portOpen = true;
  p.CWTextBox.SetText("CQ");
  EXPECT_EQ(p.winkey.runsStarted, 1);
  EXPECT_TRUE(TimesOf("keybox green").empty());
}

TEST_F(TextBoxChange, MoxOnlyEnablesTheCommand) {
  Start({{"Keying", "MOX"}});
  Type("CQ");
  EXPECT_TRUE(p.mnuTX.Enabled());
  EXPECT_FALSE(cw.Transmitting);
  EXPECT_EQ(p.CWTextBox.Text(), "CQ");
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

TEST_F(TextBoxChange, AMessageWrittenIntoTheBoxIsSentLikeTypedText) {
  Start({{"Slow Typing", "OFF"}});
  p.CWTextBox.SetText("CW Port error : E");
  EXPECT_GT(TimesOf("keybox green").size(), 20u);
}

}  // namespace
}  // namespace vantrel::mainwindow
