#include "sending/transmit_control.h"

#include "vb/vb.h"

namespace vantrel::sending {

using settings::kMainSection;

void TransmitControl::mnuTX_Click() {
  if (c_.CWTextBox.Text().empty()) return;
  keyer_->StartRun();
}

void TransmitControl::mnuabort_click() {
  macroLoop_.CancelMacroLoop();
  keyer_->Abort();
  EnableIdleControls();
}

void TransmitControl::mnuTune_Click() { keyer_->Tune(!keyer_->Tuning()); }

void TransmitControl::EnableIdleControls() {
  c_.mnuTX.SetEnabled(true);
  c_.mnuAbort.SetEnabled(false);
  c_.mnuConfig.SetEnabled(true);
  c_.mnuView.SetEnabled(true);
  c_.mnuKeying.SetEnabled(true);
  c_.cmbPrevious.SetEnabled(true);
}

void TransmitControl::DisableIdleControls() {
  c_.mnuConfig.SetEnabled(false);
  c_.mnuTX.SetEnabled(false);
  c_.mnuAbort.SetEnabled(true);
  c_.cmbPrevious.SetEnabled(false);
  c_.mnuView.SetEnabled(false);
  c_.mnuKeying.SetEnabled(false);
}

void TransmitControl::ShowSpeed(int16_t speed) {
  c_.sBar.SetCaption(" Keying speed = " + vb::Format(speed, "##0") + " WPM");
  cw_.WPM = speed;
}

void TransmitControl::mnuVOX_Click() {
  if (c_.mnuVOX.Checked()) return;
  c_.mnuVOX.SetChecked(true);
  c_.mnuTX.SetEnabled(false);
  c_.mnuMOX.SetChecked(false);
  settings_.WriteSetting(kMainSection, "Keying", "VOX");
}

void TransmitControl::mnuMOX_Click() {
  if (c_.mnuMOX.Checked()) return;
  c_.mnuMOX.SetChecked(true);
  c_.mnuVOX.SetChecked(false);
  if (!c_.CWTextBox.Text().empty()) c_.mnuTX.SetEnabled(true);
  settings_.WriteSetting(kMainSection, "Keying", "MOX");
}

}  // namespace vantrel::sending
