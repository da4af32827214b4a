// A sound system in memory that traces every call and keeps the last
// buffer's description and samples; it can also be missing altogether.
#pragma once

#include <memory>
#include <vector>

#include "platform/memory/trace.h"
#include "platform/sound.h"

namespace vantrel::platform::memory {

class MemorySoundSystem : public SoundSystem {
 public:
  explicit MemorySoundSystem(Trace& trace) : trace_(trace) {}

  std::unique_ptr<SoundDevice> CreateDevice() override;

  bool missing = false;
  SoundBufferDescription lastDescription;
  std::vector<int16_t> lastWritten;

 private:
  class Device;
  class Buffer;
  Trace& trace_;
};

}  // namespace vantrel::platform::memory
