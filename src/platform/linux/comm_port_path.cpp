#include "platform/linux/comm_port_path.h"

#include <sys/stat.h>

namespace vantrel::platform::linuxos {

namespace {

// lstat: a dangling link still counts as the user's choice.
std::string EntryIn(const std::string& configDir, const std::string& name) {
  if (configDir.empty()) return {};
  std::string link = configDir + "/" + name;
  struct stat info {};
  return ::lstat(link.c_str(), &info) == 0 ? link : std::string();
}

}  // namespace

std::string CommDevicePath(int16_t number, const std::string& configDir) {
  if (number < 1 || number > 99) return {};
  std::string link = EntryIn(configDir, "com" + std::to_string(number));
  return link.empty() ? "/dev/ttyUSB" + std::to_string(number - 1) : link;
}

std::string ParallelDevicePath(const std::string& configDir) {
  return EntryIn(configDir, "parport");
}

}  // namespace vantrel::platform::linuxos
