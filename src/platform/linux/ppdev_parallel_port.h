// The parallel port through ppdev: the keyer's port numbers are the control
// register addresses of the PC ports, and each maps to the /dev/parportN
// that the kernel found at that base address.
#pragma once

#include <cstdint>
#include <string>

#include "platform/ports.h"

namespace vantrel::platform::linuxos {

inline constexpr char kParportProcRoot[] = "/proc/sys/dev/parport";

// The /dev/parportN whose base address (the first number of
// `procRoot`/parportN/base-addr) is `base`; empty when no port has it.
std::string FindParportDevice(const std::string& procRoot, unsigned base);

class PpdevParallelPort final : public ParallelPort {
 public:
  // A non-empty `device` serves every address, for rigs without a PC port
  // (a USB or PCIe card the kernel does not list at a legacy address).
  explicit PpdevParallelPort(std::string procRoot = kParportProcRoot, std::string device = {});
  // Gives the device back, as Release; the lines stay as last written.
  ~PpdevParallelPort() override;
  PpdevParallelPort(const PpdevParallelPort&) = delete;
  PpdevParallelPort& operator=(const PpdevParallelPort&) = delete;

  std::string Error() const override { return error_; }
  void ClearError() override { error_.clear(); }

  // `port` is a control register address (base + 2). Only the four line
  // bits come back and only they are written: bit 5 would turn the data
  // lines around, bit 4 enable the interrupt.
  int16_t Inp32(int16_t port) override;
  void Out32(int16_t port, int16_t value) override;
  void Release() override;

  // The claimed device's descriptor, -1 when none.
  int fd() const { return fd_; }
  // The device now claimed, or that failed; empty before the first access.
  const std::string& device() const { return devicePath_; }

 private:
  // Claims the device behind `address`; false when it is not to be had.
  bool Take(unsigned address);
  void Drop();
  void Fail(const std::string& text);

  const std::string procRoot_;
  const std::string fixedDevice_;
  std::string devicePath_;
  unsigned address_ = 0;
  int fd_ = -1;
  bool failed_ = false;
  std::string error_;
};

}  // namespace vantrel::platform::linuxos
