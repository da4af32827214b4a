#include "platform/memory/memory_profile_file.h"

#include "vb/vb.h"

namespace vantrel::platform::memory {
namespace {

std::string TrimBlanks(const std::string& text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

}  // namespace

MemoryProfileFile::Section* MemoryProfileFile::Find(const std::string& section) {
  for (Section& s : sections_) {
    if (vb::SameText(s.name, section)) return &s;
  }
  return nullptr;
}

std::string MemoryProfileFile::GetPrivateProfileString(const std::string& section,
                                                       const std::string& key,
                                                       const std::string& fallback, int size) {
  std::string value = fallback;
  if (const Section* s = Find(section)) {
    for (const auto& [name, stored] : s->entries) {
      if (vb::SameText(name, key)) {
        value = stored;
        break;
      }
    }
  }
  value = TrimBlanks(value);
  if (size > 0 && value.size() > static_cast<size_t>(size - 1)) value.resize(size - 1);
  return value;
}

void MemoryProfileFile::WritePrivateProfileString(const std::string& section,
                                                  const std::string& key,
                                                  const std::string& value) {
  Section* s = Find(section);
  if (!s) s = &sections_.emplace_back(Section{section, {}});
  for (auto& [name, stored] : s->entries) {
    if (vb::SameText(name, key)) {
      stored = value;
      return;
    }
  }
  s->entries.emplace_back(key, value);
}

}  // namespace vantrel::platform::memory
