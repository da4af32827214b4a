#include "platform/memory/memory_winkey_config.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>

namespace vantrel::platform::memory {
namespace {

const std::set<std::string> kClickable{
    "ARButton1",          "btnCancel",        "ckWinKeyPTT",          "ckWinKeySideTone",
    "ckWinKeySwitchPaddles", "ckDisablePaddleMemory", "ckPaddleInsertCancelsMacro",
    "ckWinKeyAnalogSpeed", "ckWinKeyContestWordSpace", "ckWinKeyAutoSpace", "ckRadioPolling",
    "ckWinKeyPin3",       "ckWinKeyPin5",     "ckRadio1Pin3",         "ckRadio1Pin5",
    "ckPaddleOnlySideTone"};
const std::set<std::string> kValued{"cmbPort",  "cmbKeyMode", "cmbTone",  "cmbWordSpace", "cmbPaddle",
                                    "Slider1",  "Slider2",    "Slider3",  "Slider4",      "Slider5",
                                    "Slider6",  "Slider7",    "Slider8",  "Slider9",      "Slider10",
                                    "Slider11"};

std::string Prefix(bool winKey2) { return winKey2 ? "frmWinKey2Config" : "frmWinKeyConfig"; }

std::optional<long> WholeNumber(const std::string& text) {
  char* end = nullptr;
  const long number = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0') return std::nullopt;
  return std::clamp(number, -100000L, 100000L);
}

}  // namespace

void MemoryDialogList::RemoveItem(int16_t index) {
  items.erase(items.begin() + index);
  if (index_ >= ListCount()) index_ = -1;
}

void MemoryDialogList::SetListIndex(int16_t index) {
  if (index < 0 || index >= ListCount()) index = -1;
  if (index != index_) Emit(index < 0 ? "none" : Trace::Quote(items[static_cast<size_t>(index)]));
  index_ = index;
  if (onClick_) onClick_();
}

bool MemoryDialogList::Choose(int16_t index) {
  if (index < 0 || index >= ListCount()) return false;
  if (Enabled()) SetListIndex(index);
  return true;
}

MemoryWinKeyConfig::MemoryWinKeyConfig(Trace& trace, bool winKey2)
    : winKey2(winKey2),
      form(trace, Prefix(winKey2), 6405, winKey2 ? 5640 : 6525),
      cmbPort(trace, Prefix(winKey2) + " cmbPort"),
      cmbKeyMode(trace, Prefix(winKey2) + " cmbKeyMode"),
      cmbTone(trace, Prefix(winKey2) + " cmbTone"),
      cmbWordSpace(trace, Prefix(winKey2) + " cmbWordSpace"),
      cmbPaddle(trace, Prefix(winKey2) + " cmbPaddle"),
      Slider3(trace, Prefix(winKey2) + " Slider3", 0, 250),
      Slider4(trace, Prefix(winKey2) + " Slider4", 0, 250),
      Slider1(trace, Prefix(winKey2) + " Slider1", 5, 99),
      Slider5(trace, Prefix(winKey2) + " Slider5", 5, 99),
      Slider11(trace, Prefix(winKey2) + " Slider11", 5, 99),
      Slider2(trace, Prefix(winKey2) + " Slider2", 5, 99),
      Slider6(trace, Prefix(winKey2) + " Slider6", 33, 66),
      Slider7(trace, Prefix(winKey2) + " Slider7", 10, 90),
      Slider8(trace, Prefix(winKey2) + " Slider8", 0, 250),
      Slider9(trace, Prefix(winKey2) + " Slider9", 0, 250),
      Slider10(trace, Prefix(winKey2) + " Slider10", 10, 90),
      Label16(trace, Prefix(winKey2) + " Label16"),
      Label17(trace, Prefix(winKey2) + " Label17"),
      Label18(trace, Prefix(winKey2) + " Label18"),
      Label19(trace, Prefix(winKey2) + " Label19"),
      Label26(trace, Prefix(winKey2) + " Label26"),
      Label20(trace, Prefix(winKey2) + " Label20"),
      Label21(trace, Prefix(winKey2) + " Label21"),
      Label22(trace, Prefix(winKey2) + " Label22"),
      Label23(trace, Prefix(winKey2) + " Label23"),
      Label24(trace, Prefix(winKey2) + " Label24"),
      Label25(trace, Prefix(winKey2) + " Label25"),
      ckWinKeyPTT(trace, Prefix(winKey2) + " ckWinKeyPTT"),
      ckWinKeySideTone(trace, Prefix(winKey2) + " ckWinKeySideTone"),
      ckWinKeySwitchPaddles(trace, Prefix(winKey2) + " ckWinKeySwitchPaddles"),
      ckDisablePaddleMemory(trace, Prefix(winKey2) + " ckDisablePaddleMemory"),
      ckPaddleInsertCancelsMacro(trace, Prefix(winKey2) + " ckPaddleInsertCancelsMacro"),
      ckWinKeyAnalogSpeed(trace, Prefix(winKey2) + " ckWinKeyAnalogSpeed"),
      ckWinKeyContestWordSpace(trace, Prefix(winKey2) + " ckWinKeyContestWordSpace"),
      ckWinKeyAutoSpace(trace, Prefix(winKey2) + " ckWinKeyAutoSpace"),
      ckRadioPolling(trace, Prefix(winKey2) + " ckRadioPolling"),
      ckWinKeyPin3(trace, Prefix(winKey2) + " ckWinKeyPin3"),
      ckWinKeyPin5(trace, Prefix(winKey2) + " ckWinKeyPin5"),
      ckRadio1Pin3(trace, Prefix(winKey2) + " ckRadio1Pin3"),
      ckRadio1Pin5(trace, Prefix(winKey2) + " ckRadio1Pin5"),
      ckPaddleOnlySideTone(trace, Prefix(winKey2) + " ckPaddleOnlySideTone"),
      ARButton1(trace, Prefix(winKey2) + " ARButton1"),
      btnCancel(trace, Prefix(winKey2) + " btnCancel") {}

WinKeyConfigControls MemoryWinKeyConfig::controls() {
  return WinKeyConfigControls{.form = form,
                              .cmbPort = cmbPort,
                              .cmbKeyMode = cmbKeyMode,
                              .cmbTone = cmbTone,
                              .cmbWordSpace = cmbWordSpace,
                              .cmbPaddle = cmbPaddle,
                              .Slider3 = Slider3,
                              .Slider4 = Slider4,
                              .Slider1 = Slider1,
                              .Slider5 = Slider5,
                              .Slider11 = Slider11,
                              .Slider2 = Slider2,
                              .Slider6 = Slider6,
                              .Slider7 = Slider7,
                              .Slider8 = Slider8,
                              .Slider9 = Slider9,
                              .Slider10 = Slider10,
                              .Label16 = Label16,
                              .Label17 = Label17,
                              .Label18 = Label18,
                              .Label19 = Label19,
                              .Label26 = Label26,
                              .Label20 = Label20,
                              .Label21 = Label21,
                              .Label22 = Label22,
                              .Label23 = Label23,
                              .Label24 = Label24,
                              .Label25 = Label25,
                              .ckWinKeyPTT = ckWinKeyPTT,
                              .ckWinKeySideTone = ckWinKeySideTone,
                              .ckWinKeySwitchPaddles = ckWinKeySwitchPaddles,
                              .ckDisablePaddleMemory = ckDisablePaddleMemory,
                              .ckPaddleInsertCancelsMacro = ckPaddleInsertCancelsMacro,
                              .ckWinKeyAnalogSpeed = ckWinKeyAnalogSpeed,
                              .ckWinKeyContestWordSpace = ckWinKeyContestWordSpace,
                              .ckWinKeyAutoSpace = ckWinKeyAutoSpace,
                              .ckRadioPolling = ckRadioPolling,
                              .ckWinKeyPin3 = winKey2 ? nullptr : &ckWinKeyPin3,
                              .ckWinKeyPin5 = winKey2 ? nullptr : &ckWinKeyPin5,
                              .ckRadio1Pin3 = winKey2 ? nullptr : &ckRadio1Pin3,
                              .ckRadio1Pin5 = winKey2 ? nullptr : &ckRadio1Pin5,
                              .ckPaddleOnlySideTone = winKey2 ? &ckPaddleOnlySideTone : nullptr,
                              .ARButton1 = ARButton1,
                              .btnCancel = btnCancel};
}

std::map<std::string, MemoryCheckBox*> MemoryWinKeyConfig::Boxes() {
  std::map<std::string, MemoryCheckBox*> boxes{
      {"ckWinKeyPTT", &ckWinKeyPTT},
      {"ckWinKeySideTone", &ckWinKeySideTone},
      {"ckWinKeySwitchPaddles", &ckWinKeySwitchPaddles},
      {"ckDisablePaddleMemory", &ckDisablePaddleMemory},
      {"ckPaddleInsertCancelsMacro", &ckPaddleInsertCancelsMacro},
      {"ckWinKeyAnalogSpeed", &ckWinKeyAnalogSpeed},
      {"ckWinKeyContestWordSpace", &ckWinKeyContestWordSpace},
      {"ckWinKeyAutoSpace", &ckWinKeyAutoSpace},
      {"ckRadioPolling", &ckRadioPolling}};
  if (winKey2) {
    boxes.emplace("ckPaddleOnlySideTone", &ckPaddleOnlySideTone);
  } else {
    boxes.emplace("ckWinKeyPin3", &ckWinKeyPin3);
    boxes.emplace("ckWinKeyPin5", &ckWinKeyPin5);
    boxes.emplace("ckRadio1Pin3", &ckRadio1Pin3);
    boxes.emplace("ckRadio1Pin5", &ckRadio1Pin5);
  }
  return boxes;
}

std::map<std::string, MemorySlider*> MemoryWinKeyConfig::Sliders() {
  return {{"Slider1", &Slider1}, {"Slider2", &Slider2},   {"Slider3", &Slider3},   {"Slider4", &Slider4},
          {"Slider5", &Slider5}, {"Slider6", &Slider6},   {"Slider7", &Slider7},   {"Slider8", &Slider8},
          {"Slider9", &Slider9}, {"Slider10", &Slider10}, {"Slider11", &Slider11}};
}

bool MemoryWinKeyConfig::KnownClick(const std::string& name) { return kClickable.count(name) > 0; }
bool MemoryWinKeyConfig::KnownValue(const std::string& name) { return kValued.count(name) > 0; }

bool MemoryWinKeyConfig::Click(const std::string& name) {
  if (name == "ARButton1" || name == "btnCancel") {
    (name == "ARButton1" ? ARButton1 : btnCancel).Click();
    return true;
  }
  const auto boxes = Boxes();
  const auto box = boxes.find(name);
  if (box == boxes.end()) return false;
  box->second->Click();
  return true;
}

bool MemoryWinKeyConfig::Enter(const std::string& name, const std::string& value) {
  if (name == "cmbTone") {
    cmbTone.Enter(value);
    return true;
  }
  const std::optional<long> number = WholeNumber(value);
  const std::map<std::string, MemoryDialogList*> lists{{"cmbPort", &cmbPort},
                                                       {"cmbKeyMode", &cmbKeyMode},
                                                       {"cmbWordSpace", &cmbWordSpace},
                                                       {"cmbPaddle", &cmbPaddle}};
  if (const auto list = lists.find(name); list != lists.end()) {
    return number && list->second->Choose(static_cast<int16_t>(*number));
  }
  const auto sliders = Sliders();
  const auto slider = sliders.find(name);
  if (slider == sliders.end() || !number) return false;
  slider->second->Move(static_cast<int32_t>(*number));
  return true;
}

}  // namespace vantrel::platform::memory
