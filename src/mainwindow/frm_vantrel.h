// The main window's logic: its event handlers over its controls.
#pragma once

#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "sending/cw_state.h"
#include "sending/sending_core.h"
#include "settings/settings_store.h"

namespace vantrel::mainwindow {

class FrmVantrel {
 public:
  FrmVantrel(platform::MainWindowControls& controls, platform::Scheduler& scheduler,
             sending::CwState& cw, sending::SendingCore& core, settings::SettingsStore& store,
             platform::WinKeyLink& winkey, platform::LoggerLink& link);

  // Brings the keyer up in its fixed order; `languageId` is the user's language.
  void Form_Load(int16_t languageId);

  // The one place where text becomes a transmission.
  void CWTextBox_Change();
  void Timer1_Timer();

  // No change of the text counts before start-up has finished.
  bool StartupDone = false;

 private:
  platform::MainWindowControls& c_;
  platform::Scheduler& scheduler_;
  sending::CwState& cw_;
  sending::SendingCore& core_;
  settings::SettingsStore& store_;
  platform::WinKeyLink& winkey_;
  platform::LoggerLink& link_;
};

}  // namespace vantrel::mainwindow
