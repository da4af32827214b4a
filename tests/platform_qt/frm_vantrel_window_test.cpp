#include <gtest/gtest.h>

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QListWidget>
#include <QPointer>
#include <QMenu>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QPushButton>
#include <set>

#include "keyer_window_fixture.h"
#include "platform/qt/qt_fonts.h"
#include "platform/qt/qt_key_events.h"
#include "vb/vb.h"

namespace vantrel::platform::qt {
namespace {

TEST_F(FrmVantrelWindowTest, FirstStartShowsTheDesignRectangleWithEverythingButSrx) {
  Start();
  // The tool bar's width is settled once the resize rules have run.
  for (int i = 0; i < 10; ++i) QCoreApplication::processEvents();
  const MainWindowControls& c = window.controls();
  EXPECT_EQ(c.frmVantrel.Left(), 500);
  EXPECT_EQ(c.frmVantrel.Top(), 500);
  EXPECT_EQ(c.frmVantrel.Height(), 2500);
  // 3500 twips is narrower than the menu and the tool bar need: the window
  // grows to their width (window_fit_test.cpp) and reports what it has.
  EXPECT_GT(c.frmVantrel.Width(), 3500);
  EXPECT_FLOAT_EQ(c.frmVantrel.Width(),
                  static_cast<float>(window.widget().width() * TwipsPerPixelX(window.widget())));
  EXPECT_TRUE(c.sBar.Visible());
  EXPECT_TRUE(c.ElasticOne1.Visible());
  EXPECT_TRUE(c.ElasticOne2.Visible());
  EXPECT_TRUE(c.ElasticOne3.Visible());
  EXPECT_EQ(c.SRXField.Width(), 0);
  // The resize event has put the right-hand group against the right edge.
  EXPECT_FLOAT_EQ(c.NameField.Left(), c.sBar.Width() - c.NameField.Width() + 20);
  EXPECT_EQ(window.menu(MenuId::mnuVersion).Caption().rfind("Version ", 0), 0u);
}

TEST_F(FrmVantrelWindowTest, TextInTheBoxKeysTheLetterAndMarksItSent) {
  Start();
  window.CWTextBox().SetText("S");
  EXPECT_EQ(KeyEdges(), 6);  // three dots, down and up
  EXPECT_EQ(window.KeyBox().Shown(), Picture::Red);
  // Sent text is recoloured in the real widget, through the adapter.
  EXPECT_EQ(window.CWTextBox().ColourAt(0), keyer->cw.TransmittedColor);
  EXPECT_NE(keyer->cw.TransmittedColor, keyer->cw.TextForeColor);
  EXPECT_GT(clock.NowMs(), 0);
}

TEST_F(FrmVantrelWindowTest, KeysTypedIntoTheWidgetGoToTheEndInCapitals) {
  keyer->store.LocateSettingsFile(kDirectory, "");
  keyer->store.WriteSetting(settings::kMainSection, "Keying", "MOX");  // nothing is sent
  Start();
  QTextEdit& edit = window.CWTextBox().edit();
  QTest::keyClicks(&edit, "cq");
  window.CWTextBox().SetSelStart(1);
  QTest::keyClick(&edit, Qt::Key_Return);
  QTest::keyClicks(&edit, "x=");
  EXPECT_EQ(window.CWTextBox().Text(), "CQX B^T");
  QTest::keyClick(&edit, Qt::Key_Backspace);
  EXPECT_EQ(window.CWTextBox().Text(), "CQX B^");
  // To the macros, not the box: macro 14, empty, adds only its blank.
  QTest::keyClick(&edit, Qt::Key_F2, Qt::AltModifier);
  EXPECT_EQ(window.CWTextBox().Text(), "CQX B^ ");
  EXPECT_TRUE(window.menu(MenuId::mnuTX).Enabled());
}

TEST_F(FrmVantrelWindowTest, OnMoxTypingDuringAHoldResumesWithoutTx) {
  keyer->store.LocateSettingsFile(kDirectory, "");
  keyer->store.WriteSetting(settings::kMainSection, "Keying", "MOX");
  Start();
  QTextEdit& edit = window.CWTextBox().edit();
  QTest::keyClicks(&edit, "e");
  EXPECT_EQ(KeyEdges(), 0);  // waits for TX
  window.menu(MenuId::mnuTX).action().trigger();
  EXPECT_EQ(KeyEdges(), 2);
  EXPECT_TRUE(keyer->cw.WaitingForText());  // held open by Slow Typing
  QTest::keyClicks(&edit, "t");
  EXPECT_EQ(KeyEdges(), 4);
}

TEST_F(FrmVantrelWindowTest, CallFieldCapitalisesAndPageUpComesBackToTheBox) {
  Start();
  QTextEdit& call = window.CallsignField().edit();
  QTest::keyClicks(&call, "w1aw");
  QTest::keyClick(&call, Qt::Key_Return);
  EXPECT_EQ(window.CallsignField().Text(), "W1AW");
  EXPECT_EQ(keyer->form.PreviousCall, "W1AW");
  QTest::keyClick(&call, Qt::Key_PageUp);
  EXPECT_TRUE(window.CWTextBox().edit().hasFocus());
  QTest::keyClick(&window.CWTextBox().edit(), Qt::Key_PageDown);
  EXPECT_TRUE(call.hasFocus());
}

TEST_F(FrmVantrelWindowTest, TabCyclesTheFieldsAndThePlaceholderComesBack) {
  Start();
  QTextEdit& call = window.CallsignField().edit();
  QTextEdit& name = window.NameField().edit();
  QTextEdit& srx = window.SRXField().edit();
  call.setFocus();
  QTest::keyClick(&call, Qt::Key_Tab);
  EXPECT_TRUE(name.hasFocus());  // the number field is hidden
  QTest::keyClick(&name, Qt::Key_Tab);
  EXPECT_TRUE(call.hasFocus());
  window.menu(MenuId::mnuShowSRX).action().trigger();
  QTest::keyClick(&call, Qt::Key_Tab);
  EXPECT_TRUE(srx.hasFocus());

  EXPECT_EQ(window.SRXField().Text(), "###");
  QTest::keyClicks(&srx, "5");
  EXPECT_EQ(window.SRXField().Text(), "5");
  QTest::keyClick(&srx, Qt::Key_Backspace);
  EXPECT_EQ(window.SRXField().Text(), "###");
}

TEST_F(FrmVantrelWindowTest, WithAllRowsHiddenTheWindowGoesDownTo1020AndNoLower) {
  Start();
  for (MenuId row : {MenuId::mFkeys, MenuId::mSFkeys, MenuId::mAFkeys}) {
    window.menu(row).action().trigger();
  }
  platform::Window& frame = window.controls().frmVantrel;
  frame.SetHeight(1020);
  QCoreApplication::processEvents();
  EXPECT_EQ(frame.Height(), 1020);
  frame.SetHeight(600);
  QCoreApplication::processEvents();
  EXPECT_EQ(frame.Height(), 1020);
}

TEST_F(FrmVantrelWindowTest, RightClickPastesAtTheEndAndOnVoxSends) {
  Start();
  QGuiApplication::clipboard()->setText("E");
  QTest::mouseClick(window.CWTextBox().edit().viewport(), Qt::RightButton);
  EXPECT_EQ(KeyEdges(), 2);
}

TEST_F(FrmVantrelWindowTest, CloseDuringATransmissionOnlyStopsIt) {
  Start();
  // Delivered by the event pump inside the send loop's waits.
  QTimer::singleShot(0, &window.widget(), [this] { window.widget().close(); });
  window.CWTextBox().SetText("PARIS PARIS");
  EXPECT_TRUE(window.widget().isVisible());
  EXPECT_LT(KeyEdges(), 2 * 28);  // far short of both words
  const std::string width = vb::CStr(window.controls().frmVantrel.Width());
  window.widget().close();
  EXPECT_FALSE(window.widget().isVisible());
  EXPECT_EQ(Stored("Width"), width);  // as wide as its parts made it
  EXPECT_EQ(Stored("Height"), "2500");
}

TEST_F(FrmVantrelWindowTest, MenuEntriesReachTheirHandlers) {
  Start();
  const MainWindowControls& c = window.controls();
  window.menu(MenuId::mFkeys).action().trigger();
  EXPECT_FALSE(c.mFkeys.Checked());
  EXPECT_FALSE(c.ElasticOne3.Visible());
  EXPECT_EQ(Stored("F Keys Visible"), "False");
  // Opening Keying greys the serial entry while the key is on the parallel port.
  QMenu* keying = window.menu(MenuId::mnuKeying).submenu();
  ASSERT_NE(keying, nullptr);
  keying->popup(QPoint(0, 0));
  keying->hide();
  EXPECT_FALSE(c.mnuDedicatedSerialPort.Enabled());
}

TEST_F(FrmVantrelWindowTest, MenuTreeHasItsEntriesUnderTheirMenusNumberedAsInMemory) {
  // The same table as the in-memory window's test: both count controls alike.
  language.locale = 1053;
  language.libraries["1053.DLL"] = {7, {{9506, "Inst\xe4llningar"}, {9535, "Auto"}}};
  Start();
  EXPECT_EQ(window.menu(MenuId::mnuConfig).Caption(), "Inst\xe4llningar");
  EXPECT_EQ(window.menu(MenuId::mnuVOX).Caption(), "Auto");
  EXPECT_EQ(window.menu(MenuId::mnuNothing10).Caption(), "-");
  EXPECT_EQ(window.menu(MenuId::mAFkeys).Caption(), "Show CTL_F keys");
  QMenu* appearance = window.menu(MenuId::mnuAppearance).submenu();
  ASSERT_NE(appearance, nullptr);
  EXPECT_TRUE(appearance->actions().contains(&window.menu(MenuId::mnuInsKey).action()));
  EXPECT_EQ(appearance->actions().size(), 8);
  // Every entry has an action of its own, and its name leads back to it alone.
  std::set<const QAction*> actions;
  for (const MenuEntry& entry : kMenuTree) {
    actions.insert(&window.menu(entry.id).action());
    EXPECT_EQ(MenuNamed(entry.name), entry.id) << entry.name;
  }
  EXPECT_EQ(actions.size(), kMenuCount);
}

TEST_F(FrmVantrelWindowTest, MacroButtonsFireOnTheLeftButtonOnly) {
  keyer->store.LocateSettingsFile(kDirectory, "");
  keyer->store.WriteSetting(settings::kMainSection, "Keying", "MOX");
  keyer->store.WriteSetting(settings::kMainSection, "Macro #2", "tu");
  Start();
  QPushButton& button = window.btnf()[2].button();
  QTest::mouseClick(&button, Qt::RightButton);
  EXPECT_EQ(window.CWTextBox().Text(), "");
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(window.CWTextBox().Text(), "TU");
}


TEST_F(FrmVantrelWindowTest, TwoCaptionsWithOneAltLetterFireTheLowerIndex) {
  keyer->store.LocateSettingsFile(kDirectory, "");
  for (const auto& [key, value] :
       {std::pair{"Keying", "MOX"}, {"WPM", "20"}, {"Macro #9", "$cwspeedup$"}, {"Macro Caption #9", "Q&t"},
        {"Macro #20", "$cwspeeddn$"}, {"Macro Caption #20", "&Test"}}) {
    keyer->store.WriteSetting(settings::kMainSection, key, value);
  }
  Start();
  QTextEdit& edit = window.CWTextBox().edit();
  // T is also the TX menu's ALT letter: the captions come first.
  QTest::keyClick(&edit, Qt::Key_T, Qt::AltModifier);
  QTest::keyClick(&edit, Qt::Key_T, Qt::AltModifier);
  EXPECT_EQ(keyer->cw.WPM, 22);
  // The caption keeps its underlined letter.
  EXPECT_EQ(window.btnf()[20].button().text(), "&Test");
}

TEST_F(FrmVantrelWindowTest, APunctuationKeyTypedDuringSendingShowsAsUnsent) {
  keyer->store.LocateSettingsFile(kDirectory, "");
  keyer->store.WriteSetting(settings::kMainSection, "Slow Typing", "OFF");  // one transmission a key
  Start();
  QTextEdit& edit = window.CWTextBox().edit();
  for (const char key : {'?', '/', '.', ',', '-'}) {
    Colour typed = -1;
    // Typed while the last letter in the box is being keyed, through the send loop's pumping.
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
      if (typed != -1 || keyer->cw.SendPosition != 2) return;
      QTest::keyClick(&edit, key);
      typed = window.CWTextBox().ColourAt(2);
    });
    watch.start(0);
    window.CWTextBox().SetText("TE");
    EXPECT_EQ(typed, keyer->cw.TextForeColor) << key;
  }
}

TEST_F(FrmVantrelWindowTest, ButtonsShowTheirWholePlainLookFromTheStart) {
  keyer->store.LocateSettingsFile(kDirectory, "");
  keyer->store.WriteSetting(settings::kMainSection, "Macro Fontname #3", "Courier");
  keyer->store.WriteSetting(settings::kMainSection, "Macro Fontsize #3", "14");
  keyer->store.WriteSetting(settings::kMainSection, "Macro Fontitalic #3", "True");
  Start();
  const QFont font = window.btnf()[3].button().font();
  EXPECT_EQ(font.family(), DesktopFamily("Courier"));
  EXPECT_EQ(font.pointSizeF(), 14);
  EXPECT_TRUE(font.italic());
}


TEST_F(FrmVantrelWindowTest, InsKeyDialogOpensOnceAtItsDesignSizeAndAKeyOrAClickPicks) {
  Start();
  const auto openDialog = [] {
    QList<QWidget*> open;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (widget->windowTitle() == "Assign INS Key" && widget->isVisible()) open.push_back(widget);
    }
    EXPECT_EQ(open.size(), 1);
    return QPointer<QWidget>(open.value(0));
  };
  window.menu(MenuId::mnuInsKey).action().trigger();
  window.menu(MenuId::mnuInsKey).action().trigger();
  QPointer<QWidget> dialog = openDialog();
  ASSERT_TRUE(dialog);
  EXPECT_NEAR(dialog->width() * TwipsPerPixelX(*dialog), 2535, TwipsPerPixelX(*dialog));
  EXPECT_NEAR(dialog->height() * TwipsPerPixelY(*dialog), 1800, TwipsPerPixelY(*dialog));
  auto* list = dialog->findChild<QListWidget*>();
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->count(), 36);
  EXPECT_EQ(list->currentRow(), 0);  // F1, as the default says
  EXPECT_EQ(Stored("Insert Key"), "");
  QTest::keyClick(list, Qt::Key_Down);  // from F1 to F2
  EXPECT_EQ(keyer->window.InsertKeyCode, 113);
  EXPECT_EQ(Stored("Insert Key"), "113");
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(dialog);

  window.menu(MenuId::mnuInsKey).action().trigger();
  dialog = openDialog();
  ASSERT_TRUE(dialog);
  list = dialog->findChild<QListWidget*>();
  EXPECT_EQ(list->currentRow(), 1);
  QListWidgetItem* altF3 = list->item(14);
  list->scrollToItem(altF3);
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(altF3).center());
  EXPECT_EQ(keyer->window.InsertKeyCode, 126);
  EXPECT_EQ(Stored("Insert Key"), "126");
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_FALSE(dialog);
}

}  // namespace
}  // namespace vantrel::platform::qt
