// One running keyer per profile: two keyers writing one settings file would
// each replace the other's changes.
#pragma once

#include <optional>
#include <string>
#include <utility>

namespace vantrel::platform::linuxos {

class ProfileClaim {
 public:
  // Takes the profile's lock (a hidden file beside the settings file), refuses
  // a settings file that is not a regular file, and clears the temporary files
  // a killed writer left beside it. Empty, with `error` saying why, when the
  // profile cannot be used. A folder where no lock can be made (read-only)
  // is no reason to refuse: nothing can be written there anyway.
  static std::optional<ProfileClaim> Claim(const std::string& settingsFile, std::string& error);

  ProfileClaim(ProfileClaim&& other) noexcept : fd_(other.fd_) { other.fd_ = -1; }
  ProfileClaim& operator=(ProfileClaim&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  ~ProfileClaim();

 private:
  explicit ProfileClaim(int fd) : fd_(fd) {}
  int fd_;  // holds the lock while open; -1 when none could be made
};

}  // namespace vantrel::platform::linuxos
