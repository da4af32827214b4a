// The speed calibration: PARIS sent as many times as the test speed, which
// by definition takes one minute, timed from the start of the transmission
// to its end and reported in a small window. Nothing is stored.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "platform/dialog_controls.h"
#include "platform/event_pump.h"
#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "platform/scheduler.h"
#include "sending/cw_state.h"
#include "sending/software_keyer.h"
#include "sending/transmit_control.h"

namespace vantrel::setup {

struct CalibrationState {
  bool Calibrating = false;
  int16_t CalibrationWPM = 0;
  int16_t CalibrationSavedWPM = 0;
  int64_t CalibrationStart = 0;
  int64_t CalibrationEnd = 0;
};

struct CalibrationText {
  std::string Label1;
  std::string Label2;
};

// What frmCalibrate shows for a run of `wpm` between two counter readings.
CalibrationText CalibrationResult(int16_t wpm, int64_t start, int64_t end, int64_t frequency,
                                  int32_t pttDelay);

// "PARIS" w times, one blank between.
std::string ParisText(int16_t wpm);

class SpeedCalibrator : public platform::SpeedCalibration {
 public:
  SpeedCalibrator(sending::CwState& cw, sending::SoftwareKeyer& keyer, sending::TransmitControl& control,
                  platform::MainWindowControls& controls,
                  platform::Scheduler& scheduler, platform::EventPump& pump)
      : cw_(cw),
        keyer_(keyer),
        control_(control),
        c_(controls),
        scheduler_(scheduler),
        pump_(pump) {}

  // The keyer setup dialog the tests are run from: its pointer shows that a
  // test waits, and it owns the result window.
  void Attach(platform::DialogWindow& frmPort, platform::CalibrateForm& frmCalibrate) {
    frmPort_ = &frmPort;
    frmCalibrate_ = &frmCalibrate;
  }
  // Told when a test has ended, with or without a result.
  void OnFinished(std::function<void()> handler) { onFinished_ = std::move(handler); }

  void RunParisTest(int16_t& w);
  // The test lets go of its transmission, which runs out with no result.
  void Cancel();

  bool Calibrating() const override { return state.Calibrating; }
  void TransmissionStarted() override;
  void TransmissionEnded() override;

  // Seconds since the test's transmission began; negative while it waits to begin.
  double ElapsedSeconds();
  // frmCalibrate's load handler.
  void FrmCalibrate_Load(platform::CalibrateControls& form);

  CalibrationState state;

 private:
  sending::CwState& cw_;
  sending::SoftwareKeyer& keyer_;
  sending::TransmitControl& control_;
  platform::MainWindowControls& c_;
  platform::Scheduler& scheduler_;
  platform::EventPump& pump_;
  platform::DialogWindow* frmPort_ = nullptr;
  platform::CalibrateForm* frmCalibrate_ = nullptr;
  std::function<void()> onFinished_;
  bool started_ = false;
};

}  // namespace vantrel::setup
