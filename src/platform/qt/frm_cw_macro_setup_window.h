// The macro editor's dialog: the macro's text, its caption, a frame with the
// preview button and the four buttons of its looks, and OK, Cancel and the
// two resets along the bottom, each where the design puts it. Modeless and
// owned by the main window.
#pragma once

#include <QDialog>
#include <QPointer>
#include <array>
#include <memory>

#include "platform/macro_setup_window.h"
#include "platform/qt/qt_controls.h"
#include "platform/qt/qt_window.h"

namespace vantrel::platform::qt {

// Each control's widget bears the control's name (MacroText, Hbutton5 ...).
class FrmCWMacroSetupWindow : public QDialog {
 public:
  explicit FrmCWMacroSetupWindow(QWidget& owner);

  MacroSetupControls& controls() { return *controls_; }
  // The dialog's logic, alive as long as the dialog.
  void Keep(std::shared_ptr<void> logic) { kept_ = std::move(logic); }

 private:
  std::unique_ptr<QtWindow> frmCWMacroSetup_;
  std::unique_ptr<QtEditBox> macroText_, captionText_;
  std::array<std::unique_ptr<QtDialogButton>, 9> buttons_;
  std::unique_ptr<MacroSetupControls> controls_;
  // Declared last, so the logic goes before the controls it holds.
  std::shared_ptr<void> kept_;
};

class QtMacroSetupWindows : public MacroSetupWindows {
 public:
  explicit QtMacroSetupWindows(QWidget& owner) : owner_(owner) {}

  MacroSetupControls& Load() override;
  void Keep(std::shared_ptr<void> logic) override;
  void Show() override;
  // The dialog goes once its own events are done, so a handler of its own may close it.
  void Unload() override;
  bool Loaded() const override { return !dialog_.isNull(); }

  // The open dialog; null when none is.
  FrmCWMacroSetupWindow* dialog() const { return dialog_.data(); }

 private:
  QWidget& owner_;
  QPointer<FrmCWMacroSetupWindow> dialog_;
};

}  // namespace vantrel::platform::qt
