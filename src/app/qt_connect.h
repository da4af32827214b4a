// Hands the Qt window's events to the keyer's handlers of the same names.
#pragma once

#include "app/vantrel.h"
#include "platform/qt/frm_vantrel_window.h"
#include "platform/qt/qt_key_events.h"

namespace vantrel::app {

void ConnectWindow(platform::qt::FrmVantrelWindow& window, Vantrel& keyer);

}  // namespace vantrel::app
