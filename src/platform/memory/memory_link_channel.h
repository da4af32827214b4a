// The logger's side of the link in memory: a logger that runs or not, with
// its mapping there or not, and every synchronous request in the trace.
#pragma once

#include <string>

#include "platform/link_channel.h"
#include "platform/memory/trace.h"

namespace vantrel::platform::memory {

class MemoryLinkChannel : public LinkChannel {
 public:
  explicit MemoryLinkChannel(Trace& trace) : trace_(trace) {}

  Handle FindWindow(const std::string& caption) override {
    return loggerRunning && caption == "Hallowick" ? kLoggerWindow : 0;
  }
  int32_t RegisterWindowMessage(const std::string& /*name*/) override { return kLinkMessage; }
  int32_t SendMessage(Handle window, int32_t /*message*/, int32_t wParam,
                      int32_t lParam) override {
    trace_.Emit("send " + std::to_string(wParam) + " " + std::to_string(lParam));
    return window == 0 ? 0 : 1;
  }
  Handle OpenFileMapping(const std::string& name) override {
    return loggerRunning && name == "CW" ? kMapping : 0;
  }
  Handle MapViewOfFile(Handle mapping) override {
    return mapping == kMapping && viewMaps ? kView : 0;
  }
  void UnmapViewOfFile(Handle view) override { trace_.Emit("unmap " + std::to_string(view)); }
  void CloseHandle(Handle handle) override { trace_.Emit("close " + std::to_string(handle)); }

  static constexpr Handle kLoggerWindow = 0x1001;
  static constexpr int32_t kLinkMessage = 0xC100;
  static constexpr Handle kMapping = 0x2002;
  static constexpr Handle kView = 0x3003;

  bool loggerRunning = false;
  bool viewMaps = true;

 private:
  Trace& trace_;
};

}  // namespace vantrel::platform::memory
