// Which device stands behind serial port N, and behind the parallel port.
#pragma once

#include <cstdint>
#include <string>

namespace vantrel::platform::linuxos {

// The ports are numbered as the keyer's settings number them, 1 to 99. A
// `comN` entry (normally a symlink) in the configuration directory names
// port N; without one, port N is /dev/ttyUSB(N-1), where a lone USB adapter
// turns up as port 1. Empty for a number outside 1..99.
//
// The link's own path comes back, not its target: the open follows it, so a
// link into /dev/serial/by-id keeps up with an adapter that udev renumbers on
// a re-plug, and a link that dangles fails the open instead of quietly
// falling back to a ttyUSB that may be another radio.
std::string CommDevicePath(int16_t number, const std::string& configDir);

// A `parport` entry in the configuration directory, the same way, names the
// parallel port at every address: a card the kernel lists at no legacy base
// address. Empty without one: the port is then found by its address.
std::string ParallelDevicePath(const std::string& configDir);

}  // namespace vantrel::platform::linuxos
