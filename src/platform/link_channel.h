// The channel to the station logger, under the names of the calls it stands
// for: finding the logger, its message number, synchronous requests, and the
// shared block that holds the contact.
#pragma once

#include <cstdint>
#include <string>

namespace vantrel::platform {

using Handle = intptr_t;  // 0 is none

class LinkChannel {
 public:
  virtual ~LinkChannel() = default;
  virtual Handle FindWindow(const std::string& caption) = 0;
  virtual int32_t RegisterWindowMessage(const std::string& name) = 0;
  // Returns when the logger has handled it; goes nowhere if `window` is 0.
  virtual int32_t SendMessage(Handle window, int32_t message, int32_t wParam, int32_t lParam) = 0;
  virtual Handle OpenFileMapping(const std::string& name) = 0;
  virtual Handle MapViewOfFile(Handle mapping) = 0;
  virtual void UnmapViewOfFile(Handle view) = 0;
  virtual void CloseHandle(Handle handle) = 0;
};

}  // namespace vantrel::platform
