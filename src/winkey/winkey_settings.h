// The keyer chip's settings, each under the name of its settings key.
#pragma once

#include <cstdint>

namespace vantrel::winkey {

struct WinKeySettings {
  int16_t WinKeyPort = 0;
  int16_t WinKeyKeyMode = 0;
  int16_t WinKeyTone = 0;
  int16_t WinKeyWordSpace = 0;
  int16_t WinKeyPaddleOperation = 0;
  int16_t WinKeyPTTLeadDelay = 0;
  int16_t WinKeyPTTLagDelay = 0;
  int16_t WinKeySpeedMax = 0;
  int16_t WinKeySpeedMin = 0;
  int16_t WinKeySpeedFarnsworth = 0;
  int16_t WinKeyDitDahRatio = 0;
  int16_t WinKeyDitDahWeight = 0;
  int16_t WinKeyFirstExtension = 0;
  int16_t WinKeyCompensation = 0;
  int16_t WinKeyPaddleSwitchpoint = 0;
  bool WinKeyPTT = false;
  bool WinKeyPin3 = false;
  bool WinKeyAutoSpace = false;
  bool WinKeyContestWordSpace = false;
  bool WinKeySwitchPaddles = false;
  bool WinKeyAnalogSpeed = false;
  int16_t WinKeySpeed = 0;
  bool WinKeySideTone = false;
  bool WinKeyDisablePaddleMemory = false;
  bool WinKeyPaddleInsertCancelsMacro = false;
  bool WinKeyRadio1Pin3 = false;
  bool WinKeyRadio2Pin3 = false;
  bool WinKeyHoldRadioPolling = false;
  bool PaddleOnlySideTone = false;
};

}  // namespace vantrel::winkey
