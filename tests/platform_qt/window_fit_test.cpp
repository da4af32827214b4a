// The main window and the macro editor as they come up on the screen the
// tests run on: built once for 96 and once for 192 dpi (VANTREL_TEST_DPI).
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QPushButton>
#include <QScreen>
#include <QTest>

#include "keyer_window_fixture.h"
#include "layout_checks.h"
#include "platform/qt/frm_winkey_config_window.h"

#ifndef VANTREL_TEST_DPI
#define VANTREL_TEST_DPI 96
#endif

namespace vantrel::platform::qt {
namespace {

// Read by Qt when the application starts, which is after this.
const bool kScreenDpi = [] {
  qputenv("QT_ENABLE_HIGHDPI_SCALING", "0");
  qputenv("QT_FONT_DPI", QByteArray::number(VANTREL_TEST_DPI));
  return true;
}();

// The resize rules overlap the tool bar's fields by 20 twips, 40 with the SRX
// field hidden, run the name field 20 twips past the right edge and set the
// lamps 40 twips low.
constexpr float kToolBarOverlap = 40;

class WindowFitTest : public FrmVantrelWindowTest {
 protected:
  void StartSettled() {
    Start();
    // The lamps take their size from the second resize.
    for (int i = 0; i < 10; ++i) QCoreApplication::processEvents();
  }

  QWidget& Bar() { return *window.KeyBox().widget().parentWidget(); }
  QLabel& SpeedText() {
    for (QLabel* label : Bar().findChildren<QLabel*>(Qt::FindDirectChildrenOnly)) {
      if (label->text().contains("Keying speed")) return *label;
    }
    throw std::runtime_error("no speed text");
  }
  // `inner` in the coordinates of the window's client area.
  QRect InWindow(const QWidget& inner) {
    return QRect(inner.mapTo(&window.widget(), QPoint(0, 0)), inner.size());
  }
};

TEST_F(WindowFitTest, RunsAtTheDpiItWasStartedFor) {
  ASSERT_TRUE(kScreenDpi);
  const double dpi = window.widget().screen()->logicalDotsPerInchX();
  EXPECT_EQ(dpi, VANTREL_TEST_DPI);
  EXPECT_DOUBLE_EQ(TwipsPerPixelX(window.widget()), 1440 / dpi);
}

TEST_F(WindowFitTest, FirstStartShowsTheBoxAllRowsTheSpeedAndBothLampsUnclipped) {
  StartSettled();
  const QRect client = window.widget().rect();
  // The text box and the three rows of twelve buttons.
  const QRect box = InWindow(window.CWTextBox().edit());
  EXPECT_TRUE(client.contains(box));
  EXPECT_GE(box.height(), window.CWTextBox().edit().fontMetrics().height());
  for (int16_t index : {1, 12, 13, 24, 25, 36}) {
    const QWidget& button = window.btnf()[index].button();
    ASSERT_TRUE(button.isVisible()) << index;
    EXPECT_TRUE(client.contains(InWindow(button))) << index;
    EXPECT_GT(button.height(), 0) << index;
  }
  // The speed, whole, and the lamps beside it, each saying what it shows.
  const QLabel& speed = SpeedText();
  EXPECT_EQ(speed.text().toStdString(), " Keying speed = 20 WPM");
  EXPECT_TRUE(client.contains(InWindow(speed)));
  EXPECT_GE(speed.width(), speed.fontMetrics().horizontalAdvance(speed.text()));
  for (QWidget* lamp : {&window.KeyBox().widget(), &window.PTTBox().widget()}) {
    EXPECT_TRUE(lamp->isVisible());
    EXPECT_TRUE(client.contains(InWindow(*lamp))) << testing::Describe(*lamp);
    EXPECT_GE(lamp->x(), speed.x() + speed.width()) << "the speed runs under a lamp";
    // The disc itself stays inside the bar, whatever the design cuts off.
    const QPixmap face = static_cast<QLabel*>(lamp)->pixmap();
    EXPECT_LE(lamp->y() + face.height(), Bar().height()) << testing::Describe(*lamp);
    EXPECT_EQ(face.width(), face.height());
    EXPECT_GE(face.width(), lamp->width() - 1);
    EXPECT_FALSE(lamp->toolTip().isEmpty());
    EXPECT_FALSE(lamp->accessibleName().isEmpty());
  }
  EXPECT_NE(window.KeyBox().widget().accessibleName(), window.PTTBox().widget().accessibleName());
  // Every entry of the menu bar shows, none behind an overflow arrow.
  const QMenuBar& bar = *window.widget().menuBar();
  for (QAction* action : bar.actions()) {
    EXPECT_TRUE(bar.rect().contains(bar.actionGeometry(action))) << action->text().toStdString();
  }
  EXPECT_EQ(testing::LayoutProblems(window.widget(), kToolBarOverlap), std::vector<std::string>{});
  // The design's 3500 twips are too narrow for all of it: the window grows
  // to what its parts need and no further.
  const int needed = std::max(bar.sizeHint().width(), Bar().minimumWidth());
  EXPECT_GT(window.widget().width(), qRound(3500 / TwipsPerPixelX(window.widget())));
  EXPECT_LE(window.widget().width(), needed + 1);
}

TEST_F(WindowFitTest, TheSpeedStaysWholeWhenItChangesAndTheWindowIsNarrowed) {
  StartSettled();
  QLabel& speed = SpeedText();
  keyer->control.ShowSpeed(5);
  QCoreApplication::processEvents();
  const int oneDigit = speed.width();
  keyer->control.ShowSpeed(99);
  QCoreApplication::processEvents();
  EXPECT_EQ(speed.text().toStdString(), " Keying speed = 99 WPM");
  EXPECT_GT(speed.width(), oneDigit);
  EXPECT_GE(speed.width(), speed.fontMetrics().horizontalAdvance(speed.text()));
  // Narrowed by the operator as far as the window allows.
  window.widget().resize(50, window.widget().height());
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  EXPECT_GE(window.KeyBox().widget().x(), speed.x() + speed.width());
  EXPECT_TRUE(window.widget().rect().contains(InWindow(window.KeyBox().widget())));
  EXPECT_EQ(testing::LayoutProblems(window.widget(), kToolBarOverlap), std::vector<std::string>{});
}

TEST_F(WindowFitTest, WithTheToolBarHiddenTheWindowNarrowsToItsMenu) {
  StartSettled();
  window.menu(MenuId::mnuShowCallsign).action().trigger();
  window.widget().resize(50, window.widget().height());
  for (int i = 0; i < 3; ++i) QCoreApplication::processEvents();
  const QMenuBar& bar = *window.widget().menuBar();
  EXPECT_LE(window.widget().width(), bar.sizeHint().width() + 2);
  for (QAction* action : bar.actions()) {
    EXPECT_TRUE(bar.rect().contains(bar.actionGeometry(action))) << action->text().toStdString();
  }
}

TEST_F(WindowFitTest, TheMacroEditorShowsEveryControlWholeAndApart) {
  StartSettled();
  QTest::mouseClick(&window.btnf()[3].button(), Qt::RightButton);
  QCoreApplication::processEvents();
  QDialog* editor = window.widget().findChild<FrmCWMacroSetupWindow*>();
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(testing::LayoutProblems(*editor), std::vector<std::string>{});
}

TEST_F(WindowFitTest, TheChipDialogsShowEveryControlWholeAndApartInTheDesktopFont) {
  for (const bool winKey2 : {false, true}) {
    auto* dialog = new FrmWinKeyConfigWindow(window.widget(), winKey2);
    dialog->show();
    QCoreApplication::processEvents();
    // The design lets rows overlap by 15 twips, which grows with the font and
    // by rounding; a caption running into its neighbour overlaps far more.
    EXPECT_EQ(testing::LayoutProblems(*dialog, 45), std::vector<std::string>{}) << winKey2;
    // Read at the size the operator chose for the desktop.
    EXPECT_GE(dialog->font().pointSizeF(), QApplication::font().pointSizeF()) << winKey2;
    dialog->close();
  }
}

}  // namespace
}  // namespace vantrel::platform::qt
