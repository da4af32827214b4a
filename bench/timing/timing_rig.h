// The keyer on a scheduler of the bench's choosing, with the memory platform's
// controls around it and a key line that stamps every edge with the clock the
// bench measures by.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "platform/memory/memory_platform.h"
#include "platform/platform.h"

namespace vantrel::bench {

using NowNs = std::function<int64_t()>;

struct Edge {
  int64_t ns;
  bool down;
};

class EdgeRecorder final : public platform::KeyLines {
 public:
  explicit EdgeRecorder(NowNs now) : now_(std::move(now)) { edges.reserve(8192); }
  void KeyLineDown() override { edges.push_back({now_(), true}); }
  void KeyLineUp() override { edges.push_back({now_(), false}); }
  void PTTLineOn() override {}
  void PTTLineOff() override {}

  std::vector<Edge> edges;

 private:
  NowNs now_;
};

// The keyer tells the logger a transmission has begun as it begins one: that
// message marks the start the lead delay is measured from.
class StartMarker final : public platform::LoggerLink {
 public:
  static constexpr int32_t kTransmitting = 900;

  explicit StartMarker(NowNs now) : now_(std::move(now)) {}
  void PollLink() override {}
  void PostLink(int32_t code, int32_t value) override {
    if (code == kTransmitting && value == 1 && startNs < 0) startNs = now_();
  }
  void LogContact() override {}

  int64_t startNs = -1;

 private:
  NowNs now_;
};

struct TimingRig {
  TimingRig(platform::Scheduler& scheduler, NowNs now)
      : scheduler(scheduler), now(std::move(now)) {}

  platform::Scheduler& scheduler;
  NowNs now;
  // The pump's own clock stands still: no timer fires inside a measured wait.
  platform::memory::VirtualClock pumpClock;
  platform::memory::Trace trace{[this] { return static_cast<double>(now()) / 1e6; }};
  platform::memory::EventQueue queue{pumpClock};
  platform::memory::MemoryProfileFile profile;

  platform::memory::MemoryTextBox CWTextBox{trace};
  platform::memory::MemoryMenuItem mnuTX{trace, "mnuTX"};
  platform::memory::MemoryMenuItem mnuAbort{trace, "mnuAbort"};
  platform::memory::MemoryMenuItem mnuConfig{trace, "mnuConfig"};
  platform::memory::MemoryMenuItem mnuView{trace, "mnuView"};
  platform::memory::MemoryMenuItem mnuKeying{trace, "mnuKeying"};
  platform::memory::MemoryMenuItem mnuVOX{trace, "mnuVOX"};
  platform::memory::MemoryMenuItem mnuMOX{trace, "mnuMOX"};
  platform::memory::MemoryMenuItem mnuWinKey{trace, "mnuWinKey"};
  platform::memory::MemoryMenuItem mnuWinKey2{trace, "mnuWinKey2"};
  platform::memory::MemoryMenuItem mnuSoftwareKeyer{trace, "mnuSoftwareKeyer"};
  platform::memory::MemoryControl cmbPrevious;
  platform::memory::MemoryStatusPanel sBar{trace};
  platform::memory::MemoryTimer Timer1{queue};

  EdgeRecorder lines{now};
  platform::memory::RecordingTone tone{trace};
  StartMarker link{now};
  platform::memory::RecordingWinKey winkey{trace};
  platform::memory::RecordingMacroLoop macroLoop;
  platform::memory::RecordingCalibration calibration;

  platform::MainWindowControls controls{
      CWTextBox, mnuTX,     mnuAbort,   mnuConfig,        mnuView,     mnuKeying, mnuVOX,
      mnuMOX,    mnuWinKey, mnuWinKey2, mnuSoftwareKeyer, cmbPrevious, sBar,      Timer1};

  platform::Platform platform() {
    return platform::Platform{controls, scheduler, queue,  profile,   lines,
                              tone,     link,      winkey, macroLoop, calibration};
  }
};

}  // namespace vantrel::bench
