// The logger link between two processes on Linux: the names both sides
// find, and the layout of the datagrams. The keyer's channel and the
// reference logger both build on these, and docs/logger-link.md tells a
// logger's author the same.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

namespace vantrel::platform::linuxos::link {

// The shared block the logger creates; a test may name another.
inline constexpr const char* kMappingName = "/CW";
inline constexpr const char* kMappingNameVariable = "VANTREL_LINK_SHM";
// The logger's datagram socket, in $XDG_RUNTIME_DIR.
inline constexpr const char* kSocketName = "hallowick-cw.sock";
// The part of the block the keyer reads and writes: nine slots of 128
// bytes and the first 64 of the tenth.
inline constexpr int32_t kMinimumMappingSize = 1216;

// Datagrams, all numbers 32-bit little-endian:
//   post    code, value            8 bytes, keyer to logger, no answer
//   send    code, value, sequence  12 bytes, keyer to logger, answered
//   answer  sequence, result       8 bytes, logger to the sender of the send
inline constexpr size_t kPostSize = 8;
inline constexpr size_t kSendSize = 12;
inline constexpr size_t kAnswerSize = 8;

// How long a send waits for its answer. A living logger on the same machine
// answers within a millisecond; a fifth of a second, one poll period, is far
// beyond that even under load, and short enough that a dead logger stalls
// the keyer no longer than an operator's blink.
inline constexpr int kAnswerTimeoutMs = 200;

inline void PutInt32(unsigned char* at, int32_t value) {
  const auto u = static_cast<uint32_t>(value);
  for (int i = 0; i < 4; ++i) at[i] = static_cast<unsigned char>(u >> (8 * i));
}

inline int32_t GetInt32(const unsigned char* at) {
  uint32_t u = 0;
  for (int i = 0; i < 4; ++i) u |= static_cast<uint32_t>(at[i]) << (8 * i);
  return static_cast<int32_t>(u);
}

}  // namespace vantrel::platform::linuxos::link
