// The bytes of the WinKey host protocol, as the chips' published interface
// names them. Commands go host to chip; the chip answers with echo, status
// and speed pot bytes, told apart by their top bits.
#pragma once

#include <cstdint>

namespace vantrel::winkey::protocol {

// Admin commands: kAdmin, then one of these.
inline constexpr uint8_t kAdmin = 0x00;
inline constexpr uint8_t kAdminCalibrate = 0x00;
inline constexpr uint8_t kAdminReset = 0x01;
inline constexpr uint8_t kAdminHostOpen = 0x02;
inline constexpr uint8_t kAdminHostClose = 0x03;
inline constexpr uint8_t kAdminEcho = 0x04;
inline constexpr uint8_t kAdminPlayMessage = 0x0E;  // a stored message, 1 to 6; WinKey2 only
// The byte that ends calibration, 100 ms after kAdminCalibrate.
inline constexpr uint8_t kCalibrateEnd = 0xFF;

// Commands.
inline constexpr uint8_t kSidetone = 0x01;
inline constexpr uint8_t kSpeed = 0x02;  // 0 hands the speed to the pot
inline constexpr uint8_t kWeighting = 0x03;
inline constexpr uint8_t kPttLeadTail = 0x04;
inline constexpr uint8_t kSpeedPotSetup = 0x05;
inline constexpr uint8_t kPause = 0x06;
inline constexpr uint8_t kGetSpeedPot = 0x07;
inline constexpr uint8_t kBackspace = 0x08;
inline constexpr uint8_t kPinConfig = 0x09;
inline constexpr uint8_t kClearBuffer = 0x0A;
inline constexpr uint8_t kKeyImmediate = 0x0B;  // 01 key down, 00 key up
inline constexpr uint8_t kHighSpeedCw = 0x0C;   // 00 also turns paddle memory off
inline constexpr uint8_t kFarnsworth = 0x0D;
inline constexpr uint8_t kWinKeyMode = 0x0E;
inline constexpr uint8_t kLoadDefaults = 0x0F;  // 15 bytes follow
inline constexpr uint8_t kFirstExtension = 0x10;
inline constexpr uint8_t kKeyCompensation = 0x11;
inline constexpr uint8_t kPaddleSwitchpoint = 0x12;
inline constexpr uint8_t kNull = 0x13;
inline constexpr uint8_t kSoftwarePaddle = 0x14;
inline constexpr uint8_t kRequestStatus = 0x15;
inline constexpr uint8_t kPointer = 0x16;
inline constexpr uint8_t kDitDahRatio = 0x17;
inline constexpr uint8_t kPtt = 0x18;
inline constexpr uint8_t kKeyBuffered = 0x19;
inline constexpr uint8_t kWait = 0x1A;
inline constexpr uint8_t kMergeLetters = 0x1B;
inline constexpr uint8_t kBufferedSpeed = 0x1C;
inline constexpr uint8_t kHighSpeedCwBuffered = 0x1D;
inline constexpr uint8_t kCancelBufferedSpeed = 0x1E;
inline constexpr uint8_t kBufferedNop = 0x1F;
inline constexpr uint8_t kLoadDefaultsEnd = 0xFF;  // the frame's last byte

// What the chip sends: 11xxxxxx a status byte, 10xxxxxx a speed pot byte,
// anything below 0x80 the echo of a character it has keyed.
inline constexpr uint8_t kClassMask = 0xC0;
inline constexpr uint8_t kStatusClass = 0xC0;
inline constexpr uint8_t kPotClass = 0x80;
inline constexpr uint8_t kPotValueMask = 0x3F;
inline constexpr uint8_t kStatusXoff = 0x01;     // buffer more than 2/3 full
inline constexpr uint8_t kStatusBreakIn = 0x02;  // the paddle interrupted sending
inline constexpr uint8_t kStatusBusy = 0x04;     // keying
inline constexpr uint8_t kStatusKeyDown = 0x08;  // tune
inline constexpr uint8_t kStatusWait = 0x10;

// Pin configuration bits: which output keys the radio, sidetone, PTT.
inline constexpr uint8_t kPinKeyOnPin5 = 0x08;
inline constexpr uint8_t kPinKeyOnPin3 = 0x04;
inline constexpr uint8_t kPinSidetone = 0x02;
inline constexpr uint8_t kPinPtt = 0x01;

// A host open is answered with the chip's revision: below this a WinKey.
inline constexpr uint8_t kFirstWinKey2Revision = 20;

}  // namespace vantrel::winkey::protocol
