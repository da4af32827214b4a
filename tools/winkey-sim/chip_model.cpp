#include "chip_model.h"

#include <algorithm>
#include <utility>

#include "sending/morse_table.h"
#include "winkey/winkey_protocol.h"

namespace vantrel::winkeysim {

namespace p = winkey::protocol;

namespace {
constexpr size_t kBufferSize = 128;
constexpr int16_t kEnglish = 1033;

// Argument bytes after an admin sub-command; those not listed take none.
size_t AdminArguments(uint8_t sub) { return sub == p::kAdminEcho ? 1 : 0; }
}  // namespace

void ChipModel::Receive(uint8_t byte, double nowMs) {
  Advance(nowMs);
  if (command_ >= 0) {
    arguments_.push_back(byte);
    // An admin command learns its length from its sub-command.
    if (command_ == p::kAdmin && arguments_.size() == 1) wanted_ = 1 + AdminArguments(byte);
    if (arguments_.size() < wanted_) return;
    const auto command = static_cast<uint8_t>(command_);
    command_ = -1;
    Command(command, arguments_, nowMs);
    return;
  }
  if (byte < 0x20) {
    command_ = byte;
    wanted_ = byte == p::kAdmin ? 1 : p::kArguments[byte];
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
    case p::kAdmin:
      Admin(a[0], a);
      if (a[0] == p::kAdminHostOpen && options_.answers) {
        answerAtMs_ = nowMs + options_.answerDelayMs;
        Advance(nowMs);
      }
      break;
    case p::kSpeed:
      potSpeed_ = a[0] == 0;
      if (!potSpeed_) speed_ = a[0];
      break;
    case p::kGetSpeedPot:
      output_.push_back(static_cast<uint8_t>(
          p::kPotClass | ((static_cast<int>(options_.potWpm) - speedMin_) & p::kPotValueMask)));
      break;
    case p::kClearBuffer:
      buffer_.clear();
      keying_ = false;
      SendStatus();
      break;
    case p::kKeyImmediate:
      tuning_ = a[0] != 0;
      SendStatus();
      break;
    case p::kLoadDefaults:
      echo_ = (a[0] & 0x04) != 0;
      speed_ = a[1];
      speedMin_ = a[6];
      break;
    case p::kRequestStatus:
      output_.push_back(Status());
      break;
    default:
      break;  // understood, with nothing the host can see
  }
}

void ChipModel::Admin(uint8_t sub, const std::vector<uint8_t>& a) {
  if (sub == p::kAdminHostOpen) hostOpen_ = true;
  if (sub == p::kAdminHostClose) {
    hostOpen_ = false;
    buffer_.clear();
    keying_ = false;
  }
  if (sub == p::kAdminEcho) output_.push_back(a[1]);
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
      p::kPotClass | ((static_cast<int>(wpm) - speedMin_) & p::kPotValueMask)));
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
  if (character == ' ') return 4 * dotMs;
  if (character == '|') return dotMs / 2;
  const std::string code = sending::CharToMorse(static_cast<char>(character), kEnglish);
  double dots = 3;
  for (const char element : code) dots += element == '-' ? 4 : 2;
  return (code.empty() ? 0 : dots - 1) * dotMs;
}

uint8_t ChipModel::Status() const {
  uint8_t status = p::kStatusClass;
  if (keying_ || !buffer_.empty()) status |= p::kStatusBusy;
  if (buffer_.size() > kBufferSize * 2 / 3) status |= p::kStatusXoff;
  if (breakIn_) status |= p::kStatusBreakIn;
  if (tuning_) status |= p::kStatusKeyDown;
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
