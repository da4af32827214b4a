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
  void PollLink() override { ++polls; }
  void PostLink(int32_t code, int32_t value) override {
    trace_.Emit("post " + std::to_string(code) + " " + std::to_string(value));
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

class RecordingWinKey : public WinKeyLink {
 public:
  explicit RecordingWinKey(Trace& trace) : trace_(trace) {}
  bool WinKeyOpen() const override { return open; }
  bool IsWinKey2() const override { return winKey2; }
  bool PortOpen() const override { return portOpen; }
  void WriteWinKey(const std::string& bytes) override;
  void StartWinKeyRun() override { ++runsStarted; }
  void OpenWinKeyPort() override { trace_.Emit("winkey port opened"); }
  void CloseWinKeyHost() override;
  void SelectWinKeyRadio(int16_t activeRadio) override {
    trace_.Emit("winkey radio " + std::to_string(activeRadio));
  }

  bool open = false;
  bool portOpen = false;
  bool winKey2 = false;
  int runsStarted = 0;
  std::string written;

 private:
  Trace& trace_;
};

// The editor's window as far as the buttons see it: open on one macro or shut.
class RecordingMacroEditor : public MacroEditor {
 public:
  explicit RecordingMacroEditor(Trace& trace) : trace_(trace) {}
  void ShowMacroSetup(int16_t index) override {
    shownIndex = index;
    trace_.Emit("editor " + std::to_string(index));
  }
  void UnloadMacroSetup() override {
    if (shownIndex == 0) return;
    shownIndex = 0;
    trace_.Emit("editor closed");
  }

  int16_t shownIndex = 0;

 private:
  Trace& trace_;
};

}  // namespace vantrel::platform::memory
