#include <gtest/gtest.h>

#include "sending/morse_table.h"

namespace vantrel::sending {
namespace {

constexpr int16_t kEnglish = 1033;
constexpr int16_t kSwedish = 1053;

TEST(CharToMorse, LettersDigitsAndPunctuation) {
  EXPECT_EQ(CharToMorse('A', kEnglish), ".-");
  EXPECT_EQ(CharToMorse('Q', kEnglish), "--.-");
  EXPECT_EQ(CharToMorse('0', kEnglish), "-----");
  EXPECT_EQ(CharToMorse('9', kEnglish), "----.");
  EXPECT_EQ(CharToMorse('?', kEnglish), "..--..");
  EXPECT_EQ(CharToMorse('"', kEnglish), ".-..-.");
  EXPECT_EQ(CharToMorse('@', kEnglish), ".--.-.");
  EXPECT_EQ(CharToMorse('(', kEnglish), "-.--.");
  EXPECT_EQ(CharToMorse(')', kEnglish), "-.--.-");
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

TEST(CharToMorse, NordicLettersExistOnlyInTheirLanguages) {
  EXPECT_EQ(CharToMorse('\xC4', kSwedish), ".-.-");  // Ä
  EXPECT_EQ(CharToMorse('\xC6', 1030), ".-.-");      // Æ, Danish
  EXPECT_EQ(CharToMorse('\xC5', 1044), ".--.-");     // Å
  EXPECT_EQ(CharToMorse('\xD6', 2077), "---.");      // Ö
  EXPECT_EQ(CharToMorse('\xD8', 2068), "---.");      // Ø
  EXPECT_EQ(CharToMorse('\xDE', 1039), ".--..");     // Þ
  EXPECT_EQ(CharToMorse('\xC4', kEnglish), "");
  EXPECT_EQ(CharToMorse('\xC4', 1031), "");  // German has no rows
}

TEST(CharToMorse, NordicRowsGoByTheCodeAsGiven) {
  EXPECT_EQ(CharToMorse('\xE4', kSwedish), "");  // ä, 228
  EXPECT_EQ(CharToMorse('\xC7', kSwedish), "");  // Ç: in the range, no row
  EXPECT_EQ(CharToMorse('\xFF', kSwedish), "");
}

}  // namespace
}  // namespace vantrel::sending
