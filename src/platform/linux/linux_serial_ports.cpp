#include "platform/linux/linux_serial_ports.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>

namespace vantrel::platform::linuxos {
namespace {

namespace fs = std::filesystem;

// The device a path ends at, or empty when nothing is there.
std::string Resolved(const fs::path& path) {
  std::error_code error;
  const fs::path real = fs::canonical(path, error);
  return error ? std::string() : real.string();
}

// Most machines have ttyS0 to ttyS31 whether a UART stands behind them or not.
bool RealUart(const std::string& ttyClassDir, const std::string& name) {
  std::ifstream type(ttyClassDir + "/" + name + "/type");
  int kind = 0;
  return type >> kind && kind != 0;
}

bool SerialName(const std::string& name) {
  for (const char* prefix : {"ttyUSB", "ttyACM", "ttyS"}) {
    const std::string head = prefix;
    if (name.size() > head.size() && name.compare(0, head.size(), head) == 0 &&
        std::all_of(name.begin() + static_cast<long>(head.size()), name.end(), ::isdigit)) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::vector<SerialPortChoice> LinuxSerialPortList::SerialPorts() const {
  std::vector<SerialPortChoice> ports;
  std::set<std::string> named;
  for (int n = 1; n <= kNamedPorts; ++n) {
    const fs::path link = fs::path(configDir_) / ("com" + std::to_string(n));
    std::error_code error;
    // A link decides, even one that leads nowhere now.
    const bool linked = !configDir_.empty() && fs::exists(fs::symlink_status(link, error));
    const fs::path path = linked ? link : fs::path(devDir_) / ("ttyUSB" + std::to_string(n - 1));
    const std::string device = Resolved(path);
    if (device.empty()) continue;
    ports.push_back({"Comm" + std::to_string(n), device});
    named.insert(device);
  }

  std::vector<std::string> others;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(devDir_, error)) {
    const std::string name = entry.path().filename().string();
    if (!SerialName(name)) continue;
    if (name.rfind("ttyS", 0) == 0 && !RealUart(ttyClassDir_, name)) continue;
    const std::string device = Resolved(entry.path());
    if (!device.empty() && !named.count(device)) others.push_back(device);
  }
  std::sort(others.begin(), others.end());
  for (const std::string& device : others) ports.push_back({"", device});
  return ports;
}

}  // namespace vantrel::platform::linuxos
