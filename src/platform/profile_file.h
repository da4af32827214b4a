// Profile (INI) files as the settings store reaches them: sections of
// key=value lines, names matched without regard to case, the file named on
// every call.
#pragma once

#include <string>

namespace vantrel::platform {

class ProfileFile {
 public:
  virtual ~ProfileFile() = default;
  // The value of the first matching key with surrounding blanks removed, or
  // `fallback`; at most `size` - 1 characters of it.
  virtual std::string GetPrivateProfileString(const std::string& section, const std::string& key,
                                              const std::string& fallback, int size,
                                              const std::string& file) = 0;
  // Replaces the key's value, or adds the key, and the section and the file
  // if need be.
  virtual void WritePrivateProfileString(const std::string& section, const std::string& key,
                                         const std::string& value, const std::string& file) = 0;
  virtual bool FileExists(const std::string& file) = 0;
  // False when it could not be copied; `to` is then left as it was.
  virtual bool CopyFile(const std::string& from, const std::string& to) = 0;
};

}  // namespace vantrel::platform
