// The numeric and text conversions of the BASIC runtime that the keyer's
// settings file and formulas were written against. Everything that turns text
// into a number, or rounds, goes through here so that the rules live once.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantrel::vb {

// Round to the nearest whole number, ties to the even neighbour (CInt, CLng, CCur).
double RoundHalfEven(double value);

// Whole-text conversions: surrounding spaces and tabs allowed, an exponent may
// be written with 'E' or 'D', fractions rounded half to even. Empty if the text
// is not one number or the value does not fit the width.
// "&H" hexadecimal and "&O" octal hold at most 32 bits and, as literals do, are
// an Integer when their value fits 16 bits ("&HFFFF" is -1, also for CLng) and a
// Long otherwise. A sign before "&H" and a '&' or '%' suffix after it are refused.
std::optional<int16_t> CInt(std::string_view text);
std::optional<int32_t> CLng(std::string_view text);
std::optional<double> CDbl(std::string_view text);
// "True" or "False" in any case, or a number: 0 is False, anything else True.
std::optional<bool> CBool(std::string_view text);

// The longest numeric prefix as a double, 0 if there is none; never fails.
// Spaces, tabs and line feeds anywhere in the number are ignored ("1 2" is 12).
// A trailing '&' keeps a radix literal a Long ("&HFFFF&" is 65535); radix digits
// are read only while they fit 32 bits. Too large a decimal gives an infinity.
double Val(std::string_view text);

// Format a number with a pattern of '#', '0' and at most one '.', as
// "##0", "#0.0" or "##.000000000000". Rounds half away from zero on the 15
// significant digits the runtime keeps; the whole part is never cut, and the
// '.' shows even with no digits after it ("#.##" gives "5." for 5). Any other
// character is copied where it stands; a pattern with no '#' or '0' in front
// of the point shows the whole part there.
std::string Format(double value, std::string_view pattern);

// A single-precision value as text, as CStr writes it: up to 7 significant
// digits, no trailing zeros, "E+07" style for exponents.
std::string CStr(float value);

// The upper-case form of a Windows-1252 character, as UCase gives it:
// a to z, the accented small letters, and the few that Windows-1252 keeps
// elsewhere (š, œ, ž, ÿ). Everything else is itself.
unsigned char UCaseAnsi(unsigned char c);
// A whole text in capitals by the same rule.
std::string UCase(std::string text);

// Trim$: the text without its leading and trailing spaces; tabs stay, as
// the language strings and the macro words' arguments keep them.
std::string Trim(std::string_view text);
// Without leading and trailing blanks, spaces and tabs alike: what the number
// conversions skip and the settings file drops around names and values.
std::string_view TrimBlanks(std::string_view text);
// Blanks off both ends, then the text before the first NUL; empty when the NUL
// stands first or there is none, as a fixed-width buffer reads.
std::string TrimAtNul(std::string_view text);

// Text comparison without regard to case, as setting and section names compare.
bool SameText(std::string_view a, std::string_view b);

}  // namespace vantrel::vb
