#include "platform/linux/linux_system.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/temp_folder.h"

namespace vantrel::platform::linuxos {
namespace {

TEST(WindowsLanguageNumber, LocaleThenLanguageThenEnglish) {
  // The country decides first (sv_FI); an unknown one leaves the language (de_LU).
  for (const auto& [locale, number] : {std::pair{"sv_SE.UTF-8", 1053}, {"sv_FI.UTF-8", 2077}, {"de_AT@euro", 3079},
                                       {"de_LU.UTF-8", 1031}, {"nb_NO.UTF-8", 1044}, {"C.UTF-8", 1033}, {"", 1033}}) {
    EXPECT_EQ(WindowsLanguageNumber(locale), number) << locale;
  }
}

class LinuxSystemFolders : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"VANTREL_HOME", "XDG_CONFIG_HOME", "HOME"}) {
      const char* value = std::getenv(name);
      saved_.emplace_back(name, value ? std::optional<std::string>(value) : std::nullopt);
    }
  }
  void TearDown() override {
    for (const auto& [name, value] : saved_) {
      if (value) {
        ::setenv(name.c_str(), value->c_str(), 1);
      } else {
        ::unsetenv(name.c_str());
      }
    }
  }

  testing::TempFolder folder_;
  const std::string dir_ = folder_.path();
  std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

TEST_F(LinuxSystemFolders, ConfigFolderFollowsTheEnvironmentAndIsMade) {
  std::string error;
  ::setenv("VANTREL_HOME", (dir_ + "/a/b").c_str(), 1);
  EXPECT_EQ(ConfigDirectory(error), dir_ + "/a/b");
  EXPECT_TRUE(std::filesystem::is_directory(dir_ + "/a/b"));

  ::unsetenv("VANTREL_HOME");
  ::setenv("XDG_CONFIG_HOME", dir_.c_str(), 1);
  EXPECT_EQ(ConfigDirectory(error), dir_ + "/vantrel");

  ::unsetenv("XDG_CONFIG_HOME");
  ::setenv("HOME", dir_.c_str(), 1);
  EXPECT_EQ(ConfigDirectory(error), dir_ + "/.config/vantrel");

  std::ofstream(dir_ + "/file") << "in the way";
  ::setenv("VANTREL_HOME", (dir_ + "/file/sub").c_str(), 1);
  EXPECT_EQ(ConfigDirectory(error), "");
  EXPECT_NE(error.find("Not a directory"), std::string::npos) << error;
}

TEST_F(LinuxSystemFolders, StringTableReadsCrlfLinesByNumber) {
  std::ofstream(dir_ + "/1053.DLL") << "9501=Arkiv\r\n9502=\r\n95030=Fel\r\n9503=Inst\xe4llningar\r\n";
  LinuxLanguage language(dir_);
  EXPECT_EQ(language.LoadLibrary("1031.DLL"), 0);
  const Handle module = language.LoadLibrary("1053.DLL");
  ASSERT_NE(module, 0);
  EXPECT_EQ(language.LoadString(module, 9501), "Arkiv");
  EXPECT_EQ(language.LoadString(module, 9502), "");
  EXPECT_EQ(language.LoadString(module, 9503), "Inst\xe4llningar");  // not 95030's
  EXPECT_EQ(language.LoadString(module, 9504), "");
}

}  // namespace
}  // namespace vantrel::platform::linuxos
