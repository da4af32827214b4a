#include "loggerlink/logger_link.h"

#include <cctype>

#include "platform/key_codes.h"
#include "vb/vb.h"

namespace vantrel::loggerlink {
namespace {

using namespace platform::keys;

int32_t OffsetOf(int16_t slot) { return slot * kSlotSpacing; }

bool StartsWithNoCase(const std::string& text, const std::string& prefix) {
  return text.size() >= prefix.size() && vb::SameText(text.substr(0, prefix.size()), prefix);
}

std::string SlotText(const LinkState& s, LinkSlot slot) {
  return vb::TrimAtNul(s.Slots[static_cast<size_t>(slot)]);
}

}  // namespace

// The logger forwards its own keys: CTRL doubles the code, ALT makes it fourfold.
bool LinkKey(double v, int16_t& KeyCode, int16_t& Shift) {
  if (v != kEsc && (v <= 111 || v >= 492)) return false;
  double code = v;
  Shift = 0;
  if (v >= 124 && v < 248) {
    code = v / 2;
    Shift = kCtrlMask;
  } else if (v >= 248) {
    code = v / 4;
    Shift = kAltMask;
  }
  KeyCode = static_cast<int16_t>(vb::RoundHalfEven(code));
  return true;
}

void LoggerLinkLogic::Attach(LinkState& state, LinkWindow& window, platform::WinKeyLink& winkey) {
  s_ = &state;
  window_ = &window;
  winkey_ = &winkey;
  for (std::string& copy : s_->Slots) {
    if (copy.size() != kSlotText) copy.assign(kSlotText, '\0');
  }
}

// No test of the handles: without the logger a post goes to handle 0 and
// does nothing.
void LoggerLinkLogic::PostLink(platform::LinkCode code, int32_t value) {
  const LinkState none;
  const LinkState& s = s_ ? *s_ : none;
  channel_.PostMessage(s.LoggerWindow, s.LinkMessage, static_cast<int32_t>(code), value);
}

// A text of 64 characters or more loses its NUL and reads as empty on the
// other side; the slot's other 64 bytes are the logger's. Without the
// logger nothing is kept either, so every read of the link stays empty.
void LoggerLinkLogic::WriteLinkSlot(int16_t slot, const std::string& text) {
  if (!s_ || s_->LinkView == 0 || slot < 0 || slot >= kSlotCount) return;
  std::string copy = text;
  copy.push_back('\0');
  copy.resize(kSlotText, ' ');
  s_->Slots[static_cast<size_t>(slot)] = copy;
  channel_.WriteView(s_->LinkView, OffsetOf(slot), copy.data(), kSlotText);
}

// Two commands in a row share the one slot: the second may overwrite the
// first before the logger has read it.
std::string LoggerLinkLogic::ReadLinkSlot(int16_t slot) const {
  if (!s_ || slot < 0 || slot >= static_cast<int16_t>(s_->Slots.size())) return {};
  return s_->Slots[static_cast<size_t>(slot)];
}

void LoggerLinkLogic::SendLinkCommand(const std::string& text) {
  WriteLinkSlot(static_cast<int16_t>(LinkSlot::LinkName), text);
  PostLink(platform::LinkCode::SlotChanged, 0);
}

void LoggerLinkLogic::LogContact() {
  if (window_) window_->RememberCallsign();
  PostLink(platform::LinkCode::LogContact, 0);
}

void LoggerLinkLogic::ShowInField(platform::TextBox& field, const std::string& text) {
  if (text == field.Text()) return;
  field.SetText(text);
  field.SetSelStart(static_cast<int>(field.Text().size()));
}

void LoggerLinkLogic::PollLink() {
  if (!s_ || s_->LinkView == 0) return;
  LinkState& s = *s_;
  for (int16_t slot = 0; slot < kSlotCount; ++slot) {
    std::string& copy = s.Slots[static_cast<size_t>(slot)];
    copy.resize(kSlotText);
    channel_.ReadView(s.LinkView, OffsetOf(slot), copy.data(), kSlotText);
  }
  ShowInField(c_.CallsignField, SlotText(s, LinkSlot::LinkCall));
  // A command on its way to the logger is no name.
  const std::string name = SlotText(s, LinkSlot::LinkName);
  if (!StartsWithNoCase(name, "HexCommand ") && !StartsWithNoCase(name, "Command ")) {
    ShowInField(c_.NameField, name);
  }
  ShowInField(c_.SRXField, SlotText(s, LinkSlot::LinkSRX));
  s.MyCall = SlotText(s, LinkSlot::LinkMyCall);
  s.Band = SlotText(s, LinkSlot::LinkBand);
  const std::string command = SlotText(s, LinkSlot::LinkControl);
  // Cleared before it is acted on, so a poll nested in its effect does not
  // run it again.
  WriteLinkSlot(static_cast<int16_t>(LinkSlot::LinkControl), "");
  ActOnCommand(command);
  const double radio = vb::Val(SlotText(s, LinkSlot::LinkRadio));
  // A number beyond 16 bits is no radio; it changes nothing.
  if (radio != s.ActiveRadio && radio > -32768.5 && radio < 32767.5) {
    s.ActiveRadio = static_cast<int16_t>(vb::RoundHalfEven(radio));
    winkey_->SelectWinKeyRadio();
  }
}

void LoggerLinkLogic::ActOnCommand(const std::string& command) {
  constexpr int16_t kNormal = 0;
  constexpr int16_t kMinimized = 1;
  // The format is always taken from the 8th character, wherever "Format " stands.
  constexpr size_t kFormatStart = 7;
  if (command == "Close") {
    window_->Unload();
  } else if (command == "Normal") {
    window_->SetWindowState(kNormal);
  } else if (command == "Minimize") {
    window_->SetWindowState(kMinimized);
  } else if (command.find("Format ") != std::string::npos) {
    s_->SerialFormat = command.size() > kFormatStart ? command.substr(kFormatStart) : "";
  } else {
    int16_t KeyCode = 0;
    int16_t Shift = 0;
    if (LinkKey(vb::Val(command), KeyCode, Shift)) window_->cwTextBox_KeyDown(KeyCode, Shift);
  }
}

}  // namespace vantrel::loggerlink
