#include "platform/linux/comm_port_path.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "support/temp_folder.h"

namespace vantrel::platform::linuxos {
namespace {

TEST(CommDevicePath, NumbersOutsideOneToNinetyNineHaveNoDevice) {
  for (const int16_t number : {0, -1, 100, INT16_MIN}) {
    EXPECT_EQ(CommDevicePath(number, ""), "") << number;
  }
  EXPECT_EQ(CommDevicePath(1, ""), "/dev/ttyUSB0");
  EXPECT_EQ(CommDevicePath(99, "/nonexistent"), "/dev/ttyUSB98");
}

TEST(CommDevicePath, LinkInConfigDirectoryWinsEvenWhenDangling) {
  const testing::TempFolder folder;
  const std::string& dir = folder.path();
  ASSERT_EQ(::symlink("/dev/null", (dir + "/com1").c_str()), 0);
  ASSERT_EQ(::symlink("/dev/serial/by-id/unplugged", (dir + "/com12").c_str()), 0);

  EXPECT_EQ(CommDevicePath(1, dir), dir + "/com1");
  EXPECT_EQ(CommDevicePath(12, dir), dir + "/com12");
  // com1 must not stand for com10, nor com12 for com1x.
  EXPECT_EQ(CommDevicePath(10, dir), "/dev/ttyUSB9");
  EXPECT_EQ(CommDevicePath(2, dir), "/dev/ttyUSB1");
}

TEST(ParallelDevicePath, OnlyAParportEntryNamesADevice) {
  const testing::TempFolder folder;
  const std::string& dir = folder.path();
  EXPECT_EQ(ParallelDevicePath(""), "");
  EXPECT_EQ(ParallelDevicePath(dir), "");
  ASSERT_EQ(::symlink("/dev/parport-gone", (dir + "/parport").c_str()), 0);
  EXPECT_EQ(ParallelDevicePath(dir), dir + "/parport");
}

}  // namespace
}  // namespace vantrel::platform::linuxos
