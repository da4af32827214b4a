// The logger link on Linux: the logger's POSIX shared memory for the block,
// its datagram socket in $XDG_RUNTIME_DIR for the messages.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>

#include "platform/link_channel.h"

namespace vantrel::platform::linuxos {

class LinuxLinkChannel final : public LinkChannel {
 public:
  // Why the logger's mapping or socket was refused, for the log.
  using Log = std::function<void(const std::string&)>;

  // `runtimeDir` holds the logger's socket; `mappingName` is its shared
  // memory; both must belong to `owner`. An empty folder finds no logger.
  LinuxLinkChannel(std::string runtimeDir, std::string mappingName, Log log, uid_t owner);
  // The folder and the name from the environment; refusals to standard error.
  LinuxLinkChannel();
  ~LinuxLinkChannel() override;
  LinuxLinkChannel(const LinuxLinkChannel&) = delete;
  LinuxLinkChannel& operator=(const LinuxLinkChannel&) = delete;

  // Connects to the logger's socket if it is there, this user's, and others
  // may not write to it.
  Handle FindWindow(const std::string& caption) override;
  int32_t RegisterWindowMessage(const std::string& name) override;
  // One datagram, never waiting: a slow, full or gone logger loses it.
  void PostMessage(Handle window, int32_t message, int32_t wParam, int32_t lParam) override;
  // Waits for the answer at most kAnswerTimeoutMs. Unanswered, it leaves an
  // error once; later sends do not wait until an answer comes again.
  int32_t SendMessage(Handle window, int32_t message, int32_t wParam, int32_t lParam) override;
  void SetRestRequests(Handle window, int32_t message, int32_t keyUp, int32_t pttOff) override;
  // Opens the shared memory only if it is this user's, others may not write
  // to it, and it is large enough.
  Handle OpenFileMapping(const std::string& name) override;
  Handle MapViewOfFile(Handle mapping) override;
  void UnmapViewOfFile(Handle view) override;
  void CloseHandle(Handle handle) override;
  void ReadView(Handle view, int32_t offset, char* bytes, int32_t count) override;
  void WriteView(Handle view, int32_t offset, const char* bytes, int32_t count) override;

  std::string Error() const override { return error_; }
  void ClearError() override { error_.clear(); }

 private:
  // True when [offset, offset + count) of `view` can be touched now.
  bool ViewHolds(Handle view, int32_t offset, int32_t count);
  // Takes every answer waiting; true if any came.
  bool DrainAnswers(uint32_t sequence, bool& matched, int32_t& result);

  std::string runtimeDir_;
  std::string mappingName_;
  Log log_;
  uid_t owner_;
  int socket_ = -1;
  int mapping_ = -1;
  void* view_ = nullptr;
  size_t viewSize_ = 0;
  uint32_t sequence_ = 0;
  bool silent_ = false;
  std::string error_;
};

}  // namespace vantrel::platform::linuxos
