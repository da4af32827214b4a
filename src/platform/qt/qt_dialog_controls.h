// The dialogs' controls over Qt widgets, text crossing as Latin-1. Handlers
// meant for the operator's actions are not run by the logic's own changes.
#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QPointer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/dialog_controls.h"
#include "platform/qt/qt_controls.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSlider;

namespace vantrel::platform::qt {

class QtLabel : public QtControlBase<Label> {
 public:
  explicit QtLabel(QLabel& label);
  std::string Caption() const override;
  void SetCaption(const std::string& caption) override;

 private:
  QLabel& label_;
};

class QtCheckBox : public QtControlBase<CheckBox> {
 public:
  explicit QtCheckBox(QCheckBox& box);
  bool Value() const override;
  void SetValue(bool ticked) override;
  void OnClick(std::function<void()> handler) override { onClick_ = std::move(handler); }

 private:
  QCheckBox& box_;
  std::function<void()> onClick_;
};

class QtSlider : public QtControlBase<Slider> {
 public:
  explicit QtSlider(QSlider& slider);
  int32_t Value() const override;
  void SetValue(int32_t value) override;
  void OnChange(std::function<void()> handler) override { onChange_ = std::move(handler); }

 private:
  QSlider& slider_;
  bool setting_ = false;
  std::function<void()> onChange_;
};

// A line edit that hands its focus and typed characters to the logic. The
// focus handler runs after Qt's own, which selects everything on a Tab.
class LineField : public QLineEdit {
 public:
  using QLineEdit::QLineEdit;
  std::function<void()> onFocus;
  std::function<void(int16_t&)> onKeyPress;

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

class QtTextField : public QtControlBase<TextField> {
 public:
  explicit QtTextField(LineField& field);
  std::string Text() const override;
  void SetText(const std::string& text) override;
  void SetSelStart(int start) override;
  void SetSelLength(int length) override;
  std::string SelText() const override;
  void SetFocus() override;
  void OnGotFocus(std::function<void()> handler) override { field_.onFocus = std::move(handler); }
  void OnKeyPress(std::function<void(int16_t&)> handler) override { field_.onKeyPress = std::move(handler); }

 private:
  LineField& field_;
};

class QtButton : public QtControlBase<Button> {
 public:
  explicit QtButton(QPushButton& button);
  void SetFocus() override;
  void OnClick(std::function<void()> handler) override { onClick_ = std::move(handler); }
  void OnMouseDown(std::function<void()> handler) override { onDown_ = std::move(handler); }
  void OnMouseUp(std::function<void()> handler) override { onUp_ = std::move(handler); }

 private:
  QPushButton& button_;
  std::function<void()> onClick_, onDown_, onUp_;
};

// An editable combo box; an entry's note shows as its tool tip.
class QtEditComboBox : public QtControlBase<EditComboBox> {
 public:
  explicit QtEditComboBox(QComboBox& combo);
  void Clear() override;
  void AddItem(const std::string& item, const std::string& note) override;
  int16_t ListCount() const override;
  std::string List(int16_t index) const override;
  std::string Text() const override;
  void SetText(const std::string& text) override;
  void OnChange(std::function<void()> handler) override { onChange_ = std::move(handler); }

 private:
  QComboBox& combo_;
  std::function<void()> onChange_;
};

class QtProgressBar : public QtControlBase<ProgressBar> {
 public:
  explicit QtProgressBar(QProgressBar& bar);
  void SetValue(int value) override;

 private:
  QProgressBar& bar_;
};

// A dialog whose every way of closing (the close box, Escape, the logic)
// runs one close handler.
class DialogWidget : public QDialog {
 public:
  using QDialog::QDialog;
  std::function<void()> onClose;
  void reject() override { close(); }
  // The dialog's logic, alive as long as the dialog.
  void Keep(std::shared_ptr<void> logic) { kept_ = std::move(logic); }

 protected:
  void closeEvent(QCloseEvent* event) override;
  // An adapter over one of the dialog's widgets, named for the logic and the
  // tests, and kept as long as the dialog.
  template <typename Adapter, typename Widget>
  Adapter& Make(Widget* widget, const char* name) {
    widget->setObjectName(name);
    auto adapter = std::make_shared<Adapter>(*widget);
    Adapter& made = *adapter;
    adapters_.push_back(std::move(adapter));
    return made;
  }

 private:
  std::vector<std::shared_ptr<void>> adapters_;
  std::shared_ptr<void> kept_;
};

class QtDialogWindow : public DialogWindow {
 public:
  explicit QtDialogWindow(DialogWidget& dialog) : dialog_(dialog) {}
  float Width() const override;
  float Height() const override;
  float ScreenWidth() const override;
  float ScreenHeight() const override;
  void Move(float left, float top) override;
  void SetTopmost(bool topmost) override;
  void SetMousePointer(DialogPointer pointer) override;
  void MsgBox(const std::string& text, int style, const std::string& title) override;
  void Unload() override { dialog_.close(); }
  void OnUnload(std::function<void()> handler) override { dialog_.onClose = std::move(handler); }

 private:
  DialogWidget& dialog_;
};

// "CW speed calibration results ...": two labels and a close box, gone when closed.
class FrmCalibrateWindow : public DialogWidget {
 public:
  explicit FrmCalibrateWindow(QWidget& owner);
  CalibrateControls& controls() { return controls_; }

 private:
  QtDialogWindow window_;
  std::unique_ptr<QtLabel> label1_, label2_;
  CalibrateControls controls_;
};

class QtCalibrateForm : public CalibrateForm {
 public:
  explicit QtCalibrateForm(QWidget& owner) : owner_(owner) {}
  void Show(const std::function<void(CalibrateControls&)>& load) override;
  FrmCalibrateWindow* window() const { return window_; }

 private:
  QWidget& owner_;
  QPointer<FrmCalibrateWindow> window_;
};

}  // namespace vantrel::platform::qt
