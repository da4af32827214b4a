#include <gtest/gtest.h>

#include "support/keyer_fixture.h"

namespace vantrel::sending {
namespace {

using testing::KeyerFixture;

class TransmitControl : public KeyerFixture {};

TEST_F(TransmitControl, VoxSendsATypedLetterBetweenPttOnAndOff) {
  Start({{"PTT", "ON"}, {"Slow Typing", "OFF"}});
  At(0, [&] { Type("E"); });
  Run();
  EXPECT_EQ(EventsStartingWith({"key", "ptt", "post"}),
            (std::vector<std::string>{"post 900 1", "pttbox green", "keybox green", "keybox red", "post 900 0",
                                      "pttbox red"}));
  EXPECT_DOUBLE_EQ(TimesOf("pttbox red")[0], 160);
}

TEST_F(TransmitControl, IdleControlsChangeInTheirOrder) {
  Start({{"Slow Typing", "OFF"}});
  At(0, [&] { Type("E"); });
  Run();
  EXPECT_EQ(EventsStartingWith({"menu"}),
            (std::vector<std::string>{
                "menu mnuConfig disabled", "menu mnuTX disabled", "menu mnuAbort enabled",
                "menu mnuView disabled", "menu mnuKeying disabled", "menu mnuTX enabled",
                "menu mnuAbort disabled", "menu mnuConfig enabled", "menu mnuView enabled",
                "menu mnuKeying enabled"}));
  EXPECT_TRUE(p.cmbPrevious.Enabled());
}

TEST_F(TransmitControl, MoxWaitsForTheCommand) {
  Start({{"Keying", "MOX"}, {"Slow Typing", "OFF"}});
  At(0, [&] { Type("EE"); });
  At(1000, [&] { control.mnuTX_Click(); });
  Run();
  const auto downs = TimesOf("keybox green");
  ASSERT_EQ(downs.size(), 2u);
  EXPECT_DOUBLE_EQ(downs[0], 1100);
  EXPECT_EQ(TimesOf("menu mnuTX enabled").front(), 0);
}

TEST_F(TransmitControl, MoxResumesAHoldWithoutTheCommand) {
  Start({{"Keying", "MOX"}});
  At(0, [&] { Type("E"); });
  At(10, [&] { control.mnuTX_Click(); });
  At(5000, [&] { Type("E"); });
  Run();
  EXPECT_EQ(TimesOf("keybox green").size(), 2u);
}

TEST_F(TransmitControl, DisablePollingFollowsBothNotifications) {
  Start({{"Disable Polling", "True"}, {"Slow Typing", "OFF"}});
  At(0, [&] { Type("E"); });
  Run();
  EXPECT_EQ(EventsStartingWith({"post"}),
            (std::vector<std::string>{"post 900 1", "post 150 1", "post 900 0", "post 150 0"}));
}

TEST_F(TransmitControl, AbortDuringAHoldEndsEverything) {
  Start({{"PTT", "ON"}});
  At(0, [&] { Type("E"); });
  At(1000, [&] { control.mnuabort_click(); });
  Run();
  EXPECT_DOUBLE_EQ(TimesOf("pttbox red").at(0), 1000);
  EXPECT_EQ(p.CWTextBox.Text(), "");
  EXPECT_FALSE(cw.Transmitting());
}

TEST_F(TransmitControl, AbortRestoresTheSavedSpeed) {
  Start();
  At(0, [&] { Type("E\xBB\xBB"
                   "EEEE"); });
  At(500, [&] { control.mnuabort_click(); });
  Run();
  EXPECT_EQ(cw.WPM, 20);
  EXPECT_EQ(cw.DotTime, 60);
  EXPECT_EQ(p.sBar.Caption(), " Keying speed = 20 WPM");
}

TEST_F(TransmitControl, TuneHoldsTheKeyWithoutLeadDelayAndAbortReleasesIt) {
  Start({{"PTT", "ON"}, {"SideTone", "ON"}});
  At(0, [&] { control.mnuTune_Click(); });
  At(3000, [&] { control.mnuabort_click(); });
  Run();
  EXPECT_EQ(EventsStartingWith({"key", "ptt", "sound volume"}),
            (std::vector<std::string>{"pttbox green", "keybox green", "sound volume 0",
                                      "pttbox red",
                                      "pttbox red",  // Tune's own end, from inside the Abort
                                      "keybox red", "sound volume -10000"}));
  EXPECT_DOUBLE_EQ(TimesOf("keybox red").at(0), 3000);
  EXPECT_FALSE(keyer.control.keyer().Tuning());
  EXPECT_EQ(p.PTTBox.Shown(), platform::Picture::Red);
}

TEST_F(TransmitControl, TuneDoesNotSendTheTextAndItsEndRemovesIt) {
  Start();
  keyer.form.mnuSoftwareKeyer_Click();
  p.CWTextBox.SetText("CQ");
  keyer.form.mnuSoftwareKeyer_Click();
  control.mnuTune_Click();
  control.mnuTune_Click();
  EXPECT_EQ(TimesOf("keybox green").size(), 1u);
  EXPECT_EQ(p.CWTextBox.Text(), "");
}

TEST_F(TransmitControl, TuneOnTheWinKeyRouteIsACommandToTheChip) {
  StartWithChip("WinKey2", "\x17");
  control.mnuTune_Click();
  control.mnuTune_Click();
  EXPECT_EQ(EventsStartingWith({"winkey", "key"}),
            (std::vector<std::string>{"winkey 0B 01", "winkey 0B 00"}));
}

TEST_F(TransmitControl, KeyingModeClicksTickOneAndWriteTheSetting) {
  Start();
  control.mnuVOX_Click();  // already ticked: nothing
  EXPECT_TRUE(EventsStartingWith({"menu"}).empty());
  control.mnuMOX_Click();
  EXPECT_TRUE(p.mnuMOX.Checked());
  EXPECT_FALSE(p.mnuVOX.Checked());
  EXPECT_FALSE(p.mnuTX.Enabled());  // nothing in the box to send
  EXPECT_EQ(StoredSetting("FRMVANTREL SETTINGS", "keying"), "MOX");
  control.mnuVOX_Click();
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Keying"), "VOX");
}

}  // namespace
}  // namespace vantrel::sending
