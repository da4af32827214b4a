// The keyer's logic, built once over a platform: the state of its modules and
// the objects of its windows, wired to each other.
#pragma once

#include "app/load_settings.h"
#include "macros/frm_cw_macro_setup.h"
#include "macros/m_macros.h"
#include "mainwindow/frm_vantrel.h"
#include "platform/platform.h"
#include "sending/cw_state.h"
#include "sending/key_lines.h"
#include "sending/send_text.h"
#include "sending/sidetone.h"
#include "sending/software_keyer.h"
#include "sending/transmit_control.h"
#include "settings/settings_store.h"
#include "setup/speed_calibration.h"
#include "state/link_state.h"
#include "state/macro_state.h"
#include "state/main_window_state.h"
#include "winkey/winkey_host.h"
#include "winkey/winkey_settings.h"

namespace vantrel::app {

class Vantrel {
 public:
  explicit Vantrel(const platform::Platform& p, mainwindow::StartupEnvironment environment = {})
      : store(p.profile, p.wallClock),
        lines(cw, p.controls, sending::LinePorts{p.parallel, p.cwControl, p.linkChannel, link}),
        sidetone(cw, p.controls.CWTextBox, p.sound),
        text(cw, p.controls),
        control(cw, p.controls, store, mMacros),
        software(cw, p.controls, p.scheduler, p.pump,
                 sending::SoftwareKeyerNeighbours{lines, sidetone, p.link, mMacros, calibration,
                                                  store, text, control}),
        winKey(winKeyState, winkey::WinKeyNeighbours{cw, winKeySettings, link, p.controls,
                                                     p.cwControl, p.scheduler, control, text,
                                                     lines, p.link, mMacros, store}),
        form(p, mainwindow::ProgramState{cw, window, macros, winKeySettings, link},
             mainwindow::Keyers{control, software, winKey}, lines, sidetone, store, mMacros,
             std::move(environment)),
        macroEditor(p.macroSetup,
                    macros::MacroSetupNeighbours{macros, p.controls.btnf, p.controls.CommonDialog1,
                                                 store, store.SettingsFilePath}),
        mMacros(macros::MacroNeighbours{cw, macros, window, link, p.controls, control, lines, p.link,
                                        winKey, macroEditor, store, form.ActiveField}),
        calibration(cw, software, control, p.controls, p.scheduler, p.pump) {
    form.LoadSettingsWith([this, &controls = p.controls, &pump = p.pump] {
      SettingsHolders holders{cw,      window, macros, winKeySettings,
                              controls, control, pump, [this] { form.mnuShowSRX_Click(); }};
      LoadSettings(store, holders);
    });
  }

  sending::CwState cw;
  mainwindow::MainWindowState window;
  macros::MacroState macros;
  winkey::WinKeySettings winKeySettings;
  winkey::WinKeyState winKeyState;
  loggerlink::LinkState link;
  settings::SettingsStore store;
  sending::KeyLineDriver lines;
  sending::Sidetone sidetone;
  sending::SendText text;
  sending::TransmitControl control;
  sending::SoftwareKeyer software;
  winkey::WinKeyHost winKey;
  mainwindow::FrmVantrel form;
  macros::MacroSetupEditor macroEditor;
  // Built last: the core and the window hold these from the start but call
  // them only once events run.
  macros::MMacros mMacros;
  setup::SpeedCalibrator calibration;
};

}  // namespace vantrel::app
