#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/keyer_fixture.h"

namespace vantrel::macros {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using testing::KeyerFixture;

constexpr int16_t kIns = 45;
constexpr int16_t kF1 = 112;
constexpr int16_t kF2 = 113;
constexpr int16_t kShift = 1;
constexpr int16_t kCtrl = 2;
constexpr int16_t kAlt = 4;

class MacroKeys : public KeyerFixture {
 protected:
  void StartOnMox(const Settings& settings = {}) {
    Settings all{{"Keying", "MOX"}};
    all.insert(all.end(), settings.begin(), settings.end());
    Start(all);
  }
  // A key down in the box or in a field; the code that is left.
  int16_t KeyDown(int16_t keyCode, int16_t shift = 0, const std::string& where = "CWTextBox") {
    p.trace.Clear();
    if (where == "CWTextBox") {
      keyer.form.cwTextBox_KeyDown(keyCode, shift);
    } else {
      keyer.form.FieldKeyDown(keyCode, shift, where);
    }
    return keyCode;
  }
  std::vector<std::string> Fired() const { return EventsStartingWith({"macro "}); }
};

TEST_F(MacroKeys, ModifiersPickTheRowAndOtherMixesAreSwallowed) {
  StartOnMox();
  struct {
    int16_t shift;
    int16_t code;
    std::vector<std::string> fired;
  } const cases[] = {
      {0, kF2, {"macro 2"}},      {kAlt, kF2, {"macro 14"}}, {kCtrl, kF2, {"macro 26"}},
      {kCtrl, 123, {"macro 36"}}, {kShift, kF2, {}},         {kCtrl | kAlt, kF1, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.code) + " shift " + std::to_string(c.shift));
    EXPECT_EQ(KeyDown(c.code, c.shift), 0);
    EXPECT_EQ(Fired(), c.fired);
  }
}

TEST_F(MacroKeys, InsStandsForTheStoredCode) {
  StartOnMox();
  struct {
    const char* stored;
    int16_t shift;
    std::vector<std::string> fired;
  } const cases[] = {
      {"112", 0, {"macro 1"}},       {"126", 0, {"macro 15"}},
      {"136", 0, {"macro 25"}},      {"126", kCtrl, {"macro 15"}},
      {"116", kAlt, {"macro 17"}},   {"116", kCtrl, {"macro 29"}},
      {"147", kShift, {"macro 36"}}, {"150", 0, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.stored) + " shift " + std::to_string(c.shift));
    keyer.window.InsertKeyCode = static_cast<int16_t>(std::stoi(c.stored));
    for (const char* where : {"CWTextBox", "CallsignField", "NameField", "SRXField"}) {
      KeyDown(kIns, c.shift, where);
      EXPECT_EQ(Fired(), c.fired) << where;
    }
  }
}

TEST_F(MacroKeys, AltLetterFiresTheLowestCaptionThatHoldsIt) {
  StartOnMox();
  keyer.macros.MacroCaptions[20] = "&Test";
  keyer.macros.MacroCaptions[7] = "5&nn &tu";
  keyer.macros.MacroCaptions[30] = "&Pse";
  EXPECT_EQ(KeyDown('T', kAlt), 0);
  EXPECT_THAT(Fired(), ElementsAre("macro 7"));
  EXPECT_EQ(KeyDown('N', kAlt, "NameField"), 0);
  EXPECT_THAT(Fired(), ElementsAre("macro 7"));
  // ALT F1 has the code of the letter p: the caption wins over the key.
  EXPECT_EQ(KeyDown(kF1, kAlt), 0);
  EXPECT_THAT(Fired(), ElementsAre("macro 30"));
  EXPECT_EQ(KeyDown('X', kAlt), 'X');
  EXPECT_THAT(Fired(), IsEmpty());
}

TEST_F(MacroKeys, ClickQueuesTheMacroAndRemembersIt) {
  StartOnMox();
  keyer.macros.MacroTexts[3] = "cq de $call$";
  p.CallsignField.SetText("W1AW");
  p.CWTextBox.SetText("QRL?");
  keyer.mMacros.btnF_Click(3);
  EXPECT_EQ(p.CWTextBox.Text(), "QRL? CQ DE W1AW");
  EXPECT_EQ(keyer.mMacros.LastMacroIndex, 3);
}

TEST_F(MacroKeys, FocusReturnsToTheActiveFieldUntilALoopHasRun) {
  Start();
  keyer.form.CallsignField_GotFocus();
  p.CallsignField.SetText("W1AW");
  keyer.mMacros.btnF_Click(1);
  keyer.mMacros.btnF_Click(1);
  EXPECT_EQ(TimesOf("focus CallsignField").size(), 2u);
  EXPECT_EQ(p.CallsignField.SelStart(), 4);

  // The loop's timer moves the focus the first time only; from then on a
  // click moves it only when it ends a loop.
  keyer.macros.MacroTexts[2] = "e $loop$";
  p.trace.Clear();
  At(0, [this] { keyer.mMacros.btnF_Click(2); });
  At(8000, [this] { keyer.mMacros.btnF_Click(1); });  // ends the loop: focus
  At(9000, [this] { keyer.mMacros.btnF_Click(1); });  // no loop: stays
  Run();
  EXPECT_THAT(EventsStartingWith({"macro", "focus"}),
              ElementsAre("focus CallsignField", "macro 2", "focus CallsignField", "macro 2",
                          "focus CallsignField", "macro 1", "macro 1"));
}

TEST_F(MacroKeys, ButtonsTakeTheLookUnderTheMouseAndBack) {
  StartOnMox();
  MacroState& m = keyer.macros;
  m.MacroOverBackColors[5] = 255;
  m.MacroOverForeColors[5] = 65535;
  m.MacroOverFontNames[5] = "Courier";
  m.MacroOverFontSizes[5] = 12;
  m.MacroOverFontBolds[5] = true;
  m.MacroOverFontItalics[5] = true;
  auto& button = p.btnf[5];
  keyer.mMacros.btnf_MouseEnter(5);
  EXPECT_EQ(button.BackColor(), 255);
  EXPECT_EQ(button.ForeColor(), 65535);
  EXPECT_EQ(button.FontName(), "Courier");
  EXPECT_EQ(button.FontSize(), 12);
  EXPECT_TRUE(button.FontBold());
  EXPECT_TRUE(button.FontItalic());
  keyer.mMacros.btnf_MouseLeave(5);
  EXPECT_EQ(button.BackColor(), m.MacroBackColors[5]);
  EXPECT_EQ(button.ForeColor(), m.MacroForeColors[5]);
  EXPECT_EQ(button.FontName(), "MS Sans Serif");
  EXPECT_EQ(button.FontSize(), 8);
  EXPECT_FALSE(button.FontBold());
  EXPECT_FALSE(button.FontItalic());
}

TEST_F(MacroKeys, RightButtonEditsAndAnyPressClosesTheEditorFirst) {
  StartOnMox();
  keyer.macros.MacroOverForeColors[4] = 123;
  keyer.mMacros.btnf_MouseDown(4, 2);
  keyer.mMacros.btnf_MouseUp(4, 2);
  EXPECT_EQ(p.btnf[4].ForeColorOnMouse(), 123);
  keyer.mMacros.btnf_MouseDown(9, 2);
  keyer.mMacros.btnf_MouseUp(9, 2);
  keyer.mMacros.btnf_MouseDown(9, 1);
  keyer.mMacros.btnf_MouseUp(9, 1);
  EXPECT_THAT(EventsStartingWith({"editor caption", "editor shown", "editor closed", "macro "}),
              ElementsAre("editor caption \"Macro Setup for F4\"", "editor shown", "editor closed",
                          "editor caption \"Macro Setup for F9\"", "editor shown",
                          "editor closed"));
}

}  // namespace
}  // namespace vantrel::macros
