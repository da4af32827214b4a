#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <memory>
#include <utility>

#include "keyer_window_fixture.h"
#include "platform/linux/ini_profile_file.h"
#include "platform/memory/trace.h"
#include "platform/qt/frm_port_window.h"
#include "platform/qt/frm_winkey_config_window.h"
#include "support/scripted_chip.h"
#include "support/temp_folder.h"

namespace vantrel::platform::qt {
namespace {

using Settings = std::vector<std::pair<std::string, std::string>>;

const std::string kWinKey("\x0A");
const std::string kWinKey2("\x17");

// The settings file on disk, made before the keyer that uses it.
struct DiskSettings {
  testing::TempFolder folder;
  linuxos::IniProfileFile ini;
};

// A chip's dialog as Config, Keyer setup opens it, over a keyer on virtual
// time whose chip sits on port 3 and records every byte written to it.
class FrmWinKeyConfigWindowTest : protected DiskSettings, public FrmVantrelWindowTest {
 protected:
  FrmWinKeyConfigWindowTest() : FrmVantrelWindowTest(ini, folder.path()) { cwControl.device = &chip; }

  void Open(const char* keyerToUse, const std::string& reply, const Settings& settings = {}) {
    chip.reply = reply;
    keyer->store.LocateSettingsFile(folder.path(), "");
    keyer->store.WriteSetting(settings::kMainSection, "Keyer to Use", keyerToUse);
    keyer->store.WriteSetting(settings::kKeyerSection, "WinKey Port", "3");
    for (const auto& [key, value] : settings) keyer->store.WriteSetting(app::SectionOf(key), key, value);
    Start();
    Reopen();
  }
  void Reopen() {
    window.menu(MenuId::mnuPort).action().trigger();
    dialog = Dialog();
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(dialog->isVisible());
    chip.written.clear();
  }
  // The open dialog of that class. The windows have no meta-object of
  // their own, so Qt's casts would take any dialog for them.
  template <typename T = FrmWinKeyConfigWindow>
  T* Dialog() {
    for (auto* each : window.widget().findChildren<QDialog*>()) {
      if (auto* found = dynamic_cast<T*>(each); found && found->isVisible()) return found;
    }
    return nullptr;
  }
  template <typename T>
  T& Find(const char* name) {
    T* widget = dialog->findChild<T*>(name);
    if (!widget) throw std::runtime_error(name);
    return *widget;
  }
  QCheckBox& Check(const char* name) { return Find<QCheckBox>(name); }
  QString Label(const char* name) { return Find<QLabel>(name).text(); }
  void Click(const char* name) { QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton); }
  // Apply, answering a message box if one shows: its title and text, or empty.
  std::pair<QString, QString> Apply() {
    // The timer may outlive this call when no box shows.
    auto shown = std::make_shared<std::pair<QString, QString>>();
    QTimer::singleShot(0, [shown] {
      if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
        EXPECT_EQ(box->icon(), QMessageBox::Information);
        *shown = {box->windowTitle(), box->text()};
        box->close();
      }
    });
    Click("ARButton1");
    return *shown;
  }
  std::string File() { return folder.Read("Vantrel.INI"); }
  std::string Stored(const std::string& key) {
    return ini.GetPrivateProfileString(settings::kKeyerSection, key, "", 100, keyer->store.SettingsFilePath);
  }
  // The settings frame as it went to the chip: the 0F, 15 bytes, FF. Only
  // host open and the calibration come before it.
  std::string Frame() {
    const auto at = chip.written.find('\x0F');
    return at == std::string::npos ? "" : memory::Trace::Hex(chip.written.substr(at, 16));
  }

  testing::ScriptedChip chip{""};
  FrmWinKeyConfigWindow* dialog = nullptr;
};

TEST_F(FrmWinKeyConfigWindowTest, KeyerSetupOpensTheDialogOfTheKeyerInUse) {
  Open("WinKey2", kWinKey2);
  EXPECT_EQ(dialog->windowTitle(), "WinKey2 config ...");
  EXPECT_FALSE(dialog->isModal());
  EXPECT_EQ(dialog->parentWidget(), &window.widget());
  EXPECT_TRUE(dialog->windowFlags() & Qt::WindowStaysOnTopHint);
  const QRect screen = dialog->screen()->availableGeometry();
  EXPECT_NEAR(dialog->x() - screen.x(), (screen.width() - dialog->width()) / 2, 1);
  EXPECT_EQ(dialog->findChild<QCheckBox*>("ckWinKeyPin3"), nullptr);
  EXPECT_EQ(Find<QComboBox>("cmbTone").itemText(0), "400");
  dialog->close();

  window.menu(MenuId::mnuWinKey2).action().trigger();  // unticked: no keyer at all
  Reopen();
  EXPECT_EQ(dialog->windowTitle(), "WinKey config ...");
  EXPECT_EQ(Find<QComboBox>("cmbTone").itemText(0), "375");
  dialog->close();

  window.menu(MenuId::mnuSoftwareKeyer).action().trigger();
  window.menu(MenuId::mnuPort).action().trigger();
  EXPECT_EQ(Dialog(), nullptr);
  EXPECT_NE(Dialog<FrmPortWindow>(), nullptr);
}

TEST_F(FrmWinKeyConfigWindowTest, ThePortListNamesTheDeviceBehindEachPort) {
  serialPorts.ports = {{"Comm1", "/dev/ttyUSB0"}, {"Comm3", "/dev/serial/by-id/usb-K1EL_WinKeyer"},
                       {"", "/dev/ttyACM0"}};
  Open("WinKey", kWinKey);
  const QComboBox& ports = Find<QComboBox>("cmbPort");
  ASSERT_EQ(ports.count(), 17);
  EXPECT_EQ(ports.currentText(), "Comm3");
  EXPECT_EQ(ports.itemData(1, Qt::ToolTipRole).toString(), "/dev/ttyUSB0");
  EXPECT_EQ(ports.itemData(3, Qt::ToolTipRole).toString(), "/dev/serial/by-id/usb-K1EL_WinKeyer");
  // No device stands behind Comm0, which is none, nor behind Comm2.
  EXPECT_FALSE(ports.itemData(0, Qt::ToolTipRole).isValid());
  EXPECT_FALSE(ports.itemData(2, Qt::ToolTipRole).isValid());
}

TEST_F(FrmWinKeyConfigWindowTest, TheValueLabelsFollowTheSlidersAndTheToneShowsAsStored) {
  Open("WinKey", kWinKey,
       {{"WinKey DitDah Ratio", "33"}, {"WinKey DitDah Weight", "90"}, {"WinKey PTT Lead Delay", "25"},
        {"WinKey Tone", "1000"}, {"WinKey Port", "0"}, {"WinKey Paddle Operation", "2"}});
  EXPECT_EQ(Label("Label21"), "1:1.98");
  EXPECT_EQ(Label("Label22"), "+80%");
  EXPECT_EQ(Label("Label16"), "250 ms.");
  EXPECT_EQ(Label("Label18"), "30 WPM");
  EXPECT_EQ(Label("Label25"), "50%");
  EXPECT_EQ(Find<QComboBox>("cmbTone").currentText(), "1000");
  EXPECT_EQ(Find<QComboBox>("cmbPort").currentText(), "Comm0");
  EXPECT_EQ(Find<QComboBox>("cmbPaddle").currentText(), "Dits with both paddles pressed");

  Find<QSlider>("Slider6").setValue(66);
  Find<QSlider>("Slider7").setValue(10);
  Find<QSlider>("Slider7").setValue(50);
  EXPECT_EQ(Label("Label21"), "1:3.96");
  EXPECT_EQ(Label("Label22"), "0%");
  Find<QSlider>("Slider7").setValue(10);
  EXPECT_EQ(Label("Label22"), "-80%");
}

TEST_F(FrmWinKeyConfigWindowTest, TheSpeedPotMustSpanOneTo31WordsPerMinute) {
  Open("WinKey", kWinKey);
  const std::string before = File();
  struct Case {
    int max, min;
    const char* message;
  };
  const Case refused[] = {
      {40, 8,
       "The Speed Pot Max and Min values are incorrect.  The current values show Max of 40 and Min of 8.  "
       "The difference between Max and Min settings must be 31 or less."},
      {99, 5,
       "The Speed Pot Max and Min values are incorrect.  The current values show Max of 99 and Min of 5.  "
       "The difference between Max and Min settings must be 31 or less."},
      {30, 30, "The Speed Pot Max must be greater than the Min value."},
      {5, 99, "The Speed Pot Max must be greater than the Min value."},
  };
  for (const Case& each : refused) {
    Find<QSlider>("Slider1").setValue(each.max);
    Find<QSlider>("Slider5").setValue(each.min);
    const auto [title, text] = Apply();
    EXPECT_EQ(title, "Invalise Speed Pot settings");
    EXPECT_EQ(text, each.message);
    EXPECT_TRUE(dialog->isVisible());
  }
  EXPECT_EQ(File(), before);

  Find<QSlider>("Slider1").setValue(39);
  Find<QSlider>("Slider5").setValue(8);
  EXPECT_EQ(Apply().second, "");
  EXPECT_EQ(Dialog(), nullptr);
  EXPECT_EQ(Stored("WinKey Speed Max"), "39");
  EXPECT_EQ(Stored("WinKey Speed Min"), "8");
  // Byte 7 is the pot's lowest speed, byte 8 its span.
  EXPECT_EQ(Frame().substr(7 * 3, 5), "08 1F");
}

TEST_F(FrmWinKeyConfigWindowTest, EqualPotLimitsAreRefusedOnTheWinKey2Too) {
  Open("WinKey2", kWinKey2, {{"WinKey Speed Max", "30"}, {"WinKey Speed Min", "30"}});
  EXPECT_EQ(Apply(), std::make_pair(QString("Invalise Speed Pot settings"),
                                    QString("The Speed Pot Max must be greater than the Min value.")));
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(chip.written, "");
}

TEST_F(FrmWinKeyConfigWindowTest, ApplyStoresEverythingAndUploadsItThroughANewDiscovery) {
  Open("WinKey", kWinKey, {{"WinKey Tone", "1000"}});
  Find<QSlider>("Slider11").setValue(28);
  Find<QSlider>("Slider6").setValue(60);
  Find<QComboBox>("cmbKeyMode").setCurrentIndex(2);
  Click("ckWinKeyContestWordSpace");
  Apply();
  EXPECT_EQ(Dialog(), nullptr);
  // Host open first; a WinKey is calibrated before its settings.
  EXPECT_EQ(memory::Trace::Hex(chip.written.substr(0, 5)), "00 02 00 00 FF");
  // Ultimatic with contest spacing, 28 WPM, code 5 for a tone not in the table, ratio 60.
  EXPECT_EQ(Frame(), "0F 27 1C 05 32 64 FA 0F 0F 00 00 14 32 3C 05 FF");
  EXPECT_EQ(Stored("WinKey Tone"), "1000");
  EXPECT_EQ(Stored("WinKey Speed"), "28");
  EXPECT_EQ(Stored("WinKey Key Mode"), "2");
  EXPECT_EQ(Stored("WinKey Contest WordSpace"), "True");
  EXPECT_EQ(keyer->winKeySettings.WinKeyDitDahRatio, 60);
  EXPECT_EQ(window.controls().CWTextBox.Text(), "");

  Reopen();
  Find<QComboBox>("cmbPort").setCurrentIndex(0);
  Apply();
  EXPECT_EQ(Stored("WinKey Port"), "0");
  EXPECT_EQ(window.controls().CWTextBox.Text(), "No Comm port selected");
  EXPECT_EQ(chip.written, "");
}

TEST_F(FrmWinKeyConfigWindowTest, CancelLeavesTheFileAndTheChipAlone) {
  Open("WinKey", kWinKey);
  const std::string before = File();
  Find<QSlider>("Slider11").setValue(40);
  Find<QComboBox>("cmbTone").setEditText("469");
  Click("ckRadio1Pin3");
  Click("btnCancel");
  EXPECT_EQ(Dialog(), nullptr);
  EXPECT_EQ(File(), before);
  EXPECT_EQ(chip.written, "");
  Reopen();
  EXPECT_EQ(Find<QSlider>("Slider11").value(), 15);
  EXPECT_EQ(Find<QComboBox>("cmbTone").currentText(), "752");
  EXPECT_FALSE(Check("ckRadio1Pin3").isChecked());
}

TEST_F(FrmWinKeyConfigWindowTest, TheRadioBoxesExcludeEachOtherAndHoldThePinBoxes) {
  Open("WinKey", kWinKey);
  const char* pinBoxes[] = {"ckWinKeyPin3", "ckWinKeyPin5", "ckWinKeyPTT", "ckWinKeySideTone"};
  Click("ckRadio1Pin3");
  for (const char* name : pinBoxes) EXPECT_FALSE(Check(name).isEnabled()) << name;
  Click("ckRadio1Pin5");
  EXPECT_FALSE(Check("ckRadio1Pin3").isChecked());
  for (const char* name : pinBoxes) EXPECT_FALSE(Check(name).isEnabled()) << name;
  Click("ckRadio1Pin5");
  for (const char* name : pinBoxes) EXPECT_TRUE(Check(name).isEnabled()) << name;
  dialog->close();

  // With the key on pin 5 the radio box still gives all four back.
  keyer->store.WriteSetting(settings::kKeyerSection, "WinKey Pin 3", "False");
  keyer->winKeySettings.WinKeyPin3 = false;
  Reopen();
  EXPECT_TRUE(Check("ckWinKeyPin5").isChecked());
  EXPECT_FALSE(Check("ckWinKeyPTT").isEnabled());
  Click("ckRadio1Pin3");
  Click("ckRadio1Pin3");
  for (const char* name : pinBoxes) EXPECT_TRUE(Check(name).isEnabled()) << name;
  EXPECT_TRUE(Check("ckWinKeyPin5").isChecked());
}

TEST_F(FrmWinKeyConfigWindowTest, OnTheWinKeyPinFiveGreysPttAndSidetoneWhichExcludeEachOther) {
  Open("WinKey", kWinKey);  // PTT on, sidetone off by default
  Click("ckWinKeySideTone");
  EXPECT_FALSE(Check("ckWinKeyPTT").isChecked());
  Click("ckWinKeyPTT");
  EXPECT_FALSE(Check("ckWinKeySideTone").isChecked());
  Click("ckWinKeyPin5");
  EXPECT_FALSE(Check("ckWinKeyPin3").isChecked());
  EXPECT_FALSE(Check("ckWinKeyPTT").isEnabled());
  EXPECT_TRUE(Check("ckWinKeyPTT").isChecked());  // greyed, still ticked
  Apply();
  EXPECT_EQ(Stored("WinKey PTT"), "True");
  EXPECT_EQ(Stored("WinKey Pin 3"), "False");
  EXPECT_EQ(Frame().substr(14 * 3, 2), "08");  // the pin byte ignores PTT on pin 5
}

TEST_F(FrmWinKeyConfigWindowTest, OnTheWinKey2PttAndSidetoneStandTogether) {
  Open("WinKey2", kWinKey2, {{"WinKey SideTone", "True"}, {"Paddle Only SideTone", "True"}});
  EXPECT_TRUE(Check("ckWinKeyPTT").isChecked());
  EXPECT_TRUE(Check("ckWinKeySideTone").isChecked());
  EXPECT_TRUE(Check("ckPaddleOnlySideTone").isEnabled());
  Click("ckWinKeySideTone");
  EXPECT_FALSE(Check("ckPaddleOnlySideTone").isEnabled());
  EXPECT_TRUE(Check("ckPaddleOnlySideTone").isChecked());
  Click("ckWinKeySideTone");
  EXPECT_TRUE(Check("ckWinKeyPTT").isChecked());
  Click("ckWinKeySideTone");
  Apply();
  EXPECT_EQ(Stored("Paddle Only SideTone"), "True");
  EXPECT_EQ(Stored("WinKey Sidetone"), "False");
  // The stored 752 is no WinKey2 tone: code 4, with the paddle-only bit.
  EXPECT_EQ(Frame().substr(3 * 3, 2), "84");
}

}  // namespace
}  // namespace vantrel::platform::qt
