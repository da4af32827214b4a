// The whole platform in memory, on virtual time, with every observable event
// in one trace: what the tests and the headless runner run the keyer on.
#pragma once

#include "platform/memory/event_queue.h"
#include "platform/memory/memory_controls.h"
#include "platform/memory/memory_link_channel.h"
#include "platform/memory/memory_ports.h"
#include "platform/memory/memory_profile_file.h"
#include "platform/memory/memory_system.h"
#include "platform/memory/memory_text_box.h"
#include "platform/memory/recording_neighbours.h"
#include "platform/memory/trace.h"
#include "platform/memory/tracing_profile_file.h"
#include "platform/memory/virtual_clock.h"
#include "platform/platform.h"

namespace vantrel::platform::memory {

struct MemoryPlatform {
  VirtualClock clock;
  EventQueue queue{clock};
  Trace trace{[this] { return static_cast<double>(queue.time().NowNs()) / 1e6; }};
  MemoryProfileFile files;
  TracingProfileFile profile{files, trace};
  MemoryWallClock wallClock;
  MemoryLanguage language;

  MemoryWindow frmVantrel{trace};
  MemoryTextBox CWTextBox{trace};
  MemoryTextBox CallsignField{trace, 0, "CallsignField", "field CallsignField"};
  MemoryTextBox NameField{trace, 0, "NameField", "field NameField"};
  MemoryTextBox SRXField{trace, 0, "SRXField", "field SRXField"};
  MemoryComboBox cmbPrevious;
  MemoryMenuItem mnuTX{trace, "mnuTX", "TX"};
  MemoryMenuItem mnuAbort{trace, "mnuAbort", "Abort"};
  MemoryMenuItem mnuConfig{trace, "mnuConfig", "Config"};
  MemoryMenuItem mnuView{trace, "mnuView", "View"};
  MemoryMenuItem mnuKeying{trace, "mnuKeying", "Keying"};
  MemoryMenuItem mnuVOX{trace, "mnuVOX", "VOX"};
  MemoryMenuItem mnuMOX{trace, "mnuMOX", "MOX"};
  MemoryMenuItem mnuDedicatedSerialPort{trace, "mnuDedicatedSerialPort",
                                        "Dedicated serial port open"};
  MemoryMenuItem mnuWinKey{trace, "mnuWinKey", "WinKey"};
  MemoryMenuItem mnuWinKey2{trace, "mnuWinKey2", "WinKey2"};
  MemoryMenuItem mnuSoftwareKeyer{trace, "mnuSoftwareKeyer", "Software keyer"};
  MemoryMenuItem mnuOnTop{trace, "mnuOnTop", "Always on top"};
  MemoryMenuItem mFkeys{trace, "mFkeys", "F keys"};
  MemoryMenuItem mAFkeys{trace, "mAFkeys", "ALT F keys"};
  MemoryMenuItem mSFkeys{trace, "mSFkeys", "SHIFT F keys"};
  MemoryMenuItem mnuShowCallsign{trace, "mnuShowCallsign", "Show callsign field"};
  MemoryMenuItem mnuShowSRX{trace, "mnuShowSRX", "Show SRX field"};
  MemoryMenuItem mnuSend0as0{trace, "mnuSend0as0", "Send 0 as 0"};
  MemoryMenuItem mnuSend0asT{trace, "mnuSend0asT", "Send 0 as T"};
  MemoryMenuItem mnuSend0asO{trace, "mnuSend0asO", "Send 0 as O"};
  MemoryMenuItem mnuVersion{trace, "mnuVersion", "Version"};
  MemoryPlacedControl ElasticOne1;
  MemoryPlacedControl ElasticOne2;
  MemoryPlacedControl ElasticOne3;
  MemoryButtonArray btnf;
  MemoryStatusPanel sBar{trace};
  MemoryPictureBox KeyBox{trace, "keybox"};
  MemoryPictureBox PTTBox{trace, "pttbox"};
  MemoryTimer Timer1{queue};
  MemoryCommonDialog CommonDialog1{trace};
  // The text control that has the keyboard.
  std::string focused = "CWTextBox";

  MemoryParallelPort parallel{trace};
  MemorySerialPort cwControl{trace};
  MemoryLinkChannel linkChannel{trace};
  RecordingTone tone{trace};
  RecordingLoggerLink link{trace};
  RecordingWinKey winkey{trace};
  RecordingMacroLoop macroLoop{trace, CWTextBox};
  RecordingCalibration calibration;

  MainWindowControls controls{
      frmVantrel,  CWTextBox,   CallsignField, NameField,   SRXField,  cmbPrevious,
      mnuTX,       mnuAbort,    mnuConfig,     mnuView,     mnuKeying, mnuVOX,
      mnuMOX,      mnuDedicatedSerialPort,     mnuWinKey,   mnuWinKey2, mnuSoftwareKeyer,
      mnuOnTop,    mFkeys,      mAFkeys,       mSFkeys,     mnuShowCallsign, mnuShowSRX,
      mnuSend0as0, mnuSend0asT, mnuSend0asO,   mnuVersion,  ElasticOne1, ElasticOne2,
      ElasticOne3, btnf,        sBar,          KeyBox,      PTTBox,    Timer1, CommonDialog1,
      {&CWTextBox, &CallsignField, &NameField, &SRXField, &cmbPrevious, &mnuConfig,
       &mnuKeying, &mnuVOX, &mnuMOX, &mnuDedicatedSerialPort, &mnuWinKey, &mnuWinKey2,
       &mnuSoftwareKeyer, &mnuView, &mnuOnTop, &mFkeys, &mAFkeys, &mSFkeys, &mnuShowCallsign,
       &mnuShowSRX, &mnuSend0as0, &mnuSend0asT, &mnuSend0asO, &mnuTX, &mnuAbort, &mnuVersion,
       &ElasticOne1, &ElasticOne2, &ElasticOne3, &sBar}};

  // The window's design: what docking would give a window of design size.
  MemoryPlatform() {
    for (auto [box, name] : {std::pair{&CWTextBox, "CWTextBox"}, std::pair{&CallsignField, "CallsignField"},
                             std::pair{&NameField, "NameField"}, std::pair{&SRXField, "SRXField"}}) {
      box->onFocus = [this, name] { focused = name; };
    }
    sBar.SetVisible(false);
    SRXField.SetText("###");
    Place(sBar, 0, 0, 7125, 315);
    Place(KeyBox, 1200, 0, 375, 255);
    Place(PTTBox, 1560, 0, 255, 255);
    Place(cmbPrevious, 1920, 0, 1335, 315);
    Place(CallsignField, 3240, -10, 1095, 345);
    Place(SRXField, 4440, -15, 700, 345);
    Place(NameField, 5520, -15, 1095, 345);
    Place(ElasticOne3, 0, 2340, 7125, 270);
    Place(ElasticOne2, 0, 2610, 7125, 270);
    Place(ElasticOne1, 0, 2880, 7125, 270);
  }

  static void Place(Placed& control, float left, float top, float width, float height) {
    control.SetLeft(left);
    control.SetTop(top);
    control.SetWidth(width);
    control.SetHeight(height);
  }

  Platform platform() {
    return Platform{controls, clock,     queue,     profile, wallClock,
                    language, parallel,  cwControl, linkChannel, tone,
                    link,     winkey,    macroLoop, calibration};
  }
};

}  // namespace vantrel::platform::memory
