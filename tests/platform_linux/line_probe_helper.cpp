// Drives the line ports under the keyprobe shim, which stands in for
// /dev/ttyUSB0 and /dev/parport0 and logs every line change. Marks in the
// same log let the test read the line state between the steps.
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/linux/line_safety.h"
#include "platform/linux/ppdev_parallel_port.h"
#include "platform/linux/termios_serial_port.h"

using vantrel::platform::linuxos::InstallLineSafety;
using vantrel::platform::linuxos::PpdevParallelPort;
using vantrel::platform::linuxos::TermiosSerialPort;

namespace {

constexpr int16_t kControl = 0x37A;

void Mark(const char* name) {
  const int fd = ::open(std::getenv("KEYPROBE_LOG"), O_WRONLY | O_APPEND | O_CLOEXEC);
  const std::string line = std::string("# mark ") + name + "\n";
  if (fd < 0 || ::write(fd, line.data(), line.size()) < 0) std::abort();
  ::close(fd);
}

// TERM, SEGV or a signal's number.
int Signal(const char* name) {
  if (std::strcmp(name, "SEGV") == 0) return SIGSEGV;
  return std::strcmp(name, "TERM") == 0 ? SIGTERM : std::atoi(name);
}

int Fail(const std::string& what) {
  std::fprintf(stderr, "%s\n", what.c_str());
  return 2;
}

int Serial(const std::string& step, const char* argument) {
  if (step != "unprotected") InstallLineSafety();
  TermiosSerialPort port(std::string{});
  port.SetCommPort(1);
  port.SetDTREnable(step == "dtr-at-open");
  port.SetRTSEnable(false);
  port.SetPortOpen(true);
  if (!port.PortOpen()) return Fail(port.Error());
  Mark("opened");
  if (step == "lines") {
    port.SetDTREnable(true);
    Mark("dtr-on");
    port.SetDTREnable(false);
    port.SetRTSEnable(true);
    Mark("rts-on");
    port.SetRTSEnable(false);
    Mark("both-off");
  }
  port.SetDTREnable(true);
  port.SetRTSEnable(true);
  Mark("keyed");
  if (step == "signal" || step == "unprotected") ::raise(Signal(argument));
  if (step == "exit") std::exit(0);
  if (step == "stop") {
    ::raise(SIGTSTP);
    Mark("continued");
    // What was keyed before the stop is gone: the next change says so.
    port.SetDTREnable(false);
    if (port.Error() != vantrel::platform::linuxos::kStoppedReport || port.PortOpen()) {
      return Fail("after the stop: " + port.Error());
    }
    return 0;
  }
  if (step == "fork") {
    // The child inherits the registration but must leave the lines alone.
    const pid_t child = ::fork();
    if (child == 0) std::exit(0);
    ::waitpid(child, nullptr, 0);
    Mark("child-gone");
  }
  port.SetPortOpen(false);
  return port.Error().empty() ? 0 : Fail(port.Error());
}

int Parallel(const std::string& step, const char* argument) {
  InstallLineSafety();
  PpdevParallelPort port("/nonexistent", "/dev/parport0");
  if (port.Inp32(kControl) != 0x0C) return Fail("unexpected control " + port.Error());
  for (const int16_t value : {11, 15, 7, 3, 7}) port.Out32(kControl, value);
  Mark("keyed");
  if (step == "signal") ::raise(Signal(argument));
  if (step == "stop") {
    ::raise(SIGTSTP);
    Mark("continued");
    port.Out32(kControl, 15);
    if (port.Error() != vantrel::platform::linuxos::kStoppedReport) {
      return Fail("after the stop: " + port.Error());
    }
    return 0;
  }
  port.Out32(kControl, 11);
  port.Release();
  return port.Error().empty() ? 0 : Fail(port.Error());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) return Fail("usage: line_probe_helper serial|parallel STEP [SIGNAL]");
  const char* argument = argc > 3 ? argv[3] : "TERM";
  return std::strcmp(argv[1], "serial") == 0 ? Serial(argv[2], argument)
                                             : Parallel(argv[2], argument);
}
