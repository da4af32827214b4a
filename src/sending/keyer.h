// The keyer in use: the software keyer, which times the lines itself, or an
// external chip, which keys the characters it is handed. Keyer selection
// picks one when the Config menu's tick changes; the menus, the box and the
// loggers then ask it, and never which one it is.
#pragma once

#include <cstdint>

namespace vantrel::sending {

class Keyer {
 public:
  virtual ~Keyer() = default;

  // Takes up its port (and sound) when it becomes the keyer in use.
  virtual void Open() = 0;
  // Lets go of what Open took, for another keyer.
  virtual void Close() = 0;

  // Sends the text box from its first character, when the keyer can.
  virtual void StartRun() = 0;
  // Goes on with a run that Slow Typing holds for more text.
  virtual void ResumeRun() = 0;
  // The operator's Abort: the run in hand and any tune end, and the speed
  // that the text's marks changed goes back.
  virtual void Abort() = 0;
  // Ends the run in hand from inside it, as a close request or a lost port
  // does; the box is emptied.
  virtual void Stop() = 0;

  // Key down (true) or up for tuning the transmitter.
  virtual void Tune(bool down) = 0;
  virtual bool Tuning() const = 0;

  // The speed panel's speed: kept, shown, stored and told to the keyer.
  virtual void SetSpeed(int16_t wpm) = 0;
  // A macro's speed word: a step, kept for good, within the keyer's range.
  virtual void StepSpeed(int16_t by) = 0;
  // A logger holds the transmitter on between its texts, or lets it go.
  virtual void HoldPtt(bool on) = 0;
  // Whether = + & ! typed into the box become prosign macros; a chip keys
  // those characters as its own prosigns.
  virtual bool TypedProsigns() const = 0;
};

}  // namespace vantrel::sending
