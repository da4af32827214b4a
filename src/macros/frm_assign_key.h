// The dialog that picks the function key INS stands for: one click on its
// list picks, stores and closes.
#pragma once

#include <cstdint>
#include <functional>

#include "platform/controls.h"
#include "settings/setting_writer.h"

namespace vantrel::macros {

struct AssignKeyControls {
  platform::ListBox& List1;
  // Closes the dialog's window.
  std::function<void()> Unload;
};

// Lives no longer than its list, whose clicks it takes.
class FrmAssignKey {
 public:
  FrmAssignKey(AssignKeyControls controls, int16_t& InsertKeyCode,
               settings::SettingWriter& settings);

  // Fills the list and selects the current key without storing it.
  void Form_Load();
  void List1_Click();

  bool ListReady = false;

 private:
  AssignKeyControls c_;
  int16_t& insertKeyCode_;
  settings::SettingWriter& settings_;
};

}  // namespace vantrel::macros
