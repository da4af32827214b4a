#include "platform/linux/linux_serial_ports.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "support/temp_folder.h"

namespace vantrel::platform::linuxos {
namespace {

TEST(LinuxSerialPortList, NamesWhatTheKeyerCanOpenAndListsTheRestUnnamed) {
  const testing::TempFolder config, dev, sys;
  for (const char* node : {"ttyUSB0", "ttyUSB2", "ttyUSB8", "ttyACM0", "ttyS0", "ttyS1", "ttyUSBx"}) {
    std::ofstream(dev / node).put('\n');
  }
  // ttyS0 has a UART behind it, ttyS1 is an empty slot.
  for (const auto& [name, type] : {std::pair{"ttyS0", "4"}, std::pair{"ttyS1", "0"}}) {
    std::filesystem::create_directories(sys / name);
    std::ofstream(sys / name + "/type") << type << '\n';
  }
  ASSERT_EQ(::symlink((dev / "ttyACM0").c_str(), (config / "com2").c_str()), 0);
  ASSERT_EQ(::symlink((dev / "gone").c_str(), (config / "com3").c_str()), 0);

  const auto real = [](const std::string& path) { return std::filesystem::canonical(path).string(); };
  const std::vector<SerialPortChoice> ports = LinuxSerialPortList(config.path(), dev.path(), sys.path()).SerialPorts();
  ASSERT_EQ(ports.size(), 5u);
  EXPECT_EQ(ports[0].name, "Comm1");
  EXPECT_EQ(ports[0].device, real(dev / "ttyUSB0"));
  EXPECT_EQ(ports[1].name, "Comm2");  // the link wins over ttyUSB1's place
  EXPECT_EQ(ports[1].device, real(dev / "ttyACM0"));
  // com3's dangling link takes ttyUSB2's name, and a ninth adapter has none the keyer keys.
  for (size_t i = 2; i < ports.size(); ++i) EXPECT_EQ(ports[i].name, "");
  EXPECT_EQ(ports[2].device, real(dev / "ttyS0"));
  EXPECT_EQ(ports[3].device, real(dev / "ttyUSB2"));
  EXPECT_EQ(ports[4].device, real(dev / "ttyUSB8"));
}

}  // namespace
}  // namespace vantrel::platform::linuxos
