#include "sending/key_lines.h"

#include <string_view>

namespace vantrel::sending {
namespace {

using platform::LinkCode;
constexpr int16_t kKeyMask = 8;
constexpr int16_t kPTTMask = 4;
constexpr std::string_view kPortErrorPrefix = "CW Port error : ";

}  // namespace

int16_t SharedComNumberOf(const std::string& portName) {
  for (int16_t n = 1; n <= 8; ++n) {
    if (portName == "Comm" + std::to_string(n)) return n;
  }
  return 0;
}

int16_t KeyLineDriver::ReadControl() {
  return ports_.parallel.Inp32(static_cast<int16_t>(cw_.ControlPortAddress));
}

void KeyLineDriver::WriteControl(int16_t value) {
  ports_.parallel.Out32(static_cast<int16_t>(cw_.ControlPortAddress), value);
  CheckLine(ports_.parallel);
}

void KeyLineDriver::SharedRequest(LinkCode request) {
  // Armed before a line goes active, so that a death in the request still
  // rests the logger; disarmed once both are idle.
  loggerKeyDown_ = request == LinkCode::KeyDown || (loggerKeyDown_ && request != LinkCode::KeyUp);
  loggerPTTOn_ = request == LinkCode::PTTOn || (loggerPTTOn_ && request != LinkCode::PTTOff);
  if (loggerKeyDown_ || loggerPTTOn_) ArmLoggerRest();
  // The lParam points at a 32-bit zero: the logger reads nothing from it.
  ports_.link.SendMessage(ports_.linkState.LoggerWindow, ports_.linkState.LinkMessage,
                          LineRequest(request, cw_.SharedComNumber), 0);
  ArmLoggerRest();
  // A logger that stopped answering has the key line: the transmission ends.
  CheckLine(ports_.link);
}

void KeyLineDriver::ArmLoggerRest() {
  const bool active = loggerKeyDown_ || loggerPTTOn_;
  if (active == loggerRestArmed_) return;
  loggerRestArmed_ = active;
  ports_.link.SetRestRequests(active ? ports_.linkState.LoggerWindow : 0,
                              ports_.linkState.LinkMessage, LineRequest(LinkCode::KeyUp, cw_.SharedComNumber),
                              LineRequest(LinkCode::PTTOff, cw_.SharedComNumber));
}

void KeyLineDriver::SetKeyLine(bool down) {
  if (!routeLost_) {
    if (cw_.UseParallel) {
      // The key bit is inverted by the port: clear is key down.
      const int16_t now = ReadControl();
      WriteControl(static_cast<int16_t>(down ? now & ~cw_.KeyMask : now | cw_.KeyMask));
    } else if (cw_.UseSharedSerial) {
      SharedRequest(down ? LinkCode::KeyDown : LinkCode::KeyUp);
    } else {
      ports_.cwControl.SetDTREnable(down);
      CheckLine(ports_.cwControl);
    }
  }
  c_.KeyBox.SetPicture(down ? platform::Picture::Green : platform::Picture::Red);
}

void KeyLineDriver::KeyLineDown() { SetKeyLine(true); }
void KeyLineDriver::KeyLineUp() { SetKeyLine(false); }

void KeyLineDriver::SetPTTLine(bool on) {
  if (!routeLost_) {
    if (cw_.UseParallel) {
      const int16_t now = ReadControl();
      WriteControl(static_cast<int16_t>(on ? now | cw_.PTTMask : now & ~cw_.PTTMask));
    } else if (cw_.UseSharedSerial) {
      SharedRequest(on ? LinkCode::PTTOn : LinkCode::PTTOff);
    } else {
      ports_.cwControl.SetRTSEnable(on);
      CheckLine(ports_.cwControl);
    }
  }
  c_.PTTBox.SetPicture(on ? platform::Picture::Green : platform::Picture::Red);
}

void KeyLineDriver::PTTLineOn() { SetPTTLine(true); }
void KeyLineDriver::PTTLineOff() { SetPTTLine(false); }

void KeyLineDriver::RestLines() {
  if (openRoute_ == Route::Parallel) {
    const int16_t now = ReadControl();
    ports_.parallel.Out32(static_cast<int16_t>(cw_.ControlPortAddress),
                          static_cast<int16_t>((now | cw_.KeyMask) & ~cw_.PTTMask));
  } else if (openRoute_ == Route::SharedSerial) {
    // Asked even of a logger that stopped answering: it may yet act on them.
    for (const LinkCode request : {LinkCode::KeyUp, LinkCode::PTTOff}) {
      ports_.link.SendMessage(ports_.linkState.LoggerWindow, ports_.linkState.LinkMessage,
                              LineRequest(request, cw_.SharedComNumber), 0);
    }
    ports_.link.ClearError();
    loggerKeyDown_ = false;
    loggerPTTOn_ = false;
    ArmLoggerRest();
  } else if (openRoute_ == Route::DedicatedSerial) {
    ports_.cwControl.SetDTREnable(false);
    ports_.cwControl.SetRTSEnable(false);
  }
  // PTT's box goes red with the end of the transmission, as its line would.
  c_.KeyBox.SetPicture(platform::Picture::Red);
}

void KeyLineDriver::OpenKeyerPort() {
  // The transmission in hand was keyed on the port about to change.
  if (cw_.Transmitting() && !routeLost_) AbandonTransmission("");
  routeLost_ = false;
  openRoute_ = cw_.UseParallel       ? Route::Parallel
               : cw_.UseSharedSerial ? Route::SharedSerial
                                     : Route::DedicatedSerial;
  platform::SerialPort& port = ports_.cwControl;
  if (port.PortOpen()) port.SetPortOpen(false);
  if (cw_.UseParallel) {
    cw_.ControlPortAddress = cw_.LptBaseAddress + 2;
    cw_.KeyMask = kKeyMask;
    cw_.PTTMask = kPTTMask;
    // A port that failed before is taken afresh.
    ports_.parallel.Release();
    ports_.parallel.ClearError();
  } else {
    const int16_t number = SharedComNumberOf(cw_.DedicatedSerialPort);
    if (cw_.UseSharedSerial) {
      cw_.SharedComNumber = number;
    } else {
      // Both lines low before the port opens, so that opening it keys nothing.
      port.ClearError();
      port.SetCommPort(number);
      port.SetDTREnable(false);
      port.SetRTSEnable(false);
      port.SetPortOpen(true);
      if (!port.Error().empty()) ReportPortError();
    }
  }
  ClearParallelLines();
  if (cw_.UseParallel && !ports_.parallel.Error().empty()) ShowPortError(ports_.parallel);
}

void KeyLineDriver::ClearParallelLines() {
  if (cw_.UseParallel) {
    ports_.parallel.Out32(static_cast<int16_t>(cw_.ControlPortAddress), kIdleRegister);
  }
  // Off the parallel route the parallel port is left alone. Clearing both
  // bits there would not idle it: bit 3 is inverted, so it would key down a
  // transmitter that nothing watches any more.
}

void KeyLineDriver::ReportPortError() { ShowPortError(ports_.cwControl); }

void KeyLineDriver::ShowPortError(platform::PortDevice& port) {
  const std::string reason = port.Error();
  port.ClearError();
  c_.CWTextBox.SetText(std::string(kPortErrorPrefix) + reason);
}

void KeyLineDriver::CheckLine(platform::PortDevice& port) {
  if (port.Error().empty()) return;
  // Take the error first: ending the transmission drops PTT on the same
  // port, which must not come back here.
  const std::string reason = port.Error();
  port.ClearError();
  AbandonTransmission(std::string(kPortErrorPrefix) + reason);
}

void KeyLineDriver::AbandonTransmission(const std::string& report) {
  RestLines();
  routeLost_ = true;
  // A send loop takes the mark at its end; one that starts later drops it.
  portLost_ = true;
  if (onPortLost_) onPortLost_(report);
}

}  // namespace vantrel::sending
