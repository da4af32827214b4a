// The controls of a window as the logic reaches them by name.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace vantrel::platform {

using Colour = int32_t;  // Windows RGB: low byte red

class Control {
 public:
  virtual ~Control() = default;
  virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  virtual bool Visible() const = 0;
  virtual void SetVisible(bool visible) = 0;
};

// Where a control sits in its container, in twips.
class Placed {
 public:
  virtual ~Placed() = default;
  virtual float Left() const = 0;
  virtual float Top() const = 0;
  virtual float Width() const = 0;
  virtual float Height() const = 0;
  virtual void SetLeft(float twips) = 0;
  virtual void SetTop(float twips) = 0;
  virtual void SetWidth(float twips) = 0;
  virtual void SetHeight(float twips) = 0;
};

// A control with a face on the window, such as a panel or a combo box.
class PlacedControl : public Control, public Placed {};

// A drop-down list of texts, 0-based; choosing an entry, by hand or by
// setting the list index, runs the click handler.
class ComboBox : public PlacedControl {
 public:
  virtual std::string Text() const = 0;
  virtual int16_t ListCount() const = 0;
  virtual void AddItem(const std::string& item, int16_t index) = 0;
  virtual void RemoveItem(int16_t index) = 0;
  // What more there is to say of an entry (the device behind a port's name),
  // shown when the pointer rests on it.
  virtual void SetItemNote(int16_t index, const std::string& note) = 0;
  virtual int16_t ListIndex() const = 0;
  virtual void SetListIndex(int16_t index) = 0;
  virtual void OnClick(std::function<void()> handler) = 0;
};

// A list of texts shown open, 0-based; -1 is no entry. Choosing an entry, by
// hand or by setting the list index, runs the click handler.
class ListBox : public Control {
 public:
  virtual void AddItem(const std::string& item) = 0;
  virtual int16_t ListCount() const = 0;
  virtual std::string List(int16_t index) const = 0;
  virtual int16_t ListIndex() const = 0;
  virtual void SetListIndex(int16_t index) = 0;
  virtual void OnClick(std::function<void()> handler) = 0;
};

class MenuItem : public Control {
 public:
  virtual bool Checked() const = 0;
  virtual void SetChecked(bool checked) = 0;
  virtual std::string Caption() const = 0;
  virtual void SetCaption(const std::string& caption) = 0;
};

// A panel with a caption, such as the row that shows the speed.
class StatusPanel : public PlacedControl {
 public:
  virtual std::string Caption() const = 0;
  virtual void SetCaption(const std::string& caption) = 0;
  virtual Colour ForeColor() const = 0;
  virtual void SetForeColor(Colour colour) = 0;
  // A mouse button pressed on the panel: 1 left, 2 right, 4 middle.
  virtual void OnClick(std::function<void(int16_t button)> handler) = 0;
};

class CommandButton : public Control {
 public:
  virtual void SetCaption(const std::string& caption) = 0;
  virtual void SetBackColor(Colour colour) = 0;
  virtual void SetForeColor(Colour colour) = 0;
  virtual void SetFontBold(bool bold) = 0;
  virtual void SetFontName(const std::string& name) = 0;
  virtual void SetFontSize(float points) = 0;
  virtual void SetFontItalic(bool italic) = 0;
  // The text colour while a mouse button is held down on it.
  virtual void SetForeColorOnMouse(Colour colour) = 0;
};

// A button of a dialog whose events the logic takes itself: a click of the
// left button, and the mouse entering and leaving it.
class DialogButton : public CommandButton {
 public:
  virtual void OnClick(std::function<void()> handler) = 0;
  virtual void OnMouseEnter(std::function<void()> handler) = 0;
  virtual void OnMouseLeave(std::function<void()> handler) = 0;
};

// A plain text box of a dialog, one line or several. A line break in its
// text is "\r\n", as Enter makes it.
class EditBox : public Control {
 public:
  virtual std::string Text() const = 0;
  virtual void SetText(const std::string& text) = 0;
  // Runs after every change of the text, whoever made it.
  virtual void OnChange(std::function<void()> handler) = 0;
  // Runs for each character typed, before it goes in; set to 0 it is dropped.
  virtual void OnKeyPress(std::function<void(int16_t& keyAscii)> handler) = 0;
};

// Controls that share a name and differ by index, such as the macro buttons.
template <typename T>
class ControlArray {
 public:
  virtual ~ControlArray() = default;
  virtual T& operator[](int16_t index) = 0;
};

// The two pictures a line indicator can show: the line active or idle.
enum class Picture { Green, Red };

class PictureBox : public PlacedControl {
 public:
  virtual Picture Shown() const = 0;
  virtual void SetPicture(Picture picture) = 0;
};

// A timer with the old rule that an interval of 0 never fires, even enabled.
class Timer {
 public:
  virtual ~Timer() = default;
  virtual int32_t Interval() const = 0;
  virtual void SetInterval(int32_t ms) = 0;
  virtual bool Enabled() const = 0;
  virtual void SetEnabled(bool enabled) = 0;
  virtual void OnTimer(std::function<void()> handler) = 0;
};

}  // namespace vantrel::platform
