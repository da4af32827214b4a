#include "winkey/winkey_host.h"

#include <algorithm>
#include <optional>

#include "winkey/winkey_frame.h"
#include "winkey/winkey_protocol.h"

namespace vantrel::winkey {
namespace {

namespace wire = protocol;

// The chip needs a moment after the port opens before it listens.
constexpr int kSettleMs = 1000;
constexpr int kCalibrateMs = 100;
constexpr int16_t kSlowestStep = 1;
constexpr int16_t kFastestStep = 255;
constexpr unsigned char kBuffered = '|';

// Codes that a chip never receives from the text.
bool CutFromText(unsigned char code) { return code <= 31 || code == 33 || code >= 94; }

}  // namespace

WinKeyHost::WinKeyHost(WinKeyState& state, WinKeyNeighbours neighbours)
    : s_(state), n_(neighbours), c_(neighbours.controls) {
  n_.port.OnReceive([this] { WinKeyReceive(); });
}

void WinKeyHost::OpenWinKeyPort() {
  s_.WinKeyPortErrorShown = false;
  platform::SerialPort& port = n_.port;
  const int16_t number = n_.settings.WinKeyPort;
  if (port.PortOpen() && port.CommPort() != number) {
    port.SetPortOpen(false);
    c_.KeyBox.SetPicture(platform::Picture::Red);
    c_.PTTBox.SetPicture(platform::Picture::Red);
    c_.mnuDedicatedSerialPort.SetChecked(false);
  }
  if (number < 1) {
    c_.CWTextBox.SetText("No Comm port selected");
    return;
  }
  port.ClearError();
  if (!port.PortOpen()) {
    port.SetCommPort(number);
    port.SetPortOpen(true);
    if (!port.Error().empty()) {
      n_.lines.ReportPortError();
      return;
    }
    c_.mnuDedicatedSerialPort.SetChecked(true);
    port.SetDTREnable(true);
    port.SetRTSEnable(false);
    Sleep(kSettleMs);
  }
  DiscoverWinKey();
}

void WinKeyHost::DiscoverWinKey() {
  enum class Outcome { NoReply, Found, FoundWinKey2, FoundWinKey, SettingOutOfRange };
  s_.WinKeyOpen = false;
  platform::SerialPort& port = n_.port;
  port.Input();
  WriteWinKey(AdminFrame(wire::kAdminHostOpen));

  platform::Scheduler& clock = n_.scheduler;
  const int64_t perMs = clock.QueryPerformanceFrequency() / 1000;
  const int64_t deadline = clock.QueryPerformanceCounter() + kReplyWaitMs * perMs;
  Outcome outcome = Outcome::NoReply;
  std::optional<FrameValue> refused;
  while (port.PortOpen()) {
    if (port.InBufferCount() > 0) {
      const std::string reply = port.Input();
      if (reply.empty()) continue;
      // Only the first byte counts; the rest is dropped with it.
      s_.IsWinKey2 = static_cast<uint8_t>(reply[0]) >= wire::kFirstWinKey2Revision;
      if (model_ == ChipModel::WinKey && s_.IsWinKey2) {
        outcome = Outcome::FoundWinKey2;
        break;
      }
      if (model_ == ChipModel::WinKey2 && !s_.IsWinKey2) {
        outcome = Outcome::FoundWinKey;
        break;
      }
      // A number a byte cannot carry would reach the chip as another one.
      refused = ValueOutOfByte(n_.settings);
      if (refused) {
        outcome = Outcome::SettingOutOfRange;
        break;
      }
      c_.KeyBox.SetPicture(platform::Picture::Green);
      c_.CWTextBox.SetText("");
      if (!s_.IsWinKey2) {
        WriteWinKey(AdminFrame(wire::kAdminCalibrate));
        Sleep(kCalibrateMs);
        WriteWinKey(Frame(wire::kCalibrateEnd));
      }
      UploadWinKeySettings();
      outcome = Outcome::Found;
      break;
    }
    const int64_t now = clock.QueryPerformanceCounter();
    if (now >= deadline) break;
    clock.SwitchToThread(std::min(now + perMs, deadline));
  }

  c_.CWTextBox.SetText("");
  c_.CWTextBox.SetSelColor(n_.cw.TextForeColor);
  switch (outcome) {
    case Outcome::Found: s_.WinKeyOpen = true; break;
    case Outcome::FoundWinKey2:
      Insert("Can't find correct keyer.  I'm looking for a WinKey, and I found a WinKey2.");
      break;
    case Outcome::FoundWinKey:
      Insert("Can't find correct keyer.  I'm looking for a WinKey2, and I found a WinKey.");
      break;
    case Outcome::SettingOutOfRange:
      Insert("WinKey settings not sent: \"" + std::string(refused->key) + "\" gives " +
             std::to_string(refused->value) + ", and the chip takes 0 to 255 there.");
      break;
    case Outcome::NoReply:
      if (model_ == ChipModel::WinKey) {
        Insert("Can't find a WinKey");
      } else if (model_ == ChipModel::WinKey2) {
        Insert("Can't find a WinKey2");
      }
      break;
  }
}

void WinKeyHost::Insert(const std::string& text) {
  platform::TextBox& box = c_.CWTextBox;
  box.SetSelText(text);
  box.SetSelStart(static_cast<int>(box.Text().size()));
}

void WinKeyHost::WriteWinKey(const std::string& bytes) {
  platform::SerialPort& port = n_.port;
  if (port.PortOpen()) {
    port.Output(bytes);
    if (onWrite_) onWrite_(bytes);
    if (!port.PortOpen()) PortLost();
    return;
  }
  if (!s_.WinKeyPortErrorShown) c_.CWTextBox.SetText("WinKey port is not open");
  s_.WinKeyPortErrorShown = true;
  if (n_.cw.Transmitting()) {
    EndRun(RunEnd::ChipLost);
  } else {
    n_.control.EnableIdleControls();
  }
}

void WinKeyHost::CloseWinKeyHost() {
  if (!s_.WinKeyOpen) return;
  WriteWinKey(AdminFrame(wire::kAdminHostClose));
  s_.WinKeyOpen = false;
}

void WinKeyHost::UploadWinKeySettings() {
  const WinKeySettings& settings = n_.settings;
  WriteWinKey(LoadDefaultsFrame(settings, s_.IsWinKey2, n_.link.ActiveRadio));
  if (settings.WinKeyDisablePaddleMemory) Write(Frame(wire::kHighSpeedCw, 0));
  SelectWinKeyRadio();
  if (settings.WinKeyAnalogSpeed) {
    // The pot has the speed from here; its answer comes as a pot byte.
    Write(Frame(wire::kSpeed, 0));
    WriteWinKey(Frame(wire::kGetSpeedPot));
  } else {
    n_.control.ShowSpeed(settings.WinKeySpeed);
  }
}

// Goes by the chip asked for, not by the chip that answered.
void WinKeyHost::SelectWinKeyRadio() {
  const WinKeySettings& settings = n_.settings;
  const int16_t radio = n_.link.ActiveRadio;
  if (model_ == ChipModel::WinKey) {
    // Each option names the radio keyed from pin 3; the other is on pin 5.
    const auto writeFor = [&](int16_t radioOnPin3) {
      if (radio != 1 && radio != 2) return;
      Write(Frame(wire::kPinConfig, radio == radioOnPin3 ? wire::kPinKeyOnPin3 : wire::kPinKeyOnPin5));
    };
    if (settings.WinKeyRadio1Pin3) writeFor(1);
    if (settings.WinKeyRadio2Pin3) writeFor(2);
  } else if (model_ == ChipModel::WinKey2) {
    Write(Frame(wire::kPinConfig, BuildWinKey2PinByte(settings, radio)));
  }
}

void WinKeyHost::StartWinKeyRun() {
  sending::CwState& cw = n_.cw;
  n_.control.DisableIdleControls();
  cw.SavedWPM = cw.WPM;
  if (!n_.settings.WinKeyAnalogSpeed) Write(Frame(wire::kSpeed, cw.WPM));
  cw.Tx = sending::TxState::Sending;
  lastHeard_ = n_.scheduler.QueryPerformanceCounter();
  s_.WinKeyPosition = 1;
  if (n_.settings.WinKeyHoldRadioPolling) n_.logger.PostLink(platform::LinkCode::HoldRadioPolling, 1);
  Feed(1);
}

void WinKeyHost::Feed(int16_t position) {
  sending::CwState& cw = n_.cw;
  sending::SendText& text = n_.text;
  cw.LastStepPosition = position;
  cw.SendPosition = position;
  const std::string here = text.CharacterAt(position);
  if (here.empty()) return;
  const bool marks = text.TakeSpeedMarks(position, [this](int16_t wpm) {
    // With the speed on the chip's own knob, the text's marks are not its business.
    if (n_.settings.WinKeyAnalogSpeed) return;
    WriteSpeed(wpm);
    n_.control.ShowSpeed(wpm);
  });
  if (!marks && CutFromText(static_cast<unsigned char>(here[0]))) text.DeleteCharacterAt(position);
  for (std::string next = text.CharacterAt(position); !Sendable(next);
       next = text.CharacterAt(position)) {
    if (!cw.Transmitting()) return;
    text.DeleteCharacterAt(position);
  }
  WriteWinKey(text.CharacterAt(position));
  text.MarkSendPosition(position);
}

bool WinKeyHost::Sendable(const std::string& character) {
  int code = 0;
  if (character.empty()) {
    n_.control.mnuabort_click();
  } else {
    code = static_cast<unsigned char>(character[0]);
  }
  if (code == kBuffered) {
    // One "|" is cut; the second of a pair goes to the chip.
    if (s_.WinKeyLastChar != kBuffered) {
      WriteWinKey("|");
      s_.WinKeyLastChar = kBuffered;
    }
    return false;
  }
  s_.WinKeyLastChar = static_cast<int16_t>(code);
  return code == 32 || (code >= 34 && code <= 93);
}

// On the software keyer a device that hangs up is the key lines' to report,
// at their next change, so its error is left on the port for them.
void WinKeyHost::WinKeyReceive() {
  platform::SerialPort& port = n_.port;
  const bool wasOpen = port.PortOpen();
  lastHeard_ = n_.scheduler.QueryPerformanceCounter();
  for (const char byte : port.Input()) Receive(static_cast<uint8_t>(byte));
  if (wasOpen && !port.PortOpen() && model_ != ChipModel::None) PortLost();
}

void WinKeyHost::Receive(uint8_t byte) {
  const WinKeySettings& settings = n_.settings;
  if (byte < wire::kPotClass) {
    if (s_.WinKeyOpen) WinKeyStep();
    return;
  }
  if ((byte & wire::kClassMask) == wire::kPotClass) {
    if (settings.WinKeyAnalogSpeed) {
      n_.control.ShowSpeed(static_cast<int16_t>((byte & wire::kPotValueMask) + settings.WinKeySpeedMin));
    }
    return;
  }
  if ((byte & wire::kStatusBreakIn) != 0) {
    n_.cw.Tx = sending::TxState::Sending;
    s_.PaddleBreakIn = true;
    if (n_.cw.LoopDelay > 0) n_.macroLoop.CancelMacroLoop();
    if (settings.WinKeyHoldRadioPolling) n_.logger.PostLink(platform::LinkCode::HoldRadioPolling, 1);
    c_.PTTBox.SetPicture(platform::Picture::Green);
    if (settings.WinKeyPaddleInsertCancelsMacro) c_.CWTextBox.SetText("");
    return;
  }
  if (s_.PaddleBreakIn) {
    s_.PaddleBreakIn = false;
    c_.PTTBox.SetPicture(platform::Picture::Red);
    // A break-in on the first character has it handed over again.
    if (s_.WinKeyPosition == 1) s_.WinKeyPosition = 0;
  }
  // A status byte without break-in paces the run as an echo does.
  if (s_.WinKeyOpen) WinKeyStep();
}

void WinKeyHost::WinKeyStep() {
  ++s_.WinKeyPosition;
  // The length is read afresh: text typed during the run goes out in it.
  if (s_.WinKeyPosition <= static_cast<int32_t>(c_.CWTextBox.Text().size())) {
    Feed(static_cast<int16_t>(s_.WinKeyPosition));
    if (!n_.cw.Transmitting()) n_.macroLoop.ArmMacroLoop();
  } else {
    c_.CWTextBox.SetText("");
    EndRun(RunEnd::Completed);
  }
}

void WinKeyHost::EndRun(RunEnd how) {
  sending::CwState& cw = n_.cw;
  cw.Tx = sending::TxState::Idle;
  s_.WinKeyPosition = 1;
  if (how != RunEnd::ChipLost && !n_.settings.WinKeyAnalogSpeed) {
    // After its text the chip is empty and takes the speed at once; after an
    // Abort the speed queues behind whatever the chip still clears.
    Write(Frame(how == RunEnd::Completed ? wire::kSpeed : wire::kBufferedSpeed, cw.SavedWPM));
    cw.WPM = cw.SavedWPM;
    n_.control.ShowSpeed(cw.SavedWPM);
    cw.DotTime = cw.DotLength(cw.WPM);
  }
  if (n_.settings.WinKeyHoldRadioPolling) n_.logger.PostLink(platform::LinkCode::HoldRadioPolling, 0);
  n_.control.EnableIdleControls();
  if (how == RunEnd::ChipLost) return;
  if (cw.LogAfterSend) {
    n_.logger.LogContact();
    cw.LogAfterSend = false;
  }
  n_.macroLoop.ArmMacroLoop();
}

// The operator's paddle may hold the chip as long as it likes.
void WinKeyHost::WatchWinKeySilence() {
  if (!n_.cw.Transmitting() || s_.PaddleBreakIn || model_ == ChipModel::None) return;
  platform::Scheduler& clock = n_.scheduler;
  const int64_t silent = clock.QueryPerformanceCounter() - lastHeard_;
  if (silent < int64_t{kSilenceMs} * clock.QueryPerformanceFrequency() / 1000) return;
  // Clear Buffer stops what the chip still holds and unkeys, should it hear.
  WriteWinKey(Frame(wire::kClearBuffer));
  // Said while the run still counts as running, so the words are not sent.
  c_.CWTextBox.SetText("WinKey did not answer for " + std::to_string(kSilenceMs / 1000) +
                       " s: sending stopped");
  EndRun(RunEnd::ChipLost);
}

void WinKeyHost::StartRun() {
  if (PortOpen()) StartWinKeyRun();
}

void WinKeyHost::Abort() {
  c_.CWTextBox.SetText("");
  if (tuning_) Tune(false);
  EndRun(RunEnd::Aborted);
}

void WinKeyHost::Stop() {
  c_.CWTextBox.SetText("");
  if (tuning_) Tune(false);
  EndRun(RunEnd::Aborted);
}

void WinKeyHost::Tune(bool down) {
  Write(Frame(wire::kKeyImmediate, down ? 1 : 0));
  tuning_ = down;
}

// On a chip whose pot has the speed this does nothing.
void WinKeyHost::SetSpeed(int16_t wpm) {
  WinKeySettings& chip = n_.settings;
  sending::CwState& cw = n_.cw;
  if (chip.WinKeyAnalogSpeed) return;
  if (wpm != cw.WPM) {
    cw.WPM = wpm;
    cw.DotTime = cw.DotLength(cw.WPM);
    n_.control.ShowSpeed(cw.WPM);
    cw.SavedWPM = cw.WPM;
    chip.WinKeySpeed = cw.WPM;
  }
  // Written even when the speed stood still: the chip hears it again.
  WriteSpeed(cw.WPM);
  n_.store.WriteSetting(settings::kKeyerSection, "WinKey Speed", std::to_string(chip.WinKeySpeed));
}

// Stored for good: the end of a run does not undo it.
void WinKeyHost::StepSpeed(int16_t by) {
  WinKeySettings& chip = n_.settings;
  chip.WinKeySpeed = static_cast<int16_t>(
      std::clamp(chip.WinKeySpeed + by, int{kSlowestStep}, int{kFastestStep}));
  n_.store.WriteSetting(settings::kKeyerSection, "WinKey Speed", std::to_string(chip.WinKeySpeed));
  // With the pot in charge the chip's speed is its own.
  if (!chip.WinKeyAnalogSpeed) {
    WriteSpeed(chip.WinKeySpeed);
    n_.control.ShowSpeed(chip.WinKeySpeed);
  }
  if (n_.cw.Transmitting()) n_.cw.SavedWPM = n_.cw.WPM;
}

void WinKeyHost::HoldPtt(bool on) { Write(Frame(wire::kPtt, on ? 1 : 0)); }

void WinKeyHost::WriteSpeed(int wpm) { Write(Frame(wire::kBufferedSpeed, wpm)); }

void WinKeyHost::Write(const std::optional<std::string>& frame) {
  if (frame) WriteWinKey(*frame);
}

// Blocks the window's thread, as the chip's start-up wants.
void WinKeyHost::Sleep(int ms) {
  platform::Scheduler& clock = n_.scheduler;
  const int64_t until =
      clock.QueryPerformanceCounter() + int64_t{ms} * clock.QueryPerformanceFrequency() / 1000;
  while (clock.QueryPerformanceCounter() < until) clock.SwitchToThread(until);
}

void WinKeyHost::PortLost() {
  n_.lines.ReportPortError();
  s_.WinKeyPortErrorShown = true;
  c_.mnuDedicatedSerialPort.SetChecked(false);
  c_.KeyBox.SetPicture(platform::Picture::Red);
  if (n_.cw.Transmitting()) EndRun(RunEnd::ChipLost);
}

}  // namespace vantrel::winkey
