// The event pump of the in-memory platform: events scheduled for a virtual
// time reach the logic at the first pump at or after that time, as queued
// window messages do; timers fire there too.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "platform/controls.h"
#include "platform/event_pump.h"

namespace vantrel::platform::memory {

class EventQueue;

// Where the queue's time comes from: virtual time that jumps to the next
// event, or the real clock that is waited on.
class QueueTime {
 public:
  virtual ~QueueTime() = default;
  virtual int64_t NowNs() const = 0;
  virtual void AdvanceTo(int64_t ns) = 0;
};

class MemoryTimer : public Timer {
 public:
  explicit MemoryTimer(EventQueue& queue);
  ~MemoryTimer() override;

  int32_t Interval() const override { return interval_; }
  void SetInterval(int32_t ms) override;
  bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override;
  void OnTimer(std::function<void()> handler) override { handler_ = std::move(handler); }

  // When it fires next, if it can fire at all.
  std::optional<int64_t> DueNs() const;
  void Fire();

 private:
  void Restart();

  EventQueue& queue_;
  int32_t interval_ = 0;
  bool enabled_ = false;
  int64_t dueNs_ = 0;
  std::function<void()> handler_;
};

class EventQueue : public EventPump {
 public:
  explicit EventQueue(QueueTime& time) : time_(&time) {}
  void UseTime(QueueTime& time) { time_ = &time; }

  void Post(int64_t atNs, std::function<void()> event);
  bool HasPosted() const { return !posted_.empty(); }
  // The time of the next posted event or timer, whichever comes first.
  std::optional<int64_t> NextDueNs() const;
  std::optional<int64_t> NextPostedNs() const;

  // Runs every posted event that is due, then every timer that is due, once.
  // Handlers may pump again from inside.
  void DoEvents() override;

  // The idle loop: while posted events remain, time jumps to the next posted
  // event or timer and the pump runs. Stops before anything due after `untilNs`.
  void RunPosted(std::optional<int64_t> untilNs = std::nullopt);

  QueueTime& time() { return *time_; }
  void Add(MemoryTimer* timer) { timers_.push_back(timer); }
  void Remove(MemoryTimer* timer);

 private:
  QueueTime* time_;
  std::multimap<int64_t, std::function<void()>> posted_;
  std::vector<MemoryTimer*> timers_;
};

}  // namespace vantrel::platform::memory
