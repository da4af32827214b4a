// Stand-ins for the subsystems around the sending core that record what the
// core asks of them, in the trace and in counters a test can read.
#pragma once

#include <cstdint>
#include <string>

#include "platform/memory/trace.h"
#include "platform/neighbours.h"
#include "platform/text_box.h"

namespace vantrel::platform::memory {

class RecordingLoggerLink : public LoggerLink {
 public:
  explicit RecordingLoggerLink(Trace& trace) : trace_(trace) {}
  void PollLink() override { ++polls; }
  void PostLink(int32_t code, int32_t value) override {
    trace_.Emit("post " + std::to_string(code) + " " + std::to_string(value));
  }
  void LogContact() override { ++contactsLogged; }
  void WriteLinkSlot(int16_t slot, const std::string& text) override {
    trace_.Emit("slot " + std::to_string(slot) + " " + Trace::Quote(text));
  }
  void SendLinkCommand(const std::string& text) override {
    WriteLinkSlot(1, text);
    PostLink(200, 0);
  }

  int polls = 0;
  int contactsLogged = 0;

 private:
  Trace& trace_;
};

class RecordingWinKey : public WinKeyLink {
 public:
  explicit RecordingWinKey(Trace& trace) : trace_(trace) {}
  bool WinKeyOpen() const override { return open; }
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
  int runsStarted = 0;
  std::string written;

 private:
  Trace& trace_;
};

// Records what the window asks of the macros. Queueing appends the text
// as it stands, as a macro without macro words comes out.
class RecordingMacroLoop : public MacroLoop {
 public:
  RecordingMacroLoop(Trace& trace, TextBox& box) : trace_(trace), box_(box) {}
  void ArmMacroLoop() override { ++armed; }
  void CancelMacroLoop() override { ++cancelled; }
  bool FireHotKey(int16_t keyCode) override;
  void DispatchFunctionKey(int16_t keyCode, int16_t shift) override;
  void QueueMacro(const std::string& macro) override;

  int armed = 0;
  int cancelled = 0;
  // The key codes that have a hot key in some caption.
  std::string hotKeys;

 private:
  Trace& trace_;
  TextBox& box_;
};

class RecordingCalibration : public SpeedCalibration {
 public:
  bool Calibrating() const override { return calibrating; }
  void TransmissionStarted() override { ++started; }
  void TransmissionEnded() override { ++ended; }
  bool calibrating = false;
  int started = 0;
  int ended = 0;
};

}  // namespace vantrel::platform::memory
