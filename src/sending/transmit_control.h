// The Keying menu's transmit entries and what every keyer shows the same way:
// the menus a transmission greys, the speed in the status panel. The menus
// reach the keyer in use through here.
#pragma once

#include <cstdint>

#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "sending/cw_state.h"
#include "sending/keyer.h"
#include "settings/setting_writer.h"

namespace vantrel::sending {

class TransmitControl {
 public:
  TransmitControl(CwState& cw, platform::MainWindowControls& controls,
                  settings::SettingWriter& settings, platform::MacroLoop& macroLoop)
      : cw_(cw), c_(controls), settings_(settings), macroLoop_(macroLoop) {}

  // Keyer selection's one call: from here on the menus reach this keyer.
  void Use(Keyer& keyer) { keyer_ = &keyer; }
  Keyer& keyer() const { return *keyer_; }

  void mnuTX_Click();
  void mnuabort_click();
  void mnuTune_Click();
  void mnuVOX_Click();
  void mnuMOX_Click();
  // Ends a transmission from inside it, as a close request or a lost port does.
  void StopTransmission() { keyer_->Stop(); }
  // The window goes: a send loop still on the stack unwinds.
  void StopSending() { cw_.Tx = TxState::Stopping; }

  void EnableIdleControls();
  void DisableIdleControls();
  void ShowSpeed(int16_t speed);

 private:
  CwState& cw_;
  platform::MainWindowControls& c_;
  settings::SettingWriter& settings_;
  platform::MacroLoop& macroLoop_;
  Keyer* keyer_ = nullptr;
};

}  // namespace vantrel::sending
