// The serial port control on a Linux tty. For the software keyer it carries
// no data, only two lines: DTR keys, RTS is the PTT. A keyer chip on it
// takes and sends bytes as well.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/linux/descriptor_watch.h"
#include "platform/ports.h"

namespace vantrel::platform::linuxos {

class TermiosSerialPort final : public SerialPort {
 public:
  // The device path for a port number; empty when there is no such port.
  using PathResolver = std::function<std::string(int16_t number)>;

  // Ports resolved by CommDevicePath in `configDir`.
  explicit TermiosSerialPort(const std::string& configDir);
  explicit TermiosSerialPort(PathResolver resolve);
  ~TermiosSerialPort() override;
  TermiosSerialPort(const TermiosSerialPort&) = delete;
  TermiosSerialPort& operator=(const TermiosSerialPort&) = delete;

  std::string Error() const override { return error_; }
  void ClearError() override { error_.clear(); }

  int16_t CommPort() const override { return number_; }
  // Refused while the port is open, as the control it stands for refuses.
  void SetCommPort(int16_t number) override;
  bool PortOpen() const override { return fd_ >= 0; }
  // Opens at 1200 baud 8N2, raw, without flow control and with HUPCL, and
  // sets DTR and RTS as their values say the moment the device is open.
  void SetPortOpen(bool open) override;
  // A tty without modem lines, such as a pseudo-terminal, keeps the values
  // and changes nothing: there is no line to key.
  bool DTREnable() const override { return dtr_; }
  void SetDTREnable(bool enable) override;
  bool RTSEnable() const override { return rts_; }
  void SetRTSEnable(bool enable) override;
  int InBufferCount() override;
  // A device that has gone away (read fails, or hangs up) closes the port
  // with the system's reason.
  std::string Input() override;
  // Waits, briefly, for room in the driver; a port that takes nothing
  // for that long, or refuses the bytes, fails and closes.
  void Output(const std::string& bytes) override;
  // Needs a watch, given by UseWatch; without one no notification comes.
  void OnReceive(std::function<void()> handler) override;
  void UseWatch(DescriptorWatch& watch) { watch_ = &watch; }

  // The open descriptor, -1 while closed.
  int fd() const { return fd_; }

 private:
  void Open();
  void Close();
  // Changes the lines of the open port; a failure closes it.
  void ChangeLines(unsigned long request, int bits);
  void Fail(const std::string& text);

  void StartWatching();

  PathResolver resolve_;
  DescriptorWatch* watch_ = nullptr;
  std::function<void()> onReceive_;
  bool hasLines_ = true;
  int16_t number_ = 1;
  bool dtr_ = false;
  bool rts_ = false;
  int fd_ = -1;
  std::string error_;
};

}  // namespace vantrel::platform::linuxos
