#pragma once

#include <cstdint>

#include "platform/link_channel.h"

namespace vantrel::loggerlink {

// The logger as start-up found it; every handle is 0 when it was not there.
struct LinkState {
  platform::Handle LoggerWindow = 0;
  int32_t LinkMessage = 0;
  platform::Handle LinkMapping = 0;
  platform::Handle LinkView = 0;
};

}  // namespace vantrel::loggerlink
