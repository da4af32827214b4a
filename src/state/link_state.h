#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/link_channel.h"

namespace vantrel::loggerlink {

// The slots of the shared block, by number.
enum class LinkSlot : int16_t {
  LinkCall = 0,
  LinkName = 1,
  LinkSerial = 2,
  LinkMyCall = 3,
  LinkBand = 4,
  LinkControl = 5,
  LinkSRX = 6,
  LinkRadio = 7,
  LinkSentRST = 8,
  LinkReceivedRST = 9,
};

inline constexpr int16_t kSlotCount = 10;
inline constexpr int32_t kSlotSpacing = 128;
// The keyer's half of a slot; the other half is the logger's alone.
inline constexpr int32_t kSlotText = 64;
// The last slot's first half ends the part of the block the keyer touches.
inline constexpr int32_t kBlockSize = (kSlotCount - 1) * kSlotSpacing + kSlotText;

// The logger as start-up found it; every handle is 0 when it was not there.
// Then what the link has read of it.
struct LinkState {
  platform::Handle LoggerWindow = 0;
  int32_t LinkMessage = 0;
  platform::Handle LinkMapping = 0;
  platform::Handle LinkView = 0;

  // The private copy of each slot, always 64 characters.
  std::array<std::string, kSlotCount> Slots{};
  std::string MyCall;
  std::string Band;
  std::string SerialFormat;
  int16_t ActiveRadio = 0;
};

}  // namespace vantrel::loggerlink
