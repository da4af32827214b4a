// Stand-ins for the subsystems around the sending core that record what the
// core asks of them, in the trace and in counters a test can read.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/memory/trace.h"
#include "platform/neighbours.h"

namespace vantrel::platform::memory {

class RecordingLoggerLink : public LoggerLink {
 public:
  explicit RecordingLoggerLink(Trace& trace) : trace_(trace) {}
  void PollLink() override {
    ++polls;
    trace_.Action();
  }
  void PostLink(LinkCode code, int32_t value) override {
    trace_.Emit("post " + std::to_string(static_cast<int32_t>(code)) + " " + std::to_string(value));
  }
  void LogContact() override {
    ++contactsLogged;
    trace_.Emit("log contact");
  }
  void WriteLinkSlot(int16_t slot, const std::string& text) override;
  // What the logger puts into a slot, kept as the shared block keeps it: cut
  // to the slot and padded with NULs.
  void LoggerWrites(int16_t slot, const std::string& text);
  void SendLinkCommand(const std::string& text) override {
    trace_.Emit("link command " + Trace::Quote(text));
  }
  std::string ReadLinkSlot(int16_t slot) const override {
    return linkSlots.at(static_cast<size_t>(slot));
  }
  std::string MyCall() const override;
  std::string Band() const override;
  std::string SerialFormat() const override { return serialFormat; }

  static constexpr size_t kSlotSize = 128;

  int polls = 0;
  int contactsLogged = 0;
  std::array<std::string, 10> linkSlots{};
  std::string serialFormat;

 private:
  static constexpr size_t kMyCallSlot = 3;
  static constexpr size_t kBandSlot = 4;
  std::string UpToNul(size_t slot) const;

  Trace& trace_;
};

}  // namespace vantrel::platform::memory
