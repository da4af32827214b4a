// Profile files held in memory, each under its path, for tests and the
// headless runner: the same matching and trimming as the files on disk.
#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/profile_file.h"

namespace vantrel::platform::memory {

class MemoryProfileFile : public ProfileFile {
 public:
  std::string GetPrivateProfileString(const std::string& section, const std::string& key,
                                      const std::string& fallback, int size,
                                      const std::string& file) override;
  bool WritePrivateProfileString(const std::string& section, const std::string& key,
                                 const std::string& value, const std::string& file) override;
  bool FileExists(const std::string& file) override;
  bool CopyFile(const std::string& from, const std::string& to) override;

  // From now on every write to `file` fails and changes nothing, as on a
  // full disk; false lets writes through again.
  void SetWriteFails(const std::string& file, bool fails);

  // The file's section names as first written, for a test to see its shape.
  std::vector<std::string> SectionNames(const std::string& file) const;

 private:
  struct Section {
    std::string name;
    std::vector<std::pair<std::string, std::string>> entries;
  };
  using Sections = std::vector<Section>;

  static Section* Find(Sections& sections, const std::string& section);
  // Paths compare as the file system does: exactly.
  std::map<std::string, Sections> files_;
  std::set<std::string> failing_;
};

}  // namespace vantrel::platform::memory
