// Which keyer sends, chosen in the Config menu: a WinKey chip, a WinKey2, or
// the software keyer. The ticks are the whole choice, and this file the only
// reader of them: each change turns them into the keyer in use, which the
// rest of the keyer then asks.
#include <cstdint>

#include "mainwindow/frm_vantrel.h"
#include "platform/key_codes.h"
#include "vb/vb.h"

namespace vantrel::mainwindow {
namespace {

constexpr int16_t kSlowest = 10;
constexpr int16_t kFastest = 99;

}  // namespace

void FrmVantrel::UseTickedKeyer() {
  keyerKind_ = c_.mnuWinKey.Checked()          ? KeyerKind::WinKey
               : c_.mnuWinKey2.Checked()       ? KeyerKind::WinKey2
               : c_.mnuSoftwareKeyer.Checked() ? KeyerKind::Software
                                               : KeyerKind::None;
  const bool chip = keyerKind_ == KeyerKind::WinKey || keyerKind_ == KeyerKind::WinKey2;
  chip_.SetModel(keyerKind_ == KeyerKind::WinKey    ? winkey::ChipModel::WinKey
                 : keyerKind_ == KeyerKind::WinKey2 ? winkey::ChipModel::WinKey2
                                                    : winkey::ChipModel::None);
  control_.Use(chip ? static_cast<sending::Keyer&>(chip_) : keyers_.software);
}

// An open chip takes text even when no tick is left.
bool FrmVantrel::KeyerTakesText() const {
  return keyerKind_ == KeyerKind::Software || chip_.WinKeyOpen();
}

void FrmVantrel::mnuWinKey_Click() { SelectKeyer(c_.mnuWinKey, c_.mnuWinKey2, "WinKey"); }

void FrmVantrel::mnuWinKey2_Click() { SelectKeyer(c_.mnuWinKey2, c_.mnuWinKey, "WinKey2"); }

// No host close between the two chips: the new discovery opens whatever is there.
void FrmVantrel::SelectKeyer(platform::MenuItem& clicked, platform::MenuItem& other,
                             const char* keyer) {
  clicked.SetChecked(!clicked.Checked());
  if (!clicked.Checked()) {
    UseTickedKeyer();
    return;
  }
  c_.frmVantrel.SetCaption("Vantrel - WinKey");
  store_.WriteSetting(settings::kMainSection, "Keyer to Use", keyer);
  c_.mnuSoftwareKeyer.SetChecked(false);
  other.SetChecked(false);
  UseTickedKeyer();
  c_.KeyBox.SetPicture(platform::Picture::Red);
  c_.CWTextBox.SetText("");
  chip_.Open();
}

void FrmVantrel::mnuSoftwareKeyer_Click() {
  const bool fromChip = c_.mnuWinKey.Checked() || c_.mnuWinKey2.Checked();
  c_.mnuSoftwareKeyer.SetChecked(!c_.mnuSoftwareKeyer.Checked());
  if (!fromChip) {
    UseTickedKeyer();
    return;
  }
  chip_.Close();
  c_.frmVantrel.SetCaption("Vantrel - Software");
  store_.WriteSetting(settings::kMainSection, "Keyer to Use", "Software");
  c_.mnuWinKey.SetChecked(false);
  c_.mnuWinKey2.SetChecked(false);
  UseTickedKeyer();
  c_.PTTBox.SetVisible(true);
  sidetone_.CreateSidetone();
  c_.KeyBox.SetPicture(platform::Picture::Red);
  c_.CWTextBox.SetText("");
  // The chip's speed stays with the chip; the software keyer has its own.
  store_.SettingsSection = settings::kMainSection;
  const double wpm = vb::RoundHalfEven(vb::Val(store_.ReadSetting("WPM", "20")));
  if (wpm >= INT16_MIN && wpm <= INT16_MAX) cw_.WPM = static_cast<int16_t>(wpm);
  cw_.DotTime = cw_.DotLength(cw_.WPM);
  control_.ShowSpeed(cw_.WPM);
  lines_.OpenKeyerPort();
}

// The software keyer's port opens and closes; a chip's closes, or opens with
// a discovery (also with no tick left, as the chip's port is the last one used).
void FrmVantrel::mnuDedicatedSerialPort_Click() {
  platform::SerialPort& port = p_.cwControl;
  port.ClearError();
  if (keyerKind_ == KeyerKind::Software) {
    port.SetPortOpen(!c_.mnuDedicatedSerialPort.Checked());
  } else if (port.PortOpen()) {
    port.SetPortOpen(false);
    c_.KeyBox.SetPicture(platform::Picture::Red);
  } else {
    chip_.OpenWinKeyPort();
  }
  c_.mnuDedicatedSerialPort.SetChecked(port.PortOpen());
  if (!port.Error().empty()) lines_.ReportPortError();
}

// The left button slows by one, any other speeds up.
void FrmVantrel::StepSpeedFromPanel(int16_t Button) {
  int16_t wpm = cw_.WPM;
  if (Button == platform::keys::kLeftButton) {
    if (wpm > kSlowest) --wpm;
  } else if (wpm < kFastest) {
    ++wpm;
  }
  SetSpeed(wpm);
}

}  // namespace vantrel::mainwindow
