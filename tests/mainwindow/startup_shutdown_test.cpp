#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/keyer_fixture.h"

namespace vantrel::mainwindow {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;
using testing::KeyerFixture;

class StartupShutdown : public KeyerFixture {
 protected:
  bool Close() {
    bool cancel = false;
    keyer.form.Form_QueryUnload(cancel);
    if (!cancel) keyer.form.Form_Unload();
    return !cancel;
  }
};

TEST_F(StartupShutdown, FirstStartRunsInItsFixedOrder) {
  keyer.form.Form_Load();
  EXPECT_THAT(
      EventsStartingWith({"pointer", "setting", "menu mnuTX", "keybox", "pttbox",
                          "menu mnuSoftwareKeyer", "caption", "sound", "lpt", "msgbox",
                          "topmost"}),
      ElementsAre("pointer hourglass",
                  "setting \"Initialized\" \"Create Date/Time\" \"21:05:09 November 17, 2026\"",
                  "menu mnuTX disabled", "pttbox red", "keybox red", "menu mnuSoftwareKeyer checked",
                  "caption \"Vantrel - Software\"", "lpt 0B",  // the sidetone is off
                  // The hourglass goes before the box shows, and again at the end.
                  "pointer default",
                  "msgbox \"You can't get there from here\" \"OpenFileMapping API failed, is "
                  "Hallowick running?\"",
                  "pointer default", "topmost on"));
  EXPECT_TRUE(keyer.form.StartupDone);
  EXPECT_TRUE(p.Timer1.Enabled());
  EXPECT_EQ(p.mnuVersion.Caption(), "Version 0.1.0");
  EXPECT_EQ(p.SRXField.Width(), 0);
  EXPECT_TRUE(p.CallsignField.Visible());
  EXPECT_EQ(cw.LanguageId, 1033);
}

TEST_F(StartupShutdown, RunningLoggerGivesNoBoxAndItsHandlesAreReleased) {
  p.linkChannel.loggerRunning = true;
  keyer.form.Form_Load();
  EXPECT_TRUE(EventsStartingWith({"msgbox"}).empty());
  EXPECT_EQ(keyer.link.LoggerWindow, platform::memory::MemoryLinkChannel::kLoggerWindow);
  keyer.form.Form_Unload();
  EXPECT_THAT(EventsStartingWith({"unmap", "close"}), ElementsAre("unmap 12291", "close 8194"));
}

TEST_F(StartupShutdown, MappingWithoutAViewShowsTheSecondBox) {
  p.linkChannel.loggerRunning = true;
  p.linkChannel.viewMaps = false;
  keyer.form.Form_Load();
  EXPECT_THAT(EventsStartingWith({"msgbox"}),
              ElementsAre("msgbox \"You can't get there from here\" \"MapViewOfFile API failed.\""));
}

TEST_F(StartupShutdown, UnloadWithoutTheLoggerReleasesNothingAndGoesOn) {
  Start();
  keyer.form.Form_Unload();
  EXPECT_THAT(EventsStartingWith({"unmap", "close"}), ElementsAre("unmap 0", "close 0"));
}

TEST_F(StartupShutdown, LanguageTableRenamesTheMenusItHasStringsFor) {
  // Controls are numbered in the window's order; mnuConfig is the sixth,
  // mnuVOX, deeper in the tree, the thirty-fifth.
  p.language.locale = 1053;
  p.language.libraries["1053.DLL"] = {
      7, {{9506, "  Inst\xe4llningar\0 "}, {9501, "Box"}, {9535, "Auto"}}};
  keyer.form.Form_Load();
  EXPECT_EQ(p.mnuConfig.Caption(), "Inst\xe4llningar");
  EXPECT_EQ(p.mnuVOX.Caption(), "Auto");
  EXPECT_EQ(p.mnuKeying.Caption(), "Keying");  // no string: the caption stays
}

TEST_F(StartupShutdown, FirstCloseWhileSendingOnlyStopsIt) {
  Start({{"PTT", "ON"}});
  bool closedFirst = true;
  bool closedSecond = false;
  At(0, [&] { Type("PARIS"); });
  At(100, [&] { closedFirst = Close(); });
  At(2000, [&] { closedSecond = Close(); });
  Run();
  EXPECT_FALSE(closedFirst);
  EXPECT_TRUE(closedSecond);
  EXPECT_THAT(TimesOf("pttbox red"), ElementsAre(100));
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(p.CWTextBox.Text(), "");
  EXPECT_FALSE(p.mnuAbort.Enabled());
}

TEST_F(StartupShutdown, CloseKeepsTheRectangleOnlyWhenNotMinimised) {
  Start({{"Height", "3000"}});
  p.frmVantrel.SetHeight(4500);
  p.frmVantrel.minimized = true;
  keyer.form.Form_Unload();
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Height"), "3000");

  p.frmVantrel.minimized = false;
  p.frmVantrel.SetWidth(5017.5f);
  keyer.form.Form_Unload();
  EXPECT_THAT(EventsStartingWith({"setting"}),
              ElementsAre("setting \"frmVantrel Settings\" \"Top\" \"500\"",
                          "setting \"frmVantrel Settings\" \"Left\" \"500\"",
                          "setting \"frmVantrel Settings\" \"Height\" \"4500\"",
                          "setting \"frmVantrel Settings\" \"Width\" \"5017.5\""));
}

TEST_F(StartupShutdown, WinKeyStartOpensTheChipNotTheSidetoneAndClosesItsHost) {
  StartWithChip("WinKey2", "\x17", {{"SideTone", "ON"}});
  EXPECT_TRUE(keyer.winKey.WinKeyOpen());
  EXPECT_TRUE(p.sound.lastWritten.empty());  // no sidetone was made
  keyer.form.Form_Unload();
  EXPECT_THAT(EventsStartingWith({"winkey"}), ElementsAre("winkey 00 03"));
  EXPECT_FALSE(keyer.winKey.WinKeyOpen());
  EXPECT_FALSE(p.cwControl.PortOpen());
}

}  // namespace
}  // namespace vantrel::mainwindow
