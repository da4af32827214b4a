#include "vb/vb.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace vantrel::vb {
namespace {

constexpr std::optional<int16_t> kNoInt;
constexpr std::optional<int32_t> kNoLong;
constexpr std::optional<double> kNoDouble;
constexpr std::optional<bool> kNoBool;

// Each input against the result `convert` must give for it.
template <typename In, typename Out, typename Convert>
void ExpectEach(Convert convert, std::initializer_list<std::pair<In, Out>> cases) {
  for (const auto& [in, want] : cases) EXPECT_EQ(convert(in), want) << '"' << in << '"';
}
template <typename Out>
void ExpectText(std::optional<Out> (*convert)(std::string_view),
                std::initializer_list<std::pair<const char*, std::optional<Out>>> cases) {
  ExpectEach<const char*, std::optional<Out>>(convert, cases);
}
void ExpectVal(std::initializer_list<std::pair<const char*, double>> cases) {
  ExpectEach<const char*, double>(Val, cases);
}
void ExpectFormat(const char* pattern, std::initializer_list<std::pair<double, const char*>> cases) {
  for (const auto& [value, want] : cases) EXPECT_EQ(Format(value, pattern), want) << value << " as " << pattern;
}

TEST(RoundHalfEven, TiesGoToTheEvenNeighbourAndTheRestToTheNearest) {
  ExpectEach<double, double>(RoundHalfEven, {{0.5, 0.0}, {1.5, 2.0}, {2.5, 2.0}, {3.5, 4.0}, {-2.5, -2.0},
                                             {-3.5, -4.0}, {2.4999999999999996, 2.0}, {2.5000000000000004, 3.0},
                                             {-3.7, -4.0}, {-0.3, 0.0},
                                             // 2^52 + 1, already whole
                                             {4503599627370497.0, 4503599627370497.0}});
}

TEST(CInt, ReadsDecimalTextBetweenBlanks) {
  ExpectText(CInt, {{" 42 ", 42}, {"\t-7\t", -7}, {"+3", 3}, {"1e3", 1000}, {"1D2", 100}, {"15E-1", 2},
                    {"2.5", 2}, {"3.5", 4}, {".5", 0}});
}

TEST(CInt, RangeIsCheckedAfterRounding) {
  ExpectText(CInt, {{"32767", 32767}, {"32767.4", 32767}, {"32767.5", kNoInt}, {"32768", kNoInt},
                    {"-32768.5", -32768}, {"-32768.6", kNoInt}, {"-32769", kNoInt}, {"1e400", kNoInt}});
}

TEST(CInt, RadixLiteralsTakeTheNarrowestSignedWidth) {
  ExpectText(CInt, {{"&HFFFF", -1}, {"&H8000", -32768}, {"&h7fff", 32767},
                    {" &H0000FFFF ", -1},  // leading zeros do not widen it
                    {"&O177777", -1}, {"&o17", 15},
                    {"&HFFFFFFFF", -1},  // a Long of -1 still fits
                    {"&HFFFF8000", -32768},
                    {"&H10000", kNoInt}});  // a Long of 65536 does not
}

TEST(CInt, RejectsAnythingButOneNumber) {
  for (const char* text : {"", "  ", "12abc", "abc", "1 2", "1e", "1e+", ".", "-", "--1", "- 1", "1,000",
                           "&H", "&HG", "&H1G", "&O8", "&X10", "-&H10", "&HFFFF&", "&HFF%"}) {
    EXPECT_EQ(CInt(text), kNoInt) << '"' << text << '"';
  }
}

TEST(CLng, RadixLiteralsKeepIntegerSignUpTo16BitsAndRangeIsCheckedAfterRounding) {
  constexpr int32_t kMin = std::numeric_limits<int32_t>::min();
  ExpectText(CLng, {{"&HFFFF", -1}, {"&H8000", -32768}, {"&H10000", 65536}, {"&HFFFFFFFF", -1},
                    {"&H80000000", kMin}, {"&O37777777777", -1}, {"&H100000000", kNoLong},
                    {"70000", 70000}, {"2147483647", std::numeric_limits<int32_t>::max()},
                    {"2147483647.5", kNoLong}, {"-2147483648.5", kMin}, {"-2147483649", kNoLong}});
}

TEST(CDbl, ReadsTheWholeText) {
  ExpectText(CDbl, {{" 2.5 ", 2.5}, {"0.1", 0.1}, {"-1e-3", -0.001}, {"5.", 5.0}, {"&HFFFF", -1.0},
                    {"&H10000", 65536.0}, {"1e-400", 0.0}});
}

TEST(CDbl, RejectsSeparatorsOverflowAndNonNumbers) {
  for (const char* text : {"", "1,5", "1,000", "1e400", "-1e400", "inf", "nan", "0x10", "1.2.3", "3.5 dots"}) {
    EXPECT_EQ(CDbl(text), kNoDouble) << '"' << text << '"';
  }
}

TEST(CBool, AcceptsWordsInAnyCaseAndNumbersAreTrueUnlessZero) {
  ExpectText(CBool, {{"True", true}, {" TRUE\t", true}, {"false", false}, {"Truex", kNoBool},
                     {"yes", kNoBool}, {"", kNoBool}, {"0", false}, {" 0.0 ", false}, {"&H0", false},
                     {"-1", true},
                     {"0.4", true},  // not rounded first
                     {"1 0", kNoBool}});
}

TEST(Val, ReadsTheLongestPrefixIgnoringBlanks) {
  ExpectVal({{"1 2 3", 123.0}, {" 12 34abc", 1234.0}, {"\t\n 7", 7.0}, {"- 5", -5.0}, {"1 . 5", 1.5},
             {"3.5 dots", 3.5}, {"1.2.3", 1.2}, {"1,000", 1.0}, {"0.1", 0.1}, {".5", 0.5}});
}

TEST(Val, ExponentNeedsDigitsToCount) {
  ExpectVal({{"1e", 1.0}, {"1e+", 1.0}, {"2D2", 200.0}, {"2e-1x", 0.2}, {"1 e 3", 1000.0},
             {"1e400", std::numeric_limits<double>::infinity()}});
}

TEST(Val, NoNumberIsZero) {
  for (const char* text : {"", "-", "+", ".", "-.e5", "abc", "&", "&H", "&HG", "&X1", "-&H10"}) {
    EXPECT_EQ(Val(text), 0.0) << '"' << text << '"';
  }
}

TEST(Val, RadixPrefixes) {
  ExpectVal({{"&H378", 888.0}, {"&h 3 78", 888.0}, {"&HFFFF", -1.0},
             {"&HFFFF&", 65535.0},  // the Long suffix
             {"&H10000", 65536.0}, {"&HFFFFFFFF", -1.0}, {"&O17", 15.0}, {"&O18", 1.0}, {"&H1G", 1.0},
             // stops before 32 bits overflow
             {"&H123456789", static_cast<double>(0x12345678)}});
}

TEST(Format, WholePatternRoundsHalfAwayFromZero) {
  ExpectFormat("##0", {{2.5, "3"}, {-2.5, "-3"}, {0.4, "0"}, {-0.4, "0"}, {-0.0, "0"}, {999.5, "1000"},
                       {1234, "1234"}, {1e20, "100000000000000000000"}});
  EXPECT_EQ(Format(5, "0##"), "005");
}

TEST(Format, DecimalHalvesRoundAsWritten) {
  ExpectFormat("#0.00", {{0.125, "0.13"}, {1.005, "1.01"}, {2.675, "2.68"}});
  ExpectFormat("#0.0", {{-0.25, "-0.3"}, {9.96, "10.0"}, {-0.04, "0.0"}});
}

TEST(Format, LongFractionPatternKeepsOnlyFifteenSignificantDigits) {
  ExpectFormat("##.000000000000", {{0.5, ".500000000000"}, {14.0705, "14.070500000000"},
                                   {7.0234567890125, "7.023456789013"}, {-1e-13, ".000000000000"},
                                   {0, ".000000000000"}, {1234.0123456789, "1234.012345678900"}});
  EXPECT_EQ(Format(123456789012345678.0, "0"), "123456789012346000");
}

TEST(Format, OptionalFractionDigitsDropTrailingZeros) {
  ExpectFormat("0.0#", {{1.5, "1.5"}, {1.25, "1.25"}, {1, "1.0"}});
  EXPECT_EQ(Format(5, "#.##"), "5.");
}

TEST(Format, OtherCharactersAreCopied) {
  EXPECT_EQ(Format(-5, "$#0.0 Hz"), "-$5.0 Hz");
  EXPECT_EQ(Format(5.6, ""), "6");
  // Extra digits lead, never cut.
  ExpectFormat("###-####", {{5551234, "555-1234"}, {15551234, "1555-1234"}});
}

TEST(Trim, SpacesOnlyWhereBlanksAreTabsToo) {
  EXPECT_EQ(Trim("  \tCQ TEST\t "), "\tCQ TEST\t");
  EXPECT_EQ(TrimBlanks("  \tCQ TEST\t "), "CQ TEST");
  EXPECT_EQ(Trim("   "), "");
  EXPECT_EQ(TrimBlanks(" \t "), "");
}

TEST(SameText, IgnoresCaseButNotLengthOrSpelling) {
  EXPECT_TRUE(SameText("FrmVantrel Settings", "frmVANTREL settings"));
  EXPECT_FALSE(SameText("SideTone", "SideTones"));
  EXPECT_FALSE(SameText("Keying", "Keyinf"));
  EXPECT_TRUE(SameText("", ""));
}

TEST(CStr, SingleKeepsSevenDigitsAndNoTrailingZeros) {
  ExpectEach<float, std::string>(CStr, {{2500.0f, "2500"}, {5017.5f, "5017.5"}, {-15.25f, "-15.25"},
                                        {1234567.0f, "1234567"},
                                        {12345678.0f, "1.234568E+07"},  // past seven digits the exponent shows
                                        {0.1f, "0.1"}});                // not the float's 0.100000001
}

TEST(UCaseAnsi, LettersOfWindows1252AndNothingElse) {
  // ä; ÷ and ß have no capital; ÿ to Ÿ, š to Š; » stays a speed mark.
  ExpectEach<int, int>(UCaseAnsi, {{'q', 'Q'}, {'Q', 'Q'}, {'=', '='}, {0xE4, 0xC4}, {0xF7, 0xF7},
                                   {0xDF, 0xDF}, {0xFF, 0x9F}, {0x9A, 0x8A}, {0xBB, 0xBB}});
  EXPECT_EQ(UCase("cq de sm5\xE4 $call$"), "CQ DE SM5\xC4 $CALL$");
}

}  // namespace
}  // namespace vantrel::vb
