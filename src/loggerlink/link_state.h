#pragma once

#include <cstdint>

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

// The logger as start-up found it; every handle is 0 when it was not there.
struct LinkState {
  platform::Handle LoggerWindow = 0;
  int32_t LinkMessage = 0;
  platform::Handle LinkMapping = 0;
  platform::Handle LinkView = 0;
};

}  // namespace vantrel::loggerlink
