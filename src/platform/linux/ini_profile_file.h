// The settings store's profile files as real INI files on disk. Every call
// goes to the disk: a setting is written the moment it changes, and a hand
// edit made between runs must be seen.
#pragma once

#include <string>

#include "platform/profile_file.h"

namespace vantrel::platform::linuxos {

class IniProfileFile : public ProfileFile {
 public:
  std::string GetPrivateProfileString(const std::string& section, const std::string& key,
                                      const std::string& fallback, int size,
                                      const std::string& file) override;
  // Changes only the one line and leaves every other byte as it was. The new
  // file replaces the old by rename, so a crash leaves one or the other whole.
  // A failure is dropped: the keyer has no use for it.
  void WritePrivateProfileString(const std::string& section, const std::string& key,
                                 const std::string& value, const std::string& file) override;
  // Anything at the path counts, as opening it for input would find it.
  bool FileExists(const std::string& file) override;
  // By rename, as a write is: `to` is the old file or the whole copy, never half.
  bool CopyFile(const std::string& from, const std::string& to) override;
};

}  // namespace vantrel::platform::linuxos
