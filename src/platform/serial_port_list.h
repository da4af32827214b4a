// The serial devices the keyer could key, under the names its settings use.
#pragma once

#include <string>
#include <vector>

namespace vantrel::platform {

struct SerialPortChoice {
  // "Comm1" and so on; empty for a device that no name reaches yet.
  std::string name;
  std::string device;
};

class SerialPortList {
 public:
  virtual ~SerialPortList() = default;
  // Named ports first, by number; then the devices without a name.
  virtual std::vector<SerialPortChoice> SerialPorts() const = 0;
  // Where a link comN is made to give a device the name CommN.
  virtual std::string LinkFolder() const = 0;
};

}  // namespace vantrel::platform
