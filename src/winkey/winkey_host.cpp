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

std::string Bytes(std::initializer_list<uint8_t> bytes) {
  std::string text;
  for (const uint8_t byte : bytes) text += static_cast<char>(byte);
  return text;
}

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
  WriteWinKey(Bytes({wire::kAdmin, wire::kAdminHostOpen}));

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
      if (c_.mnuWinKey.Checked() && s_.IsWinKey2) {
        outcome = Outcome::FoundWinKey2;
        break;
      }
      if (c_.mnuWinKey2.Checked() && !s_.IsWinKey2) {
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
        WriteWinKey(Bytes({wire::kAdmin, wire::kAdminCalibrate}));
        Sleep(kCalibrateMs);
        WriteWinKey(Bytes({wire::kCalibrateEnd}));
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
      if (c_.mnuWinKey.Checked()) {
        Insert("Can't find a WinKey");
      } else if (c_.mnuWinKey2.Checked()) {
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
  n_.core.EnableIdleControls();
  n_.cw.Transmitting = false;
}

void WinKeyHost::CloseWinKeyHost() {
  if (!s_.WinKeyOpen) return;
  WriteWinKey(Bytes({wire::kAdmin, wire::kAdminHostClose}));
  s_.WinKeyOpen = false;
}

void WinKeyHost::UploadWinKeySettings() {
  const WinKeySettings& settings = n_.settings;
  WriteWinKey(LoadDefaultsFrame(settings, s_.IsWinKey2, n_.link.ActiveRadio));
  if (settings.WinKeyDisablePaddleMemory) WriteWinKey(Bytes({wire::kHighSpeedCw, 0}));
  SelectWinKeyRadio();
  if (settings.WinKeyAnalogSpeed) {
    // The pot has the speed from here; its answer comes as a pot byte.
    WriteWinKey(Bytes({wire::kSpeed, 0}));
    WriteWinKey(Bytes({wire::kGetSpeedPot}));
  } else {
    n_.core.ShowSpeed(settings.WinKeySpeed);
  }
}

// Goes by the menu's tick, not by the chip that answered.
void WinKeyHost::SelectWinKeyRadio() {
  const WinKeySettings& settings = n_.settings;
  const int16_t radio = n_.link.ActiveRadio;
  if (c_.mnuWinKey.Checked()) {
    // Each option names the radio keyed from pin 3; the other is on pin 5.
    const auto writeFor = [&](int16_t radioOnPin3) {
      if (radio != 1 && radio != 2) return;
      Command(wire::kPinConfig, radio == radioOnPin3 ? wire::kPinKeyOnPin3 : wire::kPinKeyOnPin5);
    };
    if (settings.WinKeyRadio1Pin3) writeFor(1);
    if (settings.WinKeyRadio2Pin3) writeFor(2);
  } else if (c_.mnuWinKey2.Checked()) {
    Command(wire::kPinConfig, BuildWinKey2PinByte(settings, radio));
  }
}

void WinKeyHost::StartWinKeyRun() {
  sending::CwState& cw = n_.cw;
  n_.core.DisableIdleControls();
  cw.SavedWPM = cw.WPM;
  if (!n_.settings.WinKeyAnalogSpeed) Command(wire::kSpeed, cw.WPM);
  cw.Transmitting = true;
  lastHeard_ = n_.scheduler.QueryPerformanceCounter();
  s_.WinKeyPosition = 1;
  if (n_.settings.WinKeyHoldRadioPolling) n_.logger.PostLink(platform::LinkCode::HoldRadioPolling, 1);
  int16_t position = 1;
  n_.core.NextCharacter(position);
}

// On the software keyer a device that hangs up is the key lines' to report,
// at their next change, so its error is left on the port for them.
void WinKeyHost::WinKeyReceive() {
  platform::SerialPort& port = n_.port;
  const bool wasOpen = port.PortOpen();
  lastHeard_ = n_.scheduler.QueryPerformanceCounter();
  for (const char byte : port.Input()) Receive(static_cast<uint8_t>(byte));
  if (wasOpen && !port.PortOpen() && n_.core.WinKeyRoute()) PortLost();
}

void WinKeyHost::Receive(uint8_t byte) {
  const WinKeySettings& settings = n_.settings;
  if (byte < wire::kPotClass) {
    if (s_.WinKeyOpen) WinKeyStep();
    return;
  }
  if ((byte & wire::kClassMask) == wire::kPotClass) {
    if (settings.WinKeyAnalogSpeed) {
      n_.core.ShowSpeed(static_cast<int16_t>((byte & wire::kPotValueMask) + settings.WinKeySpeedMin));
    }
    return;
  }
  if ((byte & wire::kStatusBreakIn) != 0) {
    n_.cw.Transmitting = true;
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
  sending::CwState& cw = n_.cw;
  ++s_.WinKeyPosition;
  // The length is read afresh: text typed during the run goes out in it.
  if (s_.WinKeyPosition <= static_cast<int32_t>(c_.CWTextBox.Text().size())) {
    int16_t position = static_cast<int16_t>(s_.WinKeyPosition);
    n_.core.NextCharacter(position);
  } else {
    c_.CWTextBox.SetText("");
    cw.Transmitting = false;
    s_.WinKeyPosition = 1;
    if (!n_.settings.WinKeyAnalogSpeed) {
      Command(wire::kSpeed, cw.SavedWPM);
      cw.WPM = cw.SavedWPM;
      n_.core.ShowSpeed(cw.SavedWPM);
      cw.DotTime = n_.core.ComputeDotLength(cw.WPM);
    }
    if (n_.settings.WinKeyHoldRadioPolling) n_.logger.PostLink(platform::LinkCode::HoldRadioPolling, 0);
    n_.core.EnableIdleControls();
    if (cw.LogAfterSend) {
      n_.logger.LogContact();
      cw.LogAfterSend = false;
    }
  }
  if (!cw.Transmitting) n_.macroLoop.ArmMacroLoop();
}

// The operator's paddle may hold the chip as long as it likes.
void WinKeyHost::WatchWinKeySilence() {
  sending::CwState& cw = n_.cw;
  if (!cw.Transmitting || s_.PaddleBreakIn || !n_.core.WinKeyRoute()) return;
  platform::Scheduler& clock = n_.scheduler;
  const int64_t silent = clock.QueryPerformanceCounter() - lastHeard_;
  if (silent < int64_t{kSilenceMs} * clock.QueryPerformanceFrequency() / 1000) return;
  // Clear Buffer stops what the chip still holds and unkeys, should it hear.
  WriteWinKey(Bytes({wire::kClearBuffer}));
  // Said while the run still counts as running, so the words are not sent.
  c_.CWTextBox.SetText("WinKey did not answer for " + std::to_string(kSilenceMs / 1000) +
                       " s: sending stopped");
  cw.Transmitting = false;
  s_.WinKeyPosition = 1;
  if (n_.settings.WinKeyHoldRadioPolling) n_.logger.PostLink(platform::LinkCode::HoldRadioPolling, 0);
  n_.core.EnableIdleControls();
}

void WinKeyHost::Command(uint8_t command, int value) {
  WriteWinKey(Bytes({command, static_cast<uint8_t>(value)}));
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
  if (!n_.cw.Transmitting) return;
  n_.cw.Transmitting = false;
  if (n_.settings.WinKeyHoldRadioPolling) n_.logger.PostLink(platform::LinkCode::HoldRadioPolling, 0);
  n_.core.EnableIdleControls();
}

}  // namespace vantrel::winkey
