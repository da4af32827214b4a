#include "platform/linux/linux_link_channel.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "platform/linux/line_safety.h"
#include "platform/linux/link_protocol.h"

namespace vantrel::platform::linuxos {
namespace {

constexpr Handle kWindowHandle = 1;
constexpr Handle kMappingHandle = 2;
constexpr int32_t kMessageNumber = 0xC0DE;

std::string EnvOr(const char* name, const char* fallback) {
  const char* value = std::getenv(name);
  return value && *value ? value : fallback;
}

constexpr mode_t kOthersMayWrite = S_IWGRP | S_IWOTH;

std::string ModeText(mode_t mode) {
  char text[8];
  std::snprintf(text, sizeof text, "%04o", static_cast<unsigned>(mode & 07777));
  return text;
}

int64_t NowMs() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<int64_t>(now.tv_sec) * 1000 + now.tv_nsec / 1'000'000;
}

}  // namespace

LinuxLinkChannel::LinuxLinkChannel(std::string runtimeDir, std::string mappingName, Log log,
                                   uid_t owner)
    : runtimeDir_(std::move(runtimeDir)),
      mappingName_(std::move(mappingName)),
      log_(std::move(log)),
      owner_(owner) {}

LinuxLinkChannel::LinuxLinkChannel()
    : LinuxLinkChannel(EnvOr("XDG_RUNTIME_DIR", ""), EnvOr(link::kMappingNameVariable, link::kMappingName),
                       [](const std::string& reason) { std::fprintf(stderr, "vantrel: %s\n", reason.c_str()); },
                       ::geteuid()) {}

LinuxLinkChannel::~LinuxLinkChannel() {
  if (socket_ >= 0) ClearLoggerRest(socket_);
  if (view_) ::munmap(view_, viewSize_);
  if (mapping_ >= 0) ::close(mapping_);
  if (socket_ >= 0) ::close(socket_);
}

Handle LinuxLinkChannel::FindWindow(const std::string& /*caption*/) {
  if (socket_ >= 0) return kWindowHandle;
  if (runtimeDir_.empty()) {
    log_("no logger: XDG_RUNTIME_DIR is not set");
    return 0;
  }
  const std::string path = runtimeDir_ + "/" + link::kSocketName;
  struct stat info {};
  if (::stat(path.c_str(), &info) != 0) return 0;  // no logger running: no reason to log
  if (!S_ISSOCK(info.st_mode) || info.st_uid != owner_) {
    log_("refused " + path + ": not a socket of this user");
    return 0;
  }
  if ((info.st_mode & kOthersMayWrite) != 0) {
    log_("refused " + path + ": others may write to it (mode " + ModeText(info.st_mode) + ")");
    return 0;
  }
  sockaddr_un address{};
  if (path.size() >= sizeof address.sun_path) {
    log_("refused " + path + ": the path is too long for a socket");
    return 0;
  }
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  const int fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (fd < 0) return 0;
  // An address of our own, so that the logger can answer a send.
  const sa_family_t family = AF_UNIX;
  sockaddr_un autobind{};
  autobind.sun_family = family;
  if (::bind(fd, reinterpret_cast<sockaddr*>(&autobind), sizeof family) != 0 ||
      ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
    log_("no logger at " + path + ": " + std::strerror(errno));
    ::close(fd);
    return 0;
  }
  socket_ = fd;
  return kWindowHandle;
}

int32_t LinuxLinkChannel::RegisterWindowMessage(const std::string& /*name*/) { return kMessageNumber; }

void LinuxLinkChannel::PostMessage(Handle window, int32_t /*message*/, int32_t wParam, int32_t lParam) {
  if (window != kWindowHandle || socket_ < 0) return;
  unsigned char datagram[link::kPostSize];
  link::PutInt32(datagram, wParam);
  link::PutInt32(datagram + 4, lParam);
  // A full queue or a gone logger loses the post: the keyer never waits.
  (void)::send(socket_, datagram, sizeof datagram, MSG_DONTWAIT | MSG_NOSIGNAL);
}

bool LinuxLinkChannel::DrainAnswers(uint32_t sequence, bool& matched, int32_t& result) {
  bool any = false;
  unsigned char answer[link::kAnswerSize];
  for (;;) {
    const ssize_t got = ::recv(socket_, answer, sizeof answer, MSG_DONTWAIT);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return any;
    if (got != static_cast<ssize_t>(sizeof answer)) continue;
    any = true;
    if (static_cast<uint32_t>(link::GetInt32(answer)) == sequence) {
      matched = true;
      result = link::GetInt32(answer + 4);
    }
  }
}

void LinuxLinkChannel::SetRestRequests(Handle window, int32_t /*message*/, int32_t keyUp,
                                       int32_t pttOff) {
  if (socket_ < 0) return;
  if (window == kWindowHandle) {
    SetLoggerRest(socket_, keyUp, pttOff);
  } else {
    ClearLoggerRest(socket_);
  }
}

int32_t LinuxLinkChannel::SendMessage(Handle window, int32_t /*message*/, int32_t wParam, int32_t lParam) {
  if (window != kWindowHandle || socket_ < 0) return 0;
  if (TakeLineInterruption(socket_)) {
    error_ = kStoppedReport;
    return 0;
  }
  bool matched = false;
  int32_t result = 0;
  // Answers that came too late mean the logger lives again.
  if (DrainAnswers(0, matched, result)) silent_ = false;

  const uint32_t sequence = ++sequence_ == 0 ? ++sequence_ : sequence_;
  unsigned char datagram[link::kSendSize];
  link::PutInt32(datagram, wParam);
  link::PutInt32(datagram + 4, lParam);
  link::PutInt32(datagram + 8, static_cast<int32_t>(sequence));
  const bool sent = ::send(socket_, datagram, sizeof datagram, MSG_DONTWAIT | MSG_NOSIGNAL) ==
                    static_cast<ssize_t>(sizeof datagram);
  if (silent_) return 0;

  const int64_t deadline = NowMs() + link::kAnswerTimeoutMs;
  while (sent) {
    const int64_t left = deadline - NowMs();
    if (left <= 0) break;
    pollfd waiting{socket_, POLLIN, 0};
    const int ready = ::poll(&waiting, 1, static_cast<int>(left));
    if (ready < 0 && errno != EINTR) break;
    if (ready > 0) {
      DrainAnswers(sequence, matched, result);
      if (matched) return result;
    }
  }
  silent_ = true;
  error_ = sent ? "the logger did not answer within " + std::to_string(link::kAnswerTimeoutMs) + " ms"
                : std::string("the logger is gone");
  return 0;
}

Handle LinuxLinkChannel::OpenFileMapping(const std::string& /*name*/) {
  if (mapping_ >= 0) return kMappingHandle;
  const int fd = ::shm_open(mappingName_.c_str(), O_RDWR | O_CLOEXEC, 0);
  if (fd < 0) {
    if (errno != ENOENT) log_("refused shared memory " + mappingName_ + ": " + std::strerror(errno));
    return 0;
  }
  struct stat info {};
  std::string refusal;
  if (::fstat(fd, &info) != 0) {
    refusal = std::strerror(errno);
  } else if (info.st_uid != owner_) {
    refusal = "it belongs to user " + std::to_string(info.st_uid) + ", not to this user";
  } else if ((info.st_mode & kOthersMayWrite) != 0) {
    // Anyone could then type the call, fire macros or close the keyer.
    refusal = "others may write to it (mode " + ModeText(info.st_mode) + ")";
  } else if (info.st_size < link::kMinimumMappingSize) {
    refusal = "it holds " + std::to_string(info.st_size) + " bytes, fewer than " +
              std::to_string(link::kMinimumMappingSize);
  }
  if (!refusal.empty()) {
    log_("refused shared memory " + mappingName_ + ": " + refusal);
    ::close(fd);
    return 0;
  }
  mapping_ = fd;
  viewSize_ = static_cast<size_t>(info.st_size);
  return kMappingHandle;
}

Handle LinuxLinkChannel::MapViewOfFile(Handle mapping) {
  if (mapping != kMappingHandle || mapping_ < 0) return 0;
  if (view_) return reinterpret_cast<Handle>(view_);
  void* view = ::mmap(nullptr, viewSize_, PROT_READ | PROT_WRITE, MAP_SHARED, mapping_, 0);
  if (view == MAP_FAILED) {
    log_("cannot map shared memory " + mappingName_ + ": " + std::strerror(errno));
    return 0;
  }
  view_ = view;
  return reinterpret_cast<Handle>(view_);
}

void LinuxLinkChannel::UnmapViewOfFile(Handle view) {
  if (!view_ || view != reinterpret_cast<Handle>(view_)) return;
  ::munmap(view_, viewSize_);
  view_ = nullptr;
}

void LinuxLinkChannel::CloseHandle(Handle handle) {
  if (handle != kMappingHandle || mapping_ < 0) return;
  ::close(mapping_);
  mapping_ = -1;
}

// A page of the view beyond the object's end faults (SIGBUS), and the
// logger may shrink the object at any time: the size is looked at before
// each copy, and memory that shrank is let go as a vanished logger's.
bool LinuxLinkChannel::ViewHolds(Handle view, int32_t offset, int32_t count) {
  if (!view_ || view != reinterpret_cast<Handle>(view_) || offset < 0 || count < 0) return false;
  const size_t end = static_cast<size_t>(offset) + static_cast<size_t>(count);
  if (end > viewSize_) return false;
  struct stat info {};
  if (::fstat(mapping_, &info) == 0 && static_cast<size_t>(info.st_size) >= end) return true;
  log_("let go of shared memory " + mappingName_ + ": it shrank to " +
       std::to_string(info.st_size) + " bytes");
  ::munmap(view_, viewSize_);
  view_ = nullptr;
  return false;
}

void LinuxLinkChannel::ReadView(Handle view, int32_t offset, char* bytes, int32_t count) {
  if (!ViewHolds(view, offset, count)) return;
  std::memcpy(bytes, static_cast<const char*>(view_) + offset, static_cast<size_t>(count));
}

void LinuxLinkChannel::WriteView(Handle view, int32_t offset, const char* bytes, int32_t count) {
  if (!ViewHolds(view, offset, count)) return;
  std::memcpy(static_cast<char*>(view_) + offset, bytes, static_cast<size_t>(count));
}

}  // namespace vantrel::platform::linuxos
