// One QApplication for the whole test program, on the offscreen platform
// unless the environment names another.
#pragma once

#include <QApplication>

namespace vantrel::testing {

inline void EnsureApplication() {
  if (QApplication::instance()) return;
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  static int argc = 1;
  static char name[] = "platform_qt_tests";
  static char* argv[] = {name, nullptr};
  // Never destroyed: Qt Test's own input devices outlive main() and must
  // not find the application gone.
  static QApplication* application = new QApplication(argc, argv);
  (void)application;
}

}  // namespace vantrel::testing
