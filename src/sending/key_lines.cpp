#include "sending/key_lines.h"

#include <string_view>

namespace vantrel::sending {
namespace {

constexpr int32_t kKeyUp = 300;
constexpr int32_t kKeyDown = 400;
constexpr int32_t kPTTOn = 500;
constexpr int32_t kPTTOff = 600;
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

void KeyLineDriver::SharedRequest(int32_t base) {
  // The lParam points at a 32-bit zero: the logger reads nothing from it.
  ports_.link.SendMessage(ports_.linkState.LoggerWindow, ports_.linkState.LinkMessage,
                          base + cw_.SharedComNumber, 0);
  // A logger that stopped answering has the key line: the transmission ends.
  CheckLine(ports_.link);
}

void KeyLineDriver::SetKeyLine(int32_t request, platform::Picture picture) {
  if (cw_.UseParallel) {
    WriteControl(static_cast<int16_t>(ReadControl() ^ cw_.KeyMask));
  } else if (cw_.UseSharedSerial) {
    SharedRequest(request);
  } else {
    platform::SerialPort& port = ports_.cwControl;
    port.SetDTREnable(!port.DTREnable());
    CheckLine(port);
  }
  c_.KeyBox.SetPicture(picture);
}

void KeyLineDriver::KeyLineDown() { SetKeyLine(kKeyDown, platform::Picture::Green); }
void KeyLineDriver::KeyLineUp() { SetKeyLine(kKeyUp, platform::Picture::Red); }

void KeyLineDriver::SetPTTLine(bool on) {
  if (cw_.UseParallel) {
    const int16_t now = ReadControl();
    WriteControl(static_cast<int16_t>(on ? now | cw_.PTTMask : now & ~cw_.PTTMask));
  } else if (cw_.UseSharedSerial) {
    SharedRequest(on ? kPTTOn : kPTTOff);
  } else {
    ports_.cwControl.SetRTSEnable(on);
    CheckLine(ports_.cwControl);
  }
  c_.PTTBox.SetPicture(on ? platform::Picture::Green : platform::Picture::Red);
}

void KeyLineDriver::PTTLineOn() { SetPTTLine(true); }
void KeyLineDriver::PTTLineOff() { SetPTTLine(false); }

void KeyLineDriver::OpenKeyerPort() {
  portLost_ = false;
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
  portLost_ = true;
  if (onPortLost_) onPortLost_(std::string(kPortErrorPrefix) + reason);
}

}  // namespace vantrel::sending
