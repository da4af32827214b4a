// The keyer's side of an external WinKey or WinKey2 chip: the port and the
// start-up conversation, the settings upload, and the sending run that the
// chip's echo and status bytes pace. All of it runs on the window's thread.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "loggerlink/link_state.h"
#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "platform/ports.h"
#include "platform/scheduler.h"
#include "sending/cw_state.h"
#include "sending/key_lines.h"
#include "sending/sending_core.h"
#include "winkey/winkey_settings.h"

namespace vantrel::winkey {

struct WinKeyState {
  // A chip answered and got its settings.
  bool WinKeyOpen = false;
  // The last reply to host open came from a WinKey2; kept when discovery fails.
  bool IsWinKey2 = false;
  bool WinKeyPortErrorShown = false;
  // Position in the text box, from 1, of the character last handed over.
  int32_t WinKeyPosition = 1;
  bool PaddleBreakIn = false;
};

struct WinKeyNeighbours {
  sending::CwState& cw;
  const WinKeySettings& settings;
  // The radio the logger has made active.
  const loggerlink::LinkState& link;
  platform::MainWindowControls& controls;
  platform::SerialPort& port;
  platform::Scheduler& scheduler;
  sending::SendingCore& core;
  sending::KeyLineDriver& lines;
  platform::LoggerLink& logger;
  platform::MacroLoop& macroLoop;
};

class WinKeyHost : public platform::WinKeyLink {
 public:
  // A chip at 1200 baud answers host open in about 30 ms (two bytes out,
  // one back, 9 ms each); a USB adapter may add two 16 ms latency timers.
  // Half a second is ample and holds the window no longer than a blink.
  static constexpr int kReplyWaitMs = 500;
  // A chip in a run echoes each character as it sends it; the longest one,
  // at the chip's slowest 5 WPM, takes under six seconds. Ten seconds
  // without a byte is a chip that stopped answering.
  static constexpr int kSilenceMs = 10000;

  WinKeyHost(WinKeyState& state, WinKeyNeighbours neighbours);

  // Told every write that reaches the port, for a front end that shows the wire.
  void OnWrite(std::function<void(const std::string& bytes)> observer) {
    onWrite_ = std::move(observer);
  }

  bool WinKeyOpen() const override { return s_.WinKeyOpen; }
  bool IsWinKey2() const override { return s_.IsWinKey2; }
  bool PortOpen() const override { return n_.port.PortOpen(); }

  void OpenWinKeyPort() override;
  void DiscoverWinKey();
  void WriteWinKey(const std::string& bytes) override;
  void CloseWinKeyHost() override;
  void UploadWinKeySettings();
  void SelectWinKeyRadio() override;
  void WatchWinKeySilence() override;

  void StartWinKeyRun() override;
  // The port's notification: each byte that came in is handled in turn.
  void WinKeyReceive();
  void WinKeyStep();

 private:
  void Receive(uint8_t byte);
  void Command(uint8_t command, int value);
  void Sleep(int ms);
  // The message of a discovery's outcome, at the caret.
  void Insert(const std::string& text);
  // The device went away under the keyer: said once, and the run ends.
  void PortLost();

  WinKeyState& s_;
  WinKeyNeighbours n_;
  platform::MainWindowControls& c_;
  std::function<void(const std::string&)> onWrite_;
  // Performance counter at the start of the run or its chip's last byte.
  int64_t lastHeard_ = 0;
};

}  // namespace vantrel::winkey
