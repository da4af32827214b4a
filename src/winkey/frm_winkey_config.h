// "WinKey config ..." and "WinKey2 config ...": every value that the chip's
// settings upload carries. Nothing changes until Apply, which checks the
// speed pot range, stores every value, and runs discovery and the upload
// again; Cancel leaves no trace. One class serves both chips: the WinKey2's
// dialog has its own tone table and sidetone box, and no pin boxes.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "platform/neighbours.h"
#include "platform/serial_port_list.h"
#include "platform/winkey_config_controls.h"
#include "settings/setting_writer.h"
#include "winkey/winkey_settings.h"

namespace vantrel::winkey {

enum class Chip { WinKey, WinKey2 };

struct WinKeyConfigNeighbours {
  WinKeySettings& settings;
  settings::SettingWriter& store;
  platform::WinKeyLink& winKey;
  // The devices that the port names stand for.
  const platform::SerialPortList& ports;
};

// Lives as long as its controls, whose events it takes.
class FrmWinKeyConfig {
 public:
  static constexpr const char* kWinKeyCaption = "WinKey config ...";
  static constexpr const char* kWinKey2Caption = "WinKey2 config ...";
  static constexpr const char* kSpeedPotTitle = "Invalise Speed Pot settings";
  static constexpr const char* kSpeedPotOrder = "The Speed Pot Max must be greater than the Min value.";
  // The pot's range as the chip takes it; the reply byte has room for more.
  static constexpr int32_t kMaxSpeedPotSpan = 31;
  static constexpr int kPortCount = 17;
  static const std::array<const char*, 4> kKeyModes;
  static const std::array<const char*, 10> kWinKeyTones;
  static const std::array<const char*, 10> kWinKey2Tones;
  static const std::array<const char*, 4> kWordSpaces;
  static const std::array<const char*, 3> kPaddleModes;

  FrmWinKeyConfig(Chip chip, platform::WinKeyConfigControls controls, WinKeyConfigNeighbours neighbours);

  void Form_Load();
  void ARButton1_Click();
  void btnCancel_Click();

  void ckWinKeyPin3_Click();
  void ckWinKeyPin5_Click();
  void ckWinKeyPTT_Click();
  void ckWinKeySideTone_Click();
  void ckRadio1Pin3_Click();
  void ckRadio1Pin5_Click();

  // The value labels; a slider's scroll runs the same as its change.
  void Slider3_Change();
  void Slider4_Change();
  void Slider1_Change();
  void Slider5_Change();
  void Slider11_Change();
  void Slider2_Change();
  void Slider6_Change();
  void Slider7_Change();
  void Slider8_Change();
  void Slider9_Change();
  void Slider10_Change();

  // "1:" and the dah's length in dits, and the weight's offset from 50.
  static std::string RatioText(int32_t value);
  static std::string WeightText(int32_t value);

 private:
  // A tick set by the logic acts as a click, so the rules chain.
  void Tick(platform::CheckBox* box, bool ticked);
  void RunClick(platform::CheckBox* box);
  void EnablePinBoxes(bool enabled);
  // False after saying why the pot's range will not do.
  bool CheckSpeedPot();
  void StoreSettings();

  Chip chip_;
  platform::WinKeyConfigControls c_;
  WinKeyConfigNeighbours n_;
};

}  // namespace vantrel::winkey
