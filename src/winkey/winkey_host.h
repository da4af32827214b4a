// The chip keyer: the keyer's side of an external WinKey or WinKey2 chip.
// The port and the start-up conversation, the settings upload, and the
// sending run that the chip's echo and status bytes pace, fed from the text
// box one character per echo. All of it runs on the window's thread.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "platform/ports.h"
#include "platform/scheduler.h"
#include "sending/cw_state.h"
#include "sending/key_lines.h"
#include "sending/keyer.h"
#include "sending/send_text.h"
#include "sending/transmit_control.h"
#include "settings/setting_writer.h"
#include "state/link_state.h"
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
  // The last character the feed met: a second "|" of a pair goes to the chip.
  int16_t WinKeyLastChar = 0;
};

// The chip that keyer selection asks for; None while the software keyer sends.
enum class ChipModel { None, WinKey, WinKey2 };

struct WinKeyNeighbours {
  sending::CwState& cw;
  WinKeySettings& settings;
  // The radio the logger has made active.
  const loggerlink::LinkState& link;
  platform::MainWindowControls& controls;
  platform::SerialPort& port;
  platform::Scheduler& scheduler;
  sending::TransmitControl& control;
  sending::SendText& text;
  sending::KeyLineDriver& lines;
  platform::LoggerLink& logger;
  platform::MacroLoop& macroLoop;
  settings::SettingWriter& store;
};

class WinKeyHost : public platform::WinKeyLink, public sending::Keyer {
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
  // Hands the chip the character at `position`, dropping what it cannot key.
  void Feed(int16_t position);

  // Keyer selection's word: which chip discovery looks for, or None.
  void SetModel(ChipModel model) { model_ = model; }

  // The chip as the keyer in use.
  void Open() override { OpenWinKeyPort(); }
  void Close() override { CloseWinKeyHost(); }
  void StartRun() override;
  // The chip's runs never wait for text: the run ends with the box.
  void ResumeRun() override {}
  void Abort() override;
  void Stop() override;
  void Tune(bool down) override;
  bool Tuning() const override { return tuning_; }
  void SetSpeed(int16_t wpm) override;
  void StepSpeed(int16_t by) override;
  void HoldPtt(bool on) override;
  bool TypedProsigns() const override { return false; }

 private:
  // How a run ends: its text done, aborted (Abort, a stop), or the chip lost
  // (silent, its port gone), when nothing more goes to it.
  enum class RunEnd { Completed, Aborted, ChipLost };
  // The one end of a chip run.
  void EndRun(RunEnd how);
  // False for a character the chip is not given; an empty one aborts the run.
  bool Sendable(const std::string& character);
  void WriteSpeed(int wpm);
  void Receive(uint8_t byte);
  // A frame whose value does not fit its byte is not written.
  void Write(const std::optional<std::string>& frame);
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
  ChipModel model_ = ChipModel::None;
  bool tuning_ = false;
};

}  // namespace vantrel::winkey
