// The keys and mouse buttons of a text box, handed to the logic the way the
// keyer's handlers take them: a key code and shift state on key down, the
// character on key press, each of which the handler may set to 0 to stop it.
#pragma once

#include <QObject>
#include <cstdint>
#include <functional>

class QKeyEvent;

namespace vantrel::platform::qt {

class QtTextBox;

struct KeyHandlers {
  std::function<void(int16_t& keyCode, int16_t& shift)> keyDown;
  std::function<void(int16_t& keyAscii)> keyPress;
  std::function<void(int16_t button)> mouseDown;
  std::function<void(int16_t button)> mouseUp;
  std::function<void()> gotFocus;
  // Whether the logic takes this key itself, ahead of the window's own
  // shortcuts (a menu's ALT letter) on the same key.
  std::function<bool(int16_t keyCode, int16_t shift)> takesShortcut;
};

// The Windows key code of a key on a US keyboard (A is 65, F1 112, Insert
// 45, "?" 191), 0 for one Windows has no code for; and the shift state, 1
// SHIFT, 2 CTRL, 4 ALT. Every key reaches the key-down handler.
int16_t WindowsKeyCode(const QKeyEvent& event);
int16_t WindowsShift(const QKeyEvent& event);
// The mouse button's number: 1 left, 2 right, 4 middle, 0 any other.
int16_t WindowsButton(Qt::MouseButton button);

// Routes the box's events through `handlers` for as long as the box lives.
// Characters the handlers let through are inserted by the box itself, as
// they come back from the key press.
class KeyEvents : public QObject {
 public:
  KeyEvents(QtTextBox& box, KeyHandlers handlers);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Key(QKeyEvent& event);

  QtTextBox& box_;
  KeyHandlers handlers_;
};

}  // namespace vantrel::platform::qt
