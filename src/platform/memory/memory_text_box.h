// A rich text box in memory that keeps the colour of every character, with
// the caret rules of the real control: moving the caret empties the
// selection and takes up the colour of the character before it.
#pragma once

#include <vector>

#include "platform/memory/trace.h"
#include "platform/text_box.h"

namespace vantrel::platform::memory {

class MemoryTextBox : public TextBox {
 public:
  explicit MemoryTextBox(Trace& trace, Colour initialColour = 0)
      : trace_(trace), insertColour_(initialColour) {}

  std::string Text() const override { return text_; }
  void SetText(const std::string& text) override;
  int SelStart() const override { return selStart_; }
  void SetSelStart(int start) override;
  int SelLength() const override { return selLength_; }
  void SetSelLength(int length) override;
  void SetSelText(const std::string& text) override;
  void SetSelColor(Colour colour) override;
  void SetRedraw(bool on) override { redraw_ = on; }
  void Refresh() override {}
  void OnChange(std::function<void()> handler) override { onChange_ = std::move(handler); }

  Colour ColourAt(int offset) const { return colours_.at(offset); }
  Colour InsertColour() const { return insertColour_; }
  bool Redrawing() const { return redraw_; }

 private:
  void Changed(const std::string& before);

  Trace& trace_;
  std::string text_;
  std::vector<Colour> colours_;
  Colour insertColour_;
  int selStart_ = 0;
  int selLength_ = 0;
  bool redraw_ = true;
  std::function<void()> onChange_;
};

}  // namespace vantrel::platform::memory
