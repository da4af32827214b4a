// The software keyer: it walks the text box character by character and times
// every element on the key lines itself, with the sidetone beside them.
// Its procedures share the state of CwState; the files beside this one hold
// them by subject (element_timing, send_loop, software_keyer).
#pragma once

#include <cstdint>
#include <string>

#include "platform/event_pump.h"
#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "platform/scheduler.h"
#include "sending/cw_state.h"
#include "sending/fixed_ms.h"
#include "sending/key_lines.h"
#include "sending/keyer.h"
#include "sending/send_text.h"
#include "sending/transmit_control.h"
#include "settings/setting_writer.h"

namespace vantrel::sending {

struct SoftwareKeyerNeighbours {
  KeyLineDriver& lines;
  platform::ToneOutput& tone;
  platform::LoggerLink& link;
  platform::MacroLoop& macroLoop;
  platform::SpeedCalibration& calibration;
  settings::SettingWriter& settings;
  SendText& text;
  TransmitControl& control;
};

class SoftwareKeyer : public Keyer {
 public:
  SoftwareKeyer(CwState& cw, platform::MainWindowControls& controls, platform::Scheduler& scheduler,
                platform::EventPump& pump, SoftwareKeyerNeighbours neighbours);

  // The keyer's side of the interface.
  void Open() override;
  void Close() override {}
  void StartRun() override { StartNewTransmission(); }
  void ResumeRun() override { ResumeTransmission(); }
  void Abort() override;
  void Stop() override;
  void Tune(bool down) override;
  bool Tuning() const override { return tuning_; }
  void SetSpeed(int16_t wpm) override;
  void StepSpeed(int16_t by) override;
  void HoldPtt(bool on) override;
  bool TypedProsigns() const override { return true; }

  // Element timing. A transmission's waits end at the edges of one timeline,
  // started with it; TimedWait is a wait from now.
  void TimedWait(double ms);
  void StartTimeline();
  // Advances the timeline by `ms` and waits for that edge.
  void WaitForEdge(double ms);
  void SendCharacter();
  void SidetoneOn();
  void SidetoneOff();
  void BoostPriority();
  void RestorePriority();

  // The walk through the text.
  void SendLoop(int16_t& startPosition);
  void NextCharacter(int16_t& position);

  // A transmission: its start, its one end, and the two ways the text box begins one.
  void StartTransmission();
  // Safe to run twice in a row: a drained Abort and a Tune that an Abort stops both do.
  void EndTransmission();
  void StartNewTransmission();
  void ResumeTransmission();

 private:
  double ElapsedMs(int64_t start, int64_t stop) const;
  int64_t CounterAfter(int64_t start, double ms) const;
  int64_t Counts(double ms) const;
  void WaitUntil(int64_t now, int64_t end);
  void TuneStart();
  void TuneStop();

  CwState& cw_;
  platform::MainWindowControls& c_;
  platform::Scheduler& scheduler_;
  platform::EventPump& pump_;
  SoftwareKeyerNeighbours n_;
  // A send loop stands on the stack, also while it drains after an Abort.
  bool inSendLoop_ = false;
  // A new transmission asked for while such a draining loop still stood.
  bool startPending_ = false;
  // The join mark "^" took the letter gap before the next character.
  bool noLetterGap_ = false;
  bool tuning_ = false;
  // The counter reading of the transmission's next ideal edge.
  int64_t edge_ = 0;
};

}  // namespace vantrel::sending
