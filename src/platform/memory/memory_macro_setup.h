// The macro editor's dialog in memory: its controls trace what the operator
// would see, and Click, MouseEnter and Type on them act for the operator.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "platform/macro_setup_window.h"
#include "platform/memory/memory_controls.h"
#include "platform/memory/trace.h"

namespace vantrel::platform::memory {

struct MemoryMacroSetupDialog {
  explicit MemoryMacroSetupDialog(Trace& trace)
      : frmCWMacroSetup(trace, "editor ", kDesignWidth, kDesignHeight),
        MacroText(trace, "editor MacroText", true),
        CaptionText(trace, "editor CaptionText", false),
        Hbutton1(trace, "editor Hbutton1"),
        BackColorButton(trace),
        Hbutton3(trace),
        Hbutton2(trace),
        Hbutton4(trace),
        Hbutton5(trace),
        Hbutton6(trace),
        ARButton1(trace),
        Hbutton7(trace) {
    BackColorButton.SetCaption("Backcolor");
    Hbutton3.SetCaption("Mouseover Backcolor");
    Hbutton2.SetCaption("Forecolor");
    Hbutton4.SetCaption("Mouseover Forecolor");
    Hbutton5.SetCaption("OK");
    Hbutton6.SetCaption("Cancel");
    ARButton1.SetCaption("Reset Backcolors");
    Hbutton7.SetCaption("Reset/Cancel all settings");
  }

  // A button by its name, null for one the dialog does not have.
  MemoryDialogButton* Button(std::string_view name) {
    const std::pair<std::string_view, MemoryDialogButton*> buttons[] = {
        {"Hbutton1", &Hbutton1}, {"BackColorButton", &BackColorButton},
        {"Hbutton3", &Hbutton3}, {"Hbutton2", &Hbutton2},
        {"Hbutton4", &Hbutton4}, {"Hbutton5", &Hbutton5},
        {"Hbutton6", &Hbutton6}, {"ARButton1", &ARButton1},
        {"Hbutton7", &Hbutton7}};
    for (const auto& [buttonName, button] : buttons) {
      if (buttonName == name) return button;
    }
    return nullptr;
  }

  // The design's client area.
  static constexpr float kDesignWidth = 6705;
  static constexpr float kDesignHeight = 4395;

  MemoryWindow frmCWMacroSetup;
  MemoryEditBox MacroText;
  MemoryEditBox CaptionText;
  MemoryDialogButton Hbutton1;
  MemoryDialogButton BackColorButton;
  MemoryDialogButton Hbutton3;
  MemoryDialogButton Hbutton2;
  MemoryDialogButton Hbutton4;
  MemoryDialogButton Hbutton5;
  MemoryDialogButton Hbutton6;
  MemoryDialogButton ARButton1;
  MemoryDialogButton Hbutton7;
  MacroSetupControls controls{frmCWMacroSetup, MacroText, CaptionText, Hbutton1,
                              BackColorButton, Hbutton3,  Hbutton2,    Hbutton4,
                              Hbutton5,        Hbutton6,  ARButton1,   Hbutton7};
};

// Traces "editor shown" and "editor closed". A closed dialog's controls stay
// readable until the next one loads.
class MemoryMacroSetup : public MacroSetupWindows {
 public:
  explicit MemoryMacroSetup(Trace& trace) : trace_(trace) {}

  MacroSetupControls& Load() override {
    Unload();
    logic_.reset();
    dialog_ = std::make_unique<MemoryMacroSetupDialog>(trace_);
    loaded_ = true;
    return dialog_->controls;
  }
  void Keep(std::shared_ptr<void> logic) override { logic_ = std::move(logic); }
  void Show() override { trace_.Emit("editor shown"); }
  void Unload() override {
    if (!loaded_) return;
    loaded_ = false;
    trace_.Emit("editor closed");
  }
  bool Loaded() const override { return loaded_; }

  // The dialog loaded last.
  MemoryMacroSetupDialog& dialog() {
    if (!dialog_) throw std::logic_error("the macro editor has not been opened");
    return *dialog_;
  }

 private:
  Trace& trace_;
  std::unique_ptr<MemoryMacroSetupDialog> dialog_;
  std::shared_ptr<void> logic_;
  bool loaded_ = false;
};

}  // namespace vantrel::platform::memory
