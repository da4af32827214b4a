// The settings file as a hand edit or a crash may leave it: every read must
// give a value, and what the keyer writes into such a file must read back.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/linux/ini_profile_file.h"
#include "settings/settings_store.h"
#include "vb/vb.h"

namespace {

using vantrel::platform::linuxos::IniProfileFile;

// In memory where the system has such a folder: the syncs of a write cost
// nothing there. Never freed, so that it outlives the removal at exit.
const std::string& Folder() {
  static const std::string* folder = [] {
    auto* path = new std::string(::access("/dev/shm", W_OK) == 0 ? "/dev/shm/vantrel-fuzz-XXXXXX"
                                                                : "/tmp/vantrel-fuzz-XXXXXX");
    if (::mkdtemp(path->data()) == nullptr) std::abort();
    std::atexit([] {
      std::error_code ignored;
      std::filesystem::remove_all(Folder(), ignored);
    });
    return path;
  }();
  return *folder;
}

// The input's fields between '|' name a section, a key and a value.
std::string Field(const std::string& text, size_t index) {
  size_t start = 0;
  for (size_t i = 0; i < index; ++i) {
    start = text.find('|', start);
    if (start == std::string::npos) return "K";
    ++start;
  }
  return text.substr(start, text.find('|', start) - start).substr(0, 40);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::string path = Folder() + "/Vantrel.INI";
  std::ofstream(path, std::ios::binary | std::ios::trunc) << input;

  IniProfileFile ini;
  // Names taken from the input reach its sections and keys now and then.
  const std::string section = Field(input, 1);
  const std::string key = Field(input, 2);
  for (const std::string& name : {section, std::string(vantrel::settings::kMainSectionRead)}) {
    const std::string value = ini.GetPrivateProfileString(name, key, "fallback", 2000, path);
    if (value.size() > 1999) std::abort();
    // The conversions the load puts every value through.
    (void)vantrel::vb::CInt(value);
    (void)vantrel::vb::CLng(value);
    (void)vantrel::vb::CDbl(value);
    (void)vantrel::vb::CBool(value);
    (void)vantrel::vb::Val(value);
  }

  // A key and value without line breaks or NULs, as the keyer writes them.
  const std::string value = Field(input, 3);
  const bool writable = section.find_first_of("\r\n]\0", 0, 4) == std::string::npos &&
                        key.find_first_of("\r\n=[;\0", 0, 6) == std::string::npos &&
                        value.find_first_of("\r\n\0", 0, 3) == std::string::npos;
  const std::string trimmedSection(vantrel::vb::TrimBlanks(section));
  const std::string trimmedKey(vantrel::vb::TrimBlanks(key));
  if (writable && !trimmedSection.empty() && !trimmedKey.empty() && trimmedSection == section &&
      trimmedKey == key) {
    if (!ini.WritePrivateProfileString(section, key, value, path)) std::abort();
    // What comes back is the value less its surrounding blanks, quotes and all.
    const std::string expected(vantrel::vb::TrimBlanks(value));
    if (ini.GetPrivateProfileString(section, key, "", 2000, path) != expected) std::abort();
  }
  return 0;
}
