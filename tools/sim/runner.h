// Runs the keyer headless: start-up, then the script's events at their
// times, printing every event. Virtual time on in-memory ports, or the real
// clock on the configured real port.
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
  // The configuration folder on disk; without one the settings live in memory.
  std::optional<std::string> directory;
  // The command line the keyer is started with: a profile name.
  std::string profile;
  // Real clock, real scheduler, real key port.
  bool realTime = false;
  // No trace at all: what a measurement of the port wants.
  bool quiet = false;
  // The logger's real shared memory and socket instead of the in-memory logger.
  bool link = false;
  // An in-memory logger runs, with its block.
  bool logger = false;
  // What the in-memory chip answers to host open; by default a WinKey, or a
  // WinKey2 when "Keyer to Use" says so.
  std::optional<int> chipRevision;
};

// Runs the events and hands each trace line to `out`.
void Run(const RunOptions& options, const std::vector<ScriptEvent>& events,
         const std::function<void(const std::string&)>& out);

}  // namespace vantrel::sim
