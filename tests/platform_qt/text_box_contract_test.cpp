// What the logic counts on from a rich text box, held to by the box in
// memory that the logic's tests drive and by the one on screen alike.
#include <gtest/gtest.h>

#include <QTextEdit>
#include <algorithm>
#include <string>

#include "platform/memory/memory_text_box.h"
#include "platform/memory/trace.h"
#include "platform/qt/qt_text_box.h"
#include "qt_application.h"

namespace vantrel::platform {
namespace {

constexpr Colour kBlack = 0x000000;
constexpr Colour kRed = 0x0000FF;
constexpr Colour kBlue = 0xFF0000;
constexpr Colour kGreen = 0x00FF00;

struct InMemory {
  memory::Trace trace{[] { return 0.0; }};
  memory::MemoryTextBox box{trace, kBlack};
};

struct OnScreen {
  bool application = (testing::EnsureApplication(), true);
  QTextEdit edit;
  qt::QtTextBox box{edit, kBlack};
};

// One letter a character: (blac)k, r(ed), b(lue), g(reen).
template <typename Box>
std::string ColoursOf(const Box& box) {
  std::string letters;
  for (int i = 0; i < static_cast<int>(box.Text().size()); ++i) {
    const Colour c = box.ColourAt(i);
    letters += c == kBlack ? 'k' : c == kRed ? 'r' : c == kBlue ? 'b' : c == kGreen ? 'g' : '?';
  }
  return letters;
}

template <typename Made>
class TextBoxTest : public ::testing::Test {
 protected:
  TextBoxTest() {
    box_.OnChange([this] {
      ++changes;
      caretSeen = box_.SelStart();
    });
  }
  void Select(int start, int length) {
    box_.SetSelStart(start);
    box_.SetSelLength(length);
  }
  // Types at the caret in `colour`, as the logic inserts.
  void Type(const std::string& text, Colour colour) {
    box_.SetSelColor(colour);
    box_.SetSelText(text);
  }
  std::string Colours() const { return ColoursOf(made_.box); }

  Made made_;
  TextBox& box_ = made_.box;
  int changes = 0;
  int caretSeen = -1;
};

using Implementations = ::testing::Types<InMemory, OnScreen>;
TYPED_TEST_SUITE(TextBoxTest, Implementations);

// Line breaks aside, which the widget keeps as paragraphs of its own, and
// which the logic never writes.
TYPED_TEST(TextBoxTest, EveryEightBitCharacterReadsBackAsWritten) {
  std::string all;
  for (int code = 1; code < 256; ++code) {
    if (code != '\r' && code != '\n') all += static_cast<char>(code);
  }
  TextBox& box = this->box_;
  box.SetText(all);
  EXPECT_EQ(box.Text(), all);
  // The speed marks, among the text as a macro puts them.
  box.SetSelStart(10);
  box.SetSelText("\xBB\xAB");
  EXPECT_EQ(box.Text(), all.substr(0, 10) + "\xBB\xAB" + all.substr(10));
  this->Select(10, 2);
  box.SetSelText("");
  EXPECT_EQ(box.Text(), all);
}

// Every start and length, in range or not: the selection is held inside the
// text, gives way to what is put there, and leaves the caret after it.
TYPED_TEST(TextBoxTest, SelTextReplacesTheSelectionHeldInsideTheText) {
  const std::string text = "HELLO";
  const int size = static_cast<int>(text.size());
  TextBox& box = this->box_;
  for (int start = -2; start <= size + 2; ++start) {
    for (int length = -2; length <= size + 2; ++length) {
      SCOPED_TRACE("start " + std::to_string(start) + " length " + std::to_string(length));
      box.SetText(text);
      this->Select(start, length);
      const int heldStart = std::clamp(start, 0, size);
      const int heldLength = std::clamp(length, 0, size - heldStart);
      ASSERT_EQ(box.SelStart(), heldStart);
      ASSERT_EQ(box.SelLength(), heldLength);
      box.SetSelText("xy");
      ASSERT_EQ(box.Text(), text.substr(0, heldStart) + "xy" + text.substr(heldStart + heldLength));
      ASSERT_EQ(box.SelStart(), heldStart + 2);
      ASSERT_EQ(box.SelLength(), 0);
    }
  }
}

TYPED_TEST(TextBoxTest, MovingTheCaretOrANewTextEmptiesTheSelection) {
  TextBox& box = this->box_;
  box.SetText("CQ TEST");
  this->Select(3, 4);
  box.SetSelStart(3);  // where it already is
  EXPECT_EQ(box.SelLength(), 0);
  this->Select(3, 4);
  box.SetText("CQ TEST DE");
  EXPECT_EQ(box.SelStart(), 3);
  EXPECT_EQ(box.SelLength(), 0);
  box.SetSelStart(10);
  box.SetText("CQ");  // shortened under the caret
  EXPECT_EQ(box.SelStart(), 2);
  box.SetSelText("X");
  EXPECT_EQ(box.Text(), "CQX");
  box.SetText("");
  EXPECT_EQ(box.SelStart(), 0);
}

// Colouring a stretch touches those characters only and keeps the
// selection; with nothing selected it is the colour of what comes next.
TYPED_TEST(TextBoxTest, SelColorColoursExactlyTheSelection) {
  const int size = 6;
  TextBox& box = this->box_;
  for (int start = -1; start <= size + 1; ++start) {
    for (int length = 0; length <= size + 1; ++length) {
      SCOPED_TRACE("start " + std::to_string(start) + " length " + std::to_string(length));
      box.SetText("");
      box.SetSelColor(kGreen);
      box.SetText("ABCDEF");
      this->Select(start, length);
      const int heldStart = box.SelStart();
      const int heldLength = box.SelLength();
      box.SetSelColor(kRed);
      std::string expected(size, 'g');
      std::fill_n(expected.begin() + heldStart, heldLength, 'r');
      ASSERT_EQ(this->Colours(), expected);
      ASSERT_EQ(box.SelStart(), heldStart);
      ASSERT_EQ(box.SelLength(), heldLength);
      // What replaces the selection is in the colour of inserting, which
      // colouring a selection left alone.
      box.SetSelText("x");
      expected.replace(heldStart, heldLength, heldLength == 0 ? "r" : "g");
      ASSERT_EQ(this->Colours(), expected);
    }
  }
}

// As the operator's typing does: a caret moved takes up the colour of the
// character before it; one that stays, or goes to the front, keeps the
// colour set for it. Edits leave every other character its own colour.
TYPED_TEST(TextBoxTest, MovingTheCaretTakesUpTheColourBeforeIt) {
  TextBox& box = this->box_;
  this->Type("AB", kRed);
  this->Type("C", kBlue);
  box.SetSelColor(kGreen);
  box.SetSelStart(1);  // the green set before the move is gone
  box.SetSelText("x");
  EXPECT_EQ(box.Text(), "AxBC");
  EXPECT_EQ(this->Colours(), "rrrb");
  box.SetSelColor(kGreen);
  box.SetSelStart(2);  // where it already is
  box.SetSelText("y");
  box.SetSelColor(kGreen);
  box.SetSelStart(0);
  box.SetSelText("z");
  EXPECT_EQ(box.Text(), "zAxyBC");
  EXPECT_EQ(this->Colours(), "grrgrb");
  box.SetSelStart(6);
  box.SetSelText("w");
  this->Select(1, 2);
  box.SetSelText("");  // deleted characters take their colours with them
  EXPECT_EQ(box.Text(), "zyBCw");
  EXPECT_EQ(this->Colours(), "ggrbb");
}

// The send loop marks and cuts the text with redraw off: what it reads back
// meanwhile, and what stands once redraw is on again, is as with it on.
TYPED_TEST(TextBoxTest, RedrawOffChangesNothingTheLogicSees) {
  TypeParam other;
  TextBox& on = this->box_;
  TextBox& off = other.box;
  const auto same = [&](int step) {
    ASSERT_EQ(off.Text(), on.Text()) << "step " << step;
    ASSERT_EQ(off.SelStart(), on.SelStart()) << "step " << step;
    ASSERT_EQ(off.SelLength(), on.SelLength()) << "step " << step;
    ASSERT_EQ(ColoursOf(other.box), this->Colours()) << "step " << step;
  };
  for (TextBox* box : {&on, &off}) box->SetText("CQ CQ DE TEST TEST");
  for (int position = 1; position <= static_cast<int>(on.Text().size()); ++position) {
    off.SetRedraw(false);
    for (TextBox* box : {&on, &off}) {
      const int length = static_cast<int>(box->Text().size());
      box->SetSelStart(0);
      box->SetSelLength(position - 1);
      box->SetSelColor(kBlue);
      box->SetSelStart(position - 1);
      box->SetSelLength(1);
      box->SetSelColor(kRed);
      if (position % 4 == 0) box->SetSelText("");
      box->SetSelStart(length);
      box->SetSelColor(kBlack);
    }
    same(position);
    off.SetRedraw(true);
    same(position);
  }
  off.SetRedraw(false);
  for (TextBox* box : {&on, &off}) box->SetText("TU");
  same(0);
  off.SetRedraw(true);
  same(0);
}

// Once per change of the characters, seeing the edit whole; never for a
// colour or a caret alone, nor for an edit that changes nothing.
TYPED_TEST(TextBoxTest, ChangeRunsOncePerChangeOfTheCharacters) {
  TextBox& box = this->box_;
  box.SetText("CQ");
  box.SetText("CQ");
  EXPECT_EQ(this->changes, 1);
  this->Select(0, 2);
  box.SetSelColor(kRed);
  box.SetSelStart(1);
  box.SetSelText("");
  this->Select(0, 1);
  box.SetSelText("C");  // the same character again
  EXPECT_EQ(this->changes, 1);
  box.SetSelStart(2);
  box.SetSelText(" TEST");
  EXPECT_EQ(this->changes, 2);
  EXPECT_EQ(this->caretSeen, 7);
  this->Select(2, 5);
  box.SetRedraw(false);
  box.SetSelText("");
  EXPECT_EQ(this->changes, 3);
  EXPECT_EQ(this->caretSeen, 2);
  box.SetRedraw(true);
  box.SetText("");
  EXPECT_EQ(this->changes, 4);
}

TYPED_TEST(TextBoxTest, LooksReadBackAsSet) {
  TextBox& box = this->box_;
  for (const Colour colour : {0xE3FDFC, 0x000000, 0xFFFFFF}) {
    box.SetBackColor(colour);
    EXPECT_EQ(box.BackColor(), colour);
  }
  box.SetFontName("Courier New");
  box.SetFontSize(10.5F);
  box.SetFontBold(true);
  box.SetFontItalic(true);
  EXPECT_EQ(box.FontName(), "Courier New");
  EXPECT_FLOAT_EQ(box.FontSize(), 10.5F);
  EXPECT_TRUE(box.FontBold());
  EXPECT_TRUE(box.FontItalic());
  box.SetFontSize(8);
  box.SetFontBold(false);
  box.SetFontItalic(false);
  EXPECT_FLOAT_EQ(box.FontSize(), 8);
  EXPECT_FALSE(box.FontBold());
  EXPECT_FALSE(box.FontItalic());
}

}  // namespace
}  // namespace vantrel::platform
