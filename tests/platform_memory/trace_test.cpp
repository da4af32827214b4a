#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/memory/trace.h"

namespace vantrel::platform::memory {
namespace {

struct QuoteCase {
  std::string_view text;
  std::string quoted;
};
std::ostream& operator<<(std::ostream& out, const QuoteCase& c) { return out << c.quoted; }

class TraceQuote : public ::testing::TestWithParam<QuoteCase> {};

TEST_P(TraceQuote, EscapesWhatIsNotPrintable) {
  EXPECT_EQ(Trace::Quote(GetParam().text), GetParam().quoted);
}

using namespace std::string_view_literals;

INSTANTIATE_TEST_SUITE_P(
    Texts, TraceQuote,
    ::testing::Values(QuoteCase{""sv, R"("")"}, QuoteCase{" ~CQ"sv, R"(" ~CQ")"},
                      QuoteCase{R"(a"b\c)"sv, R"("a\"b\\c")"},
                      QuoteCase{"\0\x1F"sv, R"("\x00\x1F")"},
                      QuoteCase{"\x7F\x80\xBB\xFF"sv, R"("\x7F\x80\xBB\xFF")"},
                      QuoteCase{"E\xAB"sv, R"("E\xAB")"}));

TEST(Trace, StampsEachLineWithThreeDecimalMs) {
  double now = 0;
  Trace trace([&] { return now; });
  std::vector<std::string> sunk;
  trace.SetSink([&](const std::string& line) { sunk.push_back(line); });
  trace.Emit("key down");
  now = 1.2345678;
  trace.Emit("key up");
  now = 123456.78;
  trace.Emit("ptt off");
  const std::vector<std::string> lines{"0.000 key down", "1.235 key up", "123456.780 ptt off"};
  EXPECT_EQ(trace.Lines(), lines);
  EXPECT_EQ(sunk, lines);
  EXPECT_EQ(trace.Events(), (std::vector<std::string>{"key down", "key up", "ptt off"}));
  trace.Clear();
  EXPECT_TRUE(trace.Lines().empty());
}

}  // namespace
}  // namespace vantrel::platform::memory
