#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "macros/frm_cw_macro_setup.h"
#include "support/keyer_fixture.h"

namespace vantrel::macros {
namespace {

using platform::memory::MemoryMacroSetupDialog;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::KeyerFixture;

constexpr platform::Colour kGrey = 14671839;

class MacroSetup : public KeyerFixture {
 protected:
  // A right click on the macro's button, as the operator opens the editor.
  MemoryMacroSetupDialog& Open(int16_t index) {
    keyer.mMacros.btnf_MouseDown(index, 2);
    keyer.mMacros.btnf_MouseUp(index, 2);
    return p.macroSetup.dialog();
  }
  // The settings written since the last clear, as "KEY=VALUE".
  std::vector<std::string> Written() const {
    std::vector<std::string> written;
    for (const std::string& event : EventsStartingWith({"setting \"frmVantrel Settings\""})) {
      const auto key = event.find('"', event.find("Settings\"") + 9);
      const auto value = event.find("\" \"", key);
      written.push_back(event.substr(key + 1, value - key - 1) + "=" +
                        event.substr(value + 3, event.size() - value - 4));
    }
    return written;
  }
  MacroState& m = keyer.macros;
};

TEST_F(MacroSetup, OpensOnACopyOfTheMacroNamedByItsKey) {
  Start({{"Macro #14", "CQ~TEST"},
         {"Macro Caption #14", "&Test"},
         {"Macro BackColor #14", "255"},
         {"Macro MouseOver ForeColor #14", "4660"},
         {"Macro Fontbold #14", "True"}});
  MemoryMacroSetupDialog& dialog = Open(14);
  EXPECT_EQ(dialog.frmCWMacroSetup.Caption(), "Macro Setup for ALT F2");
  EXPECT_EQ(dialog.MacroText.Text(), "CQ~TEST");  // the file's mark shows as it is
  EXPECT_EQ(dialog.Hbutton1.Caption(), "&Test");
  EXPECT_EQ(dialog.Hbutton1.BackColor(), 255);
  EXPECT_TRUE(dialog.Hbutton1.FontBold());
  EXPECT_EQ(m.MacroOverForeColors[0], 4660);
  EXPECT_FLOAT_EQ(dialog.frmCWMacroSetup.Left(), (28800 - 6705) / 2.0F);
  EXPECT_FLOAT_EQ(dialog.frmCWMacroSetup.Top(), (16200 - 4395) / 2.0F);
  EXPECT_TRUE(dialog.frmCWMacroSetup.topmost);

  // The preview follows the caption letter by letter.
  dialog.CaptionText.SetText("");
  dialog.CaptionText.Type("Go");
  EXPECT_THAT(EventsStartingWith({"editor Hbutton1 caption"}),
              ElementsAre("editor Hbutton1 caption \"&Test\"", "editor Hbutton1 caption \"\"",
                          "editor Hbutton1 caption \"G\"", "editor Hbutton1 caption \"Go\""));

  for (const auto& [index, key] : {std::pair{1, "F1"}, std::pair{12, "F12"}, std::pair{13, "ALT F1"},
                                   std::pair{24, "ALT F12"}, std::pair{25, "CTRL F1"},
                                   std::pair{36, "CTRL F12"}}) {
    EXPECT_EQ(Open(static_cast<int16_t>(index)).frmCWMacroSetup.Caption(),
              std::string("Macro Setup for ") + key);
  }
}

TEST_F(MacroSetup, OkCountsTheStoredFormAndRefusesPast3000) {
  Start();
  MemoryMacroSetupDialog& dialog = Open(3);
  dialog.MacroText.SetText(std::string(3001, 'A'));
  p.trace.Clear();
  dialog.Hbutton5.Click();
  const std::vector<std::string> boxes = EventsStartingWith({"msgbox"});
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_THAT(boxes[0], HasSubstr("\"Too verbose\" \"Sorry, this Macro is awesome.  However it is  "
                                  "3001 characters long.  The maximum length is 3000 characters."));
  EXPECT_TRUE(p.macroSetup.Loaded());
  EXPECT_TRUE(Written().empty());
  EXPECT_EQ(m.MacroTexts[3], "");

  // A line break counts one: 1500 + 1 + 1499 is the most there is room for.
  const std::string twoLines = std::string(1500, 'A') + "\r\n" + std::string(1499, 'B');
  dialog.MacroText.SetText(twoLines);
  dialog.Hbutton5.Click();
  EXPECT_FALSE(p.macroSetup.Loaded());
  EXPECT_TRUE(m.MacroTexts[3] == twoLines);
  const std::vector<std::string> written = Written();
  ASSERT_FALSE(written.empty());
  EXPECT_TRUE(written[0] == "Macro #3=" + std::string(1500, 'A') + "~" + std::string(1499, 'B'));
}

// On a full disk or a read-only folder the dialog stays, says so, and takes
// OK again once the file can be written.
TEST_F(MacroSetup, AMacroTheFileDidNotTakeKeepsTheDialogOpen) {
  Start();
  MemoryMacroSetupDialog& dialog = Open(4);
  dialog.MacroText.SetText("CQ TEST");
  p.files.SetWriteFails(keyer.store.SettingsFilePath, true);
  p.trace.Clear();
  dialog.Hbutton5.Click();
  EXPECT_TRUE(p.macroSetup.Loaded());
  const std::vector<std::string> boxes = EventsStartingWith({"msgbox"});
  ASSERT_EQ(boxes.size(), 1u);
  EXPECT_THAT(boxes[0], HasSubstr("\"Macro not saved\" \"This macro could not be saved in " +
                                  keyer.store.SettingsFilePath));
  EXPECT_EQ(Written(), std::vector<std::string>{"Macro #4=CQ TEST"});  // tried once, then stopped
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Macro #4"), "");

  p.files.SetWriteFails(keyer.store.SettingsFilePath, false);
  p.trace.Clear();
  dialog.Hbutton5.Click();
  EXPECT_FALSE(p.macroSetup.Loaded());
  EXPECT_TRUE(EventsStartingWith({"msgbox"}).empty());
  EXPECT_EQ(Written().size(), 14u);
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Macro #4"), "CQ TEST");
}

// The editor takes 3000 characters, a start reads back 1999: past that the
// operator is told, and the macro is stored all the same.
TEST_F(MacroSetup, AMacroLongerThanAReadGivesBackIsStoredWithAWarning) {
  Start();
  for (const size_t length : {size_t{1999}, size_t{2000}, size_t{3000}}) {
    MemoryMacroSetupDialog& dialog = Open(6);
    dialog.MacroText.SetText(std::string(length, 'E'));
    p.trace.Clear();
    dialog.Hbutton5.Click();
    EXPECT_FALSE(p.macroSetup.Loaded()) << length;
    EXPECT_EQ(StoredSetting("frmVantrel Settings", "Macro #6").size(), std::min(length, size_t{1999}));
    const std::vector<std::string> boxes = EventsStartingWith({"msgbox"});
    if (length <= 1999) {
      EXPECT_TRUE(boxes.empty()) << length;
      continue;
    }
    ASSERT_EQ(boxes.size(), 1u) << length;
    EXPECT_THAT(boxes[0], HasSubstr("\"Macro too long to read back\" \"This macro is " +
                                    std::to_string(length) + " characters long. It is stored, but "
                                    "when Vantrel starts again only its first 1999 characters"));
  }
}

TEST_F(MacroSetup, TheLineMarkCannotBeTypedButALoadedOneIsKept) {
  Start({{"Macro #5", "CQ~DE"}});
  MemoryMacroSetupDialog& dialog = Open(5);
  dialog.MacroText.Type("~ K\r");
  EXPECT_EQ(dialog.MacroText.Text(), "CQ~DE K\r\n");
  dialog.Hbutton5.Click();
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Macro #5"), "CQ~DE K~");
  EXPECT_EQ(m.MacroTexts[5], "CQ~DE K\r\n");
}

TEST_F(MacroSetup, CaptionAtOkBecomesOneBlankOrTheCharacterChrNames) {
  Start();
  const std::pair<const char*, const char*> cases[] = {
      {"", " "},
      {"Chr$(65)", "A"},
      {"x cHR$(9 7)y", "a"},  // any case, blanks in the number ignored, the rest lost
      {"Chr$(66", "Chr$(66"},
      {"Chr$(256)", "Chr$(256)"},
      {"Chr$(-1)", "Chr$(-1)"},
  };
  for (const auto& [typed, kept] : cases) {
    MemoryMacroSetupDialog& dialog = Open(7);
    dialog.CaptionText.SetText(typed);
    p.trace.Clear();
    dialog.Hbutton5.Click();
    EXPECT_EQ(m.MacroCaptions[7], kept) << typed;
    EXPECT_EQ(p.btnf[7].Caption(), kept) << typed;
    EXPECT_THAT(Written(), ::testing::Contains(std::string("Macro Caption #7=") + kept)) << typed;
  }
  Open(7).CaptionText.SetText("Chr$(65)");
  p.macroSetup.dialog().Hbutton5.Click();
  MemoryMacroSetupDialog& again = Open(7);
  EXPECT_EQ(again.CaptionText.Text(), "A");
  again.Hbutton5.Click();
  EXPECT_EQ(m.MacroCaptions[7], "A");
}

TEST_F(MacroSetup, OkWritesTheLooksChosenOnTheWorkingCopy) {
  Start({{"Macro Caption #2", "TU"}});
  MemoryMacroSetupDialog& dialog = Open(2);
  p.CommonDialog1.colours = {255, 65280};
  p.CommonDialog1.fonts = {{"Courier", 10.5F, false, true, 128}, {"Arial", 12.5F, true, false, 4660}};
  dialog.BackColorButton.Click();
  dialog.Hbutton3.Click();
  EXPECT_EQ(dialog.Hbutton1.BackColor(), 255);  // the mouse-over colour does not show
  dialog.Hbutton2.Click();
  EXPECT_EQ(dialog.Hbutton1.FontName(), "Courier");
  EXPECT_EQ(dialog.Hbutton1.ForeColor(), 128);
  dialog.Hbutton4.Click();
  EXPECT_EQ(dialog.Hbutton1.FontName(), "Courier");
  dialog.Hbutton1.MouseEnter();
  EXPECT_EQ(dialog.Hbutton1.FontName(), "Arial");
  EXPECT_EQ(dialog.Hbutton1.BackColor(), 65280);
  EXPECT_EQ(dialog.Hbutton1.FontSize(), 12);  // whole points, ties to even
  dialog.Hbutton1.MouseLeave();
  EXPECT_EQ(dialog.Hbutton1.FontName(), "Courier");
  dialog.BackColorButton.Click();  // cancelled: nothing changes
  EXPECT_EQ(m.MacroBackColors[0], 255);
  EXPECT_EQ(m.MacroBackColors[2], kGrey);  // untouched until OK

  p.trace.Clear();
  dialog.Hbutton5.Click();
  EXPECT_THAT(Written(),
              ElementsAre("Macro #2=", "Macro Caption #2=TU", "Macro BackColor #2=255",
                          "Macro MouseOver BackColor #2=65280", "Macro ForeColor #2=128",
                          "Macro MouseOver ForeColor #2=4660", "Macro Fontname #2=Courier",
                          "Macro MouseOver Fontname #2=Arial", "Macro Fontsize #2=10",
                          "Macro MouseOver Fontsize #2=12", "Macro Fontbold #2=False",
                          "Macro MouseOver Fontbold #2=True", "Macro Fontitalic #2=True",
                          "Macro MouseOver Fontitalic #2=False"));
  EXPECT_EQ(p.btnf[2].BackColor(), 255);
  EXPECT_TRUE(p.btnf[2].FontItalic());
  keyer.mMacros.btnf_MouseEnter(2);
  EXPECT_EQ(p.btnf[2].FontName(), "Arial");
}

TEST_F(MacroSetup, ResetsWorkOnTheCopyAndCancelKeepsTheMacro) {
  Start({{"Macro #6", "QRZ?"},
         {"Macro Caption #6", "&Qrz"},
         {"Macro BackColor #6", "255"},
         {"Macro MouseOver BackColor #6", "128"},
         {"Macro ForeColor #6", "4660"},
         {"Macro Fontname #6", "Arial"},
         {"Macro Fontsize #6", "12"}});
  MemoryMacroSetupDialog& dialog = Open(6);
  dialog.ARButton1.Click();
  EXPECT_EQ(m.MacroBackColors[0], kGrey);
  EXPECT_EQ(m.MacroOverBackColors[0], kGrey);
  EXPECT_EQ(dialog.Hbutton1.BackColor(), kGrey);
  EXPECT_EQ(m.MacroForeColors[0], 4660);
  EXPECT_EQ(m.MacroOverForeColors[0], 65535);
  EXPECT_EQ(m.MacroFontNames[0], "Arial");

  dialog.Hbutton7.Click();
  EXPECT_EQ(dialog.MacroText.Text(), "");
  EXPECT_EQ(dialog.Hbutton1.Caption(), "");
  EXPECT_EQ(m.MacroOverForeColors[0], 0);  // black, not a new macro's yellow
  EXPECT_EQ(m.MacroOverFontNames[0], "MS Sans Serif");
  EXPECT_EQ(dialog.Hbutton1.FontSize(), 8);
  p.trace.Clear();
  dialog.Hbutton6.Click();
  EXPECT_FALSE(p.macroSetup.Loaded());
  EXPECT_TRUE(Written().empty());
  EXPECT_EQ(m.MacroTexts[6], "QRZ?");
  EXPECT_EQ(m.MacroCaptions[6], "&Qrz");
  EXPECT_EQ(m.MacroBackColors[6], 255);
  EXPECT_EQ(m.MacroFontSizes[6], 12);
  EXPECT_EQ(p.btnf[6].Caption(), "&Qrz");
}

TEST_F(MacroSetup, EachOpeningStartsFromItsOwnMacroAndAPressClosesWithoutStoring) {
  Start({{"Macro BackColor #2", "65280"}});
  MemoryMacroSetupDialog& first = Open(1);
  p.CommonDialog1.colours = {255};
  first.BackColorButton.Click();
  first.Hbutton6.Click();
  MemoryMacroSetupDialog& second = Open(2);
  EXPECT_EQ(second.Hbutton1.BackColor(), 65280);
  EXPECT_EQ(m.MacroBackColors[0], 65280);
  EXPECT_EQ(m.MacroBackColors[1], kGrey);

  second.MacroText.SetText("TEST");
  p.trace.Clear();
  keyer.mMacros.btnf_MouseDown(9, 1);
  EXPECT_FALSE(p.macroSetup.Loaded());
  EXPECT_TRUE(Written().empty());
  EXPECT_EQ(m.MacroTexts[2], "");
}

}  // namespace
}  // namespace vantrel::macros
