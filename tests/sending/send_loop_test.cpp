#include <gtest/gtest.h>

#include <algorithm>

#include "support/keyer_fixture.h"

namespace vantrel::sending {
namespace {

using testing::KeyerFixture;

constexpr platform::Colour kTransmitted = 0;
constexpr platform::Colour kTransmitting = 255;
constexpr platform::Colour kUnsent = 16711680;

class SendLoop : public KeyerFixture {};

TEST_F(SendLoop, TextRunsOutAndTheTransmissionEnds) {
  Start({{"Slow Typing", "OFF"}});
  std::vector<platform::Colour> colourOfQ;
  At(0, [&] { p.CWTextBox.SetText("CQ"); });
  // Q is marked at the start of the letter gap after C, and C shows as sent.
  At(760, [&] { colourOfQ = {p.CWTextBox.ColourAt(0), p.CWTextBox.ColourAt(1)}; });
  Run();
  EXPECT_EQ(colourOfQ, (std::vector<platform::Colour>{kTransmitted, kTransmitting}));
  EXPECT_EQ(TimesOf("keybox green").size(), 8u);  // -.-. --.-
  EXPECT_EQ(p.CWTextBox.Text(), "");
  EXPECT_FALSE(cw.Transmitting());
}

TEST_F(SendLoop, SlowTypingHoldsAndResumesAfterAnotherLeadDelay) {
  Start({{"PTT", "ON"}});
  At(0, [&] { p.CWTextBox.SetText("E"); });
  At(60'000, [&] { Type("E"); });
  Run();
  const auto downs = TimesOf("keybox green");
  ASSERT_EQ(downs.size(), 2u);
  EXPECT_DOUBLE_EQ(downs[1], 60'000 + 100);
  EXPECT_EQ(TimesOf("pttbox green").size(), 2u);  // raised again on the resume, never dropped
  EXPECT_TRUE(TimesOf("pttbox red").empty());
  EXPECT_EQ(p.CWTextBox.Text(), "EE");
  EXPECT_EQ(p.CWTextBox.ColourAt(1), kTransmitted);
  EXPECT_TRUE(cw.Transmitting());
  EXPECT_TRUE(cw.WaitingForText());
  EXPECT_EQ(cw.ResumePosition, 3);
}

TEST_F(SendLoop, JoinMarkGivesOneDotBetweenTheLetters) {
  Start({{"Slow Typing", "OFF"}});
  std::string shown;
  At(0, [&] { p.CWTextBox.SetText("B^T"); });
  At(650, [&] { shown = p.CWTextBox.Text(); });  // seen at the start of T
  Run();
  const auto downs = TimesOf("keybox green");
  const auto ups = TimesOf("keybox red");
  ASSERT_EQ(downs.size(), 5u);
  EXPECT_DOUBLE_EQ(downs[4] - ups[3], 60);
  EXPECT_EQ(shown, "BT");
}

class MarkAtTheStart : public KeyerFixture, public ::testing::WithParamInterface<std::string> {};

TEST_P(MarkAtTheStart, KeysNothingChangesNoSpeedAndStays) {
  Start();
  p.CWTextBox.SetText(GetParam());
  EXPECT_EQ(p.CWTextBox.Text(), GetParam());
  EXPECT_EQ(cw.WPM, 20);
  EXPECT_TRUE(TimesOf("keybox green").empty());
  EXPECT_TRUE(cw.Transmitting());  // held, waiting for more text
}

INSTANTIATE_TEST_SUITE_P(JoinAndSpeedMarks, MarkAtTheStart,
                         ::testing::Values("^", "\xBB", "\xAB"));

TEST_F(SendLoop, TwoSpeedUpMarksRaiseByFourUntilTheEnd) {
  Start({{"Slow Typing", "OFF"}});
  At(0, [&] { p.CWTextBox.SetText("E\xBB\xBB"
                                   "E"); });
  Run();
  const auto ups = TimesOf("keybox red");
  const auto downs = TimesOf("keybox green");
  ASSERT_EQ(downs.size(), 2u);
  EXPECT_DOUBLE_EQ(ups[1] - downs[1], 50);  // 24 WPM
  EXPECT_EQ(EventsStartingWith({"status"}),
            (std::vector<std::string>{"status \" Keying speed = 22 WPM\"",
                                      "status \" Keying speed = 24 WPM\"",
                                      "status \" Keying speed = 20 WPM\""}));
  EXPECT_EQ(cw.WPM, 20);
}

TEST_F(SendLoop, SpeedUpThenSlowDownRaisesByTwoAndTheSlowDownStays) {
  Start();
  At(0, [&] { p.CWTextBox.SetText("E\xBB\xAB"
                                   "E"); });
  Run();
  EXPECT_EQ(cw.WPM, 22);
  EXPECT_EQ(p.CWTextBox.Text(), "E\xAB"
                                "E");
  // The slow-down mark took a letter gap of its own, at the new speed.
  const auto downs = TimesOf("keybox green");
  const auto ups = TimesOf("keybox red");
  // Both gaps already at 22 WPM: the marks are read before the first gap.
  EXPECT_DOUBLE_EQ(downs[1] - ups[0], 6 * 55);
}

TEST_F(SendLoop, CharacterWithoutCodeKeysNothingButCostsALetterGap) {
  Start({{"Slow Typing", "OFF"}});
  At(0, [&] { p.CWTextBox.SetText("E|E"); });
  Run();
  const auto downs = TimesOf("keybox green");
  const auto ups = TimesOf("keybox red");
  ASSERT_EQ(downs.size(), 2u);
  EXPECT_DOUBLE_EQ(downs[1] - ups[0], 360);
}

TEST_F(SendLoop, NordicLettersKeyOnlyInTheirLanguages) {
  Start({{"Slow Typing", "OFF"}}, 1053);
  At(0, [&] { p.CWTextBox.SetText("\xC4"); });  // Ä
  Run();
  EXPECT_EQ(TimesOf("keybox green").size(), 4u);
}

TEST_F(SendLoop, AbortInMidCharacterKeysTheRestWithPttAlreadyOff) {
  Start({{"PTT", "ON"}, {"Slow Typing", "OFF"}});
  At(0, [&] { p.CWTextBox.SetText("MEET"); });
  At(100, [&] { control.mnuabort_click(); });  // during M's first dash
  Run();
  EXPECT_EQ(EventsStartingWith({"key", "ptt"}),
            (std::vector<std::string>{"pttbox green", "keybox green", "pttbox red", "keybox red", "keybox green",
                                      "keybox red", "pttbox red"}));  // the loop's own end, again
  EXPECT_EQ(p.CWTextBox.Text(), "");
  EXPECT_FALSE(cw.Transmitting());
}

TEST_F(SendLoop, AbortOnTheLastCharacterSendsNothingMore) {
  Start({{"Slow Typing", "OFF"}});
  At(0, [&] { p.CWTextBox.SetText("TT"); });
  At(400, [&] { control.mnuabort_click(); });  // during the second T
  Run();
  EXPECT_EQ(TimesOf("keybox green").size(), 2u);
  EXPECT_EQ(p.CWTextBox.Text(), "");
}

TEST_F(SendLoop, TextTypedWhileDrainingAfterAnAbortGoesOutAfterwards) {
  Start({{"Slow Typing", "OFF"}});
  At(0, [&] { p.CWTextBox.SetText("TEST"); });
  At(100, [&] {
    control.mnuabort_click();
    Type("E");
  });
  Run();
  const auto downs = TimesOf("keybox green");
  ASSERT_EQ(downs.size(), 2u);
  // The dash in hand ends at 280; the new transmission waits its own lead delay.
  EXPECT_DOUBLE_EQ(downs[1], 280 + 100);
  EXPECT_EQ(p.CWTextBox.Text(), "");
}

TEST_F(SendLoop, PollsTheLoggerBetweenCharactersOnly) {
  Start({{"Slow Typing", "OFF"}});
  const int before = p.link.polls;
  At(0, [&] { p.CWTextBox.SetText("EEE"); });
  Run();
  EXPECT_EQ(p.link.polls - before, 2);
}

TEST_F(SendLoop, MarkingLeavesUnsentTextInTheTypingColour) {
  Start();
  keyer.form.mnuSoftwareKeyer_Click();  // no keyer ticked: text alone, no transmission
  p.CWTextBox.SetText("AB");
  text.MarkSendPosition(1);
  EXPECT_EQ(p.CWTextBox.ColourAt(0), kTransmitting);
  EXPECT_EQ(p.CWTextBox.InsertColour(), kUnsent);
  text.MarkSendPosition(3);  // one beyond the end: all sent
  EXPECT_EQ(p.CWTextBox.ColourAt(1), kTransmitted);
  EXPECT_EQ(p.CWTextBox.InsertColour(), kTransmitting);
  EXPECT_EQ(p.CWTextBox.SelStart(), 2);
  EXPECT_TRUE(p.CWTextBox.Redrawing());
}

class WinKeyRoute : public KeyerFixture {
 protected:
  void SetUp() override {
    StartWithChip("WinKey", "\x0A");
    cw.Tx = sending::TxState::Sending;
  }
  std::string StepAt(const std::string& text, int16_t position) {
    p.CWTextBox.SetText(text);
    chip.written.clear();
    keyer.winKey.Feed(position);
    return chip.written;
  }
};

TEST_F(WinKeyRoute, SingleBarIsCutAndTheSecondOfTwoIsSent) {
  EXPECT_EQ(StepAt("A|B", 2), "B");
  EXPECT_EQ(p.CWTextBox.Text(), "AB");
  EXPECT_EQ(StepAt("A||B", 2), "|B");
  EXPECT_EQ(p.CWTextBox.Text(), "AB");
}

TEST_F(WinKeyRoute, UnsendableCharactersAreCut) {
  EXPECT_EQ(StepAt("!A", 1), "A");
  EXPECT_EQ(StepAt("^~A", 1), "A");
  EXPECT_EQ(StepAt("\x01Z", 1), "Z");
  EXPECT_EQ(StepAt("=", 1), "=");  // an ordinary character for the chip
}

TEST_F(WinKeyRoute, SpeedMarksGoToTheChip) {
  EXPECT_EQ(StepAt("\xBB\xBB"
                   "A",
                   1),
            std::string("\x1C\x11\x1C\x13"
                        "A"));
  EXPECT_EQ(cw.WPM, 19);  // from the chip's 15
}

TEST_F(WinKeyRoute, AnalogSpeedKeepsMarksFromTheChip) {
  keyer.winKeySettings.WinKeyAnalogSpeed = true;
  EXPECT_EQ(StepAt("\xAB"
                   "A",
                   1),
            "A");
  EXPECT_EQ(cw.WPM, 13);
}

TEST_F(WinKeyRoute, NothingLeftToSendAbortsWithoutMarking) {
  EXPECT_EQ(StepAt("A!", 2), std::string("\x1C\x14"));  // the abort restores the chip's speed
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(p.CWTextBox.Text(), "");
}

TEST_F(SendLoop, EveryMarkShowsWhatIsSentAndInHandWhateverTheEdits) {
  Start({{"Slow Typing", "OFF"}});
  std::vector<std::string> wrong;
  text.OnMark([&](int16_t position) {
    const std::string text = p.CWTextBox.Text();
    for (int i = 0; i < std::min<int>(position, static_cast<int>(text.size())); ++i) {
      const platform::Colour want = i + 1 < position ? kTransmitted : kTransmitting;
      if (p.CWTextBox.ColourAt(i) != want) {
        wrong.push_back(text + " at " + std::to_string(position) + ": " + std::to_string(i));
      }
    }
  });
  // A prosign and a speed mark are cut out of the text as they are reached,
  // and typing adds behind; the second transmission starts its marks afresh.
  At(0, [&] { p.CWTextBox.SetText("AB^T\xBB" "E"); });
  At(300, [&] { Type("ST"); });
  At(20'000, [&] { p.CWTextBox.SetText("XY"); });
  Run();
  EXPECT_TRUE(wrong.empty()) << wrong.front();
  EXPECT_EQ(TimesOf("keybox green").size(), 2u + 4 + 1 + 1 + 3 + 1 + 4 + 4);
}

}  // namespace
}  // namespace vantrel::sending
