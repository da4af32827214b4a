// The controls of the "Keyer setup" dialog that its logic reaches by name.
// Each front end (the Qt dialog, the in-memory one) fills this with its own.
#pragma once

#include "platform/controls.h"
#include "platform/dialog_controls.h"

namespace vantrel::platform {

struct KeyerSetupControls {
  DialogWindow& frmPort;
  Slider& DotLengthSlider;
  Label& lbl;
  Slider& Pitch;
  TextField& Text2;  // parallel port address
  TextField& Text3;  // PTT delay
  TextField& Text4;  // dash
  TextField& Text5;  // letter space
  TextField& Text6;  // word space
  Label& Label2;
  Label& Label10;
  EditComboBox& cmbPort;
  // The device behind the name in cmbPort.
  Label& lblDevice;
  CheckBox& CheckParallel;
  CheckBox& CheckSharedSerial;
  CheckBox& CheckSerial;
  CheckBox& Check5;
  CheckBox& ckSlowTyping;
  CheckBox& Chk6;
  CheckBox& ckSidetone;
  Button& btnTest;
  Button& ARButton1;
  Button& ARButton2;
  Button& btnOK;
  Button& btnCancel;
  // A running speed test: how far it has come, and the way to stop it.
  Label& lblProgress;
  ProgressBar& prgTest;
  Button& btnStopTest;
  Timer& ProgressTimer;
  CalibrateForm& frmCalibrate;
};

}  // namespace vantrel::platform
