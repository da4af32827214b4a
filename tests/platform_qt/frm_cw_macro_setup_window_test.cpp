#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <string>

#include "keyer_window_fixture.h"

namespace vantrel::platform::qt {
namespace {

class MacroEditorWindowTest : public FrmVantrelWindowTest {
 protected:
  void Start(const std::vector<std::pair<std::string, std::string>>& settings) {
    keyer->store.LocateSettingsFile(kDirectory, "");
    for (const auto& [key, value] : settings) {
      keyer->store.WriteSetting(settings::kMainSection, key, value);
    }
    FrmVantrelWindowTest::Start();
  }

  // A right click on the macro's button, as the operator opens the editor.
  FrmCWMacroSetupWindow* Open(int16_t index) {
    QTest::mouseClick(&window.btnf()[index].button(), Qt::RightButton);
    return macroSetup.dialog();
  }
  template <typename Widget>
  Widget& Child(const char* name) {
    auto* widget = macroSetup.dialog()->findChild<Widget*>(name);
    if (!widget) throw std::logic_error(std::string("no ") + name);
    return *widget;
  }
  void Click(const char* button) { QTest::mouseClick(&Child<QPushButton>(button), Qt::LeftButton); }

  // Answers the message box that the next step opens, keeping what it said.
  void AnswerTheNextBox() {
    auto* answer = new QTimer(&window.widget());
    QObject::connect(answer, &QTimer::timeout, [this, answer] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (!box) return;
      said = box->windowTitle() + ": " + box->text();
      box->accept();
      answer->deleteLater();
    });
    answer->start(10);
  }

  QString said;
};

TEST_F(MacroEditorWindowTest, RightClickOpensTheMacroAndTheCaptionFollowsOnThePreview) {
  Start({{"Macro #3", "CQ"}, {"Macro Caption #3", "&Cq"}});
  FrmCWMacroSetupWindow* dialog = Open(3);
  ASSERT_NE(dialog, nullptr);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_EQ(dialog->windowTitle(), "Macro Setup for F3");
  EXPECT_EQ(Child<QPushButton>("Hbutton1").text(), "&Cq");
  QTest::keyClicks(&Child<QLineEdit>("CaptionText"), "X");
  EXPECT_EQ(Child<QPushButton>("Hbutton1").text(), "&CqX");

  auto& text = Child<QPlainTextEdit>("MacroText");
  text.moveCursor(QTextCursor::End);
  QTest::keyClicks(&text, " de~k");
  EXPECT_EQ(text.toPlainText(), "CQ dek");  // "~" cannot be typed
  EXPECT_EQ(window.btnf()[3].button().text(), "&Cq");  // not before OK
}

TEST_F(MacroEditorWindowTest, OkRefuses3001CharactersWithTheCountAndTakes3000OnTwoLines) {
  Start({});
  ASSERT_NE(Open(3), nullptr);
  auto& text = Child<QPlainTextEdit>("MacroText");
  text.setPlainText(QString(3001, 'A'));
  AnswerTheNextBox();
  Click("Hbutton5");
  EXPECT_TRUE(said.startsWith("Too verbose: Sorry, this Macro is awesome.  However it is  3001 "
                              "characters long."))
      << said.toStdString();
  ASSERT_NE(macroSetup.dialog(), nullptr);
  EXPECT_EQ(Stored("Macro #3"), "");

  // Stored, with word that a start reads back only its first 1999 characters.
  text.setPlainText(QString(1500, 'A') + "\n" + QString(1499, 'B'));
  AnswerTheNextBox();
  Click("Hbutton5");
  EXPECT_TRUE(said.startsWith("Macro too long to read back: This macro is 3000 characters long."))
      << said.toStdString();
  EXPECT_EQ(macroSetup.dialog(), nullptr);
  EXPECT_EQ(Stored("Macro #3"), std::string(1500, 'A') + "~" + std::string(1499, 'B'));
  EXPECT_EQ(keyer->macros.MacroTexts[3], std::string(1500, 'A') + "\r\n" + std::string(1499, 'B'));
}

TEST_F(MacroEditorWindowTest, AnEmptyCaptionBecomesABlankAndChr65AnA) {
  Start({{"Macro Caption #5", "&Five"}});
  Open(5);
  Child<QLineEdit>("CaptionText").clear();
  Click("Hbutton5");
  EXPECT_EQ(window.btnf()[5].button().text(), " ");
  EXPECT_EQ(keyer->macros.MacroCaptions[5], " ");

  Open(5);
  auto& caption = Child<QLineEdit>("CaptionText");
  caption.clear();
  QTest::keyClicks(&caption, "Chr$(65)");
  Click("Hbutton5");
  EXPECT_EQ(window.btnf()[5].button().text(), "A");
  EXPECT_EQ(Stored("Macro Caption #5"), "A");
}

TEST_F(MacroEditorWindowTest, CancelAfterResettingEverythingChangesNothing) {
  Start({{"Macro #4", "TEST"}, {"Macro Caption #4", "&Test"}, {"Macro BackColor #4", "255"}});
  Open(4);
  Click("Hbutton7");
  EXPECT_EQ(Child<QPlainTextEdit>("MacroText").toPlainText(), "");
  EXPECT_EQ(Child<QPushButton>("Hbutton1").text(), "");
  Click("Hbutton6");
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(macroSetup.dialog(), nullptr);
  EXPECT_EQ(keyer->macros.MacroTexts[4], "TEST");
  EXPECT_EQ(keyer->macros.MacroBackColors[4], 255);
  EXPECT_EQ(window.btnf()[4].button().text(), "&Test");
  EXPECT_EQ(Stored("Macro #4"), "TEST");
  EXPECT_EQ(Stored("Macro BackColor #4"), "255");
}

}  // namespace
}  // namespace vantrel::platform::qt
