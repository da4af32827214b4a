#include "platform/linux/profile_claim.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace vantrel::platform::linuxos {
namespace {

using ::testing::HasSubstr;

class ProfileClaimTest : public ::testing::Test {
 protected:
  std::optional<ProfileClaim> Claim(const std::string& name = "Vantrel.INI") {
    error_.clear();
    return ProfileClaim::Claim(folder_ / name, error_);
  }
  void Touch(const std::string& name) { std::ofstream(folder_ / name) << "[S]\nK=1\n"; }
  // Every name in the folder but the locks, which are the claim's own business.
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
      const std::string name = entry.path().filename();
      if (!name.ends_with(".lock")) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
  }

  testing::TempFolder folder_;
  std::string error_;
};

TEST_F(ProfileClaimTest, OneKeyerPerProfileUntilItGoes) {
  std::optional<ProfileClaim> first = Claim();
  ASSERT_TRUE(first) << error_;
  EXPECT_FALSE(Claim());
  EXPECT_THAT(error_, HasSubstr("already running with the settings file " + folder_ / "Vantrel.INI"));
  EXPECT_THAT(error_, HasSubstr("(process " + std::to_string(::getpid()) + ")"));
  // Another profile is another keyer.
  EXPECT_TRUE(Claim("contestVantrel.INI")) << error_;

  first.reset();
  EXPECT_TRUE(Claim()) << error_;
}

TEST_F(ProfileClaimTest, ClearsOnlyThisProfilesLeftoverTemporaries) {
  Touch("Vantrel.INI");
  Touch(".Vantrel.INI.a1B2c3");  // a killed writer's
  Touch(".Vantrel.INI.a1B2c");   // not one of ours
  Touch(".contestVantrel.INI.x9y8z7");  // another profile's, maybe in use
  ASSERT_TRUE(Claim()) << error_;
  EXPECT_EQ(Names(), (std::vector<std::string>{".Vantrel.INI.a1B2c", ".contestVantrel.INI.x9y8z7",
                                               "Vantrel.INI"}));
}

TEST_F(ProfileClaimTest, RefusesASettingsFileThatIsNoRegularFile) {
  ASSERT_EQ(::mkfifo((folder_ / "Vantrel.INI").c_str(), 0600), 0);
  EXPECT_FALSE(Claim());
  EXPECT_THAT(error_, HasSubstr(folder_ / "Vantrel.INI" + " is not a regular file"));

  std::filesystem::create_directory(folder_ / "contestVantrel.INI");
  EXPECT_FALSE(Claim("contestVantrel.INI"));
  EXPECT_THAT(error_, HasSubstr("is not a regular file"));

  // A link to a regular file is a regular file.
  Touch("real.ini");
  ASSERT_EQ(::symlink("real.ini", (folder_ / "linkVantrel.INI").c_str()), 0);
  EXPECT_TRUE(Claim("linkVantrel.INI")) << error_;
}

}  // namespace
}  // namespace vantrel::platform::linuxos
