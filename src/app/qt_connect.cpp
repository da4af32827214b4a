#include "app/qt_connect.h"

#include <QPointer>
#include <functional>
#include <memory>
#include <utility>

#include "macros/frm_assign_key.h"
#include "platform/qt/frm_assign_key_window.h"
#include "platform/qt/frm_port_window.h"
#include "platform/qt/frm_winkey_config_window.h"
#include "platform/qt/qt_button_events.h"
#include "setup/frm_port.h"
#include "winkey/frm_winkey_config.h"

namespace vantrel::app {

void ConnectWindow(platform::qt::FrmVantrelWindow& window, Vantrel& keyer,
                   const platform::SerialPortList& ports) {
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
      {"mnuWinKey", [&form] { form.mnuWinKey_Click(); }},
      {"mnuWinKey2", [&form] { form.mnuWinKey2_Click(); }},
      {"mnuSoftwareKeyer", [&form] { form.mnuSoftwareKeyer_Click(); }},
      {"mnuTX", [&core] { core.mnuTX_Click(); }},
      {"mnuAbort", [&core] { core.mnuabort_click(); }},
      {"mnuTune", [&core] { core.mnuTune_Click(); }},
  };
  for (const auto& [name, handler] : clicks) window.menu(name).OnClick(handler);
  window.menu("mnuKeying").OnOpen([&form] { form.mnuKeying_Click(); });
  window.menu("mnuInsKey").OnClick([&window, &keyer] {
    auto* dialog = new platform::qt::FrmAssignKeyWindow(window.widget());
    auto logic = std::make_shared<macros::FrmAssignKey>(
        macros::AssignKeyControls{dialog->List1(), [dialog] { dialog->close(); }},
        keyer.window.InsertKeyCode, keyer.store);
    dialog->Keep(logic);
    logic->Form_Load();
    dialog->show();
  });
  // One keyer setup dialog, made when first opened and kept by the main window.
  struct PortDialog {
    platform::qt::FrmPortWindow* window = nullptr;
    setup::FrmPort* logic = nullptr;
  };
  auto port = std::make_shared<PortDialog>();
  // Each chip's dialog is made anew at each opening and goes when closed.
  using ChipDialog = QPointer<platform::qt::FrmWinKeyConfigWindow>;
  auto chipDialogs = std::make_shared<std::pair<ChipDialog, ChipDialog>>();
  const auto openChipDialog = [&window, &keyer, chipDialogs] {
    const bool winKey2 = window.controls().mnuWinKey2.Checked();
    ChipDialog& open = winKey2 ? chipDialogs->second : chipDialogs->first;
    if (open && open->isVisible()) {
      open->raise();
      return;
    }
    auto* dialog = new platform::qt::FrmWinKeyConfigWindow(window.widget(), winKey2);
    auto logic = std::make_shared<winkey::FrmWinKeyConfig>(
        winKey2 ? winkey::Chip::WinKey2 : winkey::Chip::WinKey, dialog->controls(),
        winkey::WinKeyConfigNeighbours{keyer.winKeySettings, keyer.store, keyer.winKey});
    dialog->Keep(logic);
    logic->Form_Load();
    dialog->show();
    open = dialog;
  };
  // The software keyer's setup, else the chip's: the WinKey's also when no keyer is ticked.
  window.menu("mnuPort").OnClick([&window, &keyer, &ports, port, openChipDialog] {
    if (!window.controls().mnuSoftwareKeyer.Checked()) {
      openChipDialog();
      return;
    }
    if (port->window && port->window->isVisible()) {
      port->window->raise();
      return;
    }
    if (!port->window) {
      port->window = new platform::qt::FrmPortWindow(window.widget());
      auto logic = std::make_shared<setup::FrmPort>(
          port->window->controls(), setup::SetupNeighbours{keyer.cw, keyer.core, keyer.lines, keyer.sidetone,
                                                           keyer.store, keyer.calibration, ports});
      port->logic = logic.get();
      port->window->Keep(std::move(logic));
    }
    port->logic->Form_Load();
    port->window->show();
  });

  macros::MMacros& mMacros = keyer.mMacros;
  for (int16_t index = 1; index <= macros::kMacroCount; ++index) {
    // Owned by its button, and gone with it.
    new platform::qt::ButtonEvents(
        window.btnf()[index].button(),
        {[&mMacros, index] { mMacros.btnF_Click(index); },
         [&mMacros, index](int16_t button) { mMacros.btnf_MouseDown(index, button); },
         [&mMacros, index](int16_t button) { mMacros.btnf_MouseUp(index, button); },
         [&mMacros, index] { mMacros.btnf_MouseEnter(index); },
         [&mMacros, index] { mMacros.btnf_MouseLeave(index); }});
  }

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
