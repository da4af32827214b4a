#include "app/qt_connect.h"

#include <functional>
#include <utility>

namespace vantrel::app {

// Keyer selection (mnuWinKey, mnuWinKey2, mnuSoftwareKeyer), mnuPort and
// mnuInsKey show without an action until their dialogs and the keyer
// switch exist.
void ConnectWindow(platform::qt::FrmVantrelWindow& window, Vantrel& keyer) {
  mainwindow::FrmVantrel& form = keyer.form;
  sending::SendingCore& core = keyer.core;

  window.widget().onClose = [&form](bool& cancel) {
    form.Form_QueryUnload(cancel);
    if (!cancel) form.Form_Unload();
  };
  window.widget().onResize = [&form] { form.Form_Resize(); };

  const std::pair<const char*, std::function<void()>> clicks[] = {
      {"mnuWPMColor", [&form] { form.mnuWPMColor_Click(); }},
      {"mnutextfont", [&form] { form.mnutextfont_Click(); }},
      {"mnutextbackcolor", [&form] { form.mnutextbackcolor_Click(); }},
      {"mnutxtextcolor", [&form] { form.mnutxtextcolor_Click(); }},
      {"mnutxingtextcolor", [&form] { form.mnutxingtextcolor_Click(); }},
      {"mnuLoopingBackColor", [&form] { form.mnuLoopingBackColor_Click(); }},
      {"mnuSend0as0", [&form] { form.mnuSend0as0_Click(); }},
      {"mnuSend0asT", [&form] { form.mnuSend0asT_Click(); }},
      {"mnuSend0asO", [&form] { form.mnuSend0asO_Click(); }},
      {"mFkeys", [&form] { form.mFkeys_Click(); }},
      {"mSFkeys", [&form] { form.mSFkeys_Click(); }},
      {"mAFkeys", [&form] { form.mAFkeys_Click(); }},
      {"mnuOnTop", [&form] { form.mnuOnTop_Click(); }},
      {"mnuShowCallsign", [&form] { form.mnuShowCallsign_Click(); }},
      {"mnuShowSRX", [&form] { form.mnuShowSRX_Click(); }},
      {"mnuVOX", [&core] { core.mnuVOX_Click(); }},
      {"mnuMOX", [&core] { core.mnuMOX_Click(); }},
      {"mnuDedicatedSerialPort", [&form] { form.mnuDedicatedSerialPort_Click(); }},
      {"mnuTX", [&core] { core.mnuTX_Click(); }},
      {"mnuAbort", [&core] { core.mnuabort_click(); }},
      {"mnuTune", [&core] { core.mnuTune_Click(); }},
  };
  for (const auto& [name, handler] : clicks) window.menu(name).OnClick(handler);
  window.menu("mnuKeying").OnOpen([&form] { form.mnuKeying_Click(); });

  // Owned by the text box's widget, and gone with it.
  new platform::qt::KeyEvents(
      window.CWTextBox(),
      {[&form](int16_t& keyCode, int16_t& shift) { form.cwTextBox_KeyDown(keyCode, shift); },
       [&form](int16_t& keyAscii) { form.cwTextBox_KeyPress(keyAscii); },
       [&form](int16_t button) { form.cwTextBox_MouseDown(button); },
       [&form](int16_t button) { form.cwTextBox_MouseUp(button); },
       [&form] { form.cwTextBox_GotFocus(); }});
  new platform::qt::KeyEvents(
      window.CallsignField(),
      {[&form](int16_t& keyCode, int16_t& shift) { form.FieldKeyDown(keyCode, shift, "CallsignField"); },
       [&form](int16_t& keyAscii) { form.CallsignField_KeyPress(keyAscii); },
       [&form](int16_t button) { form.CallsignField_MouseDown(button); }, nullptr,
       [&form] { form.CallsignField_GotFocus(); }});
  new platform::qt::KeyEvents(
      window.NameField(),
      {[&form](int16_t& keyCode, int16_t& shift) { form.FieldKeyDown(keyCode, shift, "NameField"); },
       [&form](int16_t& keyAscii) { form.NameField_KeyPress(keyAscii); },
       [&form](int16_t button) { form.NameField_MouseDown(button); }, nullptr, nullptr});
  new platform::qt::KeyEvents(
      window.SRXField(),
      {[&form](int16_t& keyCode, int16_t& shift) { form.FieldKeyDown(keyCode, shift, "SRXField"); },
       nullptr, nullptr, nullptr, nullptr});
}

}  // namespace vantrel::app
