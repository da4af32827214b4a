// A macro's words act once, as it is fired, in a fixed order of steps that
// has nothing to do with where they stand; what is left goes to the box.
#include <algorithm>
#include <climits>

#include "macros/m_macros.h"
#include "settings/settings_store.h"
#include "vb/vb.h"
#include "winkey/winkey_frame.h"
#include "winkey/winkey_protocol.h"

namespace vantrel::macros {
namespace {

constexpr int32_t kLoopStep = 5000;

bool SameAt(const std::string& text, size_t at, const std::string& word) {
  if (at + word.size() > text.size()) return false;
  for (size_t i = 0; i < word.size(); ++i) {
    if (vb::UCaseAnsi(static_cast<unsigned char>(text[at + i])) !=
        static_cast<unsigned char>(word[i])) {
      return false;
    }
  }
  return true;
}

// `word` is in capitals; the text may be in any case.
size_t Find(const std::string& text, const std::string& word, size_t from = 0) {
  for (size_t at = from; at + word.size() <= text.size(); ++at) {
    if (SameAt(text, at, word)) return at;
  }
  return std::string::npos;
}

// Steps 1 to 6: one pass; the inserted value is not searched again.
void ReplaceAll(std::string& text, const std::string& word, const std::string& value) {
  for (size_t at = Find(text, word); at != std::string::npos;
       at = Find(text, word, at + value.size())) {
    text.replace(at, word.size(), value);
  }
}

// The later steps: each occurrence acts, from the left, until none is left.
void EachOccurrence(std::string& text, const std::string& word,
                    const std::function<std::string()>& act) {
  for (size_t at = Find(text, word); at != std::string::npos;) {
    const std::string value = act();
    text.replace(at, word.size(), value);
    at = Find(text, word, at + value.size());
  }
}

void ReplaceExact(std::string& text, const std::string& occurrence) {
  for (size_t at = text.find(occurrence); at != std::string::npos; at = text.find(occurrence, at)) {
    text.erase(at, occurrence.size());
  }
}

std::string Number(double value) { return vb::CStr(static_cast<float>(value)); }

}  // namespace

void MMacros::QueueMacro(const std::string& macro) {
  std::string text = vb::UCase(macro);
  ExpandMacro(text);
  platform::TextBox& box = c_.CWTextBox;
  // The caret first: moving it takes up the colour of the sent text before it.
  box.SetSelStart(static_cast<int>(box.Text().size()));
  box.SetSelColor(n_.cw.TextForeColor);
  box.SetSelText(box.Text().empty() ? text : " " + text);
  box.SetSelStart(static_cast<int>(box.Text().size()));
}

std::string& MMacros::ExpandMacro(std::string& text) {
  sending::CwState& cw = n_.cw;
  platform::LoggerLink& logger = n_.logger;
  logger.PollLink();

  ReplaceAll(text, "$NAME$", vb::UCase(c_.NameField.Text()));
  ReplaceAll(text, "$CALL$", c_.CallsignField.Text());
  ReplaceAll(text, "$MYCALL$", logger.MyCall());
  ReplaceAll(text, "$BAND$", logger.Band());
  ReplaceAll(text, "$SPEED+$", "\xBB");
  ReplaceAll(text, "$SPEED-$", "\xAB");
  LinkCommandStep(text, "$COMMAND", false);
  LinkCommandStep(text, "$HEXCOMMAND", true);
  MessageStep(text);

  using LinkSlot = loggerlink::LinkSlot;
  const auto nothing = [](const std::function<void()>& act) {
    return [act] {
      act();
      return std::string();
    };
  };
  const std::pair<const char*, std::function<std::string()>> steps[] = {
      {"$SENTRST$", [this] { return Report(LinkSlot::LinkSentRST, false); }},
      {"$RECEIVEDRST$", [this] { return Report(LinkSlot::LinkReceivedRST, false); }},
      {"$SENTRSTN$", [this] { return Report(LinkSlot::LinkSentRST, true); }},
      {"$RECEIVEDRSTN$", [this] { return Report(LinkSlot::LinkReceivedRST, true); }},
      {"$LOG$", nothing([&cw] { cw.LogAfterSend = true; })},
      {"$LOGIMMEDIATE$", nothing([&logger] { logger.LogContact(); })},
      {"$CLEARLOG$", nothing([&logger] { logger.PostLink(platform::LinkCode::ClearLog, 0); })},
      {"$BOOKMARK$", nothing([&logger] { logger.PostLink(platform::LinkCode::Bookmark, 0); })},
      {"$ROTOR$", nothing([&logger] { logger.PostLink(platform::LinkCode::Rotor, 0); })},
      {"$ROTORLP$", nothing([&logger] { logger.PostLink(platform::LinkCode::Rotor, 1); })},
      {"$LOOP$", nothing([&cw] { cw.LoopDelay += kLoopStep; })},
      {"$RECEIVE$", nothing([&cw] { cw.ReceiveAfterSend = true; })},
      {"$TRANSMIT$", nothing([this] { n_.control.mnuTX_Click(); })},
      {"$CWSPEEDUP$", nothing([this] { n_.control.keyer().StepSpeed(1); })},
      {"$CWSPEEDDN$", nothing([this] { n_.control.keyer().StepSpeed(-1); })},
      // Only between transmissions: a nested one must not pull the text away.
      {"$RESET$", nothing([this, &cw] {
         if (!cw.Transmitting()) n_.lines.ClearParallelLines();
       })},
      {"$CLEAR$", nothing([this, &cw] {
         if (cw.Transmitting()) return;
         c_.CWTextBox.SetText("");
         c_.CallsignField.SetText("");
       })},
      {"$SERIALNUM$", [this] { return SerialNumber(); }},
      {"$SERIALNUM-1$", [this] { return SerialNumberLessOne(); }},
  };
  for (const auto& [word, act] : steps) EachOccurrence(text, word, act);
  return text;
}

// Identical occurrences go out once; an unclosed one stays as text and ends
// the step, so a well-formed one behind it is not reached.
void MMacros::LinkCommandStep(std::string& text, const std::string& word, bool hex) {
  constexpr size_t kShortest = 4;
  for (size_t p = Find(text, word); p != std::string::npos; p = Find(text, word)) {
    const size_t q = text.find('$', p + word.size());
    if (q == std::string::npos) return;
    const std::string occurrence = text.substr(p, q - p + 1);
    std::string argument = vb::Trim(text.substr(p + word.size(), q - p - word.size()));
    if (!hex || argument.size() >= kShortest) {
      const auto bar = argument.find('|');
      if (bar != std::string::npos) {
        const bool second = vb::Val(LinkValue(loggerlink::LinkSlot::LinkRadio)) == 2;
        argument = vb::Trim(second ? argument.substr(bar + 1) : argument.substr(0, bar));
      }
      const bool sends = hex ? argument.size() >= kShortest : !argument.empty();
      if (sends && n_.link.LinkView != 0) {
        n_.logger.SendLinkCommand((hex ? "HexCommand " : "Command ") + argument);
      }
    }
    ReplaceExact(text, occurrence);
  }
}

// Only "$MSG" with one character and its "$" plays a WinKey2 message; every
// form with a closing "$" is removed. One without it stays, as a command's does.
void MMacros::MessageStep(std::string& text) {
  const std::string word = "$MSG";
  for (size_t p = Find(text, word); p != std::string::npos; p = Find(text, word, p)) {
    const size_t q = text.find('$', p + word.size());
    if (q == std::string::npos) return;
    if (q == p + word.size() + 1 && n_.winkey.IsWinKey2()) {
      const double number = vb::Val(text.substr(p + word.size(), 1));
      if (number >= 1 && number < 7) {
        n_.winkey.WriteWinKey(
            *winkey::AdminFrame(winkey::protocol::kAdminPlayMessage, static_cast<int>(number)));
      }
    }
    text.erase(p, q - p + 1);
  }
}

std::string MMacros::LinkValue(loggerlink::LinkSlot slot) const {
  return vb::TrimAtNul(n_.logger.ReadLinkSlot(static_cast<int16_t>(slot)));
}

std::string MMacros::Report(loggerlink::LinkSlot slot, bool nines) const {
  std::string report = LinkValue(slot);
  if (report.empty()) report = "599";
  if (nines) std::replace(report.begin(), report.end(), '9', 'N');
  return report;
}

std::string MMacros::ZeroRule(std::string number) const {
  if (c_.mnuSend0asO.Checked()) {
    std::replace(number.begin(), number.end(), '0', 'O');
  } else if (c_.mnuSend0asT.Checked()) {
    std::replace(number.begin(), number.end(), '0', 'T');
  }
  return number;
}

// The logger's own leading zeros are kept.
std::string MMacros::SerialNumber() const {
  const std::string serial = LinkValue(loggerlink::LinkSlot::LinkSerial);
  return serial == "###" ? "" : ZeroRule(serial);
}

// The logger's format puts the leading zeros back.
std::string MMacros::SerialNumberLessOne() const {
  const double number = vb::Val(LinkValue(loggerlink::LinkSlot::LinkSerial)) - 1;
  if (number <= 0) return "";
  const std::string format = n_.logger.SerialFormat();
  return ZeroRule(format.empty() ? Number(number) : vb::Format(number, format));
}

void MMacros::ArmMacroLoop() {
  if (n_.cw.LoopDelay <= 0) return;
  c_.LoopTimer.SetInterval(n_.cw.LoopDelay);
  c_.LoopTimer.SetEnabled(true);
  c_.CWTextBox.SetBackColor(n_.window.LoopingBackColor);
  Notice("loop armed " + std::to_string(n_.cw.LoopDelay));
}

void MMacros::CancelMacroLoop() {
  if (n_.cw.LoopDelay <= 0) return;
  FocusMoved = false;
  n_.cw.LoopDelay = 0;
  c_.LoopTimer.SetEnabled(false);
  c_.LoopTimer.SetInterval(0);
  c_.CWTextBox.SetBackColor(n_.window.NormalBackColor);
  Notice("loop cancelled");
}

}  // namespace vantrel::macros
