// The keyer's one settings file: reads through the current section, writes
// straight through to the file, every value text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/profile_file.h"
#include "platform/wall_clock.h"
#include "settings/setting_writer.h"

namespace vantrel::settings {

inline constexpr const char* kMainSectionRead = "FrmVantrel Settings";
inline constexpr const char* kStampSection = "Initialized";
inline constexpr const char* kStampKey = "Create Date/Time";

// The longest value a read gives back; a longer one is cut to it.
inline constexpr size_t kLongestValueRead = 1999;

// The settings file of the profile named on the command line.
std::string SettingsFilePathFor(const std::string& programDirectory, const std::string& commandLine);

class SettingsStore : public SettingWriter {
 public:
  SettingsStore(platform::ProfileFile& files, platform::WallClock& clock)
      : files_(files), clock_(clock) {}

  // Picks the file of the profile named on the command line and makes it on
  // first use: a new profile starts as a copy of the default one, and either
  // way the file gets a fresh stamp. Failures are passed over.
  void LocateSettingsFile(const std::string& programDirectory, const std::string& commandLine);
  // Writing the stamp is what creates the file.
  void StampSettingsFile();

  std::string ReadSetting(const std::string& key, const std::string& fallback);
  bool WriteSetting(const std::string& section, const std::string& key,
                    const std::string& value) override;
  void HoldWrites(bool hold) override;
  bool WriteSettingNow(const std::string& section, const std::string& key,
                       const std::string& value) override;

  std::string SettingsFilePath;
  // The section that ReadSetting reads; WriteSetting names its own.
  std::string SettingsSection = kMainSectionRead;
  // A read returns at most one less than this.
  int16_t SettingsBufferSize = kLongestValueRead + 1;

 private:
  struct HeldWrite {
    std::string section, key, value;
  };
  // The write of that key that waits, if any.
  HeldWrite* Held(const std::string& section, const std::string& key);

  platform::ProfileFile& files_;
  platform::WallClock& clock_;
  bool holding_ = false;
  std::vector<HeldWrite> held_;  // in the order first written; the latest value each
};

}  // namespace vantrel::settings
