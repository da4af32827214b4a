// The macros: expanding a stored text into what is sent, the loop that
// repeats one, and the 36 buttons with the keys that stand for them.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "sending/cw_state.h"
#include "sending/key_lines.h"
#include "sending/transmit_control.h"
#include "settings/setting_writer.h"
#include "state/link_state.h"
#include "state/macro_state.h"
#include "state/main_window_state.h"

namespace vantrel::macros {

struct MacroNeighbours {
  sending::CwState& cw;
  MacroState& macros;
  mainwindow::MainWindowState& window;
  const loggerlink::LinkState& link;
  platform::MainWindowControls& controls;
  sending::TransmitControl& control;
  sending::KeyLineDriver& lines;
  platform::LoggerLink& logger;
  platform::WinKeyLink& winkey;
  platform::MacroEditor& editor;
  settings::SettingWriter& settings;
  // The window's entry control that had the focus last; null before any had.
  platform::TextBox* const& activeField;
};

class MMacros : public platform::MacroLoop {
 public:
  explicit MMacros(MacroNeighbours n);

  // Told "macro N" when a macro fires, "loop armed D" and "loop cancelled",
  // for a front end that follows what happens.
  void OnNotice(std::function<void(const std::string&)> observer) { notice_ = std::move(observer); }

  // Expansion (macro_expansion.cpp).
  void QueueMacro(const std::string& macro) override;
  std::string& ExpandMacro(std::string& text);
  void ArmMacroLoop() override;
  void CancelMacroLoop() override;

  // Buttons and keys (macro_buttons.cpp).
  void btnF_Click(int16_t Index);
  bool FireHotKey(int16_t keyCode) override;
  int16_t HotKeyMacro(int16_t keyCode) const override;
  void DispatchFunctionKey(int16_t keyCode, int16_t shift) override;
  void LoopTimer_Timer();
  void btnf_MouseEnter(int16_t Index);
  void btnf_MouseLeave(int16_t Index);
  void btnf_MouseDown(int16_t Index, int16_t Button);
  void btnf_MouseUp(int16_t Index, int16_t Button);

  int16_t LastMacroIndex = 0;
  bool FocusMoved = false;

 private:
  // The button's look under the mouse or away from it.
  void ShowLook(int16_t Index, bool underMouse);
  // The steps of the expansion that take an argument or a value.
  void LinkCommandStep(std::string& text, const std::string& word, bool hex);
  void MessageStep(std::string& text);
  std::string LinkValue(loggerlink::LinkSlot slot) const;
  std::string Report(loggerlink::LinkSlot slot, bool nines) const;
  std::string SerialNumber() const;
  std::string SerialNumberLessOne() const;
  std::string ZeroRule(std::string number) const;
  void Notice(const std::string& what) const {
    if (notice_) notice_(what);
  }

  MacroNeighbours n_;
  platform::MainWindowControls& c_;
  std::function<void(const std::string&)> notice_;
};

}  // namespace vantrel::macros
