#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/keyer_fixture.h"

namespace vantrel::mainwindow {
namespace {

using ::testing::ElementsAre;
using testing::KeyerFixture;

class ContactFields : public KeyerFixture {
 protected:
  void StartWithLogger() {
    p.linkChannel.loggerRunning = true;
    Start();
  }
  // As a key in the field does: at the end.
  void TypeInto(platform::TextBox& field, const std::string& text) {
    field.SetSelStart(static_cast<int>(field.Text().size()));
    field.SetSelText(text);
  }
};

TEST_F(ContactFields, EveryChangeGoesToTheLoggerWhenThereIsOne) {
  StartWithLogger();
  for (const char c : std::string("W1AW")) TypeInto(p.CallsignField, std::string(1, c));
  EXPECT_EQ(TimesOf("post 200 0").size(), 4u);
  EXPECT_EQ(EventsStartingWith({"slot 0"}).back(), "slot 0 \"W1AW\"");
  TypeInto(p.NameField, "Hiram");
  EXPECT_EQ(EventsStartingWith({"slot 1"}).back(), "slot 1 \"Hiram\"");
  EXPECT_EQ(keyer.form.PreviousCall, "W1AW");
}

TEST_F(ContactFields, WithoutTheLoggerTheFieldsAreLocal) {
  Start();
  TypeInto(p.CallsignField, "K1ABC");
  EXPECT_TRUE(EventsStartingWith({"slot", "post"}).empty());
  EXPECT_EQ(keyer.form.PreviousCall, "K1ABC");
}

TEST_F(ContactFields, SrxPlaceholderGivesWayAndComesBack) {
  StartWithLogger();
  EXPECT_EQ(p.SRXField.Text(), "###");
  TypeInto(p.SRXField, "1");
  EXPECT_EQ(p.SRXField.Text(), "1");
  TypeInto(p.SRXField, "23");
  EXPECT_EQ(p.SRXField.Text(), "123");
  p.SRXField.SetText("");
  EXPECT_EQ(p.SRXField.Text(), "###");
  EXPECT_EQ(p.SRXField.SelStart(), 3);
  // Each rewrite runs the rule again, so the logger hears of it twice.
  EXPECT_THAT(EventsStartingWith({"slot 6"}),
              ElementsAre("slot 6 \"1\"", "slot 6 \"1\"", "slot 6 \"123\"", "slot 6 \"###\"",
                          "slot 6 \"###\""));
}

TEST_F(ContactFields, CorrectionRewritesTheUnsentTailAndLaterCopies) {
  Start({{"Slow Typing", "OFF"}});
  TypeInto(p.CallsignField, "W1AW");
  std::string during;
  platform::Colour sentColour = -1;
  At(0, [&] { Type("W1AW DE K1ABC W1AW"); });
  // At the first dash of the second letter, "1", of the first call.
  At(700, [&] {
    ASSERT_EQ(cw.SendPosition, 2);
    p.CallsignField.SetText("W1AX");
    during = p.CWTextBox.Text();
    sentColour = p.CWTextBox.ColourAt(0);
  });
  Run();
  // The head of the call is on the air and stays; the tail and the later copy change.
  EXPECT_EQ(during, "W1AX DE K1ABC W1AX");
  EXPECT_EQ(sentColour, cw.TransmittedColor);
  // The elements of W1AX DE K1ABC W1AX: a W left at the end of either call gives 49.
  EXPECT_EQ(TimesOf("keybox green").size(), 50u);
}

TEST_F(ContactFields, FullySentCallStaysAndEmptyOldCallChangesNothing) {
  Start();
  cw.Tx = sending::TxState::Sending;
  p.CWTextBox.SetText("W1AW DE K1ABC W1AW");
  cw.SendPosition = 6;  // the first call is out
  keyer.form.PreviousCall = "W1AW";
  p.CallsignField.SetText("W1AX");
  EXPECT_EQ(p.CWTextBox.Text(), "W1AW DE K1ABC W1AX");

  keyer.form.PreviousCall = "";
  p.CallsignField.SetText("N0CALL");
  EXPECT_EQ(p.CWTextBox.Text(), "W1AW DE K1ABC W1AX");
}

class FieldKeys : public ContactFields {
 protected:
  int16_t KeyDown(int16_t keyCode, const std::string& field, int16_t shift = 0) {
    keyer.form.FieldKeyDown(keyCode, shift, field);
    return keyCode;
  }
};

TEST_F(FieldKeys, TabCyclesTheShownFields) {
  Start();
  KeyDown(9, "CallsignField");
  KeyDown(9, "NameField", 1);  // SHIFT Tab goes the same way
  keyer.form.mnuShowSRX_Click();
  KeyDown(9, "CallsignField");
  KeyDown(9, "SRXField");
  EXPECT_THAT(EventsStartingWith({"focus"}),
              ElementsAre("focus NameField", "focus CallsignField", "focus SRXField",
                          "focus NameField"));
  EXPECT_EQ(p.SRXField.SelStart(), 3);  // behind the placeholder
}

TEST_F(FieldKeys, CallIsCapitalisedAndNoFieldTakesALineBreak) {
  Start();
  for (const char c : std::string("w1aw\r")) {
    int16_t key = c;
    keyer.form.CallsignField_KeyPress(key);
    if (key != 0) TypeInto(p.CallsignField, std::string(1, static_cast<char>(key)));
  }
  EXPECT_EQ(p.CallsignField.Text(), "W1AW");
  int16_t key = 'h';
  keyer.form.NameField_KeyPress(key);
  EXPECT_EQ(key, 'h');
  key = 10;
  keyer.form.NameField_KeyPress(key);
  EXPECT_EQ(key, 0);
}

TEST_F(FieldKeys, MacroKeysWorkInTheFieldsAsInTheBox) {
  Start();
  EXPECT_EQ(KeyDown(113, "NameField", 2), 0);
  EXPECT_EQ(KeyDown('A', "CallsignField"), 'A');  // an ordinary key reaches the field
  EXPECT_EQ(KeyDown(34, "CallsignField"), 0);
  EXPECT_THAT(EventsStartingWith({"macro", "focus"}), ElementsAre("macro 26", "focus CWTextBox"));
}

TEST_F(ContactFields, LoggedCallsGoOnTopOfTheLastEight) {
  Start();
  for (int n = 1; n <= 9; ++n) {
    p.CallsignField.SetText("K" + std::to_string(n));
    keyer.form.RememberCallsign();
  }
  ASSERT_EQ(p.cmbPrevious.items.size(), 8u);
  EXPECT_EQ(p.cmbPrevious.items.front(), "K9");
  EXPECT_EQ(p.cmbPrevious.items.back(), "K2");  // the ninth pushed the first out
  p.CallsignField.SetText("");
  keyer.form.RememberCallsign();
  EXPECT_EQ(p.cmbPrevious.items.size(), 8u);
  // Choosing an older one brings it back into the call field.
  p.cmbPrevious.SetListIndex(3);
  EXPECT_EQ(p.CallsignField.Text(), "K6");
  EXPECT_EQ(p.CallsignField.SelStart(), 2);
  EXPECT_EQ(EventsStartingWith({"focus"}).back(), "focus CallsignField");
}

}  // namespace
}  // namespace vantrel::mainwindow
