#include "cwdaemon/request.h"

#include <gtest/gtest.h>

#include <string>

namespace vantrel::cwdaemon {
namespace {

using namespace std::string_literals;

TEST(TextRequest, EndsAtItsFirstNulAndLosesItsLineEnds) {
  const Request padded = ParseRequest("cq test\n\0\x7F\x01 leftover"s);
  EXPECT_EQ(padded.kind, RequestKind::Text);
  EXPECT_EQ(padded.text, "cq test");
  EXPECT_FALSE(padded.echo);
  EXPECT_EQ(ParseRequest("\r\n").text, "");
  EXPECT_EQ(ParseRequest("").kind, RequestKind::Text);
}

TEST(TextRequest, OnlyACaretAtTheEndAsksForAnEcho) {
  const Request echoed = ParseRequest("5nn 14^\r\n");
  EXPECT_TRUE(echoed.echo);
  EXPECT_EQ(echoed.text, "5nn 14");
  const Request joined = ParseRequest("a^r k");
  EXPECT_FALSE(joined.echo);
  EXPECT_EQ(joined.text, "a^r k");
}

TEST(TextRequest, ControlBytesAreNotText) {
  EXPECT_EQ(ParseRequest("cq\x01").kind, RequestKind::Refused);
  EXPECT_EQ(ParseRequest("\tcq").kind, RequestKind::Refused);
  EXPECT_EQ(ParseRequest("cq\x7F").kind, RequestKind::Refused);
  // Latin-1 letters are text; whether they can be keyed is the keyer's business.
  EXPECT_EQ(ParseRequest("\xC4").kind, RequestKind::Text);
}

TEST(EscapedRequest, NumbersTakeLeadingBlanksAndLineEndsButNothingElse) {
  EXPECT_EQ(ParseRequest("\x1B" "2 6").value, 6);
  EXPECT_EQ(ParseRequest("\x1B" "230\r\n").value, 30);
  EXPECT_EQ(ParseRequest("\x1B" "230\0" "99"s).value, 30);
  for (const char* bad : {"\x1B" "2", "\x1B" "2x", "\x1B" "230x", "\x1B" "2 ", "\x1B" "23 0", "\x1B" "2+30"}) {
    EXPECT_EQ(ParseRequest(bad).kind, RequestKind::Refused) << bad;
  }
}

TEST(EscapedRequest, RangesAreTheDaemons) {
  struct Case {
    const char* datagram;
    RequestKind kind;
    int value;
  };
  const Case cases[] = {
      {"\x1B" "24", RequestKind::Speed, 4},        {"\x1B" "260", RequestKind::Speed, 60},
      {"\x1B" "23", RequestKind::Refused, 0},      {"\x1B" "261", RequestKind::Refused, 0},
      {"\x1B" "c10", RequestKind::Tune, 10},       {"\x1B" "c11", RequestKind::Refused, 0},
      {"\x1B" "a1", RequestKind::Ptt, 1},          {"\x1B" "a2", RequestKind::Refused, 0},
      {"\x1B" "7-50", RequestKind::Weighting, -50}, {"\x1B" "751", RequestKind::Refused, 0},
      {"\x1B" "g100", RequestKind::Volume, 100},   {"\x1B" "3" "4001", RequestKind::Refused, 0},
      // A long PTT delay is clipped, a negative one refused.
      {"\x1B" "d99", RequestKind::PttDelay, 50},   {"\x1B" "d-1", RequestKind::Refused, 0},
  };
  for (const Case& each : cases) {
    const Request request = ParseRequest(each.datagram);
    EXPECT_EQ(request.kind, each.kind) << each.datagram + 1;
    if (each.kind != RequestKind::Refused) {
      EXPECT_EQ(request.value, each.value) << each.datagram + 1;
    }
  }
}

TEST(EscapedRequest, ValuelessRequestsKeepTheirText) {
  EXPECT_EQ(ParseRequest("\x1B" "0").kind, RequestKind::Reset);
  EXPECT_EQ(ParseRequest("\x1B" "4").kind, RequestKind::Abort);
  const Request reply = ParseRequest("\x1B" "hcat\n");
  EXPECT_EQ(reply.kind, RequestKind::Reply);
  EXPECT_EQ(reply.text, "cat");
  EXPECT_EQ(ParseRequest("\x1B" "8ttyS0").text, "ttyS0");
}

TEST(EscapedRequest, UnknownOrEmptyEscapesAreRefused) {
  EXPECT_EQ(ParseRequest("\x1B").kind, RequestKind::Refused);
  EXPECT_EQ(ParseRequest("\x1B" "z1").kind, RequestKind::Refused);
  EXPECT_EQ(ParseRequest("\x1B" "1").kind, RequestKind::Refused);
}

}  // namespace
}  // namespace vantrel::cwdaemon
