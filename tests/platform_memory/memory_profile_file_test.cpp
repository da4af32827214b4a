#include <gtest/gtest.h>

#include <string>

#include "platform/memory/memory_profile_file.h"

namespace vantrel::platform::memory {
namespace {

class MemoryProfileFileTest : public ::testing::Test {
 protected:
  std::string Read(const std::string& section, const std::string& key, int size = 2000,
                   const std::string& fallback = "none") {
    return file.GetPrivateProfileString(section, key, fallback, size);
  }
  MemoryProfileFile file;
};

TEST_F(MemoryProfileFileTest, NamesMatchWithoutRegardToCaseWhenReadOrReplaced) {
  file.WritePrivateProfileString("Main", "Keying", "VOX");
  file.WritePrivateProfileString("Main", "WPM", "20");
  file.WritePrivateProfileString("MAIN", "KEYING", "MOX");
  file.WritePrivateProfileString("Other", "Keying", "VOX");
  EXPECT_EQ(Read("main", "keying"), "MOX");
  EXPECT_EQ(Read("Main", "WPM"), "20");
  EXPECT_EQ(Read("Other", "Keying"), "VOX");
  EXPECT_EQ(Read("Other", "WPM"), "none");  // sections stay apart
  EXPECT_EQ(Read("Main", "Keyin"), "none");
}

TEST_F(MemoryProfileFileTest, ValuesLoseSurroundingBlanksThenAreCutToOneLessThanTheSize) {
  file.WritePrivateProfileString("Main", "Text", " \t AB  CD \t ");
  file.WritePrivateProfileString("Main", "Blank", "   ");
  EXPECT_EQ(Read("Main", "Text"), "AB  CD");
  EXPECT_EQ(Read("Main", "Blank"), "");
  EXPECT_EQ(Read("Main", "Text", 4), "AB ");
  EXPECT_EQ(Read("Main", "Text", 7), "AB  CD");
  EXPECT_EQ(Read("Main", "Text", 1), "");
  EXPECT_EQ(Read("Main", "Missing", 3, "  12345 "), "12");  // the fallback too
}

}  // namespace
}  // namespace vantrel::platform::memory
