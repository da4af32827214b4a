#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>

#include "platform/memory/memory_profile_file.h"
#include "settings/settings_store.h"

namespace vantrel::settings {
namespace {

using namespace std::string_view_literals;

struct TrimCase {
  std::string_view buffer;
  std::string read;
};
std::ostream& operator<<(std::ostream& out, const TrimCase& c) {
  return out << ::testing::PrintToString(std::string(c.buffer));
}

class TrimAtNulTest : public ::testing::TestWithParam<TrimCase> {};

TEST_P(TrimAtNulTest, ReadsAsAFixedWidthBuffer) { EXPECT_EQ(TrimAtNul(GetParam().buffer), GetParam().read); }

INSTANTIATE_TEST_SUITE_P(
    Buffers, TrimAtNulTest,
    ::testing::Values(TrimCase{"20\0\0\0"sv, "20"}, TrimCase{"  CQ TEST\0  "sv, "CQ TEST"},
                      // Blanks come off the ends of the whole buffer, not of the value.
                      TrimCase{"  ON  \0\0"sv, "ON  "}, TrimCase{"A\0B\0"sv, "A"},
                      TrimCase{"\0ON"sv, ""}, TrimCase{"   \0ON"sv, ""}, TrimCase{"ON"sv, ""},
                      TrimCase{"    "sv, ""}, TrimCase{""sv, ""}));

TEST(SectionOf, PutsTheKeyerKeysInTheirSectionInAnyCase) {
  EXPECT_STREQ(SectionOf("WinKey Analog Speed"), kKeyerSection);
  EXPECT_STREQ(SectionOf("winkey hold radio polling"), kKeyerSection);
  EXPECT_STREQ(SectionOf("WINKEY PORT"), kKeyerSection);
  EXPECT_STREQ(SectionOf("Paddle Only SideTone"), kKeyerSection);
  EXPECT_STREQ(SectionOf("SideTone"), kMainSection);
  EXPECT_STREQ(SectionOf("WPM"), kMainSection);
  EXPECT_STREQ(SectionOf("WinKey"), kMainSection);
  EXPECT_STREQ(SectionOf("WinKey Port "), kMainSection);
  EXPECT_STREQ(SectionOf(""), kMainSection);
}

class SettingsStoreTest : public ::testing::Test {
 protected:
  platform::memory::MemoryProfileFile file;
  SettingsStore store{file};
};

TEST_F(SettingsStoreTest, ReadsThroughTheCurrentSection) {
  store.WriteSetting(kMainSection, "WinKey Speed", "20");
  store.WriteSetting(kKeyerSection, "WinKey Speed", "30");
  EXPECT_EQ(store.ReadSetting("WinKey Speed", "0"), "20");
  store.SettingsSection = kKeyerSection;
  EXPECT_EQ(store.ReadSetting("WinKey Speed", "0"), "30");
  EXPECT_EQ(store.ReadSetting("WPM", " 25 "), "25");
}

TEST_F(SettingsStoreTest, LongValueReadsBackAsItsFirst1999Characters) {
  std::string value(2500, 'E');
  value[1998] = 'T';
  value[1999] = 'X';
  store.WriteSetting(kMainSection, "Text", value);
  EXPECT_EQ(store.ReadSetting("Text", ""), value.substr(0, 1999));
  store.WriteSetting(kMainSection, "Text", value.substr(0, 1999));
  EXPECT_EQ(store.ReadSetting("Text", ""), value.substr(0, 1999));
}

TEST_F(SettingsStoreTest, LeadingBlanksAreNotReadBack) {
  store.WriteSetting(kMainSection, "Keying", "   MOX");
  EXPECT_EQ(store.ReadSetting("Keying", "VOX"), "MOX");
}

}  // namespace
}  // namespace vantrel::settings
