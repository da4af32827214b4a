// The program's event loop, asked to run a handler on its own thread while a
// descriptor has bytes to read: Qt's in the window, the runner's headless.
#pragma once

#include <functional>

namespace vantrel::platform::linuxos {

class DescriptorWatch {
 public:
  virtual ~DescriptorWatch() = default;
  virtual void Watch(int fd, std::function<void()> readable) = 0;
  virtual void Unwatch(int fd) = 0;
};

}  // namespace vantrel::platform::linuxos
