#include <algorithm>
#include <limits>

#include "sending/morse_table.h"
#include "sending/sending_core.h"
#include "winkey/winkey_protocol.h"

namespace vantrel::sending {
namespace {

constexpr unsigned char kSpeedUp = 187;    // »
constexpr unsigned char kSpeedDown = 171;  // «
constexpr unsigned char kJoin = '^';
constexpr unsigned char kWinKeyBuffered = '|';

// Codes that a WinKey never receives from the text.
bool CutOnWinKeyRoute(unsigned char code) { return code <= 31 || code == 33 || code >= 94; }

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

void SendingCore::SendWinKeySpeed(int16_t wpm) {
  // The chip takes a speed as one byte; one it cannot hold is not sent.
  if (wpm < 0 || wpm > 255) return;
  n_.winkey.WriteWinKey(
      std::string{static_cast<char>(winkey::protocol::kBufferedSpeed), static_cast<char>(wpm)});
}

bool SendingCore::WinKeyRoute() const { return c_.mnuWinKey.Checked() || c_.mnuWinKey2.Checked(); }

std::string SendingCore::CharacterAt(int16_t position) const {
  const std::string text = c_.CWTextBox.Text();
  if (position < 1 || static_cast<size_t>(position) > text.size()) return "";
  return text.substr(position - 1, 1);
}

void SendingCore::DeleteCharacterAt(int16_t position) {
  platform::TextBox& box = c_.CWTextBox;
  box.SetRedraw(false);
  box.SetSelStart(position - 1);
  box.SetSelLength(1);
  box.SetSelText("");
  box.SetRedraw(true);
  box.Refresh();
}

void SendingCore::ChangeSpeedByMarks(int16_t position, unsigned char mark, int16_t step) {
  platform::TextBox& box = c_.CWTextBox;
  box.SetRedraw(false);
  while (CharacterAt(position) == std::string(1, static_cast<char>(mark))) {
    StepSpeed(cw_.WPM, step);
    cw_.DotTime = ComputeDotLength(cw_.WPM);
    box.SetSelStart(position - 1);
    box.SetSelLength(1);
    box.SetSelText("");
    if (!WinKeyRoute()) {
      ShowSpeed(cw_.WPM);
    } else if (!n_.winKeySettings.WinKeyAnalogSpeed) {
      // With the speed on the chip's own knob, the text's marks are not its business.
      SendWinKeySpeed(cw_.WPM);
      ShowSpeed(cw_.WPM);
    }
  }
  box.SetRedraw(true);
  box.Refresh();
}

void SendingCore::NextCharacter(int16_t& position) {
  cw_.LastStepPosition = position;
  cw_.SendPosition = position;
  const std::string here = CharacterAt(position);
  if (here.empty()) return;
  const auto code = static_cast<unsigned char>(here[0]);
  const bool winKey = WinKeyRoute();

  if (code == kSpeedUp) {
    ChangeSpeedByMarks(position, kSpeedUp, 2);
  } else if (code == kSpeedDown) {
    ChangeSpeedByMarks(position, kSpeedDown, -2);
  } else if (!winKey && code == kJoin) {
    DeleteCharacterAt(position);
    cw_.NoLetterGap = true;
  } else if (winKey && CutOnWinKeyRoute(code)) {
    DeleteCharacterAt(position);
  }

  if (!winKey) {
    cw_.CurrentChar = CharacterAt(position);
  } else {
    for (std::string next = CharacterAt(position); !WinKeySendable(next);
         next = CharacterAt(position)) {
      if (!cw_.Transmitting) return;
      DeleteCharacterAt(position);
    }
    n_.winkey.WriteWinKey(CharacterAt(position));
  }
  MarkSendPosition(position);
}

bool SendingCore::WinKeySendable(std::string& character) {
  int code = 0;
  if (character.empty()) {
    mnuabort_click();
  } else {
    code = static_cast<unsigned char>(character[0]);
  }
  if (code == kWinKeyBuffered) {
    // One "|" is cut; the second of a pair goes to the chip.
    if (cw_.WinKeyLastChar != kWinKeyBuffered) {
      n_.winkey.WriteWinKey("|");
      cw_.WinKeyLastChar = kWinKeyBuffered;
    }
    return false;
  }
  cw_.WinKeyLastChar = static_cast<int16_t>(code);
  return code == 32 || (code >= 34 && code <= 93);
}

void SendingCore::MarkSendPosition(int16_t position) {
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

void SendingCore::SendLoop(int16_t& startPosition) {
  if (cw_.CurrentChar.empty()) return;
  cw_.StopSending = false;
  cw_.WaitingForText = false;
  cw_.InSendLoop = true;
  StartTransmission();
  if (cw_.PTTDelay > 0) TimedWait(static_cast<double>(cw_.PTTDelay));

  int16_t position = startPosition == 0 ? 2 : static_cast<int16_t>(startPosition + 1);
  cw_.CurrentCode = CharToMorse(cw_.CurrentChar[0], cw_.LanguageId);
  while (!cw_.StopSending) {
    SendCharacter();
    // Stopped from inside the character: what the box holds now is not the queue.
    if (cw_.StopSending) break;
    cw_.TimerStart = scheduler_.QueryPerformanceCounter();
    cw_.CurrentChar.clear();
    NextCharacter(position);
    if (cw_.CurrentChar.empty()) break;
    n_.link.PollLink();
    cw_.CurrentCode = CharToMorse(cw_.CurrentChar[0], cw_.LanguageId);

    cw_.LetterGapTime = FixedMs::FromMs(cw_.DotTime * cw_.LetterSpace);
    cw_.TimerStop = scheduler_.QueryPerformanceCounter();
    const FixedMs elapsed = FixedMs::FromMs(ElapsedMs(cw_.TimerStart, cw_.TimerStop));
    const FixedMs gap = cw_.NoLetterGap ? FixedMs::FromMs(cw_.DotTime) : cw_.LetterGapTime;
    cw_.RemainingWait = gap - elapsed - cw_.SidetoneOverhead;
    if (cw_.RemainingWait.units > 0) TimedWait(cw_.RemainingWait);
    cw_.NoLetterGap = false;
    // Positions are 16-bit: a text longer than that ends here, as if it had run out.
    if (position == std::numeric_limits<int16_t>::max()) break;
    ++position;
  }
  cw_.InSendLoop = false;
  const bool portLost = n_.lines.TakePortLost();

  if (cw_.StartPending) {
    // Drained after an Abort or a lost port, which have ended the transmission
    // already; ending it again would throw away what came in meanwhile.
    cw_.StartPending = false;
    StartNewTransmission();
    return;
  }
  if (portLost) return;
  if (!cw_.SlowTyping || cw_.LoopDelay > 0 || cw_.ReceiveAfterSend) {
    EndTransmission();
    return;
  }
  cw_.ResumePosition = position;
  MarkSendPosition(position);
  cw_.WaitingForText = true;
}

}  // namespace vantrel::sending
