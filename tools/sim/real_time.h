// The real clock under the runner's event queue: events wait for their time
// instead of jumping to it, and the trace counts from the start of the run.
// While it waits it watches descriptors, so that a chip's bytes are handled
// when they come, between events, as a window's event loop would.
#pragma once

#include <poll.h>
#include <time.h>

#include <cerrno>
#include <cstdint>
#include <functional>
#include <map>
#include <vector>

#include "platform/linux/descriptor_watch.h"
#include "platform/memory/event_queue.h"

namespace vantrel::sim {

class RealQueueTime : public platform::memory::QueueTime, public platform::linuxos::DescriptorWatch {
 public:
  RealQueueTime() : originNs_(MonotonicNs()) {}

  int64_t NowNs() const override { return MonotonicNs() - originNs_; }

  // Returns early, after running their handlers, when watched descriptors
  // become readable; the queue then looks again at what is due.
  void AdvanceTo(int64_t ns) override {
    const int64_t deadline = originNs_ + ns;
    for (;;) {
      const int64_t left = deadline - MonotonicNs();
      if (left <= 0) return;
      std::vector<pollfd> fds;
      for (const auto& [fd, handler] : watched_) fds.push_back({fd, POLLIN, 0});
      const timespec wait{static_cast<time_t>(left / 1'000'000'000), static_cast<long>(left % 1'000'000'000)};
      const int ready = ::ppoll(fds.data(), fds.size(), &wait, nullptr);
      if (ready < 0 && errno == EINTR) continue;
      if (ready <= 0) return;
      for (const pollfd& fd : fds) {
        // Looked up afresh: a handler may have closed the port under the next.
        const auto found = watched_.find(fd.fd);
        if (fd.revents != 0 && found != watched_.end()) {
          const auto handler = found->second;
          handler();
        }
      }
      return;
    }
  }

  void Watch(int fd, std::function<void()> readable) override { watched_[fd] = std::move(readable); }
  void Unwatch(int fd) override { watched_.erase(fd); }

 private:
  static int64_t MonotonicNs() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
  }
  int64_t originNs_;
  std::map<int, std::function<void()>> watched_;
};

}  // namespace vantrel::sim
