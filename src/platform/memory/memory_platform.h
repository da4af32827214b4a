// The whole platform in memory, on virtual time, with every observable event
// in one trace: what the tests and the headless runner run the keyer on.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "platform/main_window_design.h"
#include "platform/memory/event_queue.h"
#include "platform/memory/memory_controls.h"
#include "platform/memory/memory_link_channel.h"
#include "platform/memory/memory_macro_setup.h"
#include "platform/memory/memory_ports.h"
#include "platform/memory/memory_profile_file.h"
#include "platform/memory/memory_sound.h"
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

  // At its design size, as the window comes up.
  MemoryWindow frmVantrel{trace, "", 7125, 3150};
  MemoryTextBox CWTextBox{trace};
  MemoryTextBox CallsignField{trace, 0, "CallsignField", "field CallsignField"};
  MemoryTextBox NameField{trace, 0, "NameField", "field NameField"};
  MemoryTextBox SRXField{trace, 0, "SRXField", "field SRXField"};
  MemoryComboBox cmbPrevious;
  // Every entry of the menu tree; the logic's also by a member each.
  std::map<MenuId, MemoryMenuItem> menus = MenusOfTheTree(trace);
  MemoryMenuItem& mnuTX = menus.at(MenuId::mnuTX);
  MemoryMenuItem& mnuAbort = menus.at(MenuId::mnuAbort);
  MemoryMenuItem& mnuConfig = menus.at(MenuId::mnuConfig);
  MemoryMenuItem& mnuView = menus.at(MenuId::mnuView);
  MemoryMenuItem& mnuKeying = menus.at(MenuId::mnuKeying);
  MemoryMenuItem& mnuVOX = menus.at(MenuId::mnuVOX);
  MemoryMenuItem& mnuMOX = menus.at(MenuId::mnuMOX);
  MemoryMenuItem& mnuDedicatedSerialPort = menus.at(MenuId::mnuDedicatedSerialPort);
  MemoryMenuItem& mnuWinKey = menus.at(MenuId::mnuWinKey);
  MemoryMenuItem& mnuWinKey2 = menus.at(MenuId::mnuWinKey2);
  MemoryMenuItem& mnuSoftwareKeyer = menus.at(MenuId::mnuSoftwareKeyer);
  MemoryMenuItem& mnuOnTop = menus.at(MenuId::mnuOnTop);
  MemoryMenuItem& mFkeys = menus.at(MenuId::mFkeys);
  MemoryMenuItem& mAFkeys = menus.at(MenuId::mAFkeys);
  MemoryMenuItem& mSFkeys = menus.at(MenuId::mSFkeys);
  MemoryMenuItem& mnuShowCallsign = menus.at(MenuId::mnuShowCallsign);
  MemoryMenuItem& mnuShowSRX = menus.at(MenuId::mnuShowSRX);
  MemoryMenuItem& mnuSend0as0 = menus.at(MenuId::mnuSend0as0);
  MemoryMenuItem& mnuSend0asT = menus.at(MenuId::mnuSend0asT);
  MemoryMenuItem& mnuSend0asO = menus.at(MenuId::mnuSend0asO);
  MemoryMenuItem& mnuVersion = menus.at(MenuId::mnuVersion);
  MemoryPlacedControl ElasticOne1;
  MemoryPlacedControl ElasticOne2;
  MemoryPlacedControl ElasticOne3;
  MemoryPlacedControl ElasticOne4;  // around the box: no logic reaches it
  MemoryButtonArray btnf;
  MemoryStatusPanel sBar{trace};
  MemoryPictureBox KeyBox{trace, "keybox"};
  MemoryPictureBox PTTBox{trace, "pttbox"};
  MemoryTimer Timer1{queue};
  MemoryTimer LoopTimer{queue};
  MemoryCommonDialog CommonDialog1{trace};
  // The window's resize event, after docking.
  std::function<void()> Form_Resize;
  // The text control that has the keyboard; none until start-up gives it.
  std::string focused;

  MemoryParallelPort parallel{trace};
  MemorySerialPort cwControl{trace};
  MemoryLinkChannel linkChannel{trace};
  MemorySoundSystem sound{trace};
  RecordingLoggerLink link{trace};
  MemoryMacroSetup macroSetup{trace};

  MainWindowControls controls{
      frmVantrel,  CWTextBox,   CallsignField, NameField,   SRXField,  cmbPrevious,
      mnuTX,       mnuAbort,    mnuConfig,     mnuView,     mnuKeying, mnuVOX,
      mnuMOX,      mnuDedicatedSerialPort,     mnuWinKey,   mnuWinKey2, mnuSoftwareKeyer,
      mnuOnTop,    mFkeys,      mAFkeys,       mSFkeys,     mnuShowCallsign, mnuShowSRX,
      mnuSend0as0, mnuSend0asT, mnuSend0asO,   mnuVersion,  ElasticOne1, ElasticOne2,
      ElasticOne3, btnf,        sBar,          KeyBox,      PTTBox,    Timer1, LoopTimer, CommonDialog1,
      ControlOrder([this](std::string_view name) -> Control& { return Named(name); },
                   [this](MenuId id) -> Control& { return menus.at(id); })};

  // The window's design: what docking would give a window of design size.
  MemoryPlatform() {
    trace.OnAction([this] { clock.ChargeAction(); });
    for (auto [box, name] : {std::pair{&CWTextBox, "CWTextBox"}, std::pair{&CallsignField, "CallsignField"},
                             std::pair{&NameField, "NameField"}, std::pair{&SRXField, "SRXField"}}) {
      box->onFocus = [this, box = box, name = name] {
        if (focused == name) return;
        focused = name;
        if (box->onGotFocus) box->onGotFocus();
      };
    }
    // Docking: the tool bar and the rows take the window's width, before
    // the window's own resize event runs.
    frmVantrel.onResize = [this] {
      for (Placed* panel : {static_cast<Placed*>(&sBar), static_cast<Placed*>(&ElasticOne1),
                            static_cast<Placed*>(&ElasticOne2), static_cast<Placed*>(&ElasticOne3),
                            static_cast<Placed*>(&ElasticOne4)}) {
        panel->SetWidth(frmVantrel.Width());
      }
      if (Form_Resize) Form_Resize();
    };
    sBar.SetVisible(false);
    SRXField.SetText("###");
    Place(sBar, 0, 0, 7125, 315);
    Place(KeyBox, 1200, 0, 375, 255);
    Place(PTTBox, 1560, 0, 255, 255);
    Place(cmbPrevious, 1920, 0, 1335, 315);
    Place(CallsignField, 3240, -10, 1095, 345);
    Place(SRXField, 4440, -15, 700, 345);
    Place(NameField, 5520, -15, 1095, 345);
    Place(ElasticOne4, 0, 315, 7125, 2025);
    Place(ElasticOne3, 0, 2340, 7125, 270);
    Place(ElasticOne2, 0, 2610, 7125, 270);
    Place(ElasticOne1, 0, 2880, 7125, 270);
  }

  static std::map<MenuId, MemoryMenuItem> MenusOfTheTree(Trace& trace) {
    std::map<MenuId, MemoryMenuItem> menus;
    for (const MenuEntry& entry : kMenuTree) {
      menus.try_emplace(entry.id, trace, entry.name, entry.caption);
    }
    return menus;
  }

  Control& Named(std::string_view name) {
    const std::map<std::string_view, Control*> others{
        {"CWTextBox", &CWTextBox},     {"CallsignField", &CallsignField},
        {"NameField", &NameField},     {"SRXField", &SRXField},
        {"cmbPrevious", &cmbPrevious}, {"ElasticOne1", &ElasticOne1},
        {"ElasticOne2", &ElasticOne2}, {"ElasticOne3", &ElasticOne3},
        {"ElasticOne4", &ElasticOne4}, {"sBar", &sBar}};
    return *others.at(name);
  }

  static void Place(Placed& control, float left, float top, float width, float height) {
    control.SetLeft(left);
    control.SetTop(top);
    control.SetWidth(width);
    control.SetHeight(height);
  }

  Platform platform() {
    return Platform{controls, clock,     queue,     profile, wallClock,
                    language, parallel,  cwControl, linkChannel, sound,
                    link,     macroSetup};
  }
};

}  // namespace vantrel::platform::memory
