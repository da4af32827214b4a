// The listener on a real UDP socket on loopback, the keyer behind it in virtual time.
#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

#include "cwdaemon/cw_daemon.h"
#include "platform/linux/udp_datagram_socket.h"
#include "support/keyer_fixture.h"

namespace vantrel::cwdaemon {
namespace {

using platform::linuxos::UdpDatagramSocket;

// The event loop's side: runs a handler when its descriptor is readable.
class PollWatch : public platform::linuxos::DescriptorWatch {
 public:
  void Watch(int fd, std::function<void()> readable) override { watched_[fd] = std::move(readable); }
  void Unwatch(int fd) override { watched_.erase(fd); }
  // Waits up to `ms` for one readable descriptor and runs its handler.
  bool RunOnce(int ms) {
    for (auto& [fd, handler] : watched_) {
      pollfd one{fd, POLLIN, 0};
      if (::poll(&one, 1, ms) == 1) {
        handler();
        return true;
      }
    }
    return false;
  }
  bool Watching() const { return !watched_.empty(); }

 private:
  std::map<int, std::function<void()>> watched_;
};

// A logger's socket on loopback.
class Client {
 public:
  Client() : fd_(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {}
  ~Client() { ::close(fd_); }
  void Send(uint16_t port, const std::string& bytes) const {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(port);
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::sendto(fd_, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
  }
  // What arrives within a generous bound; empty when nothing does.
  std::string Receive(int ms) const {
    pollfd one{fd_, POLLIN, 0};
    if (::poll(&one, 1, ms) != 1) return "";
    char buffer[512];
    const ssize_t got = ::recv(fd_, buffer, sizeof buffer, 0);
    return got > 0 ? std::string(buffer, static_cast<size_t>(got)) : "";
  }

 private:
  int fd_;
};

// A port nobody holds now: the system picks it, and it is let go at once.
uint16_t FreePort() {
  const int fd = ::socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in any{};
  any.sin_family = AF_INET;
  any.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  ::bind(fd, reinterpret_cast<const sockaddr*>(&any), sizeof any);
  socklen_t length = sizeof any;
  ::getsockname(fd, reinterpret_cast<sockaddr*>(&any), &length);
  ::close(fd);
  return ntohs(any.sin_port);
}

constexpr int kGenerousMs = 5000;

class UdpLoopback : public testing::KeyerFixture {
 protected:
  PollWatch watch;
  UdpDatagramSocket socket{watch};
  platform::memory::MemoryTimer tuneTimer{p.queue};
  platform::memory::MemoryTimer replyTimer{p.queue};
  CwDaemon daemon{{cw, p.controls, control, text, keyer.form, keyer.store},
                  socket,
                  tuneTimer,
                  replyTimer};
};

TEST_F(UdpLoopback, DatagramsInKeyEdgesOutReplyBack) {
  const uint16_t port = FreePort();
  Start({{"Slow Typing", "OFF"}, {"Port", std::to_string(port)}});
  daemon.Listen();
  ASSERT_TRUE(watch.Watching());

  Client logger;
  logger.Send(port, "\x1B" "hdone");
  ASSERT_TRUE(watch.RunOnce(kGenerousMs));
  logger.Send(port, "ee\n");
  // The whole text goes out in virtual time inside this one handler.
  ASSERT_TRUE(watch.RunOnce(kGenerousMs));
  Run();
  // After the Tx delay, two dots a letter space apart.
  EXPECT_EQ(TimesOf("keybox green"), (std::vector<double>{100, 340}));
  EXPECT_EQ(TimesOf("keybox red"), (std::vector<double>{160, 400}));
  EXPECT_EQ(logger.Receive(kGenerousMs), "hdone\r\n");
}

TEST_F(UdpLoopback, APortTakenByAnotherDaemonIsRefusedWithTheReason) {
  const uint16_t port = FreePort();
  PollWatch otherWatch;
  UdpDatagramSocket other{otherWatch};
  std::string error;
  ASSERT_TRUE(other.Open("127.0.0.1", port, error)) << error;
  EXPECT_FALSE(socket.Open("127.0.0.1", port, error));
  EXPECT_NE(error.find("Address already in use"), std::string::npos) << error;
  EXPECT_FALSE(watch.Watching());
}

TEST_F(UdpLoopback, AnAddressThatIsNotIPv4IsRefused) {
  std::string error;
  EXPECT_FALSE(socket.Open("localhost", FreePort(), error));
  EXPECT_NE(error.find("not an IPv4 address"), std::string::npos);
}

TEST(NetworkFilter, OnlyTheBoundAddressesNetworksGetIn) {
  const auto ip = [](const char* text) { return ::inet_addr(text); };
  const std::vector<UdpDatagramSocket::Network> loopback = UdpDatagramSocket::NetworksOf(ip("127.0.0.1"));
  ASSERT_FALSE(loopback.empty());
  EXPECT_TRUE(UdpDatagramSocket::Admitted(ip("127.0.0.1"), loopback));
  EXPECT_TRUE(UdpDatagramSocket::Admitted(ip("127.3.2.1"), loopback));
  EXPECT_FALSE(UdpDatagramSocket::Admitted(ip("192.168.1.20"), loopback));

  const std::vector<UdpDatagramSocket::Network> lan{{ip("192.168.1.10"), ip("255.255.255.0")}};
  EXPECT_TRUE(UdpDatagramSocket::Admitted(ip("192.168.1.77"), lan));
  EXPECT_FALSE(UdpDatagramSocket::Admitted(ip("192.168.2.77"), lan));
  EXPECT_FALSE(UdpDatagramSocket::Admitted(ip("10.0.0.1"), {}));
}

}  // namespace
}  // namespace vantrel::cwdaemon
