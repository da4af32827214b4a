// The main window's controls in memory, each telling the trace what an
// operator would see change.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/common_dialog.h"
#include "platform/controls.h"
#include "platform/memory/trace.h"
#include "platform/window.h"
#include "vb/vb.h"

namespace vantrel::platform::memory {

// Enabled and Visible, which every control keeps the same way.
template <typename Interface>
class MemoryControlBase : public Interface {
 public:
  bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override { enabled_ = enabled; }
  bool Visible() const override { return visible_; }
  void SetVisible(bool visible) override { visible_ = visible; }

 private:
  bool enabled_ = true;
  bool visible_ = true;
};

// Geometry kept as set, for controls with a face.
template <typename Interface>
class MemoryPlacedBase : public Interface {
 public:
  float Left() const override { return left_; }
  float Top() const override { return top_; }
  float Width() const override { return width_; }
  float Height() const override { return height_; }
  void SetLeft(float twips) override { left_ = twips; }
  void SetTop(float twips) override { top_ = twips; }
  void SetWidth(float twips) override { width_ = twips; }
  void SetHeight(float twips) override { height_ = twips; }

 private:
  float left_ = 0, top_ = 0, width_ = 0, height_ = 0;
};

using MemoryPlacedControl = MemoryPlacedBase<MemoryControlBase<PlacedControl>>;

class MemoryMenuItem : public MemoryControlBase<MenuItem> {
 public:
  MemoryMenuItem(Trace& trace, std::string name, std::string caption = "")
      : trace_(trace), name_(std::move(name)), caption_(std::move(caption)) {}

  void SetEnabled(bool enabled) override {
    MemoryControlBase::SetEnabled(enabled);
    trace_.Emit("menu " + name_ + (enabled ? " enabled" : " disabled"));
  }
  bool Checked() const override { return checked_; }
  void SetChecked(bool checked) override {
    checked_ = checked;
    trace_.Emit("menu " + name_ + (checked ? " checked" : " unchecked"));
  }
  std::string Caption() const override { return caption_; }
  void SetCaption(const std::string& caption) override { caption_ = caption; }

 private:
  Trace& trace_;
  std::string name_;
  std::string caption_;
  bool checked_ = false;
};

class MemoryStatusPanel : public MemoryPlacedBase<MemoryControlBase<StatusPanel>> {
 public:
  explicit MemoryStatusPanel(Trace& trace) : trace_(trace) {}

  std::string Caption() const override { return caption_; }
  void SetCaption(const std::string& caption) override {
    caption_ = caption;
    trace_.Emit("status " + Trace::Quote(caption));
  }
  Colour ForeColor() const override { return foreColor_; }
  void SetForeColor(Colour colour) override { foreColor_ = colour; }
  void OnClick(std::function<void(int16_t button)> handler) override { onClick_ = std::move(handler); }
  void Click(int16_t button) {
    if (onClick_) onClick_(button);
  }

 private:
  Trace& trace_;
  std::string caption_;
  Colour foreColor_ = 0;
  std::function<void(int16_t)> onClick_;
};

// What both in-memory lists keep: the entries, the chosen one, the click.
template <typename Base>
class MemoryListBase : public Base {
 public:
  int16_t ListCount() const override { return static_cast<int16_t>(items.size()); }
  int16_t ListIndex() const override { return index_; }
  void OnClick(std::function<void()> handler) override { onClick_ = std::move(handler); }

  std::vector<std::string> items;

 protected:
  void Choose(int16_t index) {
    index_ = index;
    if (onClick_) onClick_();
  }
  int16_t index_ = -1;

 private:
  std::function<void()> onClick_;
};

class MemoryComboBox : public MemoryListBase<MemoryPlacedBase<MemoryControlBase<ComboBox>>> {
 public:
  std::string Text() const override { return index_ < 0 ? "" : items.at(index_); }
  void AddItem(const std::string& item, int16_t index) override {
    items.insert(items.begin() + index, item);
  }
  void RemoveItem(int16_t index) override {
    items.erase(items.begin() + index);
    if (index_ >= ListCount()) index_ = -1;
  }
  void SetListIndex(int16_t index) override { Choose(index); }
  void SetItemNote(int16_t index, const std::string& note) override { notes[items.at(index)] = note; }

  // Each entry's note, by its text.
  std::map<std::string, std::string> notes;
};

class MemoryListBox : public MemoryListBase<MemoryControlBase<ListBox>> {
 public:
  void AddItem(const std::string& item) override { items.push_back(item); }
  std::string List(int16_t index) const override { return items.at(static_cast<size_t>(index)); }
  // An index past the entries selects none and raises no click.
  void SetListIndex(int16_t index) override {
    if (index < 0 || index >= ListCount()) {
      index_ = -1;
      return;
    }
    Choose(index);
  }
};

// A button's caption and look kept as set.
template <typename Interface>
class MemoryButtonBase : public MemoryControlBase<Interface> {
 public:
  void SetCaption(const std::string& caption) override { caption_ = caption; }
  void SetBackColor(Colour colour) override { backColor_ = colour; }
  void SetForeColor(Colour colour) override { foreColor_ = colour; }
  void SetFontBold(bool bold) override { fontBold_ = bold; }
  void SetFontName(const std::string& name) override { fontName_ = name; }
  void SetFontSize(float points) override { fontSize_ = points; }
  void SetFontItalic(bool italic) override { fontItalic_ = italic; }
  void SetForeColorOnMouse(Colour colour) override { foreColorOnMouse_ = colour; }

  const std::string& Caption() const { return caption_; }
  Colour BackColor() const { return backColor_; }
  Colour ForeColor() const { return foreColor_; }
  bool FontBold() const { return fontBold_; }
  const std::string& FontName() const { return fontName_; }
  float FontSize() const { return fontSize_; }
  bool FontItalic() const { return fontItalic_; }
  Colour ForeColorOnMouse() const { return foreColorOnMouse_; }

 private:
  std::string caption_;
  Colour backColor_ = 0;
  Colour foreColor_ = 0;
  bool fontBold_ = false;
  std::string fontName_;
  float fontSize_ = 0;
  bool fontItalic_ = false;
  Colour foreColorOnMouse_ = 0;
};

using MemoryCommandButton = MemoryButtonBase<CommandButton>;

// The macro buttons, 1 to 36; entry 0 stands unused, as in the macro arrays.
class MemoryButtonArray : public ControlArray<CommandButton> {
 public:
  MemoryCommandButton& operator[](int16_t index) override {
    return items_.at(static_cast<size_t>(index));
  }

 private:
  std::array<MemoryCommandButton, 37> items_;
};

// A line indicator; `name` is how the trace calls it.
class MemoryPictureBox : public MemoryPlacedBase<MemoryControlBase<PictureBox>> {
 public:
  MemoryPictureBox(Trace& trace, std::string name) : trace_(trace), name_(std::move(name)) {}

  Picture Shown() const override { return shown_; }
  void SetPicture(Picture picture) override {
    shown_ = picture;
    trace_.Emit(name_ + (picture == Picture::Green ? " green" : " red"));
  }

 private:
  Trace& trace_;
  std::string name_;
  Picture shown_ = Picture::Red;
};

// Answers each dialog with the next scripted choice; with none left, a cancel.
class MemoryCommonDialog : public CommonDialog {
 public:
  explicit MemoryCommonDialog(Trace& trace) : trace_(trace) {}

  bool ShowColor(Colour& colour) override {
    trace_.Emit("dialog color " + std::to_string(colour));
    if (colours.empty()) return false;
    colour = colours.front();
    colours.erase(colours.begin());
    return true;
  }
  bool ShowFont(FontChoice& font) override {
    trace_.Emit("dialog font " + Trace::Quote(font.name));
    if (fonts.empty()) return false;
    font = fonts.front();
    fonts.erase(fonts.begin());
    return true;
  }

  std::vector<Colour> colours;
  std::vector<FontChoice> fonts;

 private:
  Trace& trace_;
};

class MemoryWindow : public Window {
 public:
  // Every event but a message box is traced after `prefix`, which names a
  // dialog; the main window has none. `width` and `height` are its design size.
  explicit MemoryWindow(Trace& trace, std::string prefix = "", float width = 0, float height = 0)
      : trace_(trace), prefix_(std::move(prefix)), height_(height), width_(width) {}

  std::string Caption() const override { return caption_; }
  void SetCaption(const std::string& caption) override {
    caption_ = caption;
    Emit("caption " + Trace::Quote(caption));
  }
  float Top() const override { return top_; }
  float Left() const override { return left_; }
  float Height() const override { return height_; }
  float Width() const override { return width_; }
  void SetTop(float twips) override { top_ = twips; }
  void SetLeft(float twips) override { left_ = twips; }
  // A change of size raises the resize event, as on a real window.
  void SetHeight(float twips) override {
    if (twips == height_) return;
    Emit("height " + vb::CStr(twips));
    height_ = twips;
    if (onResize) onResize();
  }
  void SetWidth(float twips) override {
    if (twips == width_) return;
    width_ = twips;
    if (onResize) onResize();
  }
  bool Minimized() const override { return minimized; }
  float ScreenWidth() const override { return screenWidth; }
  float ScreenHeight() const override { return screenHeight; }
  void SetTopmost(bool topmost) override {
    this->topmost = topmost;
    Emit(topmost ? "topmost on" : "topmost off");
  }
  void SetMousePointer(MousePointer pointer) override {
    Emit(pointer == MousePointer::Hourglass ? "pointer hourglass" : "pointer default");
  }
  void MsgBox(const std::string& text, int /*style*/, const std::string& title) override {
    trace_.Emit("msgbox " + Trace::Quote(title) + " " + Trace::Quote(text));
  }

  std::string ClipboardText() const override { return clipboard; }

  bool minimized = false;
  bool topmost = false;
  std::string clipboard;
  std::function<void()> onResize;
  // A screen of 1920 by 1080 pixels at 96 dpi.
  float screenWidth = 28800;
  float screenHeight = 16200;

 private:
  void Emit(const std::string& event) { trace_.Emit(prefix_ + event); }

  Trace& trace_;
  std::string prefix_;
  std::string caption_;
  float top_ = 0, left_ = 0, height_ = 0, width_ = 0;
};

// A button of a dialog: Click, MouseEnter and MouseLeave act for the mouse.
// One given a trace name traces each change of its caption and look, e.g.
// "editor Hbutton1 backcolor 255".
class MemoryDialogButton : public MemoryButtonBase<DialogButton> {
 public:
  explicit MemoryDialogButton(Trace& trace, std::string traceName = "")
      : trace_(trace), traceName_(std::move(traceName)) {}

  void SetCaption(const std::string& caption) override {
    if (caption != Caption()) Emit("caption " + Trace::Quote(caption));
    MemoryButtonBase::SetCaption(caption);
  }
  void SetBackColor(Colour colour) override {
    if (colour != BackColor()) Emit("backcolor " + std::to_string(colour));
    MemoryButtonBase::SetBackColor(colour);
  }
  void SetForeColor(Colour colour) override {
    if (colour != ForeColor()) Emit("forecolor " + std::to_string(colour));
    MemoryButtonBase::SetForeColor(colour);
  }
  void SetFontName(const std::string& name) override {
    if (name != FontName()) Emit("fontname " + Trace::Quote(name));
    MemoryButtonBase::SetFontName(name);
  }
  void SetFontSize(float points) override {
    if (points != FontSize()) Emit("fontsize " + vb::CStr(points));
    MemoryButtonBase::SetFontSize(points);
  }
  void SetFontBold(bool bold) override {
    if (bold != FontBold()) Emit(bold ? "fontbold True" : "fontbold False");
    MemoryButtonBase::SetFontBold(bold);
  }
  void SetFontItalic(bool italic) override {
    if (italic != FontItalic()) Emit(italic ? "fontitalic True" : "fontitalic False");
    MemoryButtonBase::SetFontItalic(italic);
  }
  void OnClick(std::function<void()> handler) override { onClick_ = std::move(handler); }
  void OnMouseEnter(std::function<void()> handler) override { onEnter_ = std::move(handler); }
  void OnMouseLeave(std::function<void()> handler) override { onLeave_ = std::move(handler); }

  void Click() { Run(onClick_); }
  void MouseEnter() { Run(onEnter_); }
  void MouseLeave() { Run(onLeave_); }

 private:
  void Emit(const std::string& event) {
    if (!traceName_.empty()) trace_.Emit(traceName_ + " " + event);
  }
  void Run(const std::function<void()>& handler) {
    if (Enabled() && handler) handler();
  }

  Trace& trace_;
  std::string traceName_;
  std::function<void()> onClick_, onEnter_, onLeave_;
};

// A plain text box of a dialog; each change of its text is traced as
// `traceName` and the quoted text.
class MemoryEditBox : public MemoryControlBase<EditBox> {
 public:
  MemoryEditBox(Trace& trace, std::string traceName, bool multiLine)
      : trace_(trace), traceName_(std::move(traceName)), multiLine_(multiLine) {}

  std::string Text() const override { return text_; }
  // The same text again is no change.
  void SetText(const std::string& text) override {
    if (text == text_) return;
    text_ = text;
    trace_.Emit(traceName_ + " " + Trace::Quote(text_));
    if (onChange_) onChange_();
  }
  void OnChange(std::function<void()> handler) override { onChange_ = std::move(handler); }
  void OnKeyPress(std::function<void(int16_t&)> handler) override {
    onKeyPress_ = std::move(handler);
  }

  // Keys typed at the end of the text, each through the key press. Enter
  // ("\r") breaks the line of a box of several; other control characters
  // add nothing.
  void Type(const std::string& characters) {
    for (const char character : characters) {
      auto keyAscii = static_cast<int16_t>(static_cast<unsigned char>(character));
      if (onKeyPress_) onKeyPress_(keyAscii);
      if (keyAscii == '\r' && multiLine_) {
        SetText(text_ + "\r\n");
      } else if (keyAscii >= 32 && keyAscii <= 255) {
        SetText(text_ + static_cast<char>(keyAscii));
      }
    }
  }

 private:
  Trace& trace_;
  std::string traceName_;
  bool multiLine_;
  std::string text_;
  std::function<void()> onChange_;
  std::function<void(int16_t&)> onKeyPress_;
};

}  // namespace vantrel::platform::memory
