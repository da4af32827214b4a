#include "platform/memory/recording_neighbours.h"

namespace vantrel::platform::memory {

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
