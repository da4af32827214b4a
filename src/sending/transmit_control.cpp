#include "sending/sending_core.h"
#include "winkey/winkey_protocol.h"

namespace vantrel::sending {
namespace {

using platform::LinkCode;
constexpr const char* kMainSection = "frmVantrel Settings";

}  // namespace

void SendingCore::StartTransmission() {
  BoostPriority();
  c_.Timer1.SetEnabled(false);
  if (n_.calibration.Calibrating()) {
    n_.calibration.TransmissionStarted();
  } else {
    cw_.SavedWPM = cw_.WPM;
  }
  cw_.SendPosition = 0;
  cw_.Transmitting = true;
  n_.settings.HoldWrites(true);
  DisableIdleControls();
  n_.link.PostLink(LinkCode::Transmitting, 1);
  if (cw_.DisablePolling) n_.link.PostLink(LinkCode::HoldRadioPolling, 1);
  if (cw_.PTTEnabled) n_.lines.PTTLineOn();
}

// Safe to run twice in a row: a drained Abort and a Tune that an Abort stops both do.
void SendingCore::EndTransmission() {
  cw_.ReceiveAfterSend = false;
  RestorePriority();
  c_.Timer1.SetEnabled(true);
  cw_.Transmitting = false;
  platform::TextBox& box = c_.CWTextBox;
  const std::string text = box.Text();
  if (cw_.LastStepPosition >= 1 && static_cast<size_t>(cw_.LastStepPosition) == text.size()) {
    box.SetText(text.substr(text.size() - 1));
  } else {
    box.SetText("");
  }
  EnableIdleControls();
  if (n_.calibration.Calibrating()) n_.calibration.TransmissionEnded();
  n_.macroLoop.ArmMacroLoop();
  cw_.WPM = cw_.SavedWPM;
  cw_.DotTime = ComputeDotLength(cw_.WPM);
  ShowSpeed(cw_.WPM);
  n_.link.PostLink(LinkCode::Transmitting, 0);
  if (cw_.DisablePolling) n_.link.PostLink(LinkCode::HoldRadioPolling, 0);
  if (cw_.PTTEnabled && !cw_.PTTHeld) n_.lines.PTTLineOff();
  if (cw_.LogAfterSend) {
    n_.link.LogContact();
    cw_.LogAfterSend = false;
  }
  // Last, so that no write stands between the lines and their release.
  n_.settings.HoldWrites(false);
}

void SendingCore::StopTransmission() {
  EndTransmission();
  c_.CWTextBox.SetText("");
  cw_.StopSending = true;
  EnableIdleControls();
}

void SendingCore::EnableIdleControls() {
  c_.mnuTX.SetEnabled(true);
  c_.mnuAbort.SetEnabled(false);
  c_.mnuConfig.SetEnabled(true);
  c_.mnuView.SetEnabled(true);
  c_.mnuKeying.SetEnabled(true);
  c_.cmbPrevious.SetEnabled(true);
}

void SendingCore::DisableIdleControls() {
  c_.mnuConfig.SetEnabled(false);
  c_.mnuTX.SetEnabled(false);
  c_.mnuAbort.SetEnabled(true);
  c_.cmbPrevious.SetEnabled(false);
  c_.mnuView.SetEnabled(false);
  c_.mnuKeying.SetEnabled(false);
}

void SendingCore::ShowSpeed(int16_t speed) {
  c_.sBar.SetCaption(" Keying speed = " + vb::Format(speed, "##0") + " WPM");
  cw_.WPM = speed;
}

void SendingCore::StartNewTransmission() {
  const std::string text = c_.CWTextBox.Text();
  if (text.empty()) return;
  if (cw_.InSendLoop) {
    // Only after an Abort can a loop still stand on the stack here: it keys out
    // the character in hand first, then starts this one.
    cw_.StartPending = true;
    return;
  }
  MarkSendPosition(1);
  cw_.CurrentChar = text.substr(0, 1);
  int16_t start = 0;
  SendLoop(start);
}

void SendingCore::ResumeTransmission() {
  MarkSendPosition(cw_.ResumePosition);
  cw_.CurrentChar = CharacterAt(cw_.ResumePosition);
  SendLoop(cw_.ResumePosition);
}

void SendingCore::mnuTX_Click() {
  if (c_.CWTextBox.Text().empty()) return;
  if (WinKeyRoute()) {
    if (n_.winkey.PortOpen()) n_.winkey.StartWinKeyRun();
    return;
  }
  StartNewTransmission();
}

void SendingCore::mnuabort_click() {
  n_.macroLoop.CancelMacroLoop();
  EndTransmission();
  c_.CWTextBox.SetText("");
  if (cw_.TuneActive) mnuTune_Click();
  if (WinKeyRoute()) {
    cw_.Transmitting = false;
    if (n_.winKeySettings.WinKeyHoldRadioPolling) n_.link.PostLink(LinkCode::HoldRadioPolling, 0);
    if (!n_.winKeySettings.WinKeyAnalogSpeed) SendWinKeySpeed(cw_.SavedWPM);
  } else {
    cw_.WPM = cw_.SavedWPM;
    ShowSpeed(cw_.WPM);
    cw_.DotTime = ComputeDotLength(cw_.WPM);
  }
  EnableIdleControls();
}

void SendingCore::mnuTune_Click() {
  if (WinKeyRoute()) {
    n_.winkey.WriteWinKey(std::string{static_cast<char>(winkey::protocol::kKeyImmediate),
                                         static_cast<char>(cw_.TuneActive ? 0 : 1)});
  } else if (cw_.TuneActive) {
    TuneStop();
  } else {
    TuneStart();
  }
  cw_.TuneActive = !cw_.TuneActive;
}

void SendingCore::TuneStart() {
  StartTransmission();
  n_.lines.KeyLineDown();
  if (cw_.SidetoneEnabled) SidetoneOn();
}

void SendingCore::TuneStop() {
  EndTransmission();
  n_.lines.KeyLineUp();
  if (cw_.SidetoneEnabled) SidetoneOff();
}

void SendingCore::mnuVOX_Click() {
  if (c_.mnuVOX.Checked()) return;
  c_.mnuVOX.SetChecked(true);
  c_.mnuTX.SetEnabled(false);
  c_.mnuMOX.SetChecked(false);
  n_.settings.WriteSetting(kMainSection, "Keying", "VOX");
}

void SendingCore::mnuMOX_Click() {
  if (c_.mnuMOX.Checked()) return;
  c_.mnuMOX.SetChecked(true);
  c_.mnuVOX.SetChecked(false);
  if (!c_.CWTextBox.Text().empty()) c_.mnuTX.SetEnabled(true);
  n_.settings.WriteSetting(kMainSection, "Keying", "MOX");
}

}  // namespace vantrel::sending
