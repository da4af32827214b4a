// The controls of the two keyer chip dialogs, "WinKey config ..." and
// "WinKey2 config ...", as their logic reaches them by name. Both share
// the lists, sliders and most check boxes; the boxes that only one chip's
// dialog has are null on the other's.
#pragma once

#include "platform/controls.h"
#include "platform/dialog_controls.h"

namespace vantrel::platform {

struct WinKeyConfigControls {
  DialogWindow& form;
  ComboBox& cmbPort;
  ComboBox& cmbKeyMode;
  // Its text may be a tone that the list lacks.
  EditComboBox& cmbTone;
  ComboBox& cmbWordSpace;
  ComboBox& cmbPaddle;

  Slider& Slider3;  // PTT lead delay
  Slider& Slider4;  // PTT tail delay
  Slider& Slider1;  // speed pot max
  Slider& Slider5;  // speed pot min
  Slider& Slider11;  // speed
  Slider& Slider2;  // Farnsworth speed
  Slider& Slider6;  // dit/dah ratio
  Slider& Slider7;  // dit/dah weight
  Slider& Slider8;  // first extension
  Slider& Slider9;  // keying compensation
  Slider& Slider10;  // paddle switchpoint
  // The value labels, in the sliders' order above.
  Label& Label16;
  Label& Label17;
  Label& Label18;
  Label& Label19;
  Label& Label26;
  Label& Label20;
  Label& Label21;
  Label& Label22;
  Label& Label23;
  Label& Label24;
  Label& Label25;

  CheckBox& ckWinKeyPTT;
  CheckBox& ckWinKeySideTone;
  CheckBox& ckWinKeySwitchPaddles;
  CheckBox& ckDisablePaddleMemory;
  CheckBox& ckPaddleInsertCancelsMacro;
  CheckBox& ckWinKeyAnalogSpeed;
  CheckBox& ckWinKeyContestWordSpace;
  CheckBox& ckWinKeyAutoSpace;
  CheckBox& ckRadioPolling;
  // The WinKey's only: which pin keys, and the two radios' pins.
  CheckBox* ckWinKeyPin3 = nullptr;
  CheckBox* ckWinKeyPin5 = nullptr;
  CheckBox* ckRadio1Pin3 = nullptr;
  CheckBox* ckRadio1Pin5 = nullptr;
  // The WinKey2's only.
  CheckBox* ckPaddleOnlySideTone = nullptr;

  Button& ARButton1;  // Apply
  Button& btnCancel;
};

}  // namespace vantrel::platform
