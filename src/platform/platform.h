// Everything the keyer's logic needs from outside itself, gathered for the
// one place that builds the program.
#pragma once

#include "platform/event_pump.h"
#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "platform/profile_file.h"
#include "platform/scheduler.h"

namespace vantrel::platform {

struct Platform {
  MainWindowControls& controls;
  Scheduler& scheduler;
  EventPump& pump;
  ProfileFile& profile;
  KeyLines& lines;
  ToneOutput& tone;
  LoggerLink& link;
  WinKeyLink& winkey;
  MacroLoop& macroLoop;
  SpeedCalibration& calibration;
};

}  // namespace vantrel::platform
