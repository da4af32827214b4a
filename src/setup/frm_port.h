// "Keyer setup": the software keyer's port, speed, proportions, PTT delay
// and sidetone. Most values take effect on "Apply"; the pitch slider acts at
// once and is taken back when the dialog closes without Apply.
#pragma once

#include <cstdint>
#include <string>

#include "platform/keyer_setup_controls.h"
#include "platform/neighbours.h"
#include "platform/serial_port_list.h"
#include "sending/cw_state.h"
#include "sending/key_lines.h"
#include "sending/software_keyer.h"
#include "sending/transmit_control.h"
#include "setup/speed_calibration.h"

namespace vantrel::setup {

struct SetupNeighbours {
  sending::CwState& cw;
  sending::SoftwareKeyer& keyer;
  sending::TransmitControl& control;
  sending::KeyLineDriver& lines;
  platform::ToneOutput& sidetone;
  settings::SettingWriter& settings;
  SpeedCalibrator& calibration;
  const platform::SerialPortList& ports;
};

// Lives as long as its controls, whose events it takes.
class FrmPort {
 public:
  static constexpr const char* kCaption = "Keyer setup";
  static constexpr int32_t kProgressInterval = 1000;

  FrmPort(platform::KeyerSetupControls controls, SetupNeighbours neighbours);

  void Form_Load();
  // Runs on every close: Apply, Cancel or the close box.
  void Form_Unload();
  void UpdatePortControls();

  void DotLengthSlider_Change();
  void Pitch_Change();
  void ckSidetone_Click();
  void CheckParallel_Click();
  void CheckSharedSerial_Click();
  void CheckSerial_Click();
  void cmbPort_Change();
  void btnTest_MouseDown();
  void btnTest_MouseUp();
  void ARButton1_Click();
  void ARButton2_Click();
  void btnStopTest_Click();
  void btnOK_Click();
  void btnCancel_Click();
  void ProgressTimer_Timer();

  bool Applied = false;
  int16_t SavedPitch = 0;
  bool SavedSidetone = false;
  bool PortDialogOpen = false;

 private:
  void PortBoxClick(platform::CheckBox& box, bool takesPortName);
  void RunTest(int16_t wpm);
  void TestFinished();
  // Refuses what would not read back at the next start; false after saying why.
  bool CheckEntries();

  platform::KeyerSetupControls c_;
  SetupNeighbours n_;
  sending::CwState& cw_;
};

}  // namespace vantrel::setup
