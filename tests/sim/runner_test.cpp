#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "loggerlink/logger_process.h"
#include "runner.h"
#include "script.h"
#include "support/temp_folder.h"

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

// The lines from the first one that `event` ends, on.
std::vector<std::string> From(const std::vector<std::string>& lines, const std::string& event) {
  const auto at = std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
    return line.size() >= event.size() && line.compare(line.size() - event.size(), event.size(), event) == 0;
  });
  return {at, lines.end()};
}

TEST(Runner, SettingsGoIntoTheFileBeforeStartUpReadsThem) {
  RunOptions options;
  options.settings = {{"WPM", "30"}, {"WinKey Speed", "25"}};
  const auto lines = RunScript("", options);
  EXPECT_THAT(lines, Contains("0.000 setting \"frmVantrel Settings\" \"WPM\" \"30\""));
  EXPECT_THAT(lines, Contains("0.000 setting \"WinKey Settings\" \"WinKey Speed\" \"25\""));
  EXPECT_THAT(lines, Contains("0.000 status \" Keying speed = 30 WPM\""));
}

class RunnerOnDisk : public ::testing::Test {
 protected:
  std::string Read(const std::string& name) const { return folder_.Read(name); }

  testing::TempFolder folder_;
  const std::string dir_ = folder_.path();
};

TEST_F(RunnerOnDisk, EmptyFolderGetsTheStampedFileAndTheRectangleAtClose) {
  RunOptions options;
  options.directory = dir_;
  const auto lines = RunScript("10 close\n20 send E\n", options);
  EXPECT_EQ(lines.front(), "0.000 pointer hourglass");
  EXPECT_THAT(Read("Vantrel.INI"), ::testing::StartsWith("[Initialized]\nCreate Date/Time="));
  EXPECT_THAT(Read("Vantrel.INI"), ::testing::HasSubstr("[frmVantrel Settings]\nTop=500\nLeft=500\nHeight=2500\nWidth=3500\n"));
  EXPECT_THAT(lines, Not(Contains("20.000 text \"E\"")));  // nothing runs after the close
}

TEST_F(RunnerOnDisk, ProfileStartsAsACopyOfTheDefaultFile) {
  RunOptions options;
  options.directory = dir_;
  options.settings = {{"WPM", "33"}};
  RunScript("", options);
  options.settings.clear();
  options.profile = "contest";
  const auto lines = RunScript("", options);
  EXPECT_THAT(Read("contestVantrel.INI"), ::testing::HasSubstr("WPM=33"));
  EXPECT_THAT(lines, Contains("0.000 status \" Keying speed = 33 WPM\""));
}

TEST(Runner, UnpluggedSerialPortStopsTheTransmissionAndSaysSo) {
  RunOptions options;
  options.settings = {{"Port to Use", "Serial"}, {"Dedicated Serial Port", "Comm2"}, {"PTT", "ON"}};
  // Runs at the pump that opens the T's dash; its key-up at 280 fails.
  const auto lines = RunScript("0 send TEST\n50 unplug\n", options);
  EXPECT_EQ(CountOf(lines, "280.000 post 900 0"), 1);
  EXPECT_EQ(CountOf(lines, "280.000 pttbox red"), 1);
  const auto report = From(lines, "text \"CW Port error : Input/output error\"");
  ASSERT_FALSE(report.empty());
  EXPECT_EQ(report.front(), "280.000 text \"CW Port error : Input/output error\"");
  // The report then goes out like any text, to a port that is gone.
  EXPECT_THAT(report, Not(Contains(::testing::HasSubstr(" dtr "))));
  EXPECT_THAT(report, Contains("280.000 post 900 1"));
}

TEST(Runner, TypedKeysGoToTheControlWithTheFocus) {
  RunOptions options;
  options.settings = {{"Keying", "MOX"}};
  const auto lines =
      RunScript("0 type cq=\n10 key 33\n20 type w1aw\r\n30 key 9\n40 type Ann\n50 paste de\n", options);
  EXPECT_THAT(lines, Contains("0.000 text \"CQ B^T\""));
  EXPECT_THAT(lines, Contains("10.000 focus CallsignField"));
  EXPECT_THAT(lines, Contains("20.000 field CallsignField \"W1AW\""));
  EXPECT_THAT(lines, Contains("30.000 focus NameField"));
  EXPECT_THAT(lines, Contains("40.000 field NameField \"Ann\""));  // a name keeps its case
  EXPECT_THAT(lines, Contains("50.000 text \"CQ B^Tde\""));  // a paste is taken as it is
}

TEST(Runner, ResizeSnapsToTheRowsAndMinimisedIsLeftAlone) {
  const auto lines = RunScript("0 resize 6000 1000\n10 minimize\n20 resize 6000 900\n");
  EXPECT_THAT(lines, Contains("0.000 height 1830"));
  EXPECT_EQ(lines.back(), "20.000 height 900");
}

TEST(Runner, NothingAfterUntilIsPrintedOrRun) {
  RunOptions options;
  options.settings = {{"PTT", "ON"}};
  options.untilNs = 120'000'000;  // inside the dot of the E
  const auto lines = RunScript("0 send E\n1000 send T\n", options);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines.back(), "100.000 keybox green");
  EXPECT_THAT(lines, Not(Contains("1000.000 text \"T\"")));
}

TEST(Runner, KeyerSectionSettingsLandInTheKeyerSection) {
  RunOptions options;
  options.settings = {{"Keyer to Use", "WinKey"},
                      {"winkey hold radio polling", "True"},
                      {"WinKey Analog Speed", "True"}};
  const auto lines = RunScript("0 menu mnuAbort\n", options);
  EXPECT_EQ(CountOf(lines, "0.000 post 150 0"), 1);  // the hold is released
  // With the speed on the chip's knob, the Abort writes no speed to it.
  EXPECT_FALSE(std::any_of(lines.begin(), lines.end(),
                           [](const std::string& line) { return line.find("winkey 1C") != std::string::npos; }));
}

// Headless, the chip model answers on the in-memory port at a chip's pace.
TEST(Runner, InMemoryChipAnswersEchoesAndTakesTheVerbs) {
  RunOptions options;
  options.settings = {{"Keyer to Use", "WinKey2"}, {"WinKey Port", "3"}};
  const auto lines = RunScript("0 send CQ\n10 wait\n3000 chip C2\n3000 paddle\n3100 speed 2\n", options);
  EXPECT_EQ(CountOf(lines, "1000.000 winkey 0F 16 0F 04 32 64 FA 0F 0F 00 00 14 32 32 01 FF"), 1);
  EXPECT_EQ(CountOf(lines, "1000.000 winkey 51"), 1);  // the chip's busy status hands over the Q
  EXPECT_THAT(lines, Contains(::testing::EndsWith("text \"\"")));
  EXPECT_EQ(CountOf(lines, "3000.000 pttbox green"), 2);  // the bytes given, then the paddle's
  EXPECT_EQ(CountOf(lines, "3100.000 winkey 1C 10"), 1);

  options.chipRevision = 10;
  EXPECT_THAT(RunScript("", options),
              Contains(::testing::HasSubstr("I'm looking for a WinKey2, and I found a WinKey.")));
}

TEST(Runner, AppendDuringATransmissionGoesOutInIt) {
  RunOptions options;
  options.settings = {{"Slow Typing", "OFF"}};
  const auto lines = RunScript("0 send E\n30 append T\n", options);
  EXPECT_EQ(CountOf(lines, "0.000 post 900 1"), 1);
  EXPECT_EQ(CountOf(lines, "100.000 text \"ET\""), 1);
  EXPECT_EQ(CountOf(lines, "340.000 keybox green"), 1);  // T, one letter gap after the E
  EXPECT_EQ(CountOf(lines, "520.000 keybox red"), 1);
  EXPECT_EQ(lines.back(), "520.000 post 900 0");
}

TEST(Runner, ButtonFiresTheStoredMacroWithTheLoggersValues) {
  RunOptions options;
  options.settings = {{"Keying", "MOX"}};
  options.logger = true;
  const auto lines = RunScript("0 macro 2 r $sentrstn$\n0 slot LinkSentRST 579\n10 button 2\n", options);
  EXPECT_EQ(CountOf(lines, "10.000 macro 2"), 1);
  EXPECT_EQ(CountOf(lines, "10.000 text \"R 57N\""), 1);
}

TEST(Runner, TheEditorStoresWhatTheScriptTypesAndTheButtonFiresIt) {
  RunOptions options;
  options.settings = {{"Keying", "MOX"}};
  const auto lines = RunScript(
      "0 editor 2\n0 editor-type MacroText t~u\n0 pick-font 12 255 bold Arial\n"
      "0 editor-click Hbutton2\n0 editor-click Hbutton5\n10 button 2\n",
      options);
  EXPECT_EQ(CountOf(lines, "0.000 editor caption \"Macro Setup for F2\""), 1);
  EXPECT_EQ(CountOf(lines, "0.000 editor MacroText \"tu\""), 1);
  EXPECT_EQ(CountOf(lines, "0.000 editor Hbutton1 forecolor 255"), 1);
  EXPECT_EQ(CountOf(lines, "0.000 setting \"frmVantrel Settings\" \"Macro #2\" \"tu\""), 1);
  EXPECT_EQ(CountOf(lines, "0.000 setting \"frmVantrel Settings\" \"Macro Fontbold #2\" \"True\""), 1);
  EXPECT_EQ(CountOf(lines, "0.000 editor closed"), 1);
  EXPECT_EQ(CountOf(lines, "10.000 text \"TU\""), 1);
  EXPECT_THROW(RunScript("0 editor 2\n0 editor-click Hbutton6\n1 editor-click Hbutton6\n"), ScriptError);
}

TEST(Runner, WaitRunsALoopUntilAKeyEndsIt) {
  RunOptions options;
  options.settings = {{"Slow Typing", "OFF"}};
  // Without the wait the run would end with the script, before the pause is over.
  const auto lines = RunScript("0 macro 1 e $loop$\n0 button 1\n0 wait\n7000 key 27\n", options);
  EXPECT_EQ(CountOf(lines, "0.000 macro 1"), 1);
  EXPECT_EQ(CountOf(lines, "400.000 loop armed 5000"), 1);
  EXPECT_EQ(CountOf(lines, "5400.000 macro 1"), 1);
  EXPECT_EQ(CountOf(lines, "7000.000 loop cancelled"), 1);
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string& line) { return line.ends_with(" macro 1"); }),
            2);
}

TEST(Runner, FocusMovedByTheKeyerMakesTheFieldAMacroReturnsTo) {
  RunOptions options;
  options.settings = {{"Keying", "MOX"}};
  // Start-up gave the box the focus: F2 in the name field brings it back there.
  auto lines = RunScript("0 focus NameField\n10 key 113\n", options);
  EXPECT_THAT(lines, Contains("10.000 focus CWTextBox"));
  // Page Up moved it to the call field, which a macro then returns to.
  lines = RunScript("0 key 33\n10 focus NameField\n20 key 113\n", options);
  EXPECT_THAT(lines, Contains("20.000 focus CallsignField"));
  // And Tab from the name field.
  lines = RunScript("0 focus NameField\n10 key 9\n20 focus NameField\n30 key 113\n", options);
  EXPECT_THAT(lines, Contains("30.000 focus CallsignField"));
}

TEST(Runner, AButtonClickPressesFirstAndSoClosesTheEditor) {
  RunOptions options;
  options.settings = {{"Keying", "MOX"}};
  const auto lines = RunScript("0 macro 3 tu\n0 editor 2\n10 button 3\n", options);
  const auto click = From(lines, "editor closed");
  ASSERT_FALSE(click.empty());
  EXPECT_EQ(click.front(), "10.000 editor closed");
  EXPECT_THAT(click, Contains("10.000 macro 3"));
}

TEST(Runner, KeysTypedTogetherGoOutInOneTransmission) {
  RunOptions options;
  options.settings = {{"Slow Typing", "OFF"}};
  const auto lines = RunScript("0 type cq\n", options);
  EXPECT_EQ(CountOf(lines, "0.000 post 900 1"), 1);
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string& line) { return line.ends_with(" post 900 0"); }),
            1);
  // The Q was in the box while the C went out.
  EXPECT_THAT(lines, Contains("0.000 text \"CQ\""));
}

TEST(Runner, EveryMenuEntryIsReachedByItsNameInTheWindow) {
  RunOptions options;
  options.settings = {{"Keying", "MOX"}};
  const auto lines = RunScript(
      "0 menu mFkeys\n0 menu mnuSend0asT\n0 menu mnuOnTop\n0 menu mnuShowSRX\n0 menu mnuKeying\n"
      "0 pick-color 255\n0 menu mnuWPMColor\n0 menu mnuView\n0 menu mnuVersion\n"
      "10 menu mnuInsKey\n10 menu mnuInsKey\n20 control List1 14\n30 menu mnuPort\n",
      options);
  EXPECT_THAT(lines, Contains("0.000 setting \"frmVantrel Settings\" \"F Keys Visible\" \"False\""));
  EXPECT_THAT(lines, Contains("0.000 setting \"frmVantrel Settings\" \"Serial # 0 preference\" \"T\""));
  EXPECT_THAT(lines, Contains("0.000 topmost off"));
  EXPECT_THAT(lines, Contains("0.000 setting \"frmVantrel Settings\" \"SRX Field Visible\" \"True\""));
  EXPECT_THAT(lines, Contains("0.000 menu mnuDedicatedSerialPort disabled"));  // the parallel port is in use
  EXPECT_THAT(lines, Contains("0.000 setting \"frmVantrel Settings\" \"WPM Text Color\" \"255\""));
  EXPECT_EQ(CountOf(lines, "10.000 assign-key shown"), 1);  // one dialog at a time
  EXPECT_THAT(lines, Contains("20.000 setting \"frmVantrel Settings\" \"Insert Key\" \"126\""));
  EXPECT_THAT(lines, Contains("20.000 assign-key closed"));
  EXPECT_THAT(lines, Contains("30.000 frmPort shown"));
  EXPECT_THROW(RunScript("0 menu mnuNothing10\n"), ScriptError);  // a separator
  EXPECT_THROW(RunScript("0 menu mnuabort\n"), ScriptError);      // not the window's name
}

TEST_F(RunnerOnDisk, TheWindowStartsAtItsDesignSizeAndTheLoadedSizeRunsTheLayout) {
  RunOptions options;
  options.directory = dir_;
  // A bad early value stops the load: the design size is what is written back.
  options.settings = {{"Height", "5000000000"}};
  RunScript("10 close\n", options);
  EXPECT_THAT(Read("Vantrel.INI"), ::testing::HasSubstr("Height=3150\n"));
  EXPECT_THAT(Read("Vantrel.INI"), ::testing::HasSubstr("Width=7125\n"));

  // A loaded height below the rows' minimum snaps up during the load.
  options.settings = {{"Height", "600"}};
  const auto lines = RunScript("10 close\n", options);
  EXPECT_THAT(lines, Contains("0.000 height 600"));
  EXPECT_THAT(lines, Contains("0.000 height 1020"));
  EXPECT_THAT(Read("Vantrel.INI"), Not(::testing::HasSubstr("Height=600\n")));
}

TEST(Runner, WaitTakesAHoldForIdle) {
  const auto lines = RunScript("0 send E\n0 wait\n");  // returns: the hold does not keep it
  EXPECT_THAT(lines, Not(Contains("160.000 post 900 0")));
}

}  // namespace
}  // namespace vantrel::sim

namespace vantrel::sim {
namespace {

// The logger's commands reach the keyer at the next poll of Timer1.
TEST(RunnerLink, LoggerWritesAreReadAtTheNextPollAndCommandsRunOnce) {
  RunOptions options;
  options.logger = true;
  const auto lines = RunScript(
      "10 slot LinkCall W1AW\n"
      "250 control Minimize\n"
      "450 control Close\n"
      "700 type E\n",
      options);
  EXPECT_THAT(lines, Contains("200.000 field CallsignField \"W1AW\""));
  EXPECT_THAT(lines, Contains("200.000 slot 0 \"W1AW\""));
  EXPECT_EQ(CountOf(lines, "400.000 window minimized"), 1);
  // Closed at the poll at 600: what comes later is dropped.
  EXPECT_THAT(lines, Contains("600.000 unmap 12291"));
  EXPECT_THAT(lines, Not(Contains("700.000 text \"E\"")));
}

TEST(RunnerLink, WithoutALoggerTheLoggersWritesGoNowhere) {
  const auto lines = RunScript("10 control Close\n500 close\n");
  EXPECT_THAT(lines, Contains("500.000 unmap 0"));
}

}  // namespace
}  // namespace vantrel::sim

namespace vantrel::sim {
namespace {

// --link: the script's slot writes reach the logger's real memory, and the
// keyer's posts its socket.
TEST(RunnerLink, OnTheRealLinkTheLoggerSeesTheScriptAndTheKeyer) {
  testing::TempFolder folder;
  const std::string shm = "/vantrel-sim-test-" + std::to_string(::getpid());
  testing::LoggerProcess logger(folder.path(), shm);
  ::setenv("XDG_RUNTIME_DIR", folder.path().c_str(), 1);
  ::setenv("VANTREL_LINK_SHM", shm.c_str(), 1);
  RunOptions options;
  options.link = true;
  options.settings = {{"Slow Typing", "OFF"}};
  const auto lines = RunScript("0 slot LinkCall W1AW\n300 send E\n", options);
  ::unsetenv("XDG_RUNTIME_DIR");
  ::unsetenv("VANTREL_LINK_SHM");
  EXPECT_THAT(lines, Contains("200.000 field CallsignField \"W1AW\""));
  EXPECT_THAT(lines, Not(Contains(::testing::HasSubstr("msgbox"))));
  EXPECT_EQ(logger.WaitFor("post 200 0 call \"W1AW\""), "post 200 0 call \"W1AW\" name \"\" srx \"###\"");
  EXPECT_EQ(logger.WaitFor("post 900"), "post 900 1");
  EXPECT_EQ(logger.WaitFor("post 900"), "post 900 0");
}

TEST(Runner, KeyerSetupAppliesWhatTheScriptEnters) {
  const auto lines = RunScript(
      "0 dialog port\n10 click CheckSerial\n20 control cmbPort Comm1\n30 control Text6 9x\n"
      "40 control DotLengthSlider 30\n50 click btnOK\n60 control 27\n");
  EXPECT_EQ(CountOf(lines, "0.000 frmPort shown"), 1);
  EXPECT_EQ(CountOf(lines, "30.000 frmPort Text6 \"9\""), 1);  // the x is dropped like a key
  EXPECT_EQ(CountOf(lines, "50.000 setting \"frmVantrel Settings\" \"Word Space\" \" 9\""), 1);
  EXPECT_EQ(CountOf(lines, "50.000 setting \"frmVantrel Settings\" \"Port to Use\" \"Serial\""), 1);
  EXPECT_EQ(CountOf(lines, "50.000 status \" Keying speed = 30 WPM\""), 1);
  EXPECT_EQ(CountOf(lines, "50.000 frmPort closed"), 1);
  // A dialog control with no dialog open is the script's error, not a logger command.
  EXPECT_THROW(RunScript("0 control Text4 5\n"), ScriptError);
}

TEST(Runner, TheChipDialogOfTheKeyerInUseRefusesAWidePotThenUploads) {
  RunOptions options;
  options.settings = {{"Keyer to Use", "WinKey"}, {"WinKey Port", "1"}};
  // Start-up has found the chip by 1100.
  const auto lines = RunScript(
      "2000 dialog winkey2\n2000 dialog winkey\n2010 control Slider1 50\n2020 click ARButton1\n"
      "2030 control Slider5 20\n2040 click ARButton1\n",
      options);
  EXPECT_THAT(lines, Not(Contains(::testing::HasSubstr("frmWinKey2Config"))));
  EXPECT_EQ(CountOf(lines, "2000.000 frmWinKeyConfig Label21 \"1:3\""), 1);
  EXPECT_EQ(CountOf(lines, "2010.000 frmWinKeyConfig Label18 \"50 WPM\""), 1);
  // The refusal's words are the window test's; here, that the run shows it.
  EXPECT_THAT(lines, Contains(::testing::StartsWith("2020.000 frmWinKeyConfig msgbox \"Invalise Speed Pot")));
  EXPECT_EQ(CountOf(lines, "2020.000 setting \"WinKey Settings\" \"WinKey Speed Max\" \"50\""), 0);
  EXPECT_EQ(CountOf(lines, "2040.000 setting \"WinKey Settings\" \"WinKey Speed Max\" \"50\""), 1);
  EXPECT_EQ(CountOf(lines, "2040.000 winkey 00 02"), 1);
  // The pot's minimum and span in the frame, then the dialog goes.
  EXPECT_EQ(CountOf(lines, "2140.000 winkey 0F 16 0F 05 32 64 FA 14 1E 00 00 14 32 32 05 FF"), 1);
  EXPECT_EQ(CountOf(lines, "2140.000 frmWinKeyConfig closed"), 1);
  // The WinKey's dialog has no WinKey2 box.
  EXPECT_THROW(RunScript("2000 dialog winkey\n2001 click ckPaddleOnlySideTone\n", options), ScriptError);
}

TEST(Runner, UdpDeliversADatagramWithItsEscapeAndTracesWhatItDid) {
  RunOptions options;
  options.settings = {{"Slow Typing", "OFF"}};
  const auto lines = RunScript("0 udp \\e2 25\n0 udp \\ehok\n0 udp e\\x0A\n500 udp \\e261\n", options);
  EXPECT_THAT(lines, Contains("0.000 cwdaemon listening \"127.0.0.1:6789\""));
  EXPECT_THAT(lines, Contains("0.000 cwdaemon speed \"25\""));
  EXPECT_THAT(lines, Contains("0.000 cwdaemon text \"e\""));
  EXPECT_THAT(lines, Contains("500.000 cwdaemon refused \"speed: 61 is outside 4 to 60\""));
  // At 25 WPM the E lasts 48 ms after the Tx delay; the answer follows its end.
  EXPECT_THAT(lines, Contains("148.000 keybox red"));
  EXPECT_THAT(lines, Contains("148.000 cwdaemon reply \"hok\\x0D\\x0A\""));
}

}  // namespace
}  // namespace vantrel::sim
