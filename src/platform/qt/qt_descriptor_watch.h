// The Qt event loop watching descriptors for input: what tells the keyer,
// between its other events, that a chip has sent bytes.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <map>

#include "platform/linux/descriptor_watch.h"

namespace vantrel::platform::qt {

class QtDescriptorWatch : public linuxos::DescriptorWatch {
 public:
  ~QtDescriptorWatch() override;
  void Watch(int fd, std::function<void()> readable) override;
  void Unwatch(int fd) override;

 private:
  std::map<int, QSocketNotifier*> notifiers_;
};

}  // namespace vantrel::platform::qt
