// The keys and the mouse on the transmit box. New text always goes to the
// end, in capitals; nothing here sends: the box's change event does.
#include <string>

#include "mainwindow/frm_vantrel.h"
#include "vb/vb.h"

namespace vantrel::mainwindow {
namespace {

constexpr int16_t kBackspace = 8;
constexpr int16_t kLineFeed = 10;
constexpr int16_t kEnter = 13;
constexpr int16_t kEsc = 27;
constexpr int16_t kPageUp = 33;
constexpr int16_t kPageDown = 34;
constexpr int16_t kInsert = 45;
constexpr int16_t kFirstFunctionKey = 112;
constexpr int16_t kLastFunctionKey = 147;
constexpr int16_t kAlt = 4;
constexpr int16_t kRightButton = 2;

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

void FrmVantrel::cwTextBox_KeyDown(int16_t& KeyCode, int16_t& Shift) {
  switch (KeyCode) {
    case kEnter:
    case kLineFeed:
      KeyCode = 0;
      break;
    case kEsc:
      p_.macroLoop.CancelMacroLoop();
      core_.mnuabort_click();
      KeyCode = 0;
      return;
    case kInsert:
      KeyCode = s_.window.InsertKeyCode;
      break;
    case kPageUp:
    case kPageDown:
      c_.CallsignField.SetFocus();
      KeyCode = 0;
      return;
    default:
      break;
  }
  if (Shift == kAlt && KeyCode >= kPageUp && p_.macroLoop.FireHotKey(KeyCode)) {
    KeyCode = 0;
    return;
  }
  if (KeyCode >= kFirstFunctionKey && KeyCode <= kLastFunctionKey) {
    p_.macroLoop.DispatchFunctionKey(KeyCode, Shift);
    KeyCode = 0;
  }
  c_.CWTextBox.SetSelColor(cw_.TextForeColor);
}

void FrmVantrel::cwTextBox_KeyPress(int16_t& KeyAscii) {
  p_.macroLoop.CancelMacroLoop();
  platform::TextBox& box = c_.CWTextBox;
  if (KeyAscii == kEnter || KeyAscii == kLineFeed) {
    KeyAscii = 0;
    return;
  }
  if (KeyAscii == kBackspace) {
    // Takes back the last character the send path has not reached.
    KeyAscii = 0;
    const int length = static_cast<int>(box.Text().size());
    const int reached = cw_.Transmitting ? cw_.SendPosition : 0;
    if (length > reached && length > 0) {
      box.SetSelStart(length - 1);
      box.SetSelLength(1);
      box.SetSelText("");
    }
    return;
  }
  if (!core_.WinKeyRoute()) {
    if (const char* prosign = Prosign(KeyAscii)) {
      KeyAscii = 0;
      p_.macroLoop.QueueMacro(prosign);
      return;
    }
  }
  box.SetSelStart(static_cast<int>(box.Text().size()));
  KeyAscii = vb::UCaseAnsi(static_cast<unsigned char>(KeyAscii));
}

// Any press ends a loop; the press itself ends at once, so no drag selects.
void FrmVantrel::cwTextBox_MouseDown(int16_t /*Button*/) { p_.macroLoop.CancelMacroLoop(); }

// The clipboard's text as it is: not upper-cased, not filtered.
void FrmVantrel::cwTextBox_MouseUp(int16_t Button) {
  if (Button != kRightButton) return;
  platform::TextBox& box = c_.CWTextBox;
  box.SetSelStart(static_cast<int>(box.Text().size()));
  box.SetSelText(c_.frmVantrel.ClipboardText());
  box.SetSelStart(static_cast<int>(box.Text().size()));
}

void FrmVantrel::cwTextBox_GotFocus() { ActiveField = &c_.CWTextBox; }

}  // namespace vantrel::mainwindow
