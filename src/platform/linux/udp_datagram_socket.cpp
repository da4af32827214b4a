#include "platform/linux/udp_datagram_socket.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace vantrel::platform::linuxos {
namespace {

// The largest UDP payload: no datagram is cut short.
constexpr size_t kLargestDatagram = 65535;

DatagramPeer PeerOf(const sockaddr_in& from) {
  char text[INET_ADDRSTRLEN] = {};
  ::inet_ntop(AF_INET, &from.sin_addr, text, sizeof text);
  return std::string(text) + ":" + std::to_string(ntohs(from.sin_port));
}

bool ReadPeer(const DatagramPeer& peer, sockaddr_in& to) {
  const auto colon = peer.rfind(':');
  if (colon == std::string::npos) return false;
  to = {};
  to.sin_family = AF_INET;
  const int port = std::atoi(peer.c_str() + colon + 1);
  if (port <= 0 || port > 65535) return false;
  to.sin_port = htons(static_cast<uint16_t>(port));
  return ::inet_pton(AF_INET, peer.substr(0, colon).c_str(), &to.sin_addr) == 1;
}

}  // namespace

bool UdpDatagramSocket::Admitted(in_addr_t sender, const std::vector<Network>& networks) {
  for (const Network& network : networks) {
    if ((sender & network.mask) == (network.address & network.mask)) return true;
  }
  return false;
}

std::vector<UdpDatagramSocket::Network> UdpDatagramSocket::NetworksOf(in_addr_t bound) {
  std::vector<Network> networks;
  ifaddrs* list = nullptr;
  if (::getifaddrs(&list) == 0) {
    for (const ifaddrs* each = list; each; each = each->ifa_next) {
      if (!each->ifa_addr || !each->ifa_netmask || each->ifa_addr->sa_family != AF_INET) continue;
      const in_addr_t address = reinterpret_cast<const sockaddr_in*>(each->ifa_addr)->sin_addr.s_addr;
      const in_addr_t mask = reinterpret_cast<const sockaddr_in*>(each->ifa_netmask)->sin_addr.s_addr;
      if (bound == htonl(INADDR_ANY) || address == bound) networks.push_back({address, mask});
    }
    ::freeifaddrs(list);
  }
  // Loopback is its own /8 even where the interface list says otherwise.
  if ((ntohl(bound) >> 24) == 127 && networks.empty()) networks.push_back({bound, htonl(0xFF000000)});
  return networks;
}

bool UdpDatagramSocket::Open(const std::string& address, uint16_t port, std::string& error) {
  Close();
  sockaddr_in local{};
  local.sin_family = AF_INET;
  local.sin_port = htons(port);
  if (::inet_pton(AF_INET, address.c_str(), &local.sin_addr) != 1) {
    error = "Address=" + address + " in [Network] is not an IPv4 address";
    return false;
  }
  fd_ = ::socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  if (fd_ < 0 || ::bind(fd_, reinterpret_cast<const sockaddr*>(&local), sizeof local) != 0) {
    error = "UDP " + address + ":" + std::to_string(port) + ": " + std::strerror(errno);
    if (errno == EADDRINUSE) error += " (is cwdaemon running?)";
    Close();
    return false;
  }
  networks_ = NetworksOf(local.sin_addr.s_addr);
  watch_.Watch(fd_, [this] { ReadAll(); });
  return true;
}

void UdpDatagramSocket::Close() {
  if (fd_ < 0) return;
  watch_.Unwatch(fd_);
  ::close(fd_);
  fd_ = -1;
}

// A handler may start a transmission that pumps events, and so come back
// here for the next datagram before it returns: each is taken off first.
void UdpDatagramSocket::ReadAll() {
  std::string buffer(kLargestDatagram, '\0');
  while (fd_ >= 0) {
    sockaddr_in from{};
    socklen_t length = sizeof from;
    const ssize_t got = ::recvfrom(fd_, buffer.data(), buffer.size(), 0, reinterpret_cast<sockaddr*>(&from), &length);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return;
    if (!Admitted(from.sin_addr.s_addr, networks_)) continue;
    if (handler_) handler_(buffer.substr(0, static_cast<size_t>(got)), PeerOf(from));
  }
}

void UdpDatagramSocket::SendTo(const DatagramPeer& to, const std::string& bytes) {
  sockaddr_in peer{};
  if (fd_ < 0 || !ReadPeer(to, peer)) return;
  ::sendto(fd_, bytes.data(), bytes.size(), MSG_DONTWAIT | MSG_NOSIGNAL, reinterpret_cast<const sockaddr*>(&peer),
           sizeof peer);
}

}  // namespace vantrel::platform::linuxos
