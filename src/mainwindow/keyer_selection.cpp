// Which keyer sends, chosen in the Config menu: a WinKey chip, a WinKey2, or
// the software keyer. The ticks are the whole choice; the speed panel's click
// steps the speed of whichever it is.
#include <cstdint>

#include "mainwindow/frm_vantrel.h"
#include "platform/key_codes.h"
#include "vb/vb.h"
#include "winkey/winkey_protocol.h"

namespace vantrel::mainwindow {
namespace {

constexpr int16_t kSlowest = 10;
constexpr int16_t kFastest = 99;

}  // namespace

void FrmVantrel::mnuWinKey_Click() { SelectKeyer(c_.mnuWinKey, c_.mnuWinKey2, "WinKey"); }

void FrmVantrel::mnuWinKey2_Click() { SelectKeyer(c_.mnuWinKey2, c_.mnuWinKey, "WinKey2"); }

// No host close between the two chips: the new discovery opens whatever is there.
void FrmVantrel::SelectKeyer(platform::MenuItem& clicked, platform::MenuItem& other,
                             const char* keyer) {
  clicked.SetChecked(!clicked.Checked());
  if (!clicked.Checked()) return;
  c_.frmVantrel.SetCaption("Vantrel - WinKey");
  store_.WriteSetting(settings::kMainSection, "Keyer to Use", keyer);
  c_.mnuSoftwareKeyer.SetChecked(false);
  other.SetChecked(false);
  c_.KeyBox.SetPicture(platform::Picture::Red);
  c_.CWTextBox.SetText("");
  winkey_.OpenWinKeyPort();
}

void FrmVantrel::mnuSoftwareKeyer_Click() {
  c_.mnuSoftwareKeyer.SetChecked(!c_.mnuSoftwareKeyer.Checked());
  if (!c_.mnuWinKey.Checked() && !c_.mnuWinKey2.Checked()) return;
  winkey_.CloseWinKeyHost();
  c_.frmVantrel.SetCaption("Vantrel - Software");
  store_.WriteSetting(settings::kMainSection, "Keyer to Use", "Software");
  c_.mnuWinKey.SetChecked(false);
  c_.mnuWinKey2.SetChecked(false);
  c_.PTTBox.SetVisible(true);
  sidetone_.CreateSidetone();
  c_.KeyBox.SetPicture(platform::Picture::Red);
  c_.CWTextBox.SetText("");
  // The chip's speed stays with the chip; the software keyer has its own.
  store_.SettingsSection = settings::kMainSection;
  const double wpm = vb::RoundHalfEven(vb::Val(store_.ReadSetting("WPM", "20")));
  if (wpm >= INT16_MIN && wpm <= INT16_MAX) cw_.WPM = static_cast<int16_t>(wpm);
  cw_.DotTime = core_.ComputeDotLength(cw_.WPM);
  core_.ShowSpeed(cw_.WPM);
  lines_.OpenKeyerPort();
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

// On a chip whose pot has the speed this does nothing.
void FrmVantrel::SetSpeed(int16_t wpm) {
  const bool chip = core_.WinKeyRoute();
  winkey::WinKeySettings& keyer = s_.winKeySettings;
  if (chip && keyer.WinKeyAnalogSpeed) return;
  if (wpm != cw_.WPM) {
    cw_.WPM = wpm;
    cw_.DotTime = core_.ComputeDotLength(cw_.WPM);
    core_.ShowSpeed(cw_.WPM);
    cw_.SavedWPM = cw_.WPM;
    if (chip) keyer.WinKeySpeed = cw_.WPM;
  }
  if (chip) {
    // Written even when the speed stood still: the chip hears it again.
    winkey_.WriteWinKey(std::string{static_cast<char>(winkey::protocol::kBufferedSpeed),
                                    static_cast<char>(cw_.WPM)});
    store_.WriteSetting(settings::kKeyerSection, "WinKey Speed", std::to_string(keyer.WinKeySpeed));
  } else {
    store_.WriteSetting(settings::kMainSection, "WPM", std::to_string(cw_.WPM));
  }
}

}  // namespace vantrel::mainwindow
