// The contact fields of the tool bar: each change goes to the logger at
// once, and a corrected call is rewritten in the text still to be sent.
#include <algorithm>
#include <string>

#include "mainwindow/frm_vantrel.h"

namespace vantrel::mainwindow {
namespace {

constexpr const char* kNoNumber = "###";

std::string ReplaceAll(std::string text, const std::string& from, const std::string& to) {
  if (from.empty()) return text;
  for (size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

}  // namespace

void FrmVantrel::ShareField(loggerlink::LinkSlot slot, const std::string& text) {
  if (s_.link.LinkView == 0) return;
  p_.link.WriteLinkSlot(static_cast<int16_t>(slot), text);
  p_.link.PostLink(platform::LinkCode::SlotChanged, 0);
}

void FrmVantrel::CallsignField_Change() {
  if (!StartupDone) return;
  const std::string call = c_.CallsignField.Text();
  if (call != PreviousCall && cw_.Transmitting()) CorrectCallInText();
  ShareField(loggerlink::LinkSlot::LinkCall, call);
  PreviousCall = call;
}

void FrmVantrel::NameField_Change() {
  if (StartupDone) ShareField(loggerlink::LinkSlot::LinkName, c_.NameField.Text());
}

// The placeholder stands for no number; the first digit typed behind it
// takes its place. Each of these changes runs this rule once more.
void FrmVantrel::SRXField_Change() {
  platform::TextBox& field = c_.SRXField;
  const std::string text = field.Text();
  if (text.empty()) {
    field.SetText(kNoNumber);
  } else if (text.size() >= 4 && text.compare(0, 3, kNoNumber) == 0) {
    field.SetText(text.substr(3));
  }
  field.SetSelStart(static_cast<int>(field.Text().size()));
  ShareField(loggerlink::LinkSlot::LinkSRX, field.Text());
}

void FrmVantrel::CorrectCallInText() {
  platform::TextBox& box = c_.CWTextBox;
  const std::string& oldCall = PreviousCall;
  const std::string newCall = c_.CallsignField.Text();
  const int sent = std::max<int>(cw_.SendPosition, 0);  // characters up to the one in hand
  const int length = static_cast<int>(oldCall.size());
  const std::string text = box.Text();
  if (sent > static_cast<int>(text.size())) return;

  // The unsent text, with every whole occurrence of the old call replaced.
  box.SetSelStart(sent);
  box.SetSelLength(static_cast<int>(text.size()) - sent);
  box.SetSelColor(cw_.TextForeColor);
  box.SetSelText(ReplaceAll(text.substr(sent), oldCall, newCall));

  // A call that straddles the send position: its head is on the air, its
  // tail is rewritten from the matching place in the new call.
  if (length > 0 && sent > 0) {
    // The last occurrence that ends no later than `length` past the one in hand.
    const size_t found = box.Text().rfind(oldCall, static_cast<size_t>(sent) + 1);
    const int p = found == std::string::npos ? 0 : static_cast<int>(found) + 1;
    if (p >= 1 && p + length > sent + 1) {
      const int gone = sent + 1 - p;
      box.SetSelStart(sent);
      box.SetSelLength(length - gone);
      box.SetSelText(gone < static_cast<int>(newCall.size()) ? newCall.substr(gone) : "");
    }
  }
  box.SetSelStart(static_cast<int>(box.Text().size()));
}

void FrmVantrel::cmbPrevious_Click() {
  platform::TextBox& call = c_.CallsignField;
  call.SetText(c_.cmbPrevious.Text());
  call.SetFocus();
  call.SetSelStart(static_cast<int>(call.Text().size()));
}

// Working a station twice lists it twice.
void FrmVantrel::RememberCallsign() {
  constexpr int16_t kRemembered = 8;
  const std::string call = c_.CallsignField.Text();
  if (call.empty()) return;
  platform::ComboBox& list = c_.cmbPrevious;
  list.AddItem(call, 0);
  if (list.ListCount() > kRemembered) list.RemoveItem(kRemembered);
  list.SetListIndex(0);
}

}  // namespace vantrel::mainwindow
