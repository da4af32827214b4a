#include "platform/memory/memory_dialogs.h"

#include <algorithm>
#include <cstdlib>

namespace vantrel::platform::memory {
namespace {

constexpr const char* kButtons[] = {"btnTest", "ARButton1", "ARButton2", "btnOK", "btnCancel", "btnStopTest"};
constexpr const char* kChecks[] = {"CheckParallel", "CheckSharedSerial", "CheckSerial", "Check5",
                                   "ckSlowTyping",  "Chk6",              "ckSidetone"};
constexpr const char* kFields[] = {"Text2", "Text3", "Text4", "Text5", "Text6", "cmbPort",
                                   "DotLengthSlider", "Pitch"};

template <size_t N>
bool In(const char* const (&names)[N], const std::string& name) {
  return std::find_if(std::begin(names), std::end(names), [&](const char* each) { return name == each; }) !=
         std::end(names);
}

}  // namespace

MemoryKeyerSetup::MemoryKeyerSetup(Trace& trace, EventQueue& queue)
    : frmPort(trace, "frmPort", 6195, 5385),
      DotLengthSlider(trace, "frmPort DotLengthSlider", 10, 99),
      lbl(trace, "frmPort lbl"),
      Pitch(trace, "frmPort Pitch", 300, 1500),
      Text2(trace, "frmPort Text2"),
      Text3(trace, "frmPort Text3"),
      Text4(trace, "frmPort Text4"),
      Text5(trace, "frmPort Text5"),
      Text6(trace, "frmPort Text6"),
      Label2(trace, "frmPort Label2"),
      Label10(trace, "frmPort Label10"),
      cmbPort(trace, "frmPort cmbPort"),
      lblDevice(trace, "frmPort lblDevice"),
      CheckParallel(trace, "frmPort CheckParallel"),
      CheckSharedSerial(trace, "frmPort CheckSharedSerial"),
      CheckSerial(trace, "frmPort CheckSerial"),
      Check5(trace, "frmPort Check5"),
      ckSlowTyping(trace, "frmPort ckSlowTyping"),
      Chk6(trace, "frmPort Chk6"),
      ckSidetone(trace, "frmPort ckSidetone"),
      btnTest(trace, "frmPort btnTest"),
      ARButton1(trace, "frmPort ARButton1"),
      ARButton2(trace, "frmPort ARButton2"),
      btnOK(trace, "frmPort btnOK"),
      btnCancel(trace, "frmPort btnCancel"),
      lblProgress(trace, "frmPort lblProgress"),
      prgTest(trace, "frmPort prgTest"),
      btnStopTest(trace, "frmPort btnStopTest"),
      ProgressTimer(queue),
      frmCalibrate(trace) {}

KeyerSetupControls MemoryKeyerSetup::controls() {
  return KeyerSetupControls{frmPort,   DotLengthSlider, lbl,          Pitch,         Text2,
                            Text3,     Text4,           Text5,        Text6,         Label2,
                            Label10,   cmbPort,         lblDevice,    CheckParallel, CheckSharedSerial,
                            CheckSerial, Check5,        ckSlowTyping, Chk6,          ckSidetone,
                            btnTest,   ARButton1,       ARButton2,    btnOK,         btnCancel,
                            lblProgress, prgTest,       btnStopTest,  ProgressTimer, frmCalibrate};
}

bool MemoryKeyerSetup::KnownControl(const std::string& name) {
  return In(kButtons, name) || In(kChecks, name) || In(kFields, name);
}

bool MemoryKeyerSetup::Click(const std::string& name) {
  const std::map<std::string, MemoryButton*> buttons{
      {"btnTest", &btnTest}, {"ARButton1", &ARButton1}, {"ARButton2", &ARButton2},
      {"btnOK", &btnOK},     {"btnCancel", &btnCancel}, {"btnStopTest", &btnStopTest}};
  const std::map<std::string, MemoryCheckBox*> checks{
      {"CheckParallel", &CheckParallel}, {"CheckSharedSerial", &CheckSharedSerial},
      {"CheckSerial", &CheckSerial},     {"Check5", &Check5},
      {"ckSlowTyping", &ckSlowTyping},   {"Chk6", &Chk6},
      {"ckSidetone", &ckSidetone}};
  if (const auto button = buttons.find(name); button != buttons.end()) {
    button->second->Click();
    return true;
  }
  if (const auto check = checks.find(name); check != checks.end()) {
    check->second->Click();
    return true;
  }
  return false;
}

bool MemoryKeyerSetup::Enter(const std::string& name, const std::string& value) {
  const std::map<std::string, MemoryTextField*> fields{
      {"Text2", &Text2}, {"Text3", &Text3}, {"Text4", &Text4}, {"Text5", &Text5}, {"Text6", &Text6}};
  if (const auto field = fields.find(name); field != fields.end()) {
    field->second->Enter(value);
    return true;
  }
  if (name == "cmbPort") {
    cmbPort.Enter(value);
    return true;
  }
  MemorySlider* slider = name == "DotLengthSlider" ? &DotLengthSlider : name == "Pitch" ? &Pitch : nullptr;
  if (!slider) return false;
  char* end = nullptr;
  const long number = std::strtol(value.c_str(), &end, 10);
  if (value.empty() || *end != '\0') return false;
  slider->Move(static_cast<int32_t>(std::clamp(number, -100000L, 100000L)));
  return true;
}

}  // namespace vantrel::platform::memory
