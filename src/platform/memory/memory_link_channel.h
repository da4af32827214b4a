// The logger's side of the link in memory: a logger that runs or not, with
// its mapping there or not, its shared block, and every message and slot
// write in the trace.
#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

#include "platform/link_channel.h"
#include "platform/memory/trace.h"

namespace vantrel::platform::memory {

class MemoryLinkChannel : public LinkChannel {
 public:
  static constexpr int32_t kSlotSpacing = 128;
  static constexpr int32_t kSlotText = 64;
  static constexpr int32_t kControlSlot = 5;

  explicit MemoryLinkChannel(Trace& trace) : trace_(trace) {}

  Handle FindWindow(const std::string& caption) override {
    return loggerRunning && caption == "Hallowick" ? kLoggerWindow : 0;
  }
  int32_t RegisterWindowMessage(const std::string& /*name*/) override { return kLinkMessage; }
  // Posts go out to any handle, 0 included, as the system's own do.
  void PostMessage(Handle /*window*/, int32_t /*message*/, int32_t wParam,
                   int32_t lParam) override {
    trace_.Emit("post " + std::to_string(wParam) + " " + std::to_string(lParam));
  }
  int32_t SendMessage(Handle window, int32_t /*message*/, int32_t wParam,
                      int32_t lParam) override {
    trace_.Emit("send " + std::to_string(wParam) + " " + std::to_string(lParam));
    if (window != 0 && !answering && !silent_) {
      error_ = "the logger did not answer";
      silent_ = true;
    }
    if (answering) silent_ = false;
    return window == 0 || !answering ? 0 : 1;
  }
  void SetRestRequests(Handle window, int32_t /*message*/, int32_t keyUp,
                       int32_t pttOff) override {
    restRequests = window == 0 ? std::pair<int32_t, int32_t>{} : std::pair{keyUp, pttOff};
  }
  Handle OpenFileMapping(const std::string& name) override {
    return loggerRunning && name == "CW" ? kMapping : 0;
  }
  Handle MapViewOfFile(Handle mapping) override {
    return mapping == kMapping && viewMaps ? kView : 0;
  }
  void UnmapViewOfFile(Handle view) override { trace_.Emit("unmap " + std::to_string(view)); }
  void CloseHandle(Handle handle) override { trace_.Emit("close " + std::to_string(handle)); }

  void ReadView(Handle view, int32_t offset, char* bytes, int32_t count) override {
    if (view == kView) std::memcpy(bytes, block.data() + offset, static_cast<size_t>(count));
  }
  // A write of a slot shows with its text up to the NUL; the poll's clear
  // of the control slot shows only when it clears a command.
  void WriteView(Handle view, int32_t offset, const char* bytes, int32_t count) override {
    if (view != kView) return;
    char* at = block.data() + offset;
    const bool unchanged = std::memcmp(at, bytes, static_cast<size_t>(count)) == 0;
    std::memcpy(at, bytes, static_cast<size_t>(count));
    const int32_t slot = offset / kSlotSpacing;
    if (slot == kControlSlot && unchanged) return;
    const std::string text(bytes, static_cast<size_t>(count));
    trace_.Emit("slot " + std::to_string(slot) + " " + Trace::Quote(text.substr(0, text.find('\0'))));
  }

  std::string Error() const override { return error_; }
  void ClearError() override { error_.clear(); }

  // The logger writes a slot: the text, a NUL, and blanks to its 64 bytes.
  void LoggerWrites(int32_t slot, const std::string& text) {
    char* at = block.data() + slot * kSlotSpacing;
    std::memset(at, ' ', kSlotText);
    std::memcpy(at, text.data(), std::min<size_t>(text.size(), kSlotText));
    if (text.size() < kSlotText) at[text.size()] = '\0';
  }
  // The text of a slot up to its NUL, as a logger reads it.
  std::string SlotText(int32_t slot) const {
    const char* at = block.data() + slot * kSlotSpacing;
    const void* nul = std::memchr(at, '\0', kSlotText);
    if (!nul) return "";
    return std::string(at, static_cast<const char*>(nul));
  }

  static constexpr Handle kLoggerWindow = 0x1001;
  static constexpr int32_t kLinkMessage = 0xC100;
  static constexpr Handle kMapping = 0x2002;
  static constexpr Handle kView = 0x3003;

  bool loggerRunning = false;
  bool viewMaps = true;
  // False: sends get no answer; the first one leaves an error, later ones
  // none until the logger answers again.
  bool answering = true;
  // What SetRestRequests left: key up and PTT off, or zeros.
  std::pair<int32_t, int32_t> restRequests{};
  // The logger's mapping: ten slots of 128 bytes, the last one cut to 64.
  std::array<char, 1216> block{};

 private:
  Trace& trace_;
  std::string error_;
  bool silent_ = false;
};

}  // namespace vantrel::platform::memory
