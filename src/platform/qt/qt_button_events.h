// A macro button's mouse, handed to the logic as the keyer's button events
// take it: a click of the left button only, presses and releases of any
// button with its number, and the mouse entering and leaving.
#pragma once

#include <QObject>
#include <cstdint>
#include <functional>

class QPushButton;

namespace vantrel::platform::qt {

struct ButtonHandlers {
  std::function<void()> click;
  std::function<void(int16_t button)> mouseDown;
  std::function<void(int16_t button)> mouseUp;
  std::function<void()> mouseEnter;
  std::function<void()> mouseLeave;
};

// Routes the button's events through `handlers` for as long as it lives.
class ButtonEvents : public QObject {
 public:
  ButtonEvents(QPushButton& button, ButtonHandlers handlers);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  ButtonHandlers handlers_;
};

}  // namespace vantrel::platform::qt
