#include "platform/linux/termios_serial_port.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

#include "platform/linux/comm_port_path.h"
#include "platform/linux/line_safety.h"

namespace vantrel::platform::linuxos {
namespace {

std::string SystemText(int error) { return std::generic_category().message(error); }

int LineIoctl(int fd, unsigned long request, int bits) {
  int result;
  do {
    result = ::ioctl(fd, request, &bits);
  } while (result != 0 && errno == EINTR);
  return result;
}

bool HungUp(int fd) {
  pollfd state{fd, POLLIN, 0};
  return ::poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLERR)) != 0;
}

void Configure(termios& settings) {
  ::cfmakeraw(&settings);
  settings.c_cflag &= ~(CSIZE | PARENB | CRTSCTS);
  // CLOCAL: nothing ever waits for a carrier that a keying cable does not have.
  settings.c_cflag |= CS8 | CSTOPB | CREAD | CLOCAL | HUPCL;
  settings.c_iflag &= ~(IXON | IXOFF | IXANY);
  settings.c_cc[VMIN] = 0;
  settings.c_cc[VTIME] = 0;
  ::cfsetispeed(&settings, B1200);
  ::cfsetospeed(&settings, B1200);
}

}  // namespace

TermiosSerialPort::TermiosSerialPort(const std::string& configDir)
    : resolve_([configDir](int16_t number) { return CommDevicePath(number, configDir); }) {}

TermiosSerialPort::TermiosSerialPort(PathResolver resolve) : resolve_(std::move(resolve)) {}

TermiosSerialPort::~TermiosSerialPort() { Close(); }

void TermiosSerialPort::SetCommPort(int16_t number) {
  if (PortOpen()) {
    Fail("Port already open");
    return;
  }
  number_ = number;
}

void TermiosSerialPort::SetPortOpen(bool open) {
  if (open == PortOpen()) return;
  if (open) {
    Open();
  } else {
    Close();
  }
}

void TermiosSerialPort::SetDTREnable(bool enable) {
  dtr_ = enable;
  if (PortOpen()) ChangeLines(enable ? TIOCMBIS : TIOCMBIC, TIOCM_DTR);
}

void TermiosSerialPort::SetRTSEnable(bool enable) {
  rts_ = enable;
  if (PortOpen()) ChangeLines(enable ? TIOCMBIS : TIOCMBIC, TIOCM_RTS);
}

int TermiosSerialPort::InBufferCount() {
  int waiting = 0;
  if (fd_ < 0 || ::ioctl(fd_, FIONREAD, &waiting) != 0) return 0;
  return waiting;
}

std::string TermiosSerialPort::Input() {
  std::string bytes;
  char chunk[256];
  while (fd_ >= 0) {
    const ssize_t got = ::read(fd_, chunk, sizeof chunk);
    if (got > 0) {
      bytes.append(chunk, static_cast<size_t>(got));
    } else if (got < 0 && errno == EINTR) {
      continue;
    } else if ((got < 0 && errno == EAGAIN) || (got == 0 && !HungUp(fd_))) {
      // A raw tty that has nothing reads 0 bytes as well.
      break;
    } else {
      // Hung up or EIO: the other end is gone, and a watched descriptor
      // would report it readable for ever.
      Fail(got == 0 ? "Device hung up" : SystemText(errno));
      Close();
    }
  }
  return bytes;
}

void TermiosSerialPort::OnReceive(std::function<void()> handler) {
  onReceive_ = std::move(handler);
  if (PortOpen()) StartWatching();
}

void TermiosSerialPort::StartWatching() {
  if (watch_ && onReceive_) watch_->Watch(fd_, onReceive_);
}

void TermiosSerialPort::Output(const std::string& bytes) {
  constexpr int kRoomWaitMs = 2000;  // 240 bytes at 1200 baud
  size_t sent = 0;
  while (fd_ >= 0 && sent < bytes.size()) {
    const ssize_t put = ::write(fd_, bytes.data() + sent, bytes.size() - sent);
    if (put > 0) {
      sent += static_cast<size_t>(put);
      continue;
    }
    if (put < 0 && errno == EINTR) continue;
    if (put < 0 && errno == EAGAIN) {
      pollfd room{fd_, POLLOUT, 0};
      if (::poll(&room, 1, kRoomWaitMs) > 0) continue;
      Fail("Write timed out");
    } else {
      Fail(SystemText(errno));
    }
    // A device that takes nothing is gone for the keyer: closed, reported once.
    Close();
    return;
  }
}

void TermiosSerialPort::Open() {
  const std::string path = resolve_ ? resolve_(number_) : std::string();
  if (path.empty()) {
    Fail("Invalid port number");
    return;
  }
  // O_NONBLOCK: the open must not wait for a carrier, and a read finds only
  // what is there.
  const int fd = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) {
    Fail(SystemText(errno));
    return;
  }
  // The kernel has just raised DTR and RTS: the radio is keyed until they
  // drop, so that comes before anything else.
  const int off = (dtr_ ? 0 : TIOCM_DTR) | (rts_ ? 0 : TIOCM_RTS);
  hasLines_ = true;
  if (LineIoctl(fd, TIOCMBIC, off) != 0) {
    // A tty without modem lines (a pty) has nothing keyed: it opens, and
    // carries bytes only.
    if (errno != ENOTTY) {
      Fail(SystemText(errno));
      ::close(fd);
      return;
    }
    hasLines_ = false;
  }
  fd_ = fd;
  RegisterLine(fd_, LineKind::Serial);

  termios settings{};
  if (::tcgetattr(fd_, &settings) != 0) {
    Fail(SystemText(errno));
    Close();
    return;
  }
  Configure(settings);
  if (::tcsetattr(fd_, TCSANOW, &settings) != 0) {
    Fail(SystemText(errno));
    Close();
    return;
  }
  // Leaving B0 raises both lines once more.
  if (off != 0) ChangeLines(TIOCMBIC, off);
  const int on = (dtr_ ? TIOCM_DTR : 0) | (rts_ ? TIOCM_RTS : 0);
  if (PortOpen() && on != 0) ChangeLines(TIOCMBIS, on);
  if (PortOpen()) StartWatching();
}

void TermiosSerialPort::Close() {
  if (fd_ < 0) return;
  const int fd = std::exchange(fd_, -1);
  if (watch_) watch_->Unwatch(fd);
  UnregisterLine(fd);
  // HUPCL drops them as well, but only on the last close of the device.
  LineIoctl(fd, TIOCMBIC, TIOCM_DTR | TIOCM_RTS);
  ::close(fd);
}

void TermiosSerialPort::ChangeLines(unsigned long request, int bits) {
  if (TakeLineInterruption(fd_)) {
    Fail(kStoppedReport);
    Close();
    return;
  }
  if (!hasLines_ || LineIoctl(fd_, request, bits) == 0) return;
  // The device is gone or broken (EIO once a USB adapter is pulled): one
  // report, and the closed port keeps quiet from here on.
  Fail(SystemText(errno));
  Close();
}

void TermiosSerialPort::Fail(const std::string& text) { error_ = text; }

}  // namespace vantrel::platform::linuxos
