#pragma once

#include <cstdint>
#include <string>

namespace vantrel::sending {

// The element string of one character: "." dot, "-" dash, "_" word gap, or
// empty for a character that keys nothing. `languageId` decides whether the
// Nordic letters exist.
std::string CharToMorse(char character, int16_t languageId);

}  // namespace vantrel::sending
