// Every way of firing a macro ends in btnF_Click: a button, a function key
// or INS, an ALT letter, the logger and the loop's timer.
#include "macros/m_macros.h"
#include "platform/key_codes.h"
#include "vb/vb.h"

namespace vantrel::macros {
namespace {

using namespace platform::keys;
constexpr int16_t kNoShift = 0;

}  // namespace

MMacros::MMacros(MacroNeighbours n) : n_(n), c_(n.controls) {
  // Enabled but silent until the first loop: see btnF_Click's focus rule.
  c_.LoopTimer.SetInterval(0);
  c_.LoopTimer.SetEnabled(true);
  c_.LoopTimer.OnTimer([this] { LoopTimer_Timer(); });
}

void MMacros::btnF_Click(int16_t Index) {
  CancelMacroLoop();
  LastMacroIndex = Index;
  if (!FocusMoved && n_.activeField != nullptr) {
    platform::TextBox& field = *n_.activeField;
    field.SetSelStart(static_cast<int>(field.Text().size()));
    field.SetFocus();
  }
  if (!c_.LoopTimer.Enabled()) FocusMoved = true;
  Notice("macro " + std::to_string(Index));
  QueueMacro(n_.macros.MacroTexts.at(static_cast<size_t>(Index)));
}

// Codes are compared as characters, so ALT F1 (112, "p") finds "&P".
int16_t MMacros::HotKeyMacro(int16_t keyCode) const {
  if (keyCode < 0 || keyCode > 255) return 0;
  const std::string hotKey{'&',
                           static_cast<char>(vb::UCaseAnsi(static_cast<unsigned char>(keyCode)))};
  for (int16_t i = 1; i <= kMacroCount; ++i) {
    if (vb::UCase(n_.macros.MacroCaptions[static_cast<size_t>(i)]).find(hotKey) !=
        std::string::npos) {
      return i;
    }
  }
  return 0;
}

bool MMacros::FireHotKey(int16_t keyCode) {
  const int16_t index = HotKeyMacro(keyCode);
  if (index == 0) return false;
  btnF_Click(index);
  return true;
}

// The codes past F12 are what INS may stand for: the ALT and CTRL rows,
// whatever modifiers are down.
void MMacros::DispatchFunctionKey(int16_t keyCode, int16_t shift) {
  if (keyCode > kF12 && keyCode <= kAltF12) {
    keyCode = static_cast<int16_t>(keyCode - kFunctionKeysPerRow);
    shift = kAltMask;
  } else if (keyCode > kAltF12 && keyCode <= kCtrlF12) {
    keyCode = static_cast<int16_t>(keyCode - 2 * kFunctionKeysPerRow);
    shift = kCtrlMask;
  }
  if (keyCode < kF1 || keyCode > kF12) return;
  const auto index = static_cast<int16_t>(keyCode - kF1 + 1);
  switch (shift) {
    case kNoShift: btnF_Click(index); break;
    case kAltMask: btnF_Click(static_cast<int16_t>(index + kFunctionKeysPerRow)); break;
    case kCtrlMask: btnF_Click(static_cast<int16_t>(index + 2 * kFunctionKeysPerRow)); break;
    default: break;  // SHIFT and any mix fire nothing
  }
}

// LoopDelay is 0 by now, so the click below keeps the looping colour.
void MMacros::LoopTimer_Timer() {
  n_.cw.LoopDelay = 0;
  c_.LoopTimer.SetEnabled(false);
  btnF_Click(LastMacroIndex);
}

void MMacros::btnf_MouseEnter(int16_t Index) { ShowLook(Index, true); }

void MMacros::btnf_MouseLeave(int16_t Index) { ShowLook(Index, false); }

void MMacros::ShowLook(int16_t Index, bool underMouse) {
  macros::ShowLook(c_.btnf[Index], n_.macros, Index, underMouse);
}

void ShowLook(platform::CommandButton& button, const MacroState& m, int16_t i, bool underMouse) {
  const auto at = static_cast<size_t>(i);
  button.SetBackColor((underMouse ? m.MacroOverBackColors : m.MacroBackColors)[at]);
  button.SetForeColor((underMouse ? m.MacroOverForeColors : m.MacroForeColors)[at]);
  button.SetFontName((underMouse ? m.MacroOverFontNames : m.MacroFontNames)[at]);
  button.SetFontSize((underMouse ? m.MacroOverFontSizes : m.MacroFontSizes)[at]);
  button.SetFontBold((underMouse ? m.MacroOverFontBolds : m.MacroFontBolds)[at]);
  button.SetFontItalic((underMouse ? m.MacroOverFontItalics : m.MacroFontItalics)[at]);
}

// Any press closes the editor, whatever it holds: edits not confirmed are lost.
void MMacros::btnf_MouseDown(int16_t Index, int16_t /*Button*/) {
  n_.editor.UnloadMacroSetup();
  c_.btnf[Index].SetForeColorOnMouse(n_.macros.MacroOverForeColors[static_cast<size_t>(Index)]);
}

// The right button edits; only the left one clicks.
void MMacros::btnf_MouseUp(int16_t Index, int16_t Button) {
  if (Button == kRightButton) n_.editor.ShowMacroSetup(Index);
}

}  // namespace vantrel::macros
