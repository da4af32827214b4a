// The whole platform in memory, on virtual time, with every observable event
// in one trace: what the tests and the headless runner run the keyer on.
#pragma once

#include "platform/memory/event_queue.h"
#include "platform/memory/memory_controls.h"
#include "platform/memory/memory_profile_file.h"
#include "platform/memory/memory_text_box.h"
#include "platform/memory/recording_neighbours.h"
#include "platform/memory/trace.h"
#include "platform/memory/virtual_clock.h"
#include "platform/platform.h"

namespace vantrel::platform::memory {

struct MemoryPlatform {
  VirtualClock clock;
  Trace trace{[this] { return clock.NowMs(); }};
  EventQueue queue{clock};
  MemoryProfileFile profile;

  MemoryTextBox CWTextBox{trace};
  MemoryMenuItem mnuTX{trace, "mnuTX"};
  MemoryMenuItem mnuAbort{trace, "mnuAbort"};
  MemoryMenuItem mnuConfig{trace, "mnuConfig"};
  MemoryMenuItem mnuView{trace, "mnuView"};
  MemoryMenuItem mnuKeying{trace, "mnuKeying"};
  MemoryMenuItem mnuVOX{trace, "mnuVOX"};
  MemoryMenuItem mnuMOX{trace, "mnuMOX"};
  MemoryMenuItem mnuWinKey{trace, "mnuWinKey"};
  MemoryMenuItem mnuWinKey2{trace, "mnuWinKey2"};
  MemoryMenuItem mnuSoftwareKeyer{trace, "mnuSoftwareKeyer"};
  MemoryControl cmbPrevious;
  MemoryStatusPanel sBar{trace};
  MemoryTimer Timer1{queue};

  RecordingKeyLines lines{trace};
  RecordingTone tone{trace};
  RecordingLoggerLink link{trace};
  RecordingWinKey winkey{trace};
  RecordingMacroLoop macroLoop;
  RecordingCalibration calibration;

  MainWindowControls controls{CWTextBox, mnuTX,     mnuAbort,   mnuConfig,        mnuView,
                              mnuKeying, mnuVOX,    mnuMOX,     mnuWinKey,        mnuWinKey2,
                              mnuSoftwareKeyer, cmbPrevious, sBar, Timer1};

  Platform platform() {
    return Platform{controls, clock, queue, profile, lines, tone, link, winkey, macroLoop,
                    calibration};
  }
};

}  // namespace vantrel::platform::memory
