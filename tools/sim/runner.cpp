#include "runner.h"

#include "app/link_window.h"
#include "app/menu_handlers.h"
#include "app/vantrel.h"
#include "cwdaemon/cw_daemon.h"
#include "loggerlink/logger_link.h"
#include "macros/frm_assign_key.h"
#include "memory_chip.h"
#include "platform/key_codes.h"
#include "platform/linux/comm_port_path.h"
#include "platform/linux/ini_profile_file.h"
#include "platform/linux/line_safety.h"
#include "platform/linux/linux_link_channel.h"
#include "platform/linux/linux_scheduler.h"
#include "platform/linux/linux_serial_ports.h"
#include "platform/linux/linux_system.h"
#include "platform/linux/portaudio_sound.h"
#include "platform/linux/ppdev_parallel_port.h"
#include "platform/linux/termios_serial_port.h"
#include "platform/linux/udp_datagram_socket.h"
#include "platform/memory/memory_datagram_socket.h"
#include "platform/memory/memory_dialogs.h"
#include "platform/memory/memory_platform.h"
#include "platform/memory/memory_winkey_config.h"
#include "real_time.h"
#include "settings/settings_store.h"
#include "setup/frm_port.h"
#include "vb/vb.h"
#include "winkey/frm_winkey_config.h"

namespace vantrel::sim {
namespace {

// Where the in-memory settings file lives when no folder is given.
constexpr const char* kMemoryDirectory = "/vantrel";
// The sender of the script's datagrams, answered in memory only.
constexpr const char* kScriptPeer = "127.0.0.1:40000";

// The real side of a --real-time run: the wall clock, the scheduler and the ports.
struct RealSystem {
  explicit RealSystem(const std::string& configDir)
      : parallel(platform::linuxos::kParportProcRoot,
                 platform::linuxos::ParallelDevicePath(configDir)),
        serial(configDir),
        udp(time) {
    platform::linuxos::InstallLineSafety();
    serial.UseWatch(time);
  }
  RealQueueTime time;
  platform::linuxos::LinuxScheduler scheduler{platform::linuxos::WaitMode::Sleep};
  platform::linuxos::PpdevParallelPort parallel;
  platform::linuxos::TermiosSerialPort serial;
  platform::linuxos::PortAudioSoundSystem sound;
  platform::linuxos::UdpDatagramSocket udp;
};

class Session {
 public:
  Session(const RunOptions& options, platform::memory::MemoryPlatform& p)
      : options_(options), p_(p) {
    if (options.realTime) {
      real_.emplace(PortDirectory());
    } else {
      chip_.emplace(ChipOptionsFor(options), p.cwControl, p.queue);
    }
    if (options.directory) diskFiles_.emplace(disk_, p.trace);
    if (options.link) realLink_.emplace();
    p.linkChannel.loggerRunning = options.logger;
    p.language.languageId = options.languageId;
    link_.emplace(Channel(), p.controls);
    keyer_.emplace(Platform(), mainwindow::StartupEnvironment{Directory(), options.profile});
    linkWindow_.emplace(
        keyer_->form, [this] { Close(); },
        [this](int16_t state) {
          p_.frmVantrel.minimized = state == 1;
          p_.trace.Emit(state == 1 ? "window minimized" : "window normal");
        });
    link_->Attach(keyer_->link, *linkWindow_, keyer_->winKey);
    app::Vantrel& keyer = *keyer_;
    daemon_.emplace(cwdaemon::DaemonNeighbours{keyer.cw, p.controls, keyer.control, keyer.text,
                                               keyer.form, keyer.store},
                    real_ ? static_cast<platform::DatagramSocket&>(real_->udp)
                          : static_cast<platform::DatagramSocket&>(datagrams_),
                    tuneTimer_, replyTimer_);
    daemon_->OnNotice([&p](const std::string& what, const std::string& text) {
      p.trace.Emit(text.empty() ? what : what + " " + platform::memory::Trace::Quote(text));
    });
    // The window's events that the in-memory controls raise themselves.
    mainwindow::FrmVantrel& form = keyer_->form;
    p.Form_Resize = [&form] { form.Form_Resize(); };
    p.CWTextBox.onGotFocus = [&form] { form.cwTextBox_GotFocus(); };
    p.CallsignField.onGotFocus = [&form] { form.CallsignField_GotFocus(); };
  }

  app::Vantrel& keyer() { return *keyer_; }
  cwdaemon::CwDaemon& daemon() { return *daemon_; }
  bool closed() const { return closed_; }

  void Apply(const ScriptEvent& event);
  // One key of a "type": keys typed together wait in the queue together.
  void TypeCharacter(unsigned char character);

 private:
  platform::TextBox& Box(const std::string& name);
  void KeyDown(int16_t keyCode, int16_t shift);
  void Resize(float width, float height);
  void Menu(platform::MenuId id);
  void OpenAssignKeyDialog();
  void Close();
  void Editor(const ScriptEvent& event);
  void OpenPortDialog();
  const platform::SerialPortList& Ports();
  void OpenChipDialog(bool winKey2);
  // An operator's action on the dialog opened last of those still open; a
  // script error when none is open or it has no such control.
  void DialogAction(const ScriptEvent& event);
  // The logger writes a slot: the text, a NUL, blanks to 64 bytes.
  void LoggerWrites(loggerlink::LinkSlot slot, const std::string& text);
  // The in-memory chip answers as the keyer chosen, unless told otherwise.
  static winkeysim::ChipOptions ChipOptionsFor(const RunOptions& options);
  winkeysim::MemoryChip& Chip(const ScriptEvent& event);

  platform::LinkChannel& Channel() {
    return realLink_ ? static_cast<platform::LinkChannel&>(*realLink_)
                     : static_cast<platform::LinkChannel&>(p_.linkChannel);
  }

  std::string Directory() const { return options_.directory.value_or(kMemoryDirectory); }
  // Real ports are named by links in the real configuration folder.
  std::string PortDirectory() const {
    if (options_.directory) return *options_.directory;
    std::string error;
    return platform::linuxos::ConfigDirectory(error);
  }

  platform::Platform Platform() {
    platform::memory::MemoryPlatform& p = p_;
    platform::ProfileFile& files = diskFiles_ ? static_cast<platform::ProfileFile&>(*diskFiles_)
                                              : static_cast<platform::ProfileFile&>(p.profile);
    // A file on disk is stamped with the real date, one in memory with a fixed one.
    platform::WallClock& calendar = options_.directory
                                        ? static_cast<platform::WallClock&>(wallClock_)
                                        : static_cast<platform::WallClock&>(p.wallClock);
    if (!real_) {
      return platform::Platform{p.controls, p.clock,    p.queue,     files,     calendar,
                                p.language, p.parallel, p.cwControl, Channel(), p.sound,
                                *link_,     p.macroSetup};
    }
    p.queue.UseTime(real_->time);
    realPump_.emplace(real_->time, p.queue);
    return platform::Platform{p.controls,     real_->scheduler, *realPump_,      files,
                              calendar,       p.language,       real_->parallel, real_->serial,
                              Channel(),      real_->sound,     *link_,          p.macroSetup};
  }

  const RunOptions& options_;
  platform::memory::MemoryPlatform& p_;
  std::optional<RealSystem> real_;
  std::optional<RealTimePump> realPump_;
  platform::memory::MemoryDatagramSocket datagrams_;
  platform::memory::MemoryTimer tuneTimer_{p_.queue};
  platform::memory::MemoryTimer replyTimer_{p_.queue};
  std::optional<winkeysim::MemoryChip> chip_;
  platform::linuxos::IniProfileFile disk_;
  std::optional<platform::memory::TracingProfileFile> diskFiles_;
  platform::linuxos::LinuxWallClock wallClock_;
  std::optional<platform::linuxos::LinuxLinkChannel> realLink_;
  std::optional<loggerlink::LoggerLinkLogic> link_;
  std::optional<app::Vantrel> keyer_;
  std::optional<app::FormLinkWindow> linkWindow_;
  std::optional<cwdaemon::CwDaemon> daemon_;
  // The keyer setup dialog, made when first opened.
  std::optional<platform::memory::MemoryKeyerSetup> setup_;
  std::optional<setup::FrmPort> frmPort_;
  platform::memory::MemorySerialPortList memoryPorts_;
  std::optional<platform::linuxos::LinuxSerialPortList> realPorts_;
  // Each chip's dialog, made anew at each opening: its controls and its logic.
  struct ChipDialog {
    std::optional<platform::memory::MemoryWinKeyConfig> controls;
    std::optional<winkey::FrmWinKeyConfig> logic;
  };
  ChipDialog winKeyDialog_, winKey2Dialog_;
  // The Assign INS key dialog, made anew at each opening.
  struct AssignKeyDialog {
    explicit AssignKeyDialog(platform::memory::Trace& trace) : form(trace, "assign-key", 2535, 1800) {}
    platform::memory::MemoryDialogWindow form;
    platform::memory::MemoryListBox List1;
    std::optional<macros::FrmAssignKey> logic;
  };
  std::optional<AssignKeyDialog> assignKey_;
  // The dialogs by the order of their opening, the latest last.
  std::vector<const platform::memory::MemoryDialogWindow*> opened_;
  bool closed_ = false;
};

platform::TextBox& Session::Box(const std::string& name) {
  if (name == "CallsignField") return p_.CallsignField;
  if (name == "NameField") return p_.NameField;
  if (name == "SRXField") return p_.SRXField;
  return p_.CWTextBox;
}

// A key down reaches the handler of the control that has the focus.
void Session::KeyDown(int16_t keyCode, int16_t shift) {
  mainwindow::FrmVantrel& form = keyer_->form;
  if (p_.focused.empty()) return;
  if (p_.focused == "CWTextBox") {
    form.cwTextBox_KeyDown(keyCode, shift);
  } else {
    form.FieldKeyDown(keyCode, shift, p_.focused);
  }
}

// One key that makes a character: key down with its key code, the key press,
// and the character inserted where the caret stands unless it was dropped.
void Session::TypeCharacter(unsigned char character) {
  if (closed_ || p_.focused.empty()) return;
  const auto upper = vb::UCaseAnsi(character);
  const bool named = (upper >= 'A' && upper <= 'Z') || (upper >= '0' && upper <= '9') ||
                     upper == ' ' || upper == '\r';
  const std::string focused = p_.focused;
  if (named) KeyDown(upper == '\r' ? platform::keys::kEnter : upper, 0);
  if (p_.focused != focused) return;  // the key moved the focus and went no further
  int16_t keyAscii = character;
  mainwindow::FrmVantrel& form = keyer_->form;
  if (focused == "CWTextBox") {
    form.cwTextBox_KeyPress(keyAscii);
  } else if (focused == "CallsignField") {
    form.CallsignField_KeyPress(keyAscii);
  } else if (focused == "NameField") {
    form.NameField_KeyPress(keyAscii);
  }
  if (keyAscii >= 32) Box(focused).SetSelText(std::string(1, static_cast<char>(keyAscii)));
}

// The operator drags the frame: the window docks and runs its resize event.
void Session::Resize(float width, float height) {
  p_.frmVantrel.SetWidth(width);
  p_.frmVantrel.SetHeight(height);
}

// Every entry of the window's menu tree.
void Session::Menu(platform::MenuId id) {
  if (id == platform::MenuId::mnuPort) {
    const mainwindow::KeyerKind chosen = keyer_->form.KeyerChosen();
    if (chosen == mainwindow::KeyerKind::Software) {
      OpenPortDialog();
    } else {
      OpenChipDialog(chosen == mainwindow::KeyerKind::WinKey2);
    }
  } else if (id == platform::MenuId::mnuInsKey) {
    OpenAssignKeyDialog();
  } else if (const std::function<void()> handler = app::MenuHandler(*keyer_, id)) {
    handler();
  }
}

// One at a time, as in the window.
void Session::OpenAssignKeyDialog() {
  if (assignKey_ && assignKey_->form.open) return;
  std::erase_if(opened_, [this](auto* form) { return assignKey_ && form == &assignKey_->form; });
  assignKey_.reset();
  assignKey_.emplace(p_.trace);
  AssignKeyDialog& dialog = *assignKey_;
  dialog.logic.emplace(macros::AssignKeyControls{dialog.List1, [&dialog] { dialog.form.Unload(); }},
                       keyer_->window.InsertKeyCode, keyer_->store);
  platform::CenterForm(dialog.form);
  dialog.logic->Form_Load();
  dialog.form.Show();
  opened_.push_back(&dialog.form);
}

void Session::Close() {
  bool cancel = false;
  keyer_->form.Form_QueryUnload(cancel);
  if (!cancel) {
    keyer_->form.Form_Unload();
    closed_ = true;
  }
}

// The serial ports the dialogs offer: the machine's on a real-time run, one
// in-memory port otherwise.
const platform::SerialPortList& Session::Ports() {
  if (!real_) {
    memoryPorts_.ports = {{"Comm1", "in-memory serial port"}};
    return memoryPorts_;
  }
  if (!realPorts_) realPorts_.emplace(PortDirectory());
  return *realPorts_;
}

void Session::OpenPortDialog() {
  app::Vantrel& keyer = *keyer_;
  if (keyer.form.KeyerChosen() != mainwindow::KeyerKind::Software) return;
  if (!setup_) {
    setup_.emplace(p_.trace, p_.queue);
    frmPort_.emplace(setup_->controls(), setup::SetupNeighbours{keyer.cw, keyer.software, keyer.control,
                                                                keyer.lines, keyer.sidetone, keyer.store,
                                                                keyer.calibration, Ports()});
  }
  if (setup_->frmPort.open) return;
  frmPort_->Form_Load();
  setup_->frmPort.Show();
  opened_.push_back(&setup_->frmPort);
}

// As Keyer setup does on a chip: the WinKey2's dialog with WinKey2 ticked,
// the WinKey's with WinKey or no keyer ticked.
void Session::OpenChipDialog(bool winKey2) {
  const mainwindow::KeyerKind chosen = keyer_->form.KeyerChosen();
  if (chosen == mainwindow::KeyerKind::Software || (chosen == mainwindow::KeyerKind::WinKey2) != winKey2) {
    return;
  }
  ChipDialog& dialog = winKey2 ? winKey2Dialog_ : winKeyDialog_;
  if (dialog.controls && dialog.controls->form.open) return;
  app::Vantrel& keyer = *keyer_;
  std::erase_if(opened_, [&dialog](auto* form) { return dialog.controls && form == &dialog.controls->form; });
  dialog.logic.reset();
  dialog.controls.emplace(p_.trace, winKey2);
  dialog.logic.emplace(winKey2 ? winkey::Chip::WinKey2 : winkey::Chip::WinKey, dialog.controls->controls(),
                       winkey::WinKeyConfigNeighbours{keyer.winKeySettings, keyer.store, keyer.winKey, Ports()});
  dialog.logic->Form_Load();
  dialog.controls->form.Show();
  opened_.push_back(&dialog.controls->form);
}

void Session::DialogAction(const ScriptEvent& event) {
  std::erase_if(opened_, [](auto* form) { return !form->open; });
  if (opened_.empty()) throw ScriptError(event.line, event.verb + ": no dialog is open");
  const platform::memory::MemoryDialogWindow* latest = opened_.back();
  const bool click = event.verb == "click";
  const std::string& name = click ? event.argument : event.name;
  bool done = false;
  if (setup_ && latest == &setup_->frmPort) {
    done = click ? setup_->Click(name) : setup_->Enter(name, event.argument);
  } else if (assignKey_ && latest == &assignKey_->form) {
    // A click on an entry of the list, by its position.
    done = !click && name == "List1";
    if (done) assignKey_->List1.SetListIndex(static_cast<int16_t>(std::stoi(event.argument)));
  } else {
    platform::memory::MemoryWinKeyConfig& chip =
        winKeyDialog_.controls && latest == &winKeyDialog_.controls->form ? *winKeyDialog_.controls
                                                                          : *winKey2Dialog_.controls;
    done = click ? chip.Click(name) : chip.Enter(name, event.argument);
  }
  if (!done) {
    throw ScriptError(event.line, click ? "the open dialog has no button or check box '" + name + "'"
                                        : "the open dialog has no control '" + name + "' that takes '" +
                                              event.argument + "'");
  }
}

void Session::LoggerWrites(loggerlink::LinkSlot slot, const std::string& text) {
  std::string bytes = text;
  if (bytes.size() < loggerlink::kSlotText) bytes.push_back('\0');
  bytes.resize(loggerlink::kSlotText, ' ');
  const auto offset = static_cast<int32_t>(slot) * loggerlink::kSlotSpacing;
  if (realLink_) {
    // Through the keyer's own view of the logger's memory, if it has one.
    realLink_->WriteView(keyer_->link.LinkView, offset, bytes.data(), loggerlink::kSlotText);
  } else {
    p_.linkChannel.LoggerWrites(static_cast<int32_t>(slot), text);
  }
}

winkeysim::ChipOptions Session::ChipOptionsFor(const RunOptions& options) {
  winkeysim::ChipOptions chip;
  for (const auto& [key, value] : options.settings) {
    if (vb::UCase(key) != "KEYER TO USE") continue;
    chip.revision = vb::UCase(value) == "WINKEY2" ? winkeysim::chip::kWinKey2Revision
                                                  : winkeysim::chip::kWinKeyRevision;
  }
  if (options.chipRevision) chip.revision = *options.chipRevision;
  return chip;
}

winkeysim::MemoryChip& Session::Chip(const ScriptEvent& event) {
  if (!chip_) throw ScriptError(event.line, event.verb + " works on the in-memory chip only");
  return *chip_;
}

// What the operator does in the open macro editor.
void Session::Editor(const ScriptEvent& event) {
  if (!p_.macroSetup.Loaded()) {
    throw ScriptError(event.line, event.verb + ": no macro editor is open");
  }
  platform::memory::MemoryMacroSetupDialog& dialog = p_.macroSetup.dialog();
  platform::memory::MemoryEditBox& box =
      event.name == "CaptionText" ? dialog.CaptionText : dialog.MacroText;
  if (event.verb == "editor-field") {
    box.SetText(event.argument);
  } else if (event.verb == "editor-type") {
    box.Type(event.argument);
  } else if (event.verb == "editor-click") {
    dialog.Button(event.name)->Click();
  } else if (event.argument == "enter") {
    dialog.Hbutton1.MouseEnter();
  } else {
    dialog.Hbutton1.MouseLeave();
  }
}

void Session::Apply(const ScriptEvent& event) {
  if (closed_) return;
  app::Vantrel& keyer = *keyer_;
  if (event.verb == "send") {
    p_.CWTextBox.SetText(event.argument);
  } else if (event.verb == "append") {
    // As typing does: at the end, in the colour of unsent text.
    p_.CWTextBox.SetSelStart(static_cast<int>(p_.CWTextBox.Text().size()));
    p_.CWTextBox.SetSelColor(keyer.cw.TextForeColor);
    p_.CWTextBox.SetSelText(event.argument);
  } else if (event.verb == "key") {
    KeyDown(static_cast<int16_t>(event.first), static_cast<int16_t>(event.second));
  } else if (event.verb == "paste") {
    p_.frmVantrel.clipboard = event.argument;
    keyer.form.cwTextBox_MouseDown(platform::keys::kRightButton);
    keyer.form.cwTextBox_MouseUp(platform::keys::kRightButton);
  } else if (event.verb == "focus") {
    Box(event.name).SetFocus();
  } else if (event.verb == "field") {
    Box(event.name).SetText(event.argument);
  } else if (event.verb == "resize") {
    Resize(static_cast<float>(event.first), static_cast<float>(event.second));
  } else if (event.verb == "minimize") {
    p_.frmVantrel.minimized = true;
    keyer.form.Form_Resize();
  } else if (event.verb == "close") {
    Close();
  } else if (event.verb == "control" && !event.name.empty()) {
    DialogAction(event);
  } else if (event.verb == "control") {
    LoggerWrites(loggerlink::LinkSlot::LinkControl, event.argument);
  } else if (event.verb == "dialog" && event.argument == "port") {
    OpenPortDialog();
  } else if (event.verb == "dialog") {
    OpenChipDialog(event.argument == "winkey2");
  } else if (event.verb == "click") {
    DialogAction(event);
  } else if (event.verb == "slot") {
    LoggerWrites(static_cast<loggerlink::LinkSlot>(event.first), event.argument);
  } else if (event.verb == "button") {
    // A left click as the window delivers it: press, release, click.
    const auto index = static_cast<int16_t>(event.first);
    keyer.mMacros.btnf_MouseDown(index, platform::keys::kLeftButton);
    keyer.mMacros.btnf_MouseUp(index, platform::keys::kLeftButton);
    keyer.mMacros.btnF_Click(index);
  } else if (event.verb == "macro") {
    keyer.macros.MacroTexts.at(static_cast<size_t>(event.first)) = event.argument;
  } else if (event.verb == "editor") {
    // A right click: the press closes any open editor, the release opens this one.
    keyer.mMacros.btnf_MouseDown(static_cast<int16_t>(event.first), 2);
    keyer.mMacros.btnf_MouseUp(static_cast<int16_t>(event.first), 2);
  } else if (event.verb.rfind("editor-", 0) == 0) {
    Editor(event);
  } else if (event.verb == "pick-color") {
    p_.CommonDialog1.colours.push_back(event.first);
  } else if (event.verb == "pick-font") {
    p_.CommonDialog1.fonts.push_back(platform::FontChoice{
        event.argument, static_cast<float>(event.size),
        event.name == "bold" || event.name == "bold-italic",
        event.name == "italic" || event.name == "bold-italic", event.first});
  } else if (event.verb == "wait") {
    // Looks again a little later for as long as something goes out or a loop waits.
    constexpr int64_t kLookAgainNs = 200'000'000;
    const sending::CwState& cw = keyer.cw;
    if (cw.Tx == sending::TxState::Sending || cw.LoopDelay > 0) {
      p_.queue.Post(p_.queue.time().NowNs() + kLookAgainNs, [this, &event] { Apply(event); });
    }
  } else if (event.verb == "chip") {
    Chip(event);
    p_.cwControl.Deliver(event.argument);
  } else if (event.verb == "paddle") {
    Chip(event).Paddle();
  } else if (event.verb == "udp") {
    if (real_) {
      daemon_->Receive(event.argument, "script");
    } else {
      datagrams_.Deliver(event.argument, kScriptPeer);
    }
  } else if (event.verb == "speed") {
    p_.sBar.Click(static_cast<int16_t>(event.first));
  } else if (event.verb == "unplug") {
    if (real_) throw ScriptError(event.line, "unplug works on the in-memory ports only");
    p_.cwControl.Unplug();
    p_.parallel.Unplug();
  } else if (event.verb == "menu") {
    Menu(event.menu);
  }
}

}  // namespace

void Run(const RunOptions& options, const std::vector<ScriptEvent>& events,
         const std::function<void(const std::string&)>& out) {
  platform::memory::MemoryPlatform p;
  p.trace.SetMuted(options.quiet);
  p.trace.SetSink([&](const std::string& line) {
    if (!options.untilNs || p.queue.time().NowNs() <= *options.untilNs) out(line);
  });
  Session session(options, p);
  app::Vantrel& keyer = session.keyer();

  // The settings go into the file before start-up reads it, as an edit would.
  if (!options.settings.empty()) {
    keyer.store.LocateSettingsFile(options.directory.value_or(kMemoryDirectory), options.profile);
    for (const auto& [key, value] : options.settings) {
      keyer.store.WriteSetting(app::SectionOf(key), key, value);
    }
  }
  keyer.text.OnMark([&p](int16_t position) { p.trace.Emit("mark " + std::to_string(position)); });
  keyer.mMacros.OnNotice([&p](const std::string& notice) { p.trace.Emit(notice); });
  keyer.winKey.OnWrite([&p](const std::string& bytes) { p.trace.Emit("winkey " + platform::memory::Trace::Hex(bytes)); });
  keyer.form.Form_Load();
  session.daemon().Listen();

  for (const ScriptEvent& event : events) {
    if (event.verb == "type") {
      // Each key its own event, queued at once, as keys typed together are.
      for (const char character : event.argument) {
        p.queue.Post(event.atNs, [&session, character] {
          session.TypeCharacter(static_cast<unsigned char>(character));
        });
      }
    } else {
      p.queue.Post(event.atNs, [&session, &event] { session.Apply(event); });
    }
  }
  p.queue.RunPosted(options.untilNs);
}

}  // namespace vantrel::sim
