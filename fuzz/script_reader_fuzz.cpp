// The runner's scripts come from users and other programs: any text is either
// a list of events in time order or one ScriptError, never anything worse.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "script.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  try {
    const auto events = vantrel::sim::ParseScript(in);
    for (size_t i = 1; i < events.size(); ++i) {
      if (events[i].atNs < events[i - 1].atNs) std::abort();
    }
  } catch (const vantrel::sim::ScriptError&) {
  }
  return 0;
}
