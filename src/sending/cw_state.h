// The program-wide state of the sending core, under the names the rest of the
// keyer uses for it. One instance lives as long as the program.
#pragma once

#include <cstdint>
#include <string>

#include "platform/controls.h"
#include "sending/fixed_ms.h"

namespace vantrel::sending {

struct CwState {
  // Speed and proportions, the last three in units of one dot.
  int16_t WPM = 0;
  int16_t SavedWPM = 0;
  int32_t DotTime = 0;
  double DashLength = 3;
  double LetterSpace = 3;
  double WordSpace = 7;

  // The character in hand.
  std::string CurrentChar;
  std::string CurrentCode;
  int16_t ElementIndex = 0;

  // Timing.
  int64_t TimerStart = 0;
  int64_t TimerStop = 0;
  int64_t TimerFrequency = 1;
  FixedMs RemainingWait;
  FixedMs LetterGapTime;
  FixedMs SidetoneOverhead;
  bool IsNT = true;

  // The walk through the text.
  bool Transmitting = false;
  bool StopSending = false;
  bool WaitingForText = false;
  bool NoLetterGap = false;
  int16_t ResumePosition = 0;
  int16_t LastStepPosition = 0;
  int16_t SendPosition = 0;
  int16_t WinKeyLastChar = 0;
  // True while a send loop stands on the stack, also while it drains after an Abort.
  bool InSendLoop = false;
  // A new transmission asked for while such a draining loop still stood.
  bool StartPending = false;

  // Settings and flags that shape a transmission.
  bool SlowTyping = true;
  int32_t PTTDelay = 100;
  bool PTTEnabled = false;
  // A logger keeps the transmitter on between its texts: their ends leave PTT alone.
  bool PTTHeld = false;
  bool DisablePolling = false;
  bool SidetoneEnabled = false;
  bool TuneActive = false;
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
