// A datagram socket that loggers send keyer requests to: bound to one
// address and port, each datagram handed over with the sender to answer.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace vantrel::platform {

// Who sent a datagram, as the socket can answer it: "127.0.0.1:40213".
using DatagramPeer = std::string;

class DatagramSocket {
 public:
  virtual ~DatagramSocket() = default;
  // Binds to `address` and `port`; false with the system's reason in `error`
  // when it cannot (the port taken, an address not of this machine). Datagrams
  // from outside the address's own network never reach the handler.
  virtual bool Open(const std::string& address, uint16_t port, std::string& error) = 0;
  virtual void Close() = 0;
  // Runs on the program's event loop, between other events, once a datagram.
  virtual void OnDatagram(std::function<void(const std::string& bytes, const DatagramPeer& from)> handler) = 0;
  // Best effort: a lost answer is the sender's problem, as with any datagram.
  virtual void SendTo(const DatagramPeer& to, const std::string& bytes) = 0;
};

}  // namespace vantrel::platform
