// The serial devices of this machine under the keyer's port names. CommN is
// the link comN in the configuration folder, or else /dev/ttyUSB(N-1); the
// keyer keys Comm1 to Comm8. A device no name reaches (an ACM modem, a
// built-in UART, a ninth adapter) is listed without a name: a link comN
// gives it one.
#pragma once

#include <string>
#include <vector>

#include "platform/serial_port_list.h"

namespace vantrel::platform::linuxos {

class LinuxSerialPortList : public SerialPortList {
 public:
  // The folders are parameters so that a test can stand in for /dev and /sys.
  explicit LinuxSerialPortList(std::string configDir, std::string devDir = "/dev",
                               std::string ttyClassDir = "/sys/class/tty")
      : configDir_(std::move(configDir)), devDir_(std::move(devDir)), ttyClassDir_(std::move(ttyClassDir)) {}

  std::vector<SerialPortChoice> SerialPorts() const override;
  std::string LinkFolder() const override { return configDir_; }

  static constexpr int kNamedPorts = 8;

 private:
  std::string configDir_;
  std::string devDir_;
  std::string ttyClassDir_;
};

}  // namespace vantrel::platform::linuxos
