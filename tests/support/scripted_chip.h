// A keyer chip on the in-memory serial port that answers host open with the
// bytes it is given and keeps everything the keyer wrote to it.
#pragma once

#include <string>
#include <utility>

#include "platform/memory/memory_ports.h"

namespace vantrel::testing {

struct ScriptedChip : platform::memory::SerialDevice {
  explicit ScriptedChip(std::string reply) : reply(std::move(reply)) {}

  void Take(const std::string& bytes) override {
    written += bytes;
    if (bytes == std::string("\x00\x02", 2)) toSend += reply;
  }
  std::string Sent() override { return std::exchange(toSend, {}); }

  std::string reply;  // to host open; empty: no answer
  std::string written;
  std::string toSend;
};

}  // namespace vantrel::testing
