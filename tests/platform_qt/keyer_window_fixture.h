// The keyer with its real Qt window, on virtual time and in-memory ports: a
// transmission runs to its end at once, with no real waiting.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <memory>
#include <string>

#include "app/qt_connect.h"
#include "app/vantrel.h"
#include "platform/memory/memory_dialogs.h"
#include "platform/memory/memory_platform.h"
#include "platform/qt/frm_cw_macro_setup_window.h"
#include "platform/qt/frm_vantrel_window.h"
#include "qt_application.h"
#include "settings/settings_store.h"

namespace vantrel::platform::qt {

inline constexpr const char* kDirectory = "/vantrel";
inline constexpr int16_t kControlRegister = 0x37A;
inline constexpr int kKeyBit = 8;

class FrmVantrelWindowTest : public ::testing::Test {
 protected:
  FrmVantrelWindowTest() : FrmVantrelWindowTest(files, kDirectory) {}
  // The settings in `profile`, under `directory`, instead of in memory.
  FrmVantrelWindowTest(ProfileFile& profile, const std::string& directory) {
    // A logger that answers, so start-up shows no message box to wait on.
    linkChannel.loggerRunning = true;
    keyer = std::make_unique<app::Vantrel>(
        Platform{window.controls(), clock, window.pump(), profile, wallClock, language, parallel,
                 cwControl, linkChannel, sound, link, macroSetup},
        mainwindow::StartupEnvironment{directory, ""});
    app::ConnectWindow(window, *keyer, serialPorts);
  }

  void Start() {
    keyer->form.Form_Load();
    window.widget().show();
    QCoreApplication::processEvents();
  }

  std::string Stored(const std::string& key) {
    return files.GetPrivateProfileString(settings::kMainSection, key, "", 4000,
                                         keyer->store.SettingsFilePath);
  }

  // How often the key line changed on the parallel port.
  int KeyEdges() const {
    int edges = 0;
    int last = parallel.powerOn;
    for (const std::string& line : trace.Events()) {
      if (line.rfind("lpt ", 0) != 0) continue;
      const int value = std::stoi(line.substr(4), nullptr, 16);
      if ((value ^ last) & kKeyBit) ++edges;
      last = value;
    }
    return edges;
  }

  // Before any widget.
  const bool application_ = (testing::EnsureApplication(), true);
  memory::VirtualClock clock;
  memory::Trace trace{[this] { return clock.NowMs(); }};
  memory::MemoryProfileFile files;
  memory::MemoryWallClock wallClock;
  memory::MemoryLanguage language;
  memory::MemoryParallelPort parallel{trace};
  memory::MemorySerialPort cwControl{trace};
  memory::MemoryLinkChannel linkChannel{trace};
  memory::MemorySoundSystem sound{trace};
  memory::RecordingLoggerLink link{trace};
  FrmVantrelWindow window;
  QtMacroSetupWindows macroSetup{window.widget()};
  memory::MemorySerialPortList serialPorts;
  std::unique_ptr<app::Vantrel> keyer;
};

}  // namespace vantrel::platform::qt
