// The key and PTT lines of the software keyer on its three routes: the
// parallel port's control register, the logger's serial port by request,
// or the dedicated serial port's DTR (key) and RTS (PTT).
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "loggerlink/link_state.h"
#include "platform/link_channel.h"
#include "platform/main_window_controls.h"
#include "platform/ports.h"
#include "sending/cw_state.h"

namespace vantrel::sending {

struct LinePorts {
  platform::ParallelPort& parallel;
  platform::SerialPort& cwControl;
  platform::LinkChannel& link;
  const loggerlink::LinkState& linkState;
};

// "Comm1" to "Comm8" give 1 to 8; every other name 0.
int16_t SharedComNumberOf(const std::string& portName);

class KeyLineDriver {
 public:
  static constexpr int16_t kIdleRegister = 11;  // key bit set (pin low), PTT bit clear

  KeyLineDriver(CwState& cw, platform::MainWindowControls& controls, LinePorts ports)
      : cw_(cw), c_(controls), ports_(ports) {}

  // What ends a transmission, and shows `report`, when its port fails under it.
  void OnPortLost(std::function<void(const std::string& report)> handler) {
    onPortLost_ = std::move(handler);
  }
  // True once after a port failed under a transmission, which has been
  // stopped there: the send loop then has nothing left to end of it.
  bool TakePortLost() { return std::exchange(portLost_, false); }

  // Down and up toggle the line on the parallel and dedicated routes, so
  // callers pair them from the idle state that OpenKeyerPort sets.
  void KeyLineDown();
  void KeyLineUp();
  // These set a level, so repeating one leaves the line where it is.
  void PTTLineOn();
  void PTTLineOff();

  void OpenKeyerPort();
  void ClearParallelLines();
  // Shows the pending error of the serial control in the text box.
  void ReportPortError();

 private:
  void SetKeyLine(int32_t request, platform::Picture picture);
  void SetPTTLine(bool on);
  void SharedRequest(int32_t base);
  void ShowPortError(platform::PortDevice& port);
  // A line change that failed on an open port: the port is gone mid-sending.
  void CheckLine(platform::PortDevice& port);
  int16_t ReadControl();
  void WriteControl(int16_t value);

  CwState& cw_;
  platform::MainWindowControls& c_;
  LinePorts ports_;
  std::function<void(const std::string&)> onPortLost_;
  bool portLost_ = false;
};

}  // namespace vantrel::sending
