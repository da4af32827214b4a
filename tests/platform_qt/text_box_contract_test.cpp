// What the logic counts on from a rich text box, held to by the box in
// memory that the logic's tests drive and by the one on screen alike.
#include <gtest/gtest.h>

#include <QTextEdit>
#include <algorithm>
#include <string>

#include "platform/memory/memory_text_box.h"
#include "platform/qt/qt_text_box.h"
#include "qt_application.h"

namespace vantrel::platform {
namespace {

constexpr Colour kBlack = 0x000000, kRed = 0x0000FF, kBlue = 0xFF0000, kGreen = 0x00FF00;

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

// What the logic can read back of a box.
template <typename Box>
std::string Seen(const Box& box) {
  return box.Text() + " [" + std::to_string(box.SelStart()) + "+" + std::to_string(box.SelLength()) +
         "] " + ColoursOf(box);
}

template <typename Made>
class TextBoxTest : public ::testing::Test {
 protected:
  void Select(int start, int length) {
    box_.SetSelStart(start);
    box_.SetSelLength(length);
  }
  std::string Colours() const { return ColoursOf(made_.box); }

  Made made_;
  TextBox& box_ = made_.box;
};

using Implementations = ::testing::Types<InMemory, OnScreen>;
TYPED_TEST_SUITE(TextBoxTest, Implementations);

// Line breaks aside, which the widget keeps as paragraphs of its own and
// the logic never writes.
TYPED_TEST(TextBoxTest, EveryEightBitCharacterReadsBackAsWritten) {
  std::string all;
  for (int code = 1; code < 256; ++code) {
    if (code != '\r' && code != '\n') all += static_cast<char>(code);
  }
  TextBox& box = this->box_;
  box.SetText(all);
  EXPECT_EQ(box.Text(), all);
  box.SetSelStart(10);
  box.SetSelText("\xBB\xAB");  // the speed marks, as a macro puts them
  EXPECT_EQ(box.Text(), all.substr(0, 10) + "\xBB\xAB" + all.substr(10));
}

// Every start and length, in range or not: the selection is held inside the
// text, gives way to what is put there and leaves the caret after it; a new
// text keeps the caret where it can.
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
      this->Select(0, 1);
      box.SetSelStart(0);  // where it already is, and still the selection goes
      ASSERT_EQ(box.SelLength(), 0);
      this->Select(heldStart + 2, 1);
      box.SetText("HE");
      ASSERT_EQ(box.SelStart(), std::min(heldStart + 2, 2));
      ASSERT_EQ(box.SelLength(), 0);
    }
  }
}

// Colouring a stretch touches those characters only and keeps the
// selection; with nothing selected it is the colour of what comes next,
// which colouring a selection leaves alone.
TYPED_TEST(TextBoxTest, SelColorColoursExactlyTheSelection) {
  TextBox& box = this->box_;
  for (int start = -1; start <= 7; ++start) {
    for (int length = 0; length <= 7; ++length) {
      SCOPED_TRACE("start " + std::to_string(start) + " length " + std::to_string(length));
      box.SetText("");
      box.SetSelColor(kGreen);
      box.SetText("ABCDEF");
      this->Select(start, length);
      const int heldStart = box.SelStart(), heldLength = box.SelLength();
      box.SetSelColor(kRed);
      std::string expected = "gggggg";
      std::fill_n(expected.begin() + heldStart, heldLength, 'r');
      ASSERT_EQ(this->Colours(), expected);
      ASSERT_EQ(box.SelLength(), heldLength);
      box.SetSelText("x");
      ASSERT_EQ(this->Colours(), expected.replace(heldStart, heldLength, heldLength ? "g" : "r"));
    }
  }
}

// As the operator's typing does: a caret moved takes up the colour of the
// character before it; one that stays, or goes to the front, keeps the
// colour set for it. Edits leave every other character its own colour.
TYPED_TEST(TextBoxTest, MovingTheCaretTakesUpTheColourBeforeIt) {
  TextBox& box = this->box_;
  const auto type = [&](const std::string& text, Colour colour) {
    box.SetSelColor(colour);
    box.SetSelText(text);
  };
  type("AB", kRed);
  type("C", kBlue);
  box.SetSelColor(kGreen);
  box.SetSelStart(1);  // the green set before the move is gone
  box.SetSelText("x");
  EXPECT_EQ(this->Colours(), "rrrb");
  box.SetSelColor(kGreen);
  box.SetSelStart(2);
  type("y", kGreen);
  box.SetSelStart(0);
  box.SetSelText("z");
  box.SetSelStart(6);
  box.SetSelText("w");
  EXPECT_EQ(box.Text(), "zAxyBCw");
  EXPECT_EQ(this->Colours(), "grrgrbb");
  this->Select(1, 3);
  box.SetSelText("");  // deleted characters take their colours with them
  EXPECT_EQ(this->Colours(), "grbb");
}

// The send loop marks and cuts the text with redraw off: what it reads back
// meanwhile, and what stands once redraw is on again, is as with it on.
TYPED_TEST(TextBoxTest, RedrawOffChangesNothingTheLogicSees) {
  TypeParam other;
  TextBox& on = this->box_;
  TextBox& off = other.box;
  for (TextBox* box : {&on, &off}) box->SetText("CQ CQ DE TEST TEST");
  for (int position = 1; position <= static_cast<int>(on.Text().size()) + 1; ++position) {
    const bool pastTheEnd = position > static_cast<int>(on.Text().size());
    off.SetRedraw(false);
    for (TextBox* box : {&on, &off}) {
      if (pastTheEnd) {  // a new text, the caret held where it was
        box->SetText("TU");
        continue;
      }
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
    ASSERT_EQ(Seen(other.box), Seen(this->made_.box)) << "redraw off, step " << position;
    off.SetRedraw(true);
    ASSERT_EQ(Seen(other.box), Seen(this->made_.box)) << "redraw on, step " << position;
  }
}

// Once per change of the characters, seeing the edit whole; never for a
// colour or a caret alone, nor for an edit that changes nothing.
TYPED_TEST(TextBoxTest, ChangeRunsOncePerChangeOfTheCharacters) {
  TextBox& box = this->box_;
  int changes = 0, caretSeen = -1;
  box.OnChange([&] { ++changes, caretSeen = box.SelStart(); });
  box.SetText("CQ");
  box.SetText("CQ");
  this->Select(0, 2);
  box.SetSelColor(kRed);
  box.SetSelStart(1);
  box.SetSelText("");
  this->Select(0, 1);
  box.SetSelText("C");  // the same character again
  EXPECT_EQ(changes, 1);
  box.SetSelStart(2);
  box.SetSelText(" TEST");
  EXPECT_EQ(changes, 2);
  EXPECT_EQ(caretSeen, 7);
  this->Select(2, 5);
  box.SetRedraw(false);
  box.SetSelText("");
  EXPECT_EQ(changes, 3);
  EXPECT_EQ(caretSeen, 2);
  box.SetRedraw(true);
  box.SetText("");
  EXPECT_EQ(changes, 4);
}

}  // namespace
}  // namespace vantrel::platform
