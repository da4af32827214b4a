// The WinKey and WinKey2 interface as the chip's datasheet tables give it:
// command bytes, their argument bytes, what the chip sends back and the
// characters it keys. Written here rather than taken from the keyer, so that
// the simulator can catch a keyer with a wrong byte instead of sharing it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

namespace vantrel::winkeysim::chip {

// Immediate commands, then the buffered ones from 0x18; below 0x20 every
// byte is a command.
inline constexpr uint8_t kAdmin = 0x00;
inline constexpr uint8_t kSidetoneControl = 0x01;
inline constexpr uint8_t kSetWpmSpeed = 0x02;  // 0: the pot sets the speed
inline constexpr uint8_t kSetWeighting = 0x03;
inline constexpr uint8_t kSetPttLeadTail = 0x04;
inline constexpr uint8_t kSetupSpeedPot = 0x05;
inline constexpr uint8_t kSetPauseState = 0x06;
inline constexpr uint8_t kGetSpeedPot = 0x07;
inline constexpr uint8_t kBackspace = 0x08;
inline constexpr uint8_t kSetPinConfig = 0x09;
inline constexpr uint8_t kClearBuffer = 0x0A;
inline constexpr uint8_t kKeyImmediate = 0x0B;
inline constexpr uint8_t kSetHscw = 0x0C;
inline constexpr uint8_t kSetFarnsWpm = 0x0D;
inline constexpr uint8_t kSetWinkeyerMode = 0x0E;
inline constexpr uint8_t kLoadDefaults = 0x0F;
inline constexpr uint8_t kSet1stExtension = 0x10;
inline constexpr uint8_t kSetKeyComp = 0x11;
inline constexpr uint8_t kSetPaddleSwitchpoint = 0x12;
inline constexpr uint8_t kNullCommand = 0x13;
inline constexpr uint8_t kSoftwarePaddle = 0x14;
inline constexpr uint8_t kRequestStatus = 0x15;
inline constexpr uint8_t kPointerCommand = 0x16;
inline constexpr uint8_t kSetDitDahRatio = 0x17;
inline constexpr uint8_t kPttOnOff = 0x18;
inline constexpr uint8_t kKeyBuffered = 0x19;
inline constexpr uint8_t kWaitSeconds = 0x1A;
inline constexpr uint8_t kMergeLetters = 0x1B;
inline constexpr uint8_t kBufferedSpeedChange = 0x1C;
inline constexpr uint8_t kHscwSpeedChange = 0x1D;
inline constexpr uint8_t kCancelBufferedSpeed = 0x1E;
inline constexpr uint8_t kBufferedNop = 0x1F;

// Argument bytes after each command. Admin and pointer commands count their
// sub-command here; what follows it is in SubArguments.
inline constexpr uint8_t kArgumentBytes[32] = {
    1, 1, 1, 1, 2, 3, 1, 0, 0, 1, 0, 1, 1, 1, 1, 15,
    1, 1, 1, 0, 1, 0, 1, 1, 1, 1, 1, 2, 1, 1, 0, 0,
};

// Admin sub-commands, the byte after kAdmin.
inline constexpr uint8_t kCalibrate = 0x00;
inline constexpr uint8_t kReset = 0x01;
inline constexpr uint8_t kHostOpen = 0x02;
inline constexpr uint8_t kHostClose = 0x03;
inline constexpr uint8_t kEchoTest = 0x04;
inline constexpr uint8_t kSendMessage = 0x0E;  // WinKey2: stored message 1 to 6

// Pointer sub-command: 0 resets the pointer; the others carry one byte.
inline constexpr uint8_t kPointerReset = 0x00;

// Bytes still to come once a command's first argument is known.
constexpr size_t SubArguments(uint8_t command, uint8_t first) {
  if (command == kAdmin) return first == kEchoTest || first == kSendMessage ? 1 : 0;
  if (command == kPointerCommand) return first == kPointerReset ? 0 : 1;
  return 0;
}

// Load defaults: the value bytes in their order (15 in all, the last unused).
inline constexpr size_t kDefaultsMode = 0;
inline constexpr size_t kDefaultsSpeed = 1;
inline constexpr size_t kDefaultsMinWpm = 6;

// Mode register bit: echo each character as it is keyed.
inline constexpr uint8_t kModeSerialEcho = 0x04;

// Pin configuration bits.
inline constexpr uint8_t kPinPttEnable = 0x01;
inline constexpr uint8_t kPinSidetoneEnable = 0x02;
inline constexpr uint8_t kPinKeyOut1 = 0x04;  // pin 3
inline constexpr uint8_t kPinKeyOut2 = 0x08;  // pin 5

// What the chip sends, told apart by the top two bits: 11 status, 10 speed
// pot, anything lower the echo of a keyed character.
inline constexpr uint8_t kTagMask = 0xC0;
inline constexpr uint8_t kStatusTag = 0xC0;
inline constexpr uint8_t kPotTag = 0x80;
inline constexpr uint8_t kPotMask = 0x3F;  // the pot's setting above its minimum
inline constexpr uint8_t kStatusXoff = 0x01;
inline constexpr uint8_t kStatusBreakin = 0x02;
inline constexpr uint8_t kStatusBusy = 0x04;
inline constexpr uint8_t kStatusKeydown = 0x08;
inline constexpr uint8_t kStatusWait = 0x10;

// Revisions a chip answers host open with: WinKey2 chips are 20 and up.
inline constexpr uint8_t kWinKeyRevision = 10;
inline constexpr uint8_t kWinKey2Revision = 23;

// Text bytes with a meaning of their own.
inline constexpr char kWordSpace = ' ';
inline constexpr char kHalfSpace = '|';  // half a dit of silence

// The characters the chip keys, lower case as upper; the bracket and angle
// characters are its prosigns.
inline constexpr std::pair<char, std::string_view> kCharacterSet[] = {
    {'A', ".-"},     {'B', "-..."},   {'C', "-.-."},    {'D', "-.."},     {'E', "."},
    {'F', "..-."},   {'G', "--."},    {'H', "...."},    {'I', ".."},      {'J', ".---"},
    {'K', "-.-"},    {'L', ".-.."},   {'M', "--"},      {'N', "-."},      {'O', "---"},
    {'P', ".--."},   {'Q', "--.-"},   {'R', ".-."},     {'S', "..."},     {'T', "-"},
    {'U', "..-"},    {'V', "...-"},   {'W', ".--"},     {'X', "-..-"},    {'Y', "-.--"},
    {'Z', "--.."},   {'0', "-----"},  {'1', ".----"},   {'2', "..---"},   {'3', "...--"},
    {'4', "....-"},  {'5', "....."},  {'6', "-...."},   {'7', "--..."},   {'8', "---.."},
    {'9', "----."},  {'"', ".-..-."}, {'$', "...-..-"}, {'\'', ".----."}, {'(', "-.--."},
    {')', "-.--.-"}, {'+', ".-.-."},  {',', "--..--"},  {'-', "-....-"},  {'.', ".-.-.-"},
    {'/', "-..-."},  {':', "---..."}, {';', "-.-.-."},  {'=', "-...-"},   {'?', "..--.."},
    {'@', ".--.-."},
    {'<', ".-.-."},   // AR
    {'>', "...-.-"},  // SK
    {'[', ".-..."},   // AS
    {'\\', "-..-."},  // DN
    {']', "-.--."},   // KN
};

// Dots and dashes of a text byte; empty for one the chip does not key.
constexpr std::string_view Morse(uint8_t byte) {
  const char upper = byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A')
                                                : static_cast<char>(byte);
  for (const auto& [character, code] : kCharacterSet) {
    if (character == upper) return code;
  }
  return {};
}

}  // namespace vantrel::winkeysim::chip
