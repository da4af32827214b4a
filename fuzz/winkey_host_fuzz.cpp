// A chip, or whatever sits on its port, may send any bytes: the host must
// take each in turn and leave the keyer whole, during a run and outside one.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "app/vantrel.h"
#include "platform/memory/memory_platform.h"
#include "settings/settings_store.h"

namespace {

using namespace vantrel;

// Answers host open with the revision it is given, and nothing else unasked.
struct Chip : platform::memory::SerialDevice {
  void Take(const std::string& bytes) override {
    if (bytes == std::string("\x00\x02", 2)) toSend += revision;
  }
  std::string Sent() override { return std::exchange(toSend, {}); }
  std::string revision;
  std::string toSend;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  platform::memory::MemoryPlatform p;
  Chip chip;
  chip.revision = std::string(1, static_cast<char>(data[0]));
  p.cwControl.device = &chip;
  app::Vantrel keyer{p.platform(), {"/vantrel", ""}};
  keyer.store.LocateSettingsFile("/vantrel", "");
  keyer.store.WriteSetting(settings::kMainSection, "Keyer to Use", data[1] & 1 ? "WinKey2" : "WinKey");
  keyer.store.WriteSetting(settings::kKeyerSection, "WinKey Port", "3");
  keyer.form.Form_Load();

  // Half the bytes come while a text is being sent, the rest after.
  p.CWTextBox.SetSelStart(0);
  p.CWTextBox.SetSelText("CQ TEST");
  const std::string bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
  for (size_t at = 0; at < bytes.size(); at += 7) {
    p.cwControl.Deliver(bytes.substr(at, 7));
    p.queue.RunPosted();
  }
  return 0;
}
