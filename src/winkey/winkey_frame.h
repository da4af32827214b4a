// Every frame the keyer writes to the chip, built from values alone so that
// each can be checked byte for byte: the commands, and the load-defaults
// frame with its parts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "winkey/winkey_settings.h"

namespace vantrel::winkey {

// A command on its own, or an admin command (kAdmin and its sub-command).
std::string Frame(uint8_t command);
std::string AdminFrame(uint8_t subCommand);
// A command and its one argument; nothing when the value does not fit the
// byte, which the chip would read as another value.
std::optional<std::string> Frame(uint8_t command, int value);
std::optional<std::string> AdminFrame(uint8_t subCommand, int value);

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
