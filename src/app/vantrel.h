// The keyer's logic, built once over a platform: the state of its modules and
// the objects of its windows, wired to each other.
#pragma once

#include "mainwindow/frm_vantrel.h"
#include "platform/platform.h"
#include "sending/cw_state.h"
#include "sending/sending_core.h"
#include "settings/settings_store.h"

namespace vantrel::app {

class Vantrel {
 public:
  explicit Vantrel(const platform::Platform& p)
      : store(p.profile),
        core(cw, p.controls, p.scheduler, p.pump,
             sending::SendingNeighbours{p.lines, p.tone, p.link, p.winkey, p.macroLoop,
                                        p.calibration, store}),
        form(p.controls, p.scheduler, cw, core, store, p.winkey, p.link) {}

  sending::CwState cw;
  settings::SettingsStore store;
  sending::SendingCore core;
  mainwindow::FrmVantrel form;
};

}  // namespace vantrel::app
