// The macro editor: one macro's text, caption and two looks, edited on the
// working copy in element 0 and stored on OK, in memory and in the file.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/common_dialog.h"
#include "platform/controls.h"
#include "platform/macro_setup_window.h"
#include "platform/neighbours.h"
#include "settings/setting_writer.h"
#include "state/macro_state.h"

namespace vantrel::macros {

struct MacroSetupNeighbours {
  MacroState& macros;
  platform::ControlArray<platform::CommandButton>& btnf;
  platform::CommonDialog& CommonDialog1;
  settings::SettingWriter& settings;
  // Named to the operator when a macro cannot be stored in it.
  const std::string& settingsFile;
};

// The longest macro OK stores, counted in its stored form.
inline constexpr size_t kMaxMacroLength = 3000;

// A text in the form the settings file keeps: line feeds dropped, each
// carriage return a "~".
std::string StoredMacroForm(const std::string& text);

// The caption OK keeps: "Chr$(n)" anywhere in it stands for the one
// character n, 0 to 255; otherwise the caption as typed.
std::string CaptionAtOk(const std::string& typed);

// Lives as long as its dialog, whose controls' events it takes.
class FrmCWMacroSetup {
 public:
  FrmCWMacroSetup(platform::MacroSetupControls& controls, MacroSetupNeighbours n,
                  std::function<void()> unload);

  // `tag` is the index the main window's tag carries, 1 to 36.
  void Form_Load(int16_t tag);
  // The one way in and out of the working copy.
  void LoadUnloadButton(platform::CommandButton& cont, int16_t dest, int16_t source);

  void CaptionText_Change();
  void MacroText_KeyPress(int16_t& KeyAscii);
  void Hbutton1_MouseEnter();
  void Hbutton1_MouseLeave();
  void BackColorButton_Click();
  void Hbutton3_Click();
  void Hbutton2_Click();
  void Hbutton4_Click();
  void ARButton1_Click();
  void Hbutton7_Click();
  void Hbutton6_Click();
  void Hbutton5_Click();

  int16_t MacroIndex = 0;

 private:
  bool ChooseColor(platform::Colour& colour);
  // False, with the operator told, when the file did not take the macro.
  bool WriteMacro();

  platform::MacroSetupControls& c_;
  MacroSetupNeighbours n_;
  std::function<void()> unload_;
  // The text in its stored form, as OK collects it.
  std::string stored_;
};

// The editor as the macro buttons reach it: a fresh dialog and logic for
// each right click.
class MacroSetupEditor : public platform::MacroEditor {
 public:
  MacroSetupEditor(platform::MacroSetupWindows& windows, MacroSetupNeighbours n)
      : windows_(windows), n_(n) {}

  void ShowMacroSetup(int16_t index) override;
  void UnloadMacroSetup() override { windows_.Unload(); }

  // The open dialog's logic; null while none is open.
  FrmCWMacroSetup* Form() const { return windows_.Loaded() ? form_.lock().get() : nullptr; }

 private:
  platform::MacroSetupWindows& windows_;
  MacroSetupNeighbours n_;
  std::weak_ptr<FrmCWMacroSetup> form_;
};

}  // namespace vantrel::macros
