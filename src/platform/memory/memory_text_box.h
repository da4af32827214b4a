// A rich text box in memory that keeps the colour of every character, with
// the caret rules of the real control: moving the caret empties the
// selection and takes up the colour of the character before it.
#pragma once

#include "platform/memory/memory_controls.h"
#include "platform/memory/trace.h"
#include "platform/text_box.h"
#include "platform/text_colours.h"

namespace vantrel::platform::memory {

class MemoryTextBox : public MemoryPlacedBase<MemoryControlBase<TextBox>> {
 public:
  // `changeEvent` starts the trace line of a change of the text; a focus is
  // traced with `name`.
  explicit MemoryTextBox(Trace& trace, Colour initialColour = 0, std::string name = "CWTextBox",
                         std::string changeEvent = "text")
      : trace_(trace),
        name_(std::move(name)),
        changeEvent_(std::move(changeEvent)),
        insertColour_(initialColour) {}

  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override;
  int SelStart() const override { return selStart_; }
  void SetSelStart(int start) override;
  int SelLength() const override { return selLength_; }
  void SetSelLength(int length) override;
  void SetSelText(const std::string& text) override;
  void SetSelColor(Colour colour) override;
  void SetRedraw(bool on) override { redraw_ = on; }
  // The end of a marking step, a drawing the real box does.
  void Refresh() override { trace_.Action(); }
  void OnChange(std::function<void()> handler) override { onChange_ = std::move(handler); }
  Colour BackColor() const override { return backColor_; }
  void SetBackColor(Colour colour) override { backColor_ = colour; }
  std::string FontName() const override { return fontName; }
  float FontSize() const override { return fontSize; }
  bool FontBold() const override { return fontBold; }
  bool FontItalic() const override { return fontItalic; }
  void SetFontName(const std::string& name) override { fontName = name; }
  void SetFontSize(float points) override { fontSize = points; }
  void SetFontBold(bool bold) override { fontBold = bold; }
  void SetFontItalic(bool italic) override { fontItalic = italic; }
  void SetFocus() override {
    ++focused;
    trace_.Emit("focus " + name_);
    if (onFocus) onFocus();
  }

  std::string fontName;
  float fontSize = 0;
  bool fontBold = false;
  bool fontItalic = false;
  int focused = 0;
  std::function<void()> onFocus;
  // The box's got-focus event, raised when the keyboard comes to it from
  // elsewhere, whoever moved it.
  std::function<void()> onGotFocus;

  Colour ColourAt(int offset) const { return colours_.At(offset); }
  Colour InsertColour() const { return insertColour_; }
  bool Redrawing() const { return redraw_; }

 private:
  void Changed(const std::string& before);

  Trace& trace_;
  std::string name_;
  std::string changeEvent_;
  std::string text_;
  TextColours colours_;
  Colour insertColour_;
  int selStart_ = 0;
  int selLength_ = 0;
  bool redraw_ = true;
  Colour backColor_ = 0;
  std::function<void()> onChange_;
};

}  // namespace vantrel::platform::memory
