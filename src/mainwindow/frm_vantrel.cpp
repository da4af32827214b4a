#include "mainwindow/frm_vantrel.h"

#include "settings/load_settings.h"

namespace vantrel::mainwindow {

FrmVantrel::FrmVantrel(platform::MainWindowControls& controls, platform::Scheduler& scheduler,
                       sending::CwState& cw, sending::SendingCore& core,
                       settings::SettingsStore& store, platform::WinKeyLink& winkey,
                       platform::LoggerLink& link)
    : c_(controls),
      scheduler_(scheduler),
      cw_(cw),
      core_(core),
      store_(store),
      winkey_(winkey),
      link_(link) {
  c_.CWTextBox.OnChange([this] { CWTextBox_Change(); });
  c_.Timer1.OnTimer([this] { Timer1_Timer(); });
}

void FrmVantrel::Form_Load(int16_t languageId) {
  constexpr int32_t kPollInterval = 200;
  cw_.TimerFrequency = scheduler_.QueryPerformanceFrequency();
  cw_.IsNT = scheduler_.IsWindowsNT();
  c_.CWTextBox.SetText("");
  cw_.Transmitting = false;
  c_.mnuTX.SetEnabled(false);
  c_.mnuAbort.SetEnabled(false);
  settings::LoadSettings(store_, cw_, c_, core_);
  StartupDone = true;
  c_.Timer1.SetInterval(kPollInterval);
  c_.Timer1.SetEnabled(true);
  cw_.LanguageId = languageId;
}

void FrmVantrel::Timer1_Timer() { link_.PollLink(); }

void FrmVantrel::CWTextBox_Change() {
  if (!c_.mnuSoftwareKeyer.Checked() && !winkey_.WinKeyOpen()) return;
  if (c_.CWTextBox.Text().empty() || !StartupDone) return;

  const bool holding = cw_.Transmitting && cw_.SlowTyping && cw_.WaitingForText;
  if (holding) {
    core_.ResumeTransmission();
    return;
  }
  if (cw_.Transmitting) return;
  if (c_.mnuMOX.Checked()) {
    c_.mnuTX.SetEnabled(true);
  } else if (core_.WinKeyRoute()) {
    if (winkey_.PortOpen()) winkey_.StartWinKeyRun();
  } else {
    core_.StartNewTransmission();
  }
}

}  // namespace vantrel::mainwindow
