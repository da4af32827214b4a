#include "app/qt_connect.h"

#include <QPointer>
#include <functional>
#include <memory>
#include <utility>

#include "app/menu_handlers.h"
#include "macros/frm_assign_key.h"
#include "platform/main_window_design.h"
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

  window.widget().onClose = [&form](bool& cancel) {
    form.Form_QueryUnload(cancel);
    if (!cancel) form.Form_Unload();
  };
  window.widget().onResize = [&form] { form.Form_Resize(); };

  for (const platform::MenuEntry& entry : platform::kMenuTree) {
    std::function<void()> handler = MenuHandler(keyer, entry.id);
    if (!handler) continue;
    platform::qt::QtMenuItem& item = window.menu(entry.id);
    if (item.submenu()) {
      item.OnOpen(std::move(handler));
    } else {
      item.OnClick(std::move(handler));
    }
  }
  // One Assign INS key dialog at a time; a second click brings it forward.
  auto assignKey = std::make_shared<QPointer<platform::qt::FrmAssignKeyWindow>>();
  window.menu(platform::MenuId::mnuInsKey).OnClick([&window, &keyer, assignKey] {
    if (*assignKey && (*assignKey)->isVisible()) {
      (*assignKey)->raise();
      return;
    }
    auto* dialog = new platform::qt::FrmAssignKeyWindow(window.widget());
    *assignKey = dialog;
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
  const auto openChipDialog = [&window, &keyer, &ports, chipDialogs] {
    const bool winKey2 = keyer.form.KeyerChosen() == mainwindow::KeyerKind::WinKey2;
    ChipDialog& open = winKey2 ? chipDialogs->second : chipDialogs->first;
    if (open && open->isVisible()) {
      open->raise();
      return;
    }
    auto* dialog = new platform::qt::FrmWinKeyConfigWindow(window.widget(), winKey2);
    auto logic = std::make_shared<winkey::FrmWinKeyConfig>(
        winKey2 ? winkey::Chip::WinKey2 : winkey::Chip::WinKey, dialog->controls(),
        winkey::WinKeyConfigNeighbours{keyer.winKeySettings, keyer.store, keyer.winKey, ports});
    dialog->Keep(logic);
    logic->Form_Load();
    dialog->show();
    open = dialog;
  };
  // The software keyer's setup, else the chip's: the WinKey's also when no keyer is ticked.
  window.menu(platform::MenuId::mnuPort).OnClick([&window, &keyer, &ports, port, openChipDialog] {
    if (keyer.form.KeyerChosen() != mainwindow::KeyerKind::Software) {
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
          port->window->controls(), setup::SetupNeighbours{keyer.cw, keyer.software, keyer.control,
                                                           keyer.lines, keyer.sidetone, keyer.store,
                                                           keyer.calibration, ports});
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

  // A caption's ALT letter is the keyer's before it is a menu's.
  const auto takesShortcut = [&form](int16_t keyCode, int16_t shift) { return form.HoldsHotKey(keyCode, shift); };
  // Owned by the text box's widget, and gone with it.
  new platform::qt::KeyEvents(
      window.CWTextBox(),
      {[&form](int16_t& keyCode, int16_t& shift) { form.cwTextBox_KeyDown(keyCode, shift); },
       [&form](int16_t& keyAscii) { form.cwTextBox_KeyPress(keyAscii); },
       [&form](int16_t button) { form.cwTextBox_MouseDown(button); },
       [&form](int16_t button) { form.cwTextBox_MouseUp(button); },
       [&form] { form.cwTextBox_GotFocus(); }, takesShortcut});
  new platform::qt::KeyEvents(
      window.CallsignField(),
      {[&form](int16_t& keyCode, int16_t& shift) { form.FieldKeyDown(keyCode, shift, "CallsignField"); },
       [&form](int16_t& keyAscii) { form.CallsignField_KeyPress(keyAscii); },
       [&form](int16_t button) { form.CallsignField_MouseDown(button); }, nullptr,
       [&form] { form.CallsignField_GotFocus(); }, takesShortcut});
  new platform::qt::KeyEvents(
      window.NameField(),
      {[&form](int16_t& keyCode, int16_t& shift) { form.FieldKeyDown(keyCode, shift, "NameField"); },
       [&form](int16_t& keyAscii) { form.NameField_KeyPress(keyAscii); },
       [&form](int16_t button) { form.NameField_MouseDown(button); }, nullptr, nullptr, takesShortcut});
  new platform::qt::KeyEvents(
      window.SRXField(),
      {[&form](int16_t& keyCode, int16_t& shift) { form.FieldKeyDown(keyCode, shift, "SRXField"); },
       nullptr, nullptr, nullptr, nullptr, takesShortcut});
}

}  // namespace vantrel::app
