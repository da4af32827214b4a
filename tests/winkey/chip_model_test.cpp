// The chip simulator the keyer is tested against must behave as a chip on
// the wire, or those tests prove nothing.
#include "chip_model.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vantrel::winkeysim {
namespace {

using Bytes = std::vector<uint8_t>;

void Send(ChipModel& chip, const Bytes& bytes, double atMs) {
  for (const uint8_t b : bytes) chip.Receive(b, atMs);
}

void SendText(ChipModel& chip, const std::string& text, double atMs) {
  for (const char c : text) chip.Receive(static_cast<uint8_t>(c), atMs);
}

TEST(ChipModel, HostOpenIsAnsweredWithTheRevisionAsOptionsSay) {
  ChipModel winkey({});
  Send(winkey, {0x00, 0x02}, 0);
  EXPECT_EQ(winkey.TakeOutput(), Bytes{10});
  ChipModel late({.revision = 23, .answerDelayMs = 300});
  Send(late, {0x00, 0x02}, 0);
  EXPECT_TRUE(late.TakeOutput().empty());
  EXPECT_DOUBLE_EQ(late.NextEventMs(), 300);
  late.Advance(300);
  EXPECT_EQ(late.TakeOutput(), Bytes{23});
  ChipModel silent({.answers = false});
  Send(silent, {0x00, 0x02}, 0);
  silent.Advance(10'000);
  EXPECT_TRUE(silent.TakeOutput().empty());
  ChipModel junk({.garbage = true});
  Send(junk, {0x00, 0x02}, 0);
  EXPECT_EQ(junk.TakeOutput().back(), 10);
}

TEST(ChipModel, TextIsEchoedAsEachCharacterEndsAtTheFramesSpeed) {
  ChipModel chip({});
  Send(chip, {0x00, 0x02}, 0);
  // The load-defaults frame of a fresh WinKey: 15 WPM, echo on.
  Send(chip, {0x0F, 0x16, 0x0F, 0x05, 0x32, 0x64, 0xFA, 0x0F, 0x0F, 0x00, 0x00, 0x14, 0x32, 0x32,
              0x05, 0xFF},
       0);
  chip.TakeOutput();
  SendText(chip, "EE", 1000);
  EXPECT_EQ(chip.TakeOutput(), Bytes{0xC4});  // busy
  // E at 15 WPM: one dot of 80 ms and the letter gap of three.
  chip.Advance(1319);
  EXPECT_TRUE(chip.TakeOutput().empty());
  chip.Advance(1320);
  EXPECT_EQ(chip.TakeOutput(), Bytes{'E'});
  chip.Advance(1640);
  EXPECT_EQ(chip.TakeOutput(), (Bytes{'E', 0xC0}));  // and idle again
}

TEST(ChipModel, SpeedCommandAndPotDecideThePace) {
  ChipModel chip({.potWpm = 30});
  Send(chip, {0x00, 0x02, 0x02, 60}, 0);
  chip.TakeOutput();
  SendText(chip, "T", 0);  // a dash and the letter gap: six dots of 20 ms
  chip.Advance(120);
  EXPECT_EQ(chip.TakeOutput(), (Bytes{0xC4, 'T', 0xC0}));
  Send(chip, {0x02, 0x00, 0x07}, 200);  // speed from the pot, then ask for it
  EXPECT_EQ(chip.TakeOutput(), Bytes{0x80 | (30 - 5)});
  chip.TurnPot(20);
  EXPECT_EQ(chip.TakeOutput(), Bytes{0x80 | 15});
}

TEST(ChipModel, PaddleBreaksInAndAFullBufferSaysXoff) {
  ChipModel chip({});
  Send(chip, {0x00, 0x02}, 0);
  chip.TakeOutput();
  SendText(chip, std::string(100, 'A'), 0);
  const Bytes status = chip.TakeOutput();
  EXPECT_EQ(status.front(), 0xC4);
  EXPECT_EQ(status.back(), 0xC5);  // more than two thirds of 128
  chip.Paddle(50);
  EXPECT_EQ(chip.TakeOutput(), (Bytes{0xC2, 0xC0}));
  EXPECT_EQ(chip.Buffered(), 0u);
  // Host close: text is no longer taken.
  Send(chip, {0x00, 0x03}, 60);
  SendText(chip, "E", 60);
  EXPECT_EQ(chip.Buffered(), 0u);
  EXPECT_TRUE(chip.TakeOutput().empty());
}

TEST(ChipModel, CommandArgumentsAreNotTakenForText) {
  ChipModel chip({});
  Send(chip, {0x00, 0x02}, 0);
  chip.TakeOutput();
  // Pin config 09 with 'A' as its byte, PTT lead/tail with two: none is text.
  Send(chip, {0x09, 'A', 0x04, 'B', 'C', 0x00, 0x04, 'Z'}, 0);
  EXPECT_EQ(chip.Buffered(), 0u);
  EXPECT_EQ(chip.TakeOutput(), Bytes{'Z'});  // the admin echo test
  // Sub-commands that carry a byte: a stored message's number, a pointer's
  // position; the pointer's reset carries none.
  Send(chip, {0x00, 0x0E, 0x01, 0x00, 0x04, 'Y'}, 0);
  EXPECT_EQ(chip.TakeOutput(), Bytes{'Y'});
  Send(chip, {0x16, 0x01, 'Q', 0x16, 0x00}, 0);
  SendText(chip, "", 0);
  EXPECT_EQ(chip.Buffered(), 0u);
  Send(chip, {0x00, 0x04, 'X'}, 0);
  EXPECT_EQ(chip.TakeOutput(), Bytes{'X'});
}

}  // namespace
}  // namespace vantrel::winkeysim
