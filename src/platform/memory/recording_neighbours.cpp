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

bool RecordingMacroLoop::FireHotKey(int16_t keyCode) {
  if (hotKeys.find(static_cast<char>(keyCode)) == std::string::npos) return false;
  trace_.Emit("macro hotkey " + std::to_string(keyCode));
  return true;
}

void RecordingMacroLoop::DispatchFunctionKey(int16_t keyCode, int16_t shift) {
  trace_.Emit("macro key " + std::to_string(keyCode) + " " + std::to_string(shift));
}

void RecordingMacroLoop::QueueMacro(const std::string& macro) {
  trace_.Emit("macro queue " + Trace::Quote(macro));
  const int end = static_cast<int>(box_.Text().size());
  box_.SetSelStart(end);
  box_.SetSelText(end > 0 ? " " + macro : macro);
  box_.SetSelStart(static_cast<int>(box_.Text().size()));
}

}  // namespace vantrel::platform::memory
