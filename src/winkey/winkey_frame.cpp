#include "winkey/winkey_frame.h"

#include <array>

#include "winkey/winkey_protocol.h"

namespace vantrel::winkey {
namespace {

// Bits 5 and 4 by key mode; Iambic A (0) is 01, Iambic B (1) is 00.
uint8_t KeyModeBits(int16_t mode) {
  switch (mode) {
    case 0: return 0x10;
    case 2: return 0x20;
    case 3: return 0x30;
    default: return 0x00;
  }
}

// Bits 7 and 6, and bits 5 and 4, shared by both chips.
uint8_t CommonPinBits(const WinKeySettings& s) {
  uint8_t bits = 0;
  if (s.WinKeyPaddleOperation == 1) bits |= 0x40;
  if (s.WinKeyPaddleOperation == 2) bits |= 0x80;
  if (s.WinKeyWordSpace >= 1 && s.WinKeyWordSpace <= 3) {
    bits |= static_cast<uint8_t>(s.WinKeyWordSpace << 4);
  }
  return bits;
}

constexpr std::array<int16_t, 10> kWinKeyHz{3759, 1879, 1252, 940, 752, 625, 535, 469, 417, 375};
constexpr std::array<int16_t, 10> kWinKey2Hz{4000, 2000, 1333, 1000, 800, 666, 571, 500, 444, 400};

std::optional<std::string> WithByte(std::string frame, int value) {
  if (value < 0 || value > 255) return std::nullopt;
  frame += static_cast<char>(value);
  return frame;
}

}  // namespace

std::string Frame(uint8_t command) { return std::string(1, static_cast<char>(command)); }

std::string AdminFrame(uint8_t subCommand) {
  return std::string{static_cast<char>(protocol::kAdmin), static_cast<char>(subCommand)};
}

std::optional<std::string> Frame(uint8_t command, int value) { return WithByte(Frame(command), value); }

std::optional<std::string> AdminFrame(uint8_t subCommand, int value) {
  return WithByte(AdminFrame(subCommand), value);
}

uint8_t ModeByte(const WinKeySettings& s) {
  // Bit 2, the serial echo, is always on: the echo is how sending is followed.
  uint8_t mode = KeyModeBits(s.WinKeyKeyMode) | 0x04;
  if (s.WinKeySwitchPaddles) mode |= 0x08;
  if (s.WinKeyAutoSpace) mode |= 0x02;
  if (s.WinKeyContestWordSpace) mode |= 0x01;
  return mode;
}

uint8_t SidetoneByte(const WinKeySettings& s, bool isWinKey2) {
  const auto& table = isWinKey2 ? kWinKey2Hz : kWinKeyHz;
  uint8_t code = isWinKey2 ? 4 : 5;
  for (size_t i = 0; i < table.size(); ++i) {
    if (table[i] == s.WinKeyTone) code = static_cast<uint8_t>(i + 1);
  }
  if (isWinKey2 && s.PaddleOnlySideTone) code |= 0x80;
  return code;
}

uint8_t BuildWinKeyPinByte(const WinKeySettings& s) {
  uint8_t pins = CommonPinBits(s);
  if (!s.WinKeyPin3) return pins | protocol::kPinKeyOnPin5;
  pins |= protocol::kPinKeyOnPin3;
  if (s.WinKeySideTone) pins |= protocol::kPinSidetone;
  if (s.WinKeyPTT) pins |= protocol::kPinPtt;
  return pins;
}

uint8_t BuildWinKey2PinByte(const WinKeySettings& s, int16_t activeRadio) {
  uint8_t pins = CommonPinBits(s);
  if (activeRadio == 2) pins |= protocol::kPinKeyOnPin5;
  if (activeRadio == 1) pins |= protocol::kPinKeyOnPin3;
  if (s.WinKeySideTone) pins |= protocol::kPinSidetone;
  if (s.WinKeyPTT) pins |= protocol::kPinPtt;
  return pins;
}

namespace {

// The frame's numbers in their order: byte 2, then bytes 4 to 13.
std::array<FrameValue, 11> FrameValues(const WinKeySettings& s) {
  return {{{"WinKey Speed", s.WinKeySpeed},
           {"WinKey DitDah Weight", s.WinKeyDitDahWeight},
           {"WinKey PTT Lead Delay", s.WinKeyPTTLeadDelay},
           {"WinKey PTT Lag Delay", s.WinKeyPTTLagDelay},
           {"WinKey Speed Min", s.WinKeySpeedMin},
           {"WinKey Speed Max", s.WinKeySpeedMax - s.WinKeySpeedMin},
           {"WinKey First Extension", s.WinKeyFirstExtension},
           {"WinKey Compensation", s.WinKeyCompensation},
           {"WinKey Speed Farnsworth", s.WinKeySpeedFarnsworth},
           {"WinKey Paddle Switchpoint", s.WinKeyPaddleSwitchpoint},
           {"WinKey DitDah Ratio", s.WinKeyDitDahRatio}}};
}

}  // namespace

std::optional<FrameValue> ValueOutOfByte(const WinKeySettings& s) {
  for (const FrameValue& each : FrameValues(s)) {
    if (each.value < 0 || each.value > 0xFF) return each;
  }
  return std::nullopt;
}

std::string LoadDefaultsFrame(const WinKeySettings& s, bool isWinKey2, int16_t activeRadio) {
  const auto byte = [](int value) { return static_cast<char>(static_cast<uint8_t>(value)); };
  const std::array<FrameValue, 11> values = FrameValues(s);
  std::string frame;
  frame += byte(protocol::kLoadDefaults);
  frame += byte(ModeByte(s));
  frame += byte(values[0].value);
  frame += byte(SidetoneByte(s, isWinKey2));
  for (size_t i = 1; i < values.size(); ++i) frame += byte(values[i].value);
  frame += byte(isWinKey2 ? BuildWinKey2PinByte(s, activeRadio) : BuildWinKeyPinByte(s));
  frame += byte(protocol::kLoadDefaultsEnd);
  return frame;
}

}  // namespace vantrel::winkey
