#include "winkey/frm_winkey_config.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "settings/settings_store.h"
#include "vb/vb.h"

namespace vantrel::winkey {
namespace {

// A double as the labels show it: the shortest form, no trailing zeros.
std::string NumberText(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.15g", value);
  return text;
}

const char* TrueFalse(bool value) { return value ? "True" : "False"; }

// A stored index outside the list selects nothing.
void SelectIndex(platform::ComboBox& list, int16_t index) {
  list.SetListIndex(index >= 0 && index < list.ListCount() ? index : static_cast<int16_t>(-1));
}

// With nothing selected the value in force stays.
int16_t Chosen(const platform::ComboBox& list, int16_t current) {
  return list.ListIndex() >= 0 ? list.ListIndex() : current;
}

}  // namespace

const std::array<const char*, 4> FrmWinKeyConfig::kKeyModes{"Iambic A", "Iambic B", "Ultimatic", "Bug Mode"};
const std::array<const char*, 10> FrmWinKeyConfig::kWinKeyTones{"375", "417", "469",  "535",  "625",
                                                                "752", "940", "1252", "1879", "3759"};
const std::array<const char*, 10> FrmWinKeyConfig::kWinKey2Tones{"400", "444",  "500",  "571",  "666",
                                                                 "800", "1000", "1333", "2000", "4000"};
const std::array<const char*, 4> FrmWinKeyConfig::kWordSpaces{"1.0", "1.33", "1.66", "2.0"};
const std::array<const char*, 3> FrmWinKeyConfig::kPaddleModes{"Normal", "Dahs with both paddles pressed",
                                                               "Dits with both paddles pressed"};

FrmWinKeyConfig::FrmWinKeyConfig(Chip chip, platform::WinKeyConfigControls controls,
                                 WinKeyConfigNeighbours neighbours)
    : chip_(chip), c_(controls), n_(neighbours) {
  c_.ARButton1.OnClick([this] { ARButton1_Click(); });
  c_.btnCancel.OnClick([this] { btnCancel_Click(); });
  const std::pair<platform::Slider*, void (FrmWinKeyConfig::*)()> sliders[] = {
      {&c_.Slider3, &FrmWinKeyConfig::Slider3_Change},   {&c_.Slider4, &FrmWinKeyConfig::Slider4_Change},
      {&c_.Slider1, &FrmWinKeyConfig::Slider1_Change},   {&c_.Slider5, &FrmWinKeyConfig::Slider5_Change},
      {&c_.Slider11, &FrmWinKeyConfig::Slider11_Change}, {&c_.Slider2, &FrmWinKeyConfig::Slider2_Change},
      {&c_.Slider6, &FrmWinKeyConfig::Slider6_Change},   {&c_.Slider7, &FrmWinKeyConfig::Slider7_Change},
      {&c_.Slider8, &FrmWinKeyConfig::Slider8_Change},   {&c_.Slider9, &FrmWinKeyConfig::Slider9_Change},
      {&c_.Slider10, &FrmWinKeyConfig::Slider10_Change}};
  for (const auto& [slider, handler] : sliders) slider->OnChange([this, handler = handler] { (this->*handler)(); });
  for (platform::CheckBox* box : {&c_.ckWinKeyPTT, &c_.ckWinKeySideTone, c_.ckWinKeyPin3, c_.ckWinKeyPin5,
                                  c_.ckRadio1Pin3, c_.ckRadio1Pin5}) {
    if (box) box->OnClick([this, box] { RunClick(box); });
  }
}

void FrmWinKeyConfig::Form_Load() {
  const WinKeySettings& s = n_.settings;
  platform::CenterForm(c_.form);

  for (int port = 0; port < kPortCount; ++port) {
    c_.cmbPort.AddItem("Comm" + std::to_string(port), c_.cmbPort.ListCount());
  }
  for (const platform::SerialPortChoice& choice : n_.ports.SerialPorts()) {
    for (int port = 1; port < kPortCount; ++port) {
      if (choice.name == "Comm" + std::to_string(port)) c_.cmbPort.SetItemNote(static_cast<int16_t>(port), choice.device);
    }
  }
  for (const char* mode : kKeyModes) c_.cmbKeyMode.AddItem(mode, c_.cmbKeyMode.ListCount());
  for (const char* tone : chip_ == Chip::WinKey ? kWinKeyTones : kWinKey2Tones) c_.cmbTone.AddItem(tone, "");
  for (const char* space : kWordSpaces) c_.cmbWordSpace.AddItem(space, c_.cmbWordSpace.ListCount());
  for (const char* mode : kPaddleModes) c_.cmbPaddle.AddItem(mode, c_.cmbPaddle.ListCount());
  SelectIndex(c_.cmbPort, s.WinKeyPort);
  SelectIndex(c_.cmbKeyMode, s.WinKeyKeyMode);
  SelectIndex(c_.cmbWordSpace, s.WinKeyWordSpace);
  SelectIndex(c_.cmbPaddle, s.WinKeyPaddleOperation);
  // Whether or not the list has it: an edited file's tone still shows.
  c_.cmbTone.SetText(std::to_string(s.WinKeyTone));

  c_.Slider3.SetValue(s.WinKeyPTTLeadDelay);
  c_.Slider4.SetValue(s.WinKeyPTTLagDelay);
  c_.Slider1.SetValue(s.WinKeySpeedMax);
  c_.Slider5.SetValue(s.WinKeySpeedMin);
  c_.Slider11.SetValue(s.WinKeySpeed);
  c_.Slider2.SetValue(s.WinKeySpeedFarnsworth);
  c_.Slider6.SetValue(s.WinKeyDitDahRatio);
  c_.Slider7.SetValue(s.WinKeyDitDahWeight);
  c_.Slider8.SetValue(s.WinKeyFirstExtension);
  c_.Slider9.SetValue(s.WinKeyCompensation);
  c_.Slider10.SetValue(s.WinKeyPaddleSwitchpoint);
  Slider3_Change();
  Slider4_Change();
  Slider1_Change();
  Slider5_Change();
  Slider11_Change();
  Slider2_Change();
  Slider6_Change();
  Slider7_Change();
  Slider8_Change();
  Slider9_Change();
  Slider10_Change();

  // In this order the rules run as they would by hand: on a WinKey a stored
  // sidetone unticks a stored PTT.
  Tick(&c_.ckWinKeyPTT, s.WinKeyPTT);
  Tick(&c_.ckWinKeySideTone, s.WinKeySideTone);
  if (chip_ == Chip::WinKey) {
    if (!s.WinKeyPin3) {
      Tick(c_.ckWinKeyPin5, true);
      c_.ckWinKeyPTT.SetEnabled(false);
      c_.ckWinKeySideTone.SetEnabled(false);
    } else {
      Tick(c_.ckWinKeyPin3, true);
      c_.ckWinKeyPTT.SetEnabled(true);
      c_.ckWinKeySideTone.SetEnabled(true);
    }
  }
  Tick(&c_.ckWinKeySwitchPaddles, s.WinKeySwitchPaddles);
  Tick(&c_.ckDisablePaddleMemory, s.WinKeyDisablePaddleMemory);
  Tick(&c_.ckPaddleInsertCancelsMacro, s.WinKeyPaddleInsertCancelsMacro);
  Tick(&c_.ckWinKeyAnalogSpeed, s.WinKeyAnalogSpeed);
  Tick(&c_.ckWinKeyContestWordSpace, s.WinKeyContestWordSpace);
  Tick(&c_.ckWinKeyAutoSpace, s.WinKeyAutoSpace);
  Tick(&c_.ckRadioPolling, s.WinKeyHoldRadioPolling);
  if (chip_ == Chip::WinKey) {
    Tick(c_.ckRadio1Pin3, s.WinKeyRadio1Pin3);
    Tick(c_.ckRadio1Pin5, s.WinKeyRadio2Pin3);
    if (s.WinKeyRadio1Pin3 || s.WinKeyRadio2Pin3) EnablePinBoxes(false);
  } else {
    Tick(c_.ckPaddleOnlySideTone, s.PaddleOnlySideTone);
    c_.ckPaddleOnlySideTone->SetEnabled(c_.ckWinKeySideTone.Value());
  }
  c_.form.SetTopmost(true);
}

void FrmWinKeyConfig::Tick(platform::CheckBox* box, bool ticked) {
  if (!box || box->Value() == ticked) return;
  box->SetValue(ticked);
  RunClick(box);
}

void FrmWinKeyConfig::RunClick(platform::CheckBox* box) {
  if (box == &c_.ckWinKeyPTT) ckWinKeyPTT_Click();
  if (box == &c_.ckWinKeySideTone) ckWinKeySideTone_Click();
  if (box == c_.ckWinKeyPin3) ckWinKeyPin3_Click();
  if (box == c_.ckWinKeyPin5) ckWinKeyPin5_Click();
  if (box == c_.ckRadio1Pin3) ckRadio1Pin3_Click();
  if (box == c_.ckRadio1Pin5) ckRadio1Pin5_Click();
}

void FrmWinKeyConfig::EnablePinBoxes(bool enabled) {
  for (platform::CheckBox* box : {c_.ckWinKeyPin3, c_.ckWinKeyPin5, &c_.ckWinKeyPTT, &c_.ckWinKeySideTone}) {
    if (box) box->SetEnabled(enabled);
  }
}

void FrmWinKeyConfig::ckWinKeyPin3_Click() {
  const bool ticked = c_.ckWinKeyPin3->Value();
  Tick(c_.ckWinKeyPin5, !ticked);
  c_.ckWinKeyPTT.SetEnabled(ticked);
  c_.ckWinKeySideTone.SetEnabled(ticked);
}

void FrmWinKeyConfig::ckWinKeyPin5_Click() { Tick(c_.ckWinKeyPin3, !c_.ckWinKeyPin5->Value()); }

// The WinKey2 keys PTT and sidetone together; only the WinKey cannot.
void FrmWinKeyConfig::ckWinKeyPTT_Click() {
  if (chip_ == Chip::WinKey && c_.ckWinKeyPTT.Value()) Tick(&c_.ckWinKeySideTone, false);
}

void FrmWinKeyConfig::ckWinKeySideTone_Click() {
  const bool ticked = c_.ckWinKeySideTone.Value();
  if (chip_ == Chip::WinKey2) {
    c_.ckPaddleOnlySideTone->SetEnabled(ticked);
  } else if (ticked) {
    Tick(&c_.ckWinKeyPTT, false);
  }
}

void FrmWinKeyConfig::ckRadio1Pin3_Click() {
  if (c_.ckRadio1Pin3->Value()) {
    Tick(c_.ckRadio1Pin5, false);
    EnablePinBoxes(false);
  } else if (!c_.ckRadio1Pin5->Value()) {
    EnablePinBoxes(true);
  }
}

void FrmWinKeyConfig::ckRadio1Pin5_Click() {
  if (c_.ckRadio1Pin5->Value()) {
    Tick(c_.ckRadio1Pin3, false);
    EnablePinBoxes(false);
  } else if (!c_.ckRadio1Pin3->Value()) {
    EnablePinBoxes(true);
  }
}

std::string FrmWinKeyConfig::RatioText(int32_t value) { return "1:" + NumberText(value / 50.0 * 3); }

std::string FrmWinKeyConfig::WeightText(int32_t value) {
  return (value > 50 ? "+" : "") + NumberText((value / 50.0 - 1) * 100) + "%";
}

void FrmWinKeyConfig::Slider3_Change() { c_.Label16.SetCaption(std::to_string(c_.Slider3.Value() * 10) + " ms."); }
void FrmWinKeyConfig::Slider4_Change() { c_.Label17.SetCaption(std::to_string(c_.Slider4.Value() * 10) + " ms."); }
void FrmWinKeyConfig::Slider1_Change() { c_.Label18.SetCaption(std::to_string(c_.Slider1.Value()) + " WPM"); }
void FrmWinKeyConfig::Slider5_Change() { c_.Label19.SetCaption(std::to_string(c_.Slider5.Value()) + " WPM"); }
void FrmWinKeyConfig::Slider11_Change() { c_.Label26.SetCaption(std::to_string(c_.Slider11.Value()) + " WPM"); }
void FrmWinKeyConfig::Slider2_Change() { c_.Label20.SetCaption(std::to_string(c_.Slider2.Value()) + " WPM"); }
void FrmWinKeyConfig::Slider6_Change() { c_.Label21.SetCaption(RatioText(c_.Slider6.Value())); }
void FrmWinKeyConfig::Slider7_Change() { c_.Label22.SetCaption(WeightText(c_.Slider7.Value())); }
void FrmWinKeyConfig::Slider8_Change() { c_.Label23.SetCaption(std::to_string(c_.Slider8.Value()) + " ms."); }
void FrmWinKeyConfig::Slider9_Change() { c_.Label24.SetCaption(std::to_string(c_.Slider9.Value()) + " ms."); }
void FrmWinKeyConfig::Slider10_Change() { c_.Label25.SetCaption(std::to_string(c_.Slider10.Value()) + "%"); }

bool FrmWinKeyConfig::CheckSpeedPot() {
  const int32_t max = c_.Slider1.Value();
  const int32_t min = c_.Slider5.Value();
  std::string message;
  if (max - min > kMaxSpeedPotSpan) {
    message = "The Speed Pot Max and Min values are incorrect.  The current values show Max of " +
              std::to_string(max) + " and Min of " + std::to_string(min) +
              ".  The difference between Max and Min settings must be " + std::to_string(kMaxSpeedPotSpan) +
              " or less.";
  } else if (max <= min) {
    message = kSpeedPotOrder;
  } else {
    return true;
  }
  c_.form.MsgBox(message, platform::kMsgBoxInformation, kSpeedPotTitle);
  return false;
}

void FrmWinKeyConfig::StoreSettings() {
  WinKeySettings& s = n_.settings;
  settings::SettingWriter& store = n_.store;
  const auto number = [&store](const char* key, int16_t& field, int32_t value) {
    field = static_cast<int16_t>(value);
    store.WriteSetting(settings::kKeyerSection, key, std::to_string(field));
  };
  const auto flag = [&store](const char* key, bool& field, const platform::CheckBox& box) {
    field = box.Value();
    store.WriteSetting(settings::kKeyerSection, key, TrueFalse(field));
  };
  const double hz = vb::RoundHalfEven(vb::Val(c_.cmbTone.Text()));

  number("WinKey Port", s.WinKeyPort, Chosen(c_.cmbPort, s.WinKeyPort));
  number("WinKey Key Mode", s.WinKeyKeyMode, Chosen(c_.cmbKeyMode, s.WinKeyKeyMode));
  number("WinKey Tone", s.WinKeyTone, static_cast<int32_t>(std::clamp(hz, -32768.0, 32767.0)));
  number("WinKey WordSpace", s.WinKeyWordSpace, Chosen(c_.cmbWordSpace, s.WinKeyWordSpace));
  number("WinKey Paddle Operation", s.WinKeyPaddleOperation, Chosen(c_.cmbPaddle, s.WinKeyPaddleOperation));
  number("WinKey PTT Lead Delay", s.WinKeyPTTLeadDelay, c_.Slider3.Value());
  number("WinKey PTT Lag Delay", s.WinKeyPTTLagDelay, c_.Slider4.Value());
  number("WinKey Speed Max", s.WinKeySpeedMax, c_.Slider1.Value());
  number("WinKey Speed Min", s.WinKeySpeedMin, c_.Slider5.Value());
  number("WinKey Speed Farnsworth", s.WinKeySpeedFarnsworth, c_.Slider2.Value());
  number("WinKey DitDah Ratio", s.WinKeyDitDahRatio, c_.Slider6.Value());
  number("WinKey DitDah Weight", s.WinKeyDitDahWeight, c_.Slider7.Value());
  number("WinKey First Extension", s.WinKeyFirstExtension, c_.Slider8.Value());
  number("WinKey Compensation", s.WinKeyCompensation, c_.Slider9.Value());
  number("WinKey Paddle Switchpoint", s.WinKeyPaddleSwitchpoint, c_.Slider10.Value());
  number("WinKey Speed", s.WinKeySpeed, c_.Slider11.Value());

  flag("WinKey PTT", s.WinKeyPTT, c_.ckWinKeyPTT);
  if (chip_ == Chip::WinKey) {
    flag("WinKey Sidetone", s.WinKeySideTone, c_.ckWinKeySideTone);
    flag("WinKey Pin 3", s.WinKeyPin3, *c_.ckWinKeyPin3);
  } else {
    flag("Paddle Only SideTone", s.PaddleOnlySideTone, *c_.ckPaddleOnlySideTone);
    flag("WinKey Sidetone", s.WinKeySideTone, c_.ckWinKeySideTone);
  }
  flag("WinKey AutoSpace", s.WinKeyAutoSpace, c_.ckWinKeyAutoSpace);
  flag("WinKey Contest WordSpace", s.WinKeyContestWordSpace, c_.ckWinKeyContestWordSpace);
  flag("WinKey Switch Paddles", s.WinKeySwitchPaddles, c_.ckWinKeySwitchPaddles);
  flag("WinKey Analog Speed", s.WinKeyAnalogSpeed, c_.ckWinKeyAnalogSpeed);
  flag("WinKey Disable Paddle Memory", s.WinKeyDisablePaddleMemory, c_.ckDisablePaddleMemory);
  flag("WinKey Paddle Insert Cancels Macro", s.WinKeyPaddleInsertCancelsMacro, c_.ckPaddleInsertCancelsMacro);
  if (chip_ == Chip::WinKey) {
    flag("WinKey Radio 1 Pin 3", s.WinKeyRadio1Pin3, *c_.ckRadio1Pin3);
    flag("WinKey Radio 2 Pin 3", s.WinKeyRadio2Pin3, *c_.ckRadio1Pin5);
  }
  flag("WinKey Hold Radio Polling", s.WinKeyHoldRadioPolling, c_.ckRadioPolling);
}

void FrmWinKeyConfig::ARButton1_Click() {
  if (!CheckSpeedPot()) return;
  StoreSettings();
  // A port or chip that fails says so in the main window; the values stand.
  n_.winKey.OpenWinKeyPort();
  c_.form.Unload();
}

void FrmWinKeyConfig::btnCancel_Click() { c_.form.Unload(); }

}  // namespace vantrel::winkey
