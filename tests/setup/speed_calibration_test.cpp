#include "setup/speed_calibration.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>

#include "app/vantrel.h"
#include "platform/linux/ini_profile_file.h"
#include "platform/memory/memory_dialogs.h"
#include "platform/memory/memory_platform.h"
#include "settings/settings_store.h"
#include "setup/frm_port.h"
#include "support/temp_folder.h"
#include "support/trace_queries.h"

namespace vantrel::setup {
namespace {

TEST(CalibrationResult, ASlowRunLosesThePttDelayAndRoundsTheRealSpeed) {
  // 61.5 s between the readings of a 1 MHz counter, 100 ms of PTT delay.
  const CalibrationText text = CalibrationResult(20, 1'000'000, 62'500'000, 1'000'000, 100);
  EXPECT_EQ(text.Label1, "Elapsed time 61.400000000000 seconds");
  EXPECT_EQ(text.Label2,
            "At 20 WPM this should have taken 60 seconds.  Your CPU overhead is adding 2.3% to the "
            "timed period.  Calibration shows that at 20 WPM, you are actually sending at 20 WPM.  "
            "These calculations are based on the total elaped time (first key down to last key up) "
            "to send the word PARIS twenty times.");
  // 75 s at 40: 32 WPM, and the word for any other speed is "forty".
  const std::string slow = CalibrationResult(40, 0, 75'100, 1000, 100).Label2;
  EXPECT_NE(slow.find("adding 25.0%"), std::string::npos);
  EXPECT_NE(slow.find("actually sending at 32 WPM"), std::string::npos);
  EXPECT_EQ(slow.substr(slow.size() - 12), "forty times.");
}

// The keyer on the in-memory platform, its settings in a real file, and the
// keyer setup dialog in memory.
class Calibration : public ::testing::Test {
 protected:
  void Start(const std::vector<std::pair<std::string, std::string>>& settings = {}) {
    keyer.store.LocateSettingsFile(folder.path(), "");
    for (const auto& [key, value] : settings) keyer.store.WriteSetting(app::SectionOf(key), key, value);
    p.linkChannel.loggerRunning = true;
    keyer.form.Form_Load();
    frmPort.Form_Load();
    dialog.frmPort.Show();
    p.trace.Clear();
  }
  std::string File() const { return folder.Read("Vantrel.INI"); }
  std::string Label(const platform::memory::MemoryLabel& label) const { return label.Caption(); }
  void At(double ms, std::function<void()> event) {
    p.queue.Post(static_cast<int64_t>(ms * 1e6), std::move(event));
  }

  testing::TempFolder folder;
  platform::memory::MemoryPlatform p;
  platform::linuxos::IniProfileFile disk;
  app::Vantrel keyer{platform::Platform{p.controls, p.clock, p.queue, disk, p.wallClock, p.language,
                                        p.parallel, p.cwControl, p.linkChannel, p.sound, p.link,
                                        p.macroSetup},
                     {folder.path(), ""}};
  platform::memory::MemorySerialPortList ports;
  platform::memory::MemoryKeyerSetup dialog{p.trace, p.queue};
  FrmPort frmPort{dialog.controls(), SetupNeighbours{keyer.cw, keyer.software, keyer.control,
                                                     keyer.lines, keyer.sidetone, keyer.store,
                                                     keyer.calibration, ports}};
  platform::memory::MemoryCalibrateForm& result = dialog.frmCalibrate;
};

TEST_F(Calibration, AFastRunShowsExactlyTheNominalFiguresAndChangesNothing) {
  Start({{"WPM", "25"}});  // Slow Typing stays on: the test ends with its text all the same
  const std::string before = File();
  dialog.ARButton1.Click();
  EXPECT_FALSE(keyer.calibration.Calibrating());
  ASSERT_TRUE(result.window.open);
  EXPECT_EQ(Label(result.Label1), "Elapsed time 60.000000000000 seconds");
  const std::string text = Label(result.Label2);
  EXPECT_NE(text.find("adding 0.0% to"), std::string::npos);
  EXPECT_NE(text.find("that at 20 WPM, you are actually sending at 20 WPM."), std::string::npos);
  EXPECT_EQ(keyer.cw.WPM, 25);
  EXPECT_EQ(keyer.cw.DotTime, keyer.cw.DotLength(25));
  EXPECT_EQ(p.sBar.Caption(), " Keying speed = 25 WPM");
  EXPECT_FALSE(keyer.cw.Transmitting());
  EXPECT_EQ(File(), before);
  EXPECT_TRUE(dialog.ARButton1.Enabled());
}

TEST_F(Calibration, FortyWordsAtFortyAndTheRunIsTimedFromItsStart) {
  Start({{"PTT Delay", "250"}});
  dialog.ARButton2.Click();
  const std::vector<std::string> texts = testing::EventsStartingWith(p.trace, {"text \"PARIS"});
  ASSERT_FALSE(texts.empty());
  std::istringstream words(texts.front().substr(6));
  int count = 0;
  for (std::string word; words >> word;) ++count;
  EXPECT_EQ(count, 40);
  const std::string text = Label(result.Label2);
  EXPECT_EQ(text.substr(text.size() - 18), "PARIS forty times.");
  // Sent at 40 WPM while it ran.
  EXPECT_EQ(testing::EventsStartingWith(p.trace, {"status"}).front(), "status \" Keying speed = 40 WPM\"");
}

TEST_F(Calibration, ARunSlowerThanTheMinuteIsMeasuredToTheMillisecond) {
  // Word space 6 at 20 WPM rounds the dot up to 62 ms: 974 dots, 60.388 s.
  Start({{"Word Space", "6"}});
  dialog.ARButton1.Click();
  EXPECT_EQ(Label(result.Label1), "Elapsed time 60.388000000000 seconds");
  EXPECT_NE(Label(result.Label2).find("adding 0.6%"), std::string::npos);
}

TEST_F(Calibration, ClosingTheDialogDuringTheTestGivesNoResult) {
  Start({{"WPM", "25"}});
  At(10000, [&] { dialog.btnCancel.Click(); });
  dialog.ARButton1.Click();
  EXPECT_FALSE(dialog.frmPort.open);
  EXPECT_FALSE(result.window.open);
  EXPECT_TRUE(testing::EventsStartingWith(p.trace, {"frmCalibrate"}).empty());
  EXPECT_EQ(keyer.cw.WPM, 25);  // the run went on to its end and came back
  EXPECT_GT(p.clock.NowMs(), 59000);
}

TEST_F(Calibration, StopTestEndsTheRunWithoutAResult) {
  Start();
  At(5000, [&] { dialog.btnStopTest.Click(); });
  dialog.ARButton1.Click();
  EXPECT_FALSE(result.window.open);
  EXPECT_FALSE(keyer.cw.Transmitting());
  EXPECT_LT(p.clock.NowMs(), 6000);
  EXPECT_TRUE(dialog.ARButton1.Enabled());
  EXPECT_FALSE(dialog.btnStopTest.Enabled());
}

TEST_F(Calibration, MainWindowAbortStillReportsAsAFullMinute) {
  Start();
  At(5000, [&] { keyer.control.mnuabort_click(); });
  dialog.ARButton1.Click();
  ASSERT_TRUE(result.window.open);
  EXPECT_EQ(Label(result.Label1), "Elapsed time 60.000000000000 seconds");
}

TEST_F(Calibration, ASpeedAppliedJustBeforeIsTheOneThatComesBack) {
  Start();
  dialog.DotLengthSlider.Move(30);
  dialog.btnOK.Click();
  frmPort.Form_Load();
  dialog.frmPort.Show();
  dialog.ARButton1.Click();
  EXPECT_EQ(keyer.cw.WPM, 30);
  EXPECT_EQ(p.sBar.Caption(), " Keying speed = 30 WPM");
}

TEST_F(Calibration, AnOpenResultWindowKeepsItsFigures) {
  Start({{"Word Space", "6"}});
  dialog.ARButton1.Click();
  keyer.cw.WordSpace = 7;  // the next run would take under a minute
  dialog.ARButton1.Click();
  EXPECT_EQ(Label(result.Label1), "Elapsed time 60.388000000000 seconds");
  result.window.Unload();
  dialog.ARButton1.Click();
  EXPECT_EQ(Label(result.Label1), "Elapsed time 60.000000000000 seconds");
}

}  // namespace
}  // namespace vantrel::setup
