#include "platform/memory/event_queue.h"

#include <algorithm>

namespace vantrel::platform::memory {
namespace {
constexpr int64_t kNsPerMs = 1'000'000;
}

MemoryTimer::MemoryTimer(EventQueue& queue) : queue_(queue) { queue_.Add(this); }
MemoryTimer::~MemoryTimer() { queue_.Remove(this); }

void MemoryTimer::Restart() { dueNs_ = queue_.time().NowNs() + int64_t{interval_} * kNsPerMs; }

void MemoryTimer::SetInterval(int32_t ms) {
  interval_ = ms;
  Restart();
}

void MemoryTimer::SetEnabled(bool enabled) {
  if (enabled && !enabled_) Restart();
  enabled_ = enabled;
}

std::optional<int64_t> MemoryTimer::DueNs() const {
  if (!enabled_ || interval_ <= 0) return std::nullopt;
  return dueNs_;
}

void MemoryTimer::Fire() {
  Restart();
  if (handler_) handler_();
}

void EventQueue::Post(int64_t atNs, std::function<void()> event) {
  posted_.emplace(atNs, std::move(event));
}

void EventQueue::Remove(MemoryTimer* timer) {
  timers_.erase(std::remove(timers_.begin(), timers_.end(), timer), timers_.end());
}

std::optional<int64_t> EventQueue::NextPostedNs() const {
  if (posted_.empty()) return std::nullopt;
  return posted_.begin()->first;
}

std::optional<int64_t> EventQueue::NextDueNs() const {
  std::optional<int64_t> next = NextPostedNs();
  for (const MemoryTimer* timer : timers_) {
    const auto due = timer->DueNs();
    if (due && (!next || *due < *next)) next = due;
  }
  return next;
}

void EventQueue::DoEvents() {
  // Taken off the queue before it runs, so a nested pump never sees it again.
  while (!posted_.empty() && posted_.begin()->first <= time_->NowNs()) {
    auto event = std::move(posted_.begin()->second);
    posted_.erase(posted_.begin());
    event();
  }
  const std::vector<MemoryTimer*> timers = timers_;
  for (MemoryTimer* timer : timers) {
    const auto due = timer->DueNs();
    if (due && *due <= time_->NowNs()) timer->Fire();
  }
}

void EventQueue::RunPosted(std::optional<int64_t> untilNs) {
  while (HasPosted()) {
    const int64_t next = *NextDueNs();
    if (untilNs && next > *untilNs) return;
    time_->AdvanceTo(next);
    DoEvents();
  }
}

}  // namespace vantrel::platform::memory
