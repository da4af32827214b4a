#include "vb/vb.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>
#include <system_error>

namespace vantrel::vb {
namespace {

constexpr uint64_t kMaxRadixBits = 0xFFFFFFFFu;
// Far beyond any double, yet small enough that adding a digit count cannot overflow.
constexpr int64_t kExponentCap = 100'000'000;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

char Lower(char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Lower(x) == Lower(y); });
}

int DigitValue(char c, int radix) {
  int value = -1;
  if (IsDigit(c)) {
    value = c - '0';
  } else if (Lower(c) >= 'a' && Lower(c) <= 'f') {
    value = Lower(c) - 'a' + 10;
  }
  return value < radix ? value : -1;
}

// A radix literal is an Integer when its bits fit 16, else a Long, so a full
// 16-bit pattern reads as a negative Integer. A Long suffix keeps it a Long.
int32_t RadixToSigned(uint64_t bits, bool long_suffix) {
  if (bits <= 0xFFFF && !long_suffix) return static_cast<int16_t>(bits);
  return static_cast<int32_t>(static_cast<uint32_t>(bits));
}

// "&H" or "&O" and at least one digit. Digits are taken only while the value
// still fits 32 bits, so whatever is left over shows up as unread text.
std::optional<uint64_t> ScanRadix(std::string_view text, size_t& pos) {
  if (text.size() - pos < 3 || text[pos] != '&') return std::nullopt;
  const char kind = Lower(text[pos + 1]);
  const int radix = kind == 'h' ? 16 : kind == 'o' ? 8 : 0;
  if (radix == 0) return std::nullopt;
  size_t i = pos + 2;
  uint64_t bits = 0;
  bool any = false;
  for (; i < text.size(); ++i) {
    const int digit = DigitValue(text[i], radix);
    if (digit < 0) break;
    const uint64_t next = bits * static_cast<uint64_t>(radix) + static_cast<uint64_t>(digit);
    if (next > kMaxRadixBits) break;
    bits = next;
    any = true;
  }
  if (!any) return std::nullopt;
  pos = i;
  return bits;
}

struct DecimalText {
  bool negative = false;
  std::string_view whole;
  std::string_view fraction;
  int64_t exponent = 0;
};

// Sign, digits, optional point and fraction, and an exponent ('E' or 'D') only
// when it carries digits. Fails without moving pos when there is no digit.
bool ScanDecimal(std::string_view text, size_t& pos, DecimalText& out) {
  size_t i = pos;
  DecimalText d;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) d.negative = text[i++] == '-';
  size_t start = i;
  while (i < text.size() && IsDigit(text[i])) ++i;
  d.whole = text.substr(start, i - start);
  if (i < text.size() && text[i] == '.') {
    start = ++i;
    while (i < text.size() && IsDigit(text[i])) ++i;
    d.fraction = text.substr(start, i - start);
  }
  if (d.whole.empty() && d.fraction.empty()) return false;

  if (i < text.size()) {
    const char mark = Lower(text[i]);
    if (mark == 'e' || mark == 'd') {
      size_t j = i + 1;
      bool negative_exponent = false;
      if (j < text.size() && (text[j] == '+' || text[j] == '-')) negative_exponent = text[j++] == '-';
      const size_t digits_start = j;
      int64_t exponent = 0;
      for (; j < text.size() && IsDigit(text[j]); ++j) {
        exponent = std::min(exponent * 10 + (text[j] - '0'), kExponentCap);
      }
      if (j > digits_start) {
        d.exponent = negative_exponent ? -exponent : exponent;
        i = j;
      }
    }
  }
  out = d;
  pos = i;
  return true;
}

// Decimal text to the nearest double; infinite when too large, zero when too small.
double ToDouble(const DecimalText& d) {
  std::string text;
  text.reserve(d.whole.size() + d.fraction.size() + 16);
  if (d.negative) text += '-';
  text += d.whole.empty() ? std::string_view("0") : d.whole;
  text += '.';
  text += d.fraction.empty() ? std::string_view("0") : d.fraction;
  text += 'e';
  text += std::to_string(d.exponent);

  double value = 0.0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    // from_chars leaves the value alone then; the decimal magnitude says which way it fell.
    int64_t magnitude = 0;
    if (const size_t first = d.whole.find_first_not_of('0'); first != std::string_view::npos) {
      magnitude = static_cast<int64_t>(d.whole.size() - first);
    } else if (const size_t lead = d.fraction.find_first_not_of('0'); lead != std::string_view::npos) {
      magnitude = -static_cast<int64_t>(lead);
    }
    value = magnitude + d.exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    if (d.negative) value = -value;
  }
  return value;
}

// The whole text as one number; nullopt when any of it is not part of the number.
// An out-of-range decimal comes back infinite for the caller to refuse.
std::optional<double> ParseWhole(std::string_view text) {
  text = TrimBlanks(text);
  size_t pos = 0;
  double value = 0.0;
  if (!text.empty() && text.front() == '&') {
    const auto bits = ScanRadix(text, pos);
    if (!bits) return std::nullopt;
    value = RadixToSigned(*bits, false);
  } else {
    DecimalText d;
    if (!ScanDecimal(text, pos, d)) return std::nullopt;
    value = ToDouble(d);
  }
  if (pos != text.size()) return std::nullopt;
  return value;
}

template <typename Int>
std::optional<Int> ToWhole(std::string_view text) {
  const auto value = ParseWhole(text);
  if (!value) return std::nullopt;
  const double rounded = RoundHalfEven(*value);
  // Written so that NaN and infinities fail too.
  if (!(rounded >= static_cast<double>(std::numeric_limits<Int>::min()) &&
        rounded <= static_cast<double>(std::numeric_limits<Int>::max()))) {
    return std::nullopt;
  }
  return static_cast<Int>(rounded);
}

struct RoundedDigits {
  std::string whole;     // no leading zeros; empty when below one
  std::string fraction;  // exactly the requested places
  bool zero = true;
};

// |value| rounded half away from zero to `places` decimals. The runtime keeps
// 15 significant digits and rounds those, so 1.005 reads, and rounds, as written.
RoundedDigits RoundToPlaces(double magnitude, size_t places) {
  constexpr int kSignificant = 15;
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, magnitude, std::chars_format::scientific,
                                    kSignificant - 1);
  const std::string_view text(buffer, static_cast<size_t>(result.ptr - buffer));
  const size_t e = text.find('e');
  std::string digits;
  for (char c : text.substr(0, e)) {
    if (IsDigit(c)) digits += c;
  }
  std::string_view exponent_text = text.substr(e + 1);
  if (exponent_text.front() == '+') exponent_text.remove_prefix(1);
  int exponent = 0;
  std::from_chars(exponent_text.data(), exponent_text.data() + exponent_text.size(), exponent);

  // The digits hold `point` places before the decimal point.
  int64_t point = exponent + 1;
  const int64_t keep = point + static_cast<int64_t>(places);
  if (keep < 0) {
    digits.clear();
  } else if (keep < static_cast<int64_t>(digits.size())) {
    const bool up = digits[static_cast<size_t>(keep)] >= '5';
    digits.resize(static_cast<size_t>(keep));
    if (up) {
      size_t i = digits.size();
      while (i > 0 && digits[i - 1] == '9') digits[--i] = '0';
      if (i == 0) {
        digits.insert(digits.begin(), '1');
        ++point;
      } else {
        ++digits[i - 1];
      }
    }
  }

  RoundedDigits out;
  if (digits.empty()) {
    out.fraction.assign(places, '0');
    return out;
  }
  if (point <= 0) {
    out.fraction.assign(static_cast<size_t>(-point), '0');
    out.fraction += digits;
  } else {
    const size_t whole_size = static_cast<size_t>(point);
    out.whole = digits.substr(0, std::min(whole_size, digits.size()));
    out.whole.resize(whole_size, '0');
    if (whole_size < digits.size()) out.fraction = digits.substr(whole_size);
  }
  out.fraction.resize(places, '0');
  out.whole.erase(0, std::min(out.whole.find_first_not_of('0'), out.whole.size()));
  out.zero = out.whole.empty() && out.fraction.find_first_not_of('0') == std::string::npos;
  return out;
}

bool IsPlaceholder(char c) { return c == '#' || c == '0'; }

}  // namespace

std::string Trim(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return "";
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string_view TrimBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

double RoundHalfEven(double value) {
  if (!std::isfinite(value)) return value;
  const double below = std::floor(value);
  const double excess = value - below;  // exact for every finite double
  if (excess < 0.5) return below;
  if (excess > 0.5) return below + 1.0;
  return std::fmod(below, 2.0) == 0.0 ? below : below + 1.0;
}

std::optional<int16_t> CInt(std::string_view text) { return ToWhole<int16_t>(text); }

std::optional<int32_t> CLng(std::string_view text) { return ToWhole<int32_t>(text); }

std::optional<double> CDbl(std::string_view text) {
  const auto value = ParseWhole(text);
  if (!value || !std::isfinite(*value)) return std::nullopt;
  return value;
}

std::optional<bool> CBool(std::string_view text) {
  const std::string_view trimmed = TrimBlanks(text);
  if (EqualsIgnoringCase(trimmed, "true")) return true;
  if (EqualsIgnoringCase(trimmed, "false")) return false;
  const auto value = CDbl(trimmed);
  if (!value) return std::nullopt;
  return *value != 0.0;
}

double Val(std::string_view text) {
  // Blanks never end a number, so dropping them all up front reads the same
  // prefix as skipping them one by one.
  std::string packed;
  packed.reserve(text.size());
  for (char c : text) {
    if (c != ' ' && c != '\t' && c != '\n') packed += c;
  }

  size_t pos = 0;
  if (const auto bits = ScanRadix(packed, pos)) {
    const bool long_suffix = pos < packed.size() && packed[pos] == '&';
    return RadixToSigned(*bits, long_suffix);
  }
  DecimalText d;
  if (!ScanDecimal(packed, pos, d)) return 0.0;
  return ToDouble(d);
}

std::string Format(double value, std::string_view pattern) {
  if (!std::isfinite(value)) {
    char buffer[16];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
  }

  const size_t dot = pattern.find('.');
  const std::string_view whole_pattern = pattern.substr(0, dot);
  const std::string_view fraction_pattern =
      dot == std::string_view::npos ? std::string_view() : pattern.substr(dot + 1);

  size_t whole_slots = 0;
  size_t first_zero = std::string_view::npos;  // among whole slots
  for (char c : whole_pattern) {
    if (!IsPlaceholder(c)) continue;
    if (c == '0' && first_zero == std::string_view::npos) first_zero = whole_slots;
    ++whole_slots;
  }
  size_t places = 0;
  size_t forced_places = 0;  // up to and including the last '0'
  for (char c : fraction_pattern) {
    if (!IsPlaceholder(c)) continue;
    ++places;
    if (c == '0') forced_places = places;
  }

  const RoundedDigits rounded = RoundToPlaces(std::fabs(value), places);

  std::string whole = rounded.whole;
  // A '0' forces a digit into its own slot and every slot to its right.
  const size_t min_whole = first_zero == std::string_view::npos ? 0 : whole_slots - first_zero;
  if (whole.size() < min_whole) whole.insert(0, min_whole - whole.size(), '0');

  std::string fraction = rounded.fraction;
  const size_t last_significant = fraction.find_last_not_of('0');
  const size_t significant = last_significant == std::string::npos ? 0 : last_significant + 1;
  fraction.resize(std::max(forced_places, significant));

  std::string out;
  if (value < 0 && !rounded.zero) out += '-';

  // Slots fill from the right; digits that have no slot of their own all go
  // to the first one, so the whole part is never cut.
  const size_t empty_slots = whole_slots > whole.size() ? whole_slots - whole.size() : 0;
  const size_t overflow = whole.size() > whole_slots ? whole.size() - whole_slots : 0;
  size_t slot = 0;
  size_t next = 0;
  for (char c : whole_pattern) {
    if (!IsPlaceholder(c)) {
      out += c;
      continue;
    }
    if (slot >= empty_slots) {
      const size_t count = slot == 0 ? overflow + 1 : 1;
      out.append(whole, next, count);
      next += count;
    }
    ++slot;
  }
  out.append(whole, next);  // a pattern with no whole slots still shows the whole part

  if (dot != std::string_view::npos) out += '.';
  slot = 0;
  for (char c : fraction_pattern) {
    if (!IsPlaceholder(c)) {
      out += c;
    } else if (slot++ < fraction.size()) {
      out += fraction[slot - 1];
    }
  }
  return out;
}

bool SameText(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
  });
}

std::string CStr(float value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.7G", static_cast<double>(value));
  return text;
}

unsigned char UCaseAnsi(unsigned char c) {
  if ((c >= 'a' && c <= 'z') || (c >= 224 && c <= 254 && c != 247)) return c - 32;
  switch (c) {
    case 154: return 138;  // š
    case 156: return 140;  // œ
    case 158: return 142;  // ž
    case 255: return 159;  // ÿ
    default: return c;
  }
}

std::string UCase(std::string text) {
  for (char& c : text) c = static_cast<char>(UCaseAnsi(static_cast<unsigned char>(c)));
  return text;
}

std::string TrimAtNul(std::string_view text) {
  std::string trimmed = Trim(text);
  const auto nul = trimmed.find('\0');
  if (nul == std::string::npos || nul == 0) return "";
  trimmed.resize(nul);
  return trimmed;
}

}  // namespace vantrel::vb
