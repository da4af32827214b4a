#include "settings/settings_store.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

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

std::string SettingsFilePathFor(const std::string& programDirectory, const std::string& commandLine) {
  return programDirectory + "/" + commandLine + "Vantrel.INI";
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
  const HeldWrite* held = Held(SettingsSection, key);
  std::string buffer = held ? std::string(vb::TrimBlanks(held->value))
                                  .substr(0, static_cast<size_t>(std::max(SettingsBufferSize - 1, 0)))
                            : files_.GetPrivateProfileString(SettingsSection, key, fallback,
                                                             SettingsBufferSize, SettingsFilePath);
  buffer.resize(static_cast<size_t>(SettingsBufferSize), '\0');
  return vb::TrimAtNul(buffer);
}

bool SettingsStore::WriteSetting(const std::string& section, const std::string& key,
                                 const std::string& value) {
  if (!holding_) return WriteSettingNow(section, key, value);
  if (HeldWrite* held = Held(section, key)) {
    held->value = value;
  } else {
    held_.push_back({section, key, value});
  }
  return true;
}

bool SettingsStore::WriteSettingNow(const std::string& section, const std::string& key,
                                    const std::string& value) {
  if (HeldWrite* held = Held(section, key)) held->value = value;  // no older value may follow it
  return files_.WritePrivateProfileString(section, key, value, SettingsFilePath);
}

void SettingsStore::HoldWrites(bool hold) {
  holding_ = hold;
  if (hold) return;
  for (const HeldWrite& write : std::exchange(held_, {})) {
    files_.WritePrivateProfileString(write.section, write.key, write.value, SettingsFilePath);
  }
}

SettingsStore::HeldWrite* SettingsStore::Held(const std::string& section, const std::string& key) {
  for (HeldWrite& write : held_) {
    if (vb::SameText(write.section, section) && vb::SameText(write.key, key)) return &write;
  }
  return nullptr;
}

}  // namespace vantrel::settings
