// The main window's logic: its life from load to unload, and the event
// handlers over its controls.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "platform/platform.h"
#include "sending/cw_state.h"
#include "sending/key_lines.h"
#include "sending/software_keyer.h"
#include "sending/transmit_control.h"
#include "settings/settings_store.h"
#include "state/link_state.h"
#include "state/macro_state.h"
#include "state/main_window_state.h"
#include "winkey/winkey_host.h"
#include "winkey/winkey_settings.h"

namespace vantrel::mainwindow {

// Where the program stands: the folder that holds its settings, and the
// whole command line, which names a profile.
struct StartupEnvironment {
  std::string programDirectory;
  std::string commandLine;
};

// The state of the program that the window brings up and winds down.
struct ProgramState {
  sending::CwState& cw;
  MainWindowState& window;
  macros::MacroState& macros;
  winkey::WinKeySettings& winKeySettings;
  loggerlink::LinkState& link;
};

// The two keyers, and the menus' way to the one in use.
struct Keyers {
  sending::TransmitControl& control;
  sending::SoftwareKeyer& software;
  winkey::WinKeyHost& chip;
};

// The keyer the Config menu's ticks name; None when a click has unticked the
// ticked one, which leaves the software keyer sending.
enum class KeyerKind { None, Software, WinKey, WinKey2 };

class FrmVantrel {
 public:
  static constexpr const char* kLoggerCaption = "Hallowick";
  static constexpr const char* kLinkName = "CW";

  FrmVantrel(const platform::Platform& platform, ProgramState state, Keyers keyers,
             sending::KeyLineDriver& lines, platform::ToneOutput& sidetone,
             settings::SettingsStore& store, platform::MacroLoop& macroLoop,
             StartupEnvironment environment);

  // What reads the settings file into the keyer, in the middle of Form_Load:
  // the program's wiring, which knows every module that a setting reaches.
  void LoadSettingsWith(std::function<void()> load) { loadSettings_ = std::move(load); }
  // Brings the keyer up in its fixed order.
  void Form_Load();
  // A close request; `cancel` set keeps the window. The first one during a
  // transmission only stops it.
  void Form_QueryUnload(bool& cancel);
  // Winds down in its fixed order; the rectangle is kept unless minimised.
  void Form_Unload();

  void CWTextBox_Change();
  void Timer1_Timer();

  // The transmit box's keys and mouse. A code set to 0 goes no further: the
  // key does nothing more, the character is not inserted.
  void cwTextBox_KeyDown(int16_t& KeyCode, int16_t& Shift);
  void cwTextBox_KeyPress(int16_t& KeyAscii);
  void cwTextBox_MouseDown(int16_t Button);
  // Releasing the right button pastes at the end.
  void cwTextBox_MouseUp(int16_t Button);
  void cwTextBox_GotFocus();

  // The contact fields: what a change of each does.
  void CallsignField_Change();
  void NameField_Change();
  void SRXField_Change();
  // Rewrites a corrected call in the text not yet sent, and the unsent tail
  // of one that is going out.
  void CorrectCallInText();
  // Keys of the three fields: Tab cycles them, the macro keys work as in the
  // transmit box. `FieldName` is "CallsignField", "SRXField" or "NameField".
  void FieldKeyDown(int16_t& KeyCode, int16_t& Shift, const std::string& FieldName);
  // Whether the box's or a field's key down would fire a macro by its caption:
  // the window then holds back a shortcut of its own on the same ALT letter.
  bool HoldsHotKey(int16_t KeyCode, int16_t Shift) const;
  void CallsignField_KeyPress(int16_t& KeyAscii);
  void NameField_KeyPress(int16_t& KeyAscii);
  void CallsignField_MouseDown(int16_t Button);
  void NameField_MouseDown(int16_t Button);
  void CallsignField_GotFocus();
  // A callsign chosen from the list comes back into the call field.
  void cmbPrevious_Click();
  // The logged call goes on top of the list of the last eight.
  void RememberCallsign();

  // Layout: the window's resize event, rows and fields shown or hidden.
  void Form_Resize();
  void mFkeys_Click();
  void mSFkeys_Click();
  void mAFkeys_Click();
  void mnuShowCallsign_Click();
  void mnuShowSRX_Click();
  void mnuOnTop_Click();

  // Menu entries that hold a choice.
  void mnuSend0as0_Click();
  void mnuSend0asT_Click();
  void mnuSend0asO_Click();
  // Runs as the Keying menu opens.
  void mnuKeying_Click();
  void mnuDedicatedSerialPort_Click();

  // The keyer in use, one tick of three; a click on the ticked one unticks it.
  void mnuWinKey_Click();
  void mnuWinKey2_Click();
  void mnuSoftwareKeyer_Click();
  // A click on the speed panel: 1 the left button.
  void StepSpeedFromPanel(int16_t Button);
  // What the speed panel does, for any speed: shown, kept, written to the
  // settings and told to the chip.
  void SetSpeed(int16_t wpm) { keyers_.control.keyer().SetSpeed(wpm); }
  KeyerKind KeyerChosen() const { return keyerKind_; }

  // Appearance: each starts its dialog from the present value and writes the result.
  void mnuWPMColor_Click();
  void mnutextfont_Click();
  void mnutextbackcolor_Click();
  void mnutxtextcolor_Click();
  void mnutxingtextcolor_Click();
  void mnuLoopingBackColor_Click();
  // The dialog's colour, or `start` after a cancel.
  platform::Colour ChooseColor(platform::Colour start);

  void LoadLanguageModule();
  std::string LoadLanguageString(int16_t id, bool keepBlanks);

  // No change of the text counts before start-up has finished.
  bool StartupDone = false;
  // The call as it stood after its last change.
  std::string PreviousCall;
  // The entry control that had the focus last: the transmit box or the call.
  platform::TextBox* ActiveField = nullptr;
  platform::Handle LanguageModule = 0;

 private:
  void OpenLink();
  void SelectKeyer(platform::MenuItem& clicked, platform::MenuItem& other, const char* keyer);
  // The one place where the ticks become the keyer in use.
  void UseTickedKeyer();
  // Whether a change of the box's text may start or resume a run.
  bool KeyerTakesText() const;
  // The four show/hide entries work alike.
  void ToggleShown(platform::MenuItem& entry, platform::Control& panel, const char* key);
  void TickSerialZero(platform::MenuItem& entry, const char* value);
  void ChooseTextFont();
  bool EntryKeyDown(int16_t& KeyCode, platform::TextBox& pageTo);
  // The macro keys, alike in the box and the fields; 0 in KeyCode after either.
  bool FireHotKey(int16_t& KeyCode, int16_t Shift);
  void DispatchMacroKey(int16_t& KeyCode, int16_t Shift);
  // A field's text to the logger, when there is one.
  void ShareField(loggerlink::LinkSlot slot, const std::string& text);

  platform::Platform p_;
  platform::MainWindowControls& c_;
  ProgramState s_;
  sending::CwState& cw_;
  Keyers keyers_;
  sending::TransmitControl& control_;
  sending::KeyLineDriver& lines_;
  platform::ToneOutput& sidetone_;
  settings::SettingsStore& store_;
  platform::MacroLoop& macroLoop_;
  winkey::WinKeyHost& chip_;
  StartupEnvironment environment_;
  KeyerKind keyerKind_ = KeyerKind::None;
  std::function<void()> loadSettings_;
};

}  // namespace vantrel::mainwindow
