// The text box as both keyers walk it: the character at a position, cutting
// one out, the speed marks, and the colours that show what has gone out.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/main_window_controls.h"
#include "sending/cw_state.h"

namespace vantrel::sending {

inline constexpr unsigned char kSpeedUp = 187;    // »
inline constexpr unsigned char kSpeedDown = 171;  // «

class SendText {
 public:
  SendText(CwState& cw, platform::MainWindowControls& controls) : cw_(cw), c_(controls) {}

  // Each observer is told every send position that MarkSendPosition shows:
  // a front end that follows progress, a sender waiting for its text to go.
  void OnMark(std::function<void(int16_t position)> observer) { onMark_.push_back(std::move(observer)); }

  // `position` is 1-based; empty past the end.
  std::string CharacterAt(int16_t position) const;
  // Cuts one character out of the box with drawing off.
  void DeleteCharacterAt(int16_t position);
  void MarkSendPosition(int16_t position);
  // Takes the run of » or « at `position` out of the box, stepping the speed
  // by 2 for each; `speedChanged` is told each new speed. False when there
  // was no mark there.
  bool TakeSpeedMarks(int16_t position, const std::function<void(int16_t wpm)>& speedChanged);

 private:
  CwState& cw_;
  platform::MainWindowControls& c_;
  std::vector<std::function<void(int16_t)>> onMark_;
  // How many leading characters the marking has shown as sent.
  int markedSent_ = 0;
};

}  // namespace vantrel::sending
