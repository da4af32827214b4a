#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/keyer_fixture.h"

namespace vantrel::sending {
namespace {

using ::testing::ElementsAre;
using testing::KeyerFixture;

constexpr int16_t kControl = 0x37A;  // the default base &H378, plus 2

class KeyLines : public KeyerFixture {
 protected:
  int LowBits() { return p.parallel.registers.at(kControl) & 0x0F; }
  // The dedicated serial route on Comm1, the memory port's first device.
  void StartSerial(Settings settings = {}) {
    settings.insert(settings.begin(),
                    {{"Port to Use", "Serial"}, {"Dedicated Serial Port", "Comm1"}});
    Start(settings);
  }
};

TEST_F(KeyLines, OpeningTheParallelPortIdlesWhateverTheRegisterHeld) {
  Start();
  for (const int16_t before : {0x00, 0x04, 0xF7, 0xFF}) {
    p.parallel.registers[kControl] = before;
    keyer.lines.OpenKeyerPort();
    EXPECT_EQ(LowBits(), 11) << "from " << before;
  }
}

TEST_F(KeyLines, ParallelRegisterFollowsTheLinesAndKeepsItsUpperBits) {
  Start({{"PTT", "ON"}, {"Slow Typing", "OFF"}, {"PTT Delay", "0"}});
  p.parallel.registers[kControl] = 0xCB;
  At(0, [&] { Type("E"); });
  Run();
  EXPECT_THAT(EventsStartingWith({"lpt"}), ElementsAre("lpt CF", "lpt C7", "lpt CF", "lpt CB"));
}

TEST_F(KeyLines, StartingOrEndingTwiceDoesNoHarm) {
  Start({{"PTT", "ON"}});
  software.StartTransmission();
  software.StartTransmission();
  EXPECT_EQ(LowBits(), 15);
  EXPECT_EQ(p.PTTBox.Shown(), platform::Picture::Green);
  software.EndTransmission();
  software.EndTransmission();
  EXPECT_EQ(LowBits(), 11);
  EXPECT_EQ(p.PTTBox.Shown(), platform::Picture::Red);
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_TRUE(p.Timer1.Enabled());
}

TEST_F(KeyLines, WithoutPttOnlyTheKeyAndItsBoxChange) {
  Start({{"PTT", "OFF"}, {"Slow Typing", "OFF"}});
  At(0, [&] { Type("T"); });
  Run();
  EXPECT_THAT(EventsStartingWith({"lpt", "keybox", "pttbox"}),
              ElementsAre("lpt 03", "keybox green", "lpt 0B", "keybox red"));
}

TEST_F(KeyLines, UnknownPortNameOnTheSharedRouteSendsTheBareCodes) {
  Start({{"Port to Use", "Shared Serial"}, {"Dedicated Serial Port", "COM3"}});
  keyer.lines.KeyLineDown();
  keyer.lines.KeyLineUp();
  EXPECT_THAT(EventsStartingWith({"send"}), ElementsAre("send 400 0", "send 300 0"));
}

TEST_F(KeyLines, SharedRouteOnlyClosesTheSerialControl) {
  StartSerial();
  ASSERT_TRUE(p.cwControl.PortOpen());
  cw.UseSharedSerial = true;
  cw.DedicatedSerialPort = "Comm4";
  keyer.lines.OpenKeyerPort();
  EXPECT_FALSE(p.cwControl.PortOpen());
  EXPECT_EQ(p.cwControl.CommPort(), 1);
  EXPECT_EQ(cw.SharedComNumber, 4);
}

TEST_F(KeyLines, DedicatedPortOpensWithBothLinesDown) {
  p.cwControl.SetDTREnable(true);  // left up by an earlier user of the control
  p.cwControl.SetRTSEnable(true);
  StartSerial({{"PTT", "ON"}, {"Slow Typing", "OFF"}});
  EXPECT_TRUE(p.cwControl.PortOpen());
  EXPECT_TRUE(p.mnuDedicatedSerialPort.Checked());
  At(0, [&] { Type("E"); });
  Run();
  EXPECT_THAT(EventsStartingWith({"dtr", "rts"}),
              ElementsAre("rts on", "dtr on", "dtr off", "rts off"));
}

TEST_F(KeyLines, PortThatWillNotOpenSaysWhyInTheBox) {
  p.cwControl.lastPresent = 2;
  Start({{"Port to Use", "Serial"}, {"Dedicated Serial Port", "Comm5"}});
  EXPECT_FALSE(p.cwControl.PortOpen());
  EXPECT_FALSE(p.mnuDedicatedSerialPort.Checked());
  EXPECT_EQ(p.CWTextBox.Text(), "CW Port error : No such file or directory");
  EXPECT_TRUE(p.cwControl.Error().empty());
  // A name that is no port gives number 0, which no device has.
  cw.DedicatedSerialPort = "Comm9";
  keyer.lines.OpenKeyerPort();
  EXPECT_EQ(p.CWTextBox.Text(), "CW Port error : Invalid port number");
}

// With or without the port's own notice of the hang-up, which the chip's
// receive handler gets on every route.
class UnpluggedSerial : public KeyLines, public ::testing::WithParamInterface<bool> {};

TEST_P(UnpluggedSerial, MidCharacterEndsTheTransmissionAndReportsOnce) {
  StartSerial({{"PTT", "ON"}, {"PTT Delay", "0"}, {"Slow Typing", "OFF"}});
  At(0, [&] { Type("PARIS"); });
  // Runs at the pump of the gap after the first dot; the dash at 120 fails.
  At(50, [&] {
    p.cwControl.Unplug();
    if (GetParam()) p.cwControl.Arrive();
  });
  Run();
  EXPECT_FALSE(p.cwControl.PortOpen());
  EXPECT_THAT(TimesOf("post 900 0").front(), 120);
  // The report is text like any other and goes out as one, to a port that is
  // gone: nothing more reaches the lines, and nothing fails again.
  EXPECT_THAT(EventsStartingWith({"dtr", "rts"}), ElementsAre("rts on", "dtr on", "dtr off"));
  EXPECT_THAT(EventsStartingWith({"text \"CW"}),
              ElementsAre("text \"CW Port error : Input/output error\""));
  EXPECT_EQ(TimesOf("post 900 1").size(), 2u);
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(p.CWTextBox.Text(), "");
}

INSTANTIATE_TEST_SUITE_P(HangUpNoticed, UnpluggedSerial, ::testing::Bool());

TEST_F(KeyLines, LostParallelPortReportsOnceAndComesBackWhenReopened) {
  Start({{"Slow Typing", "OFF"}});
  At(0, [&] { Type("E"); });
  At(0, [&] { p.parallel.Unplug(); });
  Run();
  EXPECT_EQ(EventsStartingWith({"text \"CW Port"}).size(), 1u);
  EXPECT_FALSE(cw.Transmitting());
}

// Keyer setup's Apply opens the port again, here in the middle of the first
// element, on the parallel route (true) or the dedicated serial one.
class ReopenedMidElement : public KeyLines, public ::testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    const Settings settings = {{"PTT", "ON"}, {"PTT Delay", "0"}, {"Slow Typing", "OFF"}};
    if (GetParam()) {
      Start(settings);
    } else {
      StartSerial(settings);
    }
  }
  // Key and PTT as the port has them now.
  std::pair<bool, bool> KeyAndPtt() {
    if (GetParam()) return {(LowBits() & 8) == 0, (LowBits() & 4) != 0};
    return {p.cwControl.DTREnable(), p.cwControl.RTSEnable()};
  }
};

TEST_P(ReopenedMidElement, EndsTheTransmissionWithBothLinesIdle) {
  At(0, [&] { Type("EEEE"); });
  At(10, [&] { keyer.lines.OpenKeyerPort(); });
  Run();
  EXPECT_EQ(KeyAndPtt(), std::make_pair(false, false));
  EXPECT_EQ(p.KeyBox.Shown(), platform::Picture::Red);
  EXPECT_EQ(p.PTTBox.Shown(), platform::Picture::Red);
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(p.CWTextBox.Text(), "");
  EXPECT_EQ(TimesOf("keybox green").size(), 1u);

  // Tune still keys and unkeys, in that order.
  keyer.control.mnuTune_Click();
  EXPECT_EQ(KeyAndPtt(), std::make_pair(true, true));
  keyer.control.mnuTune_Click();
  EXPECT_EQ(KeyAndPtt(), std::make_pair(false, false));
}

TEST_P(ReopenedMidElement, DuringTuneLeavesTuneOff) {
  keyer.control.mnuTune_Click();
  keyer.lines.OpenKeyerPort();
  EXPECT_EQ(KeyAndPtt(), std::make_pair(false, false));
  EXPECT_FALSE(keyer.control.keyer().Tuning());
  EXPECT_FALSE(cw.Transmitting());
  keyer.control.mnuTune_Click();
  EXPECT_EQ(KeyAndPtt(), std::make_pair(true, true));
}

TEST_F(KeyLines, ApplyOfAnotherRouteMidElementIdlesTheRouteLeft) {
  Start({{"PTT", "ON"}, {"PTT Delay", "0"}, {"Slow Typing", "OFF"}});
  At(0, [&] { Type("EEEE"); });
  // As Keyer setup's Apply: the settings first, then the port.
  At(10, [&] {
    cw.UseParallel = false;
    cw.DedicatedSerialPort = "Comm1";
    keyer.lines.OpenKeyerPort();
  });
  Run();
  EXPECT_EQ(LowBits(), 11);
  EXPECT_TRUE(p.cwControl.PortOpen());
  EXPECT_FALSE(p.cwControl.DTREnable());
  EXPECT_FALSE(p.cwControl.RTSEnable());
  EXPECT_FALSE(cw.Transmitting());
}

INSTANTIATE_TEST_SUITE_P(Routes, ReopenedMidElement, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "Parallel" : "Serial"; });

TEST_F(KeyLines, DedicatedPortMenuClosesAndReopens) {
  StartSerial();
  keyer.form.mnuDedicatedSerialPort_Click();
  EXPECT_FALSE(p.cwControl.PortOpen());
  EXPECT_FALSE(p.mnuDedicatedSerialPort.Checked());
  keyer.form.mnuDedicatedSerialPort_Click();
  EXPECT_TRUE(p.cwControl.PortOpen());
  EXPECT_TRUE(p.mnuDedicatedSerialPort.Checked());
  p.cwControl.Unplug();
  keyer.form.mnuDedicatedSerialPort_Click();  // closes: a gone device closes as well
  keyer.form.mnuDedicatedSerialPort_Click();
  EXPECT_FALSE(p.mnuDedicatedSerialPort.Checked());
  EXPECT_EQ(p.CWTextBox.Text(), "CW Port error : No such file or directory");
}

}  // namespace
}  // namespace vantrel::sending
