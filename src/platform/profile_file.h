// A profile (INI) file as the settings store reaches it: sections of
// key=value lines, names matched without regard to case.
#pragma once

#include <string>

namespace vantrel::platform {

class ProfileFile {
 public:
  virtual ~ProfileFile() = default;
  // The value of the first matching key with surrounding blanks removed, or
  // `fallback`; at most `size` - 1 characters of it.
  virtual std::string GetPrivateProfileString(const std::string& section, const std::string& key,
                                              const std::string& fallback, int size) = 0;
  // Replaces the key's value, or adds the key, and the section if need be.
  virtual void WritePrivateProfileString(const std::string& section, const std::string& key,
                                         const std::string& value) = 0;
};

}  // namespace vantrel::platform
