#include "platform/qt/qt_fonts.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFontDatabase>
#include <QTextEdit>

#include "platform/qt/qt_text_box.h"
#include "qt_application.h"

namespace vantrel::platform::qt {
namespace {

// Not left to fontconfig, which picks some face for any name, differently
// from one machine to the next.
TEST(DesktopFontsTest, WindowsFacesBecomeTheDesktopsOwnAnyCase) {
  testing::EnsureApplication();
  const QString sans = QApplication::font().family();
  const QString fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
  ASSERT_NE(sans, fixed);
  // A machine with the Windows faces installed draws them as they are.
  const auto installed = [](const char* name) {
    return QFontDatabase::hasFamily(QString(name).trimmed());
  };
  for (const char* name : {"MS Sans Serif", "ms sans serif", "Tahoma", " Arial "}) {
    if (!installed(name)) {
      EXPECT_EQ(DesktopFamily(name), sans) << name;
    }
  }
  for (const char* name : {"Courier New", "Lucida Console", "FIXEDSYS"}) {
    if (!installed(name)) {
      EXPECT_EQ(DesktopFamily(name), fixed) << name;
    }
  }
}

TEST(DesktopFontsTest, AnInstalledOrUnknownFaceIsItself) {
  testing::EnsureApplication();
  const QString installed = QFontDatabase::families().value(0);
  ASSERT_FALSE(installed.isEmpty());
  EXPECT_EQ(DesktopFamily(installed.toStdString()), installed);
  EXPECT_EQ(DesktopFamily("No Such Face"), "No Such Face");
}

TEST(DesktopFontsTest, TheTextBoxKeepsTheNameItWasGiven) {
  testing::EnsureApplication();
  QTextEdit edit;
  QtTextBox box(edit);
  box.SetFontName("Courier New");
  box.SetFontSize(10.5F);
  // The settings write back what they hold, not the face that stands in.
  EXPECT_EQ(box.FontName(), "Courier New");
  EXPECT_EQ(edit.font().family(), QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
  EXPECT_FLOAT_EQ(box.FontSize(), 10.5F);
}

}  // namespace
}  // namespace vantrel::platform::qt
