// A window itself, the main one or a dialog: caption, rectangle in twips,
// the mouse pointer over it, staying on top, and the message boxes it owns.
#pragma once

#include <string>

namespace vantrel::platform {

enum class MousePointer { Default, Hourglass };

// Message box styles as the keyer asks for them: plain, or with the
// exclamation or the information icon.
inline constexpr int kMsgBoxOkOnly = 0;
inline constexpr int kMsgBoxExclamation = 48;
inline constexpr int kMsgBoxInformation = 64;

class Window {
 public:
  virtual ~Window() = default;

  virtual std::string Caption() const = 0;
  virtual void SetCaption(const std::string& caption) = 0;

  virtual float Top() const = 0;
  virtual float Left() const = 0;
  virtual float Height() const = 0;
  virtual float Width() const = 0;
  virtual void SetTop(float twips) = 0;
  virtual void SetLeft(float twips) = 0;
  virtual void SetHeight(float twips) = 0;
  virtual void SetWidth(float twips) = 0;
  virtual bool Minimized() const = 0;
  // The screen the window is on, in twips.
  virtual float ScreenWidth() const = 0;
  virtual float ScreenHeight() const = 0;

  virtual void SetTopmost(bool topmost) = 0;
  virtual void SetMousePointer(MousePointer pointer) = 0;
  // Waits until the operator has answered.
  virtual void MsgBox(const std::string& text, int style, const std::string& title) = 0;
  // The text on the system's clipboard; empty when it holds none.
  virtual std::string ClipboardText() const = 0;
};

}  // namespace vantrel::platform
