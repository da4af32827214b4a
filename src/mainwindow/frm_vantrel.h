// The main window's logic: its life from load to unload, and the event
// handlers over its controls.
#pragma once

#include <cstdint>
#include <string>

#include "loggerlink/link_state.h"
#include "macros/macro_state.h"
#include "mainwindow/main_window_state.h"
#include "platform/platform.h"
#include "sending/cw_state.h"
#include "sending/key_lines.h"
#include "sending/sending_core.h"
#include "settings/settings_store.h"
#include "winkey/winkey_settings.h"

namespace vantrel::mainwindow {

// Where the program stands: the folder that holds its settings, and the
// whole command line, which names a profile.
struct StartupEnvironment {
  std::string programDirectory;
  std::string commandLine;
};

// The state of the program that the window brings up and winds down.
struct ProgramState {
  sending::CwState& cw;
  MainWindowState& window;
  macros::MacroState& macros;
  winkey::WinKeySettings& winKeySettings;
  loggerlink::LinkState& link;
};

class FrmVantrel {
 public:
  static constexpr const char* kLoggerCaption = "Hallowick";
  static constexpr const char* kLinkName = "CW";

  FrmVantrel(const platform::Platform& platform, ProgramState state, sending::SendingCore& core,
             sending::KeyLineDriver& lines, settings::SettingsStore& store,
             StartupEnvironment environment);

  // Brings the keyer up in its fixed order.
  void Form_Load();
  // A close request; `cancel` set keeps the window. The first one during a
  // transmission only stops it.
  void Form_QueryUnload(bool& cancel);
  // Winds down in its fixed order; the rectangle is kept unless minimised.
  void Form_Unload();

  void CWTextBox_Change();
  void Timer1_Timer();
  void mnuDedicatedSerialPort_Click();
  void mnuShowSRX_Click();

  void LoadLanguageModule();
  std::string LoadLanguageString(int16_t id, bool keepBlanks);

  // No change of the text counts before start-up has finished.
  bool StartupDone = false;
  platform::Handle LanguageModule = 0;

 private:
  void OpenLink();

  bool showingReport_ = false;
  platform::Platform p_;
  platform::MainWindowControls& c_;
  ProgramState s_;
  sending::CwState& cw_;
  sending::SendingCore& core_;
  sending::KeyLineDriver& lines_;
  settings::SettingsStore& store_;
  StartupEnvironment environment_;
};

}  // namespace vantrel::mainwindow
