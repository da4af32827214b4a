#include <limits>

#include "sending/morse_table.h"
#include "sending/software_keyer.h"

namespace vantrel::sending {
namespace {

constexpr unsigned char kJoin = '^';

}  // namespace

void SoftwareKeyer::NextCharacter(int16_t& position) {
  cw_.LastStepPosition = position;
  cw_.SendPosition = position;
  const std::string here = n_.text.CharacterAt(position);
  if (here.empty()) return;
  const bool marks =
      n_.text.TakeSpeedMarks(position, [this](int16_t wpm) { n_.control.ShowSpeed(wpm); });
  if (!marks && static_cast<unsigned char>(here[0]) == kJoin) {
    n_.text.DeleteCharacterAt(position);
    noLetterGap_ = true;
  }
  cw_.CurrentChar = n_.text.CharacterAt(position);
  n_.text.MarkSendPosition(position);
}

void SoftwareKeyer::SendLoop(int16_t& startPosition) {
  if (cw_.CurrentChar.empty()) return;
  inSendLoop_ = true;
  // A port lost before this loop (under a tune) is none of its business.
  n_.lines.TakePortLost();
  StartTransmission();
  // Every wait of the transmission ends at an edge of one timeline, from here.
  StartTimeline();
  if (cw_.PTTDelay > 0) WaitForEdge(static_cast<double>(cw_.PTTDelay));

  int16_t position = startPosition == 0 ? 2 : static_cast<int16_t>(startPosition + 1);
  cw_.CurrentCode = CharToMorse(cw_.CurrentChar[0], cw_.LanguageId);
  while (!cw_.StopSending()) {
    SendCharacter();
    // Stopped from inside the character: what the box holds now is not the queue.
    if (cw_.StopSending()) break;
    cw_.CurrentChar.clear();
    NextCharacter(position);
    if (cw_.CurrentChar.empty()) break;
    n_.link.PollLink();
    cw_.CurrentCode = CharToMorse(cw_.CurrentChar[0], cw_.LanguageId);

    // What the step between the letters took is already on the timeline.
    const FixedMs gap = FixedMs::FromMs(noLetterGap_ ? cw_.DotTime : cw_.DotTime * cw_.LetterSpace);
    if (gap.units > 0) WaitForEdge(gap.Ms());
    noLetterGap_ = false;
    // Positions are 16-bit: a text longer than that ends here, as if it had run out.
    if (position == std::numeric_limits<int16_t>::max()) break;
    ++position;
  }
  inSendLoop_ = false;
  const bool portLost = n_.lines.TakePortLost();

  if (startPending_) {
    // Drained after an Abort or a lost port, which have ended the transmission
    // already; ending it again would throw away what came in meanwhile.
    startPending_ = false;
    StartNewTransmission();
    return;
  }
  if (portLost) return;
  if (!cw_.SlowTyping || cw_.LoopDelay > 0 || cw_.ReceiveAfterSend) {
    EndTransmission();
    return;
  }
  cw_.ResumePosition = position;
  n_.text.MarkSendPosition(position);
  // A loop drained after an Abort or a stop holds nothing.
  if (cw_.Tx == TxState::Sending) cw_.Tx = TxState::WaitingForText;
}

void SoftwareKeyer::StartNewTransmission() {
  const std::string text = c_.CWTextBox.Text();
  if (text.empty()) return;
  if (inSendLoop_) {
    // Only after an Abort can a loop still stand on the stack here: it keys out
    // the character in hand first, then starts this one.
    startPending_ = true;
    return;
  }
  n_.text.MarkSendPosition(1);
  cw_.CurrentChar = text.substr(0, 1);
  int16_t start = 0;
  SendLoop(start);
}

void SoftwareKeyer::ResumeTransmission() {
  n_.text.MarkSendPosition(cw_.ResumePosition);
  cw_.CurrentChar = n_.text.CharacterAt(cw_.ResumePosition);
  SendLoop(cw_.ResumePosition);
}

}  // namespace vantrel::sending
