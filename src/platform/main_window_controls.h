// The controls of the main window that the logic reaches by name. Each
// front end (the Qt window, the in-memory one) fills this with its own.
#pragma once

#include <vector>

#include "platform/common_dialog.h"
#include "platform/controls.h"
#include "platform/text_box.h"
#include "platform/window.h"

namespace vantrel::platform {

struct MainWindowControls {
  Window& frmVantrel;

  TextBox& CWTextBox;
  TextBox& CallsignField;
  TextBox& NameField;
  TextBox& SRXField;
  ComboBox& cmbPrevious;

  MenuItem& mnuTX;
  MenuItem& mnuAbort;
  MenuItem& mnuConfig;
  MenuItem& mnuView;
  MenuItem& mnuKeying;
  MenuItem& mnuVOX;
  MenuItem& mnuMOX;
  MenuItem& mnuDedicatedSerialPort;
  MenuItem& mnuWinKey;
  MenuItem& mnuWinKey2;
  MenuItem& mnuSoftwareKeyer;
  MenuItem& mnuOnTop;
  MenuItem& mFkeys;
  MenuItem& mAFkeys;
  MenuItem& mSFkeys;
  MenuItem& mnuShowCallsign;
  MenuItem& mnuShowSRX;
  MenuItem& mnuSend0as0;
  MenuItem& mnuSend0asT;
  MenuItem& mnuSend0asO;
  MenuItem& mnuVersion;

  // The three rows of macro buttons, ALT, SHIFT and plain F keys.
  PlacedControl& ElasticOne1;
  PlacedControl& ElasticOne2;
  PlacedControl& ElasticOne3;
  ControlArray<CommandButton>& btnf;
  StatusPanel& sBar;

  PictureBox& KeyBox;
  PictureBox& PTTBox;
  Timer& Timer1;
  Timer& LoopTimer;
  CommonDialog& CommonDialog1;

  // Every control of the window in its design order; the language tables
  // number the menu captions by this order.
  std::vector<Control*> Controls;
};

}  // namespace vantrel::platform
