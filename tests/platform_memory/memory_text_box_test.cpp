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
  void SetUp() override {
    box.OnChange([this] { ++changes; });
  }

  std::vector<Colour> Colours() const {
    std::vector<Colour> colours;
    for (int i = 0; i < static_cast<int>(box.Text().size()); ++i) colours.push_back(box.ColourAt(i));
    return colours;
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

TEST_F(MemoryTextBoxTest, SetTextTakesTheInsertionColourAndTracesOnlyRealChanges) {
  box.SetText("CQ");
  box.SetText("CQ");
  EXPECT_EQ(Colours(), (std::vector<Colour>{kBlue, kBlue}));
  EXPECT_EQ(trace.Events(), (std::vector<std::string>{"text \"CQ\""}));
  EXPECT_EQ(changes, 1);
}

TEST_F(MemoryTextBoxTest, ColouringASelectionLeavesTheInsertionColourAlone) {
  box.SetText("ABC");
  Paint(1, 99, kRed);  // the length is cut at the end of the text
  EXPECT_EQ(box.SelLength(), 2);
  EXPECT_EQ(Colours(), (std::vector<Colour>{kBlue, kRed, kRed}));
  EXPECT_EQ(box.InsertColour(), kBlue);
}

TEST_F(MemoryTextBoxTest, MovingTheCaretEmptiesTheSelectionAndTakesUpTheColourBeforeIt) {
  box.SetText("ABC");
  Paint(1, 1, kRed);
  box.SetSelStart(2);
  EXPECT_EQ(box.SelLength(), 0);
  EXPECT_EQ(box.InsertColour(), kRed);
  box.SetSelStart(3);
  EXPECT_EQ(box.InsertColour(), kBlue);
  box.SetSelStart(2);
  box.SetSelText("x");  // typed after the red B comes out red
  EXPECT_EQ(box.Text(), "ABxC");
  EXPECT_EQ(Colours(), (std::vector<Colour>{kBlue, kRed, kRed, kBlue}));
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

TEST_F(MemoryTextBoxTest, ColourSetWithAnEmptySelectionIsWhatIsInsertedNext) {
  box.SetText("AB");
  box.SetSelStart(2);
  box.SetSelColor(kRed);
  box.SetSelText("C");
  EXPECT_EQ(Colours(), (std::vector<Colour>{kBlue, kBlue, kRed}));
  EXPECT_EQ(box.SelStart(), 3);
}

TEST_F(MemoryTextBoxTest, SetSelTextReplacesTheSelectionAndItsColours) {
  box.SetText("CQ DE");
  Paint(0, 2, kBlack);
  box.SetSelStart(5);
  box.SetSelColor(kRed);
  box.SetSelStart(3);
  box.SetSelLength(2);
  box.SetSelText("TEST");
  EXPECT_EQ(box.Text(), "CQ TEST");
  EXPECT_EQ(box.SelStart(), 7);
  EXPECT_EQ(box.SelLength(), 0);
  // Moving to 3 took up the blue of the blank before it, not the red set at 5.
  EXPECT_EQ(Colours(), (std::vector<Colour>{kBlack, kBlack, kBlue, kBlue, kBlue, kBlue, kBlue}));
  EXPECT_EQ(trace.Events().back(), "text \"CQ TEST\"");
  EXPECT_EQ(changes, 2);
}

TEST_F(MemoryTextBoxTest, DeletingACharacterTakesItsColourWithIt) {
  box.SetText("ABC");
  Paint(1, 1, kRed);
  Paint(2, 1, kBlack);
  box.SetSelStart(1);
  box.SetSelLength(1);
  box.SetSelText("");
  EXPECT_EQ(box.Text(), "AC");
  EXPECT_EQ(Colours(), (std::vector<Colour>{kBlue, kBlack}));
}

TEST_F(MemoryTextBoxTest, ReplacingTextWithItselfFiresNothingButRecolours) {
  box.SetText("AB");
  Paint(0, 1, kRed);
  box.SetSelText("A");
  box.SetSelStart(2);
  box.SetSelText("");
  EXPECT_EQ(box.Text(), "AB");
  EXPECT_EQ(box.ColourAt(0), kBlue);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(trace.Lines().size(), 1u);
}

TEST_F(MemoryTextBoxTest, TraceQuotesTheText) {
  box.SetText("say \"hi\"\r");
  EXPECT_EQ(trace.Events(), (std::vector<std::string>{R"(text "say \"hi\"\x0D")"}));
}

}  // namespace
}  // namespace vantrel::platform::memory
