#include "platform/qt/qt_descriptor_watch.h"

namespace vantrel::platform::qt {

QtDescriptorWatch::~QtDescriptorWatch() {
  for (const auto& [fd, notifier] : notifiers_) delete notifier;
}

void QtDescriptorWatch::Watch(int fd, std::function<void()> readable) {
  Unwatch(fd);
  auto* notifier = new QSocketNotifier(fd, QSocketNotifier::Read);
  QObject::connect(notifier, &QSocketNotifier::activated, [readable] { readable(); });
  notifiers_[fd] = notifier;
}

// The handler that closes the port may be running inside this very
// notifier's signal, so it goes once the signal is done.
void QtDescriptorWatch::Unwatch(int fd) {
  const auto found = notifiers_.find(fd);
  if (found == notifiers_.end()) return;
  found->second->setEnabled(false);
  found->second->deleteLater();
  notifiers_.erase(found);
}

}  // namespace vantrel::platform::qt
