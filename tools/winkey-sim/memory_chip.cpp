#include "memory_chip.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantrel::winkeysim {

MemoryChip::MemoryChip(ChipOptions options, platform::memory::MemorySerialPort& port,
                       platform::memory::EventQueue& queue)
    : model_(options), port_(port), queue_(queue) {
  port_.device = this;
}

MemoryChip::~MemoryChip() { port_.device = nullptr; }

double MemoryChip::NowMs() const { return static_cast<double>(queue_.time().NowNs()) / 1e6; }

void MemoryChip::Collect() {
  model_.Advance(NowMs());
  for (const uint8_t byte : model_.TakeOutput()) pending_ += static_cast<char>(byte);
}

void MemoryChip::Take(const std::string& bytes) {
  for (const char byte : bytes) model_.Receive(static_cast<uint8_t>(byte), NowMs());
  Collect();
  NotifyWhenDue();
}

std::string MemoryChip::Sent() {
  Collect();
  NotifyWhenDue();
  return std::exchange(pending_, {});
}

void MemoryChip::Paddle() {
  model_.Paddle(NowMs());
  Collect();
  NotifyWhenDue();
}

void MemoryChip::NotifyWhenDue(bool pendingCounts) {
  // A closed port hears nothing: what the chip sends meanwhile is lost.
  if (!port_.PortOpen()) pending_.clear();
  const int64_t now = queue_.time().NowNs();
  int64_t due = -1;
  if (pendingCounts && !pending_.empty()) {
    due = now;
  } else if (const double next = model_.NextEventMs(); next >= 0) {
    due = std::max(now, static_cast<int64_t>(std::ceil(next * 1e6)));
  }
  if (due < 0 || (postedForNs_ >= 0 && postedForNs_ <= due)) return;
  postedForNs_ = due;
  queue_.Post(due, [this, due] {
    if (postedForNs_ == due) postedForNs_ = -1;
    port_.Arrive();
    // Bytes the keyer left unread wait for its next read, not another call.
    NotifyWhenDue(false);
  });
}

}  // namespace vantrel::winkeysim
