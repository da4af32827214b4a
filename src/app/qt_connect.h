// Hands the Qt window's events to the keyer's handlers of the same names.
#pragma once

#include "app/vantrel.h"
#include "platform/qt/frm_vantrel_window.h"
#include "platform/qt/qt_key_events.h"
#include "platform/serial_port_list.h"

namespace vantrel::app {

// `ports` lists the serial devices that the keyer setup dialog offers.
void ConnectWindow(platform::qt::FrmVantrelWindow& window, Vantrel& keyer,
                   const platform::SerialPortList& ports);

}  // namespace vantrel::app
