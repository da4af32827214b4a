#include "setup/frm_port.h"

#include <algorithm>
#include <cstdio>

#include "platform/key_codes.h"
#include "settings/settings_store.h"
#include "vb/vb.h"

namespace vantrel::setup {
namespace {


// A number as the dialog's text boxes show it: no blank, no trailing zeros.
std::string NumberText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.15g", value);
  return text;
}

// As Str writes a number: a blank stands where a minus sign would.
std::string SignedText(double value) {
  return (value < 0 ? "" : " ") + NumberText(value);
}

std::string HexText(int32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "&H%X", static_cast<uint32_t>(value));
  return text;
}

void SelectFirstCharacter(platform::TextField& field) {
  field.SetSelStart(0);
  field.SetSelLength(1);
}

// The proportions take digits and one kind of point only.
void KeepNumberKeys(int16_t& keyAscii) {
  const bool digit = keyAscii >= '0' && keyAscii <= '9';
  if (!digit && keyAscii != '.' && keyAscii != platform::keys::kBackspace) keyAscii = 0;
}

}  // namespace

FrmPort::FrmPort(platform::KeyerSetupControls controls, SetupNeighbours neighbours)
    : c_(controls), n_(neighbours), cw_(neighbours.cw) {
  c_.DotLengthSlider.OnChange([this] { DotLengthSlider_Change(); });
  c_.Pitch.OnChange([this] { Pitch_Change(); });
  c_.ckSidetone.OnClick([this] { ckSidetone_Click(); });
  c_.CheckParallel.OnClick([this] { CheckParallel_Click(); });
  c_.CheckSharedSerial.OnClick([this] { CheckSharedSerial_Click(); });
  c_.CheckSerial.OnClick([this] { CheckSerial_Click(); });
  c_.cmbPort.OnChange([this] { cmbPort_Change(); });
  c_.btnTest.OnMouseDown([this] { btnTest_MouseDown(); });
  c_.btnTest.OnMouseUp([this] { btnTest_MouseUp(); });
  c_.ARButton1.OnClick([this] { ARButton1_Click(); });
  c_.ARButton2.OnClick([this] { ARButton2_Click(); });
  c_.btnStopTest.OnClick([this] { btnStopTest_Click(); });
  c_.btnOK.OnClick([this] { btnOK_Click(); });
  c_.btnCancel.OnClick([this] { btnCancel_Click(); });
  c_.ProgressTimer.OnTimer([this] { ProgressTimer_Timer(); });
  for (platform::TextField* field : {&c_.Text4, &c_.Text5, &c_.Text6}) {
    field->OnGotFocus([field] { SelectFirstCharacter(*field); });
    field->OnKeyPress(KeepNumberKeys);
  }
  c_.frmPort.OnUnload([this] { Form_Unload(); });
  n_.calibration.Attach(c_.frmPort, c_.frmCalibrate);
  n_.calibration.OnFinished([this] { TestFinished(); });
}

void FrmPort::Form_Load() {
  PortDialogOpen = true;
  Applied = false;
  platform::CenterForm(c_.frmPort);

  c_.cmbPort.Clear();
  for (const platform::SerialPortChoice& port : n_.ports.SerialPorts()) {
    if (!port.name.empty()) c_.cmbPort.AddItem(port.name, port.device);
  }
  // The stored name shows from the start, so that Apply on another port keeps it.
  c_.cmbPort.SetText(cw_.DedicatedSerialPort.empty() ? "None" : cw_.DedicatedSerialPort);

  c_.DotLengthSlider.SetValue(cw_.WPM);
  c_.Text2.SetText(HexText(cw_.LptBaseAddress));
  c_.Text3.SetText(std::to_string(cw_.PTTDelay));
  c_.Text4.SetText(NumberText(cw_.DashLength));
  c_.Text5.SetText(NumberText(cw_.LetterSpace));
  c_.Text6.SetText(NumberText(cw_.WordSpace));
  DotLengthSlider_Change();

  c_.Check5.SetValue(cw_.PTTEnabled);
  c_.ckSlowTyping.SetValue(cw_.SlowTyping);
  c_.Chk6.SetValue(cw_.DisablePolling);

  c_.CheckParallel.SetValue(cw_.UseParallel);
  c_.CheckSharedSerial.SetValue(!cw_.UseParallel && cw_.UseSharedSerial);
  c_.CheckSerial.SetValue(!cw_.UseParallel && !cw_.UseSharedSerial);

  c_.ckSidetone.SetValue(cw_.SidetoneEnabled);
  c_.btnTest.SetEnabled(cw_.SidetoneEnabled);

  SavedSidetone = cw_.SidetoneEnabled;
  SavedPitch = static_cast<int16_t>(vb::RoundHalfEven(cw_.SidetoneFrequency));
  c_.Pitch.SetValue(SavedPitch);

  c_.lblProgress.SetVisible(false);
  c_.prgTest.SetVisible(false);
  c_.btnStopTest.SetEnabled(false);
  c_.frmPort.SetTopmost(true);
  UpdatePortControls();
}

void FrmPort::UpdatePortControls() {
  const bool parallel = c_.CheckParallel.Value();
  c_.Label2.SetEnabled(parallel);
  c_.Text2.SetEnabled(parallel);
  c_.Label10.SetEnabled(!parallel);
  c_.cmbPort.SetEnabled(!parallel);
  c_.lblDevice.SetEnabled(!parallel);
  c_.btnOK.SetFocus();
}

void FrmPort::DotLengthSlider_Change() {
  const auto wpm = static_cast<int16_t>(c_.DotLengthSlider.Value());
  cw_.DotTime = cw_.DotLength(wpm);
  c_.lbl.SetCaption(" Keying speed " + vb::Format(wpm, "##0") + " WPM.");
}

void FrmPort::Pitch_Change() {
  if (PortDialogOpen) cw_.SidetoneFrequency = c_.Pitch.Value();
}

void FrmPort::ckSidetone_Click() { c_.btnTest.SetEnabled(c_.ckSidetone.Value()); }

void FrmPort::PortBoxClick(platform::CheckBox& box, bool takesPortName) {
  platform::CheckBox* boxes[] = {&c_.CheckParallel, &c_.CheckSharedSerial, &c_.CheckSerial};
  if (box.Value()) {
    for (platform::CheckBox* other : boxes) {
      if (other != &box) other->SetValue(false);
    }
    if (takesPortName) c_.cmbPort.SetText(cw_.DedicatedSerialPort);
  } else if (std::none_of(std::begin(boxes), std::end(boxes),
                          [](platform::CheckBox* each) { return each->Value(); })) {
    box.SetValue(true);
  }
  UpdatePortControls();
}

void FrmPort::CheckParallel_Click() { PortBoxClick(c_.CheckParallel, false); }
void FrmPort::CheckSharedSerial_Click() { PortBoxClick(c_.CheckSharedSerial, true); }
void FrmPort::CheckSerial_Click() { PortBoxClick(c_.CheckSerial, true); }

void FrmPort::cmbPort_Change() {
  const std::string name = c_.cmbPort.Text();
  std::string unnamed;
  for (const platform::SerialPortChoice& port : n_.ports.SerialPorts()) {
    if (!port.name.empty() && vb::SameText(port.name, name)) {
      c_.lblDevice.SetCaption(port.device);
      return;
    }
    if (port.name.empty()) unnamed += (unnamed.empty() ? "" : ", ") + port.device;
  }
  const bool chosen = !name.empty() && !vb::SameText(name, "None");
  std::string caption = chosen ? "No device found for " + name + "." : "No serial port chosen.";
  if (!unnamed.empty()) {
    caption += " " + unnamed + ": link as comN in " + n_.ports.LinkFolder() + " to use as CommN.";
  }
  c_.lblDevice.SetCaption(caption);
}

void FrmPort::btnTest_MouseDown() {
  if (!cw_.SidetoneEnabled) return;
  n_.sidetone.CreateSidetone();
  n_.keyer.SidetoneOn();
}

void FrmPort::btnTest_MouseUp() {
  if (!cw_.SidetoneEnabled) return;
  n_.keyer.SidetoneOff();
}

void FrmPort::ARButton1_Click() { RunTest(20); }
void FrmPort::ARButton2_Click() { RunTest(40); }

void FrmPort::RunTest(int16_t wpm) {
  for (platform::Button* button : {&c_.ARButton1, &c_.ARButton2, &c_.btnOK}) button->SetEnabled(false);
  c_.btnStopTest.SetEnabled(true);
  c_.lblProgress.SetCaption("Waiting for the transmission to start.");
  c_.lblProgress.SetVisible(true);
  c_.prgTest.SetValue(0);
  c_.prgTest.SetVisible(true);
  c_.ProgressTimer.SetInterval(kProgressInterval);
  c_.ProgressTimer.SetEnabled(true);
  n_.calibration.RunParisTest(wpm);
  // A test that could not start has nothing to wait for.
  if (!n_.calibration.Calibrating()) TestFinished();
}

void FrmPort::ProgressTimer_Timer() {
  const double seconds = n_.calibration.ElapsedSeconds();
  if (!n_.calibration.Calibrating() || seconds < 0) return;
  const int16_t wpm = n_.calibration.state.CalibrationWPM;
  c_.lblProgress.SetCaption("PARIS " + std::to_string(wpm) + " times at " + std::to_string(wpm) +
                            " WPM: " + std::to_string(static_cast<int>(seconds)) + " of 60 seconds");
  c_.prgTest.SetValue(std::min(100, static_cast<int>(seconds * 100 / 60)));
}

void FrmPort::TestFinished() {
  c_.ProgressTimer.SetEnabled(false);
  c_.lblProgress.SetVisible(false);
  c_.prgTest.SetVisible(false);
  c_.btnStopTest.SetEnabled(false);
  for (platform::Button* button : {&c_.ARButton1, &c_.ARButton2, &c_.btnOK}) button->SetEnabled(true);
}

// A stopped run says nothing: its figures would only be a part of the minute.
void FrmPort::btnStopTest_Click() {
  if (!n_.calibration.Calibrating()) return;
  n_.calibration.Cancel();
  n_.control.mnuabort_click();
}

bool FrmPort::CheckEntries() {
  struct Entry {
    platform::TextField& field;
    bool valid;
    const char* message;
  };
  const auto number = [](const platform::TextField& field) { return vb::CDbl(field.Text()).has_value(); };
  const Entry entries[] = {
      {c_.Text3, vb::CLng(c_.Text3.Text()).has_value(), "The Tx delay must be a whole number of ms."},
      {c_.Text4, number(c_.Text4), "The dash length must be a number of dots."},
      {c_.Text5, number(c_.Text5), "The letter space must be a number of dots."},
      {c_.Text6, number(c_.Text6), "The word space must be a number of dots."},
      {c_.Text2, vb::CLng(c_.Text2.Text()).has_value(),
       "The parallel port address must be a number, such as &H378."}};
  for (const Entry& entry : entries) {
    if (entry.valid) continue;
    c_.frmPort.MsgBox(entry.message, platform::kMsgBoxExclamation, kCaption);
    entry.field.SetFocus();
    return false;
  }
  return true;
}

void FrmPort::btnOK_Click() {
  if (!CheckEntries()) return;
  settings::SettingWriter& settings = n_.settings;
  const auto write = [&settings](const char* key, const std::string& value) {
    settings.WriteSetting(settings::kMainSection, key, value);
  };
  Applied = true;
  cw_.PTTDelay = static_cast<int32_t>(vb::RoundHalfEven(vb::Val(c_.Text3.Text())));
  cw_.PTTEnabled = c_.Check5.Value();
  cw_.DisablePolling = c_.Chk6.Value();
  write("Disable Polling", cw_.DisablePolling ? "True" : "False");
  cw_.SidetoneEnabled = c_.ckSidetone.Value();
  if (cw_.SidetoneEnabled) {
    write("Sidetone", "ON");
  } else {
    write("SideTone", "OFF");
  }
  cw_.SlowTyping = c_.ckSlowTyping.Value();
  write("Slow Typing", cw_.SlowTyping ? "ON" : "OFF");
  cw_.DashLength = vb::Val(c_.Text4.Text());
  write("Dash Length", SignedText(cw_.DashLength));
  cw_.WordSpace = vb::Val(c_.Text6.Text());
  write("Word Space", SignedText(cw_.WordSpace));
  cw_.LetterSpace = vb::Val(c_.Text5.Text());
  write("Letter Space", SignedText(cw_.LetterSpace));

  // Only now, with the new proportions in place.
  const auto wpm = static_cast<int16_t>(c_.DotLengthSlider.Value());
  cw_.DotTime = cw_.DotLength(wpm);
  write("WPM", std::to_string(wpm));
  n_.control.ShowSpeed(wpm);

  write("PTT", cw_.PTTEnabled ? "ON" : "OFF");
  write("PTT Delay", c_.Text3.Text());

  const char* port = "Shared Serial";
  if (c_.CheckSerial.Value()) {
    port = "Serial";
    cw_.UseParallel = false;
    cw_.UseSharedSerial = false;
  } else if (c_.CheckParallel.Value()) {
    port = "Parallel";
    cw_.UseParallel = true;
    cw_.UseSharedSerial = false;
  } else {
    cw_.UseParallel = false;
    cw_.UseSharedSerial = true;
  }
  write("Port to Use", port);
  cw_.LptBaseAddress = *vb::CLng(c_.Text2.Text());
  write("Parallel Port Address", c_.Text2.Text());
  cw_.DedicatedSerialPort = c_.cmbPort.Text();
  write("Dedicated Serial Port", cw_.DedicatedSerialPort);
  cw_.SidetoneFrequency = c_.Pitch.Value();
  write("Frequency", std::to_string(c_.Pitch.Value()));

  // A port that will not open says so in the text box; the dialog still closes.
  n_.lines.OpenKeyerPort();
  n_.sidetone.CreateSidetone();
  c_.frmPort.Unload();
}

void FrmPort::btnCancel_Click() { c_.frmPort.Unload(); }

void FrmPort::Form_Unload() {
  PortDialogOpen = false;
  n_.calibration.Cancel();
  if (Applied) return;
  cw_.SidetoneFrequency = SavedPitch;
  cw_.SidetoneEnabled = SavedSidetone;
  n_.sidetone.CreateSidetone();
  // The slider moved the dot length; without Apply the speed in force keeps its own.
  if (!cw_.Transmitting()) cw_.DotTime = cw_.DotLength(cw_.WPM);
}

}  // namespace vantrel::setup
