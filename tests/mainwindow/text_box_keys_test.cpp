#include <gtest/gtest.h>

#include "support/keyer_fixture.h"

namespace vantrel::mainwindow {
namespace {

using testing::KeyerFixture;

class TextBoxKeys : public KeyerFixture {
 protected:
  // One key as the window delivers it: key down, then the character it
  // makes, which the box inserts where its caret stands unless it was
  // dropped or is a control character.
  int16_t Press(int16_t keyCode, int16_t keyAscii, int16_t shift = 0) {
    keyer.form.cwTextBox_KeyDown(keyCode, shift);
    if (keyAscii == 0) return keyCode;
    keyer.form.cwTextBox_KeyPress(keyAscii);
    if (keyAscii >= 32) p.CWTextBox.SetSelText(std::string(1, static_cast<char>(keyAscii)));
    return keyCode;
  }
  void TypeKeys(const std::string& text) {
    for (const char c : text) Press(static_cast<int16_t>(vb::UCaseAnsi(c)), c);
  }
};

TEST_F(TextBoxKeys, SmallLettersGoInAndOutAsCapitals) {
  Start({{"Slow Typing", "OFF"}});
  std::string inBox;
  At(0, [&] { TypeKeys("c"); });
  At(10, [&] { TypeKeys("q"); });  // reaches the box while the C goes out
  At(20, [&] { inBox = p.CWTextBox.Text(); });
  Run();
  EXPECT_EQ(inBox, "CQ");
  EXPECT_EQ(TimesOf("keybox green").size(), 8u);  // -.-. --.-
}

TEST_F(TextBoxKeys, NewTextGoesToTheEndWhereverTheCaretIs) {
  Start({{"Keying", "MOX"}});
  TypeKeys("cq");
  p.CWTextBox.SetSelStart(1);
  TypeKeys("x");
  EXPECT_EQ(p.CWTextBox.Text(), "CQX");
  EXPECT_TRUE(p.mnuTX.Enabled());  // on MOX the text waits for TX
  EXPECT_FALSE(cw.Transmitting());
}

TEST_F(TextBoxKeys, EnterAddsNothing) {
  Start({{"Keying", "MOX"}});
  TypeKeys("cq");
  EXPECT_EQ(Press(13, 13), 0);
  EXPECT_EQ(p.CWTextBox.Text(), "CQ");
}

TEST_F(TextBoxKeys, ProsignKeysQueueTheirLettersOnTheSoftwareKeyerOnly) {
  Start({{"Keying", "MOX"}});
  TypeKeys("cq=");
  EXPECT_EQ(p.CWTextBox.Text(), "CQ B^T");
  TypeKeys("+");
  EXPECT_EQ(p.CWTextBox.Text(), "CQ B^T A^R");

  UseChip(winkey::ChipModel::WinKey);
  TypeKeys("!");
  EXPECT_EQ(p.CWTextBox.Text(), "CQ B^T A^R!");
}

TEST_F(TextBoxKeys, PageKeysMoveToTheCallAndEscAborts) {
  Start();
  double abortedAt = -1;
  At(0, [&] { p.CWTextBox.SetText("PARIS"); });
  At(500, [&] {
    abortedAt = p.clock.NowMs();
    const int focused = p.CallsignField.focused;
    EXPECT_EQ(Press(33, 0), 0);
    EXPECT_EQ(p.CallsignField.focused, focused + 1);
    EXPECT_EQ(p.CWTextBox.Text(), "PARIS");
    Press(27, 27);
  });
  Run();
  EXPECT_EQ(p.CWTextBox.Text(), "");
  EXPECT_FALSE(cw.Transmitting());
  EXPECT_EQ(TimesOf("post 900 0"), std::vector<double>{abortedAt});
}

TEST_F(TextBoxKeys, BackspaceTakesBackOnlyWhatTheLoopHasNotReached) {
  Start({{"Keying", "MOX"}});
  TypeKeys("cq");
  Press(8, 8);
  EXPECT_EQ(p.CWTextBox.Text(), "C");

  cw.Tx = sending::TxState::Sending;
  cw.SendPosition = 1;  // the C is in hand
  Press(8, 8);
  EXPECT_EQ(p.CWTextBox.Text(), "C");
  TypeKeys("q");
  Press(8, 8);
  EXPECT_EQ(p.CWTextBox.Text(), "C");
}

}  // namespace
}  // namespace vantrel::mainwindow
