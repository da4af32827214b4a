#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/memory/memory_text_box.h"
#include "platform/memory/trace.h"

namespace vantrel::platform::memory {
namespace {

constexpr Colour kBlue = 16711680;
constexpr Colour kRed = 255;
constexpr Colour kBlack = 0;

class MemoryTextBoxTest : public ::testing::Test {
 protected:
  MemoryTextBoxTest() { box.OnChange([this] { ++changes; }); }

  // One letter a character: b(lue), r(ed), (blac)k.
  std::string Colours() const {
    std::string letters;
    for (int i = 0; i < static_cast<int>(box.Text().size()); ++i) {
      const Colour c = box.ColourAt(i);
      letters += c == kBlue ? 'b' : c == kRed ? 'r' : c == kBlack ? 'k' : '?';
    }
    return letters;
  }

  // Colours the characters [start, start + length) as the keyer does: select, then colour.
  void Paint(int start, int length, Colour colour) {
    box.SetSelStart(start);
    box.SetSelLength(length);
    box.SetSelColor(colour);
  }

  Trace trace{[] { return 0.0; }};
  MemoryTextBox box{trace, kBlue};
  int changes = 0;
};

TEST_F(MemoryTextBoxTest, ChangeIsTracedQuotedAndFiredOnlyWhenTheTextChanges) {
  box.SetText("say \"hi\"\r");
  box.SetText("say \"hi\"\r");
  Paint(0, 1, kRed);
  box.SetSelText("s");  // the same text, recoloured
  box.SetSelText("");
  EXPECT_EQ(Colours(), "bbbbbbbbb");
  EXPECT_EQ(trace.Events(), (std::vector<std::string>{R"(text "say \"hi\"\x0D")"}));
  EXPECT_EQ(changes, 1);
}

TEST_F(MemoryTextBoxTest, MovingTheCaretEmptiesTheSelectionAndTakesUpTheColourBeforeIt) {
  box.SetText("ABC");
  Paint(1, 1, kRed);
  box.SetSelStart(2);
  EXPECT_EQ(box.SelLength(), 0);
  EXPECT_EQ(box.InsertColour(), kRed);
  box.SetSelColor(kBlack);
  box.SetSelStart(3);
  EXPECT_EQ(box.InsertColour(), kBlue);  // not the black set before the move
  box.SetSelStart(2);
  box.SetSelText("x");  // typed after the red B comes out red
  EXPECT_EQ(box.Text(), "ABxC");
  EXPECT_EQ(Colours(), "brrb");
}

TEST_F(MemoryTextBoxTest, CaretIsHeldInsideTheText) {
  box.SetText("ABCD");
  box.SetSelStart(-3);
  EXPECT_EQ(box.SelStart(), 0);
  box.SetSelStart(40);
  EXPECT_EQ(box.SelStart(), 4);
  box.SetText("AB");  // shortened under the caret
  EXPECT_EQ(box.SelStart(), 2);
  box.SetSelText("C");
  EXPECT_EQ(box.Text(), "ABC");
}

TEST_F(MemoryTextBoxTest, EditsKeepEachCharacterItsOwnColour) {
  box.SetText("CQ DE");
  Paint(0, 2, kBlack);
  Paint(3, 99, kRed);
  EXPECT_EQ(box.SelLength(), 2);  // cut at the end of the text
  EXPECT_EQ(Colours(), "kkbrr");
  EXPECT_EQ(box.InsertColour(), kBlue);  // colouring a selection leaves it alone
  box.SetSelText("TEST");
  EXPECT_EQ(box.Text(), "CQ TEST");
  box.SetSelColor(kRed);  // with nothing selected: the colour typed next
  box.SetSelText("!");
  EXPECT_EQ(Colours(), "kkbbbbbr");
  box.SetSelStart(1);
  box.SetSelLength(1);
  box.SetSelText("");  // a deleted character takes its colour with it
  EXPECT_EQ(box.Text(), "C TEST!");
  EXPECT_EQ(Colours(), "kbbbbbr");
  EXPECT_EQ(changes, 4);
}

}  // namespace
}  // namespace vantrel::platform::memory
