// The settings store's profile file as a real INI file on disk. Every call
// goes to the disk: a setting is written the moment it changes, and a hand
// edit made between runs must be seen.
#pragma once

#include <string>

#include "platform/profile_file.h"

namespace vantrel::platform::linuxos {

class IniProfileFile : public ProfileFile {
 public:
  explicit IniProfileFile(std::string path);

  std::string GetPrivateProfileString(const std::string& section, const std::string& key,
                                      const std::string& fallback, int size) override;
  // Changes only the one line and leaves every other byte as it was. The new
  // file replaces the old by rename, so a crash leaves one or the other whole.
  // A failure is dropped: the keyer has no use for it.
  void WritePrivateProfileString(const std::string& section, const std::string& key,
                                 const std::string& value) override;

 private:
  std::string path_;
};

}  // namespace vantrel::platform::linuxos
