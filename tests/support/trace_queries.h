// Questions tests ask of the in-memory trace.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/memory/trace.h"

namespace vantrel::testing {

// The events that start with any of the prefixes, in order.
inline std::vector<std::string> EventsStartingWith(const platform::memory::Trace& trace,
                                                   const std::vector<std::string>& prefixes) {
  std::vector<std::string> kept;
  for (const std::string& event : trace.Events()) {
    for (const std::string& prefix : prefixes) {
      if (event.rfind(prefix, 0) == 0) {
        kept.push_back(event);
        break;
      }
    }
  }
  return kept;
}

// The times, in ms, at which exactly this event happened.
inline std::vector<double> TimesOf(const platform::memory::Trace& trace, const std::string& event) {
  std::vector<double> times;
  for (const std::string& line : trace.Lines()) {
    const auto space = line.find(' ');
    if (line.substr(space + 1) == event) times.push_back(std::strtod(line.c_str(), nullptr));
  }
  return times;
}

}  // namespace vantrel::testing
