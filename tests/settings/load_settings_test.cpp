#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "support/keyer_fixture.h"

namespace vantrel::settings {
namespace {

using testing::KeyerFixture;

class LoadSettingsTest : public KeyerFixture {};

TEST_F(LoadSettingsTest, DefaultsHoldWhenNothingIsWritten) {
  Start();
  EXPECT_TRUE(p.mnuSoftwareKeyer.Checked());
  EXPECT_FALSE(p.mnuWinKey.Checked());
  EXPECT_FALSE(p.mnuWinKey2.Checked());
  EXPECT_TRUE(p.mnuVOX.Checked());
  EXPECT_FALSE(p.mnuMOX.Checked());
  EXPECT_EQ(cw.WPM, 20);
  EXPECT_EQ(cw.DotTime, 60);
  EXPECT_EQ(cw.SavedWPM, 20);
  EXPECT_TRUE(cw.SlowTyping);
  EXPECT_FALSE(cw.PTTEnabled);
  EXPECT_EQ(cw.PTTDelay, 100);
  EXPECT_FALSE(cw.SidetoneEnabled);
  EXPECT_EQ(p.sBar.Caption(), " Keying speed = 20 WPM");
}

TEST_F(LoadSettingsTest, TextValuesMatchOnlyInTheirExactSpelling) {
  Start({{"Keying", "vox"}, {"PTT", "on"}, {"Slow Typing", "on"}, {"Keyer to Use", "winkey"}});
  EXPECT_TRUE(p.mnuMOX.Checked());
  EXPECT_FALSE(p.mnuVOX.Checked());
  EXPECT_TRUE(cw.PTTEnabled);       // anything but "OFF" enables
  EXPECT_FALSE(cw.SlowTyping);      // anything but "ON" disables
  EXPECT_TRUE(p.mnuSoftwareKeyer.Checked());
  EXPECT_FALSE(p.mnuWinKey.Checked());
}

TEST_F(LoadSettingsTest, KeyAndSectionNamesMatchInAnyCase) {
  keyer.store.WriteSetting("FRMVANTREL SETTINGS", "sidetone", "ON");
  keyer.store.WriteSetting("FRMVANTREL SETTINGS", "wpm", "30");
  Start();
  EXPECT_TRUE(cw.SidetoneEnabled);
  EXPECT_EQ(cw.WPM, 30);
}

TEST_F(LoadSettingsTest, ProportionsLoadBeforeTheSpeed) {
  Start({{"WPM", "20"}, {"Dash Length", "3.5"}});
  EXPECT_EQ(cw.DotTime, 58);
}

TEST_F(LoadSettingsTest, WinKey2TicksOnlyItself) {
  Start({{"Keyer to Use", "WinKey2"}});
  EXPECT_TRUE(p.mnuWinKey2.Checked());
  EXPECT_FALSE(p.mnuWinKey.Checked());
  EXPECT_FALSE(p.mnuSoftwareKeyer.Checked());
}

TEST_F(LoadSettingsTest, KeyerKeysAreReadFromTheKeyerSection) {
  keyer.store.WriteSetting(kMainSection, "WinKey Analog Speed", "True");
  keyer.store.WriteSetting(kKeyerSection, "WinKey Hold Radio Polling", "1");
  Start();
  EXPECT_FALSE(cw.WinKeyAnalogSpeed);
  EXPECT_TRUE(cw.WinKeyHoldRadioPolling);
}

TEST_F(LoadSettingsTest, BadLongStopsTheLoadAtItsKey) {
  Start({{"Slow Typing", "OFF"},
         {"TextBox Forecolor", "65280"},
         {"PTT Delay", "abc"},
         {"Keying", "MOX"},
         {"PTT", "ON"},
         {"WPM", "30"},
         {"SideTone", "ON"},
         {"WinKey Analog Speed", "True"}});
  EXPECT_FALSE(cw.SlowTyping);  // before the bad key: applied
  EXPECT_EQ(cw.TextForeColor, 65280);
  EXPECT_TRUE(p.mnuSoftwareKeyer.Checked());
  EXPECT_EQ(cw.PTTDelay, 100);  // after it: the start values, not the settings or defaults
  EXPECT_FALSE(p.mnuVOX.Checked());
  EXPECT_FALSE(p.mnuMOX.Checked());
  EXPECT_FALSE(cw.PTTEnabled);
  EXPECT_EQ(cw.WPM, 0);
  EXPECT_EQ(cw.SavedWPM, 0);
  EXPECT_EQ(cw.DotTime, 0);
  EXPECT_EQ(p.sBar.Caption(), "");
  EXPECT_FALSE(cw.SidetoneEnabled);
  EXPECT_FALSE(cw.WinKeyAnalogSpeed);
}

TEST_F(LoadSettingsTest, BadBooleanStopsTheLoadAtItsKey) {
  Start({{"PTT", "ON"}, {"Disable Polling", "maybe"}, {"Transmitting Text Color", "100"}});
  EXPECT_TRUE(cw.PTTEnabled);
  EXPECT_TRUE(p.mnuVOX.Checked());
  EXPECT_FALSE(cw.DisablePolling);
  EXPECT_EQ(cw.TransmittingColor, 255);
  EXPECT_EQ(cw.WPM, 0);
}

TEST_F(LoadSettingsTest, SpeedOutside16BitsStopsTheLoad) {
  Start({{"WPM", "40000"}, {"SideTone", "ON"}, {"WinKey Hold Radio Polling", "True"}});
  EXPECT_EQ(cw.WPM, 0);
  EXPECT_EQ(cw.DotTime, 0);
  EXPECT_FALSE(cw.SidetoneEnabled);
  EXPECT_FALSE(cw.WinKeyHoldRadioPolling);
}

struct SpeedCase {
  const char* text;
  int16_t wpm;
};
std::ostream& operator<<(std::ostream& out, const SpeedCase& c) { return out << '"' << c.text << '"'; }

class SpeedText : public KeyerFixture, public ::testing::WithParamInterface<SpeedCase> {};

TEST_P(SpeedText, ReadsAsValRoundedHalfToEven) {
  Start({{"WPM", GetParam().text}});
  EXPECT_EQ(cw.WPM, GetParam().wpm);
  EXPECT_EQ(cw.SavedWPM, GetParam().wpm);
  EXPECT_EQ(p.sBar.Caption(), " Keying speed = " + std::to_string(GetParam().wpm) + " WPM");
}

INSTANTIATE_TEST_SUITE_P(Speeds, SpeedText,
                         ::testing::Values(SpeedCase{"25.5", 26}, SpeedCase{"24.5", 24},
                                           SpeedCase{"1 8wpm", 18}, SpeedCase{"32767", 32767}));

}  // namespace
}  // namespace vantrel::settings
