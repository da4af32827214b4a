// The menu entries' handlers in the logic, so that every front end reaches
// every entry alike.
#pragma once

#include <functional>
#include <utility>

#include "app/vantrel.h"
#include "platform/main_window_design.h"

namespace vantrel::app {

// What a click on the entry does, or for an entry with a submenu what its
// opening does; empty for an entry that does nothing, and for the two that
// open a dialog of the front end's own, mnuPort and mnuInsKey.
inline std::function<void()> MenuHandler(Vantrel& keyer, platform::MenuId id) {
  using platform::MenuId;
  using Handler = void (*)(Vantrel&);
  static constexpr std::pair<MenuId, Handler> kHandlers[] = {
      {MenuId::mnuWinKey, [](Vantrel& k) { k.form.mnuWinKey_Click(); }},
      {MenuId::mnuWinKey2, [](Vantrel& k) { k.form.mnuWinKey2_Click(); }},
      {MenuId::mnuSoftwareKeyer, [](Vantrel& k) { k.form.mnuSoftwareKeyer_Click(); }},
      {MenuId::mnuWPMColor, [](Vantrel& k) { k.form.mnuWPMColor_Click(); }},
      {MenuId::mnutextfont, [](Vantrel& k) { k.form.mnutextfont_Click(); }},
      {MenuId::mnutextbackcolor, [](Vantrel& k) { k.form.mnutextbackcolor_Click(); }},
      {MenuId::mnutxtextcolor, [](Vantrel& k) { k.form.mnutxtextcolor_Click(); }},
      {MenuId::mnutxingtextcolor, [](Vantrel& k) { k.form.mnutxingtextcolor_Click(); }},
      {MenuId::mnuLoopingBackColor, [](Vantrel& k) { k.form.mnuLoopingBackColor_Click(); }},
      {MenuId::mnuSend0as0, [](Vantrel& k) { k.form.mnuSend0as0_Click(); }},
      {MenuId::mnuSend0asT, [](Vantrel& k) { k.form.mnuSend0asT_Click(); }},
      {MenuId::mnuSend0asO, [](Vantrel& k) { k.form.mnuSend0asO_Click(); }},
      {MenuId::mFkeys, [](Vantrel& k) { k.form.mFkeys_Click(); }},
      {MenuId::mSFkeys, [](Vantrel& k) { k.form.mSFkeys_Click(); }},
      {MenuId::mAFkeys, [](Vantrel& k) { k.form.mAFkeys_Click(); }},
      {MenuId::mnuOnTop, [](Vantrel& k) { k.form.mnuOnTop_Click(); }},
      {MenuId::mnuShowCallsign, [](Vantrel& k) { k.form.mnuShowCallsign_Click(); }},
      {MenuId::mnuShowSRX, [](Vantrel& k) { k.form.mnuShowSRX_Click(); }},
      {MenuId::mnuKeying, [](Vantrel& k) { k.form.mnuKeying_Click(); }},
      {MenuId::mnuVOX, [](Vantrel& k) { k.control.mnuVOX_Click(); }},
      {MenuId::mnuMOX, [](Vantrel& k) { k.control.mnuMOX_Click(); }},
      {MenuId::mnuDedicatedSerialPort, [](Vantrel& k) { k.form.mnuDedicatedSerialPort_Click(); }},
      {MenuId::mnuTX, [](Vantrel& k) { k.control.mnuTX_Click(); }},
      {MenuId::mnuAbort, [](Vantrel& k) { k.control.mnuabort_click(); }},
      {MenuId::mnuTune, [](Vantrel& k) { k.control.mnuTune_Click(); }},
  };
  for (const auto& [entry, handler] : kHandlers) {
    if (entry == id) return [&keyer, handler] { handler(keyer); };
  }
  return {};
}

}  // namespace vantrel::app
