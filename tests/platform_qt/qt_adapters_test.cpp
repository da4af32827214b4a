#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QColorDialog>
#include <QFontDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <QTimer>
#include <QLabel>
#include <QMenu>
#include <QTest>
#include <QTextEdit>
#include <unistd.h>

#include <cstdlib>
#include <memory>

#include "platform/qt/qt_controls.h"
#include "platform/qt/qt_descriptor_watch.h"
#include "platform/qt/qt_key_events.h"
#include "platform/qt/qt_text_box.h"
#include "platform/qt/qt_window.h"
#include "qt_application.h"

namespace vantrel::platform::qt {
namespace {

constexpr Colour kBlack = 0;
constexpr Colour kRed = 0x0000FF;
constexpr Colour kBlue = 0xFF0000;

class QtTextBoxTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::EnsureApplication();
    edit = std::make_unique<QTextEdit>();
    box = std::make_unique<QtTextBox>(*edit, kBlack);
  }

  // Appends at the end in `colour`, as the logic types.
  void Append(const std::string& text, Colour colour) {
    box->SetSelStart(static_cast<int>(box->Text().size()));
    box->SetSelColor(colour);
    box->SetSelText(text);
  }

  std::unique_ptr<QTextEdit> edit;
  std::unique_ptr<QtTextBox> box;
};

// The contract the logic counts on is held to in text_box_contract_test.cpp;
// here, the operator's side of it. Typing takes the colour of inserting, a
// click moves the caret under the logic's rule, and each key is a change.
TEST_F(QtTextBoxTest, TheOperatorsKeysFollowTheCaretRules) {
  int changes = 0;
  box->OnChange([&] { ++changes; });
  Append("AB", kBlack);
  box->SetSelColor(kRed);
  QTest::keyClicks(edit.get(), "CD");
  EXPECT_EQ(box->Text(), "ABCD");
  EXPECT_EQ(box->ColourAt(2), kRed);
  EXPECT_EQ(box->ColourAt(3), kRed);
  EXPECT_EQ(changes, 3);
  QTextCursor click = edit->textCursor();
  click.setPosition(1);
  edit->setTextCursor(click);
  QTest::keyClicks(edit.get(), "x");
  EXPECT_EQ(box->Text(), "AxBCD");
  EXPECT_EQ(box->ColourAt(1), kBlack);
}

// Pixels of the box that are mostly `colour`, as painted on screen.
int PixelsOf(QTextEdit& edit, const QColor& colour) {
  const QImage image = edit.viewport()->grab().toImage();
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      const QColor pixel = image.pixelColor(x, y);
      if (std::abs(pixel.red() - colour.red()) < 60 && std::abs(pixel.green() - colour.green()) < 60 &&
          std::abs(pixel.blue() - colour.blue()) < 60) {
        ++count;
      }
    }
  }
  return count;
}

TEST_F(QtTextBoxTest, TheColoursAreWhatTheScreenShows) {
  QFont font = edit->font();
  font.setPointSize(20);
  font.setBold(true);
  edit->setFont(font);
  edit->resize(400, 200);
  Append("WWW", kRed);
  Append("MMM", kBlue);
  const QColor red(255, 0, 0), blue(0, 0, 255);
  EXPECT_GT(PixelsOf(*edit, red), 20);
  EXPECT_GT(PixelsOf(*edit, blue), 20);
  // Marked with redraw off, as the send loop marks: shown once it comes back.
  box->SetRedraw(false);
  box->SetSelStart(0);
  box->SetSelLength(6);
  box->SetSelColor(kBlue);
  box->SetSelStart(6);
  box->SetRedraw(true);
  EXPECT_EQ(PixelsOf(*edit, red), 0);
  // What the operator types takes the colour before the caret.
  QTest::keyClicks(edit.get(), "WW");
  EXPECT_EQ(PixelsOf(*edit, red), 0);
  EXPECT_EQ(box->ColourAt(7), kBlue);
  // A new background reaches behind the coloured text too.
  box->SetBackColor(0x00FFFF);  // yellow
  EXPECT_EQ(PixelsOf(*edit, Qt::white), 0);
}

TEST_F(QtTextBoxTest, RedrawOffHoldsTheCaretBackFromTheWidget) {
  box->SetText("CQ TEST");
  box->SetSelStart(7);
  box->SetRedraw(false);
  box->SetSelStart(3);
  box->SetSelLength(4);
  EXPECT_EQ(box->SelLength(), 4);
  EXPECT_EQ(edit->textCursor().position(), 7);  // the operator sees no caret jump
  box->SetSelText("DX");  // replaces the held selection, not the widget's
  EXPECT_EQ(box->Text(), "CQ DX");
  box->SetRedraw(true);
  EXPECT_EQ(edit->textCursor().position(), 5);
  EXPECT_FALSE(edit->textCursor().hasSelection());
}

TEST_F(QtTextBoxTest, LatinOneCharactersAreTheWidgetsOwn) {
  box->SetText("\xBB" "CQ\xAB \xC4\xA0");  // » CQ « Ä, no-break space
  EXPECT_EQ(edit->toPlainText().left(5), QString::fromUtf8("»CQ« "));
  EXPECT_EQ(edit->document()->characterAt(5), QChar(0xC4));
  EXPECT_EQ(edit->document()->characterAt(6), QChar(0xA0));
  // What has no 8-bit code reaches the logic as "?".
  edit->setPlainText(QString::fromUtf8("A€"));
  EXPECT_EQ(box->Text(), "A?");
}

class QtTimerTest : public ::testing::Test {
 protected:
  void SetUp() override {
    testing::EnsureApplication();
    timer.OnTimer([this] { ++fired; });
  }
  QtTimer timer;
  int fired = 0;
};

TEST_F(QtTimerTest, IntervalZeroNeverFiresEvenEnabled) {
  timer.SetEnabled(true);
  timer.SetInterval(0);
  QTest::qWait(30);
  EXPECT_EQ(fired, 0);
  EXPECT_FALSE(timer.Running());
  timer.SetInterval(5);
  EXPECT_TRUE(QTest::qWaitFor([&] { return fired >= 2; }, 2000));
  timer.SetInterval(0);
  const int before = fired;
  QTest::qWait(30);
  EXPECT_EQ(fired, before);
}

TEST(QtGeometry, TwipsReadBackAsSetAndFollowTheOperatorsResize) {
  testing::EnsureApplication();
  QWidget widget;
  const double perPixel = TwipsPerPixelX(widget);
  ASSERT_DOUBLE_EQ(perPixel, 1440.0 / widget.screen()->logicalDotsPerInchX());
  WidgetGeometry geometry(widget);
  geometry.SetWidth(3500);  // not a whole number of pixels at 96 dpi
  geometry.SetLeft(-10);
  EXPECT_EQ(geometry.Width(), 3500);
  EXPECT_EQ(geometry.Left(), -10);
  EXPECT_EQ(widget.width(), qRound(3500 / perPixel));
  widget.resize(300, widget.height());
  EXPECT_FLOAT_EQ(geometry.Width(), static_cast<float>(300 * perPixel));
}

TEST(QtWindowTest, RectangleReadsBackInTwipsAndTopmostIsAWindowFlag) {
  testing::EnsureApplication();
  MainWindowWidget widget;
  QtWindow window(widget);
  window.SetLeft(500);
  window.SetTop(500);
  window.SetWidth(3500);
  window.SetHeight(2500);
  EXPECT_EQ(window.Left(), 500);
  EXPECT_EQ(window.Top(), 500);
  EXPECT_EQ(window.Width(), 3500);
  EXPECT_EQ(window.Height(), 2500);
  window.SetTopmost(true);
  EXPECT_TRUE(widget.windowFlags() & Qt::WindowStaysOnTopHint);
  window.SetTopmost(false);
  EXPECT_FALSE(widget.windowFlags() & Qt::WindowStaysOnTopHint);
  window.SetCaption("Vantrel \xBB");
  EXPECT_EQ(widget.windowTitle(), QString::fromUtf8("Vantrel »"));
}

TEST(QtMenuItemTest, ClickLeavesTheTickToTheHandler) {
  testing::EnsureApplication();
  QMenu menu;
  QAction* action = menu.addAction("x");
  QtMenuItem item(*action, nullptr);
  int clicks = 0;
  item.OnClick([&] { ++clicks; });
  action->trigger();
  EXPECT_EQ(clicks, 1);
  EXPECT_FALSE(item.Checked());
  EXPECT_FALSE(action->isChecked());
  item.SetChecked(true);
  action->trigger();
  EXPECT_EQ(clicks, 2);
  EXPECT_TRUE(item.Checked());
  EXPECT_TRUE(action->isChecked());
  item.SetEnabled(false);
  action->trigger();  // a grey entry does nothing
  EXPECT_EQ(clicks, 2);
  item.SetCaption("&TX");
  EXPECT_EQ(item.Caption(), "&TX");
  EXPECT_EQ(action->text(), "&TX");
}

TEST(QtMenuItemTest, SubmenuRunsItsOpenHandlerBeforeShowing) {
  testing::EnsureApplication();
  QMenu bar;
  QMenu* keying = bar.addMenu("Keying");
  QAction* entry = keying->addAction("Dedicated serial port open");
  QtMenuItem item(*keying->menuAction(), keying);
  bool entryEnabledWhenShown = true;
  item.OnOpen([&] { entry->setEnabled(false); });
  QObject::connect(keying, &QMenu::aboutToShow, [&] {
    entryEnabledWhenShown = entry->isEnabled();
  });
  keying->popup(QPoint(0, 0));
  keying->hide();
  EXPECT_FALSE(entryEnabledWhenShown);
}

TEST(QtCommonDialogTest, TheFontDialogGivesATextColourBesideTheFont) {
  testing::EnsureApplication();
  QWidget owner;
  QtCommonDialog dialogs(owner);
  // Answers the font dialog, shown with its font list: its colour button,
  // then the colour, then OK.
  QTimer answer;
  QObject::connect(&answer, &QTimer::timeout, [] {
    QWidget* modal = QApplication::activeModalWidget();
    if (auto* colours = qobject_cast<QColorDialog*>(modal)) {
      colours->setCurrentColor(QColor(0, 0, 255));
      colours->accept();
    } else if (modal && modal->findChild<QFontDialog*>()) {
      if (!modal->findChild<QFontDialog*>()->isVisible()) return;
      if (modal->property("asked").toBool()) {
        static_cast<QDialog*>(modal)->accept();
        return;
      }
      modal->setProperty("asked", true);
      for (QPushButton* button : modal->findChildren<QPushButton*>()) {
        if (button->text() == "Color...") {
          QMetaObject::invokeMethod(button, "click", Qt::QueuedConnection);
        }
      }
    }
  });
  answer.start(10);
  FontChoice font{"Sans Serif", 10, false, false, kBlack};
  ASSERT_TRUE(dialogs.ShowFont(font));
  EXPECT_EQ(font.colour, kBlue);
  EXPECT_FALSE(font.name.empty());
}

TEST(QtPictureBoxTest, EdgesSwapTwoSharedPictures) {
  testing::EnsureApplication();
  QLabel keyLabel, pttLabel;
  QtPictureBox key(keyLabel), ptt(pttLabel);
  const qint64 red = keyLabel.pixmap().cacheKey();
  key.SetPicture(Picture::Green);
  EXPECT_EQ(key.Shown(), Picture::Green);
  const qint64 green = keyLabel.pixmap().cacheKey();
  EXPECT_NE(green, red);
  key.SetPicture(Picture::Red);
  EXPECT_EQ(keyLabel.pixmap().cacheKey(), red);  // no picture made per edge
  ptt.SetPicture(Picture::Green);
  EXPECT_EQ(pttLabel.pixmap().cacheKey(), green);
}

TEST(QtStatusPanelTest, PressesOnThePanelOrItsCaptionGiveTheButton) {
  testing::EnsureApplication();
  QWidget panel;
  auto* caption = new QLabel("speed", &panel);
  QtStatusPanel sBar(panel, *caption);
  std::vector<int16_t> buttons;
  sBar.OnClick([&](int16_t button) { buttons.push_back(button); });
  QTest::mousePress(caption, Qt::LeftButton);
  QTest::mousePress(&panel, Qt::RightButton);
  EXPECT_EQ(buttons, (std::vector<int16_t>{1, 2}));
}

// Bytes on a descriptor reach the handler between events, and a handler
// that stops the watch from inside its own call is safe.
TEST(QtDescriptorWatchTest, ReadableRunsTheHandlerUntilUnwatched) {
  testing::EnsureApplication();
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  QtDescriptorWatch watch;
  int calls = 0;
  watch.Watch(pipe[0], [&] {
    ++calls;
    char byte;
    EXPECT_EQ(::read(pipe[0], &byte, 1), 1);
    watch.Unwatch(pipe[0]);
  });
  QCoreApplication::processEvents();
  EXPECT_EQ(calls, 0);
  ASSERT_EQ(::write(pipe[1], "ab", 2), 2);
  QTest::qWait(50);
  EXPECT_EQ(calls, 1);  // the second byte waits, unwatched
  ::close(pipe[0]);
  ::close(pipe[1]);
}


// The codes Windows gives on a US keyboard, shifted or not, and on the pad.
TEST(QtKeyCodes, EveryKeyHasTheCodeWindowsGivesIt) {
  // A key event takes the application's keyboard, which is then not left behind.
  testing::EnsureApplication();
  const auto code = [](int key, Qt::KeyboardModifiers held = {}, const QString& text = {}) {
    return WindowsKeyCode(QKeyEvent(QEvent::KeyPress, key, held, text));
  };
  EXPECT_EQ(code(Qt::Key_Question, Qt::ShiftModifier, "?"), 191);
  EXPECT_EQ(code(Qt::Key_Slash, {}, "/"), 191);
  EXPECT_EQ(code(Qt::Key_Period, {}, "."), 190);
  EXPECT_EQ(code(Qt::Key_Comma, {}, ","), 188);
  EXPECT_EQ(code(Qt::Key_Minus, {}, "-"), 189);
  EXPECT_EQ(code(Qt::Key_Equal, {}, "="), 187);
  EXPECT_EQ(code(Qt::Key_Exclam, Qt::ShiftModifier, "!"), '1');
  EXPECT_EQ(code(Qt::Key_5, Qt::KeypadModifier, "5"), 101);
  EXPECT_EQ(code(Qt::Key_Minus, Qt::KeypadModifier, "-"), 109);
  EXPECT_EQ(code(Qt::Key_Q, {}, "q"), 'Q');
  EXPECT_EQ(code(Qt::Key_F12), 123);
  EXPECT_EQ(code(Qt::Key_Shift, Qt::ShiftModifier), 16);
  EXPECT_EQ(code(Qt::Key_Adiaeresis, {}, "\u00e4"), 0xC4);
}

}  // namespace
}  // namespace vantrel::platform::qt
