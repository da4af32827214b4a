#include "vb/vb.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace vantrel::vb {
namespace {

constexpr std::optional<int16_t> kNoInt;
constexpr std::optional<int32_t> kNoLong;
constexpr std::optional<double> kNoDouble;
constexpr std::optional<bool> kNoBool;

TEST(RoundHalfEven, TiesGoToTheEvenNeighbour) {
  EXPECT_EQ(RoundHalfEven(0.5), 0.0);
  EXPECT_EQ(RoundHalfEven(1.5), 2.0);
  EXPECT_EQ(RoundHalfEven(2.5), 2.0);
  EXPECT_EQ(RoundHalfEven(3.5), 4.0);
  EXPECT_EQ(RoundHalfEven(-2.5), -2.0);
  EXPECT_EQ(RoundHalfEven(-3.5), -4.0);
}

TEST(RoundHalfEven, NonTiesGoToTheNearest) {
  EXPECT_EQ(RoundHalfEven(2.4999999999999996), 2.0);
  EXPECT_EQ(RoundHalfEven(2.5000000000000004), 3.0);
  EXPECT_EQ(RoundHalfEven(-3.7), -4.0);
  EXPECT_EQ(RoundHalfEven(-0.3), 0.0);
  EXPECT_EQ(RoundHalfEven(4503599627370497.0), 4503599627370497.0);  // 2^52 + 1, already whole
}

TEST(CInt, ReadsDecimalTextBetweenBlanks) {
  EXPECT_EQ(CInt(" 42 "), 42);
  EXPECT_EQ(CInt("\t-7\t"), -7);
  EXPECT_EQ(CInt("+3"), 3);
  EXPECT_EQ(CInt("1e3"), 1000);
  EXPECT_EQ(CInt("1D2"), 100);
  EXPECT_EQ(CInt("15E-1"), 2);
  EXPECT_EQ(CInt("2.5"), 2);
  EXPECT_EQ(CInt("3.5"), 4);
  EXPECT_EQ(CInt(".5"), 0);
}

TEST(CInt, RangeIsCheckedAfterRounding) {
  EXPECT_EQ(CInt("32767"), 32767);
  EXPECT_EQ(CInt("32767.4"), 32767);
  EXPECT_EQ(CInt("32767.5"), kNoInt);
  EXPECT_EQ(CInt("32768"), kNoInt);
  EXPECT_EQ(CInt("-32768.5"), -32768);
  EXPECT_EQ(CInt("-32768.6"), kNoInt);
  EXPECT_EQ(CInt("-32769"), kNoInt);
  EXPECT_EQ(CInt("1e400"), kNoInt);
}

TEST(CInt, RadixLiteralsTakeTheNarrowestSignedWidth) {
  EXPECT_EQ(CInt("&HFFFF"), -1);
  EXPECT_EQ(CInt("&H8000"), -32768);
  EXPECT_EQ(CInt("&h7fff"), 32767);
  EXPECT_EQ(CInt(" &H0000FFFF "), -1);  // leading zeros do not widen it
  EXPECT_EQ(CInt("&O177777"), -1);
  EXPECT_EQ(CInt("&o17"), 15);
  EXPECT_EQ(CInt("&HFFFFFFFF"), -1);      // a Long of -1 still fits
  EXPECT_EQ(CInt("&HFFFF8000"), -32768);
  EXPECT_EQ(CInt("&H10000"), kNoInt);     // a Long of 65536 does not
}

TEST(CInt, RejectsAnythingButOneNumber) {
  for (const char* text : {"", "  ", "12abc", "abc", "1 2", "1e", "1e+", ".", "-", "--1", "- 1", "1,000",
                           "&H", "&HG", "&H1G", "&O8", "&X10", "-&H10", "&HFFFF&", "&HFF%"}) {
    EXPECT_EQ(CInt(text), kNoInt) << '"' << text << '"';
  }
}

TEST(CLng, RadixLiteralsKeepIntegerSignUpTo16Bits) {
  EXPECT_EQ(CLng("&HFFFF"), -1);
  EXPECT_EQ(CLng("&H8000"), -32768);
  EXPECT_EQ(CLng("&H10000"), 65536);
  EXPECT_EQ(CLng("&HFFFFFFFF"), -1);
  EXPECT_EQ(CLng("&H80000000"), std::numeric_limits<int32_t>::min());
  EXPECT_EQ(CLng("&O37777777777"), -1);
  EXPECT_EQ(CLng("&H100000000"), kNoLong);
}

TEST(CLng, RangeIsCheckedAfterRounding) {
  EXPECT_EQ(CLng("70000"), 70000);
  EXPECT_EQ(CLng("2147483647"), std::numeric_limits<int32_t>::max());
  EXPECT_EQ(CLng("2147483647.5"), kNoLong);
  EXPECT_EQ(CLng("-2147483648.5"), std::numeric_limits<int32_t>::min());
  EXPECT_EQ(CLng("-2147483649"), kNoLong);
}

TEST(CDbl, ReadsTheWholeText) {
  EXPECT_EQ(CDbl(" 2.5 "), 2.5);
  EXPECT_EQ(CDbl("0.1"), 0.1);
  EXPECT_EQ(CDbl("-1e-3"), -0.001);
  EXPECT_EQ(CDbl("5."), 5.0);
  EXPECT_EQ(CDbl("&HFFFF"), -1.0);
  EXPECT_EQ(CDbl("&H10000"), 65536.0);
  EXPECT_EQ(CDbl("1e-400"), 0.0);
}

TEST(CDbl, RejectsSeparatorsOverflowAndNonNumbers) {
  for (const char* text : {"", "1,5", "1,000", "1e400", "-1e400", "inf", "nan", "0x10", "1.2.3", "3.5 dots"}) {
    EXPECT_EQ(CDbl(text), kNoDouble) << '"' << text << '"';
  }
}

TEST(CBool, AcceptsWordsInAnyCase) {
  EXPECT_EQ(CBool("True"), true);
  EXPECT_EQ(CBool(" TRUE\t"), true);
  EXPECT_EQ(CBool("false"), false);
  EXPECT_EQ(CBool("Truex"), kNoBool);
  EXPECT_EQ(CBool("yes"), kNoBool);
  EXPECT_EQ(CBool(""), kNoBool);
}

TEST(CBool, NumbersAreTrueUnlessZero) {
  EXPECT_EQ(CBool("0"), false);
  EXPECT_EQ(CBool(" 0.0 "), false);
  EXPECT_EQ(CBool("&H0"), false);
  EXPECT_EQ(CBool("-1"), true);
  EXPECT_EQ(CBool("0.4"), true);  // not rounded first
  EXPECT_EQ(CBool("1 0"), kNoBool);
}

TEST(Val, ReadsTheLongestPrefixIgnoringBlanks) {
  EXPECT_EQ(Val("1 2 3"), 123.0);
  EXPECT_EQ(Val(" 12 34abc"), 1234.0);
  EXPECT_EQ(Val("\t\n 7"), 7.0);
  EXPECT_EQ(Val("- 5"), -5.0);
  EXPECT_EQ(Val("1 . 5"), 1.5);
  EXPECT_EQ(Val("3.5 dots"), 3.5);
  EXPECT_EQ(Val("1.2.3"), 1.2);
  EXPECT_EQ(Val("1,000"), 1.0);
  EXPECT_EQ(Val("0.1"), 0.1);
}

TEST(Val, ExponentNeedsDigitsToCount) {
  EXPECT_EQ(Val("1e"), 1.0);
  EXPECT_EQ(Val("1e+"), 1.0);
  EXPECT_EQ(Val("2D2"), 200.0);
  EXPECT_EQ(Val("2e-1x"), 0.2);
  EXPECT_EQ(Val("1 e 3"), 1000.0);
  EXPECT_EQ(Val("1e400"), std::numeric_limits<double>::infinity());
}

TEST(Val, NoNumberIsZero) {
  for (const char* text : {"", "-", "+", ".", "-.e5", "abc", "&", "&H", "&HG", "&X1", "-&H10"}) {
    EXPECT_EQ(Val(text), 0.0) << '"' << text << '"';
  }
  EXPECT_EQ(Val(".5"), 0.5);
}

TEST(Val, RadixPrefixes) {
  EXPECT_EQ(Val("&H378"), 888.0);
  EXPECT_EQ(Val("&h 3 78"), 888.0);
  EXPECT_EQ(Val("&HFFFF"), -1.0);
  EXPECT_EQ(Val("&HFFFF&"), 65535.0);  // the Long suffix
  EXPECT_EQ(Val("&H10000"), 65536.0);
  EXPECT_EQ(Val("&HFFFFFFFF"), -1.0);
  EXPECT_EQ(Val("&O17"), 15.0);
  EXPECT_EQ(Val("&O18"), 1.0);
  EXPECT_EQ(Val("&H1G"), 1.0);
  EXPECT_EQ(Val("&H123456789"), static_cast<double>(0x12345678));  // stops before 32 bits overflow
}

TEST(Format, WholePatternRoundsHalfAwayFromZero) {
  EXPECT_EQ(Format(2.5, "##0"), "3");
  EXPECT_EQ(Format(-2.5, "##0"), "-3");
  EXPECT_EQ(Format(0.4, "##0"), "0");
  EXPECT_EQ(Format(-0.4, "##0"), "0");
  EXPECT_EQ(Format(-0.0, "##0"), "0");
  EXPECT_EQ(Format(999.5, "##0"), "1000");
  EXPECT_EQ(Format(1234, "##0"), "1234");
  EXPECT_EQ(Format(5, "0##"), "005");
}

TEST(Format, DecimalHalvesRoundAsWritten) {
  EXPECT_EQ(Format(0.125, "#0.00"), "0.13");
  EXPECT_EQ(Format(1.005, "#0.00"), "1.01");
  EXPECT_EQ(Format(2.675, "#0.00"), "2.68");
  EXPECT_EQ(Format(-0.25, "#0.0"), "-0.3");
  EXPECT_EQ(Format(9.96, "#0.0"), "10.0");
  EXPECT_EQ(Format(-0.04, "#0.0"), "0.0");
}

TEST(Format, LongFractionPattern) {
  EXPECT_EQ(Format(0.5, "##.000000000000"), ".500000000000");
  EXPECT_EQ(Format(14.0705, "##.000000000000"), "14.070500000000");
  EXPECT_EQ(Format(7.0234567890125, "##.000000000000"), "7.023456789013");
  EXPECT_EQ(Format(-1e-13, "##.000000000000"), ".000000000000");
  EXPECT_EQ(Format(0, "##.000000000000"), ".000000000000");
}

TEST(Format, OptionalFractionDigitsDropTrailingZeros) {
  EXPECT_EQ(Format(1.5, "0.0#"), "1.5");
  EXPECT_EQ(Format(1.25, "0.0#"), "1.25");
  EXPECT_EQ(Format(1, "0.0#"), "1.0");
  EXPECT_EQ(Format(5, "#.##"), "5.");
}

TEST(Format, KeepsOnlyFifteenSignificantDigits) {
  EXPECT_EQ(Format(1e20, "##0"), "100000000000000000000");
  EXPECT_EQ(Format(123456789012345678.0, "0"), "123456789012346000");
  EXPECT_EQ(Format(1234.0123456789, "##.000000000000"), "1234.012345678900");
}

TEST(Format, OtherCharactersAreCopied) {
  EXPECT_EQ(Format(-5, "$#0.0 Hz"), "-$5.0 Hz");
  EXPECT_EQ(Format(5.6, ""), "6");
  EXPECT_EQ(Format(5551234, "###-####"), "555-1234");
  EXPECT_EQ(Format(15551234, "###-####"), "1555-1234");  // extra digits lead, never cut
}

}  // namespace
}  // namespace vantrel::vb

TEST(SameText, IgnoresCaseButNotLengthOrSpelling) {
  EXPECT_TRUE(vantrel::vb::SameText("FrmVantrel Settings", "frmVANTREL settings"));
  EXPECT_FALSE(vantrel::vb::SameText("SideTone", "SideTones"));
  EXPECT_FALSE(vantrel::vb::SameText("Keying", "Keyinf"));
  EXPECT_TRUE(vantrel::vb::SameText("", ""));
}

TEST(CStr, SingleKeepsSevenDigitsAndNoTrailingZeros) {
  using vantrel::vb::CStr;
  EXPECT_EQ(CStr(2500.0f), "2500");
  EXPECT_EQ(CStr(5017.5f), "5017.5");
  EXPECT_EQ(CStr(-15.25f), "-15.25");
  EXPECT_EQ(CStr(1234567.0f), "1234567");
  EXPECT_EQ(CStr(12345678.0f), "1.234568E+07");  // past seven digits the exponent shows
  EXPECT_EQ(CStr(0.1f), "0.1");                  // not the float's 0.100000001
}

TEST(UCaseAnsi, LettersOfWindows1252AndNothingElse) {
  using vantrel::vb::UCaseAnsi;
  EXPECT_EQ(UCaseAnsi('q'), 'Q');
  EXPECT_EQ(UCaseAnsi('Q'), 'Q');
  EXPECT_EQ(UCaseAnsi('='), '=');
  EXPECT_EQ(UCaseAnsi(0xE4), 0xC4);  // ä
  EXPECT_EQ(UCaseAnsi(0xF7), 0xF7);  // ÷ has no capital
  EXPECT_EQ(UCaseAnsi(0xDF), 0xDF);  // ß neither
  EXPECT_EQ(UCaseAnsi(0xFF), 0x9F);  // ÿ to Ÿ
  EXPECT_EQ(UCaseAnsi(0x9A), 0x8A);  // š to Š
  EXPECT_EQ(UCaseAnsi(0xBB), 0xBB);  // » stays a speed mark
  EXPECT_EQ(vantrel::vb::UCase("cq de sm5\xE4 $call$"), "CQ DE SM5\xC4 $CALL$");
}
