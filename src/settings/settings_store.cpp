#include "settings/settings_store.h"

#include <algorithm>
#include <array>

#include "vb/vb.h"

namespace vantrel::settings {
namespace {

constexpr std::array<std::string_view, 29> kKeyerKeys{
    "WinKey Port",         "WinKey Key Mode",          "WinKey Tone",
    "WinKey WordSpace",    "WinKey Paddle Operation",  "WinKey PTT Lead Delay",
    "WinKey PTT Lag Delay", "WinKey Speed Max",        "WinKey Speed Min",
    "WinKey Speed Farnsworth", "WinKey DitDah Ratio",  "WinKey DitDah Weight",
    "WinKey First Extension", "WinKey Compensation",   "WinKey Paddle Switchpoint",
    "WinKey PTT",          "WinKey Pin 3",             "WinKey AutoSpace",
    "WinKey Contest WordSpace", "WinKey Switch Paddles", "WinKey Analog Speed",
    "WinKey Speed",        "WinKey SideTone",          "WinKey Disable Paddle Memory",
    "WinKey Paddle Insert Cancels Macro", "WinKey Radio 1 Pin 3", "WinKey Radio 2 Pin 3",
    "WinKey Hold Radio Polling", "Paddle Only SideTone",
};


}  // namespace

std::string TrimAtNul(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return "";
  text = text.substr(first, text.find_last_not_of(' ') - first + 1);
  const auto nul = text.find('\0');
  if (nul == std::string_view::npos || nul == 0) return "";
  return std::string(text.substr(0, nul));
}

const char* SectionOf(std::string_view key) {
  const bool keyer = std::any_of(kKeyerKeys.begin(), kKeyerKeys.end(),
                                 [key](std::string_view name) { return vb::SameText(name, key); });
  return keyer ? kKeyerSection : kMainSection;
}

std::string SettingsStore::ReadSetting(const std::string& key, const std::string& fallback) {
  std::string buffer =
      file_.GetPrivateProfileString(SettingsSection, key, fallback, SettingsBufferSize);
  buffer.resize(SettingsBufferSize, '\0');
  return TrimAtNul(buffer);
}

void SettingsStore::WriteSetting(const std::string& section, const std::string& key,
                                 const std::string& value) {
  file_.WritePrivateProfileString(section, key, value);
}

}  // namespace vantrel::settings
