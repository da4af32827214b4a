// The main window's controls in memory, each telling the trace what an
// operator would see change.
#pragma once

#include <array>
#include <cstdint>
#include <string>
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

class MemoryCommandButton : public MemoryControlBase<CommandButton> {
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
class MemoryPictureBox : public MemoryPlacedBase<PictureBox> {
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
  explicit MemoryWindow(Trace& trace) : trace_(trace) {}

  std::string Caption() const override { return caption_; }
  void SetCaption(const std::string& caption) override {
    caption_ = caption;
    trace_.Emit("caption " + Trace::Quote(caption));
  }
  float Top() const override { return top_; }
  float Left() const override { return left_; }
  float Height() const override { return height_; }
  float Width() const override { return width_; }
  void SetTop(float twips) override { top_ = twips; }
  void SetLeft(float twips) override { left_ = twips; }
  void SetHeight(float twips) override {
    if (twips != height_) trace_.Emit("height " + vb::CStr(twips));
    height_ = twips;
  }
  void SetWidth(float twips) override { width_ = twips; }
  bool Minimized() const override { return minimized; }
  void SetTopmost(bool topmost) override {
    this->topmost = topmost;
    trace_.Emit(topmost ? "topmost on" : "topmost off");
  }
  void SetMousePointer(MousePointer pointer) override {
    trace_.Emit(pointer == MousePointer::Hourglass ? "pointer hourglass" : "pointer default");
  }
  void MsgBox(const std::string& text, int /*style*/, const std::string& title) override {
    trace_.Emit("msgbox " + Trace::Quote(title) + " " + Trace::Quote(text));
  }

  std::string ClipboardText() const override { return clipboard; }

  bool minimized = false;
  bool topmost = false;
  std::string clipboard;

 private:
  Trace& trace_;
  std::string caption_;
  float top_ = 0, left_ = 0, height_ = 0, width_ = 0;
};

}  // namespace vantrel::platform::memory
