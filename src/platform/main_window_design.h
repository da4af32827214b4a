// What every front end of the main window builds the same way: the menu
// tree and the order of the window's controls.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "platform/controls.h"

namespace vantrel::platform {

struct MenuEntry {
  int depth;
  const char* name;
  const char* caption;  // "-" is a separator
};

// The menu tree in its order; an entry followed by a deeper one opens a submenu.
inline constexpr MenuEntry kMenuTree[] = {
    {0, "mnuConfig", "Config"},
    {1, "mnuWinKey", "WinKey"},
    {1, "mnuWinKey2", "WinKey2"},
    {1, "mnuSoftwareKeyer", "Software"},
    {1, "mnuNothing12", "-"},
    {1, "mnuPort", "Keyer setup"},
    {1, "mnuAppearance", "Appearance"},
    {2, "mnuWPMColor", "WPM Color"},
    {2, "mnutextfont", "Text font/color"},
    {2, "mnutextbackcolor", "Text background color"},
    {2, "mnutxtextcolor", "Transmitted text color"},
    {2, "mnutxingtextcolor", "Transmitting text color"},
    {2, "mnuLoopingBackColor", "Text background color (looping)"},
    {2, "mnuNothing10", "-"},
    {2, "mnuInsKey", "Assign INS key"},
    {1, "mnuSerialNumPreferences", "Serial # preferences"},
    {2, "mnuSend0as0", "Send 0 as 0"},
    {2, "mnuSend0asT", "Send 0 as T"},
    {2, "mnuSend0asO", "Send 0 as O"},
    {0, "mnuView", "View"},
    {1, "mFkeys", "Show F keys"},
    {1, "mSFkeys", "Show ALT_F keys"},
    {1, "mAFkeys", "Show CTL_F keys"},
    {1, "mnuNothing11", "-"},
    {1, "mnuOnTop", "Always on top"},
    {1, "nothing22", "-"},
    {1, "mnuShowCallsign", "Show tool bar"},
    {1, "mnuShowSRX", "Show SRX field"},
    {0, "mnuKeying", "Keying"},
    {1, "mnuVOX", "Auto TX (VOX)"},
    {1, "mnuMOX", "Manual TX (MOX)"},
    {1, "mnuNothing20", "-"},
    {1, "mnuDedicatedSerialPort", "Dedicated serial port open"},
    {0, "mnuTX", "&TX"},
    {0, "mnuAbort", "&Abort"},
    {0, "mnuTune", "Tune"},
    {0, "mnuVer", "Ver"},
    {1, "mnuVersion", "Version"},
};

// The window's controls by index, each found by its name: the text controls
// of the tool bar and the box, the menu entries in tree order, the panels. A
// language table numbers the menu captions by this index, so every front end
// must count alike.
inline std::vector<Control*> ControlOrder(const std::function<Control&(std::string_view)>& named) {
  std::vector<Control*> order;
  for (const char* name : {"CWTextBox", "CallsignField", "NameField", "SRXField", "cmbPrevious"}) {
    order.push_back(&named(name));
  }
  for (const MenuEntry& entry : kMenuTree) order.push_back(&named(entry.name));
  for (const char* name : {"ElasticOne1", "ElasticOne2", "ElasticOne3", "ElasticOne4", "sBar"}) {
    order.push_back(&named(name));
  }
  return order;
}

}  // namespace vantrel::platform
