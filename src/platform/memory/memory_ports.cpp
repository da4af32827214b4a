#include "platform/memory/memory_ports.h"

#include <cstdio>

namespace vantrel::platform::memory {
namespace {

constexpr const char* kGone = "No such device";
constexpr const char* kInputOutput = "Input/output error";

}  // namespace

bool MemoryParallelPort::Failing() {
  if (failed_) return true;
  if (!unplugged_) return false;
  failed_ = true;
  error_ = kGone;
  return true;
}

int16_t MemoryParallelPort::Inp32(int16_t port) {
  if (Failing()) return 0;
  const auto it = registers.find(port);
  return it == registers.end() ? powerOn : it->second;
}

void MemoryParallelPort::Out32(int16_t port, int16_t value) {
  if (Failing()) return;
  registers[port] = value;
  char event[16];
  std::snprintf(event, sizeof event, "lpt %02X", static_cast<unsigned>(value) & 0xFF);
  trace_.Emit(event);
}

bool MemorySerialPort::Present() const {
  return !unplugged_ && commPort_ >= firstPresent && commPort_ <= lastPresent;
}

void MemorySerialPort::SetPortOpen(bool open) {
  if (open == open_) return;
  if (!open) {
    open_ = false;
    incoming.clear();
    return;
  }
  if (commPort_ < 1) {
    error_ = "Invalid port number";
  } else if (!Present()) {
    error_ = "No such file or directory";
  } else {
    open_ = true;
    // The lines take their values as the port opens.
    if (dtr_) trace_.Emit("dtr on");
    if (rts_) trace_.Emit("rts on");
  }
}

void MemorySerialPort::Lose() {
  error_ = kInputOutput;
  open_ = false;
  incoming.clear();
}

void MemorySerialPort::SetLine(bool& line, bool value, const char* name) {
  if (open_ && unplugged_) {
    Lose();
    line = value;
    return;
  }
  if (open_ && line != value) trace_.Emit(std::string(name) + (value ? " on" : " off"));
  line = value;
}

void MemorySerialPort::Collect() {
  if (!open_) return;
  if (unplugged_) {
    Lose();
    return;
  }
  if (device) incoming += device->Sent();
}

int MemorySerialPort::InBufferCount() {
  Collect();
  return static_cast<int>(incoming.size());
}

std::string MemorySerialPort::Input() {
  Collect();
  return std::exchange(incoming, {});
}

void MemorySerialPort::Output(const std::string& bytes) {
  if (!open_) return;
  if (unplugged_) {
    Lose();
    return;
  }
  if (device) device->Take(bytes);
}

void MemorySerialPort::Deliver(const std::string& bytes) {
  if (!open_) return;
  incoming += bytes;
  Arrive();
}

void MemorySerialPort::Arrive() {
  if (!open_ || !onReceive_) return;
  // An unplugged device wakes the keyer once, as a hang-up does.
  if (unplugged_ || !incoming.empty() || InBufferCount() > 0) onReceive_();
}

}  // namespace vantrel::platform::memory
