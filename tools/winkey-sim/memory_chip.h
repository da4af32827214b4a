// The chip model at the far end of an in-memory serial port, on the event
// queue's time: what a headless keyer talks to when no real chip is there.
#pragma once

#include <cstdint>
#include <string>

#include "chip_model.h"
#include "platform/memory/event_queue.h"
#include "platform/memory/memory_ports.h"

namespace vantrel::winkeysim {

class MemoryChip : public platform::memory::SerialDevice {
 public:
  MemoryChip(ChipOptions options, platform::memory::MemorySerialPort& port,
             platform::memory::EventQueue& queue);
  ~MemoryChip() override;
  MemoryChip(const MemoryChip&) = delete;
  MemoryChip& operator=(const MemoryChip&) = delete;

  void Take(const std::string& bytes) override;
  std::string Sent() override;

  // The operator's side: a break-in from the paddle.
  void Paddle();

 private:
  double NowMs() const;
  // Moves what the model has sent into `pending_`.
  void Collect();
  // Makes sure the port hears of the next byte the chip sends by itself.
  void NotifyWhenDue(bool pendingCounts = true);

  ChipModel model_;
  platform::memory::MemorySerialPort& port_;
  platform::memory::EventQueue& queue_;
  std::string pending_;
  // The time of the look already posted; negative when none is.
  int64_t postedForNs_ = -1;
};

}  // namespace vantrel::winkeysim
