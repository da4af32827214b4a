// The chip simulator writes the protocol and the Morse from its own tables,
// so here the keyer's tables meet a second source and can be found wrong.
#include <gtest/gtest.h>

#include <string>

#include "chip_protocol.h"
#include "sending/morse_table.h"
#include "winkey/winkey_protocol.h"

namespace vantrel::winkeysim {
namespace {

namespace host = winkey::protocol;

TEST(ChipTables, TheKeyersMorseIsTheChips) {
  int shared = 0;
  for (int byte = 0x21; byte < 0x7F; ++byte) {
    const std::string keyer = sending::CharToMorse(static_cast<char>(byte), 1033);
    const std::string_view chipCode = chip::Morse(static_cast<uint8_t>(byte));
    if (keyer.empty() || chipCode.empty()) continue;
    EXPECT_EQ(keyer, chipCode) << "character '" << static_cast<char>(byte) << "'";
    ++shared;
  }
  EXPECT_GE(shared, 26 * 2 + 10) << "letters of both cases and digits at least";
}

TEST(ChipTables, TheKeyersCommandBytesAreTheChips) {
  struct Pair {
    const char* name;
    uint8_t host;
    uint8_t chip;
  };
#define SAME(keyer, chipName) Pair{#keyer, host::keyer, chip::chipName}
  const Pair same[] = {
      SAME(kAdmin, kAdmin),
      SAME(kAdminCalibrate, kCalibrate),
      SAME(kAdminReset, kReset),
      SAME(kAdminHostOpen, kHostOpen),
      SAME(kAdminHostClose, kHostClose),
      SAME(kAdminEcho, kEchoTest),
      SAME(kAdminPlayMessage, kSendMessage),
      SAME(kSidetone, kSidetoneControl),
      SAME(kSpeed, kSetWpmSpeed),
      SAME(kWeighting, kSetWeighting),
      SAME(kPttLeadTail, kSetPttLeadTail),
      SAME(kSpeedPotSetup, kSetupSpeedPot),
      SAME(kPause, kSetPauseState),
      SAME(kGetSpeedPot, kGetSpeedPot),
      SAME(kBackspace, kBackspace),
      SAME(kPinConfig, kSetPinConfig),
      SAME(kClearBuffer, kClearBuffer),
      SAME(kKeyImmediate, kKeyImmediate),
      SAME(kHighSpeedCw, kSetHscw),
      SAME(kFarnsworth, kSetFarnsWpm),
      SAME(kWinKeyMode, kSetWinkeyerMode),
      SAME(kLoadDefaults, kLoadDefaults),
      SAME(kFirstExtension, kSet1stExtension),
      SAME(kKeyCompensation, kSetKeyComp),
      SAME(kPaddleSwitchpoint, kSetPaddleSwitchpoint),
      SAME(kNull, kNullCommand),
      SAME(kSoftwarePaddle, kSoftwarePaddle),
      SAME(kRequestStatus, kRequestStatus),
      SAME(kPointer, kPointerCommand),
      SAME(kDitDahRatio, kSetDitDahRatio),
      SAME(kPtt, kPttOnOff),
      SAME(kKeyBuffered, kKeyBuffered),
      SAME(kWait, kWaitSeconds),
      SAME(kMergeLetters, kMergeLetters),
      SAME(kBufferedSpeed, kBufferedSpeedChange),
      SAME(kHighSpeedCwBuffered, kHscwSpeedChange),
      SAME(kCancelBufferedSpeed, kCancelBufferedSpeed),
      SAME(kBufferedNop, kBufferedNop),
      SAME(kPinKeyOnPin5, kPinKeyOut2),
      SAME(kPinKeyOnPin3, kPinKeyOut1),
      SAME(kPinSidetone, kPinSidetoneEnable),
      SAME(kPinPtt, kPinPttEnable),
      SAME(kClassMask, kTagMask),
      SAME(kStatusClass, kStatusTag),
      SAME(kPotClass, kPotTag),
      SAME(kPotValueMask, kPotMask),
      SAME(kStatusXoff, kStatusXoff),
      SAME(kStatusBreakIn, kStatusBreakin),
      SAME(kStatusBusy, kStatusBusy),
      SAME(kStatusKeyDown, kStatusKeydown),
      SAME(kStatusWait, kStatusWait),
  };
#undef SAME
  for (const Pair& pair : same) EXPECT_EQ(pair.host, pair.chip) << pair.name;
  EXPECT_LT(chip::kWinKeyRevision, host::kFirstWinKey2Revision);
  EXPECT_GE(chip::kWinKey2Revision, host::kFirstWinKey2Revision);
}

}  // namespace
}  // namespace vantrel::winkeysim
