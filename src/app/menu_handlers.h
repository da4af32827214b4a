// The menu entries' handlers in the logic, found by the entries' names, so
// that every front end reaches every entry alike.
#pragma once

#include <functional>
#include <string_view>
#include <utility>

#include "app/vantrel.h"

namespace vantrel::app {

// What a click on the entry does, or for an entry with a submenu what its
// opening does; empty for an entry that does nothing, and for the two that
// open a dialog of the front end's own, "mnuPort" and "mnuInsKey".
inline std::function<void()> MenuHandler(Vantrel& keyer, std::string_view name) {
  using Handler = void (*)(Vantrel&);
  static constexpr std::pair<std::string_view, Handler> kHandlers[] = {
      {"mnuWinKey", [](Vantrel& k) { k.form.mnuWinKey_Click(); }},
      {"mnuWinKey2", [](Vantrel& k) { k.form.mnuWinKey2_Click(); }},
      {"mnuSoftwareKeyer", [](Vantrel& k) { k.form.mnuSoftwareKeyer_Click(); }},
      {"mnuWPMColor", [](Vantrel& k) { k.form.mnuWPMColor_Click(); }},
      {"mnutextfont", [](Vantrel& k) { k.form.mnutextfont_Click(); }},
      {"mnutextbackcolor", [](Vantrel& k) { k.form.mnutextbackcolor_Click(); }},
      {"mnutxtextcolor", [](Vantrel& k) { k.form.mnutxtextcolor_Click(); }},
      {"mnutxingtextcolor", [](Vantrel& k) { k.form.mnutxingtextcolor_Click(); }},
      {"mnuLoopingBackColor", [](Vantrel& k) { k.form.mnuLoopingBackColor_Click(); }},
      {"mnuSend0as0", [](Vantrel& k) { k.form.mnuSend0as0_Click(); }},
      {"mnuSend0asT", [](Vantrel& k) { k.form.mnuSend0asT_Click(); }},
      {"mnuSend0asO", [](Vantrel& k) { k.form.mnuSend0asO_Click(); }},
      {"mFkeys", [](Vantrel& k) { k.form.mFkeys_Click(); }},
      {"mSFkeys", [](Vantrel& k) { k.form.mSFkeys_Click(); }},
      {"mAFkeys", [](Vantrel& k) { k.form.mAFkeys_Click(); }},
      {"mnuOnTop", [](Vantrel& k) { k.form.mnuOnTop_Click(); }},
      {"mnuShowCallsign", [](Vantrel& k) { k.form.mnuShowCallsign_Click(); }},
      {"mnuShowSRX", [](Vantrel& k) { k.form.mnuShowSRX_Click(); }},
      {"mnuKeying", [](Vantrel& k) { k.form.mnuKeying_Click(); }},
      {"mnuVOX", [](Vantrel& k) { k.control.mnuVOX_Click(); }},
      {"mnuMOX", [](Vantrel& k) { k.control.mnuMOX_Click(); }},
      {"mnuDedicatedSerialPort", [](Vantrel& k) { k.form.mnuDedicatedSerialPort_Click(); }},
      {"mnuTX", [](Vantrel& k) { k.control.mnuTX_Click(); }},
      {"mnuAbort", [](Vantrel& k) { k.control.mnuabort_click(); }},
      {"mnuTune", [](Vantrel& k) { k.control.mnuTune_Click(); }},
  };
  for (const auto& [entry, handler] : kHandlers) {
    if (entry == name) return [&keyer, handler] { handler(keyer); };
  }
  return {};
}

}  // namespace vantrel::app
