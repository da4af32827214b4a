#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/memory/memory_profile_file.h"

namespace vantrel::platform::memory {
namespace {

const std::string kFile = "/opt/vantrel/Vantrel.INI";
const std::string kProfile = "/opt/vantrel/contestVantrel.INI";

class MemoryProfileFileTest : public ::testing::Test {
 protected:
  std::string Read(const std::string& section, const std::string& key, int size = 2000,
                   const std::string& fallback = "none", const std::string& path = kFile) {
    return file.GetPrivateProfileString(section, key, fallback, size, path);
  }
  void Write(const std::string& section, const std::string& key, const std::string& value,
             const std::string& path = kFile) {
    file.WritePrivateProfileString(section, key, value, path);
  }
  MemoryProfileFile file;
};

TEST_F(MemoryProfileFileTest, NamesMatchWithoutRegardToCaseWhenReadOrReplaced) {
  Write("Main", "Keying", "VOX");
  Write("Main", "WPM", "20");
  Write("MAIN", "KEYING", "MOX");
  Write("Other", "Keying", "VOX");
  EXPECT_EQ(Read("main", "keying"), "MOX");
  EXPECT_EQ(Read("Main", "WPM"), "20");
  EXPECT_EQ(Read("Other", "Keying"), "VOX");
  EXPECT_EQ(Read("Other", "WPM"), "none");  // sections stay apart
  EXPECT_EQ(Read("Main", "Keyin"), "none");
  EXPECT_EQ(file.SectionNames(kFile), (std::vector<std::string>{"Main", "Other"}));
}

TEST_F(MemoryProfileFileTest, ValuesLoseSurroundingBlanksThenAreCutToOneLessThanTheSize) {
  Write("Main", "Text", " \t AB  CD \t ");
  Write("Main", "Blank", "   ");
  EXPECT_EQ(Read("Main", "Text"), "AB  CD");
  EXPECT_EQ(Read("Main", "Blank"), "");
  EXPECT_EQ(Read("Main", "Text", 4), "AB ");
  EXPECT_EQ(Read("Main", "Text", 7), "AB  CD");
  EXPECT_EQ(Read("Main", "Text", 1), "");
  EXPECT_EQ(Read("Main", "Missing", 3, "  12345 "), "12");  // the fallback too
}

TEST_F(MemoryProfileFileTest, FilesStayApartAndComeIntoBeingOnFirstWrite) {
  EXPECT_FALSE(file.FileExists(kFile));
  Write("Main", "WPM", "20");
  EXPECT_TRUE(file.FileExists(kFile));
  EXPECT_FALSE(file.FileExists(kProfile));
  EXPECT_FALSE(file.FileExists("/opt/vantrel/vantrel.ini"));  // paths keep their case
  EXPECT_EQ(Read("Main", "WPM", 2000, "none", kProfile), "none");
  EXPECT_TRUE(file.SectionNames(kProfile).empty());
}

TEST_F(MemoryProfileFileTest, CopyIsWholeAndIndependentAndFailsOnAMissingSource) {
  Write("Main", "WPM", "20");
  Write("Initialized", "Create Date/Time", "then");
  Write("Main", "WPM", "35", kProfile);
  Write("Old", "K", "1", kProfile);

  EXPECT_FALSE(file.CopyFile("/opt/vantrel/absent.INI", kProfile));
  EXPECT_EQ(Read("Main", "WPM", 2000, "none", kProfile), "35");

  EXPECT_TRUE(file.CopyFile(kFile, kProfile));
  EXPECT_EQ(file.SectionNames(kProfile), (std::vector<std::string>{"Main", "Initialized"}));
  Write("Main", "WPM", "25", kProfile);
  EXPECT_EQ(Read("Main", "WPM"), "20");
  EXPECT_EQ(Read("Main", "WPM", 2000, "none", kProfile), "25");
  EXPECT_TRUE(file.CopyFile(kFile, kFile));
  EXPECT_EQ(Read("Main", "WPM"), "20");
}

}  // namespace
}  // namespace vantrel::platform::memory
