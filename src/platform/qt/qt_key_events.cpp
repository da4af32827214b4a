#include "platform/qt/qt_key_events.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QTextEdit>
#include <string>

#include "platform/key_codes.h"
#include "platform/qt/qt_text_box.h"

namespace vantrel::platform::qt {

int16_t WindowsButton(Qt::MouseButton button) {
  switch (button) {
    case Qt::LeftButton: return keys::kLeftButton;
    case Qt::RightButton: return keys::kRightButton;
    case Qt::MiddleButton: return keys::kMiddleButton;
    default: return 0;
  }
}

namespace {

// The key of a US keyboard that makes the character, as Windows names it:
// "?" is the key of "/", "!" the key of "1".
int16_t KeyOfCharacter(int key) {
  switch (key) {
    case Qt::Key_Exclam: return '1';
    case Qt::Key_At: return '2';
    case Qt::Key_NumberSign: return '3';
    case Qt::Key_Dollar: return '4';
    case Qt::Key_Percent: return '5';
    case Qt::Key_AsciiCircum: return '6';
    case Qt::Key_Ampersand: return '7';
    case Qt::Key_Asterisk: return '8';
    case Qt::Key_ParenLeft: return '9';
    case Qt::Key_ParenRight: return '0';
    case Qt::Key_Semicolon: case Qt::Key_Colon: return keys::kSemicolon;
    case Qt::Key_Equal: case Qt::Key_Plus: return keys::kEquals;
    case Qt::Key_Comma: case Qt::Key_Less: return keys::kComma;
    case Qt::Key_Minus: case Qt::Key_Underscore: return keys::kMinus;
    case Qt::Key_Period: case Qt::Key_Greater: return keys::kPeriod;
    case Qt::Key_Slash: case Qt::Key_Question: return keys::kSlash;
    case Qt::Key_QuoteLeft: case Qt::Key_AsciiTilde: return keys::kBackquote;
    case Qt::Key_BracketLeft: case Qt::Key_BraceLeft: return keys::kOpenBracket;
    case Qt::Key_Backslash: case Qt::Key_Bar: return keys::kBackslash;
    case Qt::Key_BracketRight: case Qt::Key_BraceRight: return keys::kCloseBracket;
    case Qt::Key_Apostrophe: case Qt::Key_QuoteDbl: return keys::kQuote;
    default: return 0;
  }
}

// The number pad has codes of its own.
int16_t KeypadKey(int key) {
  if (key >= Qt::Key_0 && key <= Qt::Key_9) return static_cast<int16_t>(keys::kPad0 + key - Qt::Key_0);
  switch (key) {
    case Qt::Key_Asterisk: return keys::kPadMultiply;
    case Qt::Key_Plus: return keys::kPadAdd;
    case Qt::Key_Minus: return keys::kPadSubtract;
    case Qt::Key_Period: case Qt::Key_Comma: return keys::kPadPoint;
    case Qt::Key_Slash: return keys::kPadDivide;
    default: return 0;
  }
}

}  // namespace

int16_t WindowsKeyCode(const QKeyEvent& event) {
  const int key = event.key();
  if (event.modifiers() & Qt::KeypadModifier) {
    if (const int16_t pad = KeypadKey(key)) return pad;
  }
  if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9)) {
    return static_cast<int16_t>(key);  // Qt and Windows agree on letters and digits
  }
  // A national letter: Windows' code depends on the layout; its capital
  // keeps the ALT search of the captions working.
  if (key >= Qt::Key_Agrave && key <= Qt::Key_ydiaeresis && key != Qt::Key_multiply &&
      key != Qt::Key_division) {
    return static_cast<int16_t>(key);
  }
  if (key >= Qt::Key_F1 && key <= Qt::Key_F24) return static_cast<int16_t>(keys::kF1 + key - Qt::Key_F1);
  switch (key) {
    case Qt::Key_Backspace: return keys::kBackspace;
    case Qt::Key_Tab: case Qt::Key_Backtab: return keys::kTab;
    case Qt::Key_Return: case Qt::Key_Enter: return keys::kEnter;
    case Qt::Key_Shift: return keys::kShiftKey;
    case Qt::Key_Control: return keys::kCtrlKey;
    case Qt::Key_Alt: return keys::kAltKey;
    case Qt::Key_Pause: return keys::kPause;
    case Qt::Key_CapsLock: return keys::kCapsLock;
    case Qt::Key_Escape: return keys::kEsc;
    case Qt::Key_Space: return keys::kSpace;
    case Qt::Key_PageUp: return keys::kPageUp;
    case Qt::Key_PageDown: return keys::kPageDown;
    case Qt::Key_End: return keys::kEnd;
    case Qt::Key_Home: return keys::kHome;
    case Qt::Key_Left: return keys::kLeft;
    case Qt::Key_Up: return keys::kUp;
    case Qt::Key_Right: return keys::kRight;
    case Qt::Key_Down: return keys::kDown;
    case Qt::Key_Print: return keys::kPrint;
    case Qt::Key_Insert: return keys::kInsert;
    case Qt::Key_Delete: return keys::kDelete;
    case Qt::Key_Meta: return keys::kWindows;
    case Qt::Key_Menu: return keys::kMenu;
    case Qt::Key_NumLock: return keys::kNumLock;
    case Qt::Key_ScrollLock: return keys::kScrollLock;
    default: return KeyOfCharacter(key);
  }
}

int16_t WindowsShift(const QKeyEvent& event) {
  const Qt::KeyboardModifiers held = event.modifiers();
  return static_cast<int16_t>(((held & Qt::ShiftModifier) ? keys::kShiftMask : 0) |
                              ((held & Qt::ControlModifier) ? keys::kCtrlMask : 0) |
                              ((held & Qt::AltModifier) ? keys::kAltMask : 0));
}

KeyEvents::KeyEvents(QtTextBox& box, KeyHandlers handlers)
    : QObject(&box.edit()), box_(box), handlers_(std::move(handlers)) {
  box.edit().installEventFilter(this);
  // A right click pastes; no menu comes up in its way.
  box.edit().setContextMenuPolicy(Qt::NoContextMenu);
  box.edit().viewport()->installEventFilter(this);
}

// A key the key-down handler kept goes no further. A character comes back
// from the key press: dropped, inserted as it came back, or, a control
// character left alone (Backspace in a field), done by the widget itself.
bool KeyEvents::Key(QKeyEvent& event) {
  int16_t keyCode = WindowsKeyCode(event);
  int16_t shift = WindowsShift(event);
  const int16_t pressed = keyCode;
  if (handlers_.keyDown) handlers_.keyDown(keyCode, shift);
  const bool kept = pressed != 0 && keyCode == 0;

  // With ALT held a key makes no character, as on the keyer's home system.
  const QString text = (shift & 4) ? QString() : event.text();
  if (text.isEmpty() || text.at(0).unicode() > 0xFF) return kept;
  const auto typed = static_cast<int16_t>(text.at(0).unicode());
  int16_t keyAscii = typed;
  if (handlers_.keyPress) handlers_.keyPress(keyAscii);
  if (kept || keyAscii == 0) return true;
  if (keyAscii >= 32) {
    box_.SetSelText(std::string(1, static_cast<char>(keyAscii)));
    return true;
  }
  return keyAscii != typed;
}

bool KeyEvents::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::KeyPress:
      return Key(*static_cast<QKeyEvent*>(event));
    case QEvent::ShortcutOverride: {
      // Accepted, the key comes as a key press instead of firing the shortcut.
      const auto& key = *static_cast<QKeyEvent*>(event);
      if (handlers_.takesShortcut && handlers_.takesShortcut(WindowsKeyCode(key), WindowsShift(key))) {
        event->accept();
        return true;
      }
      return false;
    }
    case QEvent::MouseButtonPress: {
      const auto* mouse = static_cast<QMouseEvent*>(event);
      if (handlers_.mouseDown) handlers_.mouseDown(WindowsButton(mouse->button()));
      return false;
    }
    case QEvent::MouseButtonRelease: {
      if (!handlers_.mouseUp) return false;
      const int16_t button = WindowsButton(static_cast<QMouseEvent*>(event)->button());
      handlers_.mouseUp(button);
      return button != keys::kLeftButton;
    }
    case QEvent::FocusIn:
      if (handlers_.gotFocus) handlers_.gotFocus();
      return false;
    default:
      return false;
  }
}

}  // namespace vantrel::platform::qt
