#include "platform/linux/ppdev_parallel_port.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "support/temp_folder.h"

namespace vantrel::platform::linuxos {
namespace {

// A /proc/sys/dev/parport look-alike. The ports are numbered in the nineties
// so that no real /dev/parportN answers for them.
class PpdevParallelPortTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Port("parport90", "888\t-1\n");       // &H378
    Port("parport91", "632\t1912\n");     // &H278
    Port("parport92", "53264\t53248\n");  // &HD010, a PCIe card
    Port("parport93", "");
    Port("parport910", "888\t-1\n");  // a later port claiming the same base
    std::filesystem::create_directories(root_ + "/default");
  }

  void Port(const std::string& name, const std::string& baseAddr) {
    std::filesystem::create_directories(root_ + "/" + name);
    std::ofstream(root_ + "/" + name + "/base-addr") << baseAddr;
  }

  testing::TempFolder folder_;
  const std::string root_ = folder_.path();
};

TEST_F(PpdevParallelPortTest, FindsTheDeviceByDecimalBaseAddress) {
  for (const auto& [base, device] : {std::pair{0x378, "/dev/parport90"}, {0x278, "/dev/parport91"},
                                     {0xD010, "/dev/parport92"}, {1912, ""}, {0x3BC, ""}}) {
    EXPECT_EQ(FindParportDevice(root_, base), device) << base;
  }
  EXPECT_EQ(FindParportDevice(root_ + "/missing", 0x378), "");
}

TEST_F(PpdevParallelPortTest, MissingPortReportsOnceUntilReleased) {
  PpdevParallelPort port(root_);
  EXPECT_EQ(port.Inp32(0x3BE), 0xFF);
  EXPECT_EQ(port.Error(), "No parallel port at address &H3BC");
  port.ClearError();
  port.Out32(0x3BE, 11);
  port.Out32(0x37A, 11);
  EXPECT_EQ(port.Error(), "");
  port.Release();
  port.Out32(0x3BE, 11);
  EXPECT_EQ(port.Error(), "No parallel port at address &H3BC");
}

TEST_F(PpdevParallelPortTest, ErrorNamesTheDeviceItCouldNotOpen) {
  PpdevParallelPort port(root_);
  // 0xD012 does not fit a signed 16-bit port number: it arrives negative.
  port.Out32(static_cast<int16_t>(0xD012), 11);
  EXPECT_EQ(port.Error(), "/dev/parport92: No such file or directory");
  EXPECT_EQ(port.fd(), -1);
}

TEST_F(PpdevParallelPortTest, DeviceThatIsNotAParallelPortFailsTheClaim) {
  const std::string file = root_ + "/not-a-port";
  std::ofstream(file) << "x";
  PpdevParallelPort port(root_, file);
  port.Out32(0x37A, 11);
  EXPECT_EQ(port.Error(), file + ": Inappropriate ioctl for device");
  EXPECT_EQ(port.fd(), -1);
  EXPECT_EQ(port.device(), file);
}

}  // namespace
}  // namespace vantrel::platform::linuxos
