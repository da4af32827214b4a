// A datagram socket in memory: tests and the runner deliver datagrams to it,
// and it keeps what the keyer answered.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/datagram_socket.h"

namespace vantrel::platform::memory {

class MemoryDatagramSocket : public DatagramSocket {
 public:
  bool Open(const std::string& address, uint16_t port, std::string& error) override {
    if (takenPorts.count(port) != 0) {
      error = "port " + std::to_string(port) + " is taken: Address already in use";
      return false;
    }
    open = true;
    boundAddress = address;
    boundPort = port;
    return true;
  }
  void Close() override { open = false; }
  void OnDatagram(std::function<void(const std::string&, const DatagramPeer&)> handler) override {
    handler_ = std::move(handler);
  }
  void SendTo(const DatagramPeer& to, const std::string& bytes) override { sent.emplace_back(to, bytes); }

  // A datagram arrives, as on a socket only while it is open.
  void Deliver(const std::string& bytes, const DatagramPeer& from = "127.0.0.1:40000") {
    if (open && handler_) handler_(bytes, from);
  }

  std::set<uint16_t> takenPorts;
  bool open = false;
  std::string boundAddress;
  uint16_t boundPort = 0;
  std::vector<std::pair<DatagramPeer, std::string>> sent;

 private:
  std::function<void(const std::string&, const DatagramPeer&)> handler_;
};

}  // namespace vantrel::platform::memory
