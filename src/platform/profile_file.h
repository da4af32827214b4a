// Profile (INI) files as the settings store reaches them: sections of
// key=value lines, names matched without regard to case, the file named on
// every call.
#pragma once

#include <string>
#include <string_view>

#include "vb/vb.h"

namespace vantrel::platform {

class ProfileFile {
 public:
  virtual ~ProfileFile() = default;
  // The value of the first matching key with surrounding blanks and then one
  // pair of enclosing double quotes removed, or `fallback`; at most `size` - 1
  // characters of it.
  virtual std::string GetPrivateProfileString(const std::string& section, const std::string& key,
                                              const std::string& fallback, int size,
                                              const std::string& file) = 0;
  // Replaces the key's value, or adds the key, and the section and the file
  // if need be. A value that a read would take quotes from is kept in one
  // more pair, so it reads back as written. False when the file is unchanged.
  virtual bool WritePrivateProfileString(const std::string& section, const std::string& key,
                                         const std::string& value, const std::string& file) = 0;
  virtual bool FileExists(const std::string& file) = 0;
  // False when it could not be copied; `to` is then left as it was.
  virtual bool CopyFile(const std::string& from, const std::string& to) = 0;
};

// A value as a profile file holds it, and back. The reader trims blanks and
// drops one pair of enclosing double quotes, as hand-edited files expect; the
// writer adds a pair where the value has them, so it reads back as written.
inline bool QuotedOnBothEnds(std::string_view value) {
  return value.size() >= 2 && value.front() == '"' && value.back() == '"';
}
inline std::string ValueForFile(std::string_view value) {
  const std::string_view trimmed = vb::TrimBlanks(value);
  return QuotedOnBothEnds(trimmed) ? '"' + std::string(trimmed) + '"' : std::string(value);
}
inline std::string ValueFromFile(std::string_view stored) {
  const std::string_view trimmed = vb::TrimBlanks(stored);
  return std::string(QuotedOnBothEnds(trimmed) ? trimmed.substr(1, trimmed.size() - 2) : trimmed);
}

}  // namespace vantrel::platform
