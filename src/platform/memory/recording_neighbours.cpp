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

void RecordingLoggerLink::LoggerWrites(int16_t slot, const std::string& text) {
  std::string& kept = linkSlots.at(static_cast<size_t>(slot));
  kept = text.substr(0, kSlotSize);
  kept.resize(kSlotSize, '\0');
}

void RecordingLoggerLink::WriteLinkSlot(int16_t slot, const std::string& text) {
  LoggerWrites(slot, text);
  trace_.Emit("slot " + std::to_string(slot) + " " + Trace::Quote(text));
}

// As the link reads them at each poll: up to the first NUL.
std::string RecordingLoggerLink::MyCall() const { return UpToNul(kMyCallSlot); }
std::string RecordingLoggerLink::Band() const { return UpToNul(kBandSlot); }

std::string RecordingLoggerLink::UpToNul(size_t slot) const {
  const std::string& text = linkSlots.at(slot);
  return text.substr(0, text.find('\0'));
}

}  // namespace vantrel::platform::memory
