#include "mainwindow/frm_vantrel.h"

#include <algorithm>

#include "vb/vb.h"

namespace vantrel::mainwindow {
namespace {

constexpr int32_t kPollInterval = 200;
constexpr int16_t kFirstMenuString = 9501;

}  // namespace

FrmVantrel::FrmVantrel(const platform::Platform& platform, ProgramState state, Keyers keyers,
                       sending::KeyLineDriver& lines, platform::ToneOutput& sidetone,
                       settings::SettingsStore& store, platform::MacroLoop& macroLoop,
                       StartupEnvironment environment)
    : p_(platform),
      c_(platform.controls),
      s_(state),
      cw_(state.cw),
      keyers_(keyers),
      control_(keyers.control),
      lines_(lines),
      sidetone_(sidetone),
      store_(store),
      macroLoop_(macroLoop),
      chip_(keyers.chip),
      environment_(std::move(environment)) {
  c_.CWTextBox.OnChange([this] { CWTextBox_Change(); });
  c_.Timer1.OnTimer([this] { Timer1_Timer(); });
  c_.CallsignField.OnChange([this] { CallsignField_Change(); });
  c_.NameField.OnChange([this] { NameField_Change(); });
  c_.SRXField.OnChange([this] { SRXField_Change(); });
  c_.cmbPrevious.OnClick([this] { cmbPrevious_Click(); });
  c_.sBar.OnClick([this](int16_t button) { StepSpeedFromPanel(button); });
  c_.Timer1.SetInterval(kPollInterval);
  // A port that fails or is reopened under a transmission ends it as a close
  // request does; the report is then text like any other.
  lines_.OnPortLost([this](const std::string& report) {
    keyers_.software.Stop();
    c_.CWTextBox.SetText(report);
  });
}

void FrmVantrel::LoadLanguageModule() {
  const std::string name = std::to_string(p_.language.GetThreadLocale()) + ".DLL";
  LanguageModule = p_.language.LoadLibrary(name);
}

std::string FrmVantrel::LoadLanguageString(int16_t id, bool keepBlanks) {
  std::string text = p_.language.LoadString(LanguageModule, id);
  text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());
  return keepBlanks ? text : vb::Trim(text);
}

void FrmVantrel::Form_Load() {
  LoadLanguageModule();
  if (LanguageModule > 0) {
    for (size_t i = 0; i < c_.Controls.size(); ++i) {
      auto* menu = dynamic_cast<platform::MenuItem*>(c_.Controls[i]);
      if (!menu) continue;
      const std::string caption =
          LoadLanguageString(static_cast<int16_t>(kFirstMenuString + i), false);
      if (!caption.empty()) menu->SetCaption(caption);
    }
  }
  c_.frmVantrel.SetMousePointer(platform::MousePointer::Hourglass);
  cw_.TimerFrequency = p_.scheduler.QueryPerformanceFrequency();
  cw_.IsNT = p_.scheduler.IsWindowsNT();
  c_.mnuVersion.SetCaption(c_.mnuVersion.Caption() + " " VANTREL_VERSION);
  s_.link.LoggerWindow = p_.linkChannel.FindWindow(kLoggerCaption);
  c_.SRXField.SetWidth(0);
  store_.LocateSettingsFile(environment_.programDirectory, environment_.commandLine);
  c_.CWTextBox.SetText("");
  c_.NameField.SetText("");
  c_.mnuTX.SetEnabled(false);
  c_.mnuAbort.SetEnabled(false);
  c_.PTTBox.SetPicture(platform::Picture::Red);
  c_.KeyBox.SetPicture(platform::Picture::Red);
  s_.link.LinkMessage = p_.linkChannel.RegisterWindowMessage(kLinkName);

  loadSettings_();

  UseTickedKeyer();
  control_.keyer().Open();
  c_.CallsignField.SetVisible(true);
  c_.cmbPrevious.SetVisible(true);
  c_.CWTextBox.SetFocus();
  c_.mnuDedicatedSerialPort.SetChecked(p_.cwControl.PortOpen());
  OpenLink();
  p_.link.PollLink();
  StartupDone = true;
  c_.frmVantrel.SetMousePointer(platform::MousePointer::Default);
  c_.Timer1.SetEnabled(true);
  if (s_.window.OnTop) {
    c_.mnuOnTop.SetChecked(true);
    c_.frmVantrel.SetTopmost(true);
  }
  cw_.LanguageId = p_.language.GetUserDefaultLangID();
  p_.pump.DoEvents();
}

// Without the logger the keyer goes on alone, after one box that says so.
void FrmVantrel::OpenLink() {
  constexpr const char* kTitle = "You can't get there from here";
  s_.link.LinkMapping = p_.linkChannel.OpenFileMapping(kLinkName);
  if (s_.link.LinkMapping == 0) {
    c_.frmVantrel.SetMousePointer(platform::MousePointer::Default);
    c_.frmVantrel.MsgBox("OpenFileMapping API failed, is Hallowick running?",
                         platform::kMsgBoxExclamation, kTitle);
    return;
  }
  s_.link.LinkView = p_.linkChannel.MapViewOfFile(s_.link.LinkMapping);
  if (s_.link.LinkView == 0) {
    c_.frmVantrel.SetMousePointer(platform::MousePointer::Default);
    c_.frmVantrel.MsgBox("MapViewOfFile API failed.", platform::kMsgBoxOkOnly, kTitle);
  }
}

void FrmVantrel::Form_QueryUnload(bool& cancel) {
  if (!cw_.Transmitting()) return;
  control_.StopTransmission();
  cancel = true;
}

void FrmVantrel::Form_Unload() {
  keyers_.software.RestorePriority();
  if (cw_.SidetoneEnabled) keyers_.software.SidetoneOff();
  c_.CWTextBox.SetText("");
  control_.StopSending();
  c_.Timer1.SetEnabled(false);
  p_.linkChannel.UnmapViewOfFile(s_.link.LinkView);
  p_.linkChannel.CloseHandle(s_.link.LinkMapping);
  chip_.CloseWinKeyHost();
  if (p_.cwControl.PortOpen()) p_.cwControl.SetPortOpen(false);
  p_.parallel.Release();
  if (!c_.frmVantrel.Minimized()) {
    const platform::Window& window = c_.frmVantrel;
    store_.WriteSetting(settings::kMainSection, "Top", vb::CStr(window.Top()));
    store_.WriteSetting(settings::kMainSection, "Left", vb::CStr(window.Left()));
    store_.WriteSetting(settings::kMainSection, "Height", vb::CStr(window.Height()));
    store_.WriteSetting(settings::kMainSection, "Width", vb::CStr(window.Width()));
  }
  sidetone_.ReleaseSidetone();
}

void FrmVantrel::Timer1_Timer() {
  p_.link.PollLink();
  chip_.WatchWinKeySilence();
}

void FrmVantrel::CWTextBox_Change() {
  if (!KeyerTakesText()) return;
  if (c_.CWTextBox.Text().empty() || !StartupDone) return;

  if (cw_.WaitingForText() && cw_.SlowTyping) {
    control_.keyer().ResumeRun();
    return;
  }
  if (cw_.Transmitting()) return;
  if (c_.mnuMOX.Checked()) {
    c_.mnuTX.SetEnabled(true);
  } else {
    control_.keyer().StartRun();
  }
}

}  // namespace vantrel::mainwindow
