#include "sending/software_keyer.h"

#include <algorithm>
#include <limits>

namespace vantrel::sending {
namespace {

using platform::LinkCode;
using settings::kMainSection;

constexpr int kSlowestStep = 1;

}  // namespace

void SoftwareKeyer::Open() {
  n_.tone.CreateSidetone();
  n_.lines.OpenKeyerPort();
}

void SoftwareKeyer::StartTransmission() {
  BoostPriority();
  c_.Timer1.SetEnabled(false);
  if (n_.calibration.Calibrating()) {
    n_.calibration.TransmissionStarted();
  } else {
    cw_.SavedWPM = cw_.WPM;
  }
  cw_.SendPosition = 0;
  cw_.Tx = TxState::Sending;
  n_.settings.HoldWrites(true);
  n_.control.DisableIdleControls();
  n_.link.PostLink(LinkCode::Transmitting, 1);
  if (cw_.DisablePolling) n_.link.PostLink(LinkCode::HoldRadioPolling, 1);
  if (cw_.PTTEnabled) n_.lines.PTTLineOn();
}

void SoftwareKeyer::EndTransmission() {
  cw_.ReceiveAfterSend = false;
  RestorePriority();
  c_.Timer1.SetEnabled(true);
  if (cw_.Tx != TxState::Stopping) cw_.Tx = TxState::Idle;
  platform::TextBox& box = c_.CWTextBox;
  const std::string text = box.Text();
  if (cw_.LastStepPosition >= 1 && static_cast<size_t>(cw_.LastStepPosition) == text.size()) {
    box.SetText(text.substr(text.size() - 1));
  } else {
    box.SetText("");
  }
  n_.control.EnableIdleControls();
  if (n_.calibration.Calibrating()) n_.calibration.TransmissionEnded();
  n_.macroLoop.ArmMacroLoop();
  cw_.WPM = cw_.SavedWPM;
  cw_.DotTime = cw_.DotLength(cw_.WPM);
  n_.control.ShowSpeed(cw_.WPM);
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

void SoftwareKeyer::Abort() {
  EndTransmission();
  c_.CWTextBox.SetText("");
  if (tuning_) Tune(false);
  cw_.WPM = cw_.SavedWPM;
  n_.control.ShowSpeed(cw_.WPM);
  cw_.DotTime = cw_.DotLength(cw_.WPM);
}

void SoftwareKeyer::Stop() {
  EndTransmission();
  c_.CWTextBox.SetText("");
  cw_.Tx = TxState::Stopping;
  // A stop under Tune lets the key up too: nothing would later.
  if (tuning_) {
    tuning_ = false;
    n_.lines.KeyLineUp();
    if (cw_.SidetoneEnabled) SidetoneOff();
  }
  n_.control.EnableIdleControls();
}

void SoftwareKeyer::Tune(bool down) {
  if (down == tuning_) return;
  if (down) {
    TuneStart();
  } else {
    TuneStop();
  }
  tuning_ = down;
}

void SoftwareKeyer::TuneStart() {
  StartTransmission();
  n_.lines.KeyLineDown();
  if (cw_.SidetoneEnabled) SidetoneOn();
}

void SoftwareKeyer::TuneStop() {
  EndTransmission();
  n_.lines.KeyLineUp();
  if (cw_.SidetoneEnabled) SidetoneOff();
}

void SoftwareKeyer::SetSpeed(int16_t wpm) {
  if (wpm != cw_.WPM) {
    cw_.WPM = wpm;
    cw_.DotTime = cw_.DotLength(cw_.WPM);
    n_.control.ShowSpeed(cw_.WPM);
    cw_.SavedWPM = cw_.WPM;
  }
  n_.settings.WriteSetting(kMainSection, "WPM", std::to_string(cw_.WPM));
}

// Stored for good: the end of a transmission does not undo it.
void SoftwareKeyer::StepSpeed(int16_t by) {
  n_.control.ShowSpeed(static_cast<int16_t>(
      std::clamp(cw_.WPM + by, kSlowestStep, int{std::numeric_limits<int16_t>::max()})));
  cw_.DotTime = cw_.DotLength(cw_.WPM);
  n_.settings.WriteSetting(kMainSection, "WPM", std::to_string(cw_.WPM));
  if (cw_.Transmitting()) cw_.SavedWPM = cw_.WPM;
}

void SoftwareKeyer::HoldPtt(bool on) {
  if (on) {
    n_.lines.PTTLineOn();
  } else if (!cw_.Transmitting() || !cw_.PTTEnabled) {
    // A transmission that keys PTT itself lets it go at its end.
    n_.lines.PTTLineOff();
  }
}

}  // namespace vantrel::sending
