#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/memory/trace.h"

namespace vantrel::platform::memory {
namespace {

using namespace std::string_view_literals;

TEST(Trace, QuoteEscapesQuotesBackslashesAndWhatIsNotPrintable) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {""sv, R"("")"}, {" ~CQ"sv, R"(" ~CQ")"}, {R"(a"b\c)"sv, R"("a\"b\\c")"},
      {"\0\x1F"sv, R"("\x00\x1F")"}, {"\x7F\x80\xBB\xFF"sv, R"("\x7F\x80\xBB\xFF")"}};
  for (const auto& [text, quoted] : cases) EXPECT_EQ(Trace::Quote(text), quoted);
}

TEST(Trace, MutedKeepsAndPassesOnNothing) {
  double now = 1.5;
  Trace trace([&] { return now; });
  int sunk = 0;
  trace.SetSink([&](const std::string&) { ++sunk; });
  trace.Emit("keybox green");
  trace.SetMuted(true);
  trace.Emit("keybox red");
  trace.SetMuted(false);
  now = 2;
  trace.Emit("pttbox red");
  EXPECT_EQ(trace.Lines(), (std::vector<std::string>{"1.500 keybox green", "2.000 pttbox red"}));
  EXPECT_EQ(sunk, 2);
}

}  // namespace
}  // namespace vantrel::platform::memory
