#include "sending/morse_table.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vantrel::sending {
namespace {

constexpr std::pair<char, const char*> kMainTable[] = {
    {'A', ".-"},     {'B', "-..."},   {'C', "-.-."},   {'D', "-.."},     {'E', "."},
    {'F', "..-."},   {'G', "--."},    {'H', "...."},   {'I', ".."},      {'J', ".---"},
    {'K', "-.-"},    {'L', ".-.."},   {'M', "--"},     {'N', "-."},      {'O', "---"},
    {'P', ".--."},   {'Q', "--.-"},   {'R', ".-."},    {'S', "..."},     {'T', "-"},
    {'U', "..-"},    {'V', "...-"},   {'W', ".--"},    {'X', "-..-"},    {'Y', "-.--"},
    {'Z', "--.."},   {'1', ".----"},  {'2', "..---"},  {'3', "...--"},   {'4', "....-"},
    {'5', "....."},  {'6', "-...."},  {'7', "--..."},  {'8', "---.."},   {'9', "----."},
    {'0', "-----"},  {' ', "_"},      {'/', "-..-."},  {'.', ".-.-.-"},  {',', "--..--"},
    {':', "---..."}, {'?', "..--.."}, {'-', "-....-"}, {'\'', ".----."}, {'(', "-.--."},
    {')', "-.--.-"}, {'"', ".-..-."}, {'@', ".--.-."},
};

// Nordic letters, by Windows-1252 code, valid only in the languages below.
constexpr std::array<std::pair<unsigned char, const char*>, 6> kLanguageRows{{
    {196, ".-.-"},   // Ä
    {198, ".-.-"},   // Æ
    {197, ".--.-"},  // Å
    {214, "---."},   // Ö
    {216, "---."},   // Ø
    {222, ".--.."},  // Þ
}};

constexpr std::array<int16_t, 7> kNordicLanguages{1030, 1035, 1044, 2068, 1053, 2077, 1039};

char UpperAscii(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

}  // namespace

std::string CharToMorse(char character, int16_t languageId) {
  const char upper = UpperAscii(character);
  for (const auto& [key, elements] : kMainTable) {
    if (key == upper) return elements;
  }
  if (std::find(kNordicLanguages.begin(), kNordicLanguages.end(), languageId) ==
      kNordicLanguages.end()) {
    return "";
  }
  // The code of the character as given: a lower-case ä (228) has no row.
  const auto code = static_cast<unsigned char>(character);
  for (const auto& [rowCode, elements] : kLanguageRows) {
    if (rowCode == code) return elements;
  }
  return "";
}

}  // namespace vantrel::sending
