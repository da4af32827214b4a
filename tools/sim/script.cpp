#include "script.h"

#include <array>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace vantrel::sim {
namespace {

struct VerbInfo {
  const char* name;
  bool takesArgument;
};
constexpr std::array<VerbInfo, 5> kVerbs{
    {{"send", true}, {"append", true}, {"menu", true}, {"close", false}, {"unplug", false}}};
constexpr std::array<const char*, 6> kMenus{"mnuTX",  "mnuabort", "mnuTune",
                                            "mnuVOX", "mnuMOX",   "mnuDedicatedSerialPort"};

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  return -1;
}

int64_t ParseTime(const std::string& field, int line) {
  char* end = nullptr;
  const double ms = std::strtod(field.c_str(), &end);
  if (field.empty() || *end != '\0' || !std::isfinite(ms) || ms < 0 || ms > 1e12) {
    throw ScriptError(line, "'" + field + "' is not a time in ms");
  }
  return std::llround(ms * 1e6);
}

}  // namespace

bool KnownVerb(const std::string& verb, bool& takesArgument) {
  for (const VerbInfo& info : kVerbs) {
    if (verb == info.name) {
      takesArgument = info.takesArgument;
      return true;
    }
  }
  return false;
}

bool KnownMenu(const std::string& name) {
  for (const char* menu : kMenus) {
    if (name == menu) return true;
  }
  return false;
}

std::string Unescape(const std::string& text, int line) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'x') {
      const int high = i + 2 < text.size() ? HexDigit(text[i + 2]) : -1;
      const int low = i + 3 < text.size() ? HexDigit(text[i + 3]) : -1;
      if (high < 0 || low < 0) throw ScriptError(line, "\\x needs two hexadecimal digits");
      out += static_cast<char>(high * 16 + low);
      i += 3;
    } else {
      out += text[i];
    }
  }
  return out;
}

std::vector<ScriptEvent> ParseScript(std::istream& in) {
  std::vector<ScriptEvent> events;
  std::string raw;
  int line = 0;
  int64_t last = 0;
  while (std::getline(in, raw)) {
    ++line;
    if (!raw.empty() && raw.back() == '\r') raw.pop_back();
    const auto first = raw.find_first_not_of(" \t");
    if (first == std::string::npos || raw[first] == '#') continue;

    // The time and the verb are words; the argument is the rest of the line.
    std::istringstream words(raw.substr(first));
    std::string time;
    std::string verb;
    words >> time >> verb;
    ScriptEvent event{ParseTime(time, line), verb, "", line};
    if (event.atNs < last) throw ScriptError(line, "times must not go backwards");
    last = event.atNs;

    bool takesArgument = false;
    if (!KnownVerb(verb, takesArgument)) throw ScriptError(line, "unknown verb '" + verb + "'");
    const auto verbAt = raw.find(verb, first + time.size());
    const auto argumentAt = verbAt + verb.size() + 1;
    if (argumentAt <= raw.size()) event.argument = Unescape(raw.substr(argumentAt), line);
    if (takesArgument && event.argument.empty()) throw ScriptError(line, verb + " needs an argument");
    if (!takesArgument && !event.argument.empty()) throw ScriptError(line, verb + " takes no argument");
    if (verb == "menu" && !KnownMenu(event.argument)) {
      throw ScriptError(line, "unknown menu entry '" + event.argument + "'");
    }
    events.push_back(std::move(event));
  }
  return events;
}

}  // namespace vantrel::sim
