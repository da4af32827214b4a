// The ports that carry the key and PTT lines. Like the controls they stand
// for, they do not throw: a failure leaves a pending error, with the
// system's own description, for the caller to look at when it matters.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace vantrel::platform {

class PortDevice {
 public:
  virtual ~PortDevice() = default;
  // The description of the pending error; empty when there is none.
  virtual std::string Error() const = 0;
  virtual void ClearError() = 0;
};

// Direct access to I/O ports by number, as the parallel port is driven.
class ParallelPort : public PortDevice {
 public:
  virtual int16_t Inp32(int16_t port) = 0;
  virtual void Out32(int16_t port, int16_t value) = 0;
  // Gives the device back; the next access takes it afresh. A device that
  // failed stays silent until then, so a lost port reports once.
  virtual void Release() = 0;
};

// The serial port control: a port by number, opened and closed by setting a
// property, and two modem lines that keep their value while it is closed.
// A failing line change closes the port.
class SerialPort : public PortDevice {
 public:
  virtual int16_t CommPort() const = 0;
  virtual void SetCommPort(int16_t number) = 0;
  virtual bool PortOpen() const = 0;
  virtual void SetPortOpen(bool open) = 0;
  virtual bool DTREnable() const = 0;
  virtual void SetDTREnable(bool enable) = 0;
  virtual bool RTSEnable() const = 0;
  virtual void SetRTSEnable(bool enable) = 0;
  // The data side, for a keyer chip on the port: how many bytes wait, all
  // of them at once, and bytes out.
  virtual int InBufferCount() = 0;
  virtual std::string Input() = 0;
  virtual void Output(const std::string& bytes) = 0;
  // Runs on the event loop's thread whenever bytes have come in while the
  // port is open: the chip's replies come unasked.
  virtual void OnReceive(std::function<void()> handler) = 0;
};

}  // namespace vantrel::platform
