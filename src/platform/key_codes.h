// The keys as the key handlers know them: Windows virtual key codes, which
// the settings file keeps as well (the key INS stands for), the shift
// state's bits and the mouse buttons. A front end turns its own keys into
// these.
#pragma once

#include <cstdint>

namespace vantrel::platform::keys {

inline constexpr int16_t kBackspace = 8;
inline constexpr int16_t kTab = 9;
inline constexpr int16_t kEnter = 13;
inline constexpr int16_t kShiftKey = 16;
inline constexpr int16_t kCtrlKey = 17;
inline constexpr int16_t kAltKey = 18;
inline constexpr int16_t kPause = 19;
inline constexpr int16_t kCapsLock = 20;
inline constexpr int16_t kEsc = 27;
inline constexpr int16_t kSpace = 32;
inline constexpr int16_t kPageUp = 33;
inline constexpr int16_t kPageDown = 34;
inline constexpr int16_t kEnd = 35;
inline constexpr int16_t kHome = 36;
inline constexpr int16_t kLeft = 37;
inline constexpr int16_t kUp = 38;
inline constexpr int16_t kRight = 39;
inline constexpr int16_t kDown = 40;
inline constexpr int16_t kPrint = 44;
inline constexpr int16_t kInsert = 45;
inline constexpr int16_t kDelete = 46;
// Letters and digits are their capitals' and digits' character codes.
inline constexpr int16_t kWindows = 91;
inline constexpr int16_t kMenu = 93;
// The number pad: the digits from kPad0 on, then its operators and point.
inline constexpr int16_t kPad0 = 96;
inline constexpr int16_t kPadMultiply = 106;
inline constexpr int16_t kPadAdd = 107;
inline constexpr int16_t kPadSubtract = 109;
inline constexpr int16_t kPadPoint = 110;
inline constexpr int16_t kPadDivide = 111;
// F1 to F24 in a row.
inline constexpr int16_t kF1 = 112;
inline constexpr int16_t kF12 = 123;
inline constexpr int16_t kNumLock = 144;
inline constexpr int16_t kScrollLock = 145;
// The punctuation keys of a US layout, each by its unshifted character.
inline constexpr int16_t kSemicolon = 186;
inline constexpr int16_t kEquals = 187;
inline constexpr int16_t kComma = 188;
inline constexpr int16_t kMinus = 189;
inline constexpr int16_t kPeriod = 190;
inline constexpr int16_t kSlash = 191;
inline constexpr int16_t kBackquote = 192;
inline constexpr int16_t kOpenBracket = 219;
inline constexpr int16_t kBackslash = 220;
inline constexpr int16_t kCloseBracket = 221;
inline constexpr int16_t kQuote = 222;

// The keyer's own codes past F12, which only INS stands for: a row of twelve
// for ALT F1 to F12, then one for CTRL.
inline constexpr int16_t kFunctionKeysPerRow = 12;
inline constexpr int16_t kAltF12 = kF12 + kFunctionKeysPerRow;
inline constexpr int16_t kCtrlF12 = kAltF12 + kFunctionKeysPerRow;

// The shift state's bits.
inline constexpr int16_t kShiftMask = 1;
inline constexpr int16_t kCtrlMask = 2;
inline constexpr int16_t kAltMask = 4;

// Mouse buttons.
inline constexpr int16_t kLeftButton = 1;
inline constexpr int16_t kRightButton = 2;
inline constexpr int16_t kMiddleButton = 4;

}  // namespace vantrel::platform::keys
