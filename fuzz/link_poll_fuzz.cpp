// The logger's shared block is another program's to write: a poll over any
// bytes at all must read it, act on it and leave the keyer whole.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "app/link_window.h"
#include "app/vantrel.h"
#include "loggerlink/logger_link.h"
#include "platform/memory/memory_platform.h"

namespace {

using namespace vantrel;

struct LinkedKeyer {
  LinkedKeyer() {
    link.Attach(keyer.link, window, keyer.winKey);
    p.linkChannel.loggerRunning = true;
    keyer.store.LocateSettingsFile("/vantrel", "");
    keyer.form.Form_Load();
  }
  platform::Platform Linked() {
    platform::memory::MemoryPlatform& m = p;
    return platform::Platform{m.controls, m.clock,    m.queue,     m.profile,     m.wallClock,
                              m.language, m.parallel, m.cwControl, m.linkChannel, m.sound,
                              link,       m.macroSetup};
  }

  platform::memory::MemoryPlatform p;
  loggerlink::LoggerLinkLogic link{p.linkChannel, p.controls};
  app::Vantrel keyer{Linked(), {"/vantrel", ""}};
  app::FormLinkWindow window{keyer.form, [] {}, [](int16_t) {}};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  LinkedKeyer keyer;
  auto& block = keyer.p.linkChannel.block;
  // Two blocks' worth: what the logger shows first, then what it changes to.
  for (size_t round = 0; round < 2; ++round) {
    const size_t from = std::min(size, round * block.size());
    const size_t count = std::min(size - from, block.size());
    std::memcpy(block.data(), data + from, count);
    keyer.link.PollLink();
    keyer.p.queue.RunPosted();
  }
  return 0;
}
