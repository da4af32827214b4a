#include "platform/qt/qt_dialog_controls.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QVBoxLayout>

#include "platform/window.h"

namespace vantrel::platform::qt {

QtLabel::QtLabel(QLabel& label) : QtControlBase(label), label_(label) {}
std::string QtLabel::Caption() const { return FromQString(label_.text()); }
void QtLabel::SetCaption(const std::string& caption) { label_.setText(ToQString(caption)); }

QtCheckBox::QtCheckBox(QCheckBox& box) : QtControlBase(box), box_(box) {
  // clicked comes from the operator only, after the tick has turned over.
  QObject::connect(&box_, &QCheckBox::clicked, [this] {
    if (onClick_) onClick_();
  });
}
bool QtCheckBox::Value() const { return box_.isChecked(); }
void QtCheckBox::SetValue(bool ticked) { box_.setChecked(ticked); }

QtSlider::QtSlider(QSlider& slider) : QtControlBase(slider), slider_(slider) {
  QObject::connect(&slider_, &QSlider::valueChanged, [this] {
    if (!setting_ && onChange_) onChange_();
  });
}
int32_t QtSlider::Value() const { return slider_.value(); }
void QtSlider::SetValue(int32_t value) {
  setting_ = true;
  slider_.setValue(value);
  setting_ = false;
}

void LineField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  if (onFocus) onFocus();
}

void LineField::keyPressEvent(QKeyEvent* event) {
  const QString text = event->text();
  if (onKeyPress && !text.isEmpty() && text.at(0).unicode() <= 255 &&
      !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
    int16_t code = static_cast<int16_t>(text.at(0).unicode());
    onKeyPress(code);
    if (code == 0) {
      event->accept();
      return;
    }
  }
  QLineEdit::keyPressEvent(event);
}

QtTextField::QtTextField(LineField& field) : QtControlBase(field), field_(field) {}
std::string QtTextField::Text() const { return FromQString(field_.text()); }
void QtTextField::SetText(const std::string& text) { field_.setText(ToQString(text)); }
void QtTextField::SetSelStart(int start) { field_.setCursorPosition(start); }
void QtTextField::SetSelLength(int length) {
  const int start = field_.hasSelectedText() ? field_.selectionStart() : field_.cursorPosition();
  field_.setSelection(start, length);
}
std::string QtTextField::SelText() const { return FromQString(field_.selectedText()); }
void QtTextField::SetFocus() { field_.setFocus(Qt::OtherFocusReason); }

QtButton::QtButton(QPushButton& button) : QtControlBase(button), button_(button) {
  QObject::connect(&button_, &QPushButton::pressed, [this] {
    if (onDown_) onDown_();
  });
  QObject::connect(&button_, &QPushButton::released, [this] {
    if (onUp_) onUp_();
  });
  QObject::connect(&button_, &QPushButton::clicked, [this] {
    if (onClick_) onClick_();
  });
}
void QtButton::SetFocus() { button_.setFocus(Qt::OtherFocusReason); }

QtEditComboBox::QtEditComboBox(QComboBox& combo) : QtControlBase(combo), combo_(combo) {
  QObject::connect(&combo_, &QComboBox::editTextChanged, [this] {
    if (onChange_) onChange_();
  });
}
void QtEditComboBox::Clear() {
  const QString text = combo_.currentText();
  combo_.clear();
  combo_.setEditText(text);
}
void QtEditComboBox::AddItem(const std::string& item, const std::string& note) {
  combo_.addItem(ToQString(item));
  combo_.setItemData(combo_.count() - 1, ToQString(note), Qt::ToolTipRole);
}
int16_t QtEditComboBox::ListCount() const { return static_cast<int16_t>(combo_.count()); }
std::string QtEditComboBox::List(int16_t index) const { return FromQString(combo_.itemText(index)); }
std::string QtEditComboBox::Text() const { return FromQString(combo_.currentText()); }
void QtEditComboBox::SetText(const std::string& text) {
  combo_.setEditText(ToQString(text));
  // Qt tells no change when the text stays the same; the logic's rule does.
  if (combo_.currentText() == ToQString(text) && onChange_) onChange_();
}

QtProgressBar::QtProgressBar(QProgressBar& bar) : QtControlBase(bar), bar_(bar) {}
void QtProgressBar::SetValue(int value) { bar_.setValue(value); }

void DialogWidget::closeEvent(QCloseEvent* event) {
  // Hidden already: nothing is left to unload.
  if (isVisible() && onClose) onClose();
  event->accept();
}

float QtDialogWindow::Width() const {
  return static_cast<float>(dialog_.frameGeometry().width() * TwipsPerPixelX(dialog_));
}
float QtDialogWindow::Height() const {
  return static_cast<float>(dialog_.frameGeometry().height() * TwipsPerPixelY(dialog_));
}
float QtDialogWindow::ScreenWidth() const {
  const QScreen* screen = dialog_.screen();
  return screen ? static_cast<float>(screen->availableGeometry().width() * TwipsPerPixelX(dialog_)) : 0;
}
float QtDialogWindow::ScreenHeight() const {
  const QScreen* screen = dialog_.screen();
  return screen ? static_cast<float>(screen->availableGeometry().height() * TwipsPerPixelY(dialog_)) : 0;
}
void QtDialogWindow::Move(float left, float top) {
  const QScreen* screen = dialog_.screen();
  const QPoint origin = screen ? screen->availableGeometry().topLeft() : QPoint();
  dialog_.move(origin + QPoint(qRound(left / TwipsPerPixelX(dialog_)), qRound(top / TwipsPerPixelY(dialog_))));
}

// Changing a window flag hides a shown window; it comes back at once.
void QtDialogWindow::SetTopmost(bool topmost) {
  const bool shown = dialog_.isVisible();
  dialog_.setWindowFlag(Qt::WindowStaysOnTopHint, topmost);
  if (shown) dialog_.show();
}

void QtDialogWindow::SetMousePointer(DialogPointer pointer) {
  if (pointer == DialogPointer::NoDrop) {
    dialog_.setCursor(Qt::ForbiddenCursor);
  } else {
    dialog_.unsetCursor();
  }
}

void QtDialogWindow::MsgBox(const std::string& text, int style, const std::string& title) {
  // The icon is the style's one field, bits 4 to 6.
  const int iconField = style & 0x70;
  const QMessageBox::Icon icon = iconField == kMsgBoxExclamation   ? QMessageBox::Warning
                                 : iconField == kMsgBoxInformation ? QMessageBox::Information
                                                                   : QMessageBox::NoIcon;
  QMessageBox box(icon, ToQString(title), ToQString(text), QMessageBox::Ok, &dialog_);
  box.exec();
}

FrmCalibrateWindow::FrmCalibrateWindow(QWidget& owner)
    : DialogWidget(&owner, Qt::Dialog),
      window_(*this),
      label1_(std::make_unique<QtLabel>(*new QLabel(this))),
      label2_(std::make_unique<QtLabel>(*new QLabel(this))),
      controls_{window_, *label1_, *label2_} {
  setAttribute(Qt::WA_DeleteOnClose);
  setModal(false);
  setWindowTitle("CW speed calibration results ...");
  auto* layout = new QVBoxLayout(this);
  auto& top = static_cast<QLabel&>(label1_->widget());
  auto& paragraph = static_cast<QLabel&>(label2_->widget());
  top.setObjectName("Label1");
  paragraph.setObjectName("Label2");
  paragraph.setWordWrap(true);
  layout->addWidget(&top);
  layout->addWidget(&paragraph);
  setFixedWidth(440);
  setMinimumHeight(190);
  // Sized before the load handler centres it.
  adjustSize();
}

void QtCalibrateForm::Show(const std::function<void(CalibrateControls&)>& load) {
  if (window_ && window_->isVisible()) {
    window_->raise();
    return;
  }
  window_ = new FrmCalibrateWindow(owner_);
  load(window_->controls());
  window_->show();
}

}  // namespace vantrel::platform::qt
