// The bytes that carry the chip's settings: the load-defaults frame and its
// parts, built from the stored settings alone so that they can be checked
// byte for byte.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "winkey/winkey_settings.h"

namespace vantrel::winkey {

uint8_t ModeByte(const WinKeySettings& s);
uint8_t SidetoneByte(const WinKeySettings& s, bool isWinKey2);
// A WinKey's pins follow "WinKey Pin 3"; a WinKey2's follow the radio.
uint8_t BuildWinKeyPinByte(const WinKeySettings& s);
uint8_t BuildWinKey2PinByte(const WinKeySettings& s, int16_t activeRadio);
// A number of the frame and the settings key it comes from; frame byte 8,
// the speed pot's span, is named by "WinKey Speed Max".
struct FrameValue {
  const char* key;
  int value;
};
// The first number a byte cannot carry; only a hand-edited file holds one.
std::optional<FrameValue> ValueOutOfByte(const WinKeySettings& s);

// The 16 bytes written in one go after a discovery.
std::string LoadDefaultsFrame(const WinKeySettings& s, bool isWinKey2, int16_t activeRadio);

}  // namespace vantrel::winkey
