// Everything the keyer's logic needs from outside itself, gathered for the
// one place that builds the program.
#pragma once

#include "platform/event_pump.h"
#include "platform/language.h"
#include "platform/link_channel.h"
#include "platform/macro_setup_window.h"
#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "platform/ports.h"
#include "platform/profile_file.h"
#include "platform/scheduler.h"
#include "platform/sound.h"
#include "platform/wall_clock.h"

namespace vantrel::platform {

struct Platform {
  MainWindowControls& controls;
  Scheduler& scheduler;
  EventPump& pump;
  ProfileFile& profile;
  WallClock& wallClock;
  Language& language;
  ParallelPort& parallel;
  SerialPort& cwControl;
  LinkChannel& linkChannel;
  SoundSystem& sound;
  LoggerLink& link;
  // The macro editor's dialog; the keyer runs the editor on it.
  MacroSetupWindows& macroSetup;
};

}  // namespace vantrel::platform
