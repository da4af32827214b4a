// The settings store's profile files as real INI files on disk. Every call
// goes to the disk: a setting is written the moment it changes, and a hand
// edit made between runs must be seen.
#pragma once

#include <cstddef>
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
  // A file that is no regular file is neither read nor replaced.
  bool WritePrivateProfileString(const std::string& section, const std::string& key,
                                 const std::string& value, const std::string& file) override;
  // Anything at the path counts, as opening it for input would find it.
  bool FileExists(const std::string& file) override;
  // By rename, as a write is: `to` is the old file or the whole copy, never half.
  bool CopyFile(const std::string& from, const std::string& to) override;
};

// A write's temporary file beside `file`: this prefix and as many unique
// characters as follow it.
std::string TemporaryPrefix(const std::string& file);
inline constexpr size_t kTemporaryUniqueLength = 6;

}  // namespace vantrel::platform::linuxos
