#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/profile_file.h"

namespace vantrel::platform::memory {

class MemoryProfileFile : public ProfileFile {
 public:
  std::string GetPrivateProfileString(const std::string& section, const std::string& key,
                                      const std::string& fallback, int size) override;
  void WritePrivateProfileString(const std::string& section, const std::string& key,
                                 const std::string& value) override;

 private:
  struct Section {
    std::string name;
    std::vector<std::pair<std::string, std::string>> entries;
  };
  Section* Find(const std::string& section);
  std::vector<Section> sections_;
};

}  // namespace vantrel::platform::memory
