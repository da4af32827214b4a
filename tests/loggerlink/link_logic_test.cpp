#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "link_fixture.h"
#include "support/scripted_chip.h"

namespace vantrel::loggerlink {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::LinkFixture;

class LinkLogic : public LinkFixture {};

TEST_F(LinkLogic, SlotsReadUpToTheirNulAndNoNulReadsEmpty) {
  Start();
  // W1AW, its NUL, and what an earlier longer call left behind.
  char junk[64];
  std::memset(junk, 'Q', sizeof junk);
  std::memcpy(junk, "W1AW\0K9XYZ", 10);
  std::memcpy(p.linkChannel.block.data(), junk, sizeof junk);
  LoggerWrites(LinkSlot::LinkMyCall, "  K1ABC");
  LoggerWrites(LinkSlot::LinkBand, "20m");
  link.PollLink();
  EXPECT_EQ(p.CallsignField.Text(), "W1AW");
  EXPECT_EQ(p.CallsignField.SelStart(), 4);
  EXPECT_EQ(keyer.link.MyCall, "K1ABC");
  EXPECT_EQ(keyer.link.Band, "20m");

  // 64 blanks and no NUL: the field goes empty.
  std::memset(p.linkChannel.block.data(), ' ', 64);
  link.PollLink();
  EXPECT_EQ(p.CallsignField.Text(), "");
}

TEST_F(LinkLogic, ACallFromTheLoggerGoesBackToItsSlotAndIsPosted) {
  Start();
  LoggerWrites(LinkSlot::LinkCall, "W1AW");
  link.PollLink();
  EXPECT_THAT(EventsStartingWith({"slot 0", "post"}), ElementsAre("slot 0 \"W1AW\"", "post 200 0"));
  // The same text again changes nothing.
  p.trace.Clear();
  link.PollLink();
  EXPECT_THAT(EventsStartingWith({"slot 0", "post"}), IsEmpty());
  // The logger empties the call: the field follows, and the empty text goes back.
  LoggerWrites(LinkSlot::LinkCall, "");
  link.PollLink();
  EXPECT_EQ(p.CallsignField.Text(), "");
  EXPECT_THAT(EventsStartingWith({"slot 0", "post"}), ElementsAre("slot 0 \"\"", "post 200 0"));
  EXPECT_EQ(LoggerReads(LinkSlot::LinkCall), "");
}

TEST_F(LinkLogic, ACommandOnItsWayToTheLoggerIsNoName) {
  Start();
  for (const char* command : {"Command ROTOR 45", "COMMAND x", "hexcommand 0A0B"}) {
    LoggerWrites(LinkSlot::LinkName, command);
    link.PollLink();
    EXPECT_EQ(p.NameField.Text(), "") << command;
  }
  // Only the prefix with its blank counts.
  LoggerWrites(LinkSlot::LinkName, "Commander Bob");
  link.PollLink();
  EXPECT_EQ(p.NameField.Text(), "Commander Bob");
}

TEST_F(LinkLogic, AnEmptyNumberReceivedShowsThePlaceholder) {
  Start();
  LoggerWrites(LinkSlot::LinkSRX, "042");
  link.PollLink();
  EXPECT_EQ(p.SRXField.Text(), "042");
  LoggerWrites(LinkSlot::LinkSRX, "");
  link.PollLink();
  EXPECT_EQ(p.SRXField.Text(), "###");
  EXPECT_EQ(LoggerReads(LinkSlot::LinkSRX), "###");
}

TEST_F(LinkLogic, WindowCommandsMatchExactlyAndRunOnce) {
  Start();
  LoggerWrites(LinkSlot::LinkControl, "close");
  link.PollLink();
  LoggerWrites(LinkSlot::LinkControl, "  Close");  // leading blanks count for nothing
  link.PollLink();
  link.PollLink();
  EXPECT_EQ(unloads, 1);
  LoggerWrites(LinkSlot::LinkControl, "Minimize");
  link.PollLink();
  LoggerWrites(LinkSlot::LinkControl, "Normal");
  link.PollLink();
  LoggerWrites(LinkSlot::LinkControl, "normal");
  link.PollLink();
  EXPECT_THAT(windowStates, ElementsAre(1, 0));
  EXPECT_EQ(LoggerReads(LinkSlot::LinkControl), "");
}

TEST_F(LinkLogic, FormatIsTakenFromTheEighthCharacterWhereverItStands) {
  Start();
  LoggerWrites(LinkSlot::LinkControl, "Format 000");
  link.PollLink();
  EXPECT_EQ(keyer.link.SerialFormat, "000");
  LoggerWrites(LinkSlot::LinkControl, "SetFormat 00");
  link.PollLink();
  EXPECT_EQ(keyer.link.SerialFormat, "at 00");
  // Case counts, and an unknown command is dropped.
  LoggerWrites(LinkSlot::LinkControl, "format 0");
  link.PollLink();
  EXPECT_EQ(keyer.link.SerialFormat, "at 00");
  EXPECT_EQ(vb::Format(9, keyer.link.SerialFormat.substr(3)), "09");
}

TEST_F(LinkLogic, NumbersAreKeysWithCtrlDoubleAndAltFourfold) {
  Start();
  for (const char* number : {"111", "112", "123", "124", "224", "247", "248", "448", "491", "492",
                             "27", "0", "-112", "113.5", "226 and more"}) {
    LoggerWrites(LinkSlot::LinkControl, number);
    link.PollLink();
  }
  // 124 is CTRL with key 62 and 247 CTRL 123.5, rounded to the even 124,
  // which fires the ALT row's first; 248 is ALT 62. None of those is F1.
  EXPECT_THAT(EventsStartingWith({"macro "}),
              ElementsAre("macro 1", "macro 12", "macro 25", "macro 13", "macro 13", "macro 24",
                          "macro 3", "macro 26"));
}

TEST_F(LinkLogic, AltLetterReachesTheHotKeySearch) {
  Start();
  keyer.macros.MacroCaptions[7] = "&CQ";
  LoggerWrites(LinkSlot::LinkControl, std::to_string(4 * 'C'));
  link.PollLink();
  EXPECT_THAT(EventsStartingWith({"macro "}), ElementsAre("macro 7"));
}

// A key that fires a macro polls again from inside: the command has been
// cleared by then and does not run twice.
TEST_F(LinkLogic, APollNestedInACommandDoesNotRunItAgain) {
  Start();
  struct Nesting : LinkWindow {
    LoggerLinkLogic* link = nullptr;
    int keys = 0;
    void cwTextBox_KeyDown(int16_t& /*KeyCode*/, int16_t& /*Shift*/) override {
      if (++keys < 5) link->PollLink();
    }
    void RememberCallsign() override {}
    void Unload() override {}
    void SetWindowState(int16_t /*state*/) override {}
  } nesting;
  nesting.link = &link;
  link.Attach(keyer.link, nesting, keyer.winKey);
  LoggerWrites(LinkSlot::LinkControl, "112");
  link.PollLink();
  EXPECT_EQ(nesting.keys, 1);
}

TEST_F(LinkLogic, ARadioChangeSelectsOnce) {
  testing::ScriptedChip chip{"\x17"};
  p.cwControl.device = &chip;
  Start({{"Keyer to Use", "WinKey2"}, {"WinKey Port", "3"}});
  chip.written.clear();
  LoggerWrites(LinkSlot::LinkRadio, "1");
  for (int i = 0; i < 3; ++i) link.PollLink();
  LoggerWrites(LinkSlot::LinkRadio, "2");
  for (int i = 0; i < 3; ++i) link.PollLink();
  // The whole pin byte each time: PTT, and the key output of that radio.
  EXPECT_EQ(chip.written, "\x09\x05\x09\x09");
  EXPECT_EQ(keyer.link.ActiveRadio, 2);
  p.cwControl.device = nullptr;
}

TEST_F(LinkLogic, WritingASlotLeavesTheLoggersHalfAlone) {
  Start();
  std::fill(p.linkChannel.block.begin(), p.linkChannel.block.end(), 'x');
  link.WriteLinkSlot(static_cast<int16_t>(LinkSlot::LinkName), "Hiram");
  const char* name = p.linkChannel.block.data() + 128;
  EXPECT_EQ(std::string(name, 6), std::string("Hiram\0", 6));
  EXPECT_EQ(std::string(name + 6, 58), std::string(58, ' '));
  EXPECT_EQ(std::string(name + 64, 64), std::string(64, 'x'));
  EXPECT_EQ(std::string(name - 64, 64), std::string(64, 'x'));

  // 63 characters keep their NUL; 64 lose it and read as empty.
  link.WriteLinkSlot(static_cast<int16_t>(LinkSlot::LinkName), std::string(63, 'a'));
  EXPECT_EQ(LoggerReads(LinkSlot::LinkName), std::string(63, 'a'));
  link.WriteLinkSlot(static_cast<int16_t>(LinkSlot::LinkName), std::string(70, 'a'));
  EXPECT_EQ(LoggerReads(LinkSlot::LinkName), "");
  EXPECT_EQ(keyer.link.Slots[1], std::string(64, 'a'));
}

TEST_F(LinkLogic, ACommandAndAContactReachTheLogger) {
  Start();
  p.CallsignField.SetText("W1AW");
  p.trace.Clear();
  link.SendLinkCommand("Command ROTOR 45");
  link.LogContact();
  EXPECT_EQ(LoggerReads(LinkSlot::LinkName), "Command ROTOR 45");
  EXPECT_THAT(EventsStartingWith({"post"}), ElementsAre("post 200 0", "post 100 0"));
  EXPECT_EQ(p.cmbPrevious.Text(), "W1AW");
}

TEST_F(LinkLogic, WithoutALoggerNothingIsReadAndPostsGoNowhere) {
  Start({}, false);
  LoggerWrites(LinkSlot::LinkCall, "W1AW");
  LoggerWrites(LinkSlot::LinkControl, "Close");
  link.PollLink();
  link.SendLinkCommand("Command ROTOR 45");
  link.PostLink(platform::LinkCode::ClearLog, 0);
  link.LogContact();
  EXPECT_EQ(p.CallsignField.Text(), "");
  EXPECT_EQ(unloads, 0);
  EXPECT_EQ(LoggerReads(LinkSlot::LinkName), "");
  EXPECT_EQ(keyer.link.MyCall, "");
  EXPECT_EQ(keyer.link.SerialFormat, "");
  for (const std::string& copy : keyer.link.Slots) EXPECT_EQ(vb::TrimAtNul(copy), "");
  EXPECT_THAT(EventsStartingWith({"post", "slot"}),
              ElementsAre("post 200 0", "post 700 0", "post 100 0"));
}

TEST_F(LinkLogic, Timer1ReadsTheLoggerFiveTimesASecond) {
  Start();
  std::string before, after;
  At(10, [&] { LoggerWrites(LinkSlot::LinkCall, "W1AW"); });
  At(190, [&] { before = p.CallsignField.Text(); });
  At(201, [&] { after = p.CallsignField.Text(); });
  Run();
  EXPECT_EQ(before, "");
  EXPECT_EQ(after, "W1AW");
}

// Timer1 is off while the software keyer sends; the loop polls between
// characters, so Esc from the logger stops at the end of the character in hand.
TEST_F(LinkLogic, EscFromTheLoggerAbortsBetweenTwoCharacters) {
  Start({{"Slow Typing", "OFF"}});
  At(0, [&] { p.CWTextBox.SetText("EEEEE"); });
  // Arrives in the PTT lead delay, before the first E.
  At(0, [&] { LoggerWrites(LinkSlot::LinkControl, "27"); });
  Run();
  // The transmission ends as the first E does; the E already in hand drains.
  EXPECT_EQ(TimesOf("post 900 0").front(), 160);
  EXPECT_EQ(TimesOf("text \"\"").front(), 160);
  EXPECT_EQ(TimesOf("keybox green").size(), 2u);
  EXPECT_EQ(LoggerReads(LinkSlot::LinkControl), "");
}

TEST_F(LinkLogic, SharedSerialLoggerThatStopsAnsweringIsToldToRestAndLeftAlone) {
  Start({{"Port to Use", "Shared Serial"}, {"Dedicated Serial Port", "Comm3"}, {"PTT", "ON"},
         {"Slow Typing", "OFF"}});
  p.linkChannel.answering = false;
  At(0, [&] { p.CWTextBox.SetText("TEST"); });
  // A slow logger's late answer arrives while the report is in the box.
  At(300, [&] { p.linkChannel.answering = true; });
  Run();
  // Key up and PTT off are asked for, and the report is not keyed on the
  // route that failed, however the logger answers meanwhile.
  EXPECT_THAT(EventsStartingWith({"send"}), ElementsAre("send 503 0", "send 303 0", "send 603 0"));
  EXPECT_THAT(EventsStartingWith({"text \"CW Port"}),
              ElementsAre("text \"CW Port error : the logger did not answer\""));
  EXPECT_FALSE(keyer.cw.Transmitting());

  // Opened afresh, the route has the line back.
  keyer.lines.OpenKeyerPort();
  p.trace.Clear();
  At(2000, [&] { p.CWTextBox.SetText("T"); });
  Run();
  EXPECT_THAT(EventsStartingWith({"send"}),
              ElementsAre("send 503 0", "send 403 0", "send 303 0", "send 603 0"));
}

TEST_F(LinkLogic, SharedSerialLeavesTheLoggersRestToTheChannelWhileALineIsActive) {
  Start({{"Port to Use", "Shared Serial"}, {"Dedicated Serial Port", "Comm3"}, {"PTT", "ON"},
         {"Slow Typing", "OFF"}});
  const std::pair<int32_t, int32_t> rest{303, 603}, none{};
  EXPECT_EQ(p.linkChannel.restRequests, none);
  At(0, [&] { p.CWTextBox.SetText("E"); });
  At(10, [&] { EXPECT_EQ(p.linkChannel.restRequests, rest); });
  Run();
  EXPECT_EQ(p.linkChannel.restRequests, none);
}

TEST_F(LinkLogic, SharedSerialLoggerLostOnAKeyDownIsToldKeyUpFirst) {
  Start({{"Port to Use", "Shared Serial"}, {"Dedicated Serial Port", "Comm2"}, {"PTT", "OFF"},
         {"Slow Typing", "OFF"}});
  At(0, [&] { p.linkChannel.answering = false; });
  At(0, [&] { p.CWTextBox.SetText("EEE"); });
  Run();
  EXPECT_THAT(EventsStartingWith({"send"}), ElementsAre("send 402 0", "send 302 0", "send 602 0"));
  EXPECT_EQ(p.KeyBox.Shown(), platform::Picture::Red);
}

}  // namespace
}  // namespace vantrel::loggerlink
