#include "platform/linux/comm_port_path.h"

#include <sys/stat.h>

namespace vantrel::platform::linuxos {

std::string CommDevicePath(int16_t number, const std::string& configDir) {
  if (number < 1 || number > 99) return {};
  if (!configDir.empty()) {
    std::string link = configDir + "/com" + std::to_string(number);
    // lstat: a dangling link still counts as the user's choice.
    struct stat info {};
    if (::lstat(link.c_str(), &info) == 0) return link;
  }
  return "/dev/ttyUSB" + std::to_string(number - 1);
}

}  // namespace vantrel::platform::linuxos
