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
      const timespec wait{static_cast<time_t>(left / 1'000'000'000), static_cast<long>(left % 1'000'000'000)};
      if (Poll(wait)) return;
    }
  }

  // Runs the handlers of what is readable now, without waiting.
  void PollNow() {
    const timespec now{0, 0};
    while (!Poll(now)) {
    }
  }

  void Watch(int fd, std::function<void()> readable) override { watched_[fd] = std::move(readable); }
  void Unwatch(int fd) override { watched_.erase(fd); }

 private:
  // False when a signal cut the wait short and it should be made again.
  bool Poll(const timespec& wait) {
    std::vector<pollfd> fds;
    for (const auto& [fd, handler] : watched_) fds.push_back({fd, POLLIN, 0});
    const int ready = ::ppoll(fds.data(), fds.size(), &wait, nullptr);
    if (ready < 0 && errno == EINTR) return false;
    if (ready <= 0) return true;
    for (const pollfd& fd : fds) {
      // Looked up afresh: a handler may have closed the port under the next.
      const auto found = watched_.find(fd.fd);
      if (fd.revents != 0 && found != watched_.end()) {
        const auto handler = found->second;
        handler();
      }
    }
    return true;
  }

  static int64_t MonotonicNs() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
  }
  int64_t originNs_;
  std::map<int, std::function<void()>> watched_;
};

// The pump of a real-time run: it looks at the descriptors on every pump, as a
// window's event loop does, so that a logger's Abort reaches a send loop in mid-text.
class RealTimePump : public platform::EventPump {
 public:
  RealTimePump(RealQueueTime& time, platform::memory::EventQueue& queue) : time_(time), queue_(queue) {}
  void DoEvents() override {
    time_.PollNow();
    queue_.DoEvents();
  }

 private:
  RealQueueTime& time_;
  platform::memory::EventQueue& queue_;
};

}  // namespace vantrel::sim
