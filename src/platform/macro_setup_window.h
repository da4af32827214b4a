// The macro editor's dialog as the logic reaches it: its controls by name,
// and a front end that makes a fresh dialog each time the editor opens.
#pragma once

#include <memory>

#include "platform/controls.h"
#include "platform/window.h"

namespace vantrel::platform {

struct MacroSetupControls {
  Window& frmCWMacroSetup;
  EditBox& MacroText;
  EditBox& CaptionText;
  DialogButton& Hbutton1;  // the preview
  DialogButton& BackColorButton;
  DialogButton& Hbutton3;  // "Mouseover Backcolor"
  DialogButton& Hbutton2;  // "Forecolor"
  DialogButton& Hbutton4;  // "Mouseover Forecolor"
  DialogButton& Hbutton5;  // "OK"
  DialogButton& Hbutton6;  // "Cancel"
  DialogButton& ARButton1;  // "Reset Backcolors"
  DialogButton& Hbutton7;  // "Reset/Cancel all settings"
};

// One dialog at a time. Its controls live until the next Load, so a handler
// of the dialog may unload it and still return through them.
class MacroSetupWindows {
 public:
  virtual ~MacroSetupWindows() = default;
  // A new dialog, not shown yet, with its controls as designed; any other
  // is closed first.
  virtual MacroSetupControls& Load() = 0;
  // The logic over the dialog's controls, kept as long as the dialog is.
  virtual void Keep(std::shared_ptr<void> logic) = 0;
  // Modeless, owned by the main window.
  virtual void Show() = 0;
  // Closes it; nothing when none is open.
  virtual void Unload() = 0;
  virtual bool Loaded() const = 0;
};

}  // namespace vantrel::platform
