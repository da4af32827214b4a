// The key and PTT ports in memory: a parallel port's registers and a serial
// port's modem lines, each change in the trace, with a device that can be
// unplugged under a running keyer. The serial port also carries bytes to and
// from a device on its data lines.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include "platform/memory/trace.h"
#include "platform/ports.h"

namespace vantrel::platform::memory {

class MemoryParallelPort : public ParallelPort {
 public:
  explicit MemoryParallelPort(Trace& trace) : trace_(trace) {}

  int16_t Inp32(int16_t port) override;
  void Out32(int16_t port, int16_t value) override;
  void Release() override { failed_ = false; }
  std::string Error() const override { return error_; }
  void ClearError() override { error_.clear(); }

  // What each register holds; a port never written reads `powerOn`.
  std::map<int16_t, int16_t> registers;
  int16_t powerOn = 0x0C;
  // Makes every access fail from now on, as a device that has gone.
  void Unplug() { unplugged_ = true; }

 private:
  bool Failing();

  Trace& trace_;
  std::string error_;
  bool unplugged_ = false;
  bool failed_ = false;
};

// What sits at the far end of an in-memory serial port's data lines.
class SerialDevice {
 public:
  virtual ~SerialDevice() = default;
  // The keyer wrote these.
  virtual void Take(const std::string& bytes) = 0;
  // What the device has sent by now that the port has not taken yet.
  virtual std::string Sent() = 0;
};

class MemorySerialPort : public SerialPort {
 public:
  explicit MemorySerialPort(Trace& trace) : trace_(trace) {}

  int16_t CommPort() const override { return commPort_; }
  void SetCommPort(int16_t number) override { commPort_ = number; }
  bool PortOpen() const override { return open_; }
  void SetPortOpen(bool open) override;
  bool DTREnable() const override { return dtr_; }
  void SetDTREnable(bool enable) override { SetLine(dtr_, enable, "dtr"); }
  bool RTSEnable() const override { return rts_; }
  void SetRTSEnable(bool enable) override { SetLine(rts_, enable, "rts"); }
  int InBufferCount() override;
  std::string Input() override;
  void Output(const std::string& bytes) override;
  void OnReceive(std::function<void()> handler) override { onReceive_ = std::move(handler); }
  std::string Error() const override { return error_; }
  void ClearError() override { error_.clear(); }

  // Bytes the device has sent and the keyer has not read.
  std::string incoming;
  // The device on the data lines, if any; it may send at any time.
  SerialDevice* device = nullptr;
  // Bytes come in: the notification runs if the port is open.
  void Deliver(const std::string& bytes);
  // The device has sent something: the notification runs if bytes wait.
  void Arrive();
  // The port numbers that have a device behind them.
  int16_t firstPresent = 1;
  int16_t lastPresent = 8;
  // The device goes away: an open port fails at its next line change.
  void Unplug() { unplugged_ = true; }

 private:
  bool Present() const;
  void SetLine(bool& line, bool value, const char* name);
  // Takes in what the device has sent; a device that has gone closes the port.
  void Collect();
  void Lose();

  Trace& trace_;
  int16_t commPort_ = 1;
  bool open_ = false;
  bool dtr_ = false;
  bool rts_ = false;
  bool unplugged_ = false;
  std::string error_;
  std::function<void()> onReceive_;
};

}  // namespace vantrel::platform::memory
