#include "platform/linux/ppdev_parallel_port.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/linux/line_safety.h"

namespace vantrel::platform::linuxos {
namespace {

constexpr unsigned kControlOffset = 2;
constexpr unsigned char kLineBits = 0x0F;
// What a read of an I/O address with nothing behind it gives on a PC.
constexpr int16_t kFloatingBus = 0xFF;

std::string SystemText(int error) { return std::generic_category().message(error); }

std::string HexAddress(unsigned address) {
  char text[16];
  std::snprintf(text, sizeof text, "&H%X", address);
  return text;
}

// The first number of a base-addr file ("888\t1912\n"), decimal; -1 when
// there is none.
long FirstNumber(const std::string& path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0) return -1;
  char buffer[64];
  const ssize_t got = ::read(fd, buffer, sizeof buffer - 1);
  ::close(fd);
  if (got <= 0) return -1;
  buffer[got] = '\0';
  char* end = nullptr;
  const long value = std::strtol(buffer, &end, 10);
  return end == buffer ? -1 : value;
}

int PortIoctl(int fd, unsigned long request, void* argument) {
  int result;
  do {
    result = ::ioctl(fd, request, argument);
  } while (result != 0 && errno == EINTR);
  return result;
}

}  // namespace

std::string FindParportDevice(const std::string& procRoot, unsigned base) {
  DIR* dir = ::opendir(procRoot.c_str());
  if (dir == nullptr) return {};
  std::vector<std::string> names;
  while (const dirent* entry = ::readdir(dir)) {
    const std::string_view name = entry->d_name;
    if (name.size() > 7 && name.substr(0, 7) == "parport" &&
        name.find_first_not_of("0123456789", 7) == std::string_view::npos) {
      names.emplace_back(name);
    }
  }
  ::closedir(dir);
  // By number, so that the lowest port wins should two claim one address.
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    return a.size() != b.size() ? a.size() < b.size() : a < b;
  });
  for (const auto& name : names) {
    if (FirstNumber(procRoot + "/" + name + "/base-addr") == static_cast<long>(base)) {
      return "/dev/" + name;
    }
  }
  return {};
}

PpdevParallelPort::PpdevParallelPort(std::string procRoot, std::string device)
    : procRoot_(std::move(procRoot)), fixedDevice_(std::move(device)) {}

PpdevParallelPort::~PpdevParallelPort() { Drop(); }

int16_t PpdevParallelPort::Inp32(int16_t port) {
  if (!Take(static_cast<uint16_t>(port))) return kFloatingBus;
  unsigned char control = 0;
  if (PortIoctl(fd_, PPRCONTROL, &control) != 0) {
    Fail(devicePath_ + ": " + SystemText(errno));
    return kFloatingBus;
  }
  return static_cast<int16_t>(control & kLineBits);
}

void PpdevParallelPort::Out32(int16_t port, int16_t value) {
  if (!Take(static_cast<uint16_t>(port))) return;
  if (TakeLineInterruption(fd_)) {
    Fail(kStoppedReport);
    return;
  }
  unsigned char control = static_cast<unsigned char>(value) & kLineBits;
  if (PortIoctl(fd_, PPWCONTROL, &control) != 0) Fail(devicePath_ + ": " + SystemText(errno));
}

void PpdevParallelPort::Release() {
  Drop();
  failed_ = false;
}

bool PpdevParallelPort::Take(unsigned address) {
  if (failed_) return false;
  if (fd_ >= 0) {
    if (address == address_ || !fixedDevice_.empty()) return true;
    // Another port is asked for: the settings have changed under us.
    Drop();
  }
  address_ = address;
  if (fixedDevice_.empty()) {
    const unsigned base = address >= kControlOffset ? address - kControlOffset : 0;
    devicePath_ = base != 0 ? FindParportDevice(procRoot_, base) : std::string();
    if (devicePath_.empty()) {
      Fail("No parallel port at address " + HexAddress(base));
      return false;
    }
  } else {
    devicePath_ = fixedDevice_;
  }
  const int fd = ::open(devicePath_.c_str(), O_RDWR | O_CLOEXEC);
  if (fd < 0) {
    Fail(devicePath_ + ": " + SystemText(errno));
    return false;
  }
  // Blocks only while another driver (lp, mid-print) holds the port.
  if (PortIoctl(fd, PPCLAIM, nullptr) != 0) {
    const int error = errno;
    ::close(fd);
    Fail(devicePath_ + ": " + SystemText(error));
    return false;
  }
  fd_ = fd;
  RegisterLine(fd_, LineKind::Parallel);
  return true;
}

void PpdevParallelPort::Drop() {
  if (fd_ < 0) return;
  const int fd = std::exchange(fd_, -1);
  UnregisterLine(fd);
  PortIoctl(fd, PPRELEASE, nullptr);
  ::close(fd);
}

// Any failure gives the device back and keeps the port quiet until Release,
// so a lost port is reported once, not on every element.
void PpdevParallelPort::Fail(const std::string& text) {
  error_ = text;
  failed_ = true;
  Drop();
}

}  // namespace vantrel::platform::linuxos
