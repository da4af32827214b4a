#include "settings/settings_store.h"

#include <array>
#include <cstdio>

#include "settings/load_settings.h"
#include "vb/vb.h"

namespace vantrel::settings {
namespace {

// "HH:MM:SS MMMM DD, YYYY", the month always in English whatever the locale.
std::string FormatStamp(const platform::LocalTime& t) {
  static constexpr std::array<const char*, 12> kMonths{
      "January", "February", "March",     "April",   "May",      "June",
      "July",    "August",   "September", "October", "November", "December"};
  const char* month = t.month >= 1 && t.month <= 12 ? kMonths[t.month - 1] : "";
  char text[128];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d %s %02d, %04d", t.hour, t.minute, t.second,
                month, t.day, t.year);
  return text;
}

}  // namespace

std::string TrimAtNul(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return "";
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);
  const auto nul = text.find('\0');
  if (nul == std::string_view::npos || nul == 0) return "";
  return std::string(text.substr(0, nul));
}

std::string SettingsFilePathFor(const std::string& programDirectory, const std::string& commandLine) {
  return programDirectory + "/" + commandLine + "Vantrel.INI";
}

const char* SectionOf(std::string_view key) {
  for (const Setting& setting : SettingsTable()) {
    if (setting.section == Section::Keyer && vb::SameText(setting.key, key)) return kKeyerSection;
  }
  return kMainSection;
}

void SettingsStore::LocateSettingsFile(const std::string& programDirectory,
                                       const std::string& commandLine) {
  SettingsBufferSize = kLongestValueRead + 1;
  SettingsFilePath = SettingsFilePathFor(programDirectory, commandLine);
  if (files_.FileExists(SettingsFilePath)) return;
  if (!commandLine.empty()) files_.CopyFile(programDirectory + "/Vantrel.INI", SettingsFilePath);
  StampSettingsFile();
}

void SettingsStore::StampSettingsFile() {
  WriteSetting(kStampSection, kStampKey, FormatStamp(clock_.Now()));
}

std::string SettingsStore::ReadSetting(const std::string& key, const std::string& fallback) {
  std::string buffer = files_.GetPrivateProfileString(SettingsSection, key, fallback,
                                                      SettingsBufferSize, SettingsFilePath);
  buffer.resize(static_cast<size_t>(SettingsBufferSize), '\0');
  return TrimAtNul(buffer);
}

bool SettingsStore::WriteSetting(const std::string& section, const std::string& key,
                                 const std::string& value) {
  return files_.WritePrivateProfileString(section, key, value, SettingsFilePath);
}

}  // namespace vantrel::settings
