// The sending core: element timing, the walk through the text box, and the
// start and end of a transmission. Its procedures share the state of CwState
// and the controls of the main window; the files beside this one hold them
// by subject (element_timing, send_loop, transmit_control).
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/event_pump.h"
#include "platform/main_window_controls.h"
#include "platform/neighbours.h"
#include "platform/scheduler.h"
#include "sending/cw_state.h"
#include "sending/fixed_ms.h"
#include "sending/key_lines.h"
#include "winkey/winkey_settings.h"

namespace vantrel::sending {

// Persists a setting the moment the operator changes it.
class SettingWriter {
 public:
  virtual ~SettingWriter() = default;
  // False when the value did not reach the file.
  virtual bool WriteSetting(const std::string& section, const std::string& key,
                            const std::string& value) = 0;
  // While held, a write waits, and reads see it; on release the waiting
  // writes reach the file in order. A durable write takes milliseconds, tens
  // on a busy disk, so a transmission holds them: in one of its waits a write
  // would move a key edge.
  virtual void HoldWrites(bool hold) = 0;
  // Writes at once whatever the hold: for a writer that must tell the
  // operator at once when the file did not take it.
  virtual bool WriteSettingNow(const std::string& section, const std::string& key,
                               const std::string& value) = 0;
};

struct SendingNeighbours {
  KeyLineDriver& lines;
  const winkey::WinKeySettings& winKeySettings;
  platform::ToneOutput& tone;
  platform::LoggerLink& link;
  platform::WinKeyLink& winkey;
  platform::MacroLoop& macroLoop;
  platform::SpeedCalibration& calibration;
  SettingWriter& settings;
};

// Dot length in ms for a speed and the three proportions; never below 12.
int32_t ComputeDotLength(int16_t wpm, double dashLength, double letterSpace, double wordSpace);

class SendingCore {
 public:
  SendingCore(CwState& cw, platform::MainWindowControls& controls, platform::Scheduler& scheduler,
              platform::EventPump& pump, SendingNeighbours neighbours);

  // Each observer is told every send position that MarkSendPosition shows:
  // a front end that follows progress, a sender waiting for its text to go.
  void OnMark(std::function<void(int16_t position)> observer) { onMark_.push_back(std::move(observer)); }

  // Element timing.
  int32_t ComputeDotLength(int16_t wpm) const;
  void TimedWait(double ms);
  void TimedWait(FixedMs ms) { TimedWait(ms.Ms()); }
  void SendCharacter();
  void SidetoneOn();
  void SidetoneOff();
  void BoostPriority();
  void RestorePriority();

  // The walk through the text.
  void SendLoop(int16_t& startPosition);
  void NextCharacter(int16_t& position);
  void MarkSendPosition(int16_t position);
  bool WinKeySendable(std::string& character);
  bool WinKeyRoute() const;

  // Transmit and receive.
  void StartTransmission();
  void EndTransmission();
  // Ends a transmission from inside it, as a close request or a lost port
  // does: the loop on the stack sees StopSending and unwinds.
  void StopTransmission();
  void EnableIdleControls();
  void DisableIdleControls();
  void ShowSpeed(int16_t speed);
  void mnuTX_Click();
  void mnuabort_click();
  void mnuTune_Click();
  void mnuVOX_Click();
  void mnuMOX_Click();
  void TuneStart();
  void TuneStop();

  // The two ways a transmission is begun from the text box on the software keyer.
  void StartNewTransmission();
  void ResumeTransmission();

 private:
  double ElapsedMs(int64_t start, int64_t stop) const;
  int64_t CounterAfter(int64_t start, double ms) const;
  // Cuts one character out of the box with drawing off; `position` is 1-based.
  void DeleteCharacterAt(int16_t position);
  std::string CharacterAt(int16_t position) const;
  void SendWinKeySpeed(int16_t wpm);
  void ChangeSpeedByMarks(int16_t position, unsigned char mark, int16_t step);

  CwState& cw_;
  platform::MainWindowControls& c_;
  platform::Scheduler& scheduler_;
  platform::EventPump& pump_;
  SendingNeighbours n_;
  std::vector<std::function<void(int16_t)>> onMark_;
  // How many leading characters the marking has shown as sent.
  int markedSent_ = 0;
};

}  // namespace vantrel::sending
