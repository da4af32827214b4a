// What every front end of the main window builds the same way: the menu
// tree and the order of the window's controls.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/controls.h"

namespace vantrel::platform {

// The menu tree's entries, in the tree's order, named as in the window.
enum class MenuId : uint8_t {
  mnuConfig, mnuWinKey, mnuWinKey2, mnuSoftwareKeyer, mnuNothing12, mnuPort, mnuAppearance, mnuWPMColor,
  mnutextfont, mnutextbackcolor, mnutxtextcolor, mnutxingtextcolor, mnuLoopingBackColor, mnuNothing10,
  mnuInsKey, mnuSerialNumPreferences, mnuSend0as0, mnuSend0asT, mnuSend0asO,
  mnuView, mFkeys, mSFkeys, mAFkeys, mnuNothing11, mnuOnTop, nothing22, mnuShowCallsign, mnuShowSRX,
  mnuKeying, mnuVOX, mnuMOX, mnuNothing20, mnuDedicatedSerialPort,
  mnuTX, mnuAbort, mnuTune, mnuVer, mnuVersion
};

struct MenuEntry {
  MenuId id;
  int depth;
  const char* name;
  const char* caption;  // "-" is a separator
};

// The menu tree in its order; an entry followed by a deeper one opens a submenu.
inline constexpr MenuEntry kMenuTree[] = {
    {MenuId::mnuConfig, 0, "mnuConfig", "Config"},
    {MenuId::mnuWinKey, 1, "mnuWinKey", "WinKey"},
    {MenuId::mnuWinKey2, 1, "mnuWinKey2", "WinKey2"},
    {MenuId::mnuSoftwareKeyer, 1, "mnuSoftwareKeyer", "Software"},
    {MenuId::mnuNothing12, 1, "mnuNothing12", "-"},
    {MenuId::mnuPort, 1, "mnuPort", "Keyer setup"},
    {MenuId::mnuAppearance, 1, "mnuAppearance", "Appearance"},
    {MenuId::mnuWPMColor, 2, "mnuWPMColor", "WPM Color"},
    {MenuId::mnutextfont, 2, "mnutextfont", "Text font/color"},
    {MenuId::mnutextbackcolor, 2, "mnutextbackcolor", "Text background color"},
    {MenuId::mnutxtextcolor, 2, "mnutxtextcolor", "Transmitted text color"},
    {MenuId::mnutxingtextcolor, 2, "mnutxingtextcolor", "Transmitting text color"},
    {MenuId::mnuLoopingBackColor, 2, "mnuLoopingBackColor", "Text background color (looping)"},
    {MenuId::mnuNothing10, 2, "mnuNothing10", "-"},
    {MenuId::mnuInsKey, 2, "mnuInsKey", "Assign INS key"},
    {MenuId::mnuSerialNumPreferences, 1, "mnuSerialNumPreferences", "Serial # preferences"},
    {MenuId::mnuSend0as0, 2, "mnuSend0as0", "Send 0 as 0"},
    {MenuId::mnuSend0asT, 2, "mnuSend0asT", "Send 0 as T"},
    {MenuId::mnuSend0asO, 2, "mnuSend0asO", "Send 0 as O"},
    {MenuId::mnuView, 0, "mnuView", "View"},
    {MenuId::mFkeys, 1, "mFkeys", "Show F keys"},
    {MenuId::mSFkeys, 1, "mSFkeys", "Show ALT_F keys"},
    {MenuId::mAFkeys, 1, "mAFkeys", "Show CTL_F keys"},
    {MenuId::mnuNothing11, 1, "mnuNothing11", "-"},
    {MenuId::mnuOnTop, 1, "mnuOnTop", "Always on top"},
    {MenuId::nothing22, 1, "nothing22", "-"},
    {MenuId::mnuShowCallsign, 1, "mnuShowCallsign", "Show tool bar"},
    {MenuId::mnuShowSRX, 1, "mnuShowSRX", "Show SRX field"},
    {MenuId::mnuKeying, 0, "mnuKeying", "Keying"},
    {MenuId::mnuVOX, 1, "mnuVOX", "Auto TX (VOX)"},
    {MenuId::mnuMOX, 1, "mnuMOX", "Manual TX (MOX)"},
    {MenuId::mnuNothing20, 1, "mnuNothing20", "-"},
    {MenuId::mnuDedicatedSerialPort, 1, "mnuDedicatedSerialPort", "Dedicated serial port open"},
    {MenuId::mnuTX, 0, "mnuTX", "&TX"},
    {MenuId::mnuAbort, 0, "mnuAbort", "&Abort"},
    {MenuId::mnuTune, 0, "mnuTune", "Tune"},
    {MenuId::mnuVer, 0, "mnuVer", "Ver"},
    {MenuId::mnuVersion, 1, "mnuVersion", "Version"},
};
inline constexpr size_t kMenuCount = std::size(kMenuTree);

constexpr const MenuEntry& EntryOf(MenuId id) { return kMenuTree[static_cast<size_t>(id)]; }
constexpr const char* NameOf(MenuId id) { return EntryOf(id).name; }

// The entry of that name in the window; none for a name the tree lacks.
constexpr std::optional<MenuId> MenuNamed(std::string_view name) {
  for (const MenuEntry& entry : kMenuTree) {
    if (name == entry.name) return entry.id;
  }
  return std::nullopt;
}

// The table is indexed by the enum.
static_assert([] {
  for (size_t i = 0; i < kMenuCount; ++i) {
    if (static_cast<size_t>(kMenuTree[i].id) != i) return false;
  }
  return true;
}());

// The window's controls by index, each found by its name or its entry: the
// text controls of the tool bar and the box, the menu entries in tree order,
// the panels. A language table numbers the menu captions by this index, so
// every front end must count alike.
inline std::vector<Control*> ControlOrder(const std::function<Control&(std::string_view)>& named,
                                          const std::function<Control&(MenuId)>& menu) {
  std::vector<Control*> order;
  for (const char* name : {"CWTextBox", "CallsignField", "NameField", "SRXField", "cmbPrevious"}) {
    order.push_back(&named(name));
  }
  for (const MenuEntry& entry : kMenuTree) order.push_back(&menu(entry.id));
  for (const char* name : {"ElasticOne1", "ElasticOne2", "ElasticOne3", "ElasticOne4", "sBar"}) {
    order.push_back(&named(name));
  }
  return order;
}

}  // namespace vantrel::platform
