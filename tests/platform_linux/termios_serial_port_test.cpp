#include "platform/linux/termios_serial_port.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <optional>
#include <string>

#include "support/temp_folder.h"

namespace vantrel::platform::linuxos {
namespace {

constexpr char kNoLines[] = "Inappropriate ioctl for device";

// Port 3 is a pseudo-terminal through a com3 link. A pty has no modem
// lines, so any line asked for while it is open fails as a pulled adapter
// would.
class TermiosSerialPortTest : public ::testing::Test {
 protected:
  void SetUp() override {
    master_ = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_GE(master_, 0);
    ASSERT_EQ(::grantpt(master_), 0);
    ASSERT_EQ(::unlockpt(master_), 0);
    pts_ = ::ptsname(master_);
    ASSERT_EQ(::symlink(pts_.c_str(), (dir_ + "/com3").c_str()), 0);
    port_.emplace(dir_);
    port_->SetCommPort(3);
  }
  void TearDown() override {
    port_.reset();
    if (master_ >= 0) ::close(master_);
  }

  testing::TempFolder folder_;
  const std::string dir_ = folder_.path();
  int master_ = -1;
  std::string pts_;
  std::optional<TermiosSerialPort> port_;
};

TEST_F(TermiosSerialPortTest, OpensAt1200EightDataTwoStopRawWithHangupOnClose) {
  // Start from settings that are wrong in every respect we care about.
  const int slave = ::open(pts_.c_str(), O_RDWR | O_NOCTTY);
  termios before{};
  ASSERT_EQ(::tcgetattr(slave, &before), 0);
  before.c_cflag = (before.c_cflag & ~(CSIZE | HUPCL | CLOCAL)) | CS7 | PARENB | CRTSCTS;
  before.c_lflag |= ICANON | ECHO | ISIG;
  before.c_iflag |= IXON;
  ::cfsetspeed(&before, B9600);
  ASSERT_EQ(::tcsetattr(slave, TCSANOW, &before), 0);
  ::close(slave);

  port_->SetPortOpen(true);
  ASSERT_TRUE(port_->PortOpen()) << port_->Error();
  EXPECT_EQ(port_->Error(), "");
  termios t{};
  ASSERT_EQ(::tcgetattr(port_->fd(), &t), 0);
  EXPECT_EQ(::cfgetospeed(&t), B1200);
  EXPECT_EQ(::cfgetispeed(&t), B1200);
  EXPECT_EQ(t.c_cflag & CSIZE, static_cast<tcflag_t>(CS8));
  EXPECT_EQ(t.c_cflag & (CSTOPB | HUPCL | CLOCAL | CREAD),
            static_cast<tcflag_t>(CSTOPB | HUPCL | CLOCAL | CREAD));
  EXPECT_EQ(t.c_cflag & (PARENB | CRTSCTS), 0u);
  EXPECT_EQ(t.c_lflag & (ICANON | ECHO | ISIG), 0u);
  EXPECT_EQ(t.c_iflag & (IXON | IXOFF | ICRNL), 0u);
  EXPECT_EQ(t.c_oflag & OPOST, 0u);
}

TEST_F(TermiosSerialPortTest, OpenFailuresLeaveTheSystemsReason) {
  for (const int16_t number : {0, 100}) {
    port_->SetCommPort(number);
    port_->SetPortOpen(true);
    EXPECT_FALSE(port_->PortOpen());
    EXPECT_EQ(port_->Error(), "Invalid port number");
    port_->ClearError();
  }
  ASSERT_EQ(::symlink((dir_ + "/gone").c_str(), (dir_ + "/com4").c_str()), 0);
  port_->SetCommPort(4);
  port_->SetPortOpen(true);
  EXPECT_FALSE(port_->PortOpen());
  EXPECT_EQ(port_->Error(), "No such file or directory");

  // Not a tty at all.
  port_->ClearError();
  ASSERT_EQ(::symlink("/dev/null", (dir_ + "/com5").c_str()), 0);
  port_->SetCommPort(5);
  port_->SetPortOpen(true);
  EXPECT_FALSE(port_->PortOpen());
  EXPECT_EQ(port_->Error(), kNoLines);
}

TEST_F(TermiosSerialPortTest, UnreadableDeviceIsPermissionDenied) {
  ASSERT_EQ(::chmod(pts_.c_str(), 0), 0);
  ASSERT_EQ(::chmod(dir_.c_str(), 0755), 0);
  // Root reads anything: try it as nobody in a child.
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) ::_exit(77);
    TermiosSerialPort port(dir_);
    port.SetCommPort(3);
    port.SetPortOpen(true);
    ::_exit(!port.PortOpen() && port.Error() == "Permission denied" ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "cannot drop root here";
  EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(TermiosSerialPortTest, ClosedPortRemembersLinesSilentlyAndReopens) {
  port_->SetDTREnable(true);
  port_->SetRTSEnable(true);
  EXPECT_TRUE(port_->DTREnable());
  EXPECT_TRUE(port_->RTSEnable());
  port_->SetDTREnable(false);
  port_->SetRTSEnable(false);
  EXPECT_FALSE(port_->DTREnable());
  EXPECT_EQ(port_->Error(), "");

  for (int round = 0; round < 2; ++round) {
    port_->SetPortOpen(true);
    ASSERT_TRUE(port_->PortOpen()) << port_->Error();
    port_->SetPortOpen(true);
    port_->SetCommPort(7);
    EXPECT_EQ(port_->Error(), "Port already open");
    EXPECT_EQ(port_->CommPort(), 3);
    port_->ClearError();
    port_->SetPortOpen(false);
    EXPECT_FALSE(port_->PortOpen());
    EXPECT_EQ(port_->fd(), -1);
  }
}

// A keyer chip, or its simulator, on a pty: the lines are kept as values
// and the port stays open to carry bytes.
TEST_F(TermiosSerialPortTest, TerminalWithoutModemLinesKeepsThemAsValues) {
  port_->SetDTREnable(true);
  port_->SetPortOpen(true);
  EXPECT_TRUE(port_->PortOpen()) << port_->Error();
  port_->SetRTSEnable(true);
  port_->SetDTREnable(false);
  EXPECT_TRUE(port_->PortOpen());
  EXPECT_EQ(port_->Error(), "");
  EXPECT_FALSE(port_->DTREnable());
  EXPECT_TRUE(port_->RTSEnable());
}

// The far end closing is a device gone: reported once, the port closed.
TEST_F(TermiosSerialPortTest, HangUpClosesThePortWithTheReason) {
  port_->SetPortOpen(true);
  ASSERT_TRUE(port_->PortOpen());
  ::close(master_);
  master_ = -1;
  EXPECT_EQ(port_->Input(), "");
  EXPECT_FALSE(port_->PortOpen());
  EXPECT_NE(port_->Error(), "");
}

// A chip's bytes in both directions, unchanged: raw mode keeps CR, NUL and
// high bytes as they are.
TEST_F(TermiosSerialPortTest, BytesPassBothWaysAsTheyAre) {
  EXPECT_EQ(port_->InBufferCount(), 0);  // closed: nothing, no error
  EXPECT_EQ(port_->Input(), "");
  port_->SetPortOpen(true);
  ASSERT_TRUE(port_->PortOpen()) << port_->Error();
  const std::string toHost("\x0a\r\x00\xc4" "E", 5);
  ASSERT_EQ(::write(master_, toHost.data(), toHost.size()), 5);
  for (int tries = 0; tries < 100 && port_->InBufferCount() < 5; ++tries) ::usleep(1000);
  EXPECT_EQ(port_->InBufferCount(), 5);
  EXPECT_EQ(port_->Input(), toHost);
  EXPECT_EQ(port_->Input(), "");  // all was taken
  const std::string toChip("\x00\x02\x0f\xff\n", 5);
  port_->Output(toChip);
  EXPECT_EQ(port_->Error(), "");
  char got[16] = {};
  ssize_t n = 0;
  for (int tries = 0; tries < 100 && n <= 0; ++tries, ::usleep(1000)) n = ::read(master_, got, sizeof got);
  EXPECT_EQ(std::string(got, n > 0 ? static_cast<size_t>(n) : 0), toChip);
}

TEST_F(TermiosSerialPortTest, DestructorClosesTheDevice) {
  {
    TermiosSerialPort port(dir_);
    port.SetCommPort(3);
    port.SetPortOpen(true);
    ASSERT_TRUE(port.PortOpen());
    char byte;
    EXPECT_EQ(::read(master_, &byte, 1), -1);
    EXPECT_EQ(errno, EAGAIN);
  }
  // The master reads EIO once no slave is left open.
  char byte;
  EXPECT_EQ(::read(master_, &byte, 1), -1);
  EXPECT_EQ(errno, EIO);
}

}  // namespace
}  // namespace vantrel::platform::linuxos
