// Runs the keyer headless on the in-memory platform: settings and start-up,
// then the script's events at their virtual times, printing every event.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "script.h"

namespace vantrel::sim {

struct RunOptions {
  std::vector<std::pair<std::string, std::string>> settings;  // in the order given
  int16_t languageId = 1033;
  std::optional<int64_t> untilNs;
};

// Runs the events and hands each trace line to `out`.
void Run(const RunOptions& options, const std::vector<ScriptEvent>& events,
         const std::function<void(const std::string&)>& out);

}  // namespace vantrel::sim
