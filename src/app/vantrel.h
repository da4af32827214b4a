// The keyer's logic, built once over a platform: the state of its modules and
// the objects of its windows, wired to each other.
#pragma once

#include "loggerlink/link_state.h"
#include "macros/frm_cw_macro_setup.h"
#include "macros/m_macros.h"
#include "macros/macro_state.h"
#include "mainwindow/frm_vantrel.h"
#include "mainwindow/main_window_state.h"
#include "platform/platform.h"
#include "sending/cw_state.h"
#include "sending/key_lines.h"
#include "sending/sending_core.h"
#include "sending/sidetone.h"
#include "settings/settings_store.h"
#include "setup/speed_calibration.h"
#include "winkey/winkey_host.h"
#include "winkey/winkey_settings.h"

namespace vantrel::app {

class Vantrel {
 public:
  explicit Vantrel(const platform::Platform& p, mainwindow::StartupEnvironment environment = {})
      : store(p.profile, p.wallClock),
        lines(cw, p.controls, sending::LinePorts{p.parallel, p.cwControl, p.linkChannel, link}),
        sidetone(cw, p.controls.CWTextBox, p.sound),
        core(cw, p.controls, p.scheduler, p.pump,
             sending::SendingNeighbours{lines, winKeySettings, sidetone, p.link, winKey, mMacros,
                                        calibration, store}),
        winKey(winKeyState, winkey::WinKeyNeighbours{cw, winKeySettings, link, p.controls,
                                                     p.cwControl, p.scheduler, core, lines, p.link,
                                                     mMacros}),
        form(p, mainwindow::ProgramState{cw, window, macros, winKeySettings, link}, core, lines,
             sidetone, store, mMacros, winKey, std::move(environment)),
        macroEditor(p.macroSetup,
                    macros::MacroSetupNeighbours{macros, p.controls.btnf, p.controls.CommonDialog1,
                                                 store, store.SettingsFilePath}),
        mMacros(macros::MacroNeighbours{cw, macros, window, winKeySettings, link, p.controls, core,
                                        lines, p.link, winKey, macroEditor, store,
                                        form.ActiveField}),
        calibration(cw, core, p.controls, p.scheduler, p.pump) {}

  sending::CwState cw;
  mainwindow::MainWindowState window;
  macros::MacroState macros;
  winkey::WinKeySettings winKeySettings;
  winkey::WinKeyState winKeyState;
  loggerlink::LinkState link;
  settings::SettingsStore store;
  sending::KeyLineDriver lines;
  sending::Sidetone sidetone;
  sending::SendingCore core;
  winkey::WinKeyHost winKey;
  mainwindow::FrmVantrel form;
  macros::MacroSetupEditor macroEditor;
  // Built last: the core and the window hold these from the start but call
  // them only once events run.
  macros::MMacros mMacros;
  setup::SpeedCalibrator calibration;
};

}  // namespace vantrel::app
