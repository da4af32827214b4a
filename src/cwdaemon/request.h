// One datagram of the cwdaemon protocol read into what it asks for: a text
// to key, or an escaped request with its value, or a refusal with its reason.
#pragma once

#include <string>
#include <string_view>

namespace vantrel::cwdaemon {

enum class RequestKind {
  Text,
  Reset,        // <ESC>0
  Speed,        // <ESC>2 wpm
  Tone,         // <ESC>3 Hz
  Abort,        // <ESC>4
  Exit,         // <ESC>5
  WordMode,     // <ESC>6
  Weighting,    // <ESC>7
  Device,       // <ESC>8
  Port,         // <ESC>9
  Ptt,          // <ESC>a 0|1
  SsbWay,       // <ESC>b 0|1
  Tune,         // <ESC>c seconds
  PttDelay,     // <ESC>d ms
  Band,         // <ESC>e
  SoundSystem,  // <ESC>f
  Volume,       // <ESC>g %
  Reply,        // <ESC>h text
  Refused,
};

struct Request {
  RequestKind kind = RequestKind::Refused;
  int value = 0;
  // The text to key without its line ends, the reply's text, a device's name;
  // for a refusal, why.
  std::string text;
  // A text that ended in '^': its own echo is asked for once it is keyed.
  bool echo = false;
};

inline constexpr int kSlowestWpm = 4;
inline constexpr int kFastestWpm = 60;
inline constexpr int kLongestTuneSeconds = 10;

// A datagram ends at its first NUL: some clients send fixed-size buffers.
Request ParseRequest(std::string_view datagram);

// Whether the request carries a number in `value`.
bool TakesNumber(RequestKind kind);

// The request's name as the trace and the protocol notes give it.
const char* NameOf(RequestKind kind);

}  // namespace vantrel::cwdaemon
