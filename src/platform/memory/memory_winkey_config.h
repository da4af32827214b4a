// The keyer chips' config dialogs in memory, made anew at each opening as
// the real ones are; every control traces its changes under the dialog's
// name ("frmWinKeyConfig" or "frmWinKey2Config") and its own.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/memory/memory_dialogs.h"
#include "platform/winkey_config_controls.h"

namespace vantrel::platform::memory {

// A drop-down list that traces the entry it shows; an index outside the
// entries shows none.
class MemoryDialogList : public MemoryNamed<ComboBox> {
 public:
  using MemoryNamed::MemoryNamed;
  std::string Text() const override { return index_ < 0 ? "" : items[static_cast<size_t>(index_)]; }
  int16_t ListCount() const override { return static_cast<int16_t>(items.size()); }
  void AddItem(const std::string& item, int16_t index) override {
    items.insert(items.begin() + index, item);
  }
  void RemoveItem(int16_t index) override;
  int16_t ListIndex() const override { return index_; }
  void SetListIndex(int16_t index) override;
  void OnClick(std::function<void()> handler) override { onClick_ = std::move(handler); }
  void SetItemNote(int16_t index, const std::string& note) override {
    notes[items.at(static_cast<size_t>(index))] = note;
  }
  // The operator picks entry `index`; false when there is none such.
  bool Choose(int16_t index);

  float Left() const override { return 0; }
  float Top() const override { return 0; }
  float Width() const override { return 0; }
  float Height() const override { return 0; }
  void SetLeft(float) override {}
  void SetTop(float) override {}
  void SetWidth(float) override {}
  void SetHeight(float) override {}

  std::vector<std::string> items;
  // Each entry's note, by its text.
  std::map<std::string, std::string> notes;

 private:
  int16_t index_ = -1;
  std::function<void()> onClick_;
};

class MemoryWinKeyConfig {
 public:
  // `winKey2` makes the WinKey2's dialog: its tone table, its sidetone box, no pin boxes.
  MemoryWinKeyConfig(Trace& trace, bool winKey2);

  WinKeyConfigControls controls();
  // An operator's action on the named control: a click on a button or a
  // check box; a list's entry by index, the tone's text, a slider's value.
  // False when the dialog has no such control or the value does not suit it.
  bool Click(const std::string& name);
  bool Enter(const std::string& name, const std::string& value);
  // Every control name that either dialog knows, for a script's checks.
  static bool KnownClick(const std::string& name);
  static bool KnownValue(const std::string& name);

  const bool winKey2;
  MemoryDialogWindow form;
  MemoryDialogList cmbPort, cmbKeyMode;
  MemoryEditComboBox cmbTone;
  MemoryDialogList cmbWordSpace, cmbPaddle;
  MemorySlider Slider3, Slider4, Slider1, Slider5, Slider11, Slider2, Slider6, Slider7, Slider8, Slider9,
      Slider10;
  MemoryLabel Label16, Label17, Label18, Label19, Label26, Label20, Label21, Label22, Label23, Label24, Label25;
  MemoryCheckBox ckWinKeyPTT, ckWinKeySideTone, ckWinKeySwitchPaddles, ckDisablePaddleMemory,
      ckPaddleInsertCancelsMacro, ckWinKeyAnalogSpeed, ckWinKeyContestWordSpace, ckWinKeyAutoSpace,
      ckRadioPolling, ckWinKeyPin3, ckWinKeyPin5, ckRadio1Pin3, ckRadio1Pin5, ckPaddleOnlySideTone;
  MemoryButton ARButton1, btnCancel;

 private:
  // This dialog's check boxes by name: those the chip's dialog has.
  std::map<std::string, MemoryCheckBox*> Boxes();
  std::map<std::string, MemorySlider*> Sliders();
};

}  // namespace vantrel::platform::memory
