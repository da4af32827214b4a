#include "platform/memory/trace.h"

#include <cstdio>

namespace vantrel::platform::memory {

void Trace::Emit(const std::string& event) {
  if (!muted_) Show(event);
  Action();
}

void Trace::Show(const std::string& event) {
  char stamp[32];
  std::snprintf(stamp, sizeof stamp, "%.3f ", nowMs_());
  lines_.push_back(stamp + event);
  if (sink_) sink_(lines_.back());
}

std::vector<std::string> Trace::Events() const {
  std::vector<std::string> events;
  for (const std::string& line : lines_) events.push_back(line.substr(line.find(' ') + 1));
  return events;
}

std::string Trace::Hex(std::string_view bytes) {
  std::string text;
  char pair[4];
  for (const char byte : bytes) {
    std::snprintf(pair, sizeof pair, "%s%02X", text.empty() ? "" : " ", static_cast<unsigned char>(byte));
    text += pair;
  }
  return text;
}

std::string Trace::Quote(std::string_view text) {
  std::string quoted = "\"";
  for (const char ch : text) {
    const auto code = static_cast<unsigned char>(ch);
    if (ch == '"' || ch == '\\') {
      quoted += '\\';
      quoted += ch;
    } else if (code < 32 || code > 126) {
      char hex[8];
      std::snprintf(hex, sizeof hex, "\\x%02X", code);
      quoted += hex;
    } else {
      quoted += ch;
    }
  }
  return quoted + "\"";
}

}  // namespace vantrel::platform::memory
