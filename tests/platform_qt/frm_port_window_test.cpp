#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <QTest>
#include <memory>

#include "keyer_window_fixture.h"
#include "platform/qt/frm_port_window.h"

namespace vantrel::platform::qt {
namespace {

// "Keyer setup" as the menu opens it, over the keyer on virtual time.
class FrmPortWindowTest : public FrmVantrelWindowTest {
 protected:
  FrmPortWindowTest() { keyer->store.LocateSettingsFile(kDirectory, ""); }
  ~FrmPortWindowTest() override {
    if (QWidget* result = Result()) delete result;
  }

  void Open(const std::vector<std::pair<std::string, std::string>>& settings = {}) {
    for (const auto& [key, value] : settings) keyer->store.WriteSetting(settings::kMainSection, key, value);
    keyer->form.Form_Load();
    window.widget().show();
    window.menu(MenuId::mnuPort).action().trigger();
    dialog = window.widget().findChild<FrmPortWindow*>();
    ASSERT_NE(dialog, nullptr);
    ASSERT_TRUE(dialog->isVisible());
    // Focus events reach the active window only.
    dialog->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(dialog));
  }
  template <typename T>
  T& Find(const char* name) {
    T* widget = dialog->findChild<T*>(name);
    if (!widget) throw std::runtime_error(name);
    return *widget;
  }
  QCheckBox& Check(const char* name) { return Find<QCheckBox>(name); }
  QLineEdit& Field(const char* name) { return Find<QLineEdit>(name); }
  void Click(QAbstractButton& button) { QTest::mouseClick(&button, Qt::LeftButton); }
  QWidget* Result() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->windowTitle() == "CW speed calibration results ..." && widget->isVisible()) return widget;
    }
    return nullptr;
  }

  FrmPortWindow* dialog = nullptr;
};

TEST_F(FrmPortWindowTest, ThePortChoiceGreysTheOtherPortsControlsAndStaysTicked) {
  Open();  // the parallel port by default, at 888
  EXPECT_EQ(Field("Text2").text(), "&H378");
  EXPECT_TRUE(Field("Text2").isEnabled());
  EXPECT_TRUE(Find<QLabel>("Label2").isEnabled());
  EXPECT_FALSE(Find<QComboBox>("cmbPort").isEnabled());
  EXPECT_FALSE(Find<QLabel>("Label10").isEnabled());

  Click(Check("CheckSharedSerial"));
  EXPECT_FALSE(Check("CheckParallel").isChecked());
  EXPECT_FALSE(Field("Text2").isEnabled());
  EXPECT_FALSE(Find<QLabel>("Label2").isEnabled());
  EXPECT_TRUE(Find<QComboBox>("cmbPort").isEnabled());

  Click(Check("CheckSharedSerial"));  // the ticked one, again
  EXPECT_TRUE(Check("CheckSharedSerial").isChecked());
  EXPECT_FALSE(Check("CheckParallel").isChecked());
  EXPECT_FALSE(Check("CheckSerial").isChecked());
  EXPECT_TRUE(Find<QComboBox>("cmbPort").isEnabled());
}

TEST_F(FrmPortWindowTest, CheckSerialAfterCheckParallelShowsTheStoredPortName) {
  serialPorts.ports = {{"Comm1", "/dev/ttyUSB0"}, {"Comm2", "/dev/ttyUSB1"}, {"", "/dev/ttyACM0"}};
  Open({{"Dedicated Serial Port", "Comm2"}});
  QComboBox& combo = Find<QComboBox>("cmbPort");
  ASSERT_EQ(combo.count(), 2);
  EXPECT_EQ(combo.itemData(1, Qt::ToolTipRole).toString(), "/dev/ttyUSB1");
  combo.setEditText("Comm1");
  EXPECT_EQ(Find<QLabel>("lblDevice").text(), "/dev/ttyUSB0");
  Click(Check("CheckSerial"));
  EXPECT_EQ(combo.currentText(), "Comm2");
  EXPECT_TRUE(combo.isEnabled());

  keyer->cw.DedicatedSerialPort.clear();
  Click(Check("CheckParallel"));
  Click(Check("CheckSerial"));
  EXPECT_EQ(combo.currentText(), "");
  EXPECT_NE(Find<QLabel>("lblDevice").text().indexOf("/dev/ttyACM0"), -1);
}

TEST_F(FrmPortWindowTest, ThePitchSoundsAtOnceAndCancelTakesItBack) {
  Open({{"Frequency", "800"}});
  QSlider& pitch = Find<QSlider>("Pitch");
  EXPECT_EQ(pitch.value(), 800);
  pitch.setFocus();
  QTest::keyClick(&pitch, Qt::Key_PageUp);  // one tick, 150 Hz
  EXPECT_EQ(keyer->cw.SidetoneFrequency, 950);
  Click(Find<QPushButton>("btnCancel"));
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(keyer->cw.SidetoneFrequency, 800);
  EXPECT_EQ(Stored("Frequency"), "800");
}

TEST_F(FrmPortWindowTest, ApplyStoresTheProportionsBeforeTheDotIsComputed) {
  Open();
  QLineEdit& word = Field("Text6");
  word.setFocus();
  QTest::keyClicks(&word, "9x");  // the 7 is selected and replaced; the x is swallowed
  EXPECT_EQ(word.text(), "9");
  Find<QSlider>("DotLengthSlider").setValue(30);
  Click(Find<QPushButton>("btnOK"));
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(keyer->cw.WordSpace, 9);
  EXPECT_EQ(keyer->cw.WPM, 30);
  // 60000 / ((4 x 3 + 19 + 4 x 3 + 9) x 30 - 9) = 38.68
  EXPECT_EQ(keyer->cw.DotTime, 39);
  EXPECT_EQ(Stored("Word Space"), "9");  // written as " 9", read without its blank
  EXPECT_EQ(Stored("WPM"), "30");
  EXPECT_EQ(window.controls().sBar.Caption(), " Keying speed = 30 WPM");
}

TEST_F(FrmPortWindowTest, ApplyRefusesAnAddressThatWouldNotLoadAgain) {
  Open();
  Field("Text2").setText("&HXYZ");
  // Answers the message box as soon as it shows.
  QTimer::singleShot(0, [] {
    if (QWidget* box = QApplication::activeModalWidget()) box->close();
  });
  Click(Find<QPushButton>("btnOK"));
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(Stored("Parallel Port Address"), "");
}

TEST_F(FrmPortWindowTest, FocusSelectsOnlyTheFirstCharacterOfAProportion) {
  Open({{"Dash Length", "3.5"}, {"Letter Space", "25"}, {"Word Space", "7"}});
  for (const char* name : {"Text4", "Text5", "Text6"}) {
    Find<QPushButton>("btnOK").setFocus();
    QLineEdit& field = Field(name);
    field.setFocus(Qt::TabFocusReason);  // where Qt alone would select it all
    EXPECT_EQ(field.selectedText(), field.text().left(1)) << name;
  }
  EXPECT_EQ(Field("Text4").text(), "3.5");
}

TEST_F(FrmPortWindowTest, TheTwentyWpmTestShowsItsResultOverTheDialog) {
  Open();
  Click(Find<QPushButton>("ARButton1"));
  QWidget* result = Result();
  ASSERT_NE(result, nullptr);
  EXPECT_EQ(result->parentWidget(), dialog);
  EXPECT_EQ(result->findChild<QLabel*>("Label1")->text(), "Elapsed time 60.000000000000 seconds");
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_TRUE(Find<QPushButton>("ARButton1").isEnabled());
  EXPECT_EQ(keyer->cw.WPM, 20);
}

}  // namespace
}  // namespace vantrel::platform::qt
