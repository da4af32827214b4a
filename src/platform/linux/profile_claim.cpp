#include "platform/linux/profile_claim.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/linux/ini_profile_file.h"

namespace vantrel::platform::linuxos {
namespace {


struct PathParts {
  std::string dir;
  std::string base;
};

PathParts Split(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {".", path};
  return {slash == 0 ? "/" : path.substr(0, slash), path.substr(slash + 1)};
}

std::string ReadPid(int fd) {
  char text[32] = {};
  const ssize_t got = ::pread(fd, text, sizeof text - 1, 0);
  if (got <= 0) return "";
  std::string pid(text, static_cast<size_t>(got));
  return pid.substr(0, pid.find_first_not_of("0123456789"));
}

void WritePid(int fd) {
  const std::string pid = std::to_string(::getpid()) + "\n";
  if (::ftruncate(fd, 0) == 0 && ::pwrite(fd, pid.data(), pid.size(), 0) < 0) {
    // The number only helps the message of a second start; the lock holds without it.
  }
}

void ClearTemporaries(const std::string& settingsFile) {
  const PathParts parts = Split(settingsFile);
  const std::string prefix = Split(TemporaryPrefix(settingsFile)).base;
  DIR* dir = ::opendir(parts.dir.c_str());
  if (!dir) return;
  while (const dirent* entry = ::readdir(dir)) {
    const std::string name = entry->d_name;
    if (name.size() == prefix.size() + kTemporaryUniqueLength && name.starts_with(prefix)) {
      ::unlinkat(::dirfd(dir), name.c_str(), 0);
    }
  }
  ::closedir(dir);
}

}  // namespace

std::optional<ProfileClaim> ProfileClaim::Claim(const std::string& settingsFile, std::string& error) {
  const PathParts parts = Split(settingsFile);
  const std::string lockPath = parts.dir + "/." + parts.base + ".lock";
  const int fd = ::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (fd >= 0 && ::flock(fd, LOCK_EX | LOCK_NB) != 0) {
    const std::string pid = ReadPid(fd);
    ::close(fd);
    error = "Vantrel is already running with the settings file " + settingsFile +
            (pid.empty() ? "" : " (process " + pid + ")") +
            "; start it with another profile name to run two.";
    return std::nullopt;
  }
  ProfileClaim claim(fd);
  if (struct stat info {}; ::stat(settingsFile.c_str(), &info) == 0 && !S_ISREG(info.st_mode)) {
    error = settingsFile + " is not a regular file; Vantrel keeps its settings in a plain file. "
            "Move it away and start again.";
    return std::nullopt;
  }
  if (fd >= 0) {
    WritePid(fd);
    // Only the lock's holder writes this profile, so any temporary file left is a dead one's.
    ClearTemporaries(settingsFile);
  }
  return claim;
}

ProfileClaim::~ProfileClaim() {
  if (fd_ >= 0) ::close(fd_);
}

}  // namespace vantrel::platform::linuxos
