#include "winkey/winkey_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/keyer_fixture.h"

namespace vantrel::winkey {
namespace {

using platform::memory::Trace;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kHostOpen("\x00\x02", 2);
const std::string kWinKey("\x0A");
const std::string kWinKey2("\x17");

class WinKeyHostTest : public testing::KeyerFixture {
 protected:
  // What went to the chip since the last look, in hexadecimal.
  std::string Wire() { return Trace::Hex(std::exchange(chip.written, {})); }
  void FromChip(const std::string& bytes) { p.cwControl.Deliver(bytes); }
  WinKeyState& state = keyer.winKeyState;
};

struct DiscoveryCase {
  const char* keyer;
  std::string reply;
  bool found;
  bool isWinKey2;
  const char* text;
};

class Discovery : public WinKeyHostTest, public ::testing::WithParamInterface<DiscoveryCase> {};

TEST_P(Discovery, TheFirstReplyByteTellsTheChipAndTheMenuJudgesIt) {
  const DiscoveryCase& c = GetParam();
  StartWithChip(c.keyer, c.reply);
  EXPECT_EQ(state.WinKeyOpen, c.found);
  EXPECT_EQ(state.IsWinKey2, c.isWinKey2);
  EXPECT_EQ(p.CWTextBox.Text(), c.text);
  EXPECT_EQ(p.CWTextBox.SelStart(), static_cast<int>(std::string(c.text).size()));
  // Only a chip that was looked for gets its settings.
  EXPECT_EQ(chip.written.size() > kHostOpen.size(), c.found);
  EXPECT_TRUE(p.cwControl.PortOpen());
}

INSTANTIATE_TEST_SUITE_P(
    Replies, Discovery,
    ::testing::Values(
        DiscoveryCase{"WinKey", "\x13", true, false, ""},
        DiscoveryCase{"WinKey", "\x14", false, true,
                      "Can't find correct keyer.  I'm looking for a WinKey, and I found a WinKey2."},
        DiscoveryCase{"WinKey2", "\x14", true, true, ""},
        DiscoveryCase{"WinKey2", "\x13", false, false,
                      "Can't find correct keyer.  I'm looking for a WinKey2, and I found a WinKey."},
        DiscoveryCase{"WinKey", "", false, false, "Can't find a WinKey"},
        DiscoveryCase{"WinKey2", "", false, false, "Can't find a WinKey2"}));

TEST_F(WinKeyHostTest, AWinKeyIsCalibratedThenUploadedAtItsPace) {
  StartWithChip("WinKey", kWinKey,
                {{"WinKey Disable Paddle Memory", "True"}, {"WinKey Analog Speed", "True"}});
  p.cwControl.SetPortOpen(false);
  Wire();
  p.trace.Clear();
  const double opened = p.clock.NowMs();
  keyer.winKey.OpenWinKeyPort();
  EXPECT_EQ(Wire(),
            "00 02 00 00 FF 0F 16 0F 05 32 64 FA 0F 0F 00 00 14 32 32 05 FF 0C 00 02 00 07");
  EXPECT_THAT(TimesOf("winkey 00 02"), ElementsAre(opened + 1000));
  EXPECT_THAT(TimesOf("winkey FF"), ElementsAre(opened + 1100));
  // The pot has the speed: nothing is shown until it answers.
  EXPECT_THAT(EventsStartingWith({"status"}), IsEmpty());
}

TEST_F(WinKeyHostTest, TwoUploadsWithTheSameSettingsAreAlike) {
  StartWithChip("WinKey2", kWinKey2, {{"WinKey Pin 3", "False"}, {"Paddle Only SideTone", "True"}});
  const std::string first = Wire();
  keyer.winKey.OpenWinKeyPort();
  EXPECT_EQ(Wire(), first);
  EXPECT_EQ(first.substr(0, 18), "00 02 0F 16 0F 84 ");  // no calibration on a WinKey2
}

TEST_F(WinKeyHostTest, ANumberNoByteCarriesIsRefusedBeforeAnythingIsSent) {
  StartWithChip("WinKey", kWinKey, {{"WinKey PTT Lag Delay", "300"}});
  EXPECT_FALSE(state.WinKeyOpen);
  EXPECT_EQ(Wire(), "00 02");
  EXPECT_EQ(p.CWTextBox.Text(),
            "WinKey settings not sent: \"WinKey PTT Lag Delay\" gives 300, and the chip takes 0 to 255 there.");
  EXPECT_EQ(p.KeyBox.Shown(), platform::Picture::Red);
}

TEST_F(WinKeyHostTest, OnlyTheFirstOfSeveralReplyBytesIsLookedAt) {
  StartWithChip("WinKey", "\x0A\x43\xC2");
  EXPECT_TRUE(state.WinKeyOpen);
  EXPECT_FALSE(state.PaddleBreakIn);
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(p.PTTBox.Shown(), platform::Picture::Red);
  EXPECT_EQ(p.cwControl.InBufferCount(), 0);
}

TEST_F(WinKeyHostTest, NoReplyIsWaitedForHalfASecondAfterTheSettling) {
  StartWithChip("WinKey", "");
  EXPECT_EQ(p.clock.NowMs(), 1000 + WinKeyHost::kReplyWaitMs);
  EXPECT_EQ(p.KeyBox.Shown(), platform::Picture::Red);
}

TEST_F(WinKeyHostTest, WithNeitherMenuTickedAnyChipIsTakenAndSilenceSaysNothing) {
  StartWithChip("WinKey", kWinKey);
  keyer.winKey.SetModel(ChipModel::None);
  chip.reply = "\x14";
  Wire();
  keyer.winKey.OpenWinKeyPort();  // the port is open: no settling again
  EXPECT_TRUE(state.WinKeyOpen);
  EXPECT_TRUE(state.IsWinKey2);
  EXPECT_EQ(Wire(), "00 02 0F 16 0F 04 32 64 FA 0F 0F 00 00 14 32 32 01 FF");
  chip.reply = "";
  keyer.winKey.OpenWinKeyPort();
  EXPECT_FALSE(state.WinKeyOpen);
  EXPECT_EQ(p.CWTextBox.Text(), "");
}

TEST_F(WinKeyHostTest, PortZeroClosesWithoutHostCloseAndWritesFailOncePerOpen) {
  StartWithChip("WinKey", kWinKey);
  Wire();
  keyer.winKeySettings.WinKeyPort = 0;
  keyer.winKey.OpenWinKeyPort();
  EXPECT_EQ(Wire(), "");
  EXPECT_FALSE(p.cwControl.PortOpen());
  EXPECT_FALSE(p.mnuDedicatedSerialPort.Checked());
  EXPECT_EQ(p.CWTextBox.Text(), "No Comm port selected");
  EXPECT_TRUE(state.WinKeyOpen);

  keyer.winKey.WriteWinKey("A");
  EXPECT_EQ(p.CWTextBox.Text(), "WinKey port is not open");
  p.CWTextBox.SetText("");
  keyer.winKey.WriteWinKey("B");
  EXPECT_EQ(p.CWTextBox.Text(), "");
  keyer.winKey.OpenWinKeyPort();
  keyer.winKey.WriteWinKey("C");
  EXPECT_EQ(p.CWTextBox.Text(), "WinKey port is not open");
}

TEST_F(WinKeyHostTest, EchoAndStatusBytesPaceTheRunOneCharacterAhead) {
  StartWithChip("WinKey", kWinKey);
  Wire();
  Type("CQ");
  EXPECT_EQ(Wire(), "02 0F 43");
  FromChip("\xC4");  // busy: counts as an echo and hands over the Q
  EXPECT_EQ(Wire(), "51");
  FromChip("\x43");  // past the end: the run closes
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(p.CWTextBox.Text(), "");
  EXPECT_EQ(Wire(), "02 0F");
  FromChip("\x51\xC0");  // each runs the end branch again
  EXPECT_EQ(Wire(), "02 0F 02 0F");
  EXPECT_EQ(state.WinKeyPosition, 1);
}

TEST_F(WinKeyHostTest, PotBytesSetTheSpeedOnlyWhenThePotRules) {
  StartWithChip("WinKey", kWinKey, {{"WinKey Speed Min", "15"}, {"WinKey Speed", "20"}});
  FromChip("\x80\x8F");
  EXPECT_EQ(cw.WPM, 20);
  keyer.winKeySettings.WinKeyAnalogSpeed = true;
  FromChip("\x80");
  EXPECT_EQ(cw.WPM, 15);
  FromChip("\x8F");
  EXPECT_EQ(p.sBar.Caption(), " Keying speed = 30 WPM");
  EXPECT_EQ(keyer.winKeySettings.WinKeySpeed, 20);
}

TEST_F(WinKeyHostTest, BreakInLightsPttAndItsEndStepsOn) {
  StartWithChip("WinKey", kWinKey);
  Wire();
  FromChip("\xC2");
  EXPECT_TRUE(cw.Transmitting());
  EXPECT_EQ(p.PTTBox.Shown(), platform::Picture::Green);
  FromChip("\xC0");  // from idle: the empty box closes the paddle's run
  EXPECT_EQ(p.PTTBox.Shown(), platform::Picture::Red);
  EXPECT_FALSE(cw.Transmitting());
  FromChip("\xC0");
  EXPECT_EQ(EventsStartingWith({"pttbox"}), (std::vector<std::string>{"pttbox green", "pttbox red"}));
  EXPECT_EQ(Wire(), "02 14 02 14");  // the "WPM" setting, which SavedWPM still holds
}

class PaddleInsert : public WinKeyHostTest, public ::testing::WithParamInterface<bool> {};

TEST_P(PaddleInsert, CancelsTheMacroOrLetsItGoOn) {
  const bool cancels = GetParam();
  StartWithChip("WinKey", kWinKey, {{"WinKey Paddle Insert Cancels Macro", cancels ? "True" : "False"}});
  Type("CQ DE");
  FromChip("\xC4");
  Wire();
  FromChip("\xC2");
  EXPECT_EQ(p.CWTextBox.Text(), cancels ? "" : "CQ DE");
  FromChip("\xC0");
  EXPECT_EQ(cw.Transmitting(), !cancels);
  EXPECT_EQ(Wire(), cancels ? "02 0F" : "20");
}

INSTANTIATE_TEST_SUITE_P(OnAndOff, PaddleInsert, ::testing::Bool());

TEST_F(WinKeyHostTest, SpeedPanelOnAChipWritesTheSpeedEvenAtTheLimit) {
  StartWithChip("WinKey", kWinKey, {{"WinKey Speed", "10"}});
  Wire();
  p.sBar.Click(1);
  EXPECT_EQ(cw.WPM, 10);
  EXPECT_EQ(Wire(), "1C 0A");
  EXPECT_EQ(StoredSetting("WinKey Settings", "WinKey Speed"), "10");
  p.sBar.Click(2);
  EXPECT_EQ(Wire(), "1C 0B");
  EXPECT_EQ(StoredSetting("WinKey Settings", "WinKey Speed"), "11");

  keyer.winKeySettings.WinKeyAnalogSpeed = true;
  p.sBar.Click(2);
  EXPECT_EQ(Wire(), "");
  EXPECT_EQ(cw.WPM, 11);
}

TEST_F(WinKeyHostTest, SpeedPanelOnTheSoftwareKeyerIgnoresThePot) {
  Start({{"WPM", "20"}, {"WinKey Analog Speed", "True"}});
  p.sBar.Click(2);
  EXPECT_EQ(cw.WPM, 21);
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "WPM"), "21");
}

TEST_F(WinKeyHostTest, TheTickedKeyerClickedAgainLeavesNoneTickedAndTheFileAlone) {
  StartWithChip("WinKey", kWinKey);
  keyer.form.mnuWinKey_Click();
  EXPECT_FALSE(p.mnuWinKey.Checked());
  EXPECT_FALSE(p.mnuWinKey2.Checked());
  EXPECT_FALSE(p.mnuSoftwareKeyer.Checked());
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Keyer to Use"), "WinKey");
  EXPECT_TRUE(state.WinKeyOpen);
}

TEST_F(WinKeyHostTest, FromWinKey2ToWinKeyOpensAgainWithoutHostClose) {
  StartWithChip("WinKey2", kWinKey2);
  Wire();
  keyer.form.mnuWinKey_Click();
  EXPECT_EQ(Wire(), "00 02");
  EXPECT_EQ(p.CWTextBox.Text(),
            "Can't find correct keyer.  I'm looking for a WinKey, and I found a WinKey2.");
  EXPECT_TRUE(p.mnuWinKey.Checked());
  EXPECT_FALSE(p.mnuWinKey2.Checked());
  EXPECT_EQ(p.frmVantrel.Caption(), "Vantrel - WinKey");
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Keyer to Use"), "WinKey");
}

TEST_F(WinKeyHostTest, ToTheSoftwareKeyerWithNoChipOpenTakesItsOwnSpeed) {
  StartWithChip("WinKey", "", {{"WPM", "25"}, {"WinKey Speed", "15"}});
  Wire();
  p.PTTBox.SetVisible(false);
  keyer.form.mnuSoftwareKeyer_Click();
  EXPECT_EQ(Wire(), "");
  EXPECT_TRUE(p.PTTBox.Visible());
  EXPECT_TRUE(p.mnuSoftwareKeyer.Checked());
  EXPECT_FALSE(p.mnuWinKey.Checked());
  EXPECT_EQ(p.frmVantrel.Caption(), "Vantrel - Software");
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Keyer to Use"), "Software");
  EXPECT_EQ(cw.WPM, 25);
  EXPECT_EQ(cw.DotTime, cw.DotLength(25));
}

TEST_F(WinKeyHostTest, ToTheSoftwareKeyerClosesAnOpenChipsHost) {
  StartWithChip("WinKey", kWinKey);
  Wire();
  keyer.form.mnuSoftwareKeyer_Click();
  EXPECT_EQ(Wire(), "00 03");
  EXPECT_FALSE(state.WinKeyOpen);
}

TEST_F(WinKeyHostTest, AChipThatFallsSilentInARunIsGivenUpAfterItsBound) {
  StartWithChip("WinKey", kWinKey, {{"Slow Typing", "OFF"}});
  At(0, [&] { Type("CQ"); });
  At(1, [&] { Wire(); });
  // Each byte from the chip starts the bound again.
  At(6000, [&] { FromChip("\x43"); });
  At(6000 + WinKeyHost::kSilenceMs - 300, [&] { EXPECT_TRUE(cw.Transmitting()); });
  At(6000 + WinKeyHost::kSilenceMs + 300, [] {});
  Run();
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(p.CWTextBox.Text(), "WinKey did not answer for 10 s: sending stopped");
  // The Q went out on the echo; then only Clear Buffer.
  EXPECT_EQ(Wire(), "51 0A");
  EXPECT_TRUE(p.mnuTX.Enabled());
  // Given up once: the words in the box do not go to the chip.
  At(40000, [] {});
  Run();
  EXPECT_EQ(Wire(), "");
}

TEST_F(WinKeyHostTest, AChipThatVanishesEndsTheRunWithOneReport) {
  StartWithChip("WinKey", kWinKey);
  Type("CQ");
  p.cwControl.Unplug();
  p.cwControl.Arrive();
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(p.CWTextBox.Text(), "CW Port error : Input/output error");
  EXPECT_TRUE(p.mnuTX.Enabled());
  keyer.winKey.WriteWinKey("A");
  EXPECT_EQ(p.CWTextBox.Text(), "CW Port error : Input/output error");
}

}  // namespace
}  // namespace vantrel::winkey
