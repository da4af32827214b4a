#include "platform/qt/qt_button_events.h"

#include <QMouseEvent>
#include <QPushButton>

#include "platform/qt/qt_key_events.h"

namespace vantrel::platform::qt {

// A push button clicks on the left button alone, which leaves the right one
// to the editor.
ButtonEvents::ButtonEvents(QPushButton& button, ButtonHandlers handlers)
    : QObject(&button), handlers_(std::move(handlers)) {
  button.installEventFilter(this);
  QObject::connect(&button, &QPushButton::clicked, this, [this] {
    if (handlers_.click) handlers_.click();
  });
}

bool ButtonEvents::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      if (handlers_.mouseDown) {
        handlers_.mouseDown(WindowsButton(static_cast<QMouseEvent*>(event)->button()));
      }
      return false;
    case QEvent::MouseButtonRelease:
      if (handlers_.mouseUp)
        handlers_.mouseUp(WindowsButton(static_cast<QMouseEvent*>(event)->button()));
      return false;
    case QEvent::Enter:
      if (handlers_.mouseEnter) handlers_.mouseEnter();
      return false;
    case QEvent::Leave:
      if (handlers_.mouseLeave) handlers_.mouseLeave();
      return false;
    default: return false;
  }
}

}  // namespace vantrel::platform::qt
