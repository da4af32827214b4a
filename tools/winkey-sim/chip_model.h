// A WinKey or WinKey2 chip as the host sees it on the wire: commands in,
// echo, status and speed pot bytes out, the buffered text keyed at the set
// speed so that echoes come back at a chip's pace. Time is given, not read,
// so the model runs as fast as a test likes.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "chip_protocol.h"

namespace vantrel::winkeysim {

struct ChipOptions {
  uint8_t revision = chip::kWinKeyRevision;
  bool answers = true;      // false: host open gets no reply
  double answerDelayMs = 0;  // the reply to host open comes this late
  bool garbage = false;     // host open is answered with junk before the revision
  double potWpm = 25;
};

class ChipModel {
 public:
  explicit ChipModel(ChipOptions options) : options_(options) {}

  void Receive(uint8_t byte, double nowMs);
  // Lets time pass: characters finish, late answers fall due.
  void Advance(double nowMs);
  // When something will next happen by itself; a negative value: nothing.
  double NextEventMs() const;
  // Bytes the chip has sent since the last call, in order.
  std::vector<uint8_t> TakeOutput();

  // The operator's side of the chip.
  void Paddle(double nowMs);  // a break-in: the buffer is dropped
  void TurnPot(double wpm);

  bool HostOpen() const { return hostOpen_; }
  int Speed() const { return speed_; }
  size_t Buffered() const { return buffer_.size(); }

 private:
  void Command(uint8_t command, const std::vector<uint8_t>& arguments, double nowMs);
  void Admin(uint8_t sub, const std::vector<uint8_t>& arguments);
  void StartNext(double nowMs);
  void SendStatus();
  uint8_t Status() const;
  double CharacterMs(uint8_t character) const;

  ChipOptions options_;
  bool hostOpen_ = false;
  bool echo_ = true;
  int speed_ = 20;
  int speedMin_ = 5;
  bool potSpeed_ = false;
  bool tuning_ = false;
  bool breakIn_ = false;
  // A command being read: its code and the arguments still to come.
  int command_ = -1;
  size_t wanted_ = 0;
  std::vector<uint8_t> arguments_;
  std::deque<uint8_t> buffer_;
  bool keying_ = false;
  uint8_t keyingNow_ = 0;
  double keyedUntilMs_ = 0;
  double answerAtMs_ = -1;
  uint8_t lastStatus_ = chip::kStatusTag;
  std::vector<uint8_t> output_;
};

}  // namespace vantrel::winkeysim
