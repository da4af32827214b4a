// The keyer's one settings file: reads through the current section, writes
// straight through to the file, every value text.
#pragma once

#include <string>
#include <string_view>

#include "platform/profile_file.h"
#include "sending/sending_core.h"

namespace vantrel::settings {

inline constexpr const char* kMainSectionRead = "FrmVantrel Settings";
inline constexpr const char* kMainSection = "frmVantrel Settings";
inline constexpr const char* kKeyerSection = "WinKey Settings";

// Blanks off both ends, then the text before the first NUL; empty when the NUL
// stands first or there is none, as a fixed-width buffer reads.
std::string TrimAtNul(std::string_view text);

// The section a writer puts a key in: the keyer's for its keys, else the main one.
const char* SectionOf(std::string_view key);

class SettingsStore : public sending::SettingWriter {
 public:
  static constexpr int SettingsBufferSize = 2000;

  explicit SettingsStore(platform::ProfileFile& file) : file_(file) {}

  // The section that ReadSetting reads; WriteSetting names its own.
  std::string SettingsSection = kMainSectionRead;

  std::string ReadSetting(const std::string& key, const std::string& fallback);
  void WriteSetting(const std::string& section, const std::string& key,
                    const std::string& value) override;

 private:
  platform::ProfileFile& file_;
};

}  // namespace vantrel::settings
