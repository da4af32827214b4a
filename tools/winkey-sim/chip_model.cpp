#include "chip_model.h"

#include <algorithm>
#include <utility>

#include "chip_protocol.h"

namespace vantrel::winkeysim {

namespace {
constexpr size_t kBufferSize = 128;
}  // namespace

void ChipModel::Receive(uint8_t byte, double nowMs) {
  Advance(nowMs);
  if (command_ >= 0) {
    arguments_.push_back(byte);
    // Admin and pointer commands learn their length from their sub-command.
    if (arguments_.size() == 1) wanted_ += chip::SubArguments(static_cast<uint8_t>(command_), byte);
    if (arguments_.size() < wanted_) return;
    const auto command = static_cast<uint8_t>(command_);
    command_ = -1;
    Command(command, arguments_, nowMs);
    return;
  }
  if (byte < 0x20) {
    command_ = byte;
    wanted_ = chip::kArgumentBytes[byte];
    arguments_.clear();
    if (wanted_ == 0) {
      command_ = -1;
      Command(byte, {}, nowMs);
    }
    return;
  }
  // Text is taken only in host mode; the calibrate's FF is no text either.
  if (!hostOpen_ || byte >= 0x80 || buffer_.size() >= kBufferSize) return;
  buffer_.push_back(byte);
  if (!keying_) StartNext(nowMs);
  SendStatus();
}

void ChipModel::Command(uint8_t command, const std::vector<uint8_t>& a, double nowMs) {
  switch (command) {
    case chip::kAdmin:
      Admin(a[0], a);
      if (a[0] == chip::kHostOpen && options_.answers) {
        answerAtMs_ = nowMs + options_.answerDelayMs;
        Advance(nowMs);
      }
      break;
    case chip::kSetWpmSpeed:
      potSpeed_ = a[0] == 0;
      if (!potSpeed_) speed_ = a[0];
      break;
    case chip::kGetSpeedPot:
      output_.push_back(static_cast<uint8_t>(
          chip::kPotTag | ((static_cast<int>(options_.potWpm) - speedMin_) & chip::kPotMask)));
      break;
    case chip::kClearBuffer:
      buffer_.clear();
      keying_ = false;
      SendStatus();
      break;
    case chip::kKeyImmediate:
      tuning_ = a[0] != 0;
      SendStatus();
      break;
    case chip::kLoadDefaults:
      echo_ = (a[chip::kDefaultsMode] & chip::kModeSerialEcho) != 0;
      speed_ = a[chip::kDefaultsSpeed];
      speedMin_ = a[chip::kDefaultsMinWpm];
      break;
    case chip::kRequestStatus:
      output_.push_back(Status());
      break;
    default:
      break;  // understood, with nothing the host can see
  }
}

void ChipModel::Admin(uint8_t sub, const std::vector<uint8_t>& a) {
  if (sub == chip::kHostOpen) hostOpen_ = true;
  if (sub == chip::kHostClose) {
    hostOpen_ = false;
    buffer_.clear();
    keying_ = false;
  }
  if (sub == chip::kEchoTest) output_.push_back(a[1]);
}

void ChipModel::Advance(double nowMs) {
  if (answerAtMs_ >= 0 && answerAtMs_ <= nowMs) {
    answerAtMs_ = -1;
    if (options_.garbage) output_.insert(output_.end(), {0xD7, 0x3F, 0x81});
    output_.push_back(options_.revision);
  }
  while (keying_ && keyedUntilMs_ <= nowMs) {
    if (echo_) output_.push_back(keyingNow_);
    keying_ = false;
    StartNext(keyedUntilMs_);
    SendStatus();
  }
}

double ChipModel::NextEventMs() const {
  if (answerAtMs_ >= 0 && (!keying_ || answerAtMs_ < keyedUntilMs_)) return answerAtMs_;
  return keying_ ? keyedUntilMs_ : -1;
}

std::vector<uint8_t> ChipModel::TakeOutput() { return std::exchange(output_, {}); }

void ChipModel::Paddle(double nowMs) {
  Advance(nowMs);
  buffer_.clear();
  keying_ = false;
  breakIn_ = true;
  SendStatus();
  breakIn_ = false;
  SendStatus();
}

void ChipModel::TurnPot(double wpm) {
  options_.potWpm = wpm;
  if (hostOpen_) output_.push_back(static_cast<uint8_t>(
      chip::kPotTag | ((static_cast<int>(wpm) - speedMin_) & chip::kPotMask)));
}

void ChipModel::StartNext(double nowMs) {
  if (buffer_.empty()) return;
  keyingNow_ = buffer_.front();
  buffer_.pop_front();
  keying_ = true;
  keyedUntilMs_ = nowMs + CharacterMs(keyingNow_);
}

// A character's elements, their gaps and the letter gap after it, in dots
// of the speed of now; a word gap is seven dots in all.
double ChipModel::CharacterMs(uint8_t character) const {
  const int wpm = potSpeed_ ? static_cast<int>(options_.potWpm) : std::max(speed_, 5);
  const double dotMs = 1200.0 / wpm;
  if (character == chip::kWordSpace) return 4 * dotMs;
  if (character == chip::kHalfSpace) return dotMs / 2;
  const std::string_view code = chip::Morse(character);
  double dots = 3;
  for (const char element : code) dots += element == '-' ? 4 : 2;
  return (code.empty() ? 0 : dots - 1) * dotMs;
}

uint8_t ChipModel::Status() const {
  uint8_t status = chip::kStatusTag;
  if (keying_ || !buffer_.empty()) status |= chip::kStatusBusy;
  if (buffer_.size() > kBufferSize * 2 / 3) status |= chip::kStatusXoff;
  if (breakIn_) status |= chip::kStatusBreakin;
  if (tuning_) status |= chip::kStatusKeydown;
  return status;
}

// A chip reports its status by itself whenever it changes.
void ChipModel::SendStatus() {
  const uint8_t status = Status();
  if (status == lastStatus_ || !hostOpen_) return;
  lastStatus_ = status;
  output_.push_back(status);
}

}  // namespace vantrel::winkeysim
