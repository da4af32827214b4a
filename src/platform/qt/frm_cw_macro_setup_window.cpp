#include "platform/qt/frm_cw_macro_setup_window.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "platform/qt/qt_geometry.h"

namespace vantrel::platform::qt {
namespace {

// The design's client area, in twips.
constexpr float kDesignWidth = 6705;
constexpr float kDesignHeight = 4395;

struct ButtonDesign {
  const char* name;
  const char* caption;
  bool inFrame;
  float left, top, width, height;
};

// In the order of MacroSetupControls; places in the frame count from the frame.
// The widths give the desktop's font room where the design's narrow face
// needed less.
constexpr std::array<ButtonDesign, 9> kButtons{{
    {"Hbutton1", "", true, 120, 240, 975, 855},
    {"BackColorButton", "Backcolor", true, 1200, 240, 1935, 375},
    {"Hbutton3", "Mouseover Backcolor", true, 3240, 240, 2415, 375},
    {"Hbutton2", "Forecolor", true, 1200, 720, 1935, 375},
    {"Hbutton4", "Mouseover Forecolor", true, 3240, 720, 2415, 375},
    {"Hbutton5", "OK", false, 120, 3960, 735, 375},
    {"Hbutton6", "Cancel", false, 960, 3960, 855, 375},
    {"ARButton1", "Reset Backcolors", false, 1920, 3960, 1935, 375},
    {"Hbutton7", "Reset/Cancel all settings", false, 3960, 3960, 2655, 375},
}};

}  // namespace

FrmCWMacroSetupWindow::FrmCWMacroSetupWindow(QWidget& owner) : QDialog(&owner, Qt::Dialog) {
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);
  setWindowTitle("Setup CW Macro -");
  frmCWMacroSetup_ = std::make_unique<QtWindow>(*this);
  frmCWMacroSetup_->SetWidth(kDesignWidth);
  frmCWMacroSetup_->SetHeight(kDesignHeight);
  setFixedSize(size());

  auto* macroText = new QPlainTextEdit(this);
  macroText->setObjectName("MacroText");
  macroText->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  macroText->setTabChangesFocus(true);
  // The caption's label and field stand beside the macro's text, not over it.
  Place(*macroText, 120, 120, 4860, 2415);
  macroText_ = std::make_unique<QtEditBox>(*macroText);

  auto* label = new QLabel("Button Caption", this);
  label->setObjectName("Label2");
  Place(*label, 5100, 405, 1515, 255);
  auto* captionText = new QLineEdit(this);
  captionText->setObjectName("CaptionText");
  Place(*captionText, 5100, 720, 1515, 300);
  captionText_ = std::make_unique<QtEditBox>(*captionText);

  auto* frame = new QGroupBox(" Setup Macro button appearance ", this);
  frame->setObjectName("Frame1");
  Place(*frame, 120, 2640, 6495, 1215);
  for (size_t i = 0; i < kButtons.size(); ++i) {
    const ButtonDesign& design = kButtons[i];
    auto* button = new QPushButton(design.caption, design.inFrame ? static_cast<QWidget*>(frame)
                                                                  : static_cast<QWidget*>(this));
    button->setObjectName(design.name);
    // Enter belongs to the text boxes, not to a default button.
    button->setAutoDefault(false);
    Place(*button, design.left, design.top, design.width, design.height);
    buttons_[i] = std::make_unique<QtDialogButton>(*button);
  }
  controls_ = std::make_unique<MacroSetupControls>(MacroSetupControls{
      *frmCWMacroSetup_, *macroText_, *captionText_, *buttons_[0], *buttons_[1], *buttons_[2],
      *buttons_[3], *buttons_[4], *buttons_[5], *buttons_[6], *buttons_[7], *buttons_[8]});
}

MacroSetupControls& QtMacroSetupWindows::Load() {
  Unload();
  dialog_ = new FrmCWMacroSetupWindow(owner_);
  return dialog_->controls();
}

void QtMacroSetupWindows::Keep(std::shared_ptr<void> logic) {
  if (dialog_) dialog_->Keep(std::move(logic));
}

void QtMacroSetupWindows::Show() {
  if (dialog_) dialog_->show();
}

void QtMacroSetupWindows::Unload() {
  if (!dialog_) return;
  FrmCWMacroSetupWindow* dialog = dialog_.data();
  dialog_ = nullptr;
  dialog->hide();
  dialog->deleteLater();
}

}  // namespace vantrel::platform::qt
