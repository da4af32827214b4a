#include "platform/memory/memory_text_box.h"

#include <algorithm>

namespace vantrel::platform::memory {

void MemoryTextBox::Changed(const std::string& before) {
  if (text_ == before) return;
  trace_.Emit(changeEvent_ + " " + Trace::Quote(text_));
  if (onChange_) onChange_();
}

void MemoryTextBox::SetText(const std::string& text) {
  const std::string before = text_;
  colours_.Replace(0, static_cast<int>(text_.size()), static_cast<int>(text.size()), insertColour_);
  text_ = text;
  selStart_ = std::min(selStart_, static_cast<int>(text_.size()));
  selLength_ = 0;
  Changed(before);
}

void MemoryTextBox::SetSelStart(int start) {
  const int clamped = std::clamp(start, 0, static_cast<int>(text_.size()));
  if (clamped != selStart_ && clamped > 0) insertColour_ = colours_.At(clamped - 1);
  selStart_ = clamped;
  selLength_ = 0;
}

void MemoryTextBox::SetSelLength(int length) {
  selLength_ = std::clamp(length, 0, static_cast<int>(text_.size()) - selStart_);
}

void MemoryTextBox::SetSelText(const std::string& text) {
  const std::string before = text_;
  text_.replace(selStart_, selLength_, text);
  colours_.Replace(selStart_, selLength_, static_cast<int>(text.size()), insertColour_);
  selStart_ += static_cast<int>(text.size());
  selLength_ = 0;
  Changed(before);
}

void MemoryTextBox::SetSelColor(Colour colour) {
  if (selLength_ == 0) {
    insertColour_ = colour;
    return;
  }
  colours_.Recolour(selStart_, selLength_, colour);
}

}  // namespace vantrel::platform::memory
