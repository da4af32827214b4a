// The controls of the keyer's dialogs as their logic reaches them by name,
// and the dialog windows themselves. Handlers named OnClick or OnChange run
// for the operator's actions only: setting a value from the logic raises none.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/controls.h"
#include "platform/window.h"

namespace vantrel::platform {

class Label : public Control {
 public:
  virtual std::string Caption() const = 0;
  virtual void SetCaption(const std::string& caption) = 0;
};

// A check box; its click runs after the tick has changed.
class CheckBox : public Control {
 public:
  virtual bool Value() const = 0;
  virtual void SetValue(bool ticked) = 0;
  virtual void OnClick(std::function<void()> handler) = 0;
};

// A slider over a fixed range; a value outside it lands on the nearer end.
class Slider : public Control {
 public:
  virtual int32_t Value() const = 0;
  virtual void SetValue(int32_t value) = 0;
  virtual void OnChange(std::function<void()> handler) = 0;
};

// A one-line text box. Positions are 0-based. The key press handler sees
// each typed character's code (8 for backspace) and may set it to 0 to drop it.
class TextField : public Control {
 public:
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  virtual void SetSelStart(int start) = 0;
  virtual void SetSelLength(int length) = 0;
  virtual std::string SelText() const = 0;
  virtual void SetFocus() = 0;
  virtual void OnGotFocus(std::function<void()> handler) = 0;
  virtual void OnKeyPress(std::function<void(int16_t& keyAscii)> handler) = 0;
};

// A button that tells its press and release apart from its click.
class Button : public Control {
 public:
  virtual void SetFocus() = 0;
  virtual void OnClick(std::function<void()> handler) = 0;
  virtual void OnMouseDown(std::function<void()> handler) = 0;
  virtual void OnMouseUp(std::function<void()> handler) = 0;
};

// A combo box whose text may be typed freely or taken from its list; each
// entry may carry a note that the list shows beside it.
class EditComboBox : public Control {
 public:
  virtual void Clear() = 0;
  virtual void AddItem(const std::string& item, const std::string& note) = 0;
  virtual int16_t ListCount() const = 0;
  virtual std::string List(int16_t index) const = 0;
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  // After any change of the text, whoever made it: typing, the list or the logic.
  virtual void OnChange(std::function<void()> handler) = 0;
};

// How far a long piece of work has come, 0 to 100.
class ProgressBar : public Control {
 public:
  virtual void SetValue(int value) = 0;
};

enum class DialogPointer { Default, NoDrop };

// A dialog's own window. Sizes are twips; the screen is the one it shows on.
class DialogWindow {
 public:
  virtual ~DialogWindow() = default;
  virtual float Width() const = 0;
  virtual float Height() const = 0;
  virtual float ScreenWidth() const = 0;
  virtual float ScreenHeight() const = 0;
  virtual void Move(float left, float top) = 0;
  virtual void SetTopmost(bool topmost) = 0;
  virtual void SetMousePointer(DialogPointer pointer) = 0;
  // Waits until the operator has answered.
  virtual void MsgBox(const std::string& text, int style, const std::string& title) = 0;
  // Closes the window; its unload handler runs as for any other close.
  virtual void Unload() = 0;
  virtual void OnUnload(std::function<void()> handler) = 0;
};

// Puts a window in the middle of its screen.
inline void CenterForm(DialogWindow& form) {
  form.Move((form.ScreenWidth() - form.Width()) / 2, (form.ScreenHeight() - form.Height()) / 2);
}

// The small window that shows the result of a speed calibration.
struct CalibrateControls {
  DialogWindow& frmCalibrate;
  Label& Label1;
  Label& Label2;
};

class CalibrateForm {
 public:
  virtual ~CalibrateForm() = default;
  // Shows the window modeless. One not open yet is made and `load` fills it
  // before it shows; one still open comes forward with what it shows.
  virtual void Show(const std::function<void(CalibrateControls&)>& load) = 0;
};

}  // namespace vantrel::platform
