// The keys and the mouse on the transmit box and the contact fields. New
// text in the box always goes to the end, in capitals; nothing here sends:
// the box's change event does.
#include <string>

#include "mainwindow/frm_vantrel.h"
#include "platform/key_codes.h"
#include "vb/vb.h"

namespace vantrel::mainwindow {
namespace {

using namespace platform::keys;
// CTRL Enter's character, which ends a line like Enter.
constexpr int16_t kLineFeed = 10;

// The characters that stand for prosigns on the software keyer.
const char* Prosign(int16_t keyAscii) {
  switch (keyAscii) {
    case '=': return "B^T";
    case '+': return "A^R";
    case '&': return "A^S";
    case '!': return "S^N";
    default: return nullptr;
  }
}

}  // namespace

bool FrmVantrel::HoldsHotKey(int16_t KeyCode, int16_t Shift) const {
  return Shift == kAltMask && KeyCode >= kPageUp && macroLoop_.HotKeyMacro(KeyCode) != 0;
}

// ALT and a key that a macro caption holds as its hot key fires that macro.
bool FrmVantrel::FireHotKey(int16_t& KeyCode, int16_t Shift) {
  if (!HoldsHotKey(KeyCode, Shift) || !macroLoop_.FireHotKey(KeyCode)) return false;
  KeyCode = 0;
  return true;
}

void FrmVantrel::DispatchMacroKey(int16_t& KeyCode, int16_t Shift) {
  if (KeyCode < kF1 || KeyCode > kCtrlF12) return;
  macroLoop_.DispatchFunctionKey(KeyCode, Shift);
  KeyCode = 0;
}

// The keys the box and the fields treat alike: Esc aborts, Page Up and Down
// move to `pageTo`, INS stands for its stored key code. True when the key
// has been dealt with.
bool FrmVantrel::EntryKeyDown(int16_t& KeyCode, platform::TextBox& pageTo) {
  switch (KeyCode) {
    case kEsc:
      control_.mnuabort_click();
      KeyCode = 0;
      return true;
    case kPageUp:
    case kPageDown:
      pageTo.SetFocus();
      KeyCode = 0;
      return true;
    case kInsert:
      KeyCode = s_.window.InsertKeyCode;
      return false;
    default:
      return false;
  }
}

void FrmVantrel::cwTextBox_KeyDown(int16_t& KeyCode, int16_t& Shift) {
  if (KeyCode == kEnter || KeyCode == kLineFeed) KeyCode = 0;
  if (KeyCode == kEsc) macroLoop_.CancelMacroLoop();
  if (EntryKeyDown(KeyCode, c_.CallsignField)) return;
  if (FireHotKey(KeyCode, Shift)) return;
  DispatchMacroKey(KeyCode, Shift);
  c_.CWTextBox.SetSelColor(cw_.TextForeColor);
}

void FrmVantrel::cwTextBox_KeyPress(int16_t& KeyAscii) {
  macroLoop_.CancelMacroLoop();
  platform::TextBox& box = c_.CWTextBox;
  if (KeyAscii == kEnter || KeyAscii == kLineFeed) {
    KeyAscii = 0;
    return;
  }
  if (KeyAscii == kBackspace) {
    // Takes back the last character the send path has not reached.
    KeyAscii = 0;
    const int length = static_cast<int>(box.Text().size());
    const int reached = cw_.Transmitting() ? cw_.SendPosition : 0;
    if (length > reached && length > 0) {
      box.SetSelStart(length - 1);
      box.SetSelLength(1);
      box.SetSelText("");
    }
    return;
  }
  if (control_.keyer().TypedProsigns()) {
    if (const char* prosign = Prosign(KeyAscii)) {
      KeyAscii = 0;
      macroLoop_.QueueMacro(prosign);
      return;
    }
  }
  box.SetSelStart(static_cast<int>(box.Text().size()));
  KeyAscii = vb::UCaseAnsi(static_cast<unsigned char>(KeyAscii));
}

// Any press ends a loop; the press itself ends at once, so no drag selects.
void FrmVantrel::cwTextBox_MouseDown(int16_t /*Button*/) { macroLoop_.CancelMacroLoop(); }

// The clipboard's text as it is: not upper-cased, not filtered.
void FrmVantrel::cwTextBox_MouseUp(int16_t Button) {
  if (Button != kRightButton) return;
  platform::TextBox& box = c_.CWTextBox;
  box.SetSelStart(static_cast<int>(box.Text().size()));
  box.SetSelText(c_.frmVantrel.ClipboardText());
  box.SetSelStart(static_cast<int>(box.Text().size()));
}

void FrmVantrel::cwTextBox_GotFocus() { ActiveField = &c_.CWTextBox; }

void FrmVantrel::FieldKeyDown(int16_t& KeyCode, int16_t& Shift, const std::string& FieldName) {
  if (KeyCode == kTab) {
    // SHIFT goes the same way round.
    platform::TextBox* next = &c_.CallsignField;
    bool toEnd = true;
    if (FieldName == "CallsignField") {
      next = c_.mnuShowSRX.Checked() ? &c_.SRXField : &c_.NameField;
      toEnd = next == &c_.SRXField;
    } else if (FieldName == "SRXField") {
      next = &c_.NameField;
    }
    next->SetFocus();
    if (toEnd) next->SetSelStart(static_cast<int>(next->Text().size()));
    KeyCode = 0;
    return;
  }
  if (EntryKeyDown(KeyCode, c_.CWTextBox)) return;
  if (FireHotKey(KeyCode, Shift)) return;
  DispatchMacroKey(KeyCode, Shift);
}

void FrmVantrel::CallsignField_KeyPress(int16_t& KeyAscii) {
  macroLoop_.CancelMacroLoop();
  KeyAscii = KeyAscii == kEnter || KeyAscii == kLineFeed
                 ? 0
                 : vb::UCaseAnsi(static_cast<unsigned char>(KeyAscii));
}

// The name keeps its case: the macro word that reads it capitalises it.
void FrmVantrel::NameField_KeyPress(int16_t& KeyAscii) {
  macroLoop_.CancelMacroLoop();
  if (KeyAscii == kEnter || KeyAscii == kLineFeed) KeyAscii = 0;
}

void FrmVantrel::CallsignField_MouseDown(int16_t /*Button*/) { macroLoop_.CancelMacroLoop(); }
void FrmVantrel::NameField_MouseDown(int16_t /*Button*/) { macroLoop_.CancelMacroLoop(); }
void FrmVantrel::CallsignField_GotFocus() { ActiveField = &c_.CallsignField; }

}  // namespace vantrel::mainwindow
