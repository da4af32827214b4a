#pragma once

#include <cstdint>

#include "platform/controls.h"

namespace vantrel::mainwindow {

// Settings the main window holds for its own use.
struct MainWindowState {
  bool OnTop = false;
  int16_t InsertKeyCode = 0;
  platform::Colour NormalBackColor = 0;
  platform::Colour LoopingBackColor = 0;
};

}  // namespace vantrel::mainwindow
