// The controls of the main window that the logic reaches by name. Each
// front end (the Qt window, the in-memory one) fills this with its own.
#pragma once

#include "platform/controls.h"
#include "platform/text_box.h"

namespace vantrel::platform {

struct MainWindowControls {
  TextBox& CWTextBox;
  MenuItem& mnuTX;
  MenuItem& mnuAbort;
  MenuItem& mnuConfig;
  MenuItem& mnuView;
  MenuItem& mnuKeying;
  MenuItem& mnuVOX;
  MenuItem& mnuMOX;
  MenuItem& mnuWinKey;
  MenuItem& mnuWinKey2;
  MenuItem& mnuSoftwareKeyer;
  Control& cmbPrevious;
  StatusPanel& sBar;
  Timer& Timer1;
};

}  // namespace vantrel::platform
