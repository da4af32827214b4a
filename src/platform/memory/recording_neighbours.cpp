#include "platform/memory/recording_neighbours.h"

#include <cstdio>

namespace vantrel::platform::memory {

void RecordingWinKey::WriteWinKey(const std::string& bytes) {
  written += bytes;
  std::string event = "winkey";
  for (const char byte : bytes) {
    char hex[4];
    std::snprintf(hex, sizeof hex, " %02X", static_cast<unsigned char>(byte));
    event += hex;
  }
  trace_.Emit(event);
}

void RecordingWinKey::CloseWinKeyHost() {
  if (!open) return;
  WriteWinKey(std::string{0x00, 0x03});
  open = false;
}

}  // namespace vantrel::platform::memory
