// The keyer with its window: the Linux clock and ports, the settings on disk
// and the Qt widgets, run by Qt's event loop.
#include <QApplication>
#include <QMessageBox>
#include <QPixmap>
#include <QSocketNotifier>
#include <QTimer>
#include <QWidget>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "app/command_line.h"
#include "app/link_window.h"
#include "app/qt_connect.h"
#include "app/vantrel.h"
#include "cwdaemon/cw_daemon.h"
#include "loggerlink/logger_link.h"
#include "platform/linux/comm_port_path.h"
#include "platform/linux/ini_profile_file.h"
#include "platform/linux/line_safety.h"
#include "platform/linux/linux_link_channel.h"
#include "platform/linux/linux_scheduler.h"
#include "platform/linux/linux_serial_ports.h"
#include "platform/linux/linux_system.h"
#include "platform/linux/portaudio_sound.h"
#include "platform/linux/ppdev_parallel_port.h"
#include "platform/linux/profile_claim.h"
#include "platform/linux/termios_serial_port.h"
#include "platform/linux/udp_datagram_socket.h"
#include "platform/qt/frm_cw_macro_setup_window.h"
#include "platform/qt/frm_vantrel_window.h"
#include "platform/qt/qt_descriptor_watch.h"
#include "platform/qt/qt_dialog_controls.h"
#include "settings/settings_store.h"

namespace {

namespace linuxos = vantrel::platform::linuxos;

// How long after start-up the window is grabbed: time for the first paint.
constexpr int kScreenshotDelayMs = 500;
// How often a message box is looked for while a screenshot is being taken.
constexpr int kDismissEveryMs = 50;
// What a termination signal leaves the shutdown, and how often the close is
// asked again meanwhile.
constexpr unsigned kCloseBoundSeconds = 5;
constexpr int kCloseRetryMs = 100;

// The profile's settings file for this keyer alone, or the reason on standard
// error and in a box.
std::optional<linuxos::ProfileClaim> ClaimProfile(const std::string& configDir,
                                                  const std::string& profileName) {
  std::string error;
  auto claim = linuxos::ProfileClaim::Claim(
      vantrel::settings::SettingsFilePathFor(configDir, profileName), error);
  if (!claim) {
    std::fprintf(stderr, "vantrel: %s\n", error.c_str());
    QMessageBox::critical(nullptr, "Vantrel", QString::fromStdString(error));
  }
  return claim;
}

// SIGTERM, SIGINT and SIGHUP (a desktop logout) close the window as the
// operator does, so that the whole shutdown runs. The first close during a
// transmission only stops it, so the close is asked again until it holds.
void CloseOnSignals(QWidget& window) {
  int fds[2];
  if (::pipe2(fds, O_CLOEXEC | O_NONBLOCK) != 0) return;  // the signals then end it at once
  auto* notifier = new QSocketNotifier(fds[0], QSocketNotifier::Read, &window);
  auto* retry = new QTimer(&window);
  retry->setInterval(kCloseRetryMs);
  QObject::connect(retry, &QTimer::timeout, &window, [&window] { window.close(); });
  const int readEnd = fds[0];
  QObject::connect(notifier, &QSocketNotifier::activated, &window, [=, &window] {
    char bytes[16];
    while (::read(readEnd, bytes, sizeof bytes) > 0) {
    }
    notifier->setEnabled(false);
    retry->start();
    window.close();
  });
  linuxos::RequestCloseOnSignals(fds[1], kCloseBoundSeconds);
}

}  // namespace

int main(int argc, char** argv) {
  using vantrel::app::CommandLine;
  const CommandLine arguments =
      vantrel::app::ParseCommandLine(std::vector<std::string>(argv + 1, argv + argc));
  switch (arguments.action) {
    case CommandLine::Action::Help:
      std::fputs(vantrel::app::kUsage, stdout);
      return 0;
    case CommandLine::Action::Version:
      std::puts("vantrel " VANTREL_VERSION);
      return 0;
    case CommandLine::Action::Error:
      std::fprintf(stderr, "vantrel: %s\nTry 'vantrel --help'.\n", arguments.error.c_str());
      return 2;
    case CommandLine::Action::Run:
      break;
  }
  // Qt sees no arguments: they are all ours, and Qt takes its own settings
  // from the environment (QT_QPA_PLATFORM, QT_SCALE_FACTOR, ...).
  int qtArgc = 1;
  QApplication application(qtArgc, argv);
  QApplication::setStyle("Fusion");
  // The logic's text is Latin-1; the command line comes in the locale's.
  const std::string profileName = QString::fromLocal8Bit(arguments.profile).toLatin1().toStdString();
  const QString screenshot = QString::fromLocal8Bit(arguments.screenshot);
  const QString setupShot = QString::fromLocal8Bit(arguments.setupShot);

  std::string error;
  const std::string configDir = linuxos::ConfigDirectory(error);
  if (configDir.empty()) {
    QMessageBox::critical(nullptr, "Vantrel", QString::fromStdString(error));
    return 1;
  }
  const auto claim = ClaimProfile(configDir, profileName);
  if (!claim) return 1;
  linuxos::InstallLineSafety();

  if (!screenshot.isEmpty() || !setupShot.isEmpty()) {
    // Nobody is there to answer the start-up's message box.
    auto* dismiss = new QTimer(&application);
    QObject::connect(dismiss, &QTimer::timeout, [] {
      if (QWidget* box = QApplication::activeModalWidget()) box->close();
    });
    dismiss->start(kDismissEveryMs);
  }

  vantrel::platform::qt::FrmVantrelWindow window;
  linuxos::LinuxScheduler scheduler{linuxos::WaitMode::Sleep};
  linuxos::PpdevParallelPort parallel{linuxos::kParportProcRoot,
                                     linuxos::ParallelDevicePath(configDir)};
  vantrel::platform::qt::QtDescriptorWatch watch;
  linuxos::TermiosSerialPort cwControl(configDir);
  cwControl.UseWatch(watch);
  linuxos::IniProfileFile profile;
  linuxos::LinuxWallClock wallClock;
  linuxos::LinuxLanguage language(configDir);
  linuxos::PortAudioSoundSystem sound;

  vantrel::platform::qt::QtMacroSetupWindows macroSetup{window.widget()};
  linuxos::LinuxLinkChannel linkChannel;
  vantrel::loggerlink::LoggerLinkLogic link{linkChannel, window.controls()};

  const vantrel::platform::Platform platform{
      window.controls(), scheduler, window.pump(), profile,     wallClock,
      language,          parallel,  cwControl,     linkChannel, sound,
      link,              macroSetup};
  vantrel::app::Vantrel keyer(platform, {configDir, profileName});
  const linuxos::LinuxSerialPortList serialPorts(configDir);
  vantrel::app::ConnectWindow(window, keyer, serialPorts);
  // The logger's "Close" closes the window as the operator does; its window
  // states are those of the window manager.
  vantrel::app::FormLinkWindow linkWindow{
      keyer.form, [&window] { window.widget().close(); },
      [&window](int16_t state) {
        if (state == 1) {
          window.widget().showMinimized();
        } else {
          window.widget().showNormal();
        }
      }};
  link.Attach(keyer.link, linkWindow, keyer.winKey);

  keyer.form.Form_Load();
  window.widget().show();
  CloseOnSignals(window.widget());

  // Loggers key it as they key cwdaemon. It listens from inside the event
  // loop, so that a message box about a taken port goes with the window.
  vantrel::platform::qt::QtTimer tuneTimer;
  vantrel::platform::qt::QtTimer replyTimer;
  linuxos::UdpDatagramSocket datagrams{watch};
  vantrel::cwdaemon::CwDaemon daemon{
      {keyer.cw, window.controls(), keyer.control, keyer.text, keyer.form, keyer.store},
      datagrams, tuneTimer, replyTimer};
  QTimer::singleShot(0, [&daemon] { daemon.Listen(); });

  if (!screenshot.isEmpty()) {
    QTimer::singleShot(kScreenshotDelayMs, [&window, &screenshot] {
      if (!window.widget().grab().save(screenshot)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(screenshot));
        QCoreApplication::exit(1);
        return;
      }
      window.widget().close();
    });
  }
  if (!setupShot.isEmpty()) {
    QTimer::singleShot(kScreenshotDelayMs, [&window] { window.menu(vantrel::platform::MenuId::mnuPort).action().trigger(); });
    QTimer::singleShot(2 * kScreenshotDelayMs, [&window, &setupShot] {
      vantrel::platform::qt::DialogWidget* dialog = nullptr;
      for (auto* each : window.widget().findChildren<vantrel::platform::qt::DialogWidget*>()) {
        if (each->isVisible()) dialog = each;
      }
      if (!dialog || !dialog->grab().save(setupShot)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(setupShot));
        QCoreApplication::exit(1);
        return;
      }
      dialog->close();
      window.widget().close();
    });
  }
  return QApplication::exec();
}
