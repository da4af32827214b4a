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

TEST_F(MemoryProfileFileTest, NamesMatchWithoutRegardToCase) {
  file.WritePrivateProfileString("frmVantrel Settings", "SideTone", "ON");
  EXPECT_EQ(Read("FRMVANTREL SETTINGS", "sidetone"), "ON");
  EXPECT_EQ(Read("WinKey Settings", "SideTone"), "none");  // sections stay apart
  EXPECT_EQ(Read("frmVantrel Settings", "SideTon"), "none");
}

TEST_F(MemoryProfileFileTest, WritesReplaceInPlaceOrAppend) {
  file.WritePrivateProfileString("Main", "Keying", "VOX");
  file.WritePrivateProfileString("Main", "WPM", "20");
  file.WritePrivateProfileString("MAIN", "KEYING", "MOX");
  file.WritePrivateProfileString("Other", "Keying", "VOX");
  EXPECT_EQ(Read("main", "keying"), "MOX");
  EXPECT_EQ(Read("Main", "WPM"), "20");
  EXPECT_EQ(Read("Other", "Keying"), "VOX");
}

TEST_F(MemoryProfileFileTest, SurroundingBlanksAreRemoved) {
  file.WritePrivateProfileString("Main", "Text", " \t CQ  TEST \t ");
  file.WritePrivateProfileString("Main", "Blank", "   ");
  EXPECT_EQ(Read("Main", "Text"), "CQ  TEST");
  EXPECT_EQ(Read("Main", "Blank"), "");
  EXPECT_EQ(Read("Main", "Missing", 2000, "  20 "), "20");
}

TEST_F(MemoryProfileFileTest, ValuesAreCutToOneLessThanTheSize) {
  file.WritePrivateProfileString("Main", "Text", "   ABCDEF");
  EXPECT_EQ(Read("Main", "Text", 4), "ABC");  // cut after the blanks are gone
  EXPECT_EQ(Read("Main", "Text", 7), "ABCDEF");
  EXPECT_EQ(Read("Main", "Text", 1), "");
  EXPECT_EQ(Read("Main", "Missing", 3, "12345"), "12");
}

}  // namespace
}  // namespace vantrel::platform::memory
