#include "platform/memory/memory_profile_file.h"

#include "vb/vb.h"

namespace vantrel::platform::memory {
MemoryProfileFile::Section* MemoryProfileFile::Find(Sections& sections,
                                                    const std::string& section) {
  for (Section& s : sections) {
    if (vb::SameText(s.name, section)) return &s;
  }
  return nullptr;
}

std::string MemoryProfileFile::GetPrivateProfileString(const std::string& section,
                                                       const std::string& key,
                                                       const std::string& fallback, int size,
                                                       const std::string& file) {
  std::string value(vb::TrimBlanks(fallback));
  const auto found = files_.find(file);
  if (const Section* s = found == files_.end() ? nullptr : Find(found->second, section)) {
    for (const auto& [name, stored] : s->entries) {
      if (vb::SameText(name, key)) {
        value = ValueFromFile(stored);
        break;
      }
    }
  }
  if (size > 0 && value.size() > static_cast<size_t>(size - 1)) value.resize(size - 1);
  return value;
}

bool MemoryProfileFile::WritePrivateProfileString(const std::string& section,
                                                  const std::string& key,
                                                  const std::string& value,
                                                  const std::string& file) {
  if (failing_.contains(file)) return false;
  Sections& sections = files_[file];
  Section* s = Find(sections, section);
  if (!s) s = &sections.emplace_back(Section{section, {}});
  for (auto& [name, stored] : s->entries) {
    if (vb::SameText(name, key)) {
      stored = ValueForFile(value);
      return true;
    }
  }
  s->entries.emplace_back(key, ValueForFile(value));
  return true;
}

void MemoryProfileFile::SetWriteFails(const std::string& file, bool fails) {
  if (fails) {
    failing_.insert(file);
  } else {
    failing_.erase(file);
  }
}

bool MemoryProfileFile::FileExists(const std::string& file) { return files_.contains(file); }

bool MemoryProfileFile::CopyFile(const std::string& from, const std::string& to) {
  const auto source = files_.find(from);
  if (source == files_.end() || failing_.contains(to)) return false;
  files_[to] = source->second;
  return true;
}

std::vector<std::string> MemoryProfileFile::SectionNames(const std::string& file) const {
  std::vector<std::string> names;
  if (const auto found = files_.find(file); found != files_.end()) {
    for (const Section& s : found->second) names.push_back(s.name);
  }
  return names;
}

}  // namespace vantrel::platform::memory
