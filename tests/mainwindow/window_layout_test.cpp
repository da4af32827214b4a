#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/keyer_fixture.h"

namespace vantrel::mainwindow {
namespace {

using ::testing::ElementsAre;
using testing::KeyerFixture;

class WindowLayout : public KeyerFixture {
 protected:
  FrmVantrel& form = keyer.form;
};

TEST_F(WindowLayout, MinimumHeightCountsTheShownRows) {
  Start();
  p.frmVantrel.SetHeight(500);
  form.Form_Resize();
  EXPECT_EQ(p.frmVantrel.Height(), 1830);  // three rows of 270 on 1020
  form.mFkeys_Click();
  form.mSFkeys_Click();
  form.mAFkeys_Click();
  p.frmVantrel.SetHeight(1020);
  form.Form_Resize();
  EXPECT_EQ(p.frmVantrel.Height(), 1020);
  p.frmVantrel.SetHeight(1000);
  form.Form_Resize();
  EXPECT_EQ(p.frmVantrel.Height(), 1020);

  p.frmVantrel.minimized = true;  // a minimised window is left alone
  p.frmVantrel.SetHeight(10);
  form.Form_Resize();
  EXPECT_EQ(p.frmVantrel.Height(), 10);
}

TEST_F(WindowLayout, ToolBarGroupKeepsToTheRightEdge) {
  Start({{"Width", "7125"}});  // the tool bar docks to the window's design width
  form.Form_Resize();
  EXPECT_EQ(p.NameField.Left(), 6050);
  EXPECT_EQ(p.SRXField.Left(), 6070);  // hidden: no width
  // With the SRX field hidden the call field reaches 40 twips into the name field.
  EXPECT_EQ(p.CallsignField.Left() + p.CallsignField.Width() - p.NameField.Left(), 40);
  EXPECT_EQ(p.cmbPrevious.Left(), 3680);
  EXPECT_EQ(p.PTTBox.Width(), 215);  // from the design height of 255
  EXPECT_EQ(p.PTTBox.Left(), 3465);
  EXPECT_EQ(p.KeyBox.Left(), 3250);
  EXPECT_EQ(p.KeyBox.Top(), 40);
  form.Form_Resize();
  EXPECT_EQ(p.PTTBox.Width(), 275);  // settled on the height of the combo box

  p.sBar.SetWidth(3000);  // narrower than the group: it runs off the left
  form.Form_Resize();
  EXPECT_EQ(p.NameField.Left(), 1925);
  EXPECT_LT(p.cmbPrevious.Left(), 0);
}

TEST_F(WindowLayout, ShowingTheSrxFieldWidensItAndMovesTheGroup) {
  Start({{"Width", "7125"}});
  form.mnuShowSRX_Click();
  EXPECT_TRUE(p.mnuShowSRX.Checked());
  EXPECT_EQ(p.SRXField.Width(), 600);
  EXPECT_EQ(p.CallsignField.Left(), 6070 - 600 - 1095 + 20);
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "SRX Field Visible"), "True");
  form.mnuShowSRX_Click();
  EXPECT_EQ(p.SRXField.Width(), 0);
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "SRX Field Visible"), "False");
}

TEST_F(WindowLayout, RowAndToolBarEntriesToggleShowAndWrite) {
  Start();
  p.frmVantrel.SetHeight(2500);
  form.mSFkeys_Click();
  EXPECT_FALSE(p.mSFkeys.Checked());
  EXPECT_FALSE(p.ElasticOne2.Visible());
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "SHIFT F Keys Visible"), "False");
  EXPECT_EQ(p.frmVantrel.Height(), 2500);
  form.mnuShowCallsign_Click();
  EXPECT_FALSE(p.sBar.Visible());
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Callsign Field Visible"), "False");
  form.mnuShowCallsign_Click();
  EXPECT_TRUE(p.sBar.Visible());
}

TEST_F(WindowLayout, OnTopAndSerialZeroChoicesAreWritten) {
  Start();
  form.mnuOnTop_Click();  // on by default: this takes it off
  EXPECT_FALSE(p.frmVantrel.topmost);
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "On Top"), "0");
  form.mnuSend0asT_Click();
  EXPECT_TRUE(p.mnuSend0asT.Checked());
  EXPECT_FALSE(p.mnuSend0as0.Checked());
  EXPECT_FALSE(p.mnuSend0asO.Checked());
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Serial # 0 preference"), "T");
}

TEST_F(WindowLayout, DedicatedPortEntryIsGreyOffItsRoute) {
  Start({{"Port to Use", "Serial"}, {"Dedicated Serial Port", "Comm1"}});
  form.mnuKeying_Click();
  EXPECT_TRUE(p.mnuDedicatedSerialPort.Enabled());
  EXPECT_TRUE(p.mnuDedicatedSerialPort.Checked());
  cw.UseParallel = true;
  form.mnuKeying_Click();
  EXPECT_FALSE(p.mnuDedicatedSerialPort.Enabled());
  EXPECT_TRUE(p.mnuDedicatedSerialPort.Checked());  // keeps whatever tick it had
}

TEST_F(WindowLayout, ColourEntriesStartFromTheirValueAndACancelRewritesIt) {
  Start();
  p.CommonDialog1.colours = {255};
  form.mnuWPMColor_Click();
  EXPECT_EQ(p.sBar.ForeColor(), 255);
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "WPM Text Color"), "255");
  form.mnutxtextcolor_Click();  // cancelled
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "Transmitted Text Color"), "0");
  EXPECT_THAT(EventsStartingWith({"dialog"}), ElementsAre("dialog color 0", "dialog color 0"));

  p.CommonDialog1.colours = {65280};
  form.mnutextbackcolor_Click();
  EXPECT_EQ(keyer.window.NormalBackColor, 65280);
  EXPECT_EQ(StoredSetting("frmVantrel Settings", "TextBox BackColor"), "65280");
}

TEST_F(WindowLayout, FontChoiceWritesItsFiveKeysInOrder) {
  Start();
  form.mnutextfont_Click();  // cancelled: nothing written
  EXPECT_TRUE(EventsStartingWith({"setting"}).empty());
  p.CommonDialog1.fonts = {{"DejaVu Sans", 10.5f, true, false, 128}};
  form.mnutextfont_Click();
  EXPECT_THAT(EventsStartingWith({"setting"}),
              ElementsAre("setting \"frmVantrel Settings\" \"TextBox Font Name\" \"DejaVu Sans\"",
                          "setting \"frmVantrel Settings\" \"TextBox Forecolor\" \"128\"",
                          "setting \"frmVantrel Settings\" \"TextBox Font Size\" \"10.5\"",
                          "setting \"frmVantrel Settings\" \"TextBox Font Bold\" \"True\"",
                          "setting \"frmVantrel Settings\" \"TextBox Font Italic\" \"False\""));
  EXPECT_EQ(cw.TextForeColor, 128);
  EXPECT_EQ(p.CWTextBox.InsertColour(), 128);
  EXPECT_TRUE(p.CWTextBox.FontBold());
}

}  // namespace
}  // namespace vantrel::mainwindow
