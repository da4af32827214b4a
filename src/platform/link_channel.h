// The channel to the station logger, under the names of the calls it stands
// for: finding the logger, its message number, posted and synchronous
// messages, and the shared block that holds the contact.
#pragma once

#include <cstdint>
#include <string>

#include "platform/ports.h"

namespace vantrel::platform {

using Handle = intptr_t;  // 0 is none

// A synchronous request that the logger leaves unanswered leaves a pending
// error, as a failing line change of a port does.
class LinkChannel : public PortDevice {
 public:
  virtual Handle FindWindow(const std::string& caption) = 0;
  virtual int32_t RegisterWindowMessage(const std::string& name) = 0;
  // Returns at once, whatever the logger does; goes nowhere if `window` is 0.
  virtual void PostMessage(Handle window, int32_t message, int32_t wParam, int32_t lParam) = 0;
  // Returns when the logger has handled it; goes nowhere if `window` is 0.
  virtual int32_t SendMessage(Handle window, int32_t message, int32_t wParam, int32_t lParam) = 0;
  // The two requests (key up, PTT off) that put the logger's lines at rest
  // on the shared serial route: the channel sends them on every way out of
  // the process as well, a fatal signal's included. A `window` of 0 clears
  // them. A stop in between leaves an error at the next send, as a port's
  // next line change does.
  virtual void SetRestRequests(Handle window, int32_t message, int32_t keyUp, int32_t pttOff) = 0;
  virtual Handle OpenFileMapping(const std::string& name) = 0;
  virtual Handle MapViewOfFile(Handle mapping) = 0;
  virtual void UnmapViewOfFile(Handle view) = 0;
  virtual void CloseHandle(Handle handle) = 0;
  // Copies between the view and the keyer's memory; `offset` is from the
  // start of the view, and the caller keeps within its 1216 bytes.
  virtual void ReadView(Handle view, int32_t offset, char* bytes, int32_t count) = 0;
  virtual void WriteView(Handle view, int32_t offset, const char* bytes, int32_t count) = 0;
};

}  // namespace vantrel::platform
