// Puts every settings write in the trace, whatever file store lies below.
#pragma once

#include "platform/memory/trace.h"
#include "platform/profile_file.h"

namespace vantrel::platform::memory {

class TracingProfileFile : public ProfileFile {
 public:
  TracingProfileFile(ProfileFile& files, Trace& trace) : files_(files), trace_(trace) {}

  std::string GetPrivateProfileString(const std::string& section, const std::string& key,
                                      const std::string& fallback, int size,
                                      const std::string& file) override {
    return files_.GetPrivateProfileString(section, key, fallback, size, file);
  }
  bool WritePrivateProfileString(const std::string& section, const std::string& key,
                                 const std::string& value, const std::string& file) override {
    trace_.Emit("setting " + Trace::Quote(section) + " " + Trace::Quote(key) + " " +
                Trace::Quote(value));
    return files_.WritePrivateProfileString(section, key, value, file);
  }
  bool FileExists(const std::string& file) override { return files_.FileExists(file); }
  bool CopyFile(const std::string& from, const std::string& to) override {
    return files_.CopyFile(from, to);
  }

 private:
  ProfileFile& files_;
  Trace& trace_;
};

}  // namespace vantrel::platform::memory
