#pragma once

#include "platform/main_window_controls.h"
#include "sending/cw_state.h"
#include "sending/sending_core.h"
#include "settings/settings_store.h"

namespace vantrel::settings {

// Reads every setting once, in a fixed order, into the state and controls
// that hold it. A value that does not convert stops the load at that key:
// what follows keeps its start value, not its default.
void LoadSettings(SettingsStore& store, sending::CwState& cw,
                  platform::MainWindowControls& controls, sending::SendingCore& core);

}  // namespace vantrel::settings
