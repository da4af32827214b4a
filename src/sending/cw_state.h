// The program-wide state of the sending core, under the names the rest of the
// keyer uses for it. One instance lives as long as the program.
#pragma once

#include <cstdint>
#include <string>

#include "platform/controls.h"

namespace vantrel::sending {

// Where a transmission stands. The keyer in use moves it; the rest of the
// keyer only reads it.
enum class TxState : uint8_t {
  Idle,
  // A run keys text (or a tune holds the key down, or the operator's paddle
  // has a chip).
  Sending,
  // Slow Typing: the run has keyed all it had and holds for more text.
  WaitingForText,
  // Ended from inside: a send loop on the stack unwinds at once.
  Stopping,
};

// Dot length in ms for a speed and the three proportions; never below 12.
int32_t ComputeDotLength(int16_t wpm, double dashLength, double letterSpace, double wordSpace);

struct CwState {
  // Speed and proportions, the last three in units of one dot.
  int16_t WPM = 0;
  int16_t SavedWPM = 0;
  int32_t DotTime = 0;
  double DashLength = 3;
  double LetterSpace = 3;
  double WordSpace = 7;
  int32_t DotLength(int16_t wpm) const {
    return ComputeDotLength(wpm, DashLength, LetterSpace, WordSpace);
  }

  // The character in hand.
  std::string CurrentChar;
  std::string CurrentCode;
  int16_t ElementIndex = 0;

  // Timing.
  int64_t TimerFrequency = 1;
  bool IsNT = true;

  // The walk through the text.
  TxState Tx = TxState::Idle;
  bool Transmitting() const { return Tx == TxState::Sending || Tx == TxState::WaitingForText; }
  bool WaitingForText() const { return Tx == TxState::WaitingForText; }
  bool StopSending() const { return Tx == TxState::Stopping; }
  int16_t ResumePosition = 0;
  int16_t LastStepPosition = 0;
  int16_t SendPosition = 0;

  // Settings and flags that shape a transmission.
  bool SlowTyping = true;
  int32_t PTTDelay = 100;
  bool PTTEnabled = false;
  // A logger keeps the transmitter on between its texts: their ends leave PTT alone.
  bool PTTHeld = false;
  bool DisablePolling = false;
  bool SidetoneEnabled = false;
  int32_t LoopDelay = 0;
  bool ReceiveAfterSend = false;
  bool LogAfterSend = false;
  int16_t LanguageId = 0;
  double SidetoneFrequency = 0;

  // The software keyer's port: parallel, the logger's serial port, or else
  // the dedicated serial port.
  bool UseParallel = false;
  bool UseSharedSerial = false;
  std::string DedicatedSerialPort;
  int32_t LptBaseAddress = 0;
  // Set when the parallel port is first prepared, kept across route changes.
  int32_t ControlPortAddress = 0;
  int16_t KeyMask = 0;
  int16_t PTTMask = 0;
  int16_t SharedComNumber = 0;

  platform::Colour TransmittedColor = 0;
  platform::Colour TransmittingColor = 255;
  platform::Colour TextForeColor = 16711680;
};

}  // namespace vantrel::sending
