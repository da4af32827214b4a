#include "cwdaemon/request.h"

#include <array>
#include <charconv>

namespace vantrel::cwdaemon {
namespace {

constexpr char kEscape = 27;

struct Escaped {
  char code;
  RequestKind kind;
  // The range a numeric value must lie in; no value at all when `numeric` is false.
  bool numeric;
  int low;
  int high;
};

constexpr std::array<Escaped, 17> kEscaped{{
    {'0', RequestKind::Reset, false, 0, 0},
    {'2', RequestKind::Speed, true, kSlowestWpm, kFastestWpm},
    {'3', RequestKind::Tone, true, 0, 4000},
    {'4', RequestKind::Abort, false, 0, 0},
    {'5', RequestKind::Exit, false, 0, 0},
    {'6', RequestKind::WordMode, false, 0, 0},
    {'7', RequestKind::Weighting, true, -50, 50},
    {'8', RequestKind::Device, false, 0, 0},
    {'9', RequestKind::Port, false, 0, 0},
    {'a', RequestKind::Ptt, true, 0, 1},
    {'b', RequestKind::SsbWay, true, 0, 1},
    {'c', RequestKind::Tune, true, 0, kLongestTuneSeconds},
    // A longer delay is clipped, as the daemon does, rather than refused.
    {'d', RequestKind::PttDelay, true, 0, 50},
    {'e', RequestKind::Band, false, 0, 0},
    {'f', RequestKind::SoundSystem, false, 0, 0},
    {'g', RequestKind::Volume, true, 0, 100},
    {'h', RequestKind::Reply, false, 0, 0},
}};

Request Refuse(std::string why) { return Request{RequestKind::Refused, 0, std::move(why), false}; }

std::string_view WithoutLineEnds(std::string_view text) {
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
  return text;
}

// Leading blanks are allowed ("<ESC>2 6" is how one client sends 6 WPM); anything after the digits is not.
bool ReadNumber(std::string_view text, int& value) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  const char* end = text.data() + text.size();
  const auto [stop, fault] = std::from_chars(text.data(), end, value);
  return fault == std::errc() && stop == end;
}

Request ReadEscaped(std::string_view body) {
  if (body.empty()) return Refuse("escape without a request");
  const char code = body.front();
  const std::string_view rest = WithoutLineEnds(body.substr(1));
  for (const Escaped& escaped : kEscaped) {
    if (escaped.code != code) continue;
    Request request{escaped.kind, 0, "", false};
    if (!escaped.numeric) {
      request.text = std::string(rest);
      return request;
    }
    if (!ReadNumber(rest, request.value)) {
      return Refuse(std::string(NameOf(escaped.kind)) + ": '" + std::string(rest) + "' is not a number");
    }
    if (escaped.kind == RequestKind::PttDelay && request.value > escaped.high) request.value = escaped.high;
    if (request.value < escaped.low || request.value > escaped.high) {
      return Refuse(std::string(NameOf(escaped.kind)) + ": " + std::to_string(request.value) + " is outside " +
                    std::to_string(escaped.low) + " to " + std::to_string(escaped.high));
    }
    return request;
  }
  return Refuse("unknown escape request '" + std::string(1, code) + "'");
}

}  // namespace

Request ParseRequest(std::string_view datagram) {
  datagram = datagram.substr(0, datagram.find('\0'));
  if (!datagram.empty() && datagram.front() == kEscape) return ReadEscaped(datagram.substr(1));

  Request request{RequestKind::Text, 0, "", false};
  for (const char character : datagram) {
    const auto code = static_cast<unsigned char>(character);
    if (code == '\r' || code == '\n') continue;
    if (code < 32 || code == 127) return Refuse("not text: control byte " + std::to_string(code));
    request.text += character;
  }
  if (!request.text.empty() && request.text.back() == '^') {
    request.text.pop_back();
    request.echo = true;
  }
  return request;
}

bool TakesNumber(RequestKind kind) {
  for (const Escaped& escaped : kEscaped) {
    if (escaped.kind == kind) return escaped.numeric;
  }
  return false;
}

const char* NameOf(RequestKind kind) {
  switch (kind) {
    case RequestKind::Text: return "text";
    case RequestKind::Reset: return "reset";
    case RequestKind::Speed: return "speed";
    case RequestKind::Tone: return "tone";
    case RequestKind::Abort: return "abort";
    case RequestKind::Exit: return "exit";
    case RequestKind::WordMode: return "word mode";
    case RequestKind::Weighting: return "weighting";
    case RequestKind::Device: return "device";
    case RequestKind::Port: return "port";
    case RequestKind::Ptt: return "ptt";
    case RequestKind::SsbWay: return "ssb way";
    case RequestKind::Tune: return "tune";
    case RequestKind::PttDelay: return "ptt delay";
    case RequestKind::Band: return "band";
    case RequestKind::SoundSystem: return "sound system";
    case RequestKind::Volume: return "volume";
    case RequestKind::Reply: return "reply";
    case RequestKind::Refused: return "refused";
  }
  return "refused";
}

}  // namespace vantrel::cwdaemon
