// The key and PTT lines of the software keyer on its three routes: the
// parallel port's control register, the logger's serial port by request,
// or the dedicated serial port's DTR (key) and RTS (PTT).
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "platform/link_channel.h"
#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "platform/ports.h"
#include "sending/cw_state.h"
#include "state/link_state.h"

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

  // What ends a transmission, and shows `report`, when its port fails under
  // it or is opened afresh (then `report` is empty).
  void OnPortLost(std::function<void(const std::string& report)> handler) {
    onPortLost_ = std::move(handler);
  }
  // True once after a port failed under a send loop, which has been stopped
  // there: the loop then has nothing left to end of it.
  bool TakePortLost() { return std::exchange(portLost_, false); }

  // All four set a level, so that a line never depends on the calls before
  // it: a port reopened between a down and its up cannot invert the key.
  void KeyLineDown();
  void KeyLineUp();
  void PTTLineOn();
  void PTTLineOff();

  void OpenKeyerPort();
  void ClearParallelLines();
  // Shows the pending error of the serial control in the text box.
  void ReportPortError();

 private:
  void SetKeyLine(bool down);
  void SetPTTLine(bool on);
  // Both lines idle on the route last opened, even a failed one: Apply has
  // changed the settings to the next route before it opens it.
  void RestLines();
  void SharedRequest(platform::LinkCode request);
  // Hands the channel the logger's rest while one of its lines is active.
  void ArmLoggerRest();
  void ShowPortError(platform::PortDevice& port);
  // A line change that failed on an open port: the port is gone mid-sending.
  void CheckLine(platform::PortDevice& port);
  // Ends the transmission on the port: lines idle, nothing more sent to them
  // until the port is opened again.
  void AbandonTransmission(const std::string& report);
  int16_t ReadControl();
  void WriteControl(int16_t value);

  CwState& cw_;
  platform::MainWindowControls& c_;
  LinePorts ports_;
  enum class Route { None, Parallel, SharedSerial, DedicatedSerial };
  Route openRoute_ = Route::None;
  std::function<void(const std::string&)> onPortLost_;
  bool portLost_ = false;
  // A failed route stays quiet: the report that ends its transmission is
  // text like any other, and keying it on the same route would fail again.
  bool routeLost_ = false;
  // The logger's lines as last requested, and whether its rest is armed.
  bool loggerKeyDown_ = false;
  bool loggerPTTOn_ = false;
  bool loggerRestArmed_ = false;
};

}  // namespace vantrel::sending
