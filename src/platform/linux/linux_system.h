// The parts of the system around the keyer on Linux: where its settings
// live, the calendar, and the user's language.
#pragma once

#include <string>

#include "platform/language.h"
#include "platform/wall_clock.h"

namespace vantrel::platform::linuxos {

// $VANTREL_HOME, else $XDG_CONFIG_HOME/vantrel, else ~/.config/vantrel;
// created if missing. Empty with `error` set when it cannot be made.
std::string ConfigDirectory(std::string& error);

class LinuxWallClock : public WallClock {
 public:
  LocalTime Now() override;
};

// The environment's locale (LC_ALL, LC_MESSAGES, LANG) as its Windows
// language number, e.g. sv_SE is 1053; 1033 when unknown. Menu string tables
// are text files of "number=caption" lines, named after that number with
// ".DLL" as the keyer's Windows roots have it, in the configuration folder.
int32_t WindowsLanguageNumber(const std::string& locale);

class LinuxLanguage : public Language {
 public:
  explicit LinuxLanguage(std::string tableDirectory) : tableDirectory_(std::move(tableDirectory)) {}

  int32_t GetThreadLocale() override;
  int16_t GetUserDefaultLangID() override;
  Handle LoadLibrary(const std::string& name) override;
  std::string LoadString(Handle module, int16_t id) override;

 private:
  std::string tableDirectory_;
  std::string loadedPath_;
};

}  // namespace vantrel::platform::linuxos
