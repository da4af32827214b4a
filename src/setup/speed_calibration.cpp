#include "setup/speed_calibration.h"

#include "vb/vb.h"

namespace vantrel::setup {
namespace {

constexpr double kNominalSeconds = 60;

}  // namespace

std::string ParisText(int16_t wpm) {
  std::string text = "PARIS";
  for (int i = 1; i < wpm; ++i) text += " PARIS";
  return text;
}

CalibrationText CalibrationResult(int16_t wpm, int64_t start, int64_t end, int64_t frequency,
                                  int32_t pttDelay) {
  // The count starts ahead of the PTT lead delay, whether PTT is enabled or not.
  double elapsed = static_cast<double>(end - start) / static_cast<double>(frequency) -
                   static_cast<double>(pttDelay) / 1000;
  if (elapsed < kNominalSeconds) elapsed = kNominalSeconds;
  const double overhead = (elapsed - kNominalSeconds) / kNominalSeconds * 100;
  const auto real = static_cast<int16_t>(vb::RoundHalfEven(kNominalSeconds / elapsed * wpm));
  const std::string speed = std::to_string(wpm);
  return {"Elapsed time " + vb::Format(elapsed, "##.000000000000") + " seconds",
          "At " + speed + " WPM this should have taken 60 seconds.  Your CPU overhead is adding " +
              vb::Format(overhead, "#0.0") + "% to the timed period.  Calibration shows that at " +
              speed + " WPM, you are actually sending at " + std::to_string(real) +
              " WPM.  These calculations are based on the total elaped time (first key down to "
              "last key up) to send the word PARIS " +
              (wpm == 20 ? "twenty" : "forty") + " times."};
}

void SpeedCalibrator::RunParisTest(int16_t& w) {
  if (cw_.Transmitting()) {
    // A Slow Typing hold is ended first; a text still going out keeps the line.
    if (!cw_.WaitingForText()) return;
    keyer_.EndTransmission();
  }
  const std::string text = ParisText(w);
  state = CalibrationState{true, w, cw_.WPM, 0, 0};
  started_ = false;
  // However the run ends, its transmission comes back to the speed of now.
  cw_.SavedWPM = cw_.WPM;
  cw_.DotTime = cw_.DotLength(w);
  // The run ends with its text even under Slow Typing, as a received-after-send text does.
  cw_.ReceiveAfterSend = true;
  if (frmPort_) frmPort_->SetMousePointer(platform::DialogPointer::NoDrop);
  pump_.DoEvents();
  platform::TextBox& box = c_.CWTextBox;
  box.SetText("");
  box.SetSelStart(0);
  box.SetSelColor(cw_.TextForeColor);
  box.SetSelText(text);
}

void SpeedCalibrator::Cancel() {
  if (!state.Calibrating) return;
  state.Calibrating = false;
  if (frmPort_) frmPort_->SetMousePointer(platform::DialogPointer::Default);
  if (onFinished_) onFinished_();
}

void SpeedCalibrator::TransmissionStarted() {
  state.CalibrationStart = scheduler_.QueryPerformanceCounter();
  started_ = true;
  control_.ShowSpeed(state.CalibrationWPM);
}

void SpeedCalibrator::TransmissionEnded() {
  state.CalibrationEnd = scheduler_.QueryPerformanceCounter();
  cw_.WPM = state.CalibrationSavedWPM;
  cw_.DotTime = cw_.DotLength(cw_.WPM);
  control_.ShowSpeed(cw_.WPM);
  state.Calibrating = false;
  if (frmCalibrate_) {
    frmCalibrate_->Show([this](platform::CalibrateControls& form) { FrmCalibrate_Load(form); });
  }
  if (frmPort_) frmPort_->SetMousePointer(platform::DialogPointer::Default);
  if (onFinished_) onFinished_();
}

double SpeedCalibrator::ElapsedSeconds() {
  if (!state.Calibrating || !started_) return -1;
  return static_cast<double>(scheduler_.QueryPerformanceCounter() - state.CalibrationStart) /
         static_cast<double>(cw_.TimerFrequency);
}

void SpeedCalibrator::FrmCalibrate_Load(platform::CalibrateControls& form) {
  platform::CenterForm(form.frmCalibrate);
  form.frmCalibrate.SetTopmost(true);
  const CalibrationText text = CalibrationResult(state.CalibrationWPM, state.CalibrationStart,
                                                 state.CalibrationEnd, cw_.TimerFrequency, cw_.PTTDelay);
  form.Label1.SetCaption(text.Label1);
  form.Label2.SetCaption(text.Label2);
}

}  // namespace vantrel::setup
