// The one table of every settings key, and the load that reads them all once
// at start-up into the state and controls that hold them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/event_pump.h"
#include "platform/main_window_controls.h"
#include "sending/cw_state.h"
#include "sending/transmit_control.h"
#include "settings/settings_store.h"
#include "state/macro_state.h"
#include "state/main_window_state.h"
#include "winkey/winkey_settings.h"

namespace vantrel::app {

// Where the load puts what it reads, and what it acts on as it goes.
struct SettingsHolders {
  sending::CwState& cw;
  mainwindow::MainWindowState& window;
  macros::MacroState& macros;
  winkey::WinKeySettings& winkey;
  platform::MainWindowControls& controls;
  sending::TransmitControl& control;
  platform::EventPump& pump;
  // The "show SRX field" menu command, which ticks its own menu item.
  std::function<void()> mnuShowSRX_Click;
};

// How a key's text becomes its value. Exact and Text both hand the text on:
// an exact key is then compared with literals, case and all.
enum class Form { Exact, Boolean, Integer, Long, Val, Val16, Double, Text };

// Macro keys stand in the main section, once per macro with its number behind.
enum class Section { Main, Macro, Keyer };

// Exact and Text give the string, Boolean bool, Integer and Val16 int16_t,
// Long int32_t, Val and Double double.
using SettingValue = std::variant<std::string, bool, int16_t, int32_t, double>;

struct Setting {
  Section section;
  const char* key;
  const char* fallback;
  Form form;
  // Stores the value and acts on it; `macro` is the macro's number, else 0.
  std::function<void(SettingsHolders&, int16_t macro, const SettingValue&)> apply;
};

// Every key, in load order: main section, one macro's keys, keyer section.
const std::vector<Setting>& SettingsTable();

// Reads every key once. A value that does not convert stops the load at that
// key: what follows keeps its start value, not its default. The read section
// is left at the keyer's.
void LoadSettings(settings::SettingsStore& store, SettingsHolders& holders);

// The section a writer puts a key in: the keyer's for its keys, the
// network's for its own, else the main one.
const char* SectionOf(std::string_view key);

}  // namespace vantrel::app
