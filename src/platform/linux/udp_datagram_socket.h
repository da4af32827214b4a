// The cwdaemon listener's socket: UDP over IPv4, read on the program's event
// loop through a descriptor watch, deaf to datagrams from other networks.
#pragma once

#include <netinet/in.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/datagram_socket.h"
#include "platform/linux/descriptor_watch.h"

namespace vantrel::platform::linuxos {

class UdpDatagramSocket : public DatagramSocket {
 public:
  explicit UdpDatagramSocket(DescriptorWatch& watch) : watch_(watch) {}
  ~UdpDatagramSocket() override { Close(); }
  UdpDatagramSocket(const UdpDatagramSocket&) = delete;
  UdpDatagramSocket& operator=(const UdpDatagramSocket&) = delete;

  bool Open(const std::string& address, uint16_t port, std::string& error) override;
  void Close() override;
  void OnDatagram(std::function<void(const std::string&, const DatagramPeer&)> handler) override {
    handler_ = std::move(handler);
  }
  void SendTo(const DatagramPeer& to, const std::string& bytes) override;

  // Whether a sender's address lies in one of the networks `networks` names,
  // each an address and its mask in network order.
  struct Network {
    in_addr_t address;
    in_addr_t mask;
  };
  static bool Admitted(in_addr_t sender, const std::vector<Network>& networks);
  // The networks of this machine's interfaces that `bound` is on; all of
  // them for the any-address.
  static std::vector<Network> NetworksOf(in_addr_t bound);

 private:
  void ReadAll();

  DescriptorWatch& watch_;
  int fd_ = -1;
  std::vector<Network> networks_;
  std::function<void(const std::string&, const DatagramPeer&)> handler_;
};

}  // namespace vantrel::platform::linuxos
