#include "platform/linux/linux_system.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <string_view>

namespace vantrel::platform::linuxos {
namespace {

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

// Makes every missing folder on the way; false with errno set on failure.
bool MakeFolders(const std::string& path) {
  for (size_t slash = path.find('/', 1);; slash = path.find('/', slash + 1)) {
    const std::string part = path.substr(0, slash);
    if (::mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) return false;
    if (slash == std::string::npos) return true;
  }
}

struct LocaleNumber {
  std::string_view locale;
  int32_t number;
};

// Whole locales first, then languages alone, as Windows numbers them.
constexpr LocaleNumber kLocales[] = {
    {"en_US", 1033}, {"en_GB", 2057}, {"en_CA", 4105}, {"en_AU", 3081}, {"de_DE", 1031},
    {"de_AT", 3079}, {"de_CH", 2055}, {"fr_FR", 1036}, {"fr_CA", 3084}, {"fr_BE", 2060},
    {"es_ES", 3082}, {"es_MX", 2058}, {"pt_BR", 1046}, {"pt_PT", 2070}, {"sv_FI", 2077},
    {"nl_BE", 2067}, {"en", 1033},    {"de", 1031},    {"fr", 1036},    {"es", 3082},
    {"it", 1040},    {"nl", 1043},    {"sv", 1053},    {"fi", 1035},    {"da", 1030},
    {"nb", 1044},    {"no", 1044},    {"nn", 2068},    {"is", 1039},    {"pl", 1045},
    {"cs", 1029},    {"sk", 1051},    {"hu", 1038},    {"ro", 1048},    {"hr", 1050},
    {"sl", 1060},    {"et", 1061},    {"lv", 1062},    {"lt", 1063},    {"ru", 1049},
    {"uk", 1058},    {"bg", 1026},    {"el", 1032},    {"tr", 1055},    {"pt", 2070},
    {"ja", 1041},    {"ko", 1042},    {"zh", 2052},    {"he", 1037},    {"ar", 1025},
};

std::string UserLocale() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const std::string value = Environment(name);
    if (!value.empty()) return value;
  }
  return "";
}

}  // namespace

std::string ConfigDirectory(std::string& error) {
  std::string dir = Environment("VANTREL_HOME");
  if (dir.empty()) {
    const std::string xdg = Environment("XDG_CONFIG_HOME");
    if (!xdg.empty()) {
      dir = xdg + "/vantrel";
    } else {
      const std::string home = Environment("HOME");
      if (home.empty()) {
        error = "neither VANTREL_HOME, XDG_CONFIG_HOME nor HOME is set";
        return "";
      }
      dir = home + "/.config/vantrel";
    }
  }
  if (!MakeFolders(dir)) {
    error = dir + ": " + std::strerror(errno);
    return "";
  }
  return dir;
}

LocalTime LinuxWallClock::Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  return LocalTime{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
                   local.tm_hour,        local.tm_min,     local.tm_sec};
}

int32_t WindowsLanguageNumber(const std::string& locale) {
  // "sv_SE.UTF-8@euro" is the language sv and the country SE.
  const std::string name = locale.substr(0, locale.find_first_of(".@"));
  for (const LocaleNumber& entry : kLocales) {
    if (name == entry.locale) return entry.number;
  }
  const std::string language = name.substr(0, name.find('_'));
  for (const LocaleNumber& entry : kLocales) {
    if (language == entry.locale) return entry.number;
  }
  return 1033;
}

int32_t LinuxLanguage::GetThreadLocale() { return WindowsLanguageNumber(UserLocale()); }

int16_t LinuxLanguage::GetUserDefaultLangID() {
  return static_cast<int16_t>(WindowsLanguageNumber(UserLocale()));
}

Handle LinuxLanguage::LoadLibrary(const std::string& name) {
  const std::string path = tableDirectory_ + "/" + name;
  if (!std::ifstream(path)) return 0;
  loadedPath_ = path;
  return 1;
}

std::string LinuxLanguage::LoadString(Handle module, int16_t id) {
  if (module != 1) return "";
  std::ifstream table(loadedPath_);
  const std::string prefix = std::to_string(id) + "=";
  for (std::string line; std::getline(table, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.rfind(prefix, 0) == 0) return line.substr(prefix.size());
  }
  return "";
}

}  // namespace vantrel::platform::linuxos
