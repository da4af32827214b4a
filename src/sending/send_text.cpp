#include "sending/send_text.h"

#include <algorithm>
#include <limits>

namespace vantrel::sending {
namespace {

// Marks that would carry the speed past 16 bits leave it alone.
bool StepSpeed(int16_t& wpm, int16_t step) {
  const int next = wpm + step;
  if (next < std::numeric_limits<int16_t>::min() || next > std::numeric_limits<int16_t>::max()) {
    return false;
  }
  wpm = static_cast<int16_t>(next);
  return true;
}

}  // namespace

std::string SendText::CharacterAt(int16_t position) const {
  const std::string text = c_.CWTextBox.Text();
  if (position < 1 || static_cast<size_t>(position) > text.size()) return "";
  return text.substr(position - 1, 1);
}

void SendText::DeleteCharacterAt(int16_t position) {
  platform::TextBox& box = c_.CWTextBox;
  box.SetRedraw(false);
  box.SetSelStart(position - 1);
  box.SetSelLength(1);
  box.SetSelText("");
  box.SetRedraw(true);
  box.Refresh();
}

bool SendText::TakeSpeedMarks(int16_t position,
                              const std::function<void(int16_t wpm)>& speedChanged) {
  const std::string here = CharacterAt(position);
  if (here.empty()) return false;
  const auto mark = static_cast<unsigned char>(here[0]);
  if (mark != kSpeedUp && mark != kSpeedDown) return false;
  const int16_t step = mark == kSpeedUp ? 2 : -2;
  platform::TextBox& box = c_.CWTextBox;
  box.SetRedraw(false);
  while (CharacterAt(position) == here) {
    StepSpeed(cw_.WPM, step);
    cw_.DotTime = cw_.DotLength(cw_.WPM);
    box.SetSelStart(position - 1);
    box.SetSelLength(1);
    box.SetSelText("");
    speedChanged(cw_.WPM);
  }
  box.SetRedraw(true);
  box.Refresh();
  return true;
}

void SendText::MarkSendPosition(int16_t position) {
  platform::TextBox& box = c_.CWTextBox;
  box.SetRedraw(false);
  const int length = static_cast<int>(box.Text().size());
  if (position < 2) {
    box.SetSelStart(0);
    box.SetSelLength(1);
    box.SetSelColor(cw_.TransmittingColor);
    box.SetSelStart(length);
    box.SetSelColor(cw_.TextForeColor);
    markedSent_ = 0;
  } else {
    // What earlier steps marked as sent stays so: colouring only the rest
    // keeps a step's cost from growing with the history.
    const int from = std::min(markedSent_, position - 1);
    box.SetSelStart(from);
    box.SetSelLength(position - 1 - from);
    box.SetSelColor(cw_.TransmittedColor);
    markedSent_ = position - 1;
    box.SetSelStart(position - 1);
    box.SetSelLength(1);
    box.SetSelColor(cw_.TransmittingColor);
    box.SetSelStart(length);
  }
  box.SetRedraw(true);
  box.Refresh();
  for (const auto& observer : onMark_) observer(position);
}

}  // namespace vantrel::sending
