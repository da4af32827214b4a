#include <gtest/gtest.h>

#include <tuple>
#include <utility>

#include "sending/morse_table.h"

namespace vantrel::sending {
namespace {

constexpr int16_t kEnglish = 1033;
constexpr int16_t kSwedish = 1053;

TEST(CharToMorse, LettersDigitsAndPunctuation) {
  for (const auto& [c, code] : {std::pair{'A', ".-"}, {'Q', "--.-"}, {'0', "-----"}, {'9', "----."},
                                {'?', "..--.."}, {'"', ".-..-."}, {'@', ".--.-."}, {'(', "-.--."}, {')', "-.--.-"}}) {
    EXPECT_EQ(CharToMorse(c, kEnglish), code) << c;
  }
}

TEST(CharToMorse, LowerCaseLettersAreTheirCapitals) {
  for (char c = 'a'; c <= 'z'; ++c) {
    EXPECT_EQ(CharToMorse(c, kEnglish), CharToMorse(static_cast<char>(c - 32), kEnglish)) << c;
    EXPECT_FALSE(CharToMorse(c, kEnglish).empty());
  }
}

TEST(CharToMorse, SpaceIsTheWordGapAndUnderscoreIsNothing) {
  EXPECT_EQ(CharToMorse(' ', kEnglish), "_");
  EXPECT_EQ(CharToMorse('_', kEnglish), "");
}

TEST(CharToMorse, MarksAndProsignKeysHaveNoCode) {
  for (const char c : {'=', '+', '&', '!', '^', '|', '~', '\xBB', '\xAB'}) {
    EXPECT_EQ(CharToMorse(c, kSwedish), "") << static_cast<int>(c);
  }
}

// Ä Swedish, Æ Danish, Å Norwegian, Ö Finland's Swedish, Ø Norwegian Nynorsk, Þ Icelandic;
// German has no rows, and the rows go by the code as given: no ä, no Ç.
TEST(CharToMorse, NordicLettersExistOnlyInTheirLanguages) {
  const std::tuple<char, int16_t, const char*> cases[] = {
      {'\xC4', kSwedish, ".-.-"}, {'\xC6', 1030, ".-.-"}, {'\xC5', 1044, ".--.-"}, {'\xD6', 2077, "---."},
      {'\xD8', 2068, "---."},     {'\xDE', 1039, ".--.."}, {'\xC4', kEnglish, ""},  {'\xC4', 1031, ""},
      {'\xE4', kSwedish, ""},     {'\xC7', kSwedish, ""},  {'\xFF', kSwedish, ""}};
  for (const auto& [c, language, code] : cases) {
    EXPECT_EQ(CharToMorse(c, language), code) << static_cast<int>(static_cast<unsigned char>(c)) << " in " << language;
  }
}

}  // namespace
}  // namespace vantrel::sending
