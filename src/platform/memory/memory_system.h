// The rest of the system in memory: the user's language with its string
// tables, and a calendar clock that shows what a test sets.
#pragma once

#include <map>
#include <string>
#include <utility>

#include "platform/language.h"
#include "platform/wall_clock.h"

namespace vantrel::platform::memory {

class MemoryLanguage : public Language {
 public:
  int32_t GetThreadLocale() override { return locale; }
  int16_t GetUserDefaultLangID() override { return languageId; }
  Handle LoadLibrary(const std::string& name) override {
    const auto it = libraries.find(name);
    return it == libraries.end() ? 0 : it->second.first;
  }
  std::string LoadString(Handle module, int16_t id) override {
    for (const auto& [name, library] : libraries) {
      if (library.first != module) continue;
      const auto it = library.second.find(id);
      if (it != library.second.end()) return it->second;
    }
    return "";
  }

  int32_t locale = 1033;
  int16_t languageId = 1033;
  // By file name: a handle and the strings by number.
  std::map<std::string, std::pair<Handle, std::map<int16_t, std::string>>> libraries;
};

class MemoryWallClock : public WallClock {
 public:
  LocalTime Now() override { return now; }
  LocalTime now{2026, 11, 17, 21, 5, 9};
};

}  // namespace vantrel::platform::memory
