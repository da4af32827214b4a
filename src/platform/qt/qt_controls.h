// The main window's controls over Qt widgets. Text crosses the widget edge
// as Latin-1: the logic keeps 8-bit characters.
#pragma once

#include <QMetaObject>
#include <QPixmap>
#include <QTimer>
#include <QWidget>
#include <array>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>

#include "platform/common_dialog.h"
#include "platform/controls.h"
#include "platform/event_pump.h"
#include "platform/qt/qt_geometry.h"

class QAction;
class QComboBox;
class QKeyEvent;
class QLineEdit;
class QPlainTextEdit;
class QListWidget;
class QLabel;
class QMenu;
class QPushButton;

namespace vantrel::platform::qt {

QString ToQString(const std::string& latin1);
std::string FromQString(const QString& text);

// The widget behind an interface.
template <typename Interface>
class QtWidgetHolder : public Interface {
 public:
  explicit QtWidgetHolder(QWidget& widget) : widget_(widget) {}
  QWidget& widget() const { return widget_; }

 private:
  QWidget& widget_;
};

// Enabled and Visible as the control's own flags: a control on a window not
// yet shown is still Visible, as the logic expects.
template <typename Interface>
class QtControlBase : public QtWidgetHolder<Interface> {
 public:
  using QtWidgetHolder<Interface>::QtWidgetHolder;
  bool Enabled() const override { return this->widget().isEnabled(); }
  void SetEnabled(bool enabled) override { this->widget().setEnabled(enabled); }
  bool Visible() const override { return !this->widget().isHidden(); }
  void SetVisible(bool visible) override { this->widget().setVisible(visible); }
};

// A control placed by the logic in twips, such as those on the tool bar.
template <typename Base>
class QtWithGeometry : public Base {
 public:
  explicit QtWithGeometry(QWidget& widget) : Base(widget), geometry_(widget) {}
  float Left() const override { return geometry_.Left(); }
  float Top() const override { return geometry_.Top(); }
  float Width() const override { return geometry_.Width(); }
  float Height() const override { return geometry_.Height(); }
  void SetLeft(float twips) override { geometry_.SetLeft(twips); }
  void SetTop(float twips) override { geometry_.SetTop(twips); }
  void SetWidth(float twips) override { geometry_.SetWidth(twips); }
  void SetHeight(float twips) override { geometry_.SetHeight(twips); }

 private:
  WidgetGeometry geometry_;
};

template <typename Interface>
using QtPlacedBase = QtWithGeometry<QtControlBase<Interface>>;

// The list of recent calls over a QComboBox. Choosing an entry by hand or by
// index runs the click handler, once.
class QtComboBox : public QtPlacedBase<ComboBox> {
 public:
  explicit QtComboBox(QComboBox& combo);
  std::string Text() const override;
  int16_t ListCount() const override;
  void AddItem(const std::string& item, int16_t index) override;
  void RemoveItem(int16_t index) override;
  void SetItemNote(int16_t index, const std::string& note) override;
  int16_t ListIndex() const override;
  void SetListIndex(int16_t index) override;
  void OnClick(std::function<void()> handler) override { onClick_ = std::move(handler); }

 private:
  QComboBox& combo_;
  std::function<void()> onClick_;
};

// A list box over a QListWidget. A click on an entry, a move of the
// selection by the keys, or setting the index to an entry runs the click
// handler, once; an index past the entries selects none.
class QtListBox : public QtControlBase<ListBox> {
 public:
  explicit QtListBox(QListWidget& list);
  void AddItem(const std::string& item) override;
  int16_t ListCount() const override;
  std::string List(int16_t index) const override;
  int16_t ListIndex() const override;
  void SetListIndex(int16_t index) override;
  void OnClick(std::function<void()> handler) override { onClick_ = std::move(handler); }

 private:
  QListWidget& list_;
  std::function<void()> onClick_;
  bool settingIndex_ = false;
  int rowAtPress_ = -1;
};

// A panel docked to an edge of the window, as the rows of buttons and the
// tool bar are: the dock decides its place and width, only its height is
// its own. Its width is the window's even before the layout has run.
template <typename Interface>
class QtDockedBase : public QtControlBase<Interface> {
 public:
  explicit QtDockedBase(QWidget& widget) : QtControlBase<Interface>(widget) {}
  float Left() const override { return 0; }
  float Top() const override {
    return static_cast<float>(this->widget().y() * TwipsPerPixelY(this->widget()));
  }
  float Width() const override {
    const QWidget& window = *this->widget().window();
    return width_.Get(window.width(), TwipsPerPixelX(window));
  }
  float Height() const override {
    return height_.Get(this->widget().height(), TwipsPerPixelY(this->widget()));
  }
  void SetLeft(float /*twips*/) override {}
  void SetTop(float /*twips*/) override {}
  void SetWidth(float /*twips*/) override {}
  void SetHeight(float twips) override {
    this->widget().setFixedHeight(height_.Set(twips, TwipsPerPixelY(this->widget())));
  }

 private:
  TwipsCoordinate width_, height_;
};

using QtDockedPanel = QtDockedBase<PlacedControl>;

// The tool bar: a docked panel whose caption shows the speed.
class QtStatusPanel : public QtDockedBase<StatusPanel> {
 public:
  QtStatusPanel(QWidget& panel, QLabel& caption);
  std::string Caption() const override;
  void SetCaption(const std::string& caption) override;
  Colour ForeColor() const override { return foreColor_; }
  void SetForeColor(Colour colour) override;
  void OnClick(std::function<void(int16_t button)> handler) override;

 private:
  QLabel& caption_;
  Colour foreColor_ = 0;
  std::function<void(int16_t)> onClick_;
};

// A menu entry. An entry with a submenu stands for the submenu's title. The
// tick is the logic's alone: a click does not toggle it, the handler does.
class QtMenuItem : public MenuItem {
 public:
  QtMenuItem(QAction& action, QMenu* submenu);
  ~QtMenuItem() override;
  QtMenuItem(const QtMenuItem&) = delete;
  QtMenuItem& operator=(const QtMenuItem&) = delete;

  bool Enabled() const override;
  void SetEnabled(bool enabled) override;
  bool Visible() const override;
  void SetVisible(bool visible) override;
  bool Checked() const override { return checked_; }
  void SetChecked(bool checked) override;
  std::string Caption() const override;
  void SetCaption(const std::string& caption) override;

  void OnClick(std::function<void()> handler) { onClick_ = std::move(handler); }
  // Runs as the submenu opens, before it shows.
  void OnOpen(std::function<void()> handler) { onOpen_ = std::move(handler); }
  QAction& action() const { return action_; }
  QMenu* submenu() const { return submenu_; }

 private:
  QAction& action_;
  QMenu* submenu_;
  bool checked_ = false;
  std::function<void()> onClick_;
  std::function<void()> onOpen_;
  QMetaObject::Connection triggered_;
  QMetaObject::Connection aboutToShow_;
};

// A button's caption and look over a QPushButton.
template <typename Interface>
class QtButtonBase : public QtControlBase<Interface> {
 public:
  explicit QtButtonBase(QPushButton& button) : QtControlBase<Interface>(button), button_(button) {}
  void SetCaption(const std::string& caption) override;
  void SetBackColor(Colour colour) override;
  void SetForeColor(Colour colour) override;
  void SetFontBold(bool bold) override;
  void SetFontName(const std::string& name) override;
  void SetFontSize(float points) override;
  void SetFontItalic(bool italic) override;
  // Qt draws a pressed button in its own way; the colour is kept for it.
  void SetForeColorOnMouse(Colour colour) override { foreColorOnMouse_ = colour; }
  QPushButton& button() const { return button_; }
  Colour ForeColorOnMouse() const { return foreColorOnMouse_; }

 private:
  QPushButton& button_;
  Colour foreColorOnMouse_ = 0;
};

extern template class QtButtonBase<CommandButton>;
extern template class QtButtonBase<DialogButton>;

class QtCommandButton : public QtButtonBase<CommandButton> {
 public:
  using QtButtonBase::QtButtonBase;
};

class ButtonEvents;

// A dialog's button: a click of the left button, the mouse entering and leaving.
class QtDialogButton : public QtButtonBase<DialogButton> {
 public:
  explicit QtDialogButton(QPushButton& button);
  ~QtDialogButton() override;
  QtDialogButton(const QtDialogButton&) = delete;
  QtDialogButton& operator=(const QtDialogButton&) = delete;
  void OnClick(std::function<void()> handler) override { onClick_ = std::move(handler); }
  void OnMouseEnter(std::function<void()> handler) override { onEnter_ = std::move(handler); }
  void OnMouseLeave(std::function<void()> handler) override { onLeave_ = std::move(handler); }

 private:
  std::function<void()> onClick_, onEnter_, onLeave_;
  std::unique_ptr<ButtonEvents> events_;
};

// A plain text box over a QLineEdit, or a QPlainTextEdit for several lines,
// whose "\n" the logic sees as "\r\n". A character the key press handler
// changes goes in changed; one it sets to 0 not at all.
class QtEditBox : public QtControlBase<EditBox> {
 public:
  explicit QtEditBox(QLineEdit& line);
  explicit QtEditBox(QPlainTextEdit& lines);
  ~QtEditBox() override;
  QtEditBox(const QtEditBox&) = delete;
  QtEditBox& operator=(const QtEditBox&) = delete;
  std::string Text() const override;
  void SetText(const std::string& text) override;
  void OnChange(std::function<void()> handler) override { onChange_ = std::move(handler); }
  void OnKeyPress(std::function<void(int16_t&)> handler) override {
    onKeyPress_ = std::move(handler);
  }

 private:
  class KeyFilter;
  // The character typed, after the handler: true when the event is done with.
  bool KeyPress(const QKeyEvent& event);

  QLineEdit* line_ = nullptr;
  QPlainTextEdit* lines_ = nullptr;
  std::function<void()> onChange_;
  std::function<void(int16_t&)> onKeyPress_;
  std::unique_ptr<KeyFilter> filter_;
  QMetaObject::Connection changed_;
};

// The macro buttons 1 to 36; entry 0 stands unused, as in the macro arrays.
class QtButtonArray : public ControlArray<CommandButton> {
 public:
  QtCommandButton& operator[](int16_t index) override;
  void Set(int16_t index, QPushButton& button);

 private:
  std::array<std::unique_ptr<QtCommandButton>, 37> items_;
};

// A line indicator. Both faces are made once for each size, so that a key
// edge costs no more than handing the label another shared pixmap.
class QtPictureBox : public QtPlacedBase<PictureBox> {
 public:
  explicit QtPictureBox(QLabel& label);
  Picture Shown() const override { return shown_; }
  void SetPicture(Picture picture) override;

 private:
  QLabel& label_;
  Picture shown_ = Picture::Red;
  int side_ = 16;  // the disc's pixels across
};

// A QTimer under the old rule: an interval of 0 never fires, where a QTimer
// with interval 0 would fire on every turn of the event loop.
class QtTimer : public Timer {
 public:
  QtTimer();
  int32_t Interval() const override { return interval_; }
  void SetInterval(int32_t ms) override;
  bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override;
  void OnTimer(std::function<void()> handler) override { handler_ = std::move(handler); }
  bool Running() const { return timer_.isActive(); }

 private:
  void Restart();

  QTimer timer_;
  int32_t interval_ = 0;
  bool enabled_ = false;
  std::function<void()> handler_;
};

class QtEventPump : public EventPump {
 public:
  void DoEvents() override;
};

class QtCommonDialog : public CommonDialog {
 public:
  explicit QtCommonDialog(QWidget& owner) : owner_(owner) {}
  bool ShowColor(Colour& colour) override;
  bool ShowFont(FontChoice& font) override;

 private:
  QWidget& Parent() const;

  QWidget& owner_;
};

}  // namespace vantrel::platform::qt
