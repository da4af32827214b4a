// The stored macros and their buttons' looks, indexed 1 to 36. Entry 0 is
// the working copy of the macro editor.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/controls.h"

namespace vantrel::macros {

inline constexpr int16_t kMacroCount = 36;

template <typename T>
using PerMacro = std::array<T, kMacroCount + 1>;

struct MacroState {
  PerMacro<std::string> MacroTexts;
  PerMacro<std::string> MacroCaptions;
  PerMacro<platform::Colour> MacroBackColors{};
  PerMacro<platform::Colour> MacroOverBackColors{};
  PerMacro<platform::Colour> MacroForeColors{};
  PerMacro<platform::Colour> MacroOverForeColors{};
  PerMacro<std::string> MacroFontNames;
  PerMacro<std::string> MacroOverFontNames;
  PerMacro<int16_t> MacroFontSizes{};
  PerMacro<int16_t> MacroOverFontSizes{};
  PerMacro<bool> MacroFontBolds{};
  PerMacro<bool> MacroOverFontBolds{};
  PerMacro<bool> MacroFontItalics{};
  PerMacro<bool> MacroOverFontItalics{};
};

// Gives a button the look of entry `i`, under the mouse or away from it:
// colours and font, not the caption.
void ShowLook(platform::CommandButton& button, const MacroState& m, int16_t i, bool underMouse);

}  // namespace vantrel::macros
