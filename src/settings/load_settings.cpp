#include "settings/load_settings.h"

#include <cstdint>
#include <optional>

#include "vb/vb.h"

namespace vantrel::settings {
namespace {

// One reader per conversion form. After the first failure every read is skipped.
class Loader {
 public:
  explicit Loader(SettingsStore& store) : store_(store) {}

  std::string Text(const char* key, const char* fallback) {
    return stopped_ ? std::string{} : store_.ReadSetting(key, fallback);
  }
  template <typename Apply>
  void Exact(const char* key, const char* fallback, Apply apply) {
    if (!stopped_) apply(Text(key, fallback));
  }
  template <typename Apply>
  void Boolean(const char* key, const char* fallback, Apply apply) {
    Convert(vb::CBool, key, fallback, apply);
  }
  template <typename Apply>
  void Long(const char* key, const char* fallback, Apply apply) {
    Convert(vb::CLng, key, fallback, apply);
  }
  template <typename Apply>
  void Val(const char* key, const char* fallback, Apply apply) {
    if (!stopped_) apply(vb::Val(Text(key, fallback)));
  }
  template <typename Apply>
  void Val16(const char* key, const char* fallback, Apply apply) {
    Convert(
        [](std::string_view text) -> std::optional<int16_t> {
          const double value = vb::RoundHalfEven(vb::Val(text));
          if (value < INT16_MIN || value > INT16_MAX) return std::nullopt;
          return static_cast<int16_t>(value);
        },
        key, fallback, apply);
  }

 private:
  template <typename Conversion, typename Apply>
  void Convert(Conversion convert, const char* key, const char* fallback, Apply apply) {
    if (stopped_) return;
    const auto value = convert(Text(key, fallback));
    if (!value) {
      stopped_ = true;
      return;
    }
    apply(*value);
  }

  SettingsStore& store_;
  bool stopped_ = false;
};

}  // namespace

void LoadSettings(SettingsStore& store, sending::CwState& cw,
                  platform::MainWindowControls& controls, sending::SendingCore& core) {
  store.SettingsSection = kMainSectionRead;
  Loader load(store);
  load.Exact("Slow Typing", "ON", [&](const std::string& v) { cw.SlowTyping = v == "ON"; });
  load.Exact("Keyer to Use", "Software", [&](const std::string& v) {
    if (v == "WinKey") {
      controls.mnuWinKey.SetChecked(true);
    } else if (v == "WinKey2") {
      controls.mnuWinKey2.SetChecked(true);
    } else {
      controls.mnuSoftwareKeyer.SetChecked(true);
    }
  });
  load.Long("TextBox Forecolor", "16711680", [&](int32_t v) {
    cw.TextForeColor = v;
    controls.CWTextBox.SetSelColor(v);
  });
  load.Long("PTT Delay", "100", [&](int32_t v) { cw.PTTDelay = v; });
  load.Exact("Keying", "VOX", [&](const std::string& v) {
    (v == "VOX" ? controls.mnuVOX : controls.mnuMOX).SetChecked(true);
  });
  load.Exact("PTT", "OFF", [&](const std::string& v) { cw.PTTEnabled = v != "OFF"; });
  load.Boolean("Disable Polling", "False", [&](bool v) { cw.DisablePolling = v; });
  load.Long("Transmitting Text Color", "255", [&](int32_t v) { cw.TransmittingColor = v; });
  load.Long("Transmitted Text Color", "0", [&](int32_t v) { cw.TransmittedColor = v; });
  // The three proportions come before the speed: the dot is computed from all four.
  load.Val("Word Space", "7", [&](double v) { cw.WordSpace = v; });
  load.Val("Letter Space", "3", [&](double v) { cw.LetterSpace = v; });
  load.Val("Dash Length", "3", [&](double v) { cw.DashLength = v; });
  load.Val16("WPM", "20", [&](int16_t v) {
    cw.WPM = v;
    cw.DotTime = core.ComputeDotLength(v);
    cw.SavedWPM = v;
    core.ShowSpeed(v);
  });
  load.Exact("SideTone", "OFF", [&](const std::string& v) {
    if (v == "ON") cw.SidetoneEnabled = true;
  });

  store.SettingsSection = kKeyerSection;
  load.Boolean("WinKey Analog Speed", "False", [&](bool v) { cw.WinKeyAnalogSpeed = v; });
  load.Boolean("WinKey Hold Radio Polling", "False", [&](bool v) { cw.WinKeyHoldRadioPolling = v; });
}

}  // namespace vantrel::settings
